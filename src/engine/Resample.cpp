#include "engine/Resample.h"

#include "engine/Bands.h"
#include "engine/RowSums.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace quorvia::engine {

namespace {

/// Which source pixels make each result pixel of one axis, and with what weights.
struct Axis
{
    std::vector<Taps> taps;
    std::vector<std::int16_t> weights; ///< each pixel's sum to `weightUnit`
    int low = 0;                       ///< the source pixels in use: [low, high)
    int high = 0;
    bool single = true; ///< no pixel has more than one tap
};

void addNearest(Axis& axis, int from, int to, int place)
{
    const auto at = static_cast<int>((2 * qint64(place) + 1) * from / (2 * qint64(to)));
    axis.taps.push_back({at, 1, static_cast<int>(axis.weights.size())});
    axis.weights.push_back(weightUnit);
}

/// The result pixel covers [place * from, (place + 1) * from) where a source pixel is `to` long.
void addArea(Axis& axis, int from, int to, int place)
{
    const qint64 begin = qint64(place) * from;
    const qint64 end = begin + from;
    const auto first = static_cast<int>(begin / to);
    const auto last = static_cast<int>((end - 1) / to);
    axis.taps.push_back({first, last - first + 1, static_cast<int>(axis.weights.size())});
    // Rounding the running sum, not each weight, makes them add up to exactly `weightUnit`.
    const auto rounded = [from](qint64 covered) { return (covered * weightUnit + from / 2) / from; };
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
        const int weight = static_cast<int>(std::lround(catmullRom(centre - source) * weightUnit));
        weights[static_cast<size_t>(std::clamp(source, first, last) - first)] += weight; // edges repeat
        sum += weight;
    }
    *std::max_element(weights.begin(), weights.end()) += weightUnit - sum;
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
        const Taps& taps = axis.taps.back();
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

