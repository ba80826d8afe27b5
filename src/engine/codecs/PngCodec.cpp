#include "engine/codecs/PngCodec.h"

#include "engine/codecs/PngDecoder.h"
#include "engine/codecs/PngEncode.h"

namespace quorvia::engine {

QString PngCodec::name() const
{
    return QStringLiteral("PNG");
}

QStringList PngCodec::extensions() const
{
    return {QStringLiteral("png")};
}

bool PngCodec::sniff(const QByteArray& head, const QString&) const
{
    return head.startsWith("\x89PNG\r\n\x1a\n");
}

Result<std::unique_ptr<Decoder>> PngCodec::open(std::shared_ptr<ByteSource> source) const
{
    const Result<PngHeader> header = readPngHeader(*source);
    if (!header)
        return header.error();
    return std::unique_ptr<Decoder>(std::make_unique<PngDecoder>(std::move(source), *header));
}

bool PngCodec::canEncode(const QString& extension) const
{
    return extensions().contains(extension);
}

Result<QByteArray> PngCodec::encode(const QImage& image, const QString&, const EncodeOptions&) const
{
    return encodePng(image);
}

} // namespace quorvia::engine
