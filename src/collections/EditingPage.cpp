#include "collections/EditingPage.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/EditedPlaylist.h"
#include "collections/EditorButtons.h"
#include "collections/EntryView.h"
#include "collections/Filmstrip.h"
#include "collections/FolderFiles.h"
#include "collections/HelpLine.h"
#include "collections/PlaylistCombo.h"
#include "platform/FolderTree.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScopedValueRollback>

namespace quorvia::collections {

namespace {

constexpr int filmDelay = 200; // milliseconds
constexpr int mostRows = 3;
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

EditingPage::EditingPage(EditedPlaylist* playlist, QWidget* parent)
    : QWidget(parent), m_playlist(playlist), m_pTitle(new QWidget(this)), m_lTitle(new QLabel(m_pTitle)),
      m_pFile(new QWidget(this)), m_lDirectory(new QLabel(m_pFile)),
      m_fDir(new platform::FolderTree(m_pFile)), m_files{&m_folderFiles, new EntryView(m_pFile),
                                                         new Filmstrip(m_pFile)},
      m_pFileTools(new QWidget(this)), m_pPlaylist(new QWidget(this)), m_lPTitle(new QLabel(m_pPlaylist)),
      m_cPlaylist(new PlaylistCombo(m_pPlaylist)), m_entries{playlist->files(), new EntryView(m_pPlaylist),
                                                             new Filmstrip(m_pPlaylist)},
      m_pPlaylistTools(new QWidget(m_pPlaylist)), m_pFooter(new QWidget(this)),
      m_lHelp(new HelpLine(m_pFooter)), m_lFinished(new QPushButton(m_pFooter)),
      m_iImg(new EditorButtons(m_pPlaylistTools, m_pFileTools, this)), m_mnuPopup(new QMenu(this)),
      m_tFilm(this)
{
    nameParts();
    makeMenu();
    setTabOrders();
    followLists();
    followStrip(m_files, QStringLiteral("Shows thumbnails of the selected 'filelist' images."));
    followStrip(m_entries, QStringLiteral("Shows thumbnails of the selected 'playlist' images."));
    followPointer();
    ShowTip();
    const QString last = app::read(app::setting::LastDirectory);
    // The first time it begins where the panel of the list is.
    const QString folder = app::FolderExists(last) ? last : app::read(app::setting::SelectedPath, QString());
    if (app::FolderExists(folder)) {
        m_fDir->setSelectedFolder(folder);
        showFolder(folder);
    }
}

void EditingPage::nameParts()
{
    struct Name
    {
        QWidget* part;
        const char* name;
        QString accessible;
    };
    const Name names[] = {{m_pTitle, "pTitle", {}},
                          {m_lTitle, "lTitle", {}},
                          {m_pFile, "pFile", {}},
                          {m_lDirectory, "lDirectory", {}},
                          {m_fDir, "fDir", tr("Folders")},
                          {m_files.list, "fFiles", tr("Images of the folder")},
                          {m_files.strip, "Filmstrip", tr("Selected images of the folder")},
                          {m_pFileTools, "pFileTools", {}},
                          {m_pPlaylist, "pPlaylist", {}},
                          {m_lPTitle, "lPTitle", {}},
                          {m_entries.list, "lPlaylist", tr("Images of the playlist")},
                          {m_entries.strip, "Filmstrip2", tr("Selected images of the playlist")},
                          {m_pPlaylistTools, "pPlaylistTools", {}},
                          {m_pFooter, "pFooter", {}},
                          {m_lHelp, "lHelp", {}},
                          {m_lFinished, "lFinished", QStringLiteral("Finished >>")}};
    for (const Name& each : names) {
        each.part->setObjectName(QLatin1String(each.name));
        each.part->setAccessibleName(each.accessible);
    }
    m_lTitle->setText(QStringLiteral("Playlist Editor"));
    QFont bold = font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_lTitle->setFont(bold);
    m_lDirectory->setText(QStringLiteral("Select File Directory:"));
    m_lPTitle->setText(QStringLiteral("Playlist:"));
    m_lFinished->setText(QStringLiteral("Finished >>"));
    m_lFinished->setToolTip(QStringLiteral("Save Playlist, and close editor window."));
    m_lFinished->setAutoDefault(true); // Enter presses it when it has the keys
    m_files.list->setModel(m_files.paths);
    m_entries.list->setModel(m_entries.paths);
    m_tFilm.setObjectName(QStringLiteral("tFilm"));
    m_tFilm.setSingleShot(true);
    m_tFilm.setInterval(filmDelay);
    connect(&m_tFilm, &QTimer::timeout, this, &EditingPage::showFilm);
    connect(m_lFinished, &QPushButton::clicked, this, &EditingPage::finished);
}

void EditingPage::makeMenu()
{
    m_mnuPopup->setObjectName(QStringLiteral("mnuPopup"));
    constexpr std::array names{"mnu1Row", "mnu2Row", "mnu3row"};
    const std::array captions{QStringLiteral("Display '1' Row"), QStringLiteral("Display '2' Rows"),
                              QStringLiteral("Display '3' Rows")};
    auto* const group = new QActionGroup(m_mnuPopup);
    for (int rows = 1; rows <= mostRows; ++rows) {
        QAction* const entry = m_mnuPopup->addAction(captions.at(std::size_t(rows) - 1));
        entry->setObjectName(QLatin1String(names.at(std::size_t(rows) - 1)));
        entry->setCheckable(true);
        entry->setChecked(rows == m_files.strip->NumberOfRows());
        group->addAction(entry);
        connect(entry, &QAction::triggered, this, [this, rows] { setRows(rows); });
    }
}

void EditingPage::setTabOrders()
{
    QWidget* before = m_fDir;
    const auto then = [&before](QWidget* next) { setTabOrder(std::exchange(before, next), next); };
    then(m_files.list);
    for (QWidget* const button : m_iImg->inTabOrder())
        then(button);
    for (QWidget* const next : {static_cast<QWidget*>(m_entries.list), static_cast<QWidget*>(m_cPlaylist),
                                static_cast<QWidget*>(m_files.strip), static_cast<QWidget*>(m_entries.strip),
                                static_cast<QWidget*>(m_lFinished)})
        then(next);
}

// --- what the user does

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
        if (button == 1)
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
        m_playlist->add(m_folderFiles.paths(), m_pPlaylist);
        return;
    }
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
    m_playlist->add(selectedPaths(*m_files.paths, *m_files.list), m_pPlaylist);
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

// --- places

void EditingPage::resizeEvent(QResizeEvent*)
{
    layOut();
}

void EditingPage::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
}

