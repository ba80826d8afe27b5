#include "engine/codecs/avif/HeifBoxes.h"
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifReader.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/OnePage.h"
#include "engine/Limits.h"

#include <algorithm>
#include <new>

namespace quorvia::engine {

namespace {

/// Beside Limits a picture must leave room for the library, which holds its planes, those of one step to RGB,
/// and turned copies of them.
Status checkPlanes(QSize size, int bits)
{
    return checkCost(size, bits > 8 ? 32 : 16);
}

class AvifDecoder final : public OnePageDecoder
{
  public:
    /// `complete` is false when the end of the file was filled up.
    AvifDecoder(std::unique_ptr<HeifReader> reader, bool complete)
        : m_reader(std::move(reader)), m_samples(heifSamples(m_reader->file())),
          m_sizes(heifCodedSizes(m_reader->file())), m_complete(complete)
    {
        m_sizes.append(m_reader->size());
    }

  private:
    Result<PageHeader> facts() override
    {
        const int bits = std::max(m_samples.bits, m_reader->bits());
        for (const QSize size : m_sizes) {
            const Status allowed = checkPlanes(size, bits);
            if (!allowed)
                return allowed.error();
        }
        const int channels = m_reader->hasAlpha() ? 4 : m_samples.channels;
        return PageHeader{m_reader->size(), channels * (bits > 8 ? 16 : 8)};
    }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    std::unique_ptr<HeifReader> m_reader;
    HeifSamples m_samples;
    QList<QSize> m_sizes; ///< that the library makes room for: those of the coded pictures and of the whole
    bool m_complete;
};

Result<Picture> AvifDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Result<QImage> image = m_reader->decode(cancel);
    if (!image)
        return image.error();
    Picture picture;
    picture.fullSize = facts.size;
    picture.bitsPerPixel = facts.bitsPerPixel;
    picture.complete = m_complete;
    picture.image = *std::move(image);
    if (m_samples.channels == 1 && !picture.image.hasAlphaChannel())
        picture.image = picture.image.convertToFormat(QImage::Format_Grayscale8);
    if (picture.image.isNull())
        return noMemoryError();
    picture.profile = m_reader->profile();
    return picture;
}

/// The bytes of `source`; TooLarge when a picture's file cannot be that long.
Result<QByteArray> wholeFile(const ByteSource& source)
{
    constexpr qint64 longest = qint64(1) << 30;
    if (source.size() > std::min(longest, Limits::machine().maxBytes / 4))
        return Error{ErrorKind::TooLarge, QStringLiteral("a file of %1 bytes").arg(source.size())};
    try {
        return source.bytes(0, source.size());
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
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

class AvifCodec final : public Codec
{
  public:
    AvifCodec()
        : Codec(QStringLiteral("AVIF"),
                {QStringLiteral("avif"), QStringLiteral("heic"), QStringLiteral("heif")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override { return isHeif(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        Result<QByteArray> file = wholeFile(*source);
        if (!file)
            return file.error();
        if (!sniff(*file, QString()))
            return Error{ErrorKind::Damaged, QStringLiteral("no mark of %1").arg(name())};
        const bool filled = filledUp(*file);
        Result<std::unique_ptr<HeifReader>> reader = HeifReader::open(*std::move(file));
        if (!reader)
            return reader.error();
        return std::unique_ptr<Decoder>(std::make_unique<AvifDecoder>(*std::move(reader), !filled));
    }
};

} // namespace

const Codec& avifCodec()
{
    static const AvifCodec codec;
    return codec;
}

} // namespace quorvia::engine
