#include "collections/EntryModel.h"

#include "collections/PictureList.h"
#include "platform/OneLine.h"

#include <QGuiApplication>
#include <QPalette>

namespace quorvia::collections {

EntryModel::EntryModel(const PictureList* list, QObject* parent)
    : QAbstractListModel(parent), m_list(list), m_count(list->ListCount())
{
    for (const auto renewed : {&PictureList::ListLoaded, &PictureList::listEmptied}) {
        connect(list, renewed, this, [this] {
            beginResetModel();
            m_count = m_list->ListCount();
            endResetModel();
        });
    }
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
    case Qt::ForegroundRole:
        if (m_list->isMissing(index.row()))
            return QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
        return {};
    default:
        return {};
    }
}

} // namespace quorvia::collections
