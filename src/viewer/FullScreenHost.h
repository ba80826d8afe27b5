// The main window's side of full screen: owns the window that fills the screen, made when it is first wanted
// and kept from then on.
#pragma once

#include "platform/HeldKeys.h"

#include <QSize>

#include <optional>

namespace quorvia::output {
class frmImageViewFull;
}

namespace quorvia::viewer {

class frmImageView;

class FullScreenHost
{
  public:
    /// Works for `window`, which it is a part of; nothing of it is touched yet.
    explicit FullScreenHost(frmImageView& window);

    /// `miFullScreen`: shows the current image on the whole screen.
    void LoadX();
    /// True once it has been shown, also after it was closed.
    bool FullViewInUse() const { return m_view != nullptr; }
    bool isVisible() const;
    void close();
    /// Hands an image that has been opened over to the window. False when that is not on show.
    bool GenImage();
    /// How large the first picture of the next load must be, in device pixels, while the window is on show.
    std::optional<QSize> loadBox() const;

  private:
    output::frmImageViewFull* makeView();
    void noteChange();
    void showMain();

    frmImageView& m_window;
    output::frmImageViewFull* m_view = nullptr;
    platform::HeldKeys m_heldKeys; ///< a key that opened or closed the window goes no further
    bool m_wasVisible = false;
};

} // namespace quorvia::viewer
