#include "engine/codecs/tga/TgaWriter.h"

#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"
#include "engine/codecs/PixelRuns.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr int longestSide = 65535;

/// How an image is stored.
struct Shape
{
    int kind = 2;  ///< 1 palette, 2 true colour, 3 grey
    int bytes = 3; ///< a pixel
    QList<QRgb> palette;
};

Shape shapeOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_Indexed8: {
        QList<QRgb> palette = image.colorTable();
        coverUsedEntries(palette, image);
        return {1, 1, palette};
    }
    case QImage::Format_Grayscale8:
        return {3, 1, {}};
    case QImage::Format_ARGB32:
        return {2, 4, {}};
    default:
        return {2, 3, {}};
    }
}

void appendWord(QByteArray& out, int value)
{
    out.append(char(value & 255));
    out.append(char(value >> 8));
}

QByteArray headerOf(QSize size, const Shape& shape, bool runs)
{
    constexpr int runLength = 8;
    const bool hasPalette = !shape.palette.isEmpty();
    QByteArray out;
    out.append('\0'); // no image id
    out.append(hasPalette ? '\1' : '\0');
    out.append(char(runs ? shape.kind + runLength : shape.kind));
    appendWord(out, 0); // the palette's first entry
    appendWord(out, int(shape.palette.size()));
    out.append(hasPalette ? char(24) : '\0');
    appendWord(out, 0); // place on the screen
    appendWord(out, 0);
    appendWord(out, size.width());
    appendWord(out, size.height());
    out.append(char(8 * shape.bytes));
    constexpr char alphaBits = 8;
    out.append(shape.bytes == 4 ? alphaBits : '\0');
    for (const QRgb color : shape.palette) {
        out.append(char(qBlue(color)));
        out.append(char(qGreen(color)));
        out.append(char(qRed(color)));
    }
    return out;
}

/// Row `y` of `image` as stored pixels.
void packRow(const QImage& image, int y, const Shape& shape, QByteArray& out)
{
    const uchar* row = image.constScanLine(y);
    const int width = image.width();
    out.resize(qsizetype(width) * shape.bytes);
    auto* at = reinterpret_cast<uchar*>(out.data());
    if (image.format() == QImage::Format_Mono) {
        for (int x = 0; x < width; ++x)
            at[x] = uchar(row[x / 8] >> (7 - x % 8) & 1);
    } else if (shape.bytes == 1) {
        std::memcpy(at, row, size_t(width));
    } else {
        const auto* pixels = reinterpret_cast<const QRgb*>(row);
        for (int x = 0; x < width; ++x, at += shape.bytes) {
            at[0] = uchar(qBlue(pixels[x]));
            at[1] = uchar(qGreen(pixels[x]));
            at[2] = uchar(qRed(pixels[x]));
            if (shape.bytes == 4)
                at[3] = uchar(qAlpha(pixels[x]));
        }
    }
}

/// Appends the packets of one row; packets end with the row.
void appendPackets(QByteArray& out, const QByteArray& row, int bytes)
{
    constexpr int longest = 128;
    const PixelRunRules rules = byteCodedRuns(bytes, longest, longest);
    forEachPixelRun(row, rules, rawAppender(out, bytes), [&](const char* pixel, int count) {
        out.append(char(0x80 | (count - 1)));
        out.append(pixel, bytes);
    });
}

QByteArray footer()
{
    QByteArray out(8, '\0'); // neither extension area nor developer area
    out.append("TRUEVISION-XFILE.", 18);
    return out;
}

} // namespace

Result<QByteArray> writeTga(const QImage& image)
{
    if (image.isNull() || std::max(image.width(), image.height()) > longestSide)
        return Error{
            ErrorKind::Unsupported,
            QStringLiteral("no Targa file holds %1 x %2 pixels").arg(image.width()).arg(image.height())};
    const QImage source = blankIfClear(storable(image));
    if (source.isNull())
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the picture")};
    const Shape shape = shapeOf(source);
    const qint64 plainBytes = qint64(source.width()) * source.height() * shape.bytes;
    QByteArray row;
    QByteArray pixels;
    bool runs = true;
    for (int y = source.height() - 1; y >= 0 && runs; --y) {
        packRow(source, y, shape, row);
        appendPackets(pixels, row, shape.bytes);
        runs = pixels.size() < plainBytes;
    }
    if (!runs) {
        pixels.clear();
        pixels.reserve(plainBytes);
        for (int y = source.height() - 1; y >= 0; --y) {
            packRow(source, y, shape, row);
            pixels.append(row);
        }
    }
    return headerOf(source.size(), shape, runs) + pixels + footer();
}

} // namespace quorvia::engine
