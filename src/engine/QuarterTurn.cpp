#include "engine/QuarterTurn.h"

#include "engine/Bands.h"
#include "engine/Codec.h"

#include <QColorSpace>
#include <QTransform>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

QImage turnedMono(const QImage& image, int quarters)
{
    const int width = image.width();
    const int height = image.height();
    QImage result(quarters == 2 ? image.size() : image.size().transposed(), QImage::Format_Mono);
    if (result.isNull())
        return {};
    result.fill(0);
    uchar* bits = result.bits();
    const qsizetype lineBytes = result.bytesPerLine();
    for (int y = 0; y < height; ++y) {
        const uchar* line = image.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            if (((line[x >> 3] >> (7 - (x & 7))) & 1) == 0)
                continue;
            const int toX = quarters == 1 ? y : quarters == 2 ? width - 1 - x : height - 1 - y;
            const int toY = quarters == 1 ? width - 1 - x : quarters == 2 ? height - 1 - y : x;
            bits[toY * lineBytes + (toX >> 3)] |= static_cast<uchar>(0x80 >> (toX & 7));
        }
    }
    return result;
}

/// The rows of an image whose pixels are values of type Pixel, to be read or (Pixel not const) written.
template <class Pixel, class Byte>
struct Rows
{
    Byte* bits;
    qsizetype lineBytes;

    Pixel* operator[](int y) const { return reinterpret_cast<Pixel*>(bits + y * lineBytes); }
};

/// A turn by one quarter or by three, pixel by pixel and in blocks of 4 x 4.
template <class Pixel>
struct Turn
{
    Rows<const Pixel, const uchar> from;
    Rows<Pixel, uchar> to;
    QSize size; ///< of the image that is turned
    bool isClockwise;

    int sourceRow(int x) const { return isClockwise ? size.height() - 1 - x : x; }
    int sourceColumn(int y) const { return isClockwise ? y : size.width() - 1 - y; }

    /// The pixels of the result in rows `top` to `bottom` and columns `left` to `right`, these excluded.
    void pixels(int top, int bottom, int left, int right) const
    {
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x)
                to[y][x] = from[sourceRow(x)][sourceColumn(y)];
        }
    }

    /// The 4 x 4 pixels of the result from row `y` and column `x` on.
    void block(int y, int x) const
    {
        typedef Pixel Four __attribute__((vector_size(4 * sizeof(Pixel))));
        const auto four = [column = std::min(sourceColumn(y), sourceColumn(y + 3))](const Pixel* row) {
            Four read;
            std::memcpy(&read, row + column, sizeof(read));
            return read;
        };
        const Four a = four(from[sourceRow(x)]);
        const Four b = four(from[sourceRow(x + 1)]);
        const Four c = four(from[sourceRow(x + 2)]);
        const Four d = four(from[sourceRow(x + 3)]);
        const Four lowAb = __builtin_shufflevector(a, b, 0, 4, 1, 5);
        const Four highAb = __builtin_shufflevector(a, b, 2, 6, 3, 7);
        const Four lowCd = __builtin_shufflevector(c, d, 0, 4, 1, 5);
        const Four highCd = __builtin_shufflevector(c, d, 2, 6, 3, 7);
        const auto put = [this, y, x](int number, const Four& columns) {
            std::memcpy(to[isClockwise ? y + number : y + 3 - number] + x, &columns, sizeof(columns));
        };
        put(0, __builtin_shufflevector(lowAb, lowCd, 0, 1, 4, 5));
        put(1, __builtin_shufflevector(lowAb, lowCd, 2, 3, 6, 7));
        put(2, __builtin_shufflevector(highAb, highCd, 0, 1, 4, 5));
        put(3, __builtin_shufflevector(highAb, highCd, 2, 3, 6, 7));
    }

    /// Has the pixels for a tile on their way from memory, which would not foresee the steps across the rows.
    void fetch(int top, int bottom, int left, int right) const
    {
        constexpr int line = 64 / int(sizeof(Pixel));
        const int first = std::min(sourceColumn(top), sourceColumn(bottom - 1));
        const int last = std::max(sourceColumn(top), sourceColumn(bottom - 1));
        for (int x = left; x < right; ++x) {
            const Pixel* const row = from[sourceRow(x)];
            for (int column = first; column <= last; column += line)
                __builtin_prefetch(row + column);
            __builtin_prefetch(row + last);
        }
    }

    void tile(int top, int bottom, int left, int right) const
    {
        const int wholeBottom = top + (bottom - top) / 4 * 4;
        const int wholeRight = left + (right - left) / 4 * 4;
        for (int y = top; y < wholeBottom; y += 4) {
            for (int x = left; x < wholeRight; x += 4)
                block(y, x);
        }
        pixels(top, wholeBottom, wholeRight, right);
        pixels(wholeBottom, bottom, left, right);
    }
};

