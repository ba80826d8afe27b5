#include "platform/FolderModel.h"

#include "platform/FileStatus.h"
#include "platform/OneLine.h"

#include <QAbstractFileIconProvider>

namespace quorvia::platform {

namespace {

/// The model's own icons are not shown, and to look for them costs a look into each file.
class NoIcons : public QAbstractFileIconProvider
{
  public:
    QIcon icon(IconType /*type*/) const override { return {}; }
    QIcon icon(const QFileInfo& /*info*/) const override { return {}; }
    /// Not empty: the toolkit's model takes what has no type for what it knows already, and adds no entry.
    QString type(const QFileInfo& /*info*/) const override { return QStringLiteral("Folder"); }
};

bool isAbove(const QString& folder, const QString& path)
{
    return path == folder || folder == QLatin1String("/") || path.startsWith(folder + u'/');
}

/// Whether `index` is `root` or stands below it.
bool isWithin(const QModelIndex& root, QModelIndex index)
{
    while (index.isValid() && index != root)
        index = index.parent();
    return root.isValid() && index.isValid();
}

} // namespace

FolderModel::FolderModel(const std::vector<Top>& tops, const QIcon& folderIcon, QObject* parent)
    : QAbstractItemModel(parent), m_folderIcon(folderIcon)
{
    for (const Top& top : tops) {
        auto branch = std::make_unique<Branch>();
        branch->top = top;
        branch->row = int(m_branches.size());
        branch->icons = std::make_unique<NoIcons>();
        branch->source = std::make_unique<QFileSystemModel>();
        branch->source->setIconProvider(branch->icons.get());
        branch->source->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
        branch->source->setResolveSymlinks(false);
        branch->root = branch->source->setRootPath(top.path);
        follow(*branch);
        m_branches.push_back(std::move(branch));
    }
}

FolderModel::~FolderModel() = default;

void FolderModel::follow(Branch& branch)
{
    QFileSystemModel* const source = branch.source.get();
    const Branch* const from = &branch;
    connect(source, &QAbstractItemModel::rowsAboutToBeInserted, this,
            [this, from](const QModelIndex& parent, int first, int last) {
                if (isWithin(from->root, parent))
                    beginInsertRows(fromSource(*from, parent), first, last);
            });
    connect(source, &QAbstractItemModel::rowsInserted, this, [this, from](const QModelIndex& parent) {
        if (isWithin(from->root, parent))
            endInsertRows();
    });
    connect(source, &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this, from](const QModelIndex& parent, int first, int last) {
                if (isWithin(from->root, parent))
                    beginRemoveRows(fromSource(*from, parent), first, last);
            });
    connect(source, &QAbstractItemModel::rowsRemoved, this, [this, from](const QModelIndex& parent) {
        if (isWithin(from->root, parent))
            endRemoveRows();
        forgetGone();
    });
    connect(source, &QAbstractItemModel::layoutAboutToBeChanged, this, &FolderModel::beginLayout);
    connect(source, &QAbstractItemModel::layoutChanged, this, &FolderModel::endLayout);
    connect(source, &QFileSystemModel::directoryLoaded, this, [this](const QString& path) {
        m_read.insert(path);
        Q_EMIT folderRead();
    });
}

QModelIndex FolderModel::indexOf(const QString& path) const
{
    const Branch* nearest = nullptr;
    for (const auto& branch : m_branches) {
        const bool nearer = !nearest || branch->top.path.size() > nearest->top.path.size();
        if (nearer && isAbove(branch->top.path, path))
            nearest = branch.get();
    }
    if (!nearest || !isDirectory(path)) // the toolkit's model may hold one that has gone
        return {};
    const QModelIndex source = nearest->source->index(path);
    return isWithin(nearest->root, source) ? fromSource(*nearest, source) : QModelIndex();
}

