#include "collections/Playlist.h"

#include "app/Colors.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/BatchActions.h"
#include "collections/ButtonRow.h"
#include "collections/EntryModel.h"
#include "collections/EntryText.h"
#include "collections/EntryView.h"
#include "collections/PanelButtons.h"
#include "collections/PanelKeys.h"
#include "collections/PanelMenu.h"
#include "collections/PanelMenus.h"
#include "collections/PanelTab.h"
#include "collections/PanelTabs.h"
#include "collections/PictureList.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistHead.h"
#include "collections/PlaylistKeeper.h"
#include "collections/PlaylistLayout.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/FolderTree.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QScopedValueRollback>

#include <algorithm>
#include <array>
#include <utility>

namespace quorvia::collections {

namespace {

/// The width of what fills a panel of `size`, both in pixels.
int rowWidth(QSize size)
{
    return app::toPixels(layoutPlaylistFace({.panel = app::inTwips(size)}).ptPlaylist).width();
}

} // namespace

Playlist::Playlist(PictureList* list, PlaylistCommands& commands, BatchActions& batch, app::MainWindow& main,
                   QWidget* parent)
    : QWidget(parent), m_list(list), m_commands(commands), m_batch(batch),
      m_tabs(new PanelTabs(list->GetSelectedTab(), this)), m_pInternalPlaylist(new PlaylistHead(this)),
      m_ftv(new platform::FolderTree(this)), m_pFilelist(new ButtonRow(QStringLiteral("pFilelist"), this)),
      m_lPlaylist(new EntryView(this)), m_ptPlaylist(new ButtonRow(QStringLiteral("ptPlaylist"), this)),
      m_lPlaylistInfo(new QLabel(this)), m_menus(new PanelMenus(list, main, this))
{
    setObjectName(QStringLiteral("Playlist"));
    fillParts();
    addFolderButtons(*m_pFilelist);
    const QAbstractButton* const editor = addPlaylistButtons(*m_ptPlaylist);
    connect(editor, &QAbstractButton::clicked, this, &Playlist::editorWanted);
    watchParts();
    m_ftv->setRoot(app::read(app::setting::BrowserRoot));
    followList();
    followPlaylist();
    followUser();
    showFace(false);
    showCount();
    m_lPlaylist->mark(m_list->ListIndex());
}

void Playlist::fillParts()
{
    m_ftv->setObjectName(QStringLiteral("ftv"));
    m_ftv->setAccessibleName(tr("Folders"));
    // A click leaves the keys to the window, whose arrows walk the pictures; Tab leads to the parts.
    m_ftv->setFocusPolicy(Qt::TabFocus);
    m_lPlaylist->setObjectName(QStringLiteral("lPlaylist"));
    m_lPlaylist->setAccessibleName(tr("Pictures"));
    m_lPlaylist->setModel(new EntryModel(m_list, this));
    m_lPlaylistInfo->setObjectName(QStringLiteral("lPlaylistInfo"));
    m_lPlaylistInfo->setIndent(4); // pixels, as the entries above it
}

/// Has the parts that take keys leave to the window those that are its own, and stand in the order in which
/// Tab leads through them.
void Playlist::watchParts()
{
    auto watch = [this, last = static_cast<QWidget*>(nullptr)](QWidget* part, PanelPart kind) mutable {
        m_parts.insert(part, kind);
        part->installEventFilter(this);
        if (last)
            setTabOrder(last, part);
        last = part;
    };
    watch(m_tabs->tab2(), PanelPart::Button);
    watch(m_ftv, PanelPart::Tree);
    watch(m_pInternalPlaylist->box(), PanelPart::NameBox);
    for (QAbstractButton* const button : m_pFilelist->buttons())
        watch(button, PanelPart::Button);
    watch(m_lPlaylist, PanelPart::List);
    for (QAbstractButton* const button : m_ptPlaylist->buttons())
        watch(button, PanelPart::Button);
    takeDesktopColors();
}

void Playlist::takeDesktopColors()
{
    const QList<QWidget*> parts = m_parts.keys();
    for (QWidget* const part : parts) {
        if (part != m_tabs->tab2()) // which looks as the one in front
            app::setDesktopColors(part);
    }
}

void Playlist::followList()
{
    connect(m_list, &PictureList::ListChanged, this, &Playlist::showCount);
    connect(m_list, &PictureList::indexChanged, m_lPlaylist, &EntryView::mark);
    connect(m_list, &PictureList::pathChanged, m_ftv, &platform::FolderTree::setSelectedFolder);
    connect(m_list, &PictureList::tabChanged, this, &Playlist::showFace);
    const auto showTab2 = [this] { m_tabs->setTab2Visible(m_list->isTab2Visible()); };
    connect(m_list, &PictureList::tab2VisibleChanged, this, showTab2);
    showTab2();
}

void Playlist::followPlaylist()
{
    const PlaylistKeeper* const playlist = m_list->playlist();
    const auto showName = [this, playlist] { m_pInternalPlaylist->setName(playlist->ActivePlaylist()); };
    const auto showNames = [this, playlist] { m_pInternalPlaylist->setNames(playlist->names()); };
    connect(playlist, &PlaylistKeeper::nameChanged, this, showName);
    connect(playlist, &PlaylistKeeper::namesChanged, this, showNames);
    showName();
    showNames();
    connect(m_pInternalPlaylist, &PlaylistHead::chosen, this, &Playlist::openNamed);
}

void Playlist::followUser()
{
    connect(m_tabs, &PanelTabs::faceWanted, m_list, &PictureList::SelectTab);
    connect(m_ftv, &platform::FolderTree::folderSelected, this, &Playlist::selectFolder);
    connect(m_lPlaylist->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Playlist::passSelection);
    connect(m_lPlaylist, &EntryView::pressedOn, m_list, &PictureList::notePress);
    connect(m_lPlaylist, &EntryView::picked, m_list, &PictureList::pick);
    connect(m_lPlaylist, &EntryView::menuWanted, this, [this](const QPoint& at) {
        const QScopedValueRollback place(m_menuPlace, at);
        RunTool(QStringLiteral("showcontextmenu"));
    });
    connect(m_lPlaylist, &EntryView::dropped, this,
            [this](const QStringList& paths) { m_commands.drop(paths); });
    connect(m_menus, &PanelMenus::commandChosen, this, &Playlist::RunTool);
    // Queued: its questions come when the menu has done with the click.
    connect(
        m_menus, &PanelMenus::conversionChosen, this,
        [this](const QString& extension) { m_batch.ConvertImage(extension); }, Qt::QueuedConnection);
    for (const ButtonRow* const row : {m_pFilelist, m_ptPlaylist}) {
        connect(row, &ButtonRow::wanted, this, [this](const QString& command, QAbstractButton* button) {
            m_menuButton = button;
            const QPointer<Playlist> alive = this;
            RunTool(command);
            if (alive)
                m_menuButton = nullptr;
        });
    }
}

void Playlist::showFace(bool animated)
{
    if (!m_ftv->isEnabled())
        return;
    const bool folders = m_list->FolderMode();
    m_tabs->showFace(m_list->GetSelectedTab(), animated);
    m_ftv->setVisible(folders);
    m_pFilelist->setVisible(folders);
    m_ptPlaylist->setVisible(!folders);
    m_pInternalPlaylist->setVisible(!folders);
    m_lPlaylist->setTakesDrops(!folders);
    if (folders)
        m_ftv->setSelectedFolder(m_list->path());
    layOut();
}

void Playlist::showCount()
{
    m_lPlaylistInfo->setText(countText(m_list->ListCount()));
}

void Playlist::selectFolder(const QString& folder)
{
    m_list->setPath(folder);
    if (m_list->path() == folder)
        return;
    // It has gone. The tree goes back when it has done with the click.
    QMetaObject::invokeMethod(
        this, [this] { m_ftv->setSelectedFolder(m_list->path()); }, Qt::QueuedConnection);
}

void Playlist::passSelection()
{
    std::vector<RowRange> rows;
    const QItemSelection selection = m_lPlaylist->selectionModel()->selection();
    for (const QItemSelectionRange& range : selection)
        rows.push_back({range.top(), range.bottom()});
    m_list->setSelection(std::move(rows));
}

void Playlist::RunTool(const QString& sCommand)
{
    struct Row
    {
        QLatin1String name;
        void (Playlist::*run)();
    };
    static constexpr std::array rows{
        Row{QLatin1String("selectdirectory"), &Playlist::selectDirectory},
        Row{QLatin1String("addmenu"), &Playlist::addMenu},
        Row{QLatin1String("removemenu"), &Playlist::removeMenu},
        Row{QLatin1String("showcontextmenu"), &Playlist::showContextMenu},
    };
    if (!m_ftv->isEnabled())
        return;
    const QString command = sCommand.toLower();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&command](const Row& candidate) { return candidate.name == command; });
    if (row != rows.end())
        (this->*row->run)();
    else if (!m_commands.RunTool(command))
        m_batch.RunTool(command);
}

