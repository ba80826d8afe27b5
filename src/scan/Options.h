// The options of an open device that matter for a scan. Descriptors are looked up anew for each, since
// setting one may change what the others are.
#pragma once

#include "scan/Session.h"

#include <sane/sane.h>

namespace quorvia::scan {

/// Brings mode, depth and resolution of `device` as near to `settings` as it can. What it does not take stays
/// as it is: a scan in another mode is better than none.
void applySettings(SANE_Handle device, const Settings& settings);

} // namespace quorvia::scan
