#include "engine/codecs/wpg/WpgBitmap.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/SourceReader.h"
#include "engine/Limits.h"
#include "engine/Transforms.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr qint64 longestHeader = 64;

bool isIndexDepth(int bits)
{
    return bits == 1 || bits == 2 || bits == 4 || bits == 8;
}

Error unknownDepth(int bits)
{
    return unsupported(QStringLiteral("a bitmap of %1 bits a pixel").arg(bits));
}

/// The turn of a bitmap of version 1: degrees clockwise in the low bits, mirrors in the high ones. An angle
/// between the quarters leaves the bitmap upright.
void readTurn(int word, WpgBitmap& bitmap)
{
    constexpr int mirror = 0x8000;
    constexpr int flip = 0x2000;
    constexpr int degrees = 0x0FFF;
    bitmap.mirrored = (word & mirror) != 0;
    bitmap.flipped = (word & flip) != 0;
    if ((word & degrees) % 90 == 0)
        bitmap.quarterTurns = (word & degrees) / 90 % 4;
}

Status readVersion1(WpgNumbers& in, bool placed, WpgBitmap& bitmap)
{
    if (placed) {
        readTurn(in.u16(), bitmap);
        const int left = in.i16();
        const int bottom = in.i16();
        const int right = in.i16();
        const int top = in.i16();
        bitmap.place = QRect(std::min(left, right), std::min(bottom, top), std::abs(right - left),
                             std::abs(top - bottom));
    }
    const int width = in.u16();
    bitmap.stored = QSize(width, in.u16());
    bitmap.bitsPerPixel = in.u16();
    const int across = in.u16();
    const int down = in.u16();
    if (across > 0 && down > 0)
        bitmap.dotsPerInch = QSize(across, down);
    bitmap.packing = WpgPacking::Runs1;
    if (bitmap.bitsPerPixel == 24)
        bitmap.pixel = WpgPixel::Rgb;
    else if (!isIndexDepth(bitmap.bitsPerPixel))
        return unknownDepth(bitmap.bitsPerPixel);
    return ok();
}

/// The mirrors of the bitmap object before record `index`: a scale below nothing.
void readMirrors(const ByteSource& source, const WpgFile& file, size_t index, WpgBitmap& bitmap)
{
    const int frame = file.records[index].frame;
    if (frame < 0)
        return;
    const WpgRecord& record = file.records[size_t(frame)];
    constexpr int locked = 0x80;
    constexpr int named = 0x20;
    constexpr int turned = 0x10;
    constexpr int scaled = 0x08;
    WpgNumbers in(source.bytes(record.offset, std::min(record.length, longestHeader)));
    const int flags = in.u16();
    if (flags & locked)
        in.skip(4);
    if ((flags & named) != 0 && (in.u16() & 0x8000) != 0)
        in.skip(2);
    if (flags & turned)
        in.skip(4);
    if ((flags & scaled) == 0)
        return;
    bitmap.mirrored = in.i32() < 0;
    bitmap.flipped = in.i32() < 0;
}

/// How version 2 stores a pixel.
struct ColorFormat
{
    int number;
    int bits;
    WpgPixel pixel;
};

constexpr std::array<ColorFormat, 9> colorFormats = {{
    {1, 1, WpgPixel::Index},
    {2, 2, WpgPixel::Index},
    {3, 4, WpgPixel::Index},
    {4, 8, WpgPixel::Index},
    {5, 16, WpgPixel::Grey16},
    {6, 16, WpgPixel::Rgb555},
    {8, 24, WpgPixel::Rgb},
    {9, 32, WpgPixel::RgbAndOne},
    {12, 8, WpgPixel::Grey8},
}};

/// Null when no bitmap of this format is read.
const ColorFormat* colorFormatOf(int number)
{
    const auto* const found =
        std::find_if(colorFormats.begin(), colorFormats.end(),
                     [number](const ColorFormat& format) { return format.number == number; });
    return found == colorFormats.end() ? nullptr : found;
}

Status readVersion2(WpgNumbers& in, WpgBitmap& bitmap)
{
    const int width = in.u16();
    bitmap.stored = QSize(width, in.u16());
    const int format = in.u8();
    const int compression = in.u8();
    const ColorFormat* known = colorFormatOf(format);
    if (!known)
        return unsupported(QStringLiteral("a bitmap of colour format %1").arg(format));
    bitmap.bitsPerPixel = known->bits;
    bitmap.pixel = known->pixel;
    if (compression > 1)
        return unsupported(QStringLiteral("bitmap compression %1").arg(compression));
    bitmap.packing = compression == 0 ? WpgPacking::Rows : WpgPacking::Runs2;
    return ok();
}

