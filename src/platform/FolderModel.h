// Folders as a model: one or more folders side by side as top entries, each with its subfolders below it.
// Hidden ones are left out. A folder is read when it is first opened, by the toolkit's own thread; what comes
// and goes on the disk comes and goes here.
#pragma once

#include <QAbstractItemModel>
#include <QFileSystemModel>
#include <QIcon>
#include <QSet>

#include <memory>
#include <unordered_map>
#include <vector>

namespace quorvia::platform {

class FolderModel : public QAbstractItemModel
{
    Q_OBJECT

  public:
    /// A top entry.
    struct Top
    {
        QString path; ///< absolute, clean
        QString caption;
        QIcon icon;
    };

    FolderModel(const std::vector<Top>& tops, const QIcon& folderIcon, QObject* parent = nullptr);
    ~FolderModel() override;

    /// The entry of the folder at `path`, under the top entry that lies nearest above it; an invalid index
    /// when it is none or lies below none of them. Looks at each folder on the way, and at no other.
    QModelIndex indexOf(const QString& path) const;
    /// The path of the folder at `index`; empty for an invalid one.
    QString path(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    /// True also of a folder that nobody has looked into yet.
    bool hasChildren(const QModelIndex& parent = {}) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;
    QVariant data(const QModelIndex& index, int role) const override;

  Q_SIGNALS:
    /// A folder has been read.
    void folderRead();

  private:
    /// A top entry and the toolkit's model that it is taken from.
    struct Branch
    {
        Top top;
        int row;
        std::unique_ptr<QAbstractFileIconProvider> icons;
        std::unique_ptr<QFileSystemModel> source;
        QPersistentModelIndex root; ///< of the top entry in `source`
    };
    /// What the entries below one folder point to.
    struct Folder
    {
        const Branch* branch;
        QPersistentModelIndex index; ///< in the branch's source
    };

    void follow(Branch& branch);
    QModelIndex toSource(const QModelIndex& index) const;
    QModelIndex fromSource(const Branch& branch, const QModelIndex& source) const;
    Folder* folderFor(const Branch& branch, const QModelIndex& source) const;
    void beginLayout();
    void endLayout();
    /// Drops what is kept of folders that are no longer there.
    void forgetGone();

    std::vector<std::unique_ptr<Branch>> m_branches;
    QIcon m_folderIcon;
    mutable std::unordered_map<quintptr, std::unique_ptr<Folder>> m_folders; ///< by the source's own mark
    QModelIndexList m_layoutIndexes;
    QList<QPersistentModelIndex> m_layoutSources;
    QSet<QString> m_read; ///< paths of the folders that have been read once
};

} // namespace quorvia::platform
