// SIGTERM and SIGINT as the wish to end a scan: the library's own cancel is called at once, from a signal
// handler of the main thread, which it allows. Drivers give the two signals handlers of their own, so they
// are kept blocked and fetched by a thread that waits for them. A process that has not ended four seconds
// later is ended hard.
#pragma once

#include <sane/sane.h>

namespace quorvia::scan {

/// From now on the signals cancel instead of ending the process. Once, from the main thread, before there is
/// any other.
void watchForCancellation();
/// The work is done and told, and the drivers are about to be closed: some fall or hang over that. When the
/// process has not ended in four seconds, it ends with the exit code `status`.
void endSoon(int status);
/// True once a signal has come.
bool isCancelled();
/// The device whose scan a signal cancels; null: none is going on.
void setScanning(SANE_Handle device);

} // namespace quorvia::scan