void EditingPage::layOut()
{
    const EditorPlaces places = layoutEditor({.control = app::inTwips(size()),
                                              .finished = app::inTwips(m_lFinished->sizeHint()),
                                              .caption = app::inTwips(m_lPTitle->sizeHint()),
                                              .title = app::toTwips(m_lTitle->sizeHint().height()),
                                              .combo = app::toTwips(m_cPlaylist->sizeHint().height()),
                                              .button = app::toTwips(EditorButtons::side())});
    const std::pair<QWidget*, QRect> parts[] = {{m_pTitle, places.pTitle},
                                                {m_lTitle, places.lTitle},
                                                {m_pFile, places.pFile},
                                                {m_lDirectory, places.lDirectory},
                                                {m_fDir, places.fDir},
                                                {m_files.list, places.fFiles},
                                                {m_files.strip, places.filmstrip},
                                                {m_pFileTools, places.pFileTools},
                                                {m_pPlaylist, places.pPlaylist},
                                                {m_lPTitle, places.lPTitle},
                                                {m_cPlaylist, places.cPlaylist},
                                                {m_entries.list, places.lPlaylist},
                                                {m_entries.strip, places.filmstrip2},
                                                {m_pPlaylistTools, places.pPlaylistTools},
                                                {m_pFooter, places.pFooter},
                                                {m_lHelp, places.lHelp},
                                                {m_lFinished, places.lFinished}};
    for (const auto& [part, place] : parts)
        part->setGeometry(app::toPixels(place));
    m_iImg->place(places.pImage);
}

} // namespace quorvia::collections
