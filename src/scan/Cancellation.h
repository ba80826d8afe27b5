// SIGTERM and SIGINT as the wish to end a scan: the library's own cancel is called at once, from the signal
// handler, which it allows.
#pragma once

#include <sane/sane.h>

namespace quorvia::scan {

/// From now on the signals cancel instead of ending the process.
void watchForCancellation();
/// True once a signal has come.
bool isCancelled();
/// The device whose scan a signal cancels; null: none is going on.
void setScanning(SANE_Handle device);

} // namespace quorvia::scan
