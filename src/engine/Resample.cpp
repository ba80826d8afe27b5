#include "engine/Resample.h"

#include "engine/Bands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace quorvia::engine {

namespace {

// Fixed point: a weight of 1 is 2^14, so that a weight fits 16 bits and its product with a channel 32;
// between the passes a channel carries 6 bits below the point.
constexpr int weightBits = 14;
constexpr int unit = 1 << weightBits;
constexpr int betweenBits = 6;

/// Blue, green, red, alpha of a pixel between the passes.
using Channels = float __attribute__((vector_size(16)));

/// Which source pixels make each result pixel of one axis, and with what weights.
struct Axis
{
    struct Taps
    {
        int first;   ///< source pixel
        int count;   ///< taps, from `first` on
        int weights; ///< where they begin in Axis::weights
    };
    std::vector<Taps> taps;
    std::vector<std::int16_t> weights; ///< each pixel's sum to `unit`
    int low = 0;                       ///< the source pixels in use: [low, high)
    int high = 0;
    bool single = true; ///< no pixel has more than one tap
};

void addNearest(Axis& axis, int from, int to, int place)
{
    const auto at = static_cast<int>((2 * qint64(place) + 1) * from / (2 * qint64(to)));
    axis.taps.push_back({at, 1, static_cast<int>(axis.weights.size())});
    axis.weights.push_back(unit);
}

/// The result pixel covers [place * from, (place + 1) * from) where a source pixel is `to` long.
void addArea(Axis& axis, int from, int to, int place)
{
    const qint64 begin = qint64(place) * from;
    const qint64 end = begin + from;
    const auto first = static_cast<int>(begin / to);
    const auto last = static_cast<int>((end - 1) / to);
    axis.taps.push_back({first, last - first + 1, static_cast<int>(axis.weights.size())});
    // Rounding the running sum, not each weight, makes them add up to exactly `unit`.
    const auto rounded = [from](qint64 covered) { return (covered * unit + from / 2) / from; };
    qint64 before = 0;
    for (int source = first; source <= last; ++source) {
        const qint64 after = rounded(std::min(end, (qint64(source) + 1) * to) - begin);
        axis.weights.push_back(static_cast<std::int16_t>(after - before));
        before = after;
    }
}

double catmullRom(double distance)
{
    const double d = std::abs(distance);
    if (d < 1)
        return (1.5 * d - 2.5) * d * d + 1;
    if (d < 2)
        return ((-0.5 * d + 2.5) * d - 4) * d + 2;
    return 0;
}

void addBicubic(Axis& axis, int from, int to, int place)
{
    const double centre = (place + 0.5) * from / to - 0.5;
    const auto base = static_cast<int>(std::floor(centre));
    const int first = std::clamp(base - 1, 0, from - 1);
    const int last = std::clamp(base + 2, 0, from - 1);
    std::array<int, 4> weights = {};
    int sum = 0;
    for (int source = base - 1; source <= base + 2; ++source) {
        const int weight = static_cast<int>(std::lround(catmullRom(centre - source) * unit));
        weights[static_cast<size_t>(std::clamp(source, first, last) - first)] += weight; // edges repeat
        sum += weight;
    }
    *std::max_element(weights.begin(), weights.end()) += unit - sum;
    axis.taps.push_back({first, last - first + 1, static_cast<int>(axis.weights.size())});
    for (int i = 0; i <= last - first; ++i)
        axis.weights.push_back(static_cast<std::int16_t>(weights[static_cast<size_t>(i)]));
}

Axis makeAxis(int from, int to, int begin, int length, Filter filter)
{
    if (from == to)
        filter = Filter::Nearest; // all three are the identity then; this one is the cheapest
    Axis axis;
    axis.taps.reserve(static_cast<size_t>(length));
    axis.low = from;
    for (int place = begin; place < begin + length; ++place) {
        switch (filter) {
        case Filter::Nearest:
            addNearest(axis, from, to, place);
            break;
        case Filter::Area:
            addArea(axis, from, to, place);
            break;
        case Filter::Bicubic:
            addBicubic(axis, from, to, place);
            break;
        }
        const Axis::Taps& taps = axis.taps.back();
        axis.low = std::min(axis.low, taps.first);
        axis.high = std::max(axis.high, taps.first + taps.count);
        axis.single = axis.single && taps.count == 1;
    }
    return axis;
}

/// Reads rows of a normalized image as premultiplied 32-bit pixels.
class RowReader
{
  public:
    explicit RowReader(const QImage& image) : m_image(image)
    {
        m_palette.fill(0xff000000U); // an index beyond the table is black
        if (image.format() == QImage::Format_Grayscale8) {
            for (unsigned grey = 0; grey < m_palette.size(); ++grey)
                m_palette[grey] = 0xff000000U | grey * 0x010101U;
            return;
        }
        const QList<QRgb> table = image.colorTable();
        for (size_t i = 0; i < std::min<size_t>(m_palette.size(), static_cast<size_t>(table.size())); ++i)
            m_palette[i] = qPremultiply(table[static_cast<qsizetype>(i)]);
    }

