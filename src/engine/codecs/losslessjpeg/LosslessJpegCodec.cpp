#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/JpegHeader.h"
#include "engine/codecs/losslessjpeg/LosslessJpegDecoder.h"
#include "engine/codecs/losslessjpeg/LosslessJpegEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class LosslessJpegCodec final : public Codec
{
  public:
    QString name() const override;
    QStringList extensions() const override;
    bool sniff(const QByteArray& head, const QString& extension) const override;
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    bool canEncode(const QString& extension) const override;
    bool keepsProfile(const QString& extension, ColorModel model) const override;
    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override;
};

} // namespace

QString LosslessJpegCodec::name() const
{
    return QStringLiteral("lossless JPEG");
}

QStringList LosslessJpegCodec::extensions() const
{
    return {QStringLiteral("ljp")};
}

bool LosslessJpegCodec::sniff(const QByteArray& head, const QString&) const
{
    if (!head.startsWith("\xff\xd8\xff"))
        return false;
    const Result<JpegFrame> frame = readJpegFrame(*ByteSource::fromBytes(head));
    constexpr int lossless = 3;
    return frame && frame->process == lossless;
}

Result<std::unique_ptr<Decoder>> LosslessJpegCodec::open(std::shared_ptr<ByteSource> source) const
{
    const Result<LosslessFrame> frame = readLosslessFrame(*source);
    if (!frame)
        return frame.error();
    return std::unique_ptr<Decoder>(std::make_unique<LosslessJpegDecoder>(std::move(source), *frame));
}

bool LosslessJpegCodec::canEncode(const QString& extension) const
{
    return extensions().contains(extension);
}

bool LosslessJpegCodec::keepsProfile(const QString& extension, ColorModel model) const
{
    return canEncode(extension) && model != ColorModel::Cmyk;
}

Result<QByteArray> LosslessJpegCodec::encode(const QImage& image, const QString&,
                                             const EncodeOptions& options) const
{
    return encodeLosslessJpeg(image, options.profile);
}

const Codec& losslessJpegCodec()
{
    static const LosslessJpegCodec codec;
    return codec;
}

} // namespace quorvia::engine
