#include "controls/TabScrollButton.h"

#include "controls/TabPainter.h"

#include <QPainter>
#include <QPainterPath>

namespace quorvia::controls {

TabScrollButton::TabScrollButton(Qt::ArrowType arrow, QWidget* parent)
    : QAbstractButton(parent), m_arrow(arrow)
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_Hover);
    setAutoRepeat(true);
}

void TabScrollButton::setColors(const QColor& back, const QColor& arrow)
{
    m_backColor = back;
    m_arrowColor = arrow;
    update();
}

QSize TabScrollButton::sizeHint() const
{
    return {fixedWidth, fixedWidth};
}

void TabScrollButton::paintEvent(QPaintEvent*)
{
    constexpr double hoverPart = 0.15;
    constexpr double downPart = 0.3;
    constexpr double disabledPart = 0.6;
    const double lit = !isEnabled() ? 0 : isDown() ? downPart : underMouse() ? hoverPart : 0;

    QPainter painter(this);
    painter.fillRect(rect(), mixed(m_backColor, m_arrowColor, lit));

    const QColor color = isEnabled() ? m_arrowColor : mixed(m_arrowColor, m_backColor, disabledPart);
    constexpr double lineWidth = 1.6;
    constexpr double halfWidth = 2;
    constexpr double halfHeight = 4;
    const double forward = m_arrow == Qt::LeftArrow ? -halfWidth : halfWidth;
    const QPointF center = QRectF(rect()).center();
    QPainterPath arrow(center + QPointF(-forward, -halfHeight));
    arrow.lineTo(center + QPointF(forward, 0));
    arrow.lineTo(center + QPointF(-forward, halfHeight));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(arrow);
}

} // namespace quorvia::controls
