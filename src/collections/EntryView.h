// The list box of the panel: several entries selectable, one current. It tells what the user did, and opens
// nothing itself. The number of entries does not matter to it but when they are all replaced.
#pragma once

#include <QListView>

namespace quorvia::collections {

class EntryView : public QListView
{
    Q_OBJECT

  public:
    explicit EntryView(QWidget* parent = nullptr);

    /// Makes `row` (0-based, -1 for none) the current entry and the only selected one, and brings it into
    /// sight.
    void mark(int row);
    /// Whether files may be dropped here; when not, a drop is for the window around. Not at first.
    void setTakesDrops(bool takes) { setAcceptDrops(takes); }

  Q_SIGNALS:
    /// The user went to an entry, by a click or by a key that selects.
    void picked(int row);
    /// A mouse button went down on an entry.
    void pressedOn(int row);
    /// The right button went up, or the key for it was pressed; `at` is a place of the screen.
    void menuWanted(const QPoint& at);
    /// Files or folders were dropped, by their paths. Comes when the drop is done with.
    void dropped(const QStringList& paths);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void wantMenuAtCurrent();

    bool m_pressed = false; ///< the left button went down on an entry and is still held
};

} // namespace quorvia::collections
