#include "engine/ColorTables.h"

#include "engine/ColorGrid.h"
#include "engine/SrgbCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr unsigned steps = 256;

QRgb toPixel(const LinearColor& color)
{
    return qRgb(srgbByte(color.red), srgbByte(color.green), srgbByte(color.blue));
}

bool alike(QRgb a, QRgb b)
{
    const auto near = [](int x, int y) { return std::abs(x - y) <= 1; };
    return near(qRed(a), qRed(b)) && near(qGreen(a), qGreen(b)) && near(qBlue(a), qBlue(b));
}

// --- grey

class GrayConversion final : public ColorConversion
{
  public:
    explicit GrayConversion(const std::vector<LinearColor>& light) : ColorConversion(ColorModel::Gray)
    {
        for (size_t i = 0; i < m_table.size(); ++i)
            m_table[i] = toPixel(light[i]);
    }

    void convert(QRgb* pixels, qsizetype count) const override
    {
        const auto at = [this](int value) { return m_table[static_cast<size_t>(value)]; };
        for (qsizetype i = 0; i < count; ++i) {
            const QRgb pixel = pixels[i];
            pixels[i] = (pixel & 0xff000000U) | (at(qRed(pixel)) & 0xff0000U) |
                        (at(qGreen(pixel)) & 0xff00U) | (at(qBlue(pixel)) & 0xffU);
        }
    }

  private:
    std::array<QRgb, steps> m_table;
};

// --- a curve a channel and a matrix

class MatrixConversion final : public ColorConversion
{
  public:
    /// `light` holds the colours of red alone, green alone and blue alone, 256 each.
    explicit MatrixConversion(const std::vector<LinearColor>& light)
        : ColorConversion(ColorModel::Rgb), m_encode(srgbTable())
    {
        const LinearColor black = light[0];
        const float scale = lightSteps - 1;
        for (size_t i = 0; i < light.size(); ++i) {
            // Black stands in all three; the sum is to hold it once, and half a step to round by.
            const bool once = i < steps;
            const float half = once ? 0.5F : 0;
            const auto share = [&](float value, float dark) {
                return (value - (once ? 0 : dark)) * scale + half;
            };
            m_shares[i] = Four{share(light[i].blue, black.blue), share(light[i].green, black.green),
                               share(light[i].red, black.red), 0};
        }
    }

    QRgb one(QRgb pixel) const
    {
        const FourInts places =
            srgbPlaces(m_shares[pixel >> 16 & 255U] + m_shares[steps + (pixel >> 8 & 255U)] +
                       m_shares[2 * steps + (pixel & 255U)]);
        const auto encoded = [&](int c) { return QRgb(m_encode[static_cast<size_t>(places[c])]); };
        return (pixel & 0xff000000U) | encoded(2) << 16 | encoded(1) << 8 | encoded(0);
    }

    void convert(QRgb* pixels, qsizetype count) const override
    {
        for (qsizetype i = 0; i < count; ++i)
            pixels[i] = one(pixels[i]);
    }

  private:
    std::array<Four, 3 * steps> m_shares; ///< what a value of a channel adds to blue, green and red light
    const std::array<uchar, lightSteps>& m_encode;
};

/// The colours of red, green and blue alone, 256 each.
std::optional<std::vector<LinearColor>> channelsAlone(ProfileSampler& sampler)
{
    std::vector<float> device(3 * 3 * steps);
    for (size_t channel = 0; channel < 3; ++channel) {
        for (size_t i = 0; i < steps; ++i)
            device[(channel * steps + i) * 3 + channel] = float(i) / 255;
    }
    std::vector<LinearColor> light(3 * steps);
    if (!sampler.sample(device.data(), light.data(), light.size()))
        return {};
    return light;
}

/// Colours all over the cube, black, white and the corners among them, and what the sampler makes of them.
struct Samples
{
    std::vector<QRgb> device;
    std::vector<QRgb> srgb;
};

std::optional<Samples> sampleColors(ProfileSampler& sampler)
{
    Samples samples;
    for (int i = 0; i < 8; ++i)
        samples.device.push_back(qRgb(i & 1 ? 255 : 0, i & 2 ? 255 : 0, i & 4 ? 255 : 0));
    for (int v = 0; v < int(steps); v += 5)
        samples.device.push_back(qRgb(v, v, v));
    std::minstd_rand numbers(20);
    constexpr size_t enough = 512;
    while (samples.device.size() < enough)
        samples.device.push_back(0xff000000U | static_cast<QRgb>(numbers() >> 4));
    std::vector<float> device;
    for (const QRgb color : samples.device) {
        for (const int value : {qRed(color), qGreen(color), qBlue(color)})
            device.push_back(float(value) / 255);
    }
    std::vector<LinearColor> light(samples.device.size());
    if (!sampler.sample(device.data(), light.data(), light.size()))
        return {};
    for (const LinearColor& color : light)
        samples.srgb.push_back(toPixel(color));
    return samples;
}

bool allAlike(const std::vector<QRgb>& a, const std::vector<QRgb>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), alike);
}

std::shared_ptr<const ColorConversion> makeGray(ProfileSampler& sampler)
{
    std::vector<float> device(steps);
    for (size_t i = 0; i < steps; ++i)
        device[i] = float(i) / 255;
    std::vector<LinearColor> light(steps);
    if (!sampler.sample(device.data(), light.data(), steps))
        return nullptr;
    bool same = true;
    for (int i = 0; i < int(steps); ++i)
        same = same && alike(toPixel(light[static_cast<size_t>(i)]), qRgb(i, i, i));
    return same ? nullptr : std::make_shared<GrayConversion>(light);
}

std::shared_ptr<const ColorConversion> makeRgb(ProfileSampler& sampler)
{
    const auto samples = sampleColors(sampler);
    if (!samples || allAlike(samples->device, samples->srgb))
        return nullptr;
    const auto light = channelsAlone(sampler);
    if (!light)
        return nullptr;
    auto matrix = std::make_shared<MatrixConversion>(*light);
    std::vector<QRgb> made = samples->device;
    matrix->convert(made.data(), static_cast<qsizetype>(made.size()));
    if (allAlike(made, samples->srgb))
        return matrix;
    return makeGrid(sampler, ColorModel::Rgb);
}

} // namespace

std::shared_ptr<const ColorConversion> makeConversion(ProfileSampler& sampler, ColorModel model)
{
    switch (model) {
    case ColorModel::Gray:
        return makeGray(sampler);
    case ColorModel::Rgb:
        return makeRgb(sampler);
    case ColorModel::Cmyk:
        break;
    }
    return makeGrid(sampler, ColorModel::Cmyk);
}

} // namespace quorvia::engine
