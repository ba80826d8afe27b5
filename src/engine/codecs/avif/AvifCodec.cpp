#include "engine/codecs/avif/HeifBoxes.h"
#include "engine/codecs/avif/HeifReader.h"
#include "engine/codecs/avif/HeifSurvey.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/OnePage.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <algorithm>
#include <limits>
#include <new>

namespace quorvia::engine {

namespace {

/// The longest file that is read, bytes.
qint64 longestFile()
{
    constexpr qint64 longest = qint64(1) << 30;
    return std::min(longest, Limits::machine().maxBytes / 4);
}

/// Beside Limits a picture must leave room for the library, which holds its planes, those of one step to RGB,
/// and turned copies of them. The library counts the bytes of a plane, which it fills up to whole blocks, in
/// an int.
Status checkPlanes(QSize size, int channels, int bits)
{
    constexpr qint64 block = 64;
    const bool deep = bits > 8;
    Status allowed = checkCost(size, deep ? 32 : 16);
    if (!allowed)
        return allowed;
    const auto filled = [](int side) { return (side + block - 1) / block * block; };
    const qint64 bytes = filled(size.width()) * filled(size.height()) * channels * (deep ? 2 : 1);
    if (bytes > std::numeric_limits<int>::max())
        return Error{ErrorKind::TooLarge, QStringLiteral("%1 x %2 pixels are more than libheif can count")
                                              .arg(size.width())
                                              .arg(size.height())};
    return ok();
}

/// `profile` when its colours are those of a picture that is grey or not, else nothing.
QByteArray fitting(QByteArray profile, bool isGrey)
{
    const std::optional<ColorModel> model = colorModelOf(profile);
    const bool fits = model == ColorModel::Rgb || (isGrey && model == ColorModel::Gray);
    return fits ? std::move(profile) : QByteArray();
}

class AvifDecoder final : public OnePageDecoder
{
  public:
    /// `complete` is false when the end of the file was filled up.
    AvifDecoder(std::unique_ptr<HeifReader> reader, HeifSurvey survey, bool complete)
        : m_reader(std::move(reader)), m_survey(std::move(survey)), m_complete(complete)
    {
    }

    bool canBreakOff(int) const override { return false; }

  private:
    Result<PageHeader> facts() override
    {
        const int bits = std::max(m_survey.bits, m_reader->bits());
        const bool alpha = m_reader->hasAlpha();
        for (const QSize size : m_survey.coded + m_survey.canvases + QList<QSize>{m_reader->size()}) {
            const Status allowed = checkPlanes(size, alpha ? 4 : 3, bits);
            if (!allowed)
                return allowed.error();
        }
        if (m_survey.fault)
            return *m_survey.fault;
        const int channels = alpha ? 4 : m_survey.isGrey ? 1 : 3;
        return PageHeader{m_reader->size(), channels * (bits > 8 ? 16 : 8)};
    }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    std::unique_ptr<HeifReader> m_reader;
    HeifSurvey m_survey;
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
    // The configuration may lie: no colour gets lost for it.
    if (m_survey.isGrey && !picture.image.hasAlphaChannel() && picture.image.allGray())
        picture.image = picture.image.convertToFormat(QImage::Format_Grayscale8);
    if (picture.image.isNull())
        return noMemoryError();
    picture.profile = fitting(m_reader->profile(), picture.image.format() == QImage::Format_Grayscale8);
    return picture;
}

/// The bytes of `source`; TooLarge when a picture's file cannot be that long.
Result<QByteArray> wholeFile(const ByteSource& source)
{
    if (source.size() > longestFile())
        return Error{ErrorKind::TooLarge, QStringLiteral("a file of %1 bytes").arg(source.size())};
    try {
        return source.bytes(0, source.size());
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

/// Fills a file that was cut short up to the end of its `items`, as far as its boxes promise that, so that
/// the reader takes what is there. A file that lost nearly everything is left alone. True when it was filled:
/// `items` no longer lie in it then.
bool filledUp(QByteArray& file, const HeifItems& items)
{
    constexpr qint64 mostTimes = 16;
    const qint64 wanted = wantedHeifLength(file, items);
    if (wanted <= file.size() || wanted > file.size() * mostTimes || wanted > longestFile())
        return false;
    try {
        file.resize(wanted, '\0');
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
        Result<HeifItems> items = heifItems(*file);
        const bool filled = items && filledUp(*file, *items);
        if (filled)
            items = heifItems(*file);
        if (!items)
            return items.error();
        HeifSurvey survey = surveyHeif(*file, *items);
        if (survey.fault && survey.fault->kind == ErrorKind::Unsupported)
            return *survey.fault; // libheif finds no picture at all in such a file
        Result<std::unique_ptr<HeifReader>> reader = HeifReader::open(*std::move(file));
        if (!reader)
            return reader.error();
        return std::unique_ptr<Decoder>(
            std::make_unique<AvifDecoder>(*std::move(reader), std::move(survey), !filled));
    }
};

} // namespace

const Codec& avifCodec()
{
    static const AvifCodec codec;
    return codec;
}

} // namespace quorvia::engine
