// The home of a soak: files to come to harm, and a desktop that is not this machine's.
#pragma once

#include "SoakPlaces.h"

namespace quorvia::test {

class ScratchDesktop;
class ScratchHome;

/// The program's surroundings: nothing of this machine's desktop is seen, what would be started writes down
/// how.
void furnish(ScratchHome& home, ScratchDesktop& desktop);

/// Where the run must not write: the source tree, the caller's home (by HOME and by the user's entry) and
/// what lies above that. To be called before HOME is the run's own.
QStringList outsidePlaces();

/// The folder of the run and what it is judged by. The number of originals; 0 when it could not be made.
int fillHome(const SoakPlaces& places);

} // namespace quorvia::test
