#include "collections/TabAnimation.h"

namespace quorvia::collections {

namespace {

constexpr int stride = 40;
constexpr int margin = 20; // left of the tab in front

} // namespace

TabAnimation::Step TabAnimation::step(int tab1Width)
{
    if (!secondStage) {
        if (left > margin)
            left -= stride;
        secondStage = left <= margin;
        return secondStage ? Step::Exchanged : Step::Moved;
    }
    left += stride;
    if (left + margin < tab1Width)
        return Step::Moved;
    secondStage = false;
    left = tab1Width + margin;
    return Step::Ended;
}

} // namespace quorvia::collections
