#include "engine/codecs/tiff/TiffYcc.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

int clamped(float value)
{
    return (int(2 * std::clamp(value, 0.0F, 255.0F)) + 1) / 2; // rounded
}

} // namespace

/// The equations of TIFF 6.0, sections 20 and 21.
TiffYcc::TiffYcc(const TiffLayout& layout) : m_block(layout.block)
{
    if (layout.colors != TiffColors::YCbCr)
        return;
    const auto& range = layout.range;
    for (size_t code = 0; code < 256; ++code) {
        const auto full = [&](size_t black, float whole) {
            return (float(code) - range[black]) * whole / (range[black + 1] - range[black]);
        };
        m_luma[code] = full(0, 255);
        m_blue[code] = full(2, 127);
        m_red[code] = full(4, 127);
    }
    const auto& luma = layout.luma;
    m_redByCr = 2 - 2 * luma[0];
    m_blueByCb = 2 - 2 * luma[2];
    m_greenByCr = luma[0] * m_redByCr / luma[1];
    m_greenByCb = luma[2] * m_blueByCb / luma[1];
}

void TiffYcc::convert(const uchar* blocks, int within, int count, QRgb* out) const
{
    const int across = m_block.width();
    const int lumas = across * m_block.height();
    for (int x = 0; x < count; blocks += lumas + 2) {
        const float blue = m_blue[blocks[lumas]];
        const float red = m_red[blocks[lumas + 1]];
        const uchar* row = blocks + within * across;
        for (int i = 0; i < across && x < count; ++i, ++x) {
            const float luma = m_luma[row[i]];
            out[x] =
                qRgb(clamped(luma + m_redByCr * red), clamped(luma - m_greenByCr * red - m_greenByCb * blue),
                     clamped(luma + m_blueByCb * blue));
        }
    }
}

} // namespace quorvia::engine
