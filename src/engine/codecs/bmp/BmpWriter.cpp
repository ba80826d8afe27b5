#include "engine/codecs/bmp/BmpWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"
#include "engine/ColorConversion.h"

#include <QtEndian>

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr int fileHeaderBytes = 14;
constexpr int plainHeaderBytes = 40;
constexpr int v5HeaderBytes = 124;

struct Shape
{
    int bits = 24;
    quint32 compression = 0; // 0 rows, 1 RLE8, 3 masks
    int headerBytes = plainHeaderBytes;
    QList<QRgb> palette;
    QByteArray profile = {}; // stands behind the pixels, under a version 5 header
};

template <class T>
void append(QByteArray& out, T value)
{
    const T little = qToLittleEndian(value);
    out.append(reinterpret_cast<const char*>(&little), sizeof little);
}

qint32 dotsPerMeter(int told)
{
    constexpr int screen = 3780; // 96 dots per inch
    return told > 0 ? told : screen;
}

/// What a version 5 header has more than the plain one. `profileOffset` counts from the header's start.
void appendV5Tail(QByteArray& out, const Shape& shape, qint64 profileOffset)
{
    const bool masked = shape.compression == 3;
    for (const quint32 mask : {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0xFF000000u})
        append<quint32>(out, masked ? mask : 0);
    const bool embeds = !shape.profile.isEmpty();
    append<quint32>(out, embeds ? 0x4D424544 : 0x73524742); // colour space: "MBED" or "sRGB"
    constexpr int endpointsAndGamma = 36 + 12;
    out.append(endpointsAndGamma, '\0');
    append<quint32>(out, 4); // intent: images
    append<quint32>(out, embeds ? quint32(profileOffset) : 0);
    append<quint32>(out, quint32(shape.profile.size()));
    append<quint32>(out, 0); // reserved
}

/// Bytes before the pixels.
qint64 pixelOffset(const Shape& shape)
{
    return fileHeaderBytes + shape.headerBytes + 4 * shape.palette.size();
}

/// Bytes of the whole file.
qint64 fileBytes(const Shape& shape, qint64 pixelBytes)
{
    return pixelOffset(shape) + pixelBytes + shape.profile.size();
}

/// The headers and the palette of a file with `pixelBytes` bytes of pixels behind them, and behind those the
/// profile.
QByteArray headersOf(const QImage& image, const Shape& shape, qint64 pixelBytes)
{
    const qint64 offset = pixelOffset(shape);
    const qint64 total = fileBytes(shape, pixelBytes);
    QByteArray out;
    out.reserve(total);
    out.append("BM");
    append<quint32>(out, quint32(total));
    append<quint32>(out, 0);
    append<quint32>(out, quint32(offset));

    append<quint32>(out, quint32(shape.headerBytes));
    append<qint32>(out, image.width());
    append<qint32>(out, image.height());
    append<quint16>(out, 1); // planes
    append<quint16>(out, quint16(shape.bits));
    append<quint32>(out, shape.compression);
    append<quint32>(out, quint32(pixelBytes));
    append<qint32>(out, dotsPerMeter(image.dotsPerMeterX()));
    append<qint32>(out, dotsPerMeter(image.dotsPerMeterY()));
    append<quint32>(out, quint32(shape.palette.size()));
    append<quint32>(out, 0); // all colours matter
    if (shape.headerBytes == v5HeaderBytes)
        appendV5Tail(out, shape, offset - fileHeaderBytes + pixelBytes);
    for (const QRgb color : shape.palette)
        append<quint32>(out, color & 0xFFFFFF);
    return out;
}

bool fitsInto32Bits(const Shape& shape, qint64 pixelBytes)
{
    return fileBytes(shape, pixelBytes) <= qint64(std::numeric_limits<quint32>::max());
}

/// `shape` with `profile` when that is one of the colours of `image`.
Shape withProfile(Shape shape, const QImage& image, const QByteArray& profile)
{
    const bool grey = image.format() == QImage::Format_Grayscale8;
    if (colorModelOf(profile) == (grey ? ColorModel::Gray : ColorModel::Rgb)) {
        shape.profile = profile;
        shape.headerBytes = v5HeaderBytes;
    }
    return shape;
}

Error tooMuch()
{
    return Error{ErrorKind::Unsupported, QStringLiteral("a bitmap holds at most 4 GiB")};
}

QList<QRgb> greyRamp()
{
    QList<QRgb> ramp;
    for (int grey = 0; grey < 256; ++grey)
        ramp.append(qRgb(grey, grey, grey));
    return ramp;
}

/// The palette of an Indexed8 or Mono image as stored: never empty, at most what the depth can name.
QList<QRgb> storedPalette(const QImage& image)
{
    QList<QRgb> palette = image.colorTable();
    const qsizetype most = image.format() == QImage::Format_Mono ? 2 : 256;
    if (palette.isEmpty())
        palette = most == 2 ? QList<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)} : greyRamp();
    if (palette.size() > most)
        palette.resize(most);
    return palette;
}

