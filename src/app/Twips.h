// Twips: 1440 to the inch, 15 to a device-independent pixel.
#pragma once

namespace quorvia::app {

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

} // namespace quorvia::app
