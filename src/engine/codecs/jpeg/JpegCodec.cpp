#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/JpegDecoder.h"
#include "engine/codecs/jpeg/JpegEncode.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class JpegCodec final : public Codec
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

QString JpegCodec::name() const
{
    return QStringLiteral("JPEG");
}

QStringList JpegCodec::extensions() const
{
    return {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jif")};
}

bool JpegCodec::sniff(const QByteArray& head, const QString&) const
{
    return head.startsWith("\xff\xd8\xff");
}

Result<std::unique_ptr<Decoder>> JpegCodec::open(std::shared_ptr<ByteSource> source) const
{
    const Result<JpegFrame> frame = readJpegFrame(*source);
    if (!frame)
        return frame.error();
    constexpr int lossless = 3;
    if (frame->process == lossless)
        return losslessJpegCodec().open(std::move(source));
    return std::unique_ptr<Decoder>(std::make_unique<JpegDecoder>(std::move(source), *frame));
}

bool JpegCodec::canEncode(const QString& extension) const
{
    return extensions().contains(extension);
}

bool JpegCodec::keepsProfile(const QString& extension, ColorModel model) const
{
    return canEncode(extension) && model != ColorModel::Cmyk;
}

Result<QByteArray> JpegCodec::encode(const QImage& image, const QString&, const EncodeOptions& options) const
{
    return encodeJpeg(image, options.jpeg, options.profile);
}

const Codec& jpegCodec()
{
    static const JpegCodec codec;
    return codec;
}

} // namespace quorvia::engine
