// Twips: 1440 to the inch, 15 to a device-independent pixel.
#pragma once

#include "platform/Twips.h"

namespace quorvia::app {

using platform::inTwips;
using platform::toPixels;
using platform::toTwips;
using platform::twipsPerPixel;

} // namespace quorvia::app
