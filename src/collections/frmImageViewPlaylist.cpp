#include "collections/frmImageViewPlaylist.h"

#include "app/BandKeys.h"
#include "app/MainWindow.h"
#include "collections/Playlist.h"
#include "collections/PlaylistFolder.h"
#include "platform/Shell.h"
#include "platform/SpokenWidget.h"

#include <QKeyEvent>

#include <utility>

namespace quorvia::collections {

frmImageViewPlaylist::frmImageViewPlaylist(app::MainWindow& main, QWidget* parent)
    : QWidget(parent), m_main(main), m_list(new PictureList([&main] { return main.currentFile(); }, this)),
      m_commands(m_list), m_batch(new BatchActions(m_list, this))
{
    setObjectName(QStringLiteral("frmImageViewPlaylist"));
    platform::speakAs(this, QAccessible::Pane);
    setAccessibleName(tr("Picture list"));
    setFocusPolicy(Qt::ClickFocus);
    m_list->playlist()->setDialogOwner([this] { return window(); });
    connect(m_list, &PictureList::OpenFile, this, [this](const QString& file) { m_main.OpenX(file); });
    connect(m_list, &PictureList::ListChanged, this,
            [this] { m_main.RunTool(QStringLiteral("FileListUpdated")); });
}

void frmImageViewPlaylist::makePanel()
{
    if (m_panel || m_closed)
        return;
    m_panel = new Playlist(m_list, m_commands, *m_batch, m_main, this);
    m_panel->setGeometry(rect());
    connect(m_panel, &Playlist::editorWanted, this, &frmImageViewPlaylist::ShowPlaylistEditor);
    m_panel->show();
}

void frmImageViewPlaylist::setBatchServices(BatchServices services)
{
    services.currentFile = [this] { return m_main.currentFile(); };
    services.openFile = [this](const QString& path) { Q_EMIT m_list->OpenFile(path); };
    services.startTool = [](const QString& program, const QStringList& arguments) {
        return platform::startProgram(program, arguments, QString()) == platform::ShellCode::Ok;
    };
    m_batch->setServices(std::move(services));
}

void frmImageViewPlaylist::GenPopupMenu()
{
    if (m_panel)
        m_panel->GenPopupMenu();
}

void frmImageViewPlaylist::RunTool(const QString& command)
{
    makePanel();
    if (m_panel)
        m_panel->RunTool(command);
}

void frmImageViewPlaylist::OpenPlaylist(const QString& file)
{
    m_list->playlist()->LoadQOLPlaylist(file);
    m_list->finishRebuild();
}

void frmImageViewPlaylist::RenamePlaylist(const QString& sOld, const QString& sNew)
{
    const bool isInFolder = m_list->FolderMode() && m_list->files().contains(sOld);
    if (m_list->playlist()->RenamePlaylistFiles(sOld, sNew) || isInFolder)
        m_list->RefreshPlaylist();
}

void frmImageViewPlaylist::ShowPlaylistEditor()
{
    m_main.RunTool(QStringLiteral("miPlaylistEditor"));
}

void frmImageViewPlaylist::PlaylistEditorDone(const QString& inHand)
{
    PlaylistKeeper* const playlist = m_list->playlist();
    if (playlist->ActivePlaylist().isEmpty())
        return;
    playlist->reloadOpen();
    if (playlist->ActivePlaylist().isEmpty() && playlist->names().contains(inHand))
        playlist->LoadQOLPlaylist(namedPlaylistPath(inHand));
}

void frmImageViewPlaylist::CloseDown()
{
    m_list->CloseDown();
    m_closed = true;
    if (m_panel)
        m_panel->CloseDown();
}

void frmImageViewPlaylist::showEvent(QShowEvent*)
{
    makePanel();
    // In a window of its own it takes the keys, before the tree gets them for want of another.
    if (!window()->focusWidget())
        setFocus(Qt::OtherFocusReason);
}

void frmImageViewPlaylist::resizeEvent(QResizeEvent*)
{
    if (m_panel)
        m_panel->setGeometry(rect());
}

void frmImageViewPlaylist::keyPressEvent(QKeyEvent* event)
{
    app::takeBandKey(*this, *event, m_main);
}

} // namespace quorvia::collections
