#include "engine/codecs/wmf/WmfWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"
#include "engine/codecs/wmf/WmfRecords.h"

#include <QtEndian>

#include <algorithm>
#include <limits>
#include <new>

namespace quorvia::engine {

namespace {

constexpr int longestSide = std::numeric_limits<qint16>::max();
constexpr int dotsPerInch = 96;
constexpr qint64 dibHeaderBytes = 40;
constexpr qint64 headerWords = 9;       // of the plain header
constexpr qint64 stretchWords = 3 + 11; // of the bitmap's record before the bitmap

struct Dib
{
    int bits = 24;
    QList<QRgb> palette;
    qint64 rowBytes = 0;
    qint64 bytes = 0; ///< of header, palette and rows
};

template <class T>
void append(QByteArray& out, T value)
{
    const T little = qToLittleEndian(value);
    out.append(reinterpret_cast<const char*>(&little), sizeof little);
}

void appendWords(QByteArray& out, std::initializer_list<int> words)
{
    for (const int word : words)
        append<quint16>(out, quint16(word));
}

/// One record with parameters of 16 bits.
void appendRecord(QByteArray& out, WmfFunction function, std::initializer_list<int> words)
{
    append<quint32>(out, quint32(3 + words.size()));
    append<quint16>(out, quint16(function));
    appendWords(out, words);
}

QList<QRgb> paletteOf(const QImage& image)
{
    QList<QRgb> palette = image.colorTable();
    if (palette.isEmpty() && image.format() == QImage::Format_Mono)
        return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    if (palette.isEmpty()) {
        for (int grey = 0; grey < 256; ++grey)
            palette.append(qRgb(grey, grey, grey));
        return palette;
    }
    coverUsedEntries(palette, image);
    return palette;
}

Dib dibOf(const QImage& image)
{
    Dib dib;
    if (image.format() == QImage::Format_Mono || image.format() == QImage::Format_Indexed8 ||
        image.format() == QImage::Format_Grayscale8) {
        dib.palette = paletteOf(image);
        dib.bits = image.format() == QImage::Format_Mono ? 1 : dib.palette.size() <= 16 ? 4 : 8;
    }
    dib.rowBytes = (qint64(image.width()) * dib.bits + 31) / 32 * 4;
    dib.bytes = dibHeaderBytes + 4 * dib.palette.size() + dib.rowBytes * image.height();
    return dib;
}

void appendPlaceable(QByteArray& out, QSize size)
{
    const qsizetype start = out.size();
    append<quint32>(out, 0x9AC6CDD7);
    appendWords(out, {0, 0, 0, size.width(), size.height(), dotsPerInch, 0, 0});
    quint16 checksum = 0;
    for (qsizetype at = start; at < out.size(); at += 2)
        checksum ^= qFromLittleEndian<quint16>(out.constData() + at);
    append<quint16>(out, checksum);
}

void appendHeader(QByteArray& out, qint64 fileWords, qint64 longestRecord)
{
    constexpr int onDisk = 1;
    constexpr int version = 0x0300;
    constexpr int objects = 0;
    appendWords(out, {onDisk, int(headerWords), version});
    append<quint32>(out, quint32(fileWords));
    appendWords(out, {objects});
    append<quint32>(out, quint32(longestRecord));
    appendWords(out, {0});
}

void appendDibHeader(QByteArray& out, const QImage& image, const Dib& dib)
{
    constexpr int dotsPerMeter = 3780;
    append<quint32>(out, quint32(dibHeaderBytes));
    append<qint32>(out, image.width());
    append<qint32>(out, image.height());
    appendWords(out, {1, dib.bits});
    append<quint32>(out, 0); // plain rows
    append<quint32>(out, quint32(dib.rowBytes * image.height()));
    append<qint32>(out, dotsPerMeter);
    append<qint32>(out, dotsPerMeter);
    append<quint32>(out, quint32(dib.palette.size()));
    append<quint32>(out, 0);
    for (const QRgb color : dib.palette)
        append<quint32>(out, color & 0xFFFFFF);
}

void packColors(const QImage& row, char* out)
{
    const auto* pixels = reinterpret_cast<const QRgb*>(row.constScanLine(0));
    for (int x = 0; x < row.width(); ++x, out += 3) {
        out[0] = char(qBlue(pixels[x]));
        out[1] = char(qGreen(pixels[x]));
        out[2] = char(qRed(pixels[x]));
    }
}

/// Row `y` of an image of 1 or 8 bits as 1, 4 or 8 bits.
void packNumbers(const QImage& image, int y, int bits, char* out)
{
    const uchar* row = image.constScanLine(y);
    const int width = image.width();
    if (bits == 4) {
        for (int x = 0; x < width; ++x)
            out[x / 2] = char(out[x / 2] | row[x] << (x % 2 == 0 ? 4 : 0));
        return;
    }
    std::copy_n(reinterpret_cast<const char*>(row), (qint64(width) * bits + 7) / 8, out);
    if (const int spare = bits == 1 ? (8 - width % 8) % 8 : 0) // what is behind the last pixel is anything
        out[(width - 1) / 8] = char(out[(width - 1) / 8] & (0xFF << spare));
}

/// False when there is no memory for a strip of rows.
bool packRows(const QImage& image, const Dib& dib, char* out)
{
    const int height = image.height();
    for (int first = 0; first < height; first += stripRows) {
        const int count = std::min(stripRows, height - first);
        QImage strip;
        if (dib.bits == 24) {
            strip = image.hasAlphaChannel() ? overWhite(rowsAs(image, first, count, QImage::Format_ARGB32))
                                            : rowsAs(image, first, count, QImage::Format_RGB32);
            if (strip.isNull())
                return false;
        }
        for (int i = 0; i < count; ++i) {
            char* row = out + (height - 1 - (first + i)) * dib.rowBytes;
            if (dib.bits == 24)
                packColors(rowsAs(strip, i, 1, QImage::Format_RGB32), row);
            else
                packNumbers(image, first + i, dib.bits, row);
        }
    }
    return true;
}

} // namespace

Result<QByteArray> writeWmf(const QImage& image)
{
    if (image.isNull())
        return noImageError();
    const int width = image.width();
    const int height = image.height();
    if (std::max(width, height) > longestSide)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("a metafile holds at most %1 pixels a side").arg(longestSide)};
    const QImage source = storable(image);
    if (source.isNull())
        return noMemoryError();
    const Dib dib = dibOf(source);

