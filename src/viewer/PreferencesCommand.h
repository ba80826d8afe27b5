// `miPref`: the main window's side of the preferences.
#pragma once

namespace quorvia::viewer {

class frmImageView;

/// Shows the preferences until they are closed; the ones that are open already come to the front instead.
void miPref(frmImageView& window);

} // namespace quorvia::viewer
