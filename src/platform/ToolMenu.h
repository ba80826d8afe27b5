// Shows the bands of a model as pop-up menus, one at a time. Nothing here waits for the user: a menu is put
// up, and what is done with it comes as the model's signals. Of one choice, the bands close before the tool
// is told of.
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>

class QMenu;
class QWidget;

namespace quorvia::platform {

class BandMenu;
class ToolBand;
class ToolModel;

class ToolMenu : public QObject
{
    Q_OBJECT

  public:
    /// Menus of `model` that belong to the window of `owner`.
    ToolMenu(ToolModel* model, QWidget* owner);
    ~ToolMenu() override;

    /// Shows the band at a point of the screen, after an open menu has been closed. False when there is no
    /// such band or a listener of BandOpen cancelled.
    bool popUp(const QString& bandName, QPoint at);
    /// Shows the band at the mouse pointer.
    bool popUpAtMouse(const QString& bandName);
    /// Shows the band below the rectangle `box` of the screen, or above it when it has no room below.
    bool popUpBeside(const QString& bandName, const QRect& box);
    /// Shows the tools of `band` from the index `first` on as a menu beside `box`.
    void popUpRest(ToolBand* band, int first, const QRect& box);

    void close();
    /// The open menu, or null.
    QMenu* menu() const;
    /// Chooses the first entry of the open menu, as one does who opened it by key.
    void chooseFirst();

  Q_SIGNALS:
    /// The menu of the last pop-up has closed.
    void closed();

  private:
    BandMenu* prepared(const QString& bandName);
    void show(BandMenu* menu, QPoint at);
    void showBeside(BandMenu* menu, const QRect& box);

    ToolModel* m_model;
    QWidget* m_owner;
    QPointer<BandMenu> m_menu;
};

} // namespace quorvia::platform
