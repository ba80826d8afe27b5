#include "collections/PlaylistEditor.h"

#include "app/Log.h"
#include "app/PendingEvents.h"
#include "collections/DefinePage.h"
#include "collections/EditedPlaylist.h"
#include "collections/EditingPage.h"
#include "collections/PlaylistCombo.h"
#include "collections/PlaylistFolder.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/Trash.h"

#include <QFile>
#include <QPointer>

#include <utility>

namespace quorvia::collections {

namespace {

constexpr char tag[] = "tag";

void log(const char* what, const QString& name, const QString& why)
{
    app::WriteLog(QStringLiteral("%1: %2: %3").arg(QLatin1String(what), name, why));
}

bool isUsableName(const QString& name)
{
    if (!canBePlaylistName(name))
        log("No name for a playlist", name, QStringLiteral("no file can have it"));
    return canBePlaylistName(name);
}

/// To the trash; where there is none, for good.
void removeFile(const QString& path)
{
    QString why;
    if (platform::moveToTrash(path, &why))
        return;
    QFile file(path);
    if (file.remove())
        log("Playlist deleted for good", path, why);
    else
        log("Playlist not deleted", path, file.errorString());
}

} // namespace

PlaylistEditor::PlaylistEditor(QWidget* parent)
    : QWidget(parent), m_playlist(new EditedPlaylist(this)), m_editing(new EditingPage(m_playlist, this)),
      m_pDefinePlaylist(new DefinePage(this))
{
    setObjectName(QStringLiteral("PlaylistEditor"));
    m_pDefinePlaylist->hide();
    connect(m_playlist, &EditedPlaylist::nameChanged, this,
            [this](const QString& name) { m_editing->combo()->setProperty(tag, name); });
    m_editing->combo()->setProperty(tag, QString());
    connect(m_editing, &EditingPage::finished, this, [this] {
        m_editing->endFilm();
        Q_EMIT CloseRequest();
    });
    connect(m_editing, &EditingPage::playlistWanted, this, &PlaylistEditor::createPlaylist);
    followCombo();
    followDefinePage();
    GetInternalPlaylist();
}

void PlaylistEditor::followCombo()
{
    const PlaylistCombo* const combo = m_editing->combo();
    connect(combo, &PlaylistCombo::picked, this, &PlaylistEditor::pick);
    connect(combo, &PlaylistCombo::createPicked, this, [this] { answer([this] { createPlaylist(); }); });
    connect(combo, &PlaylistCombo::definePicked, this, [this] { answer([this] { definePlaylists(); }); });
    connect(combo, &PlaylistCombo::nothingPicked, this, [this] { answer([] {}); });
}

void PlaylistEditor::followDefinePage()
{
    connect(m_pDefinePlaylist, &DefinePage::createWanted, this, &PlaylistEditor::createPlaylist);
    connect(m_pDefinePlaylist, &DefinePage::renameWanted, this, &PlaylistEditor::renamePlaylist);
    connect(m_pDefinePlaylist, &DefinePage::deleteWanted, this, &PlaylistEditor::deletePlaylist);
    connect(m_pDefinePlaylist, &DefinePage::finished, this, &PlaylistEditor::leaveDefinePage);
}

// --- the playlist in hand

void PlaylistEditor::SetActivePlaylist(const QString& sName)
{
    if (!sName.isEmpty())
        LoadQOLPlaylist(namedPlaylistPath(sName));
}

QString PlaylistEditor::ActivePlaylist() const
{
    return m_playlist->name();
}

bool PlaylistEditor::SaveActivePlaylist()
{
    return m_playlist->name().isEmpty() || SaveQOLPlaylist(namedPlaylistPath(m_playlist->name()));
}

void PlaylistEditor::GetInternalPlaylist()
{
    const QStringList names = namedPlaylists();
    m_editing->combo()->fill(names);
    m_pDefinePlaylist->showNames(names);
    m_editing->combo()->showName(m_playlist->name());
}

void PlaylistEditor::LoadQOLPlaylist(const QString& sFile)
{
    if (m_closed)
        return;
    const QPointer<PlaylistEditor> alive = this;
    QString path = sFile;
    if (path.isEmpty())
        path = platform::chooseFile(m_editing->dialogOwner(), {.title = tr("Import Playlist from File"),
                                                               .filters = QLatin1String(playlistFilter),
                                                               .start = playlistFolder()});
    if (!alive || m_closed)
        return;
    if (path.isEmpty())
        RefreshPlaylist();
    else if (m_playlist->load(path, m_editing->dialogOwner()))
        m_editing->combo()->showName(m_playlist->name());
}

bool PlaylistEditor::SaveQOLPlaylist(const QString& sFile)
{
    if (m_closed || (sFile.isEmpty() && m_playlist->files()->rowCount() == 0))
        return true;
    const QPointer<PlaylistEditor> alive = this;
    QString path = sFile;
    if (path.isEmpty())
        path = platform::chooseSaveFile(m_editing->dialogOwner(),
                                        {.title = tr("Export Playlist to File"),
                                         .filters = QLatin1String(playlistFilter),
                                         .start = playlistFolder(),
                                         .extension = QLatin1String(playlistExtension)});
    if (!alive || m_closed || path.isEmpty())
        return true;
    const bool saved = m_playlist->save(path, m_editing->dialogOwner());
    if (alive)
        GetInternalPlaylist();
    return saved;
}

void PlaylistEditor::ClearPlaylist()
{
    m_playlist->clear();
}

void PlaylistEditor::AddPlaylistFile(const QString& sFile)
{
    m_playlist->add(sFile);
}

void PlaylistEditor::RefreshPlaylist()
{
    m_playlist->files()->setPaths(m_playlist->files()->paths());
}

// --- what the combo says

/// A burst of keys on the combo must not load a playlist for each: it is off until the strips are shown.
void PlaylistEditor::offCombo()
{
    m_editing->combo()->switchOff();
    app::letPendingEventsRunButInput();
}

/// Shows what is in hand, and lets the combo be switched on again.
void PlaylistEditor::onCombo()
{
    if (m_closed)
        return;
    m_editing->combo()->showName(m_playlist->name());
    m_editing->refreshFilm();
}

/// Does what a line below the playlists asks for.
void PlaylistEditor::answer(const std::function<void()>& does)
{
    const QPointer<PlaylistEditor> alive = this;
    offCombo();
    if (alive && !m_closed)
        does();
    if (alive)
        onCombo();
}

void PlaylistEditor::pick(const QString& name)
{
    const QPointer<PlaylistEditor> alive = this;
    offCombo();
    // The same one is saved too: to pick it again must not cost what was edited.
    const bool saved = alive && SaveActivePlaylist();
    if (alive && saved)
        LoadQOLPlaylist(namedPlaylistPath(name));
    if (alive)
        onCombo();
}

void PlaylistEditor::createPlaylist()
{
    const QPointer<PlaylistEditor> alive = this;
    const QString name = typedPlaylistName(
        platform::askText(m_pDefinePlaylist->isVisible() ? m_pDefinePlaylist : m_editing->dialogOwner(),
                          {.title = QStringLiteral("Create New Playlist"),
                           .text = QStringLiteral("Please enter the name for the new playlist.")}));
    if (!alive || m_closed || name.isEmpty() || !isUsableName(name))
        return;
    const bool saved = SaveActivePlaylist(); // the new one takes the place of what is in hand
    if (!alive || !saved)
        return;
    m_playlist->beginAnew();
    SaveQOLPlaylist(namedPlaylistPath(name));
    m_editing->refreshFilm();
}

// --- the page of the named playlists

void PlaylistEditor::definePlaylists()
{
    const QPointer<PlaylistEditor> alive = this;
    SaveActivePlaylist();
    if (!alive)
        return;
    m_pDefinePlaylist->setGeometry(rect());
    m_pDefinePlaylist->show();
    m_editing->hide();
}

bool PlaylistEditor::leaveDefinePage()
{
    if (m_pDefinePlaylist->isHidden())
        return false;
    m_editing->show();
    m_editing->takeFocus();
    m_pDefinePlaylist->hide();
    GetInternalPlaylist();
    return true;
}

void PlaylistEditor::renamePlaylist(const QString& name)
{
    const QPointer<PlaylistEditor> alive = this;
    const QString wanted = typedPlaylistName(platform::askText(
        m_pDefinePlaylist, {.title = QStringLiteral("Rename Playlist"),
                            .text = QStringLiteral("Please enter a new name from this playlist."),
                            .answer = name}));
    if (!alive || m_closed)
        return;
    if (!wanted.isEmpty() && wanted != name && isUsableName(wanted)) {
        QFile file(namedPlaylistPath(name));
        if (!file.rename(namedPlaylistPath(wanted)))
            log("Playlist not renamed", name, file.errorString());
        else if (name == m_playlist->name())
            m_playlist->renamed(wanted);
    }
    GetInternalPlaylist();
}

void PlaylistEditor::deletePlaylist(const QString& name)
{
    if (name == m_playlist->name())
        m_playlist->forget();
    if (const QString path = namedPlaylistPath(name); platform::pathExists(path))
        removeFile(path);
    GetInternalPlaylist();
}

// --- the window

void PlaylistEditor::ShowTip()
{
    m_editing->ShowTip();
}

bool PlaylistEditor::closeDown()
{
    if (m_closed)
        return true;
    m_editing->endFilm();
    const QPointer<PlaylistEditor> alive = this;
    const bool saved = SaveActivePlaylist();
    if (!alive)
        return true;
    if (!saved && !std::exchange(m_toldOfFailure, true)) {
        leaveDefinePage();
        m_editing->showHelp(tr("The playlist could not be saved. Close once more to give its changes up."));
        return false;
    }
    m_closed = true;
    m_playlist->closeDown();
    return true;
}

void PlaylistEditor::resizeEvent(QResizeEvent*)
{
    m_editing->setGeometry(rect());
    m_pDefinePlaylist->setGeometry(rect());
}

void PlaylistEditor::showEvent(QShowEvent*)
{
    if (!window()->focusWidget())
        focusNextChild();
}

} // namespace quorvia::collections
