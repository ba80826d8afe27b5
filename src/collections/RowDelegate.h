// How the rows of the lists here are shown: with the air that those of the tree have.
#pragma once

#include <QStyledItemDelegate>

#include <algorithm>

namespace quorvia::collections {

class RowDelegate : public QStyledItemDelegate
{
  public:
    /// `widest`: no row asks for more pixels, however long its text is.
    explicit RowDelegate(QObject* parent, int widest = QWIDGETSIZE_MAX)
        : QStyledItemDelegate(parent), m_widest(widest)
    {
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        constexpr int air = 4; // pixels
        const QSize wanted = QStyledItemDelegate::sizeHint(option, index);
        return {std::min(wanted.width(), m_widest), wanted.height() + air};
    }

  private:
    int m_widest;
};

} // namespace quorvia::collections
