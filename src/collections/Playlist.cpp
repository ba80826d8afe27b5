#include "collections/Playlist.h"

#include "app/Colors.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/EntryModel.h"
#include "collections/EntryText.h"
#include "collections/EntryView.h"
#include "collections/PanelKeys.h"
#include "collections/PanelTab.h"
#include "collections/PictureList.h"
#include "collections/PlaylistLayout.h"
#include "platform/Dialogs.h"
#include "platform/FolderTree.h"

#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QStyle>

namespace quorvia::collections {

namespace {

const QLatin1String selectDirectoryCommand("selectdirectory");
const QLatin1String showContextMenuCommand("showcontextmenu");

} // namespace

Playlist::Playlist(PictureList* list, QWidget* parent)
    : QWidget(parent), m_list(list),
      m_tab1(new PanelTab(1, QStringLiteral("Folders"), style()->standardIcon(QStyle::SP_DirIcon), this)),
      m_ftv(new platform::FolderTree(this)), m_pFilelist(new QWidget(this)),
      m_cmdDir(new QPushButton(style()->standardIcon(QStyle::SP_DirOpenIcon),
                               QStringLiteral(" Select Directory"), m_pFilelist)),
      m_lPlaylist(new EntryView(this)), m_lPlaylistInfo(new QLabel(this))
{
    setObjectName(QStringLiteral("Playlist"));
    fillParts();
    m_ftv->setRoot(app::read(app::setting::BrowserRoot));
    m_ftv->setSelectedFolder(m_list->path());
    followList();
    followUser();
    showList();
    m_lPlaylist->mark(m_list->ListIndex());
}

std::array<QWidget*, 3> Playlist::controls() const
{
    return {m_ftv, m_cmdDir, m_lPlaylist};
}

void Playlist::fillParts()
{
    m_ftv->setObjectName(QStringLiteral("ftv"));
    m_ftv->setAccessibleName(tr("Folders"));
    m_pFilelist->setObjectName(QStringLiteral("pFilelist"));
    m_cmdDir->setObjectName(QStringLiteral("cmdDir"));
    m_cmdDir->setAccessibleName(m_cmdDir->text().trimmed());
    m_cmdDir->setToolTip(tr("Choose the folder that the tree begins with"));
    m_lPlaylist->setObjectName(QStringLiteral("lPlaylist"));
    m_lPlaylist->setAccessibleName(tr("Pictures"));
    m_lPlaylist->setModel(new EntryModel(m_list, this));
    m_lPlaylistInfo->setObjectName(QStringLiteral("lPlaylistInfo"));
    m_lPlaylistInfo->setIndent(4); // pixels, as the entries above it
    // A click leaves the keys to the window, whose arrows walk the pictures; Tab leads to the parts.
    m_ftv->setFocusPolicy(Qt::TabFocus);
    m_cmdDir->setFocusPolicy(Qt::TabFocus);
    for (QWidget* control : controls())
        control->installEventFilter(this);
    takeDesktopColors();
}

void Playlist::takeDesktopColors()
{
    for (QWidget* control : controls())
        app::setDesktopColors(control);
}

void Playlist::followList()
{
    connect(m_list, &PictureList::ListChanged, this, &Playlist::showList);
    connect(m_list, &PictureList::indexChanged, m_lPlaylist, &EntryView::mark);
    connect(m_list, &PictureList::pathChanged, m_ftv, &platform::FolderTree::setSelectedFolder);
}

void Playlist::followUser()
{
    connect(m_ftv, &platform::FolderTree::folderSelected, this, &Playlist::selectFolder);
    connect(m_lPlaylist->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &Playlist::passSelection);
    connect(m_lPlaylist, &EntryView::pressedOn, m_list, &PictureList::notePress);
    connect(m_lPlaylist, &EntryView::picked, m_list, &PictureList::pick);
    connect(m_lPlaylist, &EntryView::menuWanted, this, [this](const QPoint& at) {
        m_menuPlace = at;
        RunTool(showContextMenuCommand);
    });
    connect(m_cmdDir, &QPushButton::clicked, this, [this] { RunTool(selectDirectoryCommand); });
}

void Playlist::showList()
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

void Playlist::RunTool(const QString& command)
{
    if (!m_ftv->isEnabled())
        return;
    const QString name = command.toLower();
    if (name == selectDirectoryCommand)
        selectDirectory();
    else if (name == showContextMenuCommand)
        Q_EMIT contextMenuWanted(m_menuPlace.isNull() ? QCursor::pos() : std::exchange(m_menuPlace, {}));
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
    m_ftv->hide();
    m_ftv->setEnabled(false);
}

PanelPart Playlist::partOf(const QObject* widget) const
{
    if (widget == m_ftv)
        return PanelPart::Tree;
    return widget == m_lPlaylist ? PanelPart::List : PanelPart::Button;
}

bool Playlist::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* const key = static_cast<QKeyEvent*>(event);
    const bool isFocusKey = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
    if (isFocusKey || keepsKey(partOf(watched), key->key(), key->modifiers()))
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
    const QSize button = m_cmdDir->sizeHint();
    const PlaylistSizes sizes{.panel = app::inTwips(size()),
                              .head = std::max(tabHeadHeight, app::toTwips(m_tab1->sizeHint().height())),
                              .toolRow = app::toTwips(button.height() + 4),
                              .info = app::toTwips(m_lPlaylistInfo->sizeHint().height() + 4)};
    m_tab1->setGeometry(app::toPixels(layoutTabs(sizes).tab1));
    const FolderFace face = layoutFolderFace(sizes);
    m_ftv->setGeometry(app::toPixels(face.ftv));
    m_pFilelist->setGeometry(app::toPixels(face.pFilelist));
    m_lPlaylist->setGeometry(app::toPixels(face.lPlaylist));
    m_lPlaylistInfo->setGeometry(app::toPixels(face.lPlaylistInfo));
    m_cmdDir->setGeometry(0, 2, std::min(button.width(), m_pFilelist->width()), button.height());
}

} // namespace quorvia::collections
