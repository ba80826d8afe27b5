#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/HeifBoxes.h"
#include "engine/codecs/MagickBridge.h"
#include "engine/codecs/PageNumber.h"

#include <algorithm>
#include <new>

namespace quorvia::engine {

namespace {

class AvifCodec final : public Codec
{
  public:
    QString name() const override;
    QStringList extensions() const override;
    bool sniff(const QByteArray& head, const QString& extension) const override;
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    bool canEncode(const QString& extension) const override;
    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override;
};

} // namespace

namespace {

class AvifDecoder final : public Decoder
{
  public:
    /// `complete` is false when the end of `file` was filled up.
    AvifDecoder(QByteArray file, MagickFacts facts, bool complete)
        : m_file(std::move(file)), m_facts(facts), m_samples(heifSamples(m_file)), m_complete(complete)
    {
    }

    int pageCount() override { return 1; }

    Result<PageHeader> header(int page) override
    {
        if (const Status there = onlyPage(page); !there)
            return there.error();
        const Status allowed = checkMagickSize(m_facts.size);
        if (!allowed)
            return allowed.error();
        const int channels = m_facts.hasAlpha ? 4 : m_samples.channels;
        return PageHeader{m_facts.size, channels * (m_samples.bits > 8 ? 16 : 8)};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override;

  private:
    QByteArray m_file;
    MagickFacts m_facts;
    HeifSamples m_samples;
    bool m_complete;
};

/// Colours that were multiplied by their alpha, as they were before.
void unpremultiply(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(row[x]);
            const auto whole = [alpha](int share) {
                return alpha == 0 ? 0 : std::min((share * 255 + alpha / 2) / alpha, 255);
            };
            row[x] = qRgba(whole(qRed(row[x])), whole(qGreen(row[x])), whole(qBlue(row[x])), alpha);
        }
    }
}

Result<Picture> AvifDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    if (cancel)
        return cancelledError();
    Result<MagickPicture> read = readWithMagick(m_file, cancel);
    if (!read)
        return read.error();
    Picture picture;
    picture.fullSize = facts->size;
    picture.bitsPerPixel = facts->bitsPerPixel;
    picture.complete = m_complete && read->complete;
    picture.image = std::move(read->image);
    if (m_samples.channels == 1 && !picture.image.hasAlphaChannel())
        picture.image = picture.image.convertToFormat(QImage::Format_Grayscale8);
    if (picture.image.isNull())
        return noMemoryError();
    if (picture.image.size() != facts->size)
        return Error{ErrorKind::Damaged, QStringLiteral("the picture has not the size that its header told")};
    if (picture.image.format() == QImage::Format_ARGB32 && isHeifPremultiplied(m_file))
        unpremultiply(picture.image);
    picture.profile = read->profile;
    return picture;
}

/// Fills a file that was cut short up to the length that its boxes promise, so that the reader takes what is
/// there. A file that lost nearly everything is left alone.
bool filledUp(QByteArray& file)
{
    constexpr qint64 mostTimes = 16;
    const qint64 promised = promisedHeifLength(file);
    if (promised == file.size() || promised > file.size() * mostTimes)
        return false;
    try {
        file.resize(promised, '\0');
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace

QString AvifCodec::name() const
{
    return QStringLiteral("AVIF");
}

QStringList AvifCodec::extensions() const
{
    return {QStringLiteral("avif"), QStringLiteral("heic"), QStringLiteral("heif")};
}

bool AvifCodec::sniff(const QByteArray& head, const QString&) const
{
    return isHeif(head);
}

Result<std::unique_ptr<Decoder>> AvifCodec::open(std::shared_ptr<ByteSource> source) const
{
    Result<QByteArray> file = readForMagick(*source);
    if (!file)
        return file.error();
    if (!sniff(*file, QString()))
        return Error{ErrorKind::Damaged, QStringLiteral("no mark of %1").arg(name())};
    const bool filled = filledUp(*file);
    const Result<MagickFacts> facts = pingWithMagick(*file);
    if (!facts)
        return facts.error();
    return std::unique_ptr<Decoder>(std::make_unique<AvifDecoder>(*std::move(file), *facts, !filled));
}

bool AvifCodec::canEncode(const QString&) const
{
    return false;
}

Result<QByteArray> AvifCodec::encode(const QImage&, const QString&, const EncodeOptions&) const
{
    return Error{ErrorKind::Unsupported, QStringLiteral("AVIF and HEIF are not written")};
}

const Codec& avifCodec()
{
    static const AvifCodec codec;
    return codec;
}

} // namespace quorvia::engine