    /// The pixels [low, high) of row `y`; they stand in the image itself or in `room`.
    const QRgb* read(int y, int low, int high, std::vector<QRgb>& room) const
    {
        const uchar* line = m_image.constScanLine(y);
        const auto* pixels = reinterpret_cast<const QRgb*>(line);
        const auto count = static_cast<size_t>(high - low);
        switch (m_image.format()) {
        case QImage::Format_RGB32:
        case QImage::Format_ARGB32_Premultiplied:
            return pixels + low;
        case QImage::Format_ARGB32:
            room.resize(count);
            std::transform(pixels + low, pixels + high, room.begin(),
                           [](QRgb pixel) { return qPremultiply(pixel); });
            break;
        case QImage::Format_Mono:
            room.resize(count);
            for (int x = low; x < high; ++x)
                room[static_cast<size_t>(x - low)] = m_palette[(line[x >> 3] >> (7 - (x & 7))) & 1];
            break;
        default: // Indexed8, Grayscale8
            room.resize(count);
            std::transform(line + low, line + high, room.begin(),
                           [this](uchar index) { return m_palette[index]; });
            break;
        }
        return room.data();
    }

  private:
    const QImage& m_image;
    std::array<QRgb, 256> m_palette;
};

/// The vertical pass of one result row over the source columns [low, high): the weighted sum of its source
/// rows, channel by channel, into `out`.
void sumRows(const RowReader& reader, int low, int high, const Axis& down, const Axis::Taps& taps,
             std::vector<QRgb>& room, std::vector<std::int32_t>& sums, Channels* out)
{
    const size_t channels = static_cast<size_t>(high - low) * 4;
    std::int32_t* sum = sums.data();
    std::fill_n(sum, channels, 1 << (weightBits - betweenBits - 1)); // half of what is cut off
    for (int i = 0; i < taps.count; ++i) {
        const auto* bytes =
            reinterpret_cast<const std::uint8_t*>(reader.read(taps.first + i, low, high, room));
        const std::int16_t weight = down.weights[static_cast<size_t>(taps.weights) + static_cast<size_t>(i)];
        for (size_t c = 0; c < channels; ++c)
            sum[c] += static_cast<std::int16_t>(bytes[c]) * weight;
    }
    auto* plain = reinterpret_cast<float*>(out);
    for (size_t c = 0; c < channels; ++c)
        plain[c] = static_cast<float>(sum[c] >> (weightBits - betweenBits));
}

/// The horizontal pass of one result row. In floating point: four channels take one multiplication, and the
/// sums are exact enough (24 bits for 20) whatever their length.
void sumColumns(const Axis& across, const std::vector<Channels>& between, bool alpha, QRgb* out)
{
    constexpr float scale = 1.0F / (1 << (weightBits + betweenBits));
    for (const Axis::Taps& taps : across.taps) {
        const Channels* values = between.data() + (taps.first - across.low);
        const std::int16_t* weights = across.weights.data() + taps.weights;
        Channels sum = {};
        for (int i = 0; i < taps.count; ++i)
            sum += values[i] * static_cast<float>(weights[i]);
        sum = sum * scale + 0.5F;
        const float top = alpha ? std::clamp(sum[3], 0.0F, 255.0F) : 255.0F;
        const auto channel = [&sum, top](int c) { // premultiplied: no colour above its alpha
            return static_cast<unsigned>(std::clamp(sum[c], 0.0F, top));
        };
        *out++ = static_cast<unsigned>(top) << 24 | channel(2) << 16 | channel(1) << 8 | channel(0);
    }
}

void pickColumns(const Axis& across, const QRgb* row, bool alpha, QRgb* out)
{
    const QRgb opaque = alpha ? 0U : 0xff000000U;
    for (const Axis::Taps& taps : across.taps)
        *out++ = row[taps.first - across.low] | opaque;
}

void resampleRows(const RowReader& reader, const Axis& across, const Axis& down, bool alpha, QImage& result,
                  uchar* bits, int from, int to)
{
    const auto width = static_cast<size_t>(across.high - across.low);
    std::vector<QRgb> room;
    constexpr int chunk = 1024; // columns whose sums stay in the nearest cache
    std::vector<std::int32_t> sums(chunk * 4);
    std::vector<Channels> between(width);
    const auto line = [&result, bits](int y) {
        return reinterpret_cast<QRgb*>(bits + y * result.bytesPerLine());
    };
    for (int y = from; y < to; ++y) {
        const Axis::Taps& taps = down.taps[static_cast<size_t>(y)];
        if (down.single && y > from && taps.first == down.taps[static_cast<size_t>(y - 1)].first) {
            std::copy_n(line(y - 1), result.width(), line(y));
        } else if (down.single && across.single) {
            pickColumns(across, reader.read(taps.first, across.low, across.high, room), alpha, line(y));
        } else {
            for (int low = across.low; low < across.high; low += chunk)
                sumRows(reader, low, std::min(low + chunk, across.high), down, taps, room, sums,
                        between.data() + (low - across.low));
            sumColumns(across, between, alpha, line(y));
        }
    }
}

} // namespace

