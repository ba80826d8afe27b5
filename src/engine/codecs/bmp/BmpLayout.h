// What the headers of a bitmap say, as plain functions over bytes: the file header, every DIB header from
// OS/2 1 to version 5, masks, palette and the place of a colour profile. Cheap: looks at the first two
// kilobytes only.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QSize>

#include <array>

namespace quorvia::engine {

enum class BmpPacking { Rows, Rle4, Rle8, Rle24, Jpeg, Png };

/// Bytes from the start of a file that hold everything readBmpLayout() asks for.
constexpr qint64 bmpHeadLength = 2048;

struct BmpLayout
{
    QSize size; ///< pixels; for Jpeg and Png the embedded picture's own header decides
    bool topDown = false;
    int bitsPerPixel = 0; ///< 1, 2, 4, 8, 16, 24 or 32; may be 0 for Jpeg and Png
    BmpPacking packing = BmpPacking::Rows;
    std::array<quint32, 4> masks = {}; ///< red, green, blue, alpha; for 16, 24 and 32 bits. Alpha 0: opaque
    QList<QRgb> palette;               ///< 1 << bitsPerPixel entries up to 8 bits, else empty
    qint64 pixelOffset = 0;            ///< bytes from the start of the file; of the first bitmap in an array
    qint64 pixelLength = 0;            ///< bytes of pixel data that the file can hold
    qint64 profileOffset = 0; ///< of an embedded ICC profile, bytes from the start of the file; as told
    qint64 profileLength = 0; ///< bytes of it, as told; 0 without one

    /// Bytes from one stored row to the next: rows fill up to 32 bits.
    qint64 rowBytes() const { return (qint64(size.width()) * bitsPerPixel + 31) / 32 * 4; }
    /// Bytes of a stored row that carry pixels.
    qint64 usedRowBytes() const { return (qint64(size.width()) * bitsPerPixel + 7) / 8; }
};

/// True when `head` begins with "BM" and a header of a possible size, with or without the header of an OS/2
/// array of bitmaps ("BA") before them.
bool isBmpFile(const QByteArray& head);

/// True when `head` begins with a DIB header without file header. With `weak` the short OS/2 headers pass
/// too, whose few fields are no proof on their own.
bool isBareDib(const QByteArray& head, bool weak);

/// True when `head` begins with a DIB header as an icon may hold it: a short one, or one that tells 0 planes,
/// passes too.
bool isIconDib(const QByteArray& head);

/// Reads the headers of a file of `fileSize` bytes that begins with `head` (bmpHeadLength bytes, or all there
/// are). Damaged or Unsupported on failure; sizes are not held against the limits here.
/// Source: the published descriptions of the Windows and OS/2 bitmap headers.
Result<BmpLayout> readBmpLayout(const QByteArray& head, qint64 fileSize);

} // namespace quorvia::engine
