// Turns unfiltered PNG rows into rows of an image: every colour type and depth. Values come out as libpng's
// transformations give them. Rows are independent of each other and may be converted side by side.
#pragma once

#include "engine/codecs/png/PngChunks.h"

#include <QImage>

#include <array>
#include <optional>

namespace quorvia::engine {

/// The one colour of a file without alpha that is clear: samples as stored; grey is the first, the others 0.
using PngClearColor = std::array<quint16, 3>;

/// The format of the image that holds a PNG of `header`; `transparent` when the file has a chunk tRNS that
/// counts for its colour type.
QImage::Format pngImageFormat(const PngHeader& header, bool transparent);

class PngRows
{
  public:
    /// `transparent` as for pngImageFormat(); `clear` stands for it unless the file has a palette.
    PngRows(const PngHeader& header, bool transparent, std::optional<PngClearColor> clear);

    QImage::Format format() const { return m_format; }
    /// Writes all pixels of the row `raw` (without its filter byte) to the image row `line`, and zeros behind
    /// the last pixel up to `lineBytes`.
    void convert(const uchar* raw, uchar* line, qsizetype lineBytes) const;

  private:
    void copyBits(const uchar* raw, uchar* line) const;
    void spreadSamples(const uchar* raw, uchar* line) const;
    void convertGrey(const uchar* raw, uchar* line) const;
    void convertGreyAlpha(const uchar* raw, QRgb* out) const;
    void convertClearGrey(const uchar* raw, QRgb* out) const;
    void convertRgba(const uchar* raw, QRgb* out) const;
    void convertColors(const uchar* raw, QRgb* out) const;
    bool isClear(quint16 red, quint16 green, quint16 blue) const
    {
        return m_clear && *m_clear == PngClearColor{red, green, blue};
    }

    const int m_colors;
    const int m_depth;
    const int m_width;
    const QImage::Format m_format;
    const std::optional<PngClearColor> m_clear;
};

} // namespace quorvia::engine
