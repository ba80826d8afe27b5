// What a TIFF directory says of its page, in the terms that the decoder needs. Decodes nothing.
#pragma once

#include "engine/codecs/TiffHandle.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>

namespace quorvia::engine {

enum class TiffColors {
    Grey,         ///< 0 is black
    GreyInverted, ///< 0 is white
    Palette,
    Rgb,
    Cmyk,
    Library ///< left to libtiff's own conversion: YCbCr, CIELab, logarithmic
};

enum class TiffAlpha { None, Associated, Unassociated };

enum class TiffNumbers { Unsigned, Signed, Float };

struct TiffLayout
{
    QSize stored; ///< pixels, as the rows lie in the file
    QSize size;   ///< pixels, turned upright
    int orientation = 1;
    int bits = 1; ///< of one sample
    int samples = 1;
    TiffNumbers numbers = TiffNumbers::Unsigned;
    TiffColors colors = TiffColors::Grey;
    TiffAlpha alpha = TiffAlpha::None; ///< the sample behind the colours
    QList<QRgb> palette;               ///< 1 << bits entries for Palette
    QByteArray profile;                ///< ICC profile of the colours; empty without one that fits them
    bool planar = false;               ///< each sample in striles of its own
    bool compressed = false;
    bool tiled = false;
    QSize strile; ///< pixels of a tile, or of a strip

    /// Samples of a pixel that carry colour.
    int colorSamples() const;
    /// Samples of a pixel that are looked at: the colours and alpha.
    int usedSamples() const { return colorSamples() + (alpha == TiffAlpha::None ? 0 : 1); }
};

/// Reads the present directory of `tiff`. Also sets what libtiff must know before it decodes. Damaged,
/// Unsupported or TooLarge when the page cannot be decoded.
Result<TiffLayout> readTiffLayout(TIFF* tiff);

/// TooLarge when a picture of `format` and the `workBytes` that it takes to decode it are, together, more
/// than a picture may cost. To be asked before anything is allocated.
Status checkTiffMemory(const TiffLayout& layout, QImage::Format format, qint64 workBytes);

} // namespace quorvia::engine
