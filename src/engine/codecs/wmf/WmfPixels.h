// Pixels of a metafile's bitmap records as plain functions: decoding what a record embeds, cutting and
// stretching it to where it is shown, and raster operations of three operands.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/wmf/WmfObjects.h"

#include <QImage>
#include <QRect>

#include <memory>

namespace quorvia::engine {

/// Opens the DIB (a bitmap without file header) that `source` holds. With `numbered` its palette holds
/// numbers of entries of `palette` instead of colours.
Result<std::unique_ptr<Decoder>> openDib(std::shared_ptr<ByteSource> source, bool numbered,
                                         const WmfPalette& palette);

/// The size of a bitmap of the device kind in `bytes`, as far as its rows are there: a header of ten bytes,
/// rows from the top from `pixelOffset` on, of 1, 16, 24 or 32 bits a pixel. Empty for others.
QSize deviceBitmapSize(const QByteArray& bytes, qsizetype pixelOffset);

/// The upper left `size` pixels, at most deviceBitmapSize(), of such a bitmap. Of 1 bit, 0 is `zero` and 1 is
/// `one`. RGB32; null without memory.
QImage deviceBitmap(const QByteArray& bytes, qsizetype pixelOffset, QSize size, QRgb zero, QRgb one);

/// How a bitmap is brought to where it is shown.
struct WmfStretch
{
    QRect from; ///< pixels of the bitmap, not empty, within it
    QRect to;   ///< pixels of the picture, not empty
    bool mirrorX = false;
    bool mirrorY = false;
    bool smooth = false; ///< average the pixels where it shrinks
};

/// The pixels of `bitmap` (RGB32) that come to lie on `visible` (not empty, within stretch.to).
QImage stretched(const QImage& bitmap, const WmfStretch& stretch, QRect visible);

/// True when operation `rop` (0 to 255, one bit for each set of operands: pattern 4, source 2, target 1)
/// looks at the source.
bool ropNeedsSource(int rop);

/// Combines pattern, source and target bit by bit. Bits above 24 come out as 1.
QRgb combined(int rop, QRgb pattern, QRgb source, QRgb target);

} // namespace quorvia::engine
