// `miPrint`: from the image on show to the window in which its page is laid out.
#pragma once

namespace quorvia::viewer {

class frmImageView;

/// Shows the print window for the current image, until it is closed; a box when there is no printer for it.
void miPrint(frmImageView& window);

} // namespace quorvia::viewer
