// The entries of a PictureList for a list box. It holds nothing but their number: texts are made when they
// are shown.
#pragma once

#include <QAbstractListModel>

namespace quorvia::collections {

class PictureList;

class EntryModel : public QAbstractListModel
{
    Q_OBJECT

  public:
    /// Follows `list`, which outlives the model.
    explicit EntryModel(const PictureList* list, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    const PictureList* m_list;
    int m_count;
};

} // namespace quorvia::collections
