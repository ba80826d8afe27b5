// The list of images that navigation walks, without a window: its two faces (a folder's images, the open
// playlist), its entries, the current one, the selected ones, the deferred rebuild and the watch for vanished
// files. It lives from the start; a window attaches to it later. Moving within it costs nothing per entry; a
// rebuild reads the folder once, or looks at each file of the playlist, between the events.
#pragma once

#include "collections/RowRanges.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <vector>

namespace quorvia::collections {

class PlaylistKeeper;
class PresenceWalk;

class PictureList : public QObject
{
    Q_OBJECT

  public:
    /// `currentFile` tells the name of the image on show, which picking its entry does not open again.
    explicit PictureList(std::function<QString()> currentFile, QObject* parent = nullptr);

    /// Takes folder and playlist of the last run when `cLoad` asks for them and they still exist, brings the
    /// face of the last run to the front, and asks for the first rebuild. Where there are no playlists, an
    /// empty one is made. Called once, before anything else.
    void startUp();
    /// True until startUp() has ended; another folder asks for no rebuild meanwhile.
    bool Initialising() const { return m_initialising; }
    /// True while startUp() loads the stored playlist.
    bool Starting() const { return m_starting; }

    /// The open playlist.
    PlaylistKeeper* playlist() const { return m_playlist; }

    /// Whether the face of the folder is in front. While it is not, path() is empty and no folder is taken.
    bool FolderMode() const { return m_folderMode; }
    /// The tab in front: 0 for that of the folders, 1 for the playlist's.
    int GetSelectedTab() const { return m_folderMode ? 0 : 1; }
    /// Brings the other face to the front. The list is empty until its rebuild.
    void changeTab();
    /// Brings the face of tab `iTab` (0 or 1) to the front, and shows both tabs. Any other number only does
    /// the latter.
    void SelectTab(int iTab);
    /// Shows or hides the tab that is not in front, after the face of the other tab than `iTab` (0 or 1; any
    /// other counts as 0) has come to the front, unless both tabs show and shall.
    void TabEnabled(int iTab, bool bEnabled);
    /// Whether the tab that is not in front is shown.
    bool isTab2Visible() const { return m_tab2Visible; }

    /// The folder, without a final "/"; empty when none has been chosen, and for any `index` but 0.
    QString path(int index = 0) const { return index == 0 && m_folderMode ? m_path : QString(); }
    /// Chooses an existing folder and, when it is another one, asks for a rebuild. A path that is relative is
    /// none.
    void setPath(const QString& folder) { setPath(0, folder); }
    /// The same; nothing happens for any `index` but 0.
    void setPath(int index, const QString& folder);

    QString Pattern() const { return m_pattern; }
    /// The ";"-separated wildcards of files to list; asks for a rebuild.
    void SetPattern(const QString& pattern);

    int ListCount() const { return static_cast<int>(m_files.size()); }
    /// The current entry, 0-based; -1 for none.
    int ListIndex() const { return m_index; }
    /// Makes `index` the current entry and the only selected one and, when it is another one, picks it.
    /// Beyond the list nothing happens.
    void SetListIndex(int index);
    /// The same without picking it: nothing is opened.
    void select(int index);
    /// Looks for the first entry whose text is `text` and picks it. File names are never such texts: entries
    /// bear a number, and that is where it looks. Nothing happens at start-up.
    void setListIndex(const QString& text);
    /// The text of entry `index` (0-based) without blanks around it; empty beyond the list.
    QString List(int index) const { return text(index).trimmed(); }
    /// Gives entry `index` another text until the next rebuild. The file stays the same.
    void SetList(int index, const QString& text);
    /// The text of entry `index` as it is shown.
    QString text(int index) const;
    /// The full path of entry `index` (0-based); empty beyond the list.
    QString ListFile(int index) const { return m_files.value(index); }
    /// The full paths of all entries.
    const QStringList& files() const { return m_files; }
    /// Whether the file of entry `index` of the playlist was gone when it was looked at last.
    bool isMissing(int index) const { return holds(index) && m_missing[std::size_t(index)]; }

    /// The selected entries, in ascending order.
    const std::vector<RowRange>& selection() const { return m_selection; }
    void setSelection(std::vector<RowRange> rows);
    /// Puts `sNew` in the place of entry `index` of the playlist, if that is still `sOld`. Its text is the
    /// name of that file until the next rebuild.
    void replaceFile(int index, const QString& sOld, const QString& sNew);
    /// The full paths of the selected entries, each followed by ";".
    QString GetSelectedFiles() const;

    /// The user chose entry `index`: it becomes the current one, and its file is opened unless it is on show.
    /// Nothing is opened for an entry without a text. The selection stays.
    void pick(int index);
    /// The user pressed a mouse button on entry `index`, whose text then loses its stars.
    void notePress(int index);

    /// Asks for a rebuild, which follows 10 ms after the last request.
    void RefreshPlaylist();
    /// How often the list looks for vanished files, in milliseconds; 3000 at first.
    void SetUpdateInterval(int milliseconds);
    /// True when no rebuild is pending or under way.
    bool IsReady() const { return !m_tFolder.isActive() && !m_rebuilding; }
    /// Does a pending rebuild now.
    void finishRebuild();
    /// Lets pending events run and ends all activity; every later call is shut out.
    void CloseDown();
    bool isClosed() const { return m_closed; }

  Q_SIGNALS:
    /// An entry that is not on show already was picked.
    void OpenFile(const QString& file);
    /// A rebuild has ended. ListLoaded comes first. ListChanged comes after a load of a playlist too.
    void ListLoaded();
    void ListChanged();

    // --- for the window that shows the list
    void pathChanged(const QString& folder);
    /// The other face is in front; `animated` when it was not so from the start.
    void tabChanged(bool animated);
    void tab2VisibleChanged();
    /// There are no entries until the next rebuild.
    void listEmptied();
    void textChanged(int index);
    /// SetListIndex() or select() made `index` the current and the selected entry.
    void indexChanged(int index);

  private:
    void rebuild();
    void listFolder();
    void listPlaylist();
    void showPlaylist();
    void forgetEntries();
    void lookForVanished();
    void noteMissing(int index, bool missing);
    bool holds(int index) const { return index >= 0 && index < ListCount(); }
    void NotifyOpenFile(const QString& sFile);

    std::function<QString()> m_currentFile;
    QTimer m_tFolder;
    QTimer m_tAutoUpdate;
    PlaylistKeeper* m_playlist;
    PresenceWalk* m_walk;
    QString m_path;
    QString m_pattern;
    QString m_listedFolder; ///< whose files stand in the list
    QStringList m_files;
    std::vector<bool> m_missing; ///< of each entry, whether its file is known to be gone
    QHash<int, QString> m_texts; ///< of the entries that were given one
    std::vector<RowRange> m_selection;
    int m_index = -1;
    bool m_initialising = true;
    bool m_starting = false;
    bool m_folderMode = true;
    bool m_tab2Visible = true;
    bool m_rebuilding = false;
    bool m_closed = false;
};

} // namespace quorvia::collections
