// The load step of the main window: from the made window to the first image on the screen and everything
// around it.
#pragma once

namespace quorvia::viewer {

class frmImageView;

/// Runs the load step. False when the process is to end now: the line was "/install", or the window was
/// closed meanwhile.
bool runLoadStep(frmImageView& window, bool othersWereRunning);

} // namespace quorvia::viewer
