// The list of a folder's images that navigation walks, without a window: its entries, the current one, the
// selected ones, the deferred rebuild and the watch for vanished files. It lives from the start; a window
// attaches to it later. Moving within it costs nothing per entry, a rebuild reads the folder once.
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

class PictureList : public QObject
{
    Q_OBJECT

  public:
    /// `currentFile` tells the name of the image on show, which picking its entry does not open again.
    explicit PictureList(std::function<QString()> currentFile, QObject* parent = nullptr);

    /// Takes the folder of the last run when `cLoad` asks for it and it still exists, runs `loadStored` (may
    /// be empty) with `Starting` set, and asks for the first rebuild. Called once, before anything else.
    void startUp(const std::function<void()>& loadStored = {});
    /// True until startUp() has ended; another folder asks for no rebuild meanwhile.
    bool Initialising() const { return m_initialising; }
    /// True while startUp() runs `loadStored`.
    bool Starting() const { return m_starting; }

    /// Whether the face of the folder is in front. While it is not, path() is empty and neither a folder nor
    /// a rebuild is taken.
    bool FolderMode() const { return m_folderMode; }
    void SetFolderMode(bool folderMode) { m_folderMode = folderMode; }
    /// The tab in front: 0 for that of the folders, 1 for the other.
    int GetSelectedTab() const { return m_folderMode ? 0 : 1; }

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

    /// The selected entries, in ascending order.
    const std::vector<RowRange>& selection() const { return m_selection; }
    void setSelection(std::vector<RowRange> rows);
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

  Q_SIGNALS:
    /// An entry that is not on show already was picked.
    void OpenFile(const QString& file);
    /// A rebuild has ended. ListLoaded comes first.
    void ListLoaded();
    void ListChanged();

    // --- for the window that shows the list
    void pathChanged(const QString& folder);
    void textChanged(int index);
    /// SetListIndex() made `index` the current and the selected entry.
    void indexChanged(int index);

  private:
    void rebuild();
    void lookForVanished();
    bool holds(int index) const { return index >= 0 && index < ListCount(); }
    void NotifyOpenFile(const QString& sFile);

    std::function<QString()> m_currentFile;
    QTimer m_tFolder;
    QTimer m_tAutoUpdate;
    QString m_path;
    QString m_pattern;
    QString m_listedFolder; ///< whose files stand in the list
    QStringList m_files;
    QHash<int, QString> m_texts; ///< of the entries that were given one
    std::vector<RowRange> m_selection;
    int m_index = -1;
    bool m_initialising = true;
    bool m_starting = false;
    bool m_folderMode = true;
    bool m_rebuilding = false;
    bool m_closed = false;
};

} // namespace quorvia::collections