void Playlist::GenPopupMenu()
{
    m_menus->setCanEmail(m_batch.canEmail());
    m_menus->GenPopupMenu();
}

void Playlist::addMenu()
{
    popUp(addBand);
}

void Playlist::removeMenu()
{
    popUp(removeBand);
}

void Playlist::showContextMenu()
{
    GenPopupMenu();
    popUp(filesBand);
}

void Playlist::popUp(const char* band)
{
    if (m_menuButton)
        m_menus->popUpBeside(band, {m_menuButton->mapToGlobal(QPoint()), m_menuButton->size()});
    else
        m_menus->popUp(band, m_menuPlace);
}

void Playlist::openNamed(const QString& name)
{
    const QString file = namedPlaylistPath(name);
    if (m_ftv->isEnabled() && !m_list->Starting() && platform::isFile(file))
        m_list->playlist()->LoadQOLPlaylist(file);
}

void Playlist::selectDirectory()
{
    const QPointer<Playlist> alive = this;
    const QString chosen = platform::browseForFolder(
        this, {.title = QStringLiteral("Select Root Directory"), .start = m_ftv->selectedFolder()});
    if (!alive || !m_ftv->isEnabled())
        return;
    m_ftv->setRoot(chosen);
    app::save(app::setting::BrowserRoot, m_ftv->root());
    if (!m_ftv->showsSelected())
        m_list->setPath(m_ftv->root()); // which does not take the word for the desktop
    layOut();
}

