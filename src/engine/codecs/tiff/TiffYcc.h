// Brings blocks of YCbCr samples of a TIFF to RGB. Costs a table of 3 KB to make.
#pragma once

#include "engine/codecs/tiff/TiffLayout.h"

#include <QColor>

#include <array>

namespace quorvia::engine {

class TiffYcc
{
  public:
    /// By the numbers in `layout`; of no use unless its colours are YCbCr.
    explicit TiffYcc(const TiffLayout& layout);

    /// `count` pixels of row `within` (from 0) of the row of blocks at `blocks`: each block its Y by rows,
    /// then one Cb and one Cr.
    void convert(const uchar* blocks, int within, int count, QRgb* out) const;

  private:
    const QSize m_block;
    std::array<float, 256> m_luma = {};
    std::array<float, 256> m_blue = {}; ///< Cb
    std::array<float, 256> m_red = {};  ///< Cr
    float m_redByCr = 0;
    float m_blueByCb = 0;
    float m_greenByCr = 0;
    float m_greenByCb = 0;
};

} // namespace quorvia::engine
