// The unload step of the main window: what is saved and put away, on any way of closing it.
#pragma once

namespace quorvia::viewer {

class frmImageView;

/// Saves the window's geometry and state and the recent list, closes the other windows and removes the
/// scratch file of pasted images.
void runUnloadStep(frmImageView& window);

} // namespace quorvia::viewer
