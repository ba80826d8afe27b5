// A landing place for C libraries that leave a failed call by a jump. A jump skips destructors, so whatever
// lies between guarded() and the library (the step and the library's callbacks) holds only values that need
// none. Cheap: one setjmp a step.
#pragma once

#include <csetjmp>

namespace quorvia::engine {

struct Landing
{
    std::jmp_buf place;
    char text[256] = {}; ///< what the library said; valid after a failed step
};

/// Runs `step`; false when the library left it by a jump to `landing`.
template <class Step>
bool guarded(Landing& landing, const Step& step)
{
    if (setjmp(landing.place) != 0)
        return false;
    step();
    return true;
}

} // namespace quorvia::engine
