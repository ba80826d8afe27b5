#include "engine/codecs/Codecs.h"
#include "engine/codecs/png/PngDecoder.h"
#include "engine/codecs/png/PngEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class PngCodec final : public Codec
{
  public:
    QString name() const override;
    QStringList extensions() const override;
    bool sniff(const QByteArray& head, const QString& extension) const override;
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    bool canEncode(const QString& extension) const override;
    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }
    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override;
};

} // namespace

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

Result<QByteArray> PngCodec::encode(const QImage& image, const QString&, const EncodeOptions& options) const
{
    return encodePng(image, options.profile);
}

const Codec& pngCodec()
{
    static const PngCodec codec;
    return codec;
}

} // namespace quorvia::engine
