// The welcome panel: two columns of panes whose rows run commands, on the pane `pWelcome`. To make it is dear
// by its measure, some milliseconds, so it is made when it is first shown.
#pragma once

#include "commands/WelcomePanes.h"

#include <QObject>
#include <QPointer>

#include <functional>

namespace quorvia::platform {
class PaneBar;
}

namespace quorvia::commands {

class WelcomePanel : public QObject
{
    Q_OBJECT

  public:
    /// Fills `pWelcome`, whose colours become the desktop's, and places the columns whenever its size
    /// changes. The commands chosen there go to `runTool`, when the click or key that chose them has been
    /// dealt with.
    WelcomePanel(QWidget* pWelcome, const WelcomeFacts& facts, std::function<void(const QString&)> runTool);

    platform::PaneBar* vBar() const { return m_vBar; }
    platform::PaneBar* vBack() const { return m_vBack; }

    /// Says how many images have been opened so far.
    void setImagesOpened(int count);
    /// Shows the columns, or hides them while the window changes its size. A row that had the keys has them
    /// again afterwards; meanwhile they are the window's.
    void setUpdate(bool visible);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    platform::PaneBar* makeBar(const char* name, const QString& accessibleName);
    void build(const WelcomeFacts& facts);
    void place();
    void takeDesktopColors();

    QWidget* m_pWelcome;
    std::function<void(const QString&)> m_runTool;
    platform::PaneBar* m_vBar;
    platform::PaneBar* m_vBack;
    QPointer<QWidget> m_focused; ///< row with the keys before the columns were hidden
    bool m_updating = true;      ///< the columns may show
};

} // namespace quorvia::commands
