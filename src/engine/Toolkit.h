// Whether QPainter may be used yet: a load may begin before the application object stands.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

/// While one lives, waitForToolkit() waits: for a program that begins to load before it makes its application
/// object, which can be seen from other threads long before it is whole.
class ToolkitHold
{
  public:
    ToolkitHold();
    ~ToolkitHold();
    Q_DISABLE_COPY_MOVE(ToolkitHold)
};

/// Waits until the application object stands, whose fonts QPainter asks for even where no text is drawn; at
/// once when it does. For decoders that draw, on the loader's threads. False when `cancel` was set or
/// `milliseconds` went by.
bool waitForToolkit(const CancelFlag& cancel, int milliseconds = 10'000);

} // namespace quorvia::engine
