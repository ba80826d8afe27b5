#include "engine/codecs/wpg/WpgWriter.h"

#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"
#include "engine/codecs/wpg/WpgRecords.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr int mostPixels = 65535;
constexpr qint64 longestRecord = 0x7FFFFFFF;

/// An image as the format holds it: palette indices with their depth.
struct Stored
{
    QImage image; ///< Mono, Indexed8 or Grayscale8
    int bits = 8;
    QList<QRgb> palette;
    bool inverted = false; ///< entry 0 of a black and white image is the white one
};

void appendWord(QByteArray& out, int value)
{
    out.append(char(value & 0xFF));
    out.append(char(value >> 8 & 0xFF));
}

void appendRecordHead(QByteArray& out, int type, qint64 length)
{
    out.append(char(type));
    if (length < 0xFF) {
        out.append(char(length));
        return;
    }
    out.append('\xFF');
    if (length >= 0x8000)
        appendWord(out, int(length >> 16 | 0x8000));
    appendWord(out, int(length & 0xFFFF));
}

QList<QRgb> greyRamp()
{
    QList<QRgb> ramp;
    for (int grey = 0; grey < 256; ++grey)
        ramp.append(qRgb(grey, grey, grey));
    return ramp;
}

bool isBlackAndWhite(const QList<QRgb>& palette)
{
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    return palette == QList<QRgb>{black, white} || palette == QList<QRgb>{white, black};
}

/// One bit for black and white, else the fewest that name the palette's entries: in one bit, only black and
/// white are shown alike by all readers.
Stored withFewestBits(const QImage& image, QList<QRgb> palette)
{
    constexpr qsizetype fourBits = 16;
    coverUsedEntries(palette, image);
    if (isBlackAndWhite(palette))
        return {image, 1, {qRgb(0, 0, 0), qRgb(255, 255, 255)}, palette.first() != qRgb(0, 0, 0)};
    return {image, palette.size() <= fourBits ? 4 : 8, palette};
}

Stored storedForm(const QImage& image)
{
    constexpr int mostColors = 256;
    QImage source = storable(image);
    if (source.format() == QImage::Format_Grayscale8)
        return {source, 8, greyRamp()};
    if (source.format() == QImage::Format_Mono || source.format() == QImage::Format_Indexed8) {
        QList<QRgb> palette = source.colorTable();
        if (palette.isEmpty() && source.format() == QImage::Format_Indexed8)
            palette = greyRamp();
        if (palette.size() > mostColors)
            palette.resize(mostColors);
        return withFewestBits(source, palette);
    }
    if (source.format() == QImage::Format_ARGB32)
        source = overWhite(std::move(source));
    source = reducedToPalette(source, mostColors);
    return withFewestBits(source, source.colorTable());
}

/// Row `y` as stored bytes.
void packRow(const Stored& stored, int y, std::vector<uchar>& out)
{
    const uchar* row = stored.image.constScanLine(y);
    if (stored.bits == 8) {
        std::copy_n(row, out.size(), out.begin());
        return;
    }
    const bool mono = stored.image.format() == QImage::Format_Mono;
    const int perByte = 8 / stored.bits;
    const int turned = stored.inverted ? 1 : 0;
    std::fill(out.begin(), out.end(), uchar(0));
    for (int x = 0; x < stored.image.width(); ++x) {
        const int index = (mono ? row[x / 8] >> (7 - x % 8) & 1 : row[x]) ^ turned;
        uchar& byte = out[size_t(x / perByte)];
        byte = uchar(byte | index << (8 - stored.bits * (x % perByte + 1)));
    }
}

/// Runs and literals of at most 127 bytes; never across a row.
void appendRuns(QByteArray& out, const std::vector<uchar>& row)
{
    constexpr size_t most = 127;
    constexpr size_t worthARun = 3;
    const auto appendLiterals = [&](size_t from, size_t to) {
        for (; from < to; from += most) {
            const size_t count = std::min(to - from, most);
            out.append(char(count));
            out.append(reinterpret_cast<const char*>(row.data()) + from, qsizetype(count));
        }
    };
    size_t pending = 0; // first byte not written yet
    for (size_t at = 0; at < row.size();) {
        size_t end = at + 1;
        while (end < row.size() && end - at < most && row[end] == row[at])
            ++end;
        if (end - at >= worthARun) {
            appendLiterals(pending, at);
            out.append(char(0x80 | (end - at)));
            out.append(char(row[at]));
            pending = end;
        }
        at = end;
    }
    appendLiterals(pending, row.size());
}

/// Dots per inch for `told` a metre, raised until `pixels` are at most 65535 units of 1/1200 inch.
int dotsPerInch(int told, int pixels)
{
    constexpr double inchesPerMeter = 39.37;
    constexpr int unitsPerInch = 1200;
    const int least = (pixels * unitsPerInch + mostPixels - 1) / mostPixels;
    const int wanted = told > 0 ? int(std::min(std::lround(told / inchesPerMeter), long(mostPixels))) : 96;
    return std::max({wanted, least, 1});
}

int unitsFor(int pixels, int dots)
{
    return std::max(pixels * 1200 / dots, 1);
}

} // namespace

Result<QByteArray> writeWpg(const QImage& image)
{
    if (image.isNull() || image.width() > mostPixels || image.height() > mostPixels)
        return Error{ErrorKind::Unsupported, QStringLiteral("a WPG has 1 to 65535 pixels a side")};
    const Stored stored = storedForm(image);
    if (stored.image.isNull())
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the WPG")};
    QByteArray runs;
    std::vector<uchar> row((size_t(image.width()) * size_t(stored.bits) + 7) / 8);
    for (int y = 0; y < image.height(); ++y) {
        packRow(stored, y, row);
        appendRuns(runs, row);
    }
    constexpr qint64 bitmapHeader = 10;
    if (runs.size() + bitmapHeader > longestRecord)
        return Error{ErrorKind::Unsupported, QStringLiteral("a WPG holds at most 2 GiB")};

    const int across = dotsPerInch(image.dotsPerMeterX(), image.width());
    const int down = dotsPerInch(image.dotsPerMeterY(), image.height());
    QByteArray out("\xFFWPC\x10\0\0\0\1\x16\1\0\0\0\0\0", 16);
    appendRecordHead(out, wpg1::start, 6);
    appendWord(out, 1); // version 1, no flags
    appendWord(out, unitsFor(image.width(), across));
    appendWord(out, unitsFor(image.height(), down));
    appendRecordHead(out, wpg1::colorMap, 4 + 3 * stored.palette.size());
    appendWord(out, 0);
    appendWord(out, int(stored.palette.size()));
    for (const QRgb color : stored.palette) {
        out.append(char(qRed(color)));
        out.append(char(qGreen(color)));
        out.append(char(qBlue(color)));
    }
    appendRecordHead(out, wpg1::bitmap, bitmapHeader + runs.size());
    for (const int value : {image.width(), image.height(), stored.bits, across, down})
        appendWord(out, value);
    out.append(runs);
    appendRecordHead(out, wpg1::end, 0);
    return out;
}

} // namespace quorvia::engine
