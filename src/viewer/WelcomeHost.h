// The main window's side of the welcome panel and of the link: hands them the facts, and makes the panel when
// it is first shown after the load step, so that no start with a picture pays for it.
#pragma once

#include <QPointer>

namespace quorvia::commands {
class WelcomePanel;
}
namespace quorvia::controls {
class uLink;
}

namespace quorvia::viewer {

class frmImageView;

class WelcomeHost
{
  public:
    /// Works for `window`, which it is a part of; nothing of it is touched yet.
    explicit WelcomeHost(frmImageView& window) : m_window(window) {}

    /// Shows `pWelcome` with what it says of the images opened so far, or hides it.
    void show(bool visible);
    /// Makes the panel when it is wanted: at the end of the load step.
    void build();
    /// See WelcomePanel. Nothing while there is no panel.
    void setUpdate(bool visible);

  private:
    frmImageView& m_window;
    QPointer<commands::WelcomePanel> m_panel;
    int m_lastTip = 0;
};

/// Lets the link say what this start has to say, and stores what the next one begins with. Some tens of
/// microseconds.
void fillLink(controls::uLink& link);

} // namespace quorvia::viewer