    /// True when read() only points into the image.
    bool readsInPlace() const
    {
        return m_image.format() == QImage::Format_RGB32 ||
               m_image.format() == QImage::Format_ARGB32_Premultiplied;
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

/// The vertical pass of one result row over all source columns in use: the weighted sums of its source rows,
/// channel by channel.
class RowSummer
{
  public:
    RowSummer(const RowReader& reader, const Axis& across, const Axis& down)
        : m_reader(reader), m_across(across), m_down(down),
          m_between(static_cast<size_t>(across.high - across.low))
    {
    }

    const std::vector<Channels>& sum(const Taps& taps)
    {
        const auto count = static_cast<size_t>(taps.count);
        m_rows.resize(count);
        m_rooms.resize(m_reader.readsInPlace() ? 1 : count);
        // Rows that have to be converted first are so in pieces that stay in the caches, however many they
        // are.
        const int chunk = m_reader.readsInPlace() ? m_across.high - m_across.low
                                                  : std::clamp(roomPixels / taps.count, 16, 1024);
        for (int low = m_across.low; low < m_across.high; low += chunk) {
            const int high = std::min(low + chunk, m_across.high);
            for (size_t i = 0; i < count; ++i)
                m_rows[i] = reinterpret_cast<const std::uint8_t*>(m_reader.read(
                    taps.first + static_cast<int>(i), low, high, m_rooms[m_reader.readsInPlace() ? 0 : i]));
            sumDown(m_rows.data(), m_down.weights.data() + taps.weights, taps.count,
                    static_cast<size_t>(high - low) * 4,
                    reinterpret_cast<float*>(m_between.data() + (low - m_across.low)));
        }
        return m_between;
    }

  private:
    static constexpr int roomPixels = 1 << 16;

    const RowReader& m_reader;
    const Axis& m_across;
    const Axis& m_down;
    std::vector<const std::uint8_t*> m_rows;
    std::vector<std::vector<QRgb>> m_rooms;
    std::vector<Channels> m_between;
};

/// What a pixel takes on whose image has no alpha.
QRgb opaqueBits(bool alpha)
{
    return alpha ? 0U : 0xff000000U;
}

void pickColumns(const Axis& across, const QRgb* row, bool alpha, QRgb* out)
{
    const QRgb opaque = opaqueBits(alpha);
    for (const Taps& taps : across.taps)
        *out++ = row[taps.first - across.low] | opaque;
}

void resampleRows(const RowReader& reader, const Axis& across, const Axis& down, bool alpha, QImage& result,
                  uchar* bits, int from, int to)
{
    std::vector<QRgb> room;
    RowSummer summer(reader, across, down);
    const std::vector<float> weights(across.weights.begin(), across.weights.end());
    const auto line = [&result, bits](int y) {
        return reinterpret_cast<QRgb*>(bits + y * result.bytesPerLine());
    };
    for (int y = from; y < to; ++y) {
        const Taps& taps = down.taps[static_cast<size_t>(y)];
        if (down.single && y > from && taps.first == down.taps[static_cast<size_t>(y - 1)].first) {
            std::copy_n(line(y - 1), result.width(), line(y));
        } else if (down.single && across.single) {
            pickColumns(across, reader.read(taps.first, across.low, across.high, room), alpha, line(y));
        } else {
            // In floating point: four channels take one multiplication, and the sums are exact enough
            // (24 bits for 20) whatever their length.
            sumAlong(across.taps.data(), across.taps.size(), summer.sum(taps).data(), across.low,
                     weights.data(), alpha, line(y));
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

namespace {

/// The pixels of `part` as they are, without the work of finding that out column by column.
void copyPart(const RowReader& reader, QRect part, QRgb opaque, QImage& result)
{
    std::vector<QRgb> room;
    for (int y = 0; y < part.height(); ++y) {
        const QRgb* row = reader.read(part.y() + y, part.x(), part.x() + part.width(), room);
        std::transform(row, row + part.width(), reinterpret_cast<QRgb*>(result.scanLine(y)),
                       [opaque](QRgb pixel) { return pixel | opaque; });
    }
}

/// True when the fourth bytes of an RGB32 image are set, as painting takes for granted.
bool isFilled(const QImage& image)
{
    const int width = image.width();
    const int height = image.height();
    std::array<QRgb, 8> all; // so many side by side, which the processor does at once
    all.fill(~0U);
    for (int y = 0; y < height; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        int x = 0;
        for (; x + int(all.size()) <= width; x += int(all.size())) {
            for (size_t i = 0; i < all.size(); ++i)
                all[i] &= row[x + int(i)];
        }
        for (; x < width; ++x)
            all[0] &= row[x];
    }
    return std::all_of(all.begin(), all.end(), [](QRgb bits) { return qAlpha(bits) == 0xff; });
}

/// True when `image` is already what resampled() would make of all of it.
bool isResult(const QImage& image)
{
    return image.devicePixelRatio() == 1 && (image.format() == QImage::Format_ARGB32_Premultiplied ||
                                             (image.format() == QImage::Format_RGB32 && isFilled(image)));
}

} // namespace

QImage resampled(const QImage& source, QSize target, QRect part, Filter across, Filter down)
{
    if (source.isNull() || part.isEmpty() || !QRect(QPoint(), target).contains(part))
        return {};
    QImage image = source.format() == QImage::Format_ARGB32_Premultiplied ? source : normalized(source);
    if (image.size() == target && part.size() == target && isResult(image))
        return image;
    const bool alpha = image.hasAlphaChannel();
    QImage result(part.size(), alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (image.isNull() || result.isNull())
        return {};
    const RowReader reader(image);
    if (image.size() == target) {
        copyPart(reader, part, opaqueBits(alpha), result);
        return result;
    }
    const Axis columns = makeAxis(image.width(), target.width(), part.x(), part.width(), across);
    const Axis rows = makeAxis(image.height(), target.height(), part.y(), part.height(), down);
    const qint64 steps = qint64(columns.high - columns.low) * std::max(rows.high - rows.low, part.height()) +
                         qint64(part.width()) * part.height();
    uchar* bits = result.bits(); // once, here: asking for it may detach
    inBands(part.height(), bandCount(part.height(), steps), [&](int, int from, int to) {
        resampleRows(reader, columns, rows, alpha, result, bits, from, to);
    });
    return result;
}

} // namespace quorvia::engine
