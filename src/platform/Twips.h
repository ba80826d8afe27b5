// Twips: 1440 to the inch, 15 to a device-independent pixel.
#pragma once

#include <QRect>

namespace quorvia::platform {

inline constexpr int twipsPerPixel = 15;

/// Device-independent pixels for a length in twips, rounded towards zero.
constexpr int toPixels(int twips)
{
    return twips / twipsPerPixel;
}

/// Twips for a length in device-independent pixels.
constexpr int toTwips(int pixels)
{
    return pixels * twipsPerPixel;
}

/// Twips for a size in device-independent pixels.
constexpr QSize inTwips(QSize pixels)
{
    return {toTwips(pixels.width()), toTwips(pixels.height())};
}

/// Twips for a rectangle in device-independent pixels.
constexpr QRect inTwips(const QRect& pixels)
{
    return {QPoint(toTwips(pixels.x()), toTwips(pixels.y())), inTwips(pixels.size())};
}

/// The rectangle in device-independent pixels: its corner rounded towards zero, its size upwards, so that
/// nothing of what lies in it is cut off.
constexpr QRect toPixels(const QRect& twips)
{
    const auto upwards = [](int length) { return (length + twipsPerPixel - 1) / twipsPerPixel; };
    return {toPixels(twips.x()), toPixels(twips.y()), upwards(twips.width()), upwards(twips.height())};
}

} // namespace quorvia::platform
