// What a TIFF directory says of its page, in the terms that the decoder needs. Decodes nothing.
#pragma once

#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>
#include <QSize>

#include <array>

namespace quorvia::engine {

enum class TiffColors {
    Grey,         ///< 0 is black
    GreyInverted, ///< 0 is white
    Palette,
    Rgb,
    Cmyk,
    YCbCr,  ///< 8 bits, interleaved, with or without sub-sampling
    CieLab, ///< a and b with their sign
    IccLab, ///< a and b counted from their least
    Library ///< left to libtiff's own conversion: old JPEG, YCbCr in planes, logarithmic
};

enum class TiffAlpha { None, Associated, Unassociated };

/// Samples that are said to be signed count as the others: other readers show them so, and writers seldom
/// mean it.
enum class TiffNumbers { Unsigned, Float };

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
    QSize strile;                    ///< pixels of a tile, or of a strip
    QSize block = QSize(1, 1);       ///< pixels that share their colour samples and are stored together
    std::array<float, 3> luma = {};  ///< shares of red, green and blue in Y, for YCbCr
    std::array<float, 6> range = {}; ///< reference black and white of Y, Cb, Cr

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
