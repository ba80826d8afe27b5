#include "platform/Contrast.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace quorvia::platform {

namespace {

/// The relative luminance of WCAG 2, 0 to 1.
double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor inkOn(const QColor& ground, const QColor& own)
{
    constexpr double wellReadable = 7;
    if (contrast(ground, own) >= wellReadable)
        return own;
    const QColor nearBlack(24, 28, 32);
    return contrast(ground, Qt::white) >= contrast(ground, nearBlack) ? QColor(Qt::white) : nearBlack;
}

QColor tint(const QPalette& palette, double share)
{
    const QColor ground = palette.color(QPalette::Window);
    const QColor ink = palette.color(QPalette::WindowText);
    const auto mix = [share](int a, int b) { return int(std::lround(a + (b - a) * share)); };
    return {mix(ground.red(), ink.red()), mix(ground.green(), ink.green()), mix(ground.blue(), ink.blue())};
}

} // namespace quorvia::platform
