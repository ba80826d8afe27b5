// One of the two buttons that scroll a tab strip: a flat box with an arrow.
#pragma once

#include <QAbstractButton>
#include <QColor>

namespace quorvia::controls {

class TabScrollButton : public QAbstractButton
{
    Q_OBJECT

  public:
    /// How wide a button is, in pixels.
    static constexpr int fixedWidth = 18;

    TabScrollButton(Qt::ArrowType arrow, QWidget* parent);

    void setColors(const QColor& back, const QColor& arrow);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Qt::ArrowType m_arrow;
    QColor m_backColor;
    QColor m_arrowColor;
};

} // namespace quorvia::controls
