#include "engine/codecs/ico/IcoWriter.h"

#include "engine/Codec.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/Palette.h"
#include "engine/Transforms.h"

#include <QtEndian>

namespace quorvia::engine {

namespace {

constexpr int longestSide = 256;
constexpr int bitmapHeaderBytes = 40;

template <class T>
void append(QByteArray& out, T value)
{
    const T little = qToLittleEndian(value);
    out.append(reinterpret_cast<const char*>(&little), sizeof little);
}

struct Entry
{
    QByteArray bytes;
    int bits = 32;
    int colors = 0; ///< entries of the palette
};

qint64 rowBytes(int width, int bits)
{
    return (qint64(width) * bits + 31) / 32 * 4;
}

QList<QRgb> paletteOf(const QImage& image)
{
    QList<QRgb> palette = image.colorTable();
    if (image.format() == QImage::Format_Grayscale8 || palette.isEmpty()) {
        palette.clear();
        for (int grey = 0; grey < 256; ++grey)
            palette.append(qRgb(grey, grey, grey));
    }
    coverUsedEntries(palette, image);
    return palette.mid(0, 256);
}

/// Row `y` of `image` as stored with `bits` a pixel.
void packRow(const QImage& image, int y, int bits, char* out)
{
    const uchar* row = image.constScanLine(y);
    for (int x = 0; x < image.width(); ++x) {
        if (bits == 32) {
            const QRgb pixel = reinterpret_cast<const QRgb*>(row)[x];
            qToLittleEndian<quint32>(image.hasAlphaChannel() ? pixel : pixel | 0xFF000000, out + 4 * x);
            continue;
        }
        const int index = image.format() == QImage::Format_Mono ? row[x / 8] >> (7 - x % 8) & 1 : row[x];
        const int perByte = 8 / bits;
        char& byte = out[x / perByte];
        byte = char(byte | index << (8 - bits * (x % perByte + 1)));
    }
}

/// The bits of the pixels that are transparent for readers that know no alpha.
void packMask(const QImage& image, int y, char* out)
{
    if (!image.hasAlphaChannel())
        return;
    constexpr int halfOpaque = 128;
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
        if (qAlpha(row[x]) < halfOpaque)
            out[x / 8] = char(out[x / 8] | 0x80 >> x % 8);
    }
}

/// `image` (one of storable()'s formats) as a bitmap without file header, its mask behind it.
Entry bitmapEntry(const QImage& image)
{
    Entry entry;
    QList<QRgb> palette;
    if (image.depth() <= 8) {
        palette = paletteOf(image);
        entry.bits = palette.size() <= 2 ? 1 : (palette.size() <= 16 ? 4 : 8);
        palette.resize(qsizetype(1) << entry.bits, qRgb(0, 0, 0));
        entry.colors = int(palette.size());
    }
    const qint64 pixelRow = rowBytes(image.width(), entry.bits);
    const qint64 maskRow = rowBytes(image.width(), 1);
    append<quint32>(entry.bytes, bitmapHeaderBytes);
    append<qint32>(entry.bytes, image.width());
    append<qint32>(entry.bytes, 2 * image.height());
    append<quint16>(entry.bytes, 1); // planes
    append<quint16>(entry.bytes, quint16(entry.bits));
    append<quint32>(entry.bytes, 0); // no compression
    append<quint32>(entry.bytes, quint32((pixelRow + maskRow) * image.height()));
    for (int i = 0; i < 4; ++i) // resolution and numbers of colours
        append<quint32>(entry.bytes, 0);
    for (const QRgb color : palette)
        append<quint32>(entry.bytes, color & 0xFFFFFF);

    const qint64 pixels = entry.bytes.size();
    const qint64 mask = pixels + pixelRow * image.height();
    entry.bytes.append(qsizetype((pixelRow + maskRow) * image.height()), '\0');
    for (int y = 0; y < image.height(); ++y) {
        const qint64 fromBelow = image.height() - 1 - y;
        packRow(image, y, entry.bits, entry.bytes.data() + pixels + fromBelow * pixelRow);
        packMask(image, y, entry.bytes.data() + mask + fromBelow * maskRow);
    }
    return entry;
}

QByteArray fileOf(QSize size, const Entry& entry)
{
    constexpr quint32 offset = 6 + 16;
    QByteArray out;
    append<quint16>(out, 0);
    append<quint16>(out, 1);                      // icons
    append<quint16>(out, 1);                      // one of them
    out.append(char(size.width() % longestSide)); // 0 stands for 256
    out.append(char(size.height() % longestSide));
    out.append(char(entry.colors % 256));
    out.append('\0');
    append<quint16>(out, 1); // planes
    append<quint16>(out, quint16(entry.bits));
    append<quint32>(out, quint32(entry.bytes.size()));
    append<quint32>(out, offset);
    return out + entry.bytes;
}

} // namespace

Result<QByteArray> writeIco(const QImage& image)
{
    if (image.isNull())
        return noImageError();
    const QSize size = fittedSize(image.size(), QSize(longestSide, longestSide));
    const QImage source = storable(size == image.size() ? image : resized(image, size));
    if (source.isNull())
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the icon")};
    if (size.width() < longestSide && size.height() < longestSide)
        return fileOf(size, bitmapEntry(source));
    const auto png = pngCodec().encode(source, QStringLiteral("png"), {});
    if (!png)
        return png.error();
    return fileOf(size, Entry{*png, source.depth() <= 8 ? 8 : 32, 0});
}

} // namespace quorvia::engine
