// The way of the tab behind when the tabs change places: below the one in front, where the two are exchanged,
// and out again. A value, one step a tick. Lengths in twips.
#pragma once

namespace quorvia::collections {

struct TabAnimation
{
    /// What came of a step.
    enum class Step {
        Moved,
        Exchanged, ///< the tabs change their faces now
        Ended      ///< the tab stands where it belongs
    };

    int left = 0; ///< the left edge of the tab behind
    bool secondStage = false;

    /// Begins anew from the place that has been reached.
    void restart() { secondStage = false; }
    /// Goes on by one tick; `tab1Width` is the width of the tab in front.
    Step step(int tab1Width);

    bool operator==(const TabAnimation&) const = default;
};

} // namespace quorvia::collections
