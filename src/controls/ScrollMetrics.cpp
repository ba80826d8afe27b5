#include "controls/ScrollMetrics.h"

#include <algorithm>
#include <cmath>

namespace quorvia::controls {

namespace {

constexpr double twipsPerUnit = 20;
constexpr double shortestThumb = 200;

double trackLength(const ScrollTrack& track)
{
    return double(track.length) - track.nearArrow - track.farArrow;
}

/// The length of a thumb that moves 20 twips a unit; below shortestThumb there is no room for that.
double longThumb(const ScrollTrack& track)
{
    return (trackLength(track) - twipsPerUnit * usableMaximum(track.maximum)) / 2;
}

/// How far a thumb of the shortest length goes.
double shortThumbTravel(const ScrollTrack& track)
{
    return std::max(trackLength(track) - 2 * shortestThumb, 0.0);
}

} // namespace

int usableMaximum(int maximum)
{
    return std::max(maximum, 1);
}

int clampedValue(int value, int maximum)
{
    return std::clamp(value, 0, usableMaximum(maximum));
}

ScrollThumb thumbAt(const ScrollTrack& track, int value)
{
    const double thumb = longThumb(track);
    if (thumb >= shortestThumb)
        return {track.nearArrow + int(std::lround(twipsPerUnit * value)), int(std::lround(thumb))};
    const double offset = shortThumbTravel(track) * value / usableMaximum(track.maximum);
    return {track.nearArrow + int(std::lround(offset)), int(shortestThumb)};
}

std::optional<int> valueAt(const ScrollTrack& track, int position)
{
    const double offset = double(position) - track.nearArrow;
    if (longThumb(track) >= shortestThumb)
        return int(std::lround(offset / twipsPerUnit));
    const double travel = shortThumbTravel(track);
    if (travel <= 0)
        return std::nullopt;
    constexpr double farthest = 1 << 30;
    return int(std::lround(std::clamp(offset * usableMaximum(track.maximum) / travel, -farthest, farthest)));
}

int scrollStep(int maximum)
{
    constexpr int firstOfMany = 151;
    return maximum < firstOfMany ? 1 : int(std::nearbyint(maximum / 100.0));
}

ScrollPart partAt(const ScrollTrack& track, int position)
{
    if (position < track.nearArrow)
        return ScrollPart::NearArrow;
    return position >= track.length - track.farArrow ? ScrollPart::FarArrow : ScrollPart::Track;
}

} // namespace quorvia::controls
