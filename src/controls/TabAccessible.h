// What a screen reader sees of a tab strip: a list of tabs that can be selected.
#pragma once

namespace quorvia::controls {

/// Makes known how a TabSurface presents itself. Only the first call does anything.
void installTabAccessibility();

} // namespace quorvia::controls
