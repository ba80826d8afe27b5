// What a start without commands on its line runs of itself.
#pragma once

#include <QStringList>

namespace quorvia::output {

struct StartFacts
{
    bool lineHoldsSwitch = false;
    bool imageOpen = false;
    int cView = 0; ///< as stored, and the next two
    int cSlide = 0;
    int cFull = 0;
};

/// The commands that the preferences ask for, in the order in which they run; none beside a switch.
QStringList startTools(const StartFacts& facts);

} // namespace quorvia::output
