#include "engine/Codec.h"

#include "engine/codecs/Codecs.h"
#include "engine/LargePages.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quorvia::engine {

Decoder::~Decoder() = default;
Codec::~Codec() = default;

bool Codec::keepsProfile(const QString&) const
{
    return false;
}

std::span<const Codec* const> codecTable()
{
    // Strong marks before weak ones: a headerless bitmap begins with a small number, a TGA has only its name.
    static const std::array table = {
        &losslessJpegCodec(), &jpegCodec(), &pngCodec(),     &gifCodec(), &tiffCodec(),
        &webpCodec(),         &avifCodec(), &jpegXlCodec(),  &wpgCodec(), &dcxCodec(),
        &softimageCodec(),    &pnmCodec(),  &utahRleCodec(), &wmfCodec(), &icoCodec(),
        &pcxCodec(),          &pictCodec(), &bmpCodec(),     &tgaCodec(),
    };
    return table;
}

namespace {

Result<std::unique_ptr<Decoder>> openBySniffing(const std::shared_ptr<ByteSource>& source,
                                                const QString& extension)
{
    constexpr qint64 headLength = 1024;
    const QByteArray head = source->bytes(0, headLength);
    if (head.isEmpty())
        return Error{ErrorKind::NotAnImage, QStringLiteral("the file is empty")};
    const QString folded = extension.toLower();
    for (const Codec* codec : codecTable()) {
        if (codec->sniff(head, folded))
            return codec->open(source);
    }
    return Error{ErrorKind::NotAnImage, QStringLiteral("no known image format")};
}

} // namespace

Result<std::unique_ptr<Decoder>> openDecoder(const std::shared_ptr<ByteSource>& source,
                                             const QString& extension)
{
    auto decoder = openBySniffing(source, extension);
    if (!decoder && source->failed())
        return Error{ErrorKind::Unreadable, QStringLiteral("the file cannot be read")};
    return decoder;
}

const Codec* encoderFor(const QString& extension)
{
    const QString folded = extension.toLower();
    for (const Codec* codec : codecTable()) {
        if (codec->canEncode(folded))
            return codec;
    }
    return nullptr;
}

QImage allocateImage(QSize size, QImage::Format format)
{
    const qint64 bits = QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 bytesPerLine = (size.width() * bits + 31) / 32 * 4;
    void* memory =
        std::calloc(static_cast<size_t>(bytesPerLine), static_cast<size_t>(std::max(size.height(), 0)));
    if (!memory)
        return {};
    preferLargePages(memory, bytesPerLine * size.height());
    return QImage(static_cast<uchar*>(memory), size.width(), size.height(), bytesPerLine, format, std::free,
                  memory);
}

QSize fittedSize(QSize page, QSize box)
{
    if (box.isEmpty() || (page.width() <= box.width() && page.height() <= box.height()))
        return page;
    return page.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

} // namespace quorvia::engine
