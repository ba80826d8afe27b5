#include "collections/EntryView.h"

#include "collections/RowDelegate.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace quorvia::collections {

namespace {

/// The paths of the local files and folders that a drag holds.
QStringList localPaths(const QDropEvent& event)
{
    QStringList paths;
    const QList<QUrl> urls = event.mimeData() ? event.mimeData()->urls() : QList<QUrl>();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

/// Takes the drag when it holds something for the list: as a copy, whatever its source proposes.
void takeLocalFiles(QDropEvent& event)
{
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(!localPaths(event).isEmpty());
}

} // namespace

EntryView::EntryView(QWidget* parent) : QListView(parent)
{
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setUniformItemSizes(true);
    setItemDelegate(new RowDelegate(this));
    setTextElideMode(Qt::ElideMiddle); // the extension stays to be seen
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void EntryView::mark(int row)
{
    const QModelIndex index = model()->index(row, 0);
    if (!index.isValid()) {
        selectionModel()->clear();
        return;
    }
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

void EntryView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid())
        Q_EMIT pressedOn(index.row());
    if (event->button() == Qt::RightButton) {
        // Its menu is about the selected entries: it takes up the one under the pointer, and no image opens.
        if (index.isValid() && !selectionModel()->isSelected(index))
            selectionModel()->select(index, QItemSelectionModel::ClearAndSelect);
        return;
    }
    m_pressed = event->button() == Qt::LeftButton && index.isValid();
    QListView::mousePressEvent(event);
}

void EntryView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::RightButton) {
        Q_EMIT menuWanted(event->globalPosition().toPoint());
        return;
    }
    QListView::mouseReleaseEvent(event);
    if (event->button() != Qt::LeftButton || !m_pressed)
        return;
    m_pressed = false;
    if (currentIndex().isValid())
        Q_EMIT picked(currentIndex().row());
}

void EntryView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_F10) {
        wantMenuAtCurrent();
        return;
    }
    const bool goes =
        event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space;
    const QModelIndex before = currentIndex();
    QListView::keyPressEvent(event);
    event->accept();
    const QModelIndex now = currentIndex();
    if (now.isValid() && (goes || (now != before && selectionModel()->isSelected(now))))
        Q_EMIT picked(now.row());
}

void EntryView::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() != QContextMenuEvent::Mouse) // the mouse's comes with the release of its button
        wantMenuAtCurrent();
    event->accept();
}

void EntryView::dragEnterEvent(QDragEnterEvent* event)
{
    takeLocalFiles(*event);
}

void EntryView::dragMoveEvent(QDragMoveEvent* event)
{
    takeLocalFiles(*event);
}

void EntryView::dropEvent(QDropEvent* event)
{
    takeLocalFiles(*event);
    const QStringList paths = localPaths(*event);
    if (!paths.isEmpty()) // later, since what comes of it may ask the user while the drag's source waits
        QMetaObject::invokeMethod(
            this, [this, paths] { Q_EMIT dropped(paths); }, Qt::QueuedConnection);
}

void EntryView::wantMenuAtCurrent()
{
    const QModelIndex current = currentIndex();
    const QRect shown = current.isValid() ? visualRect(current) & viewport()->rect() : QRect();
    Q_EMIT menuWanted(
        viewport()->mapToGlobal(shown.isEmpty() ? viewport()->rect().center() : shown.center()));
}

} // namespace quorvia::collections
