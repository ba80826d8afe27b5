#include "engine/codecs/tiff/TiffRows.h"

#include "engine/codecs/ImageRows.h"
#include "engine/ColorGrid.h"

#include <QFloat16>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr quint32 top = 65535; // the greatest value of a sample on its way through

QImage::Format formatOf(const TiffLayout& layout)
{
    if (layout.alpha != TiffAlpha::None)
        return QImage::Format_ARGB32;
    const bool plain = layout.numbers == TiffNumbers::Unsigned;
    switch (layout.colors) {
    case TiffColors::Palette:
        return layout.bits == 1 ? QImage::Format_Mono : QImage::Format_Indexed8;
    case TiffColors::Grey:
    case TiffColors::GreyInverted:
        return layout.bits == 1 && plain ? QImage::Format_Mono : QImage::Format_Grayscale8;
    default:
        return QImage::Format_RGB32;
    }
}

template <class T>
T numberAt(const uchar* bytes, qint64 index)
{
    T value;
    std::memcpy(&value, bytes + index * qint64(sizeof(T)), sizeof(T));
    return value;
}

/// Sample `index` of a row whose samples of `bits` bits follow each other from the highest bit on.
quint32 packedAt(const uchar* bytes, qint64 index, int bits)
{
    qint64 at = index * bits;
    quint32 value = 0;
    for (int left = bits; left > 0;) {
        const int offset = int(at % 8);
        const int taken = std::min(8 - offset, left);
        const quint32 part = quint32(bytes[at / 8]) >> (8 - offset - taken) & ((1u << taken) - 1);
        value = value << taken | part;
        at += taken;
        left -= taken;
    }
    return value;
}

quint16 fromReal(double value)
{
    if (!(value > 0)) // not a number is black as well
        return 0;
    return value >= 1 ? quint16(top) : quint16(std::lround(value * top));
}

quint32 unsignedAt(const uchar* bytes, qint64 index, int bits)
{
    switch (bits) {
    case 8:
        return bytes[index];
    case 16:
        return numberAt<quint16>(bytes, index);
    case 32:
        return numberAt<quint32>(bytes, index);
    default:
        return packedAt(bytes, index, bits);
    }
}

quint16 realAt(const uchar* bytes, qint64 index, int bits)
{
    switch (bits) {
    case 16:
        return fromReal(double(float(numberAt<qfloat16>(bytes, index))));
    case 32:
        return fromReal(double(numberAt<float>(bytes, index)));
    default:
        return fromReal(numberAt<double>(bytes, index));
    }
}

/// Reads `out.size()` samples as 0..65535.
void widen(const uchar* bytes, int first, int step, const TiffLayout& layout, std::vector<quint16>& out)
{
    qint64 index = first;
    if (layout.numbers == TiffNumbers::Float) {
        for (quint16& value : out) {
            value = realAt(bytes, index, layout.bits);
            index += step;
        }
        return;
    }
    if (layout.bits == 16) {
        for (quint16& value : out) {
            value = numberAt<quint16>(bytes, index);
            index += step;
        }
        return;
    }
    const quint64 greatest = (quint64(1) << layout.bits) - 1;
    for (quint16& value : out) {
        const quint32 sample = unsignedAt(bytes, index, layout.bits);
        value = quint16((sample * quint64(top) + greatest / 2) / greatest);
        index += step;
    }
}

int narrow(quint32 value)
{
    return int((value * 255 + top / 2) / top);
}

quint32 product(quint32 a, quint32 b)
{
    return (a * b + top / 2) / top;
}

/// A colour that was stored multiplied by its alpha.
quint32 divided(quint32 color, quint32 alpha)
{
    if (alpha == 0)
        return 0;
    return quint32(std::min<quint64>((quint64(color) * top + alpha / 2) / alpha, top));
}

} // namespace

TiffRows::TiffRows(const TiffLayout& layout) : m_layout(layout), m_format(formatOf(layout))
{
    // Inks that were multiplied by alpha are none that the profile knows.
    if (layout.colors == TiffColors::Cmyk && layout.alpha != TiffAlpha::Associated)
        m_conversion = ColorConversion::of(layout.profile);
}

