// The arithmetic of a scroll bar, along its axis: lengths in twips from the control's near end, values from 0
// to a maximum of at least 1.
#pragma once

#include <optional>

namespace quorvia::controls {

/// A track with its two arrows.
struct ScrollTrack
{
    int length = 0;    ///< of the whole control
    int nearArrow = 0; ///< the top or left arrow
    int farArrow = 0;  ///< the bottom or right arrow
    int maximum = 1;   ///< highest value
};

struct ScrollThumb
{
    int start = 0; ///< from the control's near end
    int length = 0;
    bool operator==(const ScrollThumb&) const = default;
};

/// `maximum` as a bar uses it: 0, or less, counts as 1.
int usableMaximum(int maximum);

/// `value` within 0 to `maximum`.
int clampedValue(int value, int maximum);

/// Length and place of the thumb at `value`. With a small maximum it is long and moves 20 twips a unit; else
/// it has 200 twips and stops 200 short of the far end.
ScrollThumb thumbAt(const ScrollTrack& track, int value);

/// The value whose thumb begins at `position`: the inverse of thumbAt(), not clamped to the maximum. Nothing
/// in a bar so short that the thumb cannot move, where every value stands at the same place.
std::optional<int> valueAt(const ScrollTrack& track, int position);

/// What one step by an arrow adds: 1, from a maximum of 151 on a hundredth of it, rounded, a half to the even
/// number.
int scrollStep(int maximum);

enum class ScrollPart { NearArrow, FarArrow, Track, Thumb };

/// What of the control lies at `position`; the track also where the thumb covers it.
ScrollPart partAt(const ScrollTrack& track, int position);

} // namespace quorvia::controls
