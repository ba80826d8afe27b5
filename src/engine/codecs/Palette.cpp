#include "engine/codecs/Palette.h"

#include "engine/Codec.h"
#include "engine/codecs/ImageRows.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr int halfOpaque = 128;
constexpr QRgb clear = 0;

bool isClear(QRgb pixel)
{
    return qAlpha(pixel) < halfOpaque;
}

/// Draws `deep` into `result` with its exact colours; false when there are more than `colors`.
bool drawExactly(const QImage& deep, int colors, QImage& result)
{
    const bool mayBeClear = deep.hasAlphaChannel(); // else the fourth byte says nothing, and may be 0
    QHash<QRgb, int> indexOf;
    QList<QRgb> palette;
    QRgb lastKey = 1; // no key has this value
    uchar lastIndex = 0;
    for (int y = 0; y < deep.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(deep.constScanLine(y));
        uchar* out = result.scanLine(y);
        for (int x = 0; x < deep.width(); ++x) {
            const QRgb key = mayBeClear && isClear(in[x]) ? clear : in[x] | 0xFF000000;
            if (key != lastKey) {
                auto found = indexOf.constFind(key);
                if (found == indexOf.constEnd()) {
                    if (palette.size() == colors)
                        return false;
                    found = indexOf.insert(key, int(palette.size()));
                    palette.append(key);
                }
                lastKey = key;
                lastIndex = uchar(*found);
            }
            out[x] = lastIndex;
        }
    }
    result.setColorTable(palette);
    return true;
}

using Point = std::array<double, 3>; // red, green, blue, 0..255

/// A cell of colour space with the pixels that fall into it.
struct Cell
{
    double count = 0;
    Point sum = {};

    double mean(size_t axis) const { return sum[axis] / count; }
};

/// Neighbouring cells that become one palette entry.
struct Box
{
    size_t begin = 0;
    size_t end = 0;
    size_t axis = 0;   ///< along which the cells lie widest apart
    double spread = 0; ///< summed square distance from the mean along it

    size_t cells() const { return end - begin; }
};

std::vector<Cell> cellsOf(const QImage& deep)
{
    const bool mayBeClear = deep.hasAlphaChannel();
    std::vector<Cell> cells(size_t(1) << 16);
    for (int y = 0; y < deep.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(deep.constScanLine(y));
        for (int x = 0; x < deep.width(); ++x) {
            const QRgb pixel = in[x];
            if (mayBeClear && isClear(pixel))
                continue;
            Cell& cell = cells[size_t(qRed(pixel) >> 3 << 11 | qGreen(pixel) >> 2 << 5 | qBlue(pixel) >> 3)];
            cell.count += 1;
            cell.sum[0] += qRed(pixel);
            cell.sum[1] += qGreen(pixel);
            cell.sum[2] += qBlue(pixel);
        }
    }
    std::erase_if(cells, [](const Cell& cell) { return cell.count == 0; });
    return cells;
}

Box measured(const std::vector<Cell>& cells, size_t begin, size_t end)
{
    Box box = {begin, end, 0, 0};
    for (size_t axis = 0; axis < 3; ++axis) {
        double count = 0;
        double sum = 0;
        double squares = 0;
        for (size_t i = begin; i < end; ++i) {
            const double mean = cells[i].mean(axis);
            count += cells[i].count;
            sum += cells[i].sum[axis];
            squares += mean * mean * cells[i].count;
        }
        const double spread = squares - sum * sum / count;
        if (spread > box.spread) {
            box.spread = spread;
            box.axis = axis;
        }
    }
    return box;
}

/// Where to cut a box whose cells are sorted along its axis: the two parts' spreads add up to the least.
size_t bestCut(const std::vector<Cell>& cells, const Box& box)
{
    double allCount = 0;
    double allSum = 0;
    for (size_t i = box.begin; i < box.end; ++i) {
        allCount += cells[i].count;
        allSum += cells[i].sum[box.axis];
    }
    size_t cut = box.begin + 1;
    double best = -1;
    double count = 0;
    double sum = 0;
    for (size_t i = box.begin; i + 1 < box.end; ++i) {
        count += cells[i].count;
        sum += cells[i].sum[box.axis];
        const double rest = allSum - sum;
        const double gain = sum * sum / count + rest * rest / (allCount - count);
        if (gain > best) {
            best = gain;
            cut = i + 1;
        }
    }
    return cut;
}

QList<QRgb> bestPalette(const QImage& deep, int colors)
{
    std::vector<Cell> cells = cellsOf(deep);
    std::vector<Box> boxes = {measured(cells, 0, cells.size())};
    while (int(boxes.size()) < colors) {
        const auto widest = std::max_element(boxes.begin(), boxes.end(), [](const Box& a, const Box& b) {
            return (a.cells() > 1 ? a.spread : -1) < (b.cells() > 1 ? b.spread : -1);
        });
        if (widest->cells() < 2)
            break;
        const Box box = *widest;
        std::sort(cells.begin() + qsizetype(box.begin), cells.begin() + qsizetype(box.end),
                  [&](const Cell& a, const Cell& b) { return a.mean(box.axis) < b.mean(box.axis); });
        const size_t cut = bestCut(cells, box);
        *widest = measured(cells, box.begin, cut);
        boxes.push_back(measured(cells, cut, box.end));
    }
    QList<QRgb> palette;
    for (const Box& box : boxes) {
        Cell all;
        for (size_t i = box.begin; i < box.end; ++i) {
            all.count += cells[i].count;
            for (size_t axis = 0; axis < 3; ++axis)
                all.sum[axis] += cells[i].sum[axis];
        }
        palette.append(qRgb(int(std::lround(all.mean(0))), int(std::lround(all.mean(1))),
                            int(std::lround(all.mean(2)))));
    }
    return palette;
}