QImage::Format formatOf(const WpgBitmap& bitmap)
{
    switch (bitmap.pixel) {
    case WpgPixel::Index:
        return bitmap.bitsPerPixel == 1 ? QImage::Format_Mono : QImage::Format_Indexed8;
    case WpgPixel::Grey8:
    case WpgPixel::Grey16:
        return QImage::Format_Grayscale8;
    default:
        return QImage::Format_RGB32;
    }
}

void convertColors(const WpgBitmap& bitmap, const uchar* row, QRgb* out)
{
    const int width = bitmap.stored.width();
    if (bitmap.pixel == WpgPixel::Rgb555) {
        const auto eightBits = [](int value) { return value << 3 | value >> 2; };
        for (int x = 0; x < width; ++x, row += 2) {
            const int pixel = row[0] | row[1] << 8;
            out[x] = qRgb(eightBits(pixel >> 10 & 31), eightBits(pixel >> 5 & 31), eightBits(pixel & 31));
        }
        return;
    }
    const int step = bitmap.bitsPerPixel / 8;
    for (int x = 0; x < width; ++x, row += step)
        out[x] = qRgb(row[0], row[1], row[2]);
}

/// Writes the stored `row` to the image row `out`.
void convertRow(const WpgBitmap& bitmap, const uchar* row, uchar* out)
{
    const int width = bitmap.stored.width();
    const int bits = bitmap.bitsPerPixel;
    if (bitmap.pixel == WpgPixel::Grey16) {
        for (int x = 0; x < width; ++x)
            out[x] = uchar(((row[2 * x] | row[2 * x + 1] << 8) * 255 + 32767) / 65535);
    } else if (bits > 8) {
        convertColors(bitmap, row, reinterpret_cast<QRgb*>(out));
    } else if (bits == 1 || bits == 8) {
        std::memcpy(out, row, size_t(bitmap.rowBytes()));
    } else {
        const int perByte = 8 / bits;
        for (int x = 0; x < width; ++x)
            out[x] = uchar(row[x / perByte] >> (8 - bits * (x % perByte + 1)) & ((1 << bits) - 1));
    }
}

QImage upright(QImage image, const WpgBitmap& bitmap)
{
    if (bitmap.mirrored || bitmap.flipped)
        image = image.mirrored(bitmap.mirrored, bitmap.flipped);
    if (bitmap.quarterTurns != 0 && !image.isNull())
        image = rotated(image, -90.0 * bitmap.quarterTurns, Qt::white);
    return image;
}

} // namespace

Result<WpgBitmap> readWpgBitmap(const ByteSource& source, const WpgFile& file, size_t index)
{
    const WpgRecord& record = file.records[index];
    WpgNumbers in(source.bytes(record.offset, std::min(record.length, longestHeader)));
    WpgBitmap bitmap;
    const Status read = file.version == 1 ? readVersion1(in, record.type == wpg1::placedBitmap, bitmap)
                                          : readVersion2(in, bitmap);
    if (in.cut())
        return damaged(QStringLiteral("the header of the bitmap is cut short"));
    if (!read)
        return read.error();
    const Status allowed = checkSize(bitmap.stored);
    if (!allowed)
        return allowed.error();
    if (file.version == 2)
        readMirrors(source, file, index, bitmap);
    bitmap.dataOffset = record.offset + in.at();
    bitmap.dataLength = std::max<qint64>(record.length - in.at(), 0);
    return bitmap;
}

Result<Picture> decodeWpgBitmap(const ByteSource& source, const WpgBitmap& bitmap, const WpgPalette& palette,
                                const CancelFlag& cancel)
{
    QImage image = allocateImage(bitmap.stored, formatOf(bitmap));
    if (image.isNull())
        return noMemoryError();
    if (bitmap.pixel == WpgPixel::Index)
        image.setColorTable(palette.colors(bitmap.bitsPerPixel));
    uchar* bits = image.bits();
    const qint64 stride = image.bytesPerLine();
    WpgRows rows(bitmap.rowBytes(), bitmap.stored.height(),
                 [&](int y, const uchar* row) { convertRow(bitmap, row, bits + y * stride); });
    SourceReader in(source, bitmap.dataOffset, bitmap.dataLength);
    unpackWpg(in, bitmap.packing, rows, cancel);
    if (cancel)
        return cancelledError();
    const bool complete = rows.full();
    if (!rows.flush())
        return nothingToShowError();
    Picture picture;
    picture.image = upright(std::move(image), bitmap);
    if (picture.image.isNull())
        return noMemoryError();
    picture.fullSize = bitmap.size();
    picture.bitsPerPixel = bitmap.bitsPerPixel;
    picture.complete = complete;
    return picture;
}

} // namespace quorvia::engine
