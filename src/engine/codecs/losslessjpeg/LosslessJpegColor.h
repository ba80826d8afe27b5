// Brings the samples of a lossless JPEG into an image: 16 bits down to 8, then the colour space of the file
// to RGB.
#pragma once

#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"
#include "engine/ColorConversion.h"

#include <QImage>

#include <vector>

namespace quorvia::engine {

enum class LosslessColor {
    Gray, ///< one component, or the first of two
    Rgb,
    YCbCr,
    Cmyk,         ///< amounts of ink
    InvertedCmyk, ///< 255 - ink, as Adobe's programs write it
    InvertedYcck, ///< the same with its first three inks as YCbCr
};

/// The colour space of a frame of `components` samples: by Adobe's `transform` (-1 without its mark), then by
/// the JFIF mark, else RGB or CMYK.
LosslessColor losslessColor(size_t components, int transform, bool jfif);

class LosslessCanvas
{
  public:
    /// Draws into `image` (Grayscale8 for Gray, else RGB32) samples of `precision` bits.
    LosslessCanvas(QImage image, LosslessColor color, int precision);

    /// Sets the first `count` samples of `component` in row `y` from stored samples shifted up by `shift`.
    void draw(int component, int y, int count, const quint16* samples, int shift);
    /// The image, its colours brought to RGB as far as it was drawn; four inks by `inks` when it is given and
    /// of their model. Call once.
    QImage finish(const ColorConversion* inks = nullptr);
    bool drawn() const { return m_drawn; }

  private:
    void convertInks(QRgb* row, int count, const ColorConversion& inks) const;

    QImage m_image;
    LosslessColor m_color;
    std::vector<uchar> m_eightBits; ///< by sample value
    std::vector<int> m_reached;     ///< pixels drawn of each row
    bool m_drawn = false;
};

} // namespace quorvia::engine