QImage normalized(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Invalid:
    case QImage::Format_Mono:
    case QImage::Format_Indexed8:
    case QImage::Format_Grayscale8:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        return image;
    case QImage::Format_MonoLSB:
        return image.convertToFormat(QImage::Format_Mono);
    case QImage::Format_Grayscale16:
        return image.convertToFormat(QImage::Format_Grayscale8);
    default:
        return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    }
}

bool isGrayByFormat(const QImage& image)
{
    if (image.format() == QImage::Format_Grayscale8)
        return true;
    const QList<QRgb> table = image.colorTable();
    return !table.isEmpty() && std::all_of(table.begin(), table.end(), [](QRgb color) {
        return qAlpha(color) == 255 && qRed(color) == qGreen(color) && qGreen(color) == qBlue(color);
    });
}

QImage resampled(const QImage& source, QSize target, QRect part, Filter across, Filter down)
{
    if (source.isNull() || part.isEmpty() || !QRect(QPoint(), target).contains(part))
        return {};
    const QImage image = source.format() == QImage::Format_ARGB32_Premultiplied ? source : normalized(source);
    const bool alpha = image.hasAlphaChannel();
    QImage result(part.size(), alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (image.isNull() || result.isNull())
        return {};
    const Axis columns = makeAxis(image.width(), target.width(), part.x(), part.width(), across);
    const Axis rows = makeAxis(image.height(), target.height(), part.y(), part.height(), down);
    const RowReader reader(image);
    const qint64 steps = qint64(columns.high - columns.low) * std::max(rows.high - rows.low, part.height()) +
                         qint64(part.width()) * part.height();
    uchar* bits = result.bits(); // once, here: asking for it may detach
    inBands(part.height(), bandCount(part.height(), steps), [&](int, int from, int to) {
        resampleRows(reader, columns, rows, alpha, result, bits, from, to);
    });
    return result;
}

} // namespace quorvia::engine
