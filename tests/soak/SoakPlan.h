// What one process of the soak has to do.
#pragma once

#include <QtGlobal>

namespace quorvia::test {

/// Steps have numbers, from which they are drawn; how many there are is told by those that are commands and
/// keys. So `done` and `inputs` count these, `from` and `last` are numbers of steps.
struct SoakPlan
{
    quint32 seed = 1;
    int from = 1;     ///< the first step
    int last = 1200;  ///< no step after this one, even if too few commands and keys came
    int done = 0;     ///< commands and keys that processes before this one made
    int inputs = 400; ///< commands and keys of the whole run
    int lastErasing =
        100; ///< after so many nobody says yes to the end of all settings, which ends the process
};

/// The plan of a run with `inputs` commands and keys that begins at the step `from`.
constexpr SoakPlan planOf(quint32 seed, int from, int inputs)
{
    constexpr int stepsPerInput = 3; // twice of what was seen: a run whose input leads nowhere ends, too
    return {.seed = seed,
            .from = from,
            .last = from - 1 + stepsPerInput * inputs,
            .done = 0,
            .inputs = inputs,
            .lastErasing = inputs / 4};
}

} // namespace quorvia::test
