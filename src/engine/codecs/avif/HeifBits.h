// The bits in the headers of AV1 and HEVC streams.
#pragma once

#include <QByteArray>
#include <QSize>

#include <algorithm>
#include <limits>

namespace quorvia::engine {

/// Bits from the highest of each byte down; zeros behind the end.
class HeifBits
{
  public:
    explicit HeifBits(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    quint32 take(int count)
    {
        quint32 value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1 | bit();
        return value;
    }
    bool flag() { return bit() != 0; }
    void skip(int count) { m_at += count; }

    /// A number of the Exponential-Golomb code of order 0, which both formats have.
    quint32 golomb()
    {
        int zeros = 0;
        while (!isAtEnd() && !flag())
            ++zeros;
        if (zeros >= 32)
            return std::numeric_limits<quint32>::max();
        return (1U << zeros) - 1 + take(zeros);
    }
    bool isAtEnd() const { return m_at >= qint64(m_bytes.size()) * 8; }

  private:
    quint32 bit()
    {
        const quint32 value =
            isAtEnd() ? 0U : quint32(uchar(m_bytes[qsizetype(m_at / 8)])) >> (7 - m_at % 8) & 1;
        ++m_at;
        return value;
    }

    const QByteArray m_bytes; ///< const, so that looking into shared bytes does not copy them
    qint64 m_at = 0;
};

/// A size from its sides as the file counts them; empty when the bits ended before.
inline QSize heifSizeFrom(const HeifBits& bits, quint64 width, quint64 height)
{
    constexpr quint64 most = std::numeric_limits<int>::max();
    return bits.isAtEnd() ? QSize() : QSize(int(std::min(width, most)), int(std::min(height, most)));
}

} // namespace quorvia::engine
