// A handle between two panes that is dragged along one axis. It moves nothing itself: it tells how far it was
// dragged.
#pragma once

#include <QWidget>

namespace quorvia::viewer {

class DragHandle : public QWidget
{
    Q_OBJECT

  public:
    /// Dragged along `axis`: Qt::Vertical up and down, Qt::Horizontal across.
    DragHandle(Qt::Orientation axis, const QString& name, QWidget* parent);

    bool isDragged() const { return m_dragged; }

  Q_SIGNALS:
    /// The pointer has gone `offset` device-independent pixels along the axis from where it took the handle,
    /// the handle's own movement since then taken off.
    void dragged(int offset);
    /// The button came up. Not told when the drag ends without that.
    void released();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    int along(QPointF point) const;
    void letGo();

    Qt::Orientation m_axis;
    int m_grip = 0; ///< where the pointer holds the handle
    bool m_dragged = false;
    bool m_hovered = false;
};

} // namespace quorvia::viewer
