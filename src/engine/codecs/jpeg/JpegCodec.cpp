#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/jpeg/JpegDecoder.h"
#include "engine/codecs/jpeg/JpegEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class JpegCodec final : public Codec
{
  public:
    JpegCodec()
        : Codec(QStringLiteral("JPEG"),
                {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jif")},
                {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jif")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override
    {
        return head.startsWith("\xff\xd8\xff");
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        const Result<JpegFrame> frame = readJpegFrame(*source);
        constexpr int lossless = 3;
        if (frame && frame->process == lossless)
            return losslessJpegCodec().open(std::move(source));
        return decoderOf<JpegDecoder>(source, frame);
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        return encodeJpeg(image, options.jpeg, options.profile);
    }
};

} // namespace

const Codec& jpegCodec()
{
    static const JpegCodec codec;
    return codec;
}

} // namespace quorvia::engine
