#include "engine/codecs/png/PngRows.h"

#include "engine/codecs/ImageRows.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr int greyType = 0;
constexpr int rgbType = 2;
constexpr int paletteType = 3;
constexpr int greyAlphaType = 4;
constexpr int rgbaType = 6;

quint16 wideAt(const uchar* raw, int index)
{
    return qFromBigEndian<quint16>(raw + 2 * qsizetype(index));
}

/// value * 255 / 65535, rounded.
uchar narrow(quint16 value)
{
    return uchar((value * 255U + 32895U) >> 16);
}

/// Sample `index` of a row whose samples of `depth` (1, 2 or 4) bits follow each other from the highest bit
/// on.
uchar packedAt(const uchar* raw, int index, int depth)
{
    const int perByte = 8 / depth;
    const int shift = 8 - depth - index % perByte * depth;
    return uchar(raw[index / perByte] >> shift & ((1 << depth) - 1));
}

QRgb grey(uchar value, uchar alpha)
{
    return QRgb(alpha) << 24 | value * 0x010101U;
}

} // namespace

QImage::Format pngImageFormat(const PngHeader& header, bool transparent)
{
    switch (header.colors) {
    case paletteType:
        return header.depth == 1 && !transparent ? QImage::Format_Mono : QImage::Format_Indexed8;
    case greyType:
        if (transparent)
            return QImage::Format_ARGB32;
        return header.depth == 1 ? QImage::Format_Mono : QImage::Format_Grayscale8;
    case rgbType:
        return transparent ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    default:
        return QImage::Format_ARGB32;
    }
}

PngRows::PngRows(const PngHeader& header, bool transparent, std::optional<PngClearColor> clear)
    : m_colors(header.colors), m_depth(header.depth), m_width(header.size.width()),
      m_format(pngImageFormat(header, transparent)), m_clear(clear)
{
}

void PngRows::convert(const uchar* raw, uchar* line, qsizetype lineBytes) const
{
    const qsizetype bits = qsizetype(m_width) * QImage::toPixelFormat(m_format).bitsPerPixel();
    const qsizetype used = (bits + 7) / 8;
    std::memset(line + used, 0, size_t(lineBytes - used));
    auto* pixels = reinterpret_cast<QRgb*>(line);
    if (m_format == QImage::Format_Mono)
        copyBits(raw, line);
    else if (m_format == QImage::Format_Indexed8)
        spreadSamples(raw, line);
    else if (m_format == QImage::Format_Grayscale8)
        convertGrey(raw, line);
    else if (m_colors == greyType)
        convertClearGrey(raw, pixels);
    else if (m_colors == greyAlphaType)
        convertGreyAlpha(raw, pixels);
    else if (m_colors == rgbaType && m_depth == 8)
        convertRgba(raw, pixels);
    else if (m_depth == 8 && !m_clear)
        rgbToRgb32(raw, pixels, m_width);
    else
        convertColors(raw, pixels);
}

void PngRows::copyBits(const uchar* raw, uchar* line) const
{
    std::memcpy(line, raw, size_t(m_width + 7) / 8);
    if (m_width % 8 != 0)
        line[m_width / 8] &= uchar(0xff00 >> m_width % 8);
}

void PngRows::spreadSamples(const uchar* raw, uchar* line) const
{
    if (m_depth == 8) {
        std::memcpy(line, raw, size_t(m_width));
        return;
    }
    for (int x = 0; x < m_width; ++x)
        line[x] = packedAt(raw, x, m_depth);
}

void PngRows::convertGrey(const uchar* raw, uchar* line) const
{
    if (m_depth == 16) {
        for (int x = 0; x < m_width; ++x)
            line[x] = narrow(wideAt(raw, x));
        return;
    }
    spreadSamples(raw, line);
    if (m_depth == 8)
        return;
    const int step = 255 / ((1 << m_depth) - 1);
    for (int x = 0; x < m_width; ++x)
        line[x] = uchar(line[x] * step);
}

void PngRows::convertClearGrey(const uchar* raw, QRgb* out) const
{
    const int step = m_depth < 16 ? 255 / ((1 << m_depth) - 1) : 0;
    for (int x = 0; x < m_width; ++x) {
        const quint16 sample = m_depth == 16  ? wideAt(raw, x)
                               : m_depth == 8 ? raw[x]
                                              : packedAt(raw, x, m_depth);
        const uchar shown = m_depth == 16 ? narrow(sample) : uchar(sample * step);
        out[x] = grey(shown, isClear(sample, 0, 0) ? 0 : 255);
    }
}

void PngRows::convertGreyAlpha(const uchar* raw, QRgb* out) const
{
    if (m_depth == 16) {
        for (int x = 0; x < m_width; ++x)
            out[x] = grey(narrow(wideAt(raw, 2 * x)), narrow(wideAt(raw, 2 * x + 1)));
        return;
    }
    for (int x = 0; x < m_width; ++x)
        out[x] = grey(raw[2 * x], raw[2 * x + 1]);
}

void PngRows::convertRgba(const uchar* raw, QRgb* out) const
{
    for (int x = 0; x < m_width; ++x) {
        const auto rgba = qFromBigEndian<quint32>(raw + 4 * qsizetype(x));
        out[x] = rgba >> 8 | rgba << 24;
    }
}

/// What is left: 16 bits, and 8 bits with a clear colour.
void PngRows::convertColors(const uchar* raw, QRgb* out) const
{
    if (m_depth == 8) {
        for (int x = 0; x < m_width; ++x, raw += 3)
            out[x] = qRgba(raw[0], raw[1], raw[2], isClear(raw[0], raw[1], raw[2]) ? 0 : 255);
        return;
    }
    const bool alpha = m_colors == rgbaType;
    for (int x = 0; x < m_width; ++x, raw += alpha ? 8 : 6) {
        const quint16 red = wideAt(raw, 0);
        const quint16 green = wideAt(raw, 1);
        const quint16 blue = wideAt(raw, 2);
        const uchar shown = alpha ? narrow(wideAt(raw, 3)) : isClear(red, green, blue) ? 0 : 255;
        out[x] = qRgba(narrow(red), narrow(green), narrow(blue), shown);
    }
}

} // namespace quorvia::engine