QList<QRgb> TiffRows::colorTable() const
{
    if (m_layout.colors == TiffColors::Palette && m_format != QImage::Format_ARGB32)
        return m_layout.palette;
    if (m_format != QImage::Format_Mono)
        return {};
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    return m_layout.colors == TiffColors::GreyInverted ? QList<QRgb>{white, black}
                                                       : QList<QRgb>{black, white};
}

void TiffRows::convert(const TiffSampleRow& row, int count, uchar* line, int x)
{
    const bool eightBits = m_layout.bits == 8 && m_layout.numbers == TiffNumbers::Unsigned;
    if (m_format == QImage::Format_Mono) {
        copyBits(row, count, line, x);
    } else if (m_format == QImage::Format_Indexed8) {
        copyIndices(row, count, line + x);
    } else if (m_format == QImage::Format_Grayscale8 && eightBits && row.step == 1) {
        convertGrey8(row.bytes[0], count, line + x);
    } else if (m_format != QImage::Format_Grayscale8 && eightBits && m_layout.colors == TiffColors::Rgb &&
               m_layout.alpha != TiffAlpha::Associated) {
        convertRgb8(row, count, reinterpret_cast<QRgb*>(line) + x);
    } else {
        convertDeep(row, count, line, x);
    }
}

void TiffRows::convertRgb8(const TiffSampleRow& row, int count, QRgb* out) const
{
    const bool alpha = m_layout.alpha != TiffAlpha::None;
    const uchar* red = row.bytes[0] + row.first[0];
    const uchar* green = row.bytes[1] + row.first[1];
    const uchar* blue = row.bytes[2] + row.first[2];
    const bool packed = green == red + 1 && blue == red + 2;
    if (packed && !alpha && row.step == 3) {
        rgbToRgb32(red, out, count);
        return;
    }
    for (int i = 0; i < count; ++i)
        out[i] = qRgb(red[i * row.step], green[i * row.step], blue[i * row.step]);
    if (!alpha)
        return;
    const uchar* opacity = row.bytes[3] + row.first[3];
    for (int i = 0; i < count; ++i)
        out[i] = (out[i] & 0xffffffU) | QRgb(opacity[i * row.step]) << 24;
}

void TiffRows::copyBits(const TiffSampleRow& row, int count, uchar* line, int x) const
{
    if (row.step == 1 && x % 8 == 0) {
        std::memcpy(line + x / 8, row.bytes[0], size_t(count + 7) / 8);
        return;
    }
    for (int i = 0; i < count; ++i) {
        const quint32 bit = packedAt(row.bytes[0], row.first[0] + qint64(i) * row.step, 1);
        const int at = x + i;
        const auto mask = uchar(0x80 >> at % 8);
        line[at / 8] = uchar(bit ? line[at / 8] | mask : line[at / 8] & ~mask);
    }
}

void TiffRows::copyIndices(const TiffSampleRow& row, int count, uchar* out) const
{
    if (m_layout.bits == 8 && row.step == 1) {
        std::memcpy(out, row.bytes[0], size_t(count));
        return;
    }
    for (int i = 0; i < count; ++i)
        out[i] = uchar(packedAt(row.bytes[0], row.first[0] + qint64(i) * row.step, m_layout.bits));
}

void TiffRows::convertGrey8(const uchar* samples, int count, uchar* out) const
{
    if (m_layout.colors == TiffColors::Grey)
        std::memcpy(out, samples, size_t(count));
    else
        std::transform(samples, samples + count, out, [](uchar value) { return uchar(255 - value); });
}

