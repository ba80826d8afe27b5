// Numbers and boxes in the bytes of an AVIF or HEIF file (ISO/IEC 14496-12, 4.2). Cheap: nothing is copied
// but the numbers.
#pragma once

#include <QByteArray>

#include <algorithm>

namespace quorvia::engine {

/// More than a box of an honest file has inside, and more than libheif takes.
constexpr int mostHeifBoxes = 20000;

/// Numbers of a box, highest byte first; zeros behind its end.
class HeifFields
{
  public:
    explicit HeifFields(QByteArray bytes, qsizetype at = 0) : m_bytes(std::move(bytes)), m_at(at) {}

    quint64 take(int bytes)
    {
        quint64 value = 0;
        for (int i = 0; i < bytes; ++i, ++m_at)
            value = value << 8 | (m_at < m_bytes.size() ? uchar(m_bytes[m_at]) : 0U);
        return value;
    }
    QByteArray bytes(qsizetype count)
    {
        QByteArray taken = m_bytes.mid(std::min(m_at, m_bytes.size()), count);
        m_at += count;
        return taken;
    }
    bool isAtEnd() const { return m_at >= m_bytes.size(); }

  private:
    const QByteArray m_bytes; ///< const, so that looking into shared bytes does not copy them
    qsizetype m_at;
};

/// Calls `each` with the name and the content of every box in `bytes` from `at` on. The content lies in
/// `bytes`. False when there are more than mostHeifBoxes; those behind are passed over.
template <class Each>
bool forEachHeifBox(const QByteArray& bytes, qsizetype at, const Each& each)
{
    for (int count = 0; at + 8 <= bytes.size(); ++count) {
        if (count == mostHeifBoxes)
            return false;
        HeifFields head(bytes, at);
        quint64 length = head.take(4);
        const QByteArray name = head.bytes(4);
        qsizetype headLength = 8;
        const auto rest = quint64(bytes.size() - at);
        if (length == 1) {
            length = head.take(8);
            headLength = 16;
        } else if (length == 0) {
            length = rest;
        }
        length = std::min(length, rest);
        if (length < quint64(headLength))
            break;
        each(name,
             QByteArray::fromRawData(bytes.constData() + at + headLength, qsizetype(length) - headLength));
        at += qsizetype(length);
    }
    return true;
}

} // namespace quorvia::engine