/// Finds the palette entry nearest to a colour; answers are kept for colours alike in their upper six bits.
class Nearest
{
  public:
    explicit Nearest(QList<QRgb> palette) : m_palette(std::move(palette)), m_known(size_t(1) << 18, unknown)
    {
    }

    int operator()(int red, int green, int blue)
    {
        short& known = m_known[size_t(red >> 2 << 12 | green >> 2 << 6 | blue >> 2)];
        if (known == unknown)
            known = search(red, green, blue);
        return known;
    }
    QRgb color(int index) const { return m_palette[index]; }

  private:
    short search(int red, int green, int blue) const
    {
        int best = 0;
        int bestDistance = std::numeric_limits<int>::max();
        for (int i = 0; i < m_palette.size(); ++i) {
            const int r = red - qRed(m_palette[i]);
            const int g = green - qGreen(m_palette[i]);
            const int b = blue - qBlue(m_palette[i]);
            const int distance = 2 * r * r + 4 * g * g + 3 * b * b; // the eye weighs green most
            if (distance < bestDistance) {
                bestDistance = distance;
                best = i;
            }
        }
        return short(best);
    }

    static constexpr short unknown = -1;
    QList<QRgb> m_palette;
    std::vector<short> m_known;
};

/// The errors that rows hand on to their neighbours, in sixteenths, with a rim of one pixel at both ends.
using Errors = std::vector<std::array<int, 3>>;

/// Maps one row by Floyd and Steinberg's error diffusion; `here` holds what the row above has handed on.
/// Without a `clearIndex` every pixel is opaque.
void diffuseRow(const QRgb* in, uchar* out, int width, Nearest& nearest, std::optional<int> clearIndex,
                Errors& here, Errors& below)
{
    for (int x = 0; x < width; ++x) {
        if (clearIndex && isClear(in[x])) {
            out[x] = uchar(*clearIndex);
            continue;
        }
        const std::array<int, 3> wanted = {qRed(in[x]), qGreen(in[x]), qBlue(in[x])};
        const size_t at = size_t(x) + 1;
        std::array<int, 3> corrected;
        for (size_t c = 0; c < 3; ++c)
            corrected[c] = std::clamp(wanted[c] + here[at][c] / 16, 0, 255);
        const int index = nearest(corrected[0], corrected[1], corrected[2]);
        out[x] = uchar(index);
        const QRgb got = nearest.color(index);
        const std::array<int, 3> drawn = {qRed(got), qGreen(got), qBlue(got)};
        for (size_t c = 0; c < 3; ++c) {
            const int error = corrected[c] - drawn[c];
            here[at + 1][c] += error * 7;
            below[at - 1][c] += error * 3;
            below[at][c] += error * 5;
            below[at + 1][c] += error;
        }
    }
}

bool hasClearPixel(const QImage& deep)
{
    for (int y = 0; y < deep.height(); ++y) {
        const auto* in = reinterpret_cast<const QRgb*>(deep.constScanLine(y));
        if (std::any_of(in, in + deep.width(), isClear))
            return true;
    }
    return false;
}

/// Draws `deep` into `result` with the best palette of `colors` entries.
void diffuse(const QImage& deep, int colors, QImage& result)
{
    const bool needsClear = deep.hasAlphaChannel() && hasClearPixel(deep);
    QList<QRgb> palette = bestPalette(deep, needsClear ? colors - 1 : colors);
    Nearest nearest(palette);
    std::optional<int> clearIndex;
    if (needsClear) {
        clearIndex = int(palette.size());
        palette.append(clear);
    }

    Errors here(size_t(deep.width()) + 2);
    Errors below(here.size());
    for (int y = 0; y < deep.height(); ++y) {
        diffuseRow(reinterpret_cast<const QRgb*>(deep.constScanLine(y)), result.scanLine(y), deep.width(),
                   nearest, clearIndex, here, below);
        std::swap(here, below);
        std::fill(below.begin(), below.end(), std::array<int, 3>{});
    }
    result.setColorTable(palette);
}

} // namespace

bool hasTransparentEntry(const QImage& image)
{
    const QList<QRgb> palette = image.colorTable();
    return std::any_of(palette.begin(), palette.end(), [](QRgb color) { return qAlpha(color) != 255; });
}

QImage storable(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_Indexed8:
        return hasTransparentEntry(image) ? inFormat(image, QImage::Format_ARGB32) : image;
    case QImage::Format_MonoLSB:
        return storable(image.convertToFormat(QImage::Format_Mono));
    case QImage::Format_Grayscale8:
        return image;
    case QImage::Format_Grayscale16:
        return inFormat(image, QImage::Format_Grayscale8);
    default:
        return inFormat(image, image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    }
}

QImage reducedToPalette(const QImage& image, int colors)
{
    const QImage deep =
        inFormat(image, image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QImage result = deep.isNull() ? QImage() : allocateImage(deep.size(), QImage::Format_Indexed8);
    if (result.isNull())
        return {};
    if (!drawExactly(deep, colors, result))
        diffuse(deep, colors, result);
    return result;
}

} // namespace quorvia::engine
