#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/png/PngDecoder.h"
#include "engine/codecs/png/PngEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class PngCodec final : public Codec
{
  public:
    PngCodec() : Codec(QStringLiteral("PNG"), {QStringLiteral("png")}, {QStringLiteral("png")}) {}

    bool sniff(const QByteArray& head, const QString&) const override
    {
        return head.startsWith("\x89PNG\r\n\x1a\n");
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<PngDecoder>(source, readPngHeader(*source));
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        return encodePng(image, options.profile);
    }
};

} // namespace

const Codec& pngCodec()
{
    static const PngCodec codec;
    return codec;
}

} // namespace quorvia::engine
