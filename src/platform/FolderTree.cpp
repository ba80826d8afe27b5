#include "platform/FolderTree.h"

#include "platform/FileStatus.h"
#include "platform/FolderModel.h"

#include <QDir>
#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QStyle>

namespace quorvia::platform {

namespace {

/// What a folder is called when it stands alone.
QString nameOf(const QString& path)
{
    const QString name = path.section(u'/', -1);
    return name.isEmpty() ? path : name;
}

} // namespace

FolderTree::FolderTree(QWidget* parent) : QTreeView(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // More rows than any screen shows: were only those in sight measured, a wide one at the lower edge would
    // bring the lying bar, which hides it, so that the bar goes again, and so on without end.
    header()->setResizeContentsPrecision(500);
    m_tReveal.setParent(this);
    m_tReveal.setSingleShot(true);
    connect(&m_tReveal, &QTimer::timeout, this, &FolderTree::reveal);
    setRoot(desktopRoot());
}

bool FolderTree::canTake(const QString& path)
{
    return QDir::isAbsolutePath(path) && isDirectory(path);
}

void FolderTree::setRoot(const QString& root)
{
    const QString next = canTake(root) ? QDir::cleanPath(root) : desktopRoot();
    if (next == m_root)
        return;
    m_root = next;
    showModel();
    mark();
}

void FolderTree::showModel()
{
    const QIcon folder = style()->standardIcon(QStyle::SP_DirIcon, nullptr, this);
    std::vector<FolderModel::Top> tops;
    if (m_root == desktopRoot()) {
        if (const QString home = QDir::homePath(); home != QLatin1String("/"))
            tops.push_back({home, tr("Home"), style()->standardIcon(QStyle::SP_DirHomeIcon, nullptr, this)});
        tops.push_back({QStringLiteral("/"), tr("File System"),
                        style()->standardIcon(QStyle::SP_DriveHDIcon, nullptr, this)});
    } else {
        tops.push_back({m_root, nameOf(m_root), folder});
    }
    const QScopedValueRollback marking(m_marking, true);
    FolderModel* const before = m_model;
    m_model = new FolderModel(tops, folder, this);
    QItemSelectionModel* const selectionBefore = selectionModel();
    setModel(m_model);
    delete selectionBefore;
    delete before;
    const auto revealSoon = [this] { m_tReveal.start(0); };
    connect(m_model, &FolderModel::folderRead, this, revealSoon);
    connect(m_model, &QAbstractItemModel::layoutChanged, this, revealSoon);
    if (tops.size() == 1)
        expand(m_model->index(0, 0));
}

void FolderTree::setSelectedFolder(const QString& folder)
{
    const QString clean = folder.isEmpty() ? QString() : QDir::cleanPath(folder);
    if (clean == m_selected && (clean.isEmpty() || showsSelected()))
        return;
    m_selected = clean;
    mark();
}

bool FolderTree::showsSelected() const
{
    return currentIndex().isValid() && m_model->path(currentIndex()) == m_selected;
}

void FolderTree::mark()
{
    const QScopedValueRollback marking(m_marking, true);
    const QModelIndex index = m_selected.isEmpty() ? QModelIndex() : m_model->indexOf(m_selected);
    if (index.isValid())
        setCurrentIndex(index);
    else
        selectionModel()->clear();
    m_revealing = index.isValid();
    reveal();
}

void FolderTree::reveal()
{
    scheduleDelayedItemsLayout(); // a folder that turned out to have none below it loses its arrow
    if (m_revealing && currentIndex().isValid())
        scrollTo(currentIndex());
}

void FolderTree::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTreeView::selectionChanged(selected, deselected);
    if (m_marking || selected.isEmpty())
        return;
    m_selected = m_model->path(selected.first().topLeft());
    Q_EMIT folderSelected(m_selected);
}

void FolderTree::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end)
{
    // The view would go on to a neighbour, which nobody has chosen.
    QModelIndex marked = currentIndex();
    while (marked.isValid() && marked.parent() != parent)
        marked = marked.parent();
    if (marked.isValid() && marked.row() >= start && marked.row() <= end)
        selectionModel()->clear();
    QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

bool FolderTree::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::Wheel)
        m_revealing = false;
    return QTreeView::viewportEvent(event);
}

void FolderTree::resizeEvent(QResizeEvent* event)
{
    header()->setMinimumSectionSize(viewport()->width()); // the mark of a folder reaches across
    QTreeView::resizeEvent(event);
}

void FolderTree::keyPressEvent(QKeyEvent* event)
{
    m_revealing = false;
    QTreeView::keyPressEvent(event);
}

} // namespace quorvia::platform
