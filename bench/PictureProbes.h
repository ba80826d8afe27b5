// Where the programs that wait for a picture look at the screen.
#pragma once

#include <X11/Xlib.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace quorvia::bench {

using Points = std::vector<std::pair<int, int>>;

/// The middle of the screen, in pixels.
inline Points middleOfScreen(Display* display)
{
    return {{DisplayWidth(display, DefaultScreen(display)) / 2,
             DisplayHeight(display, DefaultScreen(display)) / 2}};
}

/// The middle of the screen and four places towards the corners of a 3:2 picture as high as `height` around
/// it, `reach` of its sides away.
inline Points placesAround(Display* display, double height, double reach)
{
    Points points = middleOfScreen(display);
    const auto [x, y] = points.front();
    for (const double across : {-reach, reach}) {
        for (const double down : {-reach, reach})
            points.emplace_back(int(x + across * height * 3 / 2), int(y + down * height));
    }
    return points;
}

/// The places of a 3:2 picture that is as high as the screen.
inline Points placesOfFullPicture(Display* display)
{
    constexpr double reach = 0.38;
    return placesAround(display, DisplayHeight(display, DefaultScreen(display)), reach);
}

/// The places of a 3:2 picture fitted into seven eighths of the screen. The marks of the pictures, a twelfth
/// of their width and height, lie under them with and without the toolbar, which comes a moment after the
/// window.
inline Points placesOfPicture(Display* display)
{
    constexpr double reach = 0.36;
    const double width = DisplayWidth(display, DefaultScreen(display));
    const double height = DisplayHeight(display, DefaultScreen(display));
    return placesAround(display, std::min(width * 7 / 8 * 2 / 3, height * 7 / 8), reach);
}

} // namespace quorvia::bench
