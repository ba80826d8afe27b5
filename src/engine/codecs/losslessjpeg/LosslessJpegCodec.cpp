#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/jpeg/JpegHeader.h"
#include "engine/codecs/losslessjpeg/LosslessJpegDecoder.h"
#include "engine/codecs/losslessjpeg/LosslessJpegEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class LosslessJpegCodec final : public Codec
{
  public:
    LosslessJpegCodec()
        : Codec(QStringLiteral("lossless JPEG"), {QStringLiteral("ljp")}, {QStringLiteral("ljp")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override
    {
        if (!head.startsWith("\xff\xd8\xff"))
            return false;
        const Result<JpegFrame> frame = readJpegFrame(*ByteSource::fromBytes(head));
        constexpr int lossless = 3;
        return frame && frame->process == lossless;
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<LosslessJpegDecoder>(source, readLosslessFrame(*source));
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        return encodeLosslessJpeg(image, options.profile);
    }
};

} // namespace

const Codec& losslessJpegCodec()
{
    static const LosslessJpegCodec codec;
    return codec;
}

} // namespace quorvia::engine
