// Whether text and vector drawing may be used yet: a load may begin before the application object stands.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

/// Waits until the application object stands, whose fonts QPainter and the SVG renderer need; at once when it
/// does. For decoders that draw, on the loader's threads. False when `cancel` was set or `milliseconds` went
/// by.
bool waitForToolkit(const CancelFlag& cancel, int milliseconds = 10'000);

} // namespace quorvia::engine
