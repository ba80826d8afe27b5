#include "HostileBytes.h"

#include "engine/Limits.h"

#include <algorithm>
#include <array>
#include <random>

namespace quorvia::test {

namespace {

using engine::Error;
using engine::Picture;
using engine::Result;

class Faults
{
  public:
    Faults(QByteArray bytes, quint32 seed) : m_bytes(std::move(bytes)), m_random(seed) {}

    QByteArray apply()
    {
        const int count = 1 + int(upTo(5));
        for (int i = 0; i < count && !m_bytes.isEmpty(); ++i)
            applyOne();
        return m_bytes;
    }

  private:
    qint64 upTo(qint64 most) { return std::uniform_int_distribution<qint64>(0, most)(m_random); }

    /// A place in the file: one in two lies in the headers, where faults do most.
    qint64 place()
    {
        constexpr qint64 headers = 160;
        const qint64 last = m_bytes.size() - 1;
        return upTo(upTo(1) == 0 ? std::min(last, headers) : last);
    }

    void applyOne()
    {
        const qint64 at = place();
        const qint64 length = std::min<qint64>(1 + upTo(7), m_bytes.size() - at);
        switch (upTo(5)) {
        case 0:
            m_bytes[at] = char(m_bytes[at] ^ (1 << upTo(7)));
            break;
        case 1:
            m_bytes[at] = char(upTo(255));
            break;
        case 2: {
            constexpr std::array<char, 4> extremes = {'\0', '\xFF', '\x7F', '\x80'};
            std::fill_n(m_bytes.begin() + at, length, extremes[size_t(upTo(3))]);
            break;
        }
        case 3:
            m_bytes.remove(at, length);
            break;
        case 4:
            m_bytes.insert(at, m_bytes.mid(at, length));
            break;
        default:
            m_bytes.truncate(std::max<qint64>(at, 1));
            break;
        }
    }

    QByteArray m_bytes;
    std::mt19937 m_random;
};

bool isAllowedFormat(QImage::Format format)
{
    constexpr std::array<QImage::Format, 5> allowed = {QImage::Format_Mono, QImage::Format_Indexed8,
                                                       QImage::Format_Grayscale8, QImage::Format_RGB32,
                                                       QImage::Format_ARGB32};
    return std::find(allowed.begin(), allowed.end(), format) != allowed.end();
}

/// Touches every pixel, so that a checker of memory sees what was not written.
quint32 sumOf(const QImage& image)
{
    quint32 sum = 0;
    const int step = std::max(1, image.height() / 512);
    for (int y = 0; y < image.height(); y += step) {
        for (int x = 0; x < image.width(); x += step)
            sum += image.pixel(x, y);
    }
    return sum;
}

QString pictureFault(const Result<engine::PageHeader>& header, const Result<Picture>& picture)
{
    if (!picture)
        return picture.error().text.isEmpty() ? QStringLiteral("an error without a text") : QString();
    if (!header)
        return QStringLiteral("a picture without a header");
    if (picture->fullSize != header->size || picture->image.size() != header->size)
        return QStringLiteral("the picture has not the size of the header");
    if (!engine::checkSize(picture->fullSize))
        return QStringLiteral("the picture is beyond the limits");
    if (!isAllowedFormat(picture->image.format()))
        return QStringLiteral("image format %1").arg(picture->image.format());
    if (picture->image.format() == QImage::Format_Indexed8 && picture->image.colorCount() == 0)
        return QStringLiteral("no palette");
    volatile quint32 sum = sumOf(picture->image);
    Q_UNUSED(sum);
    return {};
}

} // namespace

QByteArray brokenChild(const QByteArray& good, quint32 seed)
{
    return Faults(good, seed).apply();
}

QString misbehaviour(const engine::Codec& codec, const QByteArray& bytes)
{
    const auto decoder = codec.open(engine::ByteSource::fromBytes(bytes));
    if (!decoder)
        return decoder.error().text.isEmpty() ? QStringLiteral("an error without a text") : QString();
    const int pages = (*decoder)->pageCount();
    if (pages < 1)
        return QStringLiteral("%1 pages").arg(pages);
    const engine::CancelFlag go = false;
    for (int page = 1; page <= std::min(pages, 3); ++page) {
        const Result<engine::PageHeader> header = (*decoder)->header(page);
        const QString fault = pictureFault(header, (*decoder)->decode(page, QSize(), go));
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

Result<Picture> decoded(const engine::Codec& codec, const QByteArray& bytes, int page)
{
    const auto decoder = codec.open(engine::ByteSource::fromBytes(bytes));
    if (!decoder)
        return decoder.error();
    const engine::CancelFlag go = false;
    return (*decoder)->decode(page, QSize(), go);
}

} // namespace quorvia::test
