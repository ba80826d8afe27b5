#include "collections/EntryModel.h"

#include "collections/PictureList.h"
#include "platform/OneLine.h"

namespace quorvia::collections {

EntryModel::EntryModel(const PictureList* list, QObject* parent)
    : QAbstractListModel(parent), m_list(list), m_count(list->ListCount())
{
    connect(list, &PictureList::ListLoaded, this, [this] {
        beginResetModel();
        m_count = m_list->ListCount();
        endResetModel();
    });
    connect(list, &PictureList::textChanged, this,
            [this](int row) { Q_EMIT dataChanged(index(row), index(row)); });
}

int EntryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant EntryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return platform::oneLine(m_list->text(index.row()));
    case Qt::ToolTipRole:
        return platform::plainToolTip(m_list->ListFile(index.row()));
    default:
        return {};
    }
}

} // namespace quorvia::collections
