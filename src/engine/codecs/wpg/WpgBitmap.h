// The bitmaps inside a WordPerfect graphic of either version: their headers and their runs. Decoding costs
// what the pixels cost.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/wpg/WpgPalette.h"
#include "engine/codecs/wpg/WpgRecords.h"
#include "engine/codecs/wpg/WpgRuns.h"

#include <QRect>

namespace quorvia::engine {

/// What a stored pixel is: an index into the palette, or a colour.
enum class WpgPixel { Index, Grey8, Grey16, Rgb555, Rgb, RgbAndOne };

struct WpgBitmap
{
    QSize stored;         ///< pixels as stored
    int bitsPerPixel = 0; ///< as stored
    WpgPixel pixel = WpgPixel::Index;
    WpgPacking packing = WpgPacking::Rows;
    qint64 dataOffset = 0; ///< bytes from the start of the file
    qint64 dataLength = 0;
    bool mirrored = false; ///< left and right are exchanged before the turn
    bool flipped = false;  ///< top and bottom are
    int quarterTurns = 0;  ///< clockwise
    QSize dotsPerInch = {75, 75};
    QRect place; ///< version 1: corners in 1/1200 inch, y running up; null where none is told

    /// Pixels as shown.
    QSize size() const { return quarterTurns % 2 == 0 ? stored : stored.transposed(); }
    /// Bytes from one row to the next.
    qint64 rowBytes() const { return (qint64(stored.width()) * bitsPerPixel + 7) / 8; }
};

/// Reads the header of the bitmap in record `index` (from 0) of `file`. Damaged, TooLarge or Unsupported on
/// failure.
Result<WpgBitmap> readWpgBitmap(const ByteSource& source, const WpgFile& file, size_t index);

/// Decodes `bitmap`. One bit becomes Mono, up to 8 bits Indexed8, grey Grayscale8, other colours RGB32.
/// Damaged when no pixel is there; Cancelled.
Result<Picture> decodeWpgBitmap(const ByteSource& source, const WpgBitmap& bitmap, const WpgPalette& palette,
                                const CancelFlag& cancel);

} // namespace quorvia::engine
