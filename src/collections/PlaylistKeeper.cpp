#include "collections/PlaylistKeeper.h"

#include "app/Log.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistIntake.h"
#include "collections/QolText.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"

#include <QPointer>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int saveDelay = 50; // milliseconds
constexpr char tag[] = "tag";
const QLatin1String autoPlaylist("Auto Playlist");

} // namespace

PlaylistKeeper::PlaylistKeeper(QObject* parent) : QObject(parent)
{
    m_tPlaylistSave.setObjectName(QStringLiteral("tPlaylistSave"));
    m_tPlaylistSave.setParent(this);
    m_tPlaylistSave.setSingleShot(true);
    m_tPlaylistSave.setInterval(saveDelay);
    connect(&m_tPlaylistSave, &QTimer::timeout, this, [this] {
        if (m_tPlaylistSave.property(tag).toString() == m_name)
            saveOpen();
    });
}

void PlaylistKeeper::LoadQOLPlaylist(const QString& sFile)
{
    if (m_closed)
        return;
    const QPointer<PlaylistKeeper> alive = this;
    QString path = sFile;
    if (path.isEmpty())
        path = platform::chooseFile(dialogOwner(), {.title = tr("Import Playlist from File"),
                                                    .filters = QLatin1String(playlistFilter),
                                                    .start = playlistFolder()});
    if (!alive)
        return;
    if (path.isEmpty()) {
        Q_EMIT notLoaded();
        return;
    }
    if (!take(path))
        return;
    setName(playlistName(path));
    Q_EMIT loaded();
}

/// Takes over what stands in the file at `path`. False, and nothing has changed, when the user broke off or
/// all was closed meanwhile.
bool PlaylistKeeper::take(const QString& path)
{
    const QPointer<PlaylistKeeper> alive = this;
    QolFile file = m_file;
    const std::optional<QStringList> files = file.load(path, dialogOwner());
    if (!alive || m_closed || !files)
        return false;
    m_file = std::move(file);
    m_files = *files;
    m_changed = false;
    return true;
}

void PlaylistKeeper::SaveQOLPlaylist(const QString& sFile)
{
    if (m_closed || (sFile.isEmpty() && m_files.isEmpty()))
        return;
    const QPointer<PlaylistKeeper> alive = this;
    QString path = sFile;
    if (path.isEmpty())
        path = platform::chooseSaveFile(dialogOwner(), {.title = tr("Export Playlist to File"),
                                                        .filters = QLatin1String(playlistFilter),
                                                        .start = playlistFolder(),
                                                        .extension = QLatin1String(playlistExtension)});
    if (!alive || m_closed || path.isEmpty())
        return;
    const QolFile::Saved saved = m_file.save(path, m_files, m_changed);
    if (saved == QolFile::Saved::Left) {
        app::WriteLog(QStringLiteral("Playlist has been changed by another program: ") + path);
        if (take(path))
            Q_EMIT filesChanged();
        return;
    }
    if (saved == QolFile::Saved::Written)
        m_changed = false;
    setName(playlistName(path));
}

void PlaylistKeeper::LoadActivePlaylist()
{
    if (const QString path = app::read(app::setting::ActivePlaylist); platform::isFile(path))
        LoadQOLPlaylist(path);
}

void PlaylistKeeper::closeDown()
{
    app::save(app::setting::ActivePlaylist, namedPlaylistPath(m_name));
    saveOpen();
    m_tPlaylistSave.stop();
    m_closed = true;
}

void PlaylistKeeper::saveOpen()
{
    if (m_name.isEmpty())
        return;
    SaveQOLPlaylist(namedPlaylistPath(m_name));
    fillNames();
}

void PlaylistKeeper::saveSoon()
{
    if (m_closed)
        return;
    m_tPlaylistSave.setProperty(tag, m_name);
    m_tPlaylistSave.start();
}

void PlaylistKeeper::reloadOpen()
{
    fillNames();
    if (m_closed || m_name.isEmpty())
        return;
    if (m_changed) // the save before has failed: what is in memory is all there is of it
        return;
    const QString path = namedPlaylistPath(m_name);
    if (platform::isFile(path)) {
        LoadQOLPlaylist(path);
        return;
    }
    m_file.forget();
    m_files.clear();
    m_changed = false;
    setName(QString());
    Q_EMIT filesChanged();
}

void PlaylistKeeper::fillNames()
{
    m_names = namedPlaylists();
    Q_EMIT namesChanged();
}

bool PlaylistKeeper::IntiPlaylist(bool bSilent)
{
    if (!m_name.isEmpty())
        return true;
    const QPointer<PlaylistKeeper> alive = this;
    const bool wanted =
        bSilent || platform::showMessage(
                       dialogOwner(),
                       {platform::BoxKind::Question, platform::BoxButtons::YesNoCancel, app::productTitle(),
                        QStringLiteral("The are currently no open playlist. Would you like to create/open "
                                       "'Auto Playlist' to move images into?")}) == platform::BoxAnswer::Yes;
    if (!alive || m_closed || !wanted)
        return false;
    const QString path = namedPlaylistPath(autoPlaylist);
    if (platform::isFile(path) && m_files.isEmpty()) {
        if (!take(path))
            return false;
        setName(playlistName(path));
        Q_EMIT filesChanged();
    } else {
        SaveQOLPlaylist(path);
        fillNames();
    }
    return !m_name.isEmpty();
}

bool PlaylistKeeper::AddPlaylistFile(const QString& sFile)
{
    if (m_closed || !canBeAdded(sFile))
        return false;
    m_files.append(sFile);
    changed();
    return true;
}

bool PlaylistKeeper::AddPlaylistFiles(const QStringList& files)
{
    const QPointer<PlaylistKeeper> alive = this;
    const std::optional<QStringList> added = addable(files, dialogOwner());
    if (!alive || m_closed || !added)
        return false;
    if (!added->isEmpty()) {
        m_files += *added;
        changed();
    }
    return true;
}

void PlaylistKeeper::ClearPlaylist()
{
    if (m_closed)
        return;
    m_files.clear();
    changed();
}

void PlaylistKeeper::removeFiles(const std::vector<RowRange>& rows)
{
    if (m_closed)
        return;
    m_files = withoutRows(m_files, rows);
    changed();
}

bool PlaylistKeeper::RenamePlaylistFiles(const QString& sOld, const QString& sNew)
{
    if (m_closed || !m_files.contains(sOld))
        return false;
    std::replace(m_files.begin(), m_files.end(), sOld, sNew);
    changed();
    saveSoon(); // with the folders in front no rebuild does
    return true;
}

bool PlaylistKeeper::replaceFile(int index, const QString& sOld, const QString& sNew)
{
    const bool isThere = index >= 0 && index < int(m_files.size()) && m_files.at(index) == sOld;
    if (m_closed || !isThere)
        return false;
    if (sNew != sOld) {
        m_files[index] = sNew;
        m_changed = true;
    }
    return true;
}

void PlaylistKeeper::setName(const QString& name)
{
    if (name == m_name)
        return;
    m_name = name;
    Q_EMIT nameChanged();
}

void PlaylistKeeper::changed()
{
    m_changed = true;
    Q_EMIT filesChanged();
}

} // namespace quorvia::collections
