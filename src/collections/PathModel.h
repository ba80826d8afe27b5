// A list of paths for a list box, which shows their names without directory. The list is the one record of
// what stands there; texts are made when they are shown.
#pragma once

#include <QAbstractListModel>
#include <QStringList>

namespace quorvia::collections {

struct RowMove;

class PathModel : public QAbstractListModel
{
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;

    const QStringList& paths() const { return m_paths; }
    /// The full path at `row` (0-based); empty beyond the list.
    QString path(int row) const { return m_paths.value(row); }
    /// Replaces the whole list; nothing is selected afterwards.
    void setPaths(QStringList paths);
    void append(const QString& path);
    /// Moves entries; what is selected stays with the rows, not with the entries.
    void move(const RowMove& move);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

  private:
    QStringList m_paths;
};

} // namespace quorvia::collections
