// The keys that stand for a right click: the menu key, and Shift+F10 where a keyboard has none. What has the
// keys may open a menu of its own; else the context menu opens in the middle of the view, with its first row
// chosen.
#pragma once

#include <QObject>

class QContextMenuEvent;
class QKeyEvent;

namespace quorvia::viewer {

class frmImageView;

class MenuKey : public QObject
{
    Q_OBJECT

  public:
    explicit MenuKey(frmImageView* window);

    /// True for Shift+F10, pressed and not held.
    static bool isMenuKey(const QKeyEvent& key);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void askForMenu();
    void openMenu();

    frmImageView* m_window;
};

} // namespace quorvia::viewer
