// The list of a folder's images that navigation walks: its entries, the current one, and the deferred
// rebuild.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

namespace quorvia::collections {

/// The paths of `folder`'s files that match the ";"-separated `pattern`, in the order of the list: by full
/// path, ignoring case (names that differ in nothing else by their characters' codes).
QStringList sortedFolderFiles(const QString& folder, const QString& pattern);

/// The display text of an entry: its 1-based number, ". ", the name and " (EXTENSION)".
QString entryText(int number, const QString& path);

class FolderList : public QObject
{
    Q_OBJECT

  public:
    /// `currentFile` tells the name of the image on show, which picking its entry does not open again.
    explicit FolderList(std::function<QString()> currentFile, QObject* parent = nullptr);

    /// Takes the folder of the last run when `cLoad` asks for it and it still exists.
    void restoreSelectedPath();

    /// The folder, without a final "/"; empty when none has been chosen.
    QString path() const { return m_path; }
    /// Chooses an existing folder and, when it is another one, asks for a rebuild.
    void setPath(const QString& folder);

    QString Pattern() const { return m_pattern; }
    /// The ";"-separated wildcards of files to list; asks for a rebuild.
    void SetPattern(const QString& pattern);

    int ListCount() const { return static_cast<int>(m_files.size()); }
    /// The current entry, 0-based; -1 for none.
    int ListIndex() const { return m_index; }
    /// Makes `index` the current entry and, when it is another one, picks it. Beyond the list nothing
    /// happens.
    void SetListIndex(int index);
    /// Looks for an entry whose text is `text` and picks it. File names are never such texts: entries bear a
    /// number.
    void setListIndex(const QString& text);
    /// The text of entry `index` (0-based); empty beyond the list.
    QString List(int index) const;
    /// The full path of entry `index` (0-based); empty beyond the list.
    QString ListFile(int index) const;

    /// Asks for a rebuild, which follows 10 ms after the last request.
    void RefreshPlaylist();
    /// True when no rebuild is pending.
    bool IsReady() const { return !m_tFolder.isActive(); }
    /// Does a pending rebuild now.
    void finishRebuild();
    /// Ends all activity; every later call is shut out.
    void CloseDown();

  Q_SIGNALS:
    /// An entry that is not on show already was picked.
    void OpenFile(const QString& file);
    /// A rebuild has ended.
    void ListChanged();

  private:
    void rebuild();
    void pick(int index);

    std::function<QString()> m_currentFile;
    QTimer m_tFolder;
    QString m_path;
    QString m_pattern;
    QStringList m_files;
    int m_index = -1;
    bool m_closed = false;
};

} // namespace quorvia::collections