    QByteArray records;
    constexpr int anisotropic = 8;
    constexpr int dropLines = 3;
    appendRecord(records, WmfFunction::SetMapMode, {anisotropic});
    appendRecord(records, WmfFunction::SetWindowOrg, {0, 0});
    appendRecord(records, WmfFunction::SetWindowExt, {height, width});
    appendRecord(records, WmfFunction::SetStretchMode, {dropLines});
    const qint64 bitmapWords = stretchWords + dib.bytes / 2;
    append<quint32>(records, quint32(bitmapWords));
    append<quint16>(records, quint16(WmfFunction::StretchDib));
    append<quint32>(records, 0x00CC0020); // copy the source
    appendWords(records, {0, height, width, 0, 0, height, width, 0, 0});
    appendDibHeader(records, source, dib);

    const qint64 rows = dib.rowBytes * height;
    constexpr qint64 endWords = 3;
    const qint64 fileWords = headerWords + (records.size() + rows) / 2 + endWords;
    QByteArray out;
    appendPlaceable(out, QSize(width, height));
    appendHeader(out, fileWords, bitmapWords);
    out += records;
    const qsizetype pixelsAt = out.size();
    try {
        out.resize(pixelsAt + rows, '\0');
    } catch (const std::bad_alloc&) {
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the file")};
    }
    if (!packRows(source, dib, out.data() + pixelsAt))
        return noMemoryError();
    appendRecord(out, WmfFunction::EndOfFile, {});
    return out;
}

} // namespace quorvia::engine