void Playlist::CloseDown()
{
    m_menus->close();
    m_pInternalPlaylist->hideList();
    m_ftv->hide();
    m_ftv->setEnabled(false);
}

bool Playlist::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* const key = static_cast<QKeyEvent*>(event);
    const PanelPart part = m_parts.value(static_cast<QWidget*>(watched));
    const bool isFocusKey = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    const bool isKept = isFocusKey || keepsKey(part, key->key(), key->modifiers());
    if (isKept && part == PanelPart::Button &&
        (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
        // The toolkit's buttons know only the space bar.
        if (!key->isAutoRepeat())
            qobject_cast<QAbstractButton*>(watched)->click();
        return true;
    }
    if (isKept)
        return false;
    event->ignore(); // and so it goes on to the window
    return true;
}

void Playlist::resizeEvent(QResizeEvent*)
{
    layOut();
}

void Playlist::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        layOut();
    else if (event->type() == QEvent::PaletteChange)
        takeDesktopColors();
}

void Playlist::layOut()
{
    const ButtonRow* const row = m_list->FolderMode() ? m_pFilelist : m_ptPlaylist;
    const PlaylistSizes sizes{.panel = app::inTwips(size()),
                              .head = std::max(tabHeadHeight, app::toTwips(m_tabs->sizeHint().height())),
                              .toolRow = app::toTwips(row->heightFor(rowWidth(size()))),
                              .info = app::toTwips(m_lPlaylistInfo->sizeHint().height() + 4),
                              .nameRow = app::toTwips(m_pInternalPlaylist->sizeHint().height())};
    m_tabs->setGeometry(0, 0, width(), app::toPixels(sizes.head));
    if (m_list->FolderMode()) {
        const FolderFace face = layoutFolderFace(sizes);
        m_ftv->setGeometry(app::toPixels(face.ftv));
        m_pFilelist->setGeometry(app::toPixels(face.pFilelist));
        m_lPlaylist->setGeometry(app::toPixels(face.lPlaylist));
        m_lPlaylistInfo->setGeometry(app::toPixels(face.lPlaylistInfo));
    } else {
        const PlaylistFace face = layoutPlaylistFace(sizes);
        m_pInternalPlaylist->setGeometry(app::toPixels(face.pInternalPlaylist));
        m_lPlaylist->setGeometry(app::toPixels(face.lPlaylist));
        m_ptPlaylist->setGeometry(app::toPixels(face.ptPlaylist));
        m_lPlaylistInfo->setGeometry(app::toPixels(face.lPlaylistInfo));
    }
}

} // namespace quorvia::collections
