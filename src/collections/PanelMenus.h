// The panel's pop-up menus on the screen: made ready from the list as they open, and what is chosen in them
// handed on.
#pragma once

#include "collections/PanelMenu.h"
#include "platform/ToolModel.h"

#include <QObject>
#include <QRect>

namespace quorvia::app {
class MainWindow;
}

namespace quorvia::platform {
class ToolMenu;
}

namespace quorvia::collections {

class PictureList;

class PanelMenus : public QObject
{
    Q_OBJECT

  public:
    /// Menus about `list` over the window of `owner`. All three outlive this.
    PanelMenus(const PictureList* list, app::MainWindow& main, QWidget* owner);

    /// The bands and their tools.
    platform::ToolModel* abm() { return &m_abm; }
    /// Whether there is a tool that sends images by mail; none at first.
    void setCanEmail(bool can) { m_canEmail = can; }
    /// Prepares the menu of the list.
    void GenPopupMenu();
    /// Shows a band at a point of the screen; at the mouse when that is null.
    void popUp(const char* band, const QPoint& at);
    /// Shows a band beside a rectangle of the screen.
    void popUpBeside(const char* band, const QRect& box);
    void close();

  Q_SIGNALS:
    /// A command of the panel was chosen.
    void commandChosen(const QString& command);
    /// The selected files are to be converted to the format of `extension`.
    void conversionChosen(const QString& extension);

  private:
    void choose(const QString& tool);

    const PictureList* m_list;
    app::MainWindow& m_main;
    platform::ToolModel m_abm;
    platform::ToolMenu* m_menu;
    bool m_canEmail = false;
};

} // namespace quorvia::collections
