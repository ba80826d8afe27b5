// What a scroll bar tells a screen reader: its role, its value and its bounds.
#pragma once

namespace quorvia::controls {

/// Lets the accessibility of the toolkit know the scroll bars; cheap, and only the first call counts.
void announceScrollBars();

} // namespace quorvia::controls
