// The open playlist, without a window: its files in order, its name and its file, which follows every change
// by itself. Dear is what looks at each of many files: a load.
#pragma once

#include "collections/QolFile.h"
#include "collections/RowRanges.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class QWidget;

namespace quorvia::collections {

class PlaylistKeeper : public QObject
{
    Q_OBJECT

  public:
    explicit PlaylistKeeper(QObject* parent = nullptr);

    /// Dialogs belong to the window that `owner` gives from now on; it may give null.
    void setDialogOwner(std::function<QWidget*()> owner) { m_owner = std::move(owner); }
    /// What the dialogs belong to now.
    QWidget* dialogOwner() const { return m_owner ? m_owner() : nullptr; }

    /// The name of the open playlist; empty while none is open.
    const QString& ActivePlaylist() const { return m_name; }
    /// Full paths, in order. One file may stand there several times.
    const QStringList& PlaylistFiles() const { return m_files; }
    /// The named playlists, as they were when the list was filled last.
    const QStringList& names() const { return m_names; }

    /// The one extension that counts as a playlist when a file is handed to the program.
    static QString GetPlaylistFormats() { return QStringLiteral(".qol"); }
    /// Opens the playlist in the file `sFile`; of the empty text, in one that the user chooses. Entries whose
    /// files are not there are left out. When he chooses none, or breaks off, all stays as it was.
    void LoadQOLPlaylist(const QString& sFile);
    /// Writes the list to the file `sFile`, whose name becomes that of the open playlist; of the empty text,
    /// to one that the user names, and nothing happens when there are no files. See QolFile::save().
    void SaveQOLPlaylist(const QString& sFile);
    /// Opens the playlist that was open at the last close, if its file is still there.
    void LoadActivePlaylist();
    /// Keeps for the next start which playlist is open, and saves it. Every later call is shut out.
    void closeDown();
    /// Saves the open playlist, if there is one, among the named ones.
    void saveOpen();
    /// The same 50 ms after the last request, unless another playlist is open by then.
    void saveSoon();
    /// Somebody may have changed the named playlists: fills their list, and loads the open one anew from its
    /// file. When that has gone none is open any more: a deleted playlist is not made again. What was changed
    /// here and could not be saved stays.
    void reloadOpen();
    /// Fills the list of the named playlists.
    void fillNames();

    /// Makes sure that a playlist is open: without one, "Auto Playlist" is opened or made, with `bSilent` at
    /// once, else when the user says so. True when one is open.
    bool IntiPlaylist(bool bSilent);

    /// Appends a file that exists. False when it does not, or its name cannot stand in a playlist.
    bool AddPlaylistFile(const QString& sFile);
    /// The same with all of `files` that there are, in their order. Shows how far it is when it takes long;
    /// none is added, and the answer false, when the user breaks off. Events may run meanwhile.
    bool AddPlaylistFiles(const QStringList& files);
    /// Leaves no file in the list. The playlist stays open.
    void ClearPlaylist();
    /// Takes out the entries at `rows` (0-based).
    void removeFiles(const std::vector<RowRange>& rows);
    /// Puts `sNew` in the place of each entry that is `sOld`. True when there was one.
    bool RenamePlaylistFiles(const QString& sOld, const QString& sNew);
    /// Puts `sNew` in the place of entry `index` (0-based). False when that is not `sOld` any more. Nobody
    /// hears of it: one of many, after which the caller has list and file follow.
    bool replaceFile(int index, const QString& sOld, const QString& sNew);

  Q_SIGNALS:
    /// Another playlist has been opened by a load.
    void loaded();
    /// Files were added, taken out or renamed.
    void filesChanged();
    /// The user was asked for a file to load and gave none.
    void notLoaded();
    void nameChanged();
    void namesChanged();

  private:
    bool take(const QString& path);
    void setName(const QString& name);
    void changed();

    std::function<QWidget*()> m_owner;
    QStringList m_files;
    QString m_name;
    QStringList m_names;
    QolFile m_file;
    bool m_changed = false; ///< the files, since they were loaded or saved
    bool m_closed = false;
    QTimer m_tPlaylistSave; ///< its property "tag" is the name of the playlist that is to be saved
};

} // namespace quorvia::collections