/// Fills `result` with `image` turned by one quarter or by three. Rows become columns, so that one of the two
/// is always walked across its rows: done in tiles whose rows the processor's cache holds all at once.
template <class Pixel>
void turnOnce(const QImage& image, int quarters, QImage& result)
{
    constexpr int tileRows = 64 / int(sizeof(Pixel)); // of the result: one line of the cache in each row read
    constexpr int tileColumns = 64;
    const Turn<Pixel> turn{{image.constBits(), image.bytesPerLine()},
                           {result.bits(), result.bytesPerLine()},
                           image.size(),
                           quarters == 3};
    const int width = result.width();
    inBands(result.height(), bandCount(result.height(), qint64(width) * result.height()),
            [&](int, int begin, int end) {
                for (int top = begin; top < end; top += tileRows) {
                    const int bottom = std::min(end, top + tileRows);
                    for (int left = 0; left < width; left += tileColumns) {
                        const int right = std::min(width, left + tileColumns);
                        turn.fetch(top, bottom, right, std::min(width, right + tileColumns));
                        turn.tile(top, bottom, left, right);
                    }
                }
            });
}

/// Fills `result` with `image` upside down and back to front.
template <class Pixel>
void turnTwice(const QImage& image, QImage& result)
{
    const Rows<const Pixel, const uchar> from{image.constBits(), image.bytesPerLine()};
    const Rows<Pixel, uchar> to{result.bits(), result.bytesPerLine()};
    const int width = image.width();
    const int lastRow = image.height() - 1;
    inBands(result.height(), bandCount(result.height(), qint64(width) * result.height()),
            [&](int, int begin, int end) {
                for (int y = begin; y < end; ++y) {
                    const Pixel* const line = from[lastRow - y];
                    std::reverse_copy(line, line + width, to[y]);
                }
            });
}

template <class Pixel>
QImage turnedPixels(const QImage& image, int quarters)
{
    QImage result = allocateImage(quarters == 2 ? image.size() : image.size().transposed(), image.format());
    if (result.isNull())
        return {};
    if (quarters == 2)
        turnTwice<Pixel>(image, result);
    else
        turnOnce<Pixel>(image, quarters, result);
    return result;
}

QImage moved(const QImage& image, int quarters)
{
    if (image.format() == QImage::Format_Mono)
        return turnedMono(image, quarters);
    if (image.depth() == 32)
        return turnedPixels<quint32>(image, quarters);
    if (image.depth() == 8)
        return turnedPixels<quint8>(image, quarters);
    return image.transformed(QTransform().rotate(-90 * quarters)); // exact too
}

} // namespace

QImage turned(const QImage& image, int quarters)
{
    if (quarters == 0 || image.isNull())
        return image;
    QImage result = moved(image, quarters);
    if (result.isNull())
        return {};
    result.setColorTable(image.colorTable());
    result.setColorSpace(image.colorSpace());
    return result;
}

} // namespace quorvia::engine