Shape shapeOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
        return {1, 0, plainHeaderBytes, storedPalette(image)};
    case QImage::Format_Indexed8:
        return {8, 0, plainHeaderBytes, storedPalette(image)};
    case QImage::Format_Grayscale8:
        return {8, 0, plainHeaderBytes, greyRamp()};
    case QImage::Format_ARGB32:
        return {32, 3, v5HeaderBytes, {}};
    default:
        return {24, 0, plainHeaderBytes, {}};
    }
}

/// `image` laid over white, as RGB32.
QImage laidOverWhite(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return inFormat(image, QImage::Format_RGB32);
    return overWhite(inFormat(image, QImage::Format_ARGB32));
}

void packRow(const uchar* row, int width, int bits, char* out)
{
    if (bits == 24) {
        const auto* pixels = reinterpret_cast<const QRgb*>(row);
        for (int x = 0; x < width; ++x, out += 3) {
            out[0] = char(qBlue(pixels[x]));
            out[1] = char(qGreen(pixels[x]));
            out[2] = char(qRed(pixels[x]));
        }
        return;
    }
    if (bits == 32) {
        qToLittleEndian<quint32>(row, width, out);
        return;
    }
    std::copy_n(reinterpret_cast<const char*>(row), (qint64(width) * bits + 7) / 8, out);
    const int spare = bits == 1 ? (8 - width % 8) % 8 : 0;
    if (spare > 0) // bits behind the last pixel are anything in an image, nothing in a file
        out[(width - 1) / 8] = char(out[(width - 1) / 8] & (0xFF << spare));
}

void appendRun(QByteArray& out, int count, uchar value)
{
    out.append(char(count));
    out.append(char(value));
}

/// Pixels without a run: as literals from three on, which is the fewest that the code can name.
void appendLiterals(QByteArray& out, const uchar* row, int from, int to)
{
    while (from < to) {
        constexpr int most = 255;
        const int count = std::min(to - from, most);
        if (count < 3) {
            for (int i = 0; i < count; ++i)
                appendRun(out, 1, row[from + i]);
        } else {
            out.append('\0');
            out.append(char(count));
            out.append(reinterpret_cast<const char*>(row) + from, count);
            if (count % 2 != 0)
                out.append('\0');
        }
        from += count;
    }
}

void appendRleRow(QByteArray& out, const uchar* row, int width)
{
    constexpr int worthARun = 3;
    constexpr int most = 255;
    int pending = 0; // first pixel not written yet
    for (int x = 0; x < width;) {
        int end = x + 1;
        while (end < width && end - x < most && row[end] == row[x])
            ++end;
        if (end - x >= worthARun) {
            appendLiterals(out, row, pending, x);
            appendRun(out, end - x, row[x]);
            pending = end;
        }
        x = end;
    }
    appendLiterals(out, row, pending, width);
}

} // namespace

Result<QByteArray> writeBmp(const QImage& image, const QByteArray& profile)
{
    if (image.isNull())
        return noImageError();
    const QImage source = blankIfClear(storable(image));
    const Shape shape = withProfile(shapeOf(source), source, profile);
    const qint64 rowBytes = (qint64(source.width()) * shape.bits + 31) / 32 * 4;
    const qint64 pixelBytes = rowBytes * source.height();
    if (source.isNull() || !fitsInto32Bits(shape, pixelBytes))
        return tooMuch();
    QByteArray out = headersOf(source, shape, pixelBytes);
    const qint64 offset = out.size();
    out.resize(offset + pixelBytes, '\0');
    for (int y = 0; y < source.height(); ++y) {
        char* row = out.data() + offset + (source.height() - 1 - y) * rowBytes;
        packRow(source.constScanLine(y), source.width(), shape.bits, row);
    }
    out.append(shape.profile);
    return out;
}

Result<QByteArray> writeRleBmp(const QImage& image, const QByteArray& profile)
{
    if (image.isNull())
        return noImageError();
    const bool grey = image.format() == QImage::Format_Grayscale8;
    const bool kept = grey || (image.format() == QImage::Format_Indexed8 && !hasTransparentEntry(image));
    const QImage source = kept ? image : reducedToPalette(laidOverWhite(image), 256);
    QByteArray runs;
    for (int y = source.height() - 1; y >= 0; --y) {
        appendRleRow(runs, source.constScanLine(y), source.width());
        runs.append('\0');
        runs.append(y == 0 ? '\1' : '\0'); // end of the bitmap or of the row
    }
    const Shape plain = {8, 1, plainHeaderBytes, grey ? greyRamp() : storedPalette(source)};
    const Shape shape = withProfile(plain, source, profile);
    if (source.isNull() || !fitsInto32Bits(shape, runs.size()))
        return tooMuch();
    return headersOf(source, shape, runs.size()) + runs + shape.profile;
}

} // namespace quorvia::engine
