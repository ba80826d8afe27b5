#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/pnm/PnmLayout.h"
#include "engine/codecs/pnm/PnmText.h"
#include "engine/codecs/pnm/PnmWriter.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace quorvia::engine {

namespace {

/// Brings samples to 0..255: v * 255 / maxval, rounded; what is above maxval counts as maxval.
class SampleScale
{
  public:
    explicit SampleScale(int maxval) : m_maxval(maxval), m_scaled(size_t(maxval) + 1)
    {
        for (int value = 0; value <= maxval; ++value)
            m_scaled[size_t(value)] = uchar((value * 255 + maxval / 2) / maxval);
    }

    uchar of(int value) const { return m_scaled[size_t(std::min(value, m_maxval))]; }

  private:
    int m_maxval;
    std::vector<uchar> m_scaled;
};

class PnmDecoder final : public OnePageDecoder
{
  public:
    PnmDecoder(std::shared_ptr<ByteSource> source, PnmLayout layout)
        : m_source(std::move(source)), m_layout(layout)
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bitsPerPixel()}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    /// Read rows into `picture`; the number of pixels that were there.
    qint64 readRaw(Picture& picture, const CancelFlag& cancel) const;
    qint64 readPlain(Picture& picture, const CancelFlag& cancel) const;

    std::shared_ptr<ByteSource> m_source;
    PnmLayout m_layout;
};

QImage::Format formatOf(const PnmLayout& layout)
{
    if (layout.bilevel)
        return QImage::Format_Mono;
    if (layout.hasAlpha())
        return QImage::Format_ARGB32;
    return layout.channels == 3 ? QImage::Format_RGB32 : QImage::Format_Grayscale8;
}

/// Writes pixel `x` of a row that is not bilevel; `at(i)` gives its samples as 0..255.
template <class Samples>
void putPixel(uchar* row, int x, int channels, const Samples& at)
{
    auto* deep = reinterpret_cast<QRgb*>(row);
    switch (channels) {
    case 1:
        row[x] = at(0);
        break;
    case 2:
        deep[x] = qRgba(at(0), at(0), at(0), at(1));
        break;
    case 3:
        deep[x] = qRgb(at(0), at(1), at(2));
        break;
    default:
        deep[x] = qRgba(at(0), at(1), at(2), at(3));
    }
}

void putBit(uchar* row, int x, bool set)
{
    if (set)
        row[x / 8] = uchar(row[x / 8] | 0x80 >> x % 8);
}

/// Converts the first `count` pixels of a stored row.
void convertRow(const PnmLayout& layout, const SampleScale& scale, const uchar* stored, int count, uchar* row)
{
    if (layout.packedBits) {
        std::copy_n(stored, (count + 7) / 8, row);
        return;
    }
    if (layout.bilevel) {
        for (int x = 0; x < count; ++x)
            putBit(row, x, stored[x] != 0);
        return;
    }
    const int channels = layout.channels;
    if (layout.bytesPerSample() == 2) {
        for (int x = 0; x < count; ++x, stored += 2 * channels)
            putPixel(row, x, channels,
                     [&](int i) { return scale.of(stored[2 * i] << 8 | stored[2 * i + 1]); });
        return;
    }
    for (int x = 0; x < count; ++x, stored += channels)
        putPixel(row, x, channels, [&](int i) { return scale.of(stored[i]); });
}

Result<Picture> PnmDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Picture picture = blank(facts, formatOf(m_layout));
    if (picture.image.isNull())
        return noMemoryError();
    if (m_layout.bilevel) {
        const QRgb black = qRgb(0, 0, 0);
        const QRgb white = qRgb(255, 255, 255);
        picture.image.setColorTable(m_layout.oneIsBlack ? QList<QRgb>{white, black}
                                                        : QList<QRgb>{black, white});
    }
    const qint64 pixels = m_layout.plain ? readPlain(picture, cancel) : readRaw(picture, cancel);
    if (cancel)
        return cancelledError();
    if (pixels == 0)
        return nothingToShowError();
    picture.complete = pixels == qint64(facts.size.width()) * facts.size.height();
    return picture;
}

qint64 PnmDecoder::readRaw(Picture& picture, const CancelFlag& cancel) const
{
    constexpr qint64 chunkBytes = 256 * 1024;
    const SampleScale scale(m_layout.maxval);
    const qint64 rowBytes = m_layout.rowBytes();
    const int width = m_layout.size.width();
    const int height = m_layout.size.height();
    const int chunkRows = int(std::clamp<qint64>(chunkBytes / rowBytes, 1, height));
    std::vector<uchar> chunk(size_t(rowBytes * chunkRows));
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    qint64 pixels = 0;
    for (int first = 0; first < height && !cancel; first += chunkRows) {
        const int count = std::min(chunkRows, height - first);
        const qint64 got =
            m_source->read(m_layout.pixelOffset + first * rowBytes, chunk.data(), count * rowBytes);
        for (int i = 0; i < count; ++i) {
            const qint64 there = std::clamp<qint64>(got - i * rowBytes, 0, rowBytes);
            const qint64 whole =
                m_layout.packedBits ? there * 8 : there / (m_layout.channels * m_layout.bytesPerSample());
            const int part = int(std::min<qint64>(whole, width));
            convertRow(m_layout, scale, chunk.data() + i * rowBytes, part, bits + (first + i) * stride);
            pixels += part;
        }
        if (got < count * rowBytes)
            break;
    }
    return pixels;
}

qint64 PnmDecoder::readPlain(Picture& picture, const CancelFlag& cancel) const
{
    const SampleScale scale(m_layout.maxval);
    PnmText text(*m_source, m_layout.pixelOffset, std::numeric_limits<qint64>::max(), &cancel);
    qint64 pixels = 0;
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    for (int y = 0; y < m_layout.size.height() && !cancel; ++y) {
        uchar* row = bits + y * stride;
        for (int x = 0; x < m_layout.size.width(); ++x, ++pixels) {
            uchar samples[4] = {};
            for (int i = 0; i < m_layout.channels; ++i) {
                const int value = m_layout.bilevel ? text.digit() : text.number();
                if (value < 0)
                    return pixels;
                samples[i] = scale.of(value);
            }
            if (m_layout.bilevel)
                putBit(row, x, samples[0] != 0);
            else
                putPixel(row, x, m_layout.channels, [&](int i) { return samples[i]; });
        }
    }
    return pixels;
}

class PnmCodec final : public Codec
{
  public:
    PnmCodec()
        : Codec(QStringLiteral("PNM"),
                {QStringLiteral("ppm"), QStringLiteral("pgm"), QStringLiteral("pbm"), QStringLiteral("pnm"),
                 QStringLiteral("pam")},
                {QStringLiteral("pbm"), QStringLiteral("pgm"), QStringLiteral("ppm")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override { return isPnm(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<PnmDecoder>(source, readPnmLayout(*source));
    }

    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions&) const override
    {
        if (extension == QLatin1String("pbm"))
            return writePbm(image);
        return extension == QLatin1String("pgm") ? writePgm(image) : writePpm(image);
    }
};

} // namespace

const Codec& pnmCodec()
{
    static const PnmCodec codec;
    return codec;
}

} // namespace quorvia::engine
