#include "engine/codecs/losslessjpeg/LosslessJpegColor.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int sampleValues = 65536;
constexpr QRgb opaque = 0xFF000000;

uchar clamped(int value)
{
    return uchar(std::clamp(value, 0, 255));
}

/// The JFIF equations, in 65536ths.
QRgb fromYCbCr(int y, int cb, int cr)
{
    constexpr int half = 32768;
    const int blue = cb - 128;
    const int red = cr - 128;
    return qRgb(clamped(y + ((91881 * red + half) >> 16)),
                clamped(y + ((-22554 * blue - 46802 * red + half) >> 16)),
                clamped(y + ((116130 * blue + half) >> 16)));
}

/// What each ink and black both let through, c = (255 - ink) * (255 - black) / 255, rounded.
QRgb fromLight(int cyan, int magenta, int yellow, int black)
{
    const auto channel = [black](int light) { return (light * black + 127) / 255; };
    return qRgb(channel(cyan), channel(magenta), channel(yellow));
}

/// The samples of a pixel, first in red's place, fourth in alpha's, as RGB.
QRgb converted(QRgb samples, LosslessColor color)
{
    switch (color) {
    case LosslessColor::YCbCr:
        return fromYCbCr(qRed(samples), qGreen(samples), qBlue(samples));
    case LosslessColor::Cmyk:
        return fromLight(255 - qRed(samples), 255 - qGreen(samples), 255 - qBlue(samples),
                         255 - qAlpha(samples));
    case LosslessColor::InvertedCmyk:
        return fromLight(qRed(samples), qGreen(samples), qBlue(samples), qAlpha(samples));
    case LosslessColor::InvertedYcck: {
        // YCCK holds the complements of the inks' complements: the equations give what Adobe stores turned
        // round.
        const QRgb inks = fromYCbCr(qRed(samples), qGreen(samples), qBlue(samples));
        return fromLight(255 - qRed(inks), 255 - qGreen(inks), 255 - qBlue(inks), qAlpha(samples));
    }
    default:
        return samples | opaque;
    }
}

} // namespace

LosslessColor losslessColor(size_t components, int transform, bool jfif)
{
    constexpr int toYCbCr = 1;
    constexpr int toYcck = 2;
    if (components < 3)
        return LosslessColor::Gray;
    if (components == 4) {
        if (transform == toYcck)
            return LosslessColor::InvertedYcck;
        return transform >= 0 ? LosslessColor::InvertedCmyk : LosslessColor::Cmyk;
    }
    if (transform >= 0)
        return transform == toYCbCr ? LosslessColor::YCbCr : LosslessColor::Rgb;
    return jfif ? LosslessColor::YCbCr : LosslessColor::Rgb;
}

LosslessCanvas::LosslessCanvas(QImage image, LosslessColor color, int precision)
    : m_image(std::move(image)), m_color(color), m_eightBits(sampleValues),
      m_reached(size_t(m_image.height()))
{
    const int top = (1 << precision) - 1;
    for (int value = 0; value < sampleValues; ++value)
        m_eightBits[size_t(value)] = uchar((std::min(value, top) * 255 + top / 2) / top);
}

void LosslessCanvas::draw(int component, int y, int count, const quint16* samples, int shift)
{
    m_drawn = m_drawn || count > 0;
    uchar* const line = m_image.scanLine(y);
    const auto eightBits = [&](int x) { return m_eightBits[(samples[x] << shift) & (sampleValues - 1)]; };
    if (m_color == LosslessColor::Gray) {
        for (int x = 0; x < count && component == 0; ++x)
            line[x] = eightBits(x);
        return;
    }
    auto* row = reinterpret_cast<QRgb*>(line);
    int& reached = m_reached[size_t(y)];
    if (count > reached) { // what is missing of them for good shows no tint
        const bool centered = m_color == LosslessColor::YCbCr || m_color == LosslessColor::InvertedYcck;
        std::fill(row + reached, row + count, centered ? qRgba(0, 128, 128, 255) : opaque);
        reached = count;
    }
    constexpr int shifts[] = {16, 8, 0, 24};
    const int place = shifts[component];
    const QRgb keep = ~(QRgb(255) << place);
    for (int x = 0; x < count; ++x)
        row[x] = (row[x] & keep) | QRgb(eightBits(x)) << place;
}

/// A row of four samples a pixel as the inks that are stored, brought to RGB in place.
void LosslessCanvas::convertInks(QRgb* row, int count, const ColorConversion& inks) const
{
    std::vector<uchar> bytes;
    bytes.reserve(4 * size_t(count));
    for (int x = 0; x < count; ++x) {
        QRgb ink = row[x];
        if (m_color == LosslessColor::InvertedYcck)
            ink = (~fromYCbCr(qRed(ink), qGreen(ink), qBlue(ink)) & 0xffffffU) | (ink & 0xff000000U);
        for (const int value : {qRed(ink), qGreen(ink), qBlue(ink), qAlpha(ink)})
            bytes.push_back(uchar(value));
    }
    inks.convertInks(bytes.data(), row, count, m_color != LosslessColor::Cmyk);
}

QImage LosslessCanvas::finish(const ColorConversion* inks)
{
    const bool byProfile = inks && inks->model() == ColorModel::Cmyk &&
                           (m_color == LosslessColor::Cmyk || m_color == LosslessColor::InvertedCmyk ||
                            m_color == LosslessColor::InvertedYcck);
    for (int y = 0; byProfile && y < m_image.height(); ++y)
        convertInks(reinterpret_cast<QRgb*>(m_image.scanLine(y)), m_reached[size_t(y)], *inks);
    if (byProfile)
        return std::move(m_image);
    if (m_color != LosslessColor::Gray && m_color != LosslessColor::Rgb) {
        for (int y = 0; y < m_image.height(); ++y) {
            auto* row = reinterpret_cast<QRgb*>(m_image.scanLine(y));
            const LosslessColor color = m_color;
            std::transform(row, row + m_reached[size_t(y)], row,
                           [color](QRgb samples) { return converted(samples, color); });
        }
    }
    return std::move(m_image);
}

} // namespace quorvia::engine
