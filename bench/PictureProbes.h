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

/// The middle of the screen and four places towards the corners of a 3:2 picture fitted into seven eighths of
/// it. The marks of the pictures, a twelfth of their width and height, lie under them with and without the
/// toolbar, which comes a moment after the window.
inline Points placesOfPicture(Display* display)
{
    constexpr double reach = 0.36;
    const double width = DisplayWidth(display, DefaultScreen(display));
    const double height = DisplayHeight(display, DefaultScreen(display));
    const double fitted = std::min(width * 7 / 8, height * 7 / 8 * 3 / 2);
    Points points = middleOfScreen(display);
    for (const double x : {-reach, reach}) {
        for (const double y : {-reach, reach})
            points.emplace_back(int(width / 2 + x * fitted), int(height / 2 + y * fitted * 2 / 3));
    }
    return points;
}

} // namespace quorvia::bench
