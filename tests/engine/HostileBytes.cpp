#include "HostileBytes.h"

#include "engine/Limits.h"

#include <algorithm>
#include <array>

namespace quorvia::test {

namespace {

using engine::Error;
using engine::Picture;
using engine::Result;

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

QString misbehaviourOf(const Result<std::unique_ptr<engine::Decoder>>& decoder, int* pictures = nullptr)
{
    if (!decoder)
        return decoder.error().text.isEmpty() ? QStringLiteral("an error without a text") : QString();
    const int pages = (*decoder)->pageCount();
    if (pages < 1)
        return QStringLiteral("%1 pages").arg(pages);
    const engine::CancelFlag go = false;
    for (int page = 1; page <= std::min(pages, 3); ++page) {
        const Result<engine::PageHeader> header = (*decoder)->header(page);
        const Result<Picture> picture = (*decoder)->decode(page, QSize(), go);
        const QString fault = pictureFault(header, picture);
        if (!fault.isEmpty())
            return fault;
        if (pictures && picture)
            ++*pictures;
    }
    return {};
}

} // namespace

QString misbehaviour(const engine::Codec& codec, const QByteArray& bytes)
{
    return misbehaviourOf(codec.open(engine::ByteSource::fromBytes(bytes)));
}

QString misbehaviour(const QString& extension, const QByteArray& bytes, int* pictures)
{
    return misbehaviourOf(engine::openDecoder(engine::ByteSource::fromBytes(bytes), extension), pictures);
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