QString FolderModel::path(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    if (!index.internalPointer())
        return m_branches.at(size_t(index.row()))->top.path;
    return static_cast<Folder*>(index.internalPointer())->branch->source->filePath(toSource(index));
}

QModelIndex FolderModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column != 0 || row >= rowCount(parent))
        return {};
    if (!parent.isValid())
        return createIndex(row, 0, nullptr);
    const auto* const above = static_cast<Folder*>(parent.internalPointer());
    const Branch& branch = above ? *above->branch : *m_branches.at(size_t(parent.row()));
    return createIndex(row, 0, folderFor(branch, toSource(parent)));
}

QModelIndex FolderModel::parent(const QModelIndex& child) const
{
    const auto* const folder = static_cast<Folder*>(child.internalPointer());
    return folder ? fromSource(*folder->branch, folder->index) : QModelIndex();
}

int FolderModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return int(m_branches.size());
    const QModelIndex source = toSource(parent);
    return source.isValid() ? source.model()->rowCount(source) : 0;
}

int FolderModel::columnCount(const QModelIndex& /*parent*/) const
{
    return 1;
}

bool FolderModel::hasChildren(const QModelIndex& parent) const
{
    return rowCount(parent) > 0 || canFetchMore(parent) || !m_read.contains(path(parent));
}

bool FolderModel::canFetchMore(const QModelIndex& parent) const
{
    const QModelIndex source = toSource(parent);
    return source.isValid() && source.model()->canFetchMore(source);
}

void FolderModel::fetchMore(const QModelIndex& parent)
{
    if (const QModelIndex source = toSource(parent); source.isValid())
        const_cast<QAbstractItemModel*>(source.model())->fetchMore(source);
}

QVariant FolderModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Branch* const top = index.internalPointer() ? nullptr : m_branches.at(size_t(index.row())).get();
    switch (role) {
    case Qt::DisplayRole:
        return oneLine(top ? top->top.caption : toSource(index).data().toString());
    case Qt::DecorationRole:
        return top ? top->top.icon : m_folderIcon;
    case Qt::ToolTipRole:
        return plainToolTip(path(index));
    default:
        return {};
    }
}

QModelIndex FolderModel::toSource(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    const auto* const folder = static_cast<Folder*>(index.internalPointer());
    return folder ? folder->branch->source->index(index.row(), 0, folder->index)
                  : QModelIndex(m_branches.at(size_t(index.row()))->root);
}

QModelIndex FolderModel::fromSource(const Branch& branch, const QModelIndex& source) const
{
    return source == branch.root ? createIndex(branch.row, 0, nullptr)
                                 : createIndex(source.row(), 0, folderFor(branch, source.parent()));
}

FolderModel::Folder* FolderModel::folderFor(const Branch& branch, const QModelIndex& source) const
{
    std::unique_ptr<Folder>& folder = m_folders[source.internalId()];
    if (!folder)
        folder = std::make_unique<Folder>(Folder{&branch, source});
    return folder.get();
}

void FolderModel::forgetGone()
{
    std::erase_if(m_folders, [](const auto& entry) { return !entry.second->index.isValid(); });
}

void FolderModel::beginLayout()
{
    Q_EMIT layoutAboutToBeChanged();
    m_layoutIndexes = persistentIndexList();
    for (const QModelIndex& index : std::as_const(m_layoutIndexes))
        m_layoutSources.append(toSource(index));
}

void FolderModel::endLayout()
{
    for (qsizetype i = 0; i < m_layoutIndexes.size(); ++i) {
        const QModelIndex before = m_layoutIndexes.at(i);
        const auto* const folder = static_cast<Folder*>(before.internalPointer());
        if (folder) // the top entries keep their places
            changePersistentIndex(before, fromSource(*folder->branch, m_layoutSources.at(i)));
    }
    m_layoutIndexes.clear();
    m_layoutSources.clear();
    Q_EMIT layoutChanged();
}

} // namespace quorvia::platform