void TiffRows::convertDeep(const TiffSampleRow& row, int count, uchar* line, int x)
{
    if (m_layout.colors == TiffColors::CieLab || m_layout.colors == TiffColors::IccLab) {
        convertLab(row, count, reinterpret_cast<QRgb*>(line) + x);
        return;
    }
    const int used = m_layout.usedSamples();
    for (size_t channel = 0; channel < size_t(used); ++channel) {
        m_wide[channel].resize(size_t(count));
        if (channel == 0 && m_layout.colors == TiffColors::Palette) {
            for (int i = 0; i < count; ++i)
                m_wide[0][size_t(i)] =
                    quint16(packedAt(row.bytes[0], row.first[0] + qint64(i) * row.step, m_layout.bits));
            continue;
        }
        widen(row.bytes[channel], row.first[channel], row.step, m_layout, m_wide[channel]);
    }
    if (m_conversion) {
        convertInks(count, reinterpret_cast<QRgb*>(line) + x);
        return;
    }
    if (m_format != QImage::Format_Grayscale8) {
        combine(count, reinterpret_cast<QRgb*>(line) + x);
        return;
    }
    const bool inverted = m_layout.colors == TiffColors::GreyInverted;
    for (int i = 0; i < count; ++i) {
        const int grey = narrow(m_wide[0][size_t(i)]);
        line[x + i] = uchar(inverted ? 255 - grey : grey);
    }
}

void TiffRows::convertInks(int count, QRgb* out)
{
    m_inks.resize(4 * size_t(count));
    for (size_t ink = 0; ink < 4; ++ink) {
        for (size_t i = 0; i < size_t(count); ++i)
            m_inks[4 * i + ink] = uchar(narrow(m_wide[ink][i]));
    }
    m_conversion->convertInks(m_inks.data(), out, count, false);
    if (m_layout.alpha == TiffAlpha::None)
        return;
    for (size_t i = 0; i < size_t(count); ++i)
        out[i] = (out[i] & 0xffffffU) | QRgb(narrow(m_wide[4][i])) << 24;
}

/// Format: TIFF 6.0, section 23; TIFF Technical Note 4. Deep ICC samples are those of ICC.1:2001: 0xFF00 is
/// full.
void TiffRows::convertLab(const TiffSampleRow& row, int count, QRgb* out)
{
    const bool deep = m_layout.bits == 16;
    const bool icc = m_layout.colors == TiffColors::IccLab;
    const bool hasAlpha = m_layout.alpha != TiffAlpha::None;
    const float unit = deep ? 256 : 1;
    const float full = !deep ? 255 : icc ? 65280 : 65535;
    const quint32 half = deep ? 32768 : 128;
    const auto hue = [&](quint32 code) {
        const quint32 counted = icc ? code : code ^ half; // from the least either way
        return (float(counted) - float(half)) / unit;
    };
    for (int i = 0; i < count; ++i) {
        const auto code = [&](size_t s) {
            return unsignedAt(row.bytes[s], row.first[s] + qint64(i) * row.step, m_layout.bits);
        };
        out[i] = labInSrgb(std::min(float(code(0)) * 100 / full, 100.0F), hue(code(1)), hue(code(2)));
        if (hasAlpha)
            out[i] = (out[i] & 0xffffffU) | (code(3) >> (deep ? 8 : 0)) << 24;
    }
}

void TiffRows::combine(int count, QRgb* out) const
{
    const auto alphaAt = size_t(m_layout.colorSamples());
    for (size_t i = 0; i < size_t(count); ++i) {
        std::array<quint32, 3> color = {m_wide[0][i], m_wide[0][i], m_wide[0][i]};
        switch (m_layout.colors) {
        case TiffColors::GreyInverted:
            color.fill(top - color[0]);
            break;
        case TiffColors::Palette: {
            const QRgb entry = m_layout.palette[m_wide[0][i]];
            color = {quint32(qRed(entry)) * 257, quint32(qGreen(entry)) * 257, quint32(qBlue(entry)) * 257};
            break;
        }
        case TiffColors::Rgb:
            color = {m_wide[0][i], m_wide[1][i], m_wide[2][i]};
            break;
        case TiffColors::Cmyk:
            for (size_t c = 0; c < 3; ++c)
                color[c] = product(top - m_wide[c][i], top - m_wide[3][i]);
            break;
        default:
            break;
        }
        quint32 alpha = top;
        if (m_layout.alpha != TiffAlpha::None)
            alpha = m_wide[alphaAt][i];
        if (m_layout.alpha == TiffAlpha::Associated) {
            for (quint32& value : color)
                value = divided(value, alpha);
        }
        out[i] = qRgba(narrow(color[0]), narrow(color[1]), narrow(color[2]), narrow(alpha));
    }
}

} // namespace quorvia::engine
