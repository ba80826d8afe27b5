// What the user does on the page where a playlist is edited.
#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "collections/EditedPlaylist.h"
#include "collections/EditingPage.h"
#include "collections/EditorButtons.h"
#include "collections/EntryView.h"
#include "collections/Filmstrip.h"
#include "collections/FolderFiles.h"
#include "collections/HelpLine.h"
#include "collections/PlaylistCombo.h"
#include "platform/FolderTree.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScopedValueRollback>

namespace quorvia::collections {

namespace {

constexpr int leftButton = 1;
constexpr int rightButton = 2;

std::vector<RowRange> selectedRows(const QAbstractItemView& list)
{
    std::vector<RowRange> rows;
    const QItemSelection selection = list.selectionModel()->selection();
    for (const QItemSelectionRange& range : selection)
        rows.push_back({range.top(), range.bottom()});
    return normalised(std::move(rows), list.model()->rowCount());
}

QStringList selectedPaths(const PathModel& paths, const QAbstractItemView& list)
{
    QStringList selected;
    for (const RowRange& range : selectedRows(list))
        selected += paths.paths().mid(range.first, range.last - range.first + 1);
    return selected;
}

} // namespace

void EditingPage::followLists()
{
    connect(m_fDir, &platform::FolderTree::folderSelected, this, [this](const QString& folder) {
        showFolder(folder);
        app::save(app::setting::LastDirectory, folder);
    });
    for (const Side& side : {m_files, m_entries}) {
        side.list->installEventFilter(this);
        side.list->viewport()->installEventFilter(this);
        connect(side.list, &EntryView::picked, this, &EditingPage::refreshFilm);
        connect(side.list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
            if (!m_moving)
                refreshFilm();
        });
    }
    connect(m_files.list, &QAbstractItemView::doubleClicked, this, &EditingPage::addSelected);
    connect(m_entries.list, &QAbstractItemView::doubleClicked, this, &EditingPage::removeSelected);
    connect(m_iImg, &EditorButtons::clicked, this, &EditingPage::run);
}

void EditingPage::followStrip(const Side& side, const QString& help)
{
    connect(side.strip, &Filmstrip::MouseMove, this, [this, help] { m_lHelp->setText(help); });
    connect(side.strip, &Filmstrip::ImageHoverOver, this, [this, strip = side.strip](int index) {
        m_lHelp->setText(QStringLiteral("Click to un-select image: ") +
                         app::SplitPathName(strip->Images().value(index), 2));
    });
    connect(side.strip, &Filmstrip::ImageClicked, this, [this, side](int index, int button) {
        if (button == leftButton)
            unselect(side, index);
    });
    connect(side.strip, &Filmstrip::MouseUp, this, [this](int button) {
        if (button == rightButton)
            popUpMenu(QCursor::pos());
    });
    side.strip->installEventFilter(this);
}

void EditingPage::followPointer()
{
    m_fDir->viewport()->setMouseTracking(true);
    m_fDir->viewport()->installEventFilter(this);
    connect(m_iImg, &EditorButtons::hovered, m_lHelp, &QLabel::setText);
    connect(m_iImg, &EditorButtons::left, this, &EditingPage::ShowTip);
}

bool EditingPage::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        return takeKey(watched, static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonDblClick: // the left one's alone does something in the lists
        return (watched == m_files.list->viewport() || watched == m_entries.list->viewport()) &&
               static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton;
    case QEvent::Enter:
    case QEvent::MouseMove:
        if (watched == m_fDir->viewport())
            m_lHelp->setText(QStringLiteral("Select a folder to view its containing images."));
        return false;
    case QEvent::Leave:
        if (watched == m_fDir->viewport() || watched == m_files.strip || watched == m_entries.strip)
            ShowTip();
        return false;
    case QEvent::ContextMenu: { // the mouse's comes with the release of its button
        const bool isStrip = watched == m_files.strip || watched == m_entries.strip;
        if (!isStrip || static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse)
            return false;
        const auto* const strip = static_cast<QWidget*>(watched);
        popUpMenu(strip->mapToGlobal(strip->rect().center()));
        return true;
    }
    default:
        return false;
    }
}

/// True when the list that is `watched` does not get the key.
bool EditingPage::takeKey(const QObject* watched, QKeyEvent* event)
{
    const int key = event->key();
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    if (key == Qt::Key_Escape && (watched == m_entries.list || watched == m_files.list)) {
        event->ignore(); // and so it goes on to the window
        return true;
    }
    const bool isArrow = key == Qt::Key_Up || key == Qt::Key_Down;
    if (watched == m_entries.list && held == Qt::ControlModifier && isArrow) {
        moveSelected(key == Qt::Key_Up ? Direction::Up : Direction::Down);
        return true;
    }
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (watched == m_files.list && held == Qt::NoModifier && isEnter) {
        addSelected();
        return true;
    }
    return false;
}

