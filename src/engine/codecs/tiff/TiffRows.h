// Turns decoded TIFF samples into rows of an image: any depth, grey, palette, RGB, CMYK, with or without
// alpha, interleaved or in planes. 8-bit grey, RGB and palettes go a short way; all else passes through 16
// bits.
#pragma once

#include "engine/codecs/tiff/TiffLayout.h"
#include "engine/ColorConversion.h"

#include <QImage>

#include <array>
#include <memory>
#include <vector>

namespace quorvia::engine {

/// Samples that libtiff has decoded, one row: for each sample of a pixel the bytes that hold it, and which
/// sample in them is the first and how many further on the next.
struct TiffSampleRow
{
    std::array<const uchar*, 5> bytes = {};
    std::array<int, 5> first = {};
    int step = 1;
};

class TiffRows
{
  public:
    explicit TiffRows(const TiffLayout& layout);

    /// Mono for 1 bit grey or palette, Grayscale8 or Indexed8, else RGB32, or ARGB32 with alpha.
    QImage::Format format() const { return m_format; }
    /// The palette for Mono and Indexed8, else empty.
    QList<QRgb> colorTable() const;
    /// Writes `count` pixels to the image row `line` from column `x` on.
    void convert(const TiffSampleRow& row, int count, uchar* line, int x);

  private:
    void copyBits(const TiffSampleRow& row, int count, uchar* line, int x) const;
    void copyIndices(const TiffSampleRow& row, int count, uchar* out) const;
    void convertRgb8(const TiffSampleRow& row, int count, QRgb* out) const;
    void convertGrey8(const uchar* samples, int count, uchar* out) const;
    void convertDeep(const TiffSampleRow& row, int count, uchar* line, int x);
    void combine(int count, QRgb* out) const;
    void convertInks(int count, QRgb* out);
    void convertLab(const TiffSampleRow& row, int count, QRgb* out);

    const TiffLayout m_layout;
    QImage::Format m_format;
    std::shared_ptr<const ColorConversion> m_conversion; ///< of CMYK to sRGB, by the page's profile; or null
    std::vector<uchar> m_inks;                           ///< a row of CMYK, 8 bits
    std::array<std::vector<quint16>, 5> m_wide;          ///< the samples of a row by channel, 0..65535
};

} // namespace quorvia::engine
