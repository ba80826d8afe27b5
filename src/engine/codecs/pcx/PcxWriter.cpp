#include "engine/codecs/pcx/PcxWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr int widest = 65535;
constexpr QRgb black = 0xFF000000;
constexpr QRgb white = 0xFFFFFFFF;

struct Shape
{
    int bitsPerSample = 8;
    int planes = 1;
    bool flip = false;   ///< 1 bit: entry 0 is white, which the format wants as 1
    QList<QRgb> palette; ///< of 8-bit pictures
};

bool isBlackAndWhite(const QImage& image)
{
    const QList<QRgb> palette = image.colorTable();
    return image.format() == QImage::Format_Mono &&
           (palette.isEmpty() || palette == QList<QRgb>{black, white} ||
            palette == QList<QRgb>{white, black});
}

Shape shapeOf(const QImage& image)
{
    Shape shape;
    if (isBlackAndWhite(image)) {
        shape.bitsPerSample = 1;
        shape.flip = !image.colorTable().isEmpty() && image.color(0) == white;
    } else if (image.format() == QImage::Format_Grayscale8 ||
               (image.format() == QImage::Format_Indexed8 && image.colorCount() == 0)) {
        for (int grey = 0; grey < 256; ++grey)
            shape.palette.append(qRgb(grey, grey, grey));
    } else if (image.colorCount() > 0) {
        shape.palette = image.colorTable();
    } else {
        shape.planes = 3;
    }
    return shape;
}

void appendWord(QByteArray& out, int value)
{
    out.append(char(value & 0xFF));
    out.append(char(value >> 8 & 0xFF));
}

int dotsPerInch(int dotsPerMeter)
{
    constexpr int screen = 96;
    constexpr double metersPerInch = 0.0254;
    return dotsPerMeter > 0 ? std::clamp(int(std::lround(dotsPerMeter * metersPerInch)), 1, 65535) : screen;
}

QByteArray headerOf(const QImage& image, const Shape& shape, int planeBytes)
{
    QByteArray out = QByteArray::fromHex("0a0501");
    out.append(char(shape.bitsPerSample));
    for (const int corner : {0, 0, image.width() - 1, image.height() - 1})
        appendWord(out, corner);
    appendWord(out, dotsPerInch(image.dotsPerMeterX()));
    appendWord(out, dotsPerInch(image.dotsPerMeterY()));
    out.append(QByteArray(3, '\0') + QByteArray(3, '\xFF')); // the two colours of a 1-bit picture
    out.append(65 - out.size(), '\0');
    out.append(char(shape.planes));
    appendWord(out, planeBytes);
    appendWord(out, 1); // the palette holds colours
    out.append(128 - out.size(), '\0');
    return out;
}

/// One plane's row; a byte of C0 and above stands in a run of its own.
void appendRuns(QByteArray& out, const uchar* row, int count)
{
    constexpr int longestRun = 63;
    constexpr int runMark = 0xC0;
    for (int x = 0; x < count;) {
        int length = 1;
        while (length < longestRun && x + length < count && row[x + length] == row[x])
            ++length;
        if (length > 1 || row[x] >= runMark)
            out.append(char(runMark | length));
        out.append(char(row[x]));
        x += length;
    }
}

/// Brings plane `plane` of row `y` into `out`, which is wide enough.
void takePlane(const QImage& image, const Shape& shape, int y, int plane, std::vector<uchar>& out)
{
    const uchar* row = image.constScanLine(y);
    const int width = image.width();
    if (shape.planes == 3) {
        const auto* deep = reinterpret_cast<const QRgb*>(row);
        for (int x = 0; x < width; ++x)
            out[size_t(x)] = uchar(deep[x] >> (16 - 8 * plane));
    } else if (shape.bitsPerSample == 1) {
        const int bytes = (width + 7) / 8;
        const uchar mask = uchar(shape.flip ? 0xFF : 0);
        for (int i = 0; i < bytes; ++i)
            out[size_t(i)] = row[i] ^ mask;
        if (width % 8 != 0) // what lies behind the last pixel is anything in an image, nothing in a file
            out[size_t(bytes) - 1] &= uchar(0xFF << (8 - width % 8));
    } else if (image.format() == QImage::Format_Mono) {
        for (int x = 0; x < width; ++x)
            out[size_t(x)] = row[x / 8] >> (7 - x % 8) & 1;
    } else {
        std::copy_n(row, width, out.begin());
    }
}

void appendPalette(QByteArray& out, const QList<QRgb>& palette)
{
    out.append('\x0C');
    for (int i = 0; i < 256; ++i) {
        const QRgb color = i < palette.size() ? palette[i] : black;
        out.append(char(qRed(color)));
        out.append(char(qGreen(color)));
        out.append(char(qBlue(color)));
    }
}

QByteArray packed(const QImage& image, const Shape& shape)
{
    const int used = shape.bitsPerSample == 1 ? (image.width() + 7) / 8 : image.width();
    const int planeBytes = std::min(used + used % 2, widest); // an even number, where it can be named
    std::vector<uchar> row(size_t(planeBytes), 0);
    QByteArray out = headerOf(image, shape, planeBytes);
    for (int first = 0; first < image.height(); first += stripRows) {
        const int count = std::min(stripRows, image.height() - first);
        const bool alpha = shape.planes == 3 && image.hasAlphaChannel();
        const QImage strip = alpha ? overWhite(rowsAs(image, first, count, QImage::Format_ARGB32))
                                   : rowsAs(image, first, count, image.format());
        if (strip.isNull())
            return {};
        for (int y = 0; y < count; ++y) {
            for (int plane = 0; plane < shape.planes; ++plane) {
                takePlane(strip, shape, y, plane, row);
                appendRuns(out, row.data(), planeBytes);
            }
        }
    }
    if (!shape.palette.isEmpty())
        appendPalette(out, shape.palette);
    return out;
}

} // namespace

Result<QByteArray> writePcx(const QImage& image)
{
    if (image.isNull())
        return noImageError();
    if (image.width() > widest || image.height() > widest)
        return Error{ErrorKind::Unsupported, QStringLiteral("a PCX has 1 to 65535 pixels a side")};
    try {
        const QImage source = storable(image);
        const QByteArray bytes = source.isNull() ? QByteArray() : packed(source, shapeOf(source));
        if (bytes.isEmpty())
            return noMemoryError();
        return bytes;
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

} // namespace quorvia::engine
