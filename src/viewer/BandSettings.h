// The band of the file list between two starts.
#pragma once

#include "platform/BandState.h"

namespace quorvia::viewer {

/// What the settings hold of the band; what they lack is as in `present`. Lengths there are twips, here
/// device-independent pixels.
platform::BandState storedBand(const platform::BandState& present);

/// Keeps `state` for the next start; its floating place only when it floats.
void storeBand(const platform::BandState& state);

} // namespace quorvia::viewer
