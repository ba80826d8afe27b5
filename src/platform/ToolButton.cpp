#include "platform/ToolButton.h"

#include "platform/Icons.h"
#include "platform/ToolLook.h"
#include "platform/ToolModel.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr int side = 32;
constexpr int iconSide = 24;
constexpr int openingWidth = 14;
constexpr int wholeWidth = 20;
constexpr int widestCaption = 160;
constexpr int captionMargin = 8;
constexpr qreal corner = 6;

template <class Value>
bool take(Value& mine, const Value& given)
{
    return std::exchange(mine, given) != given;
}

void paintPanel(QPainter& painter, const QRectF& box, const QColor& fill)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, corner, corner);
}

void paintRing(QPainter& painter, const QRectF& box, const QColor& color, qreal width)
{
    const qreal inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), corner - inset, corner - inset);
}

} // namespace

ToolButton::ToolButton(QWidget* parent) : QToolButton(parent)
{
    setFocusPolicy(Qt::NoFocus); // the row lends the Tab key to one of its buttons; a click leaves the focus
    setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    setCursor(Qt::ArrowCursor);
}

void ToolButton::showTool(const ToolValues& values, Opens opens)
{
    const QString caption = plainCaption(values);
    bool repaints = take(m_caption, caption);
    repaints |= take(m_drawing, isIcon(values.pictures[0]) ? values.pictures[0] : QString());
    repaints |= take(m_disabledDrawing, isIcon(values.pictures[2]) ? values.pictures[2] : m_drawing);
    repaints |= take(m_opens, opens);
    if (repaints)
        update();
    if (!values.checked)
        setChecked(false); // while it is checkable: else it would not be painted anew
    setCheckable(values.checked);
    setChecked(values.checked);
    setEnabled(values.enabled);
    if (const QString tip = tipOf(values); tip != toolTip())
        setToolTip(tip);
    if (caption != accessibleName())
        setAccessibleName(caption);
    const QString description = opens == Opens::AtEnd ? tr("Down opens a menu") : QString();
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

void ToolButton::setOpen(bool open)
{
    if (take(m_open, open))
        update();
}

QSize ToolButton::sizeHint() const
{
    if (m_opens == Opens::Whole)
        return {wholeWidth, side};
    int width = side;
    if (m_drawing.isEmpty())
        width = std::clamp(fontMetrics().horizontalAdvance(m_caption), 1, widestCaption) + 2 * captionMargin;
    return {width + (m_opens == Opens::AtEnd ? openingWidth : 0), side};
}

QRect ToolButton::openingPart() const
{
    if (m_opens == Opens::Whole)
        return rect();
    const int width = m_opens == Opens::AtEnd ? openingWidth : 0;
    return QStyle::visualRect(layoutDirection(), rect(), {rect().width() - width, 0, width, rect().height()});
}

bool ToolButton::hitButton(const QPoint& point) const
{
    return QToolButton::hitButton(point) && !openingPart().contains(point);
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFace(painter);
    paintContent(painter);
    paintSign(painter);
}

void ToolButton::paintFace(QPainter& painter) const
{
    const ToolLook look = toolLook(palette());
    const bool hovered = isEnabled() && underMouse();
    if (isChecked()) {
        paintPanel(painter, rect(), hovered ? look.checkedHovered : look.checked);
        paintRing(painter, rect(), look.outline, 1);
    } else if (isDown()) {
        paintPanel(painter, rect(), look.pressed);
    } else if (hovered || m_open) {
        paintPanel(painter, rect(), look.hovered);
    }
    if (m_open || (hovered && m_hoversPart))
        paintPanel(painter, openingPart(), m_open ? look.pressed : look.hovered);
    if (hasFocus() && m_focusByKey)
        paintRing(painter, rect(), look.ink, 2);
}

void ToolButton::paintContent(QPainter& painter) const
{
    if (m_opens == Opens::Whole)
        return;
    const ToolLook look = toolLook(palette());
    const QColor ink = isEnabled() ? look.ink : look.disabledInk;
    QRect free(0, 0, width() - (m_opens == Opens::AtEnd ? openingWidth : 0), height());
    free = QStyle::visualRect(layoutDirection(), rect(), free);
    if (m_drawing.isEmpty()) {
        painter.setPen(ink);
        const QRect box = free.adjusted(captionMargin, 0, -captionMargin, 0);
        painter.drawText(box, int(Qt::AlignCenter),
                         fontMetrics().elidedText(m_caption, Qt::ElideRight, box.width()));
        return;
    }
    const qreal ratio = devicePixelRatioF();
    QPixmap picture = drawing(isEnabled() ? m_drawing : m_disabledDrawing, qRound(iconSide * ratio), ink);
    picture.setDevicePixelRatio(ratio);
    const QPoint at(free.left() + (free.width() - iconSide) / 2, (height() - iconSide) / 2);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false); // pixel by pixel at every ratio
    painter.drawPixmap(at, picture);
}

/// The arrow of the part that opens, or the two of the whole button.
void ToolButton::paintSign(QPainter& painter) const
{
    if (m_opens == Opens::Nothing)
        return;
    const ToolLook look = toolLook(palette());
    painter.setPen(
        QPen(isEnabled() ? look.ink : look.disabledInk, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const QPointF middle = QRectF(openingPart()).center();
    if (m_opens == Opens::AtEnd) {
        const QPointF arrow[] = {middle + QPointF(-3, -1.5), middle + QPointF(0, 1.5),
                                 middle + QPointF(3, -1.5)};
        painter.drawPolyline(arrow, int(std::size(arrow)));
        return;
    }
    const qreal ahead = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    for (const qreal x : {-3.0, 2.0}) {
        const QPointF arrow[] = {middle + QPointF((x - 1.5) * ahead, -3.5),
                                 middle + QPointF((x + 2) * ahead, 0),
                                 middle + QPointF((x - 1.5) * ahead, 3.5)};
        painter.drawPolyline(arrow, int(std::size(arrow)));
    }
}

void ToolButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && openingPart().contains(event->pos()))
        Q_EMIT openRequested(false);
    else
        QToolButton::mousePressEvent(event);
}

void ToolButton::mouseMoveEvent(QMouseEvent* event)
{
    setHoversPart(openingPart().contains(event->pos()));
    QToolButton::mouseMoveEvent(event);
}

void ToolButton::leaveEvent(QEvent* event)
{
    setHoversPart(false);
    QToolButton::leaveEvent(event);
}

void ToolButton::setHoversPart(bool hovers)
{
    if (take(m_hoversPart, hovers))
        update();
}

void ToolButton::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const bool enters = key == Qt::Key_Return || key == Qt::Key_Enter;
    const bool runs = enters || key == Qt::Key_Space;
    const bool opens = m_opens == Opens::Whole ? runs || key == Qt::Key_Down
                                               : m_opens == Opens::AtEnd && key == Qt::Key_Down;
    if (opens) {
        if (!event->isAutoRepeat())
            Q_EMIT openRequested(true);
    } else if (enters) {
        if (!event->isAutoRepeat())
            click();
    } else if (key == Qt::Key_Space) {
        QToolButton::keyPressEvent(event);
    } else {
        event->ignore(); // the row's keys, and the viewer's own, work here too
    }
}

void ToolButton::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) // those give it back
        m_focusByKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    QToolButton::focusInEvent(event);
}

} // namespace quorvia::platform