void EditingPage::showFolder(const QString& folder)
{
    m_folderFiles.setPaths(sortedFolderFiles(folder, QLatin1String(app::ImageExtensionList)));
}

void EditingPage::run(EditorAction action)
{
    switch (action) {
    case EditorAction::Up:
        moveSelected(Direction::Up);
        return;
    case EditorAction::Down:
        moveSelected(Direction::Down);
        return;
    case EditorAction::Remove:
        removeSelected();
        return;
    case EditorAction::AddSelected:
        addSelected();
        return;
    case EditorAction::AddAll:
        if (m_folderFiles.rowCount() > 0 && hasPlaylist())
            m_playlist->add(m_folderFiles.paths(), m_pPlaylist);
        return;
    }
}

/// What has no name could not be saved: a playlist in hand comes first. False when there is none.
bool EditingPage::hasPlaylist()
{
    const QPointer<EditingPage> alive = this;
    if (m_playlist->name().isEmpty())
        Q_EMIT playlistWanted();
    return alive && !m_playlist->name().isEmpty();
}

void EditingPage::moveSelected(Direction direction)
{
    const int current = m_entries.list->currentIndex().row();
    if (current < 0)
        return;
    const RowMove move = plannedMove(selectedRows(*m_entries.list), m_entries.paths->rowCount(), direction);
    m_playlist->move(move);
    select(move.selected, rowAfter(move, current));
}

/// Selects `rows` of the playlist and makes `current` the current entry, in sight.
void EditingPage::select(const std::vector<RowRange>& rows, int current)
{
    const QScopedValueRollback moving(m_moving, true);
    QItemSelection selection;
    for (const RowRange& range : rows)
        selection.append(
            QItemSelectionRange(m_entries.paths->index(range.first), m_entries.paths->index(range.last)));
    const QModelIndex index = m_entries.paths->index(current);
    m_entries.list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_entries.list->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    m_entries.list->scrollTo(index);
}

void EditingPage::removeSelected()
{
    const std::vector<RowRange> rows = selectedRows(*m_entries.list);
    if (!rows.empty()) {
        m_playlist->remove(rows);
        const int left = m_entries.paths->rowCount();
        select({}, std::min(rows.front().first, left - 1)); // the keys stay at their place
    }
    refreshFilm();
}

void EditingPage::addSelected()
{
    const QStringList files = selectedPaths(*m_files.paths, *m_files.list);
    if (!files.isEmpty() && hasPlaylist())
        m_playlist->add(files, m_pPlaylist);
}

// --- the strips

void EditingPage::refreshFilm()
{
    m_tFilm.start();
}

void EditingPage::endFilm()
{
    m_tFilm.stop();
    m_files.strip->Clear();
    m_entries.strip->Clear();
}

void EditingPage::showFilm()
{
    m_files.strip->Clear();
    m_entries.strip->Clear();
    for (const Side& side : {m_files, m_entries}) {
        const QStringList selected = selectedPaths(*side.paths, *side.list);
        for (const QString& path : selected)
            side.strip->add(path);
    }
    m_entries.strip->DrawStrip();
    m_files.strip->DrawStrip();
    m_cPlaylist->switchOn();
}

/// Takes the image that the strip shows at `position` out of the selection. The list may be another one
/// since.
void EditingPage::unselect(const Side& side, int position)
{
    const int row = rowAt(selectedRows(*side.list), position);
    if (row >= 0 && side.paths->path(row) == side.strip->Images().value(position))
        side.list->selectionModel()->select(side.paths->index(row), QItemSelectionModel::Deselect);
    refreshFilm();
}

void EditingPage::popUpMenu(const QPoint& at)
{
    m_mnuPopup->popup(at);
}

void EditingPage::setRows(int rows)
{
    m_files.strip->SetNumberOfRows(rows);
    m_entries.strip->SetNumberOfRows(rows);
}

void EditingPage::showHelp(const QString& text)
{
    m_lHelp->setText(text);
}

void EditingPage::ShowTip()
{
    m_lHelp->setText(
        QStringLiteral("Tip: Use CTRL+UP/DOWN arrows to move items up or down in the playlist."));
}

void EditingPage::takeFocus()
{
    if (m_cPlaylist->isEnabled())
        m_cPlaylist->setFocus(Qt::OtherFocusReason);
    else
        m_entries.list->setFocus(Qt::OtherFocusReason);
}

} // namespace quorvia::collections
