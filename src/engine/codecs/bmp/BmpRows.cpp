#include "engine/codecs/bmp/BmpRows.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>

namespace quorvia::engine {

namespace {

/// `value` of 0..`top` (up to 8 bits) as 0..255. Bits in a row are repeated to fill the byte, as is the
/// custom for this format: 5 bits abcde give abcdeabc.
quint32 scaledShort(quint32 value, quint32 top)
{
    const int bits = std::bit_width(top);
    if (!std::has_single_bit(top + 1)) // a mask with gaps
        return (value * 255 + top / 2) / top;
    quint32 filled = 0;
    for (int at = 8 - bits; at > -bits; at -= bits)
        filled |= at >= 0 ? value << at : value >> -at;
    return filled;
}

} // namespace

MaskedChannel::MaskedChannel(quint32 mask, int absent) : m_mask(mask)
{
    if (mask == 0) {
        m_scaled[0] = uchar(absent);
        return;
    }
    m_shift = std::countr_zero(mask);
    m_top = mask >> m_shift;
    for (quint32 value = 0; value <= std::min(m_top, 255u); ++value)
        m_scaled[value] = uchar(scaledShort(value, m_top));
}

BmpRows::BmpRows(const BmpLayout& layout)
    : m_bits(layout.bitsPerPixel), m_hasAlpha(layout.bitsPerPixel > 8 && layout.masks[3] != 0),
      m_plain(layout.masks[0] == 0xFF0000 && layout.masks[1] == 0xFF00 && layout.masks[2] == 0xFF)
{
    constexpr int opaque = 255;
    for (size_t i = 0; i < m_channels.size(); ++i)
        m_channels[i] = MaskedChannel(layout.masks[i], i == 3 ? opaque : 0);
}

QImage::Format BmpRows::format() const
{
    if (m_bits == 1)
        return QImage::Format_Mono;
    if (m_bits <= 8)
        return QImage::Format_Indexed8;
    return m_hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
}

quint32 BmpRows::pixelAt(const uchar* stored, int index) const
{
    switch (m_bits) {
    case 16:
        return qFromLittleEndian<quint16>(stored + 2 * qint64(index));
    case 24: {
        const uchar* at = stored + 3 * qint64(index);
        return quint32(at[0]) | quint32(at[1]) << 8 | quint32(at[2]) << 16;
    }
    default:
        return qFromLittleEndian<quint32>(stored + 4 * qint64(index));
    }
}

void BmpRows::convert(const uchar* stored, int count, uchar* out) const
{
    if (m_bits == 1 || m_bits == 8) {
        std::memcpy(out, stored, (size_t(count) * size_t(m_bits) + 7) / 8);
        return;
    }
    if (m_bits < 8) {
        const int perByte = 8 / m_bits;
        const int mask = (1 << m_bits) - 1;
        for (int x = 0; x < count; ++x)
            out[x] = uchar(stored[x / perByte] >> (8 - m_bits * (x % perByte + 1)) & mask);
        return;
    }
    auto* pixels = reinterpret_cast<QRgb*>(out);
    if (m_plain && !m_hasAlpha && m_bits != 16) {
        const int step = m_bits / 8;
        for (int x = 0; x < count; ++x, stored += step)
            pixels[x] = qRgb(stored[2], stored[1], stored[0]);
        return;
    }
    for (int x = 0; x < count; ++x) {
        const quint32 pixel = pixelAt(stored, x);
        pixels[x] = qRgba(m_channels[0].of(pixel), m_channels[1].of(pixel), m_channels[2].of(pixel),
                          m_channels[3].of(pixel));
    }
}

} // namespace quorvia::engine
