// The folder tree: folders only, hidden ones not, one of them selected. What is below a folder is read when
// it is opened, in the background. Making one costs a few milliseconds, most of them the toolkit's.
#pragma once

#include <QString>
#include <QTimer>
#include <QTreeView>

namespace quorvia::platform {

class FolderModel;

class FolderTree : public QTreeView
{
    Q_OBJECT

  public:
    /// A tree below the word "Desktop".
    explicit FolderTree(QWidget* parent = nullptr);

    /// What setRoot() takes for the whole of the desktop: the user's home and the file system's root.
    static QString desktopRoot() { return QStringLiteral("Desktop"); }
    /// Whether `path` is one that the tree can show as its root: an absolute path of a folder.
    static bool canTake(const QString& path);

    /// The word "Desktop" or a path.
    QString root() const { return m_root; }
    /// Shows the tree below `root`; any text that is no path that it can take counts as the word. The
    /// selected folder stays, and is shown where the tree has it.
    void setRoot(const QString& root);

    /// The path of the selected folder; empty when there is none. It stays when the folder vanishes, and when
    /// the tree has no place for it.
    QString selectedFolder() const { return m_selected; }
    /// Selects a folder and opens the tree down to it. None is marked when the tree has no place for it.
    void setSelectedFolder(const QString& folder);
    /// Whether the selected folder is one of the tree's entries.
    bool showsSelected() const;

  Q_SIGNALS:
    /// The user selected another folder.
    void folderSelected(const QString& folder);

  protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showModel();
    void mark();
    void reveal();

    FolderModel* m_model = nullptr;
    QString m_root;
    QString m_selected;
    QTimer m_tReveal;         ///< from a change of the entries until the selected one is brought into sight
    bool m_marking = false;   ///< the tree changes its mark by itself
    bool m_revealing = false; ///< until the user acts, the marked entry is kept in sight
};

} // namespace quorvia::platform
