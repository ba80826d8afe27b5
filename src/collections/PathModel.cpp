#include "collections/PathModel.h"

#include "app/mFile.h"
#include "collections/EditorMoves.h"
#include "platform/OneLine.h"

#include <algorithm>

namespace quorvia::collections {

void PathModel::setPaths(QStringList paths)
{
    beginResetModel();
    m_paths = std::move(paths);
    endResetModel();
}

void PathModel::append(const QString& path)
{
    const int row = int(m_paths.size());
    beginInsertRows({}, row, row);
    m_paths.append(path);
    endInsertRows();
}

void PathModel::move(const RowMove& move)
{
    if (move.blocks.empty())
        return;
    apply(move, m_paths);
    const int first = std::max(move.blocks.front().first - 1, 0);
    const int last = std::min(move.blocks.back().last + 1, int(m_paths.size()) - 1);
    Q_EMIT dataChanged(index(first), index(last));
}

int PathModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_paths.size());
}

QVariant PathModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return platform::oneLine(app::SplitPathName(m_paths.at(index.row()), 2));
    case Qt::ToolTipRole:
        return platform::plainToolTip(m_paths.at(index.row()));
    default:
        return {};
    }
}

} // namespace quorvia::collections
