#include "viewer/DragHandle.h"

#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace quorvia::viewer {

DragHandle::DragHandle(Qt::Orientation axis, const QString& name, QWidget* parent)
    : QWidget(parent), m_axis(axis)
{
    setObjectName(name);
    setMouseTracking(true); // a movement without a button tells that a release went elsewhere
    setCursor(axis == Qt::Vertical ? Qt::SplitVCursor : Qt::SplitHCursor);
}

int DragHandle::along(QPointF point) const
{
    return int(std::lround(m_axis == Qt::Vertical ? point.y() : point.x()));
}

void DragHandle::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_dragged = true;
    m_grip = along(event->position());
    update();
}

void DragHandle::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        letGo(); // the release went elsewhere
    if (const int offset = along(event->position()) - m_grip; m_dragged && offset != 0)
        Q_EMIT dragged(offset);
}

void DragHandle::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_dragged)
        return;
    m_dragged = false;
    update();
    Q_EMIT released();
}

void DragHandle::hideEvent(QHideEvent*)
{
    letGo();
}

void DragHandle::letGo()
{
    m_dragged = false;
    update();
}

void DragHandle::enterEvent(QEnterEvent*)
{
    m_hovered = true;
    update();
}

void DragHandle::leaveEvent(QEvent*)
{
    m_hovered = false;
    update();
}

void DragHandle::paintEvent(QPaintEvent*)
{
    constexpr int dots = 3;
    constexpr double gap = 6;
    constexpr double radius = 1.2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, m_dragged || m_hovered ? 230 : 140));
    const QPointF middle = QRectF(rect()).center();
    for (int i = 0; i < dots; ++i) {
        const double away = (i - (dots - 1) / 2.0) * gap;
        painter.drawEllipse(m_axis == Qt::Vertical ? middle + QPointF(away, 0) : middle + QPointF(0, away),
                            radius, radius);
    }
}

} // namespace quorvia::viewer
