// Turns stored bitmap rows into rows of an image: palette indices of 1 to 8 bits, masks of any width.
#pragma once

#include "engine/codecs/bmp/BmpLayout.h"

#include <QImage>

#include <array>

namespace quorvia::engine {

/// One channel of a pixel as a mask tells it, as 0..255.
class MaskedChannel
{
  public:
    /// `mask` 0 gives `absent` for every pixel.
    explicit MaskedChannel(quint32 mask = 0, int absent = 0);

    int of(quint32 pixel) const
    {
        const quint32 value = (pixel & m_mask) >> m_shift;
        return m_top <= 255 ? m_scaled[value] : int((quint64(value) * 255 + m_top / 2) / m_top);
    }

  private:
    quint32 m_mask;
    int m_shift = 0;
    quint32 m_top = 0; ///< the greatest value under the mask
    std::array<uchar, 256> m_scaled = {};
};

class BmpRows
{
  public:
    explicit BmpRows(const BmpLayout& layout);

    /// Mono for 1 bit, Indexed8 up to 8 bits, ARGB32 when there is an alpha mask, else RGB32.
    QImage::Format format() const;
    /// Writes the first `count` pixels of `stored` to the image row `out`.
    void convert(const uchar* stored, int count, uchar* out) const;

  private:
    quint32 pixelAt(const uchar* stored, int index) const;

    int m_bits;
    bool m_hasAlpha;
    bool m_plain; ///< the masks are those of 8-bit blue, green, red in this order
    std::array<MaskedChannel, 4> m_channels;
};

} // namespace quorvia::engine
