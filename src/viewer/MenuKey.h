// The keys that stand for a right click in the main window and its bands, docked or floating. What has the
// keys may open a menu of its own; else the context menu opens in the middle of the view, with its first row
// chosen.
#pragma once

#include <QObject>

namespace quorvia::viewer {

class frmImageView;

class MenuKey : public QObject
{
    Q_OBJECT

  public:
    explicit MenuKey(frmImageView* window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void openMenu();

    frmImageView* m_window;
};

} // namespace quorvia::viewer
