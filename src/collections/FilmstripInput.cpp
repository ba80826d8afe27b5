// What the mouse, the wheel and the keyboard do to the filmstrip.
#include "app/KeyCodes.h"
#include "app/mFile.h"
#include "app/Twips.h"
#include "collections/Filmstrip.h"
#include "collections/StripSurface.h"
#include "controls/ScrollBar.h"
#include "platform/OneLine.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int leftButton = 1;
constexpr int rightButton = 2;

/// Qt numbers left, right and middle in the same way.
int buttonNumber(Qt::MouseButton button)
{
    return int(button);
}

QPointF twipsOf(const QMouseEvent& event)
{
    return event.position() * app::twipsPerPixel;
}

int screenX(const QWidget& widget, const QMouseEvent& event)
{
    return qRound(event.globalPosition().x()) - widget.screen()->geometry().left();
}

} // namespace

bool Filmstrip::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_pImages)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        pressed(*static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::MouseButtonRelease:
        released(*static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::MouseMove:
        pointerMoved(*static_cast<QMouseEvent*>(event));
        return true;
    case QEvent::Paint: // which another screen asks for
        lookAtPixels();
        return false;
    default:
        return false;
    }
}

void Filmstrip::pressed(const QMouseEvent& event)
{
    const QPointF at = twipsOf(event);
    Q_EMIT MouseDown(buttonNumber(event.button()), app::modifierMask(event.modifiers()), at.x(), at.y());
    m_mouseIsDown = true;
    m_pointerX = screenX(*this, event);
    m_drag.anchorX = m_pointerX;
    m_drag.anchorLeft = m_drag.left;
}

void Filmstrip::released(const QMouseEvent& event)
{
    const QPointF at = twipsOf(event);
    const int button = buttonNumber(event.button());
    const int shift = app::modifierMask(event.modifiers());
    const bool wasDragged = m_dragging;
    letGo();
    Q_EMIT MouseUp(button, shift, at.x(), at.y());
    const auto index = wasDragged ? std::nullopt : hit(at);
    if (!index)
        return;
    Q_EMIT IndexSelected(*index);
    Q_EMIT ImageClicked(*index, button, shift);
}

void Filmstrip::pointerMoved(const QMouseEvent& event)
{
    if (event.buttons() == Qt::NoButton)
        letGo(); // the release went elsewhere
    m_pointerX = screenX(*this, event);
    if (m_mouseIsDown) {
        if (isWhole() && !m_dragging && isDrag(m_drag.anchorX, m_pointerX)) {
            m_dragging = true;
            m_tMove.start();
        }
        return;
    }
    const QPointF at = twipsOf(event);
    Q_EMIT MouseMove(int(event.buttons()), app::modifierMask(event.modifiers()), at.x(), at.y());
    const auto index = hit(at);
    m_pImages->setToolTip(index ? platform::plainToolTip(app::SplitPathName(m_images.at(*index), 2))
                                : QString());
    if (index)
        Q_EMIT ImageHoverOver(*index);
}

void Filmstrip::letGo()
{
    m_mouseIsDown = false;
    m_dragging = false;
    m_tMove.stop();
}

void Filmstrip::dragStep()
{
    m_drag = dragged(m_drag, m_pointerX, screen()->geometry().width(), innerTwips().width(),
                     app::toTwips(m_pImages->width()), app::twipsPerPixel);
    placeStrip();
    m_sBar->SetValue(valueAtLeft(m_drag.left));
}

std::optional<int> Filmstrip::hit(QPointF twips) const
{
    return imageAt(twips, m_cell, m_rows, m_pump.FirstIndex, count());
}

void Filmstrip::hideEvent(QHideEvent*)
{
    letGo();
}

void Filmstrip::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF at = twipsOf(*event);
    Q_EMIT MouseMove(int(event->buttons()), app::modifierMask(event->modifiers()), at.x(), at.y());
}

void Filmstrip::wheelEvent(QWheelEvent* event)
{
    if ((event->modifiers() & Qt::ControlModifier) != 0)
        return event->ignore(); // none of the bar's: sent there it would come back
    if (!m_sBar->isHidden() && !m_tMove.isActive())
        QCoreApplication::sendEvent(m_sBar, event);
}

// --- keyboard

void Filmstrip::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain || m_images.isEmpty() || !takeKey(*event))
        event->ignore();
}

/// False for a key that moves nothing here.
bool Filmstrip::takeKey(const QKeyEvent& event)
{
    const qint64 columns = std::max(innerTwips().width() / std::max(m_cell.width(), 1), 1);
    switch (event.key()) {
    case Qt::Key_Left:
        moveCurrentTo(m_current - m_rows);
        break;
    case Qt::Key_Right:
        moveCurrentTo(m_current + m_rows);
        break;
    case Qt::Key_Up:
        moveCurrentTo(m_current - 1);
        break;
    case Qt::Key_Down:
        moveCurrentTo(m_current + 1);
        break;
    case Qt::Key_PageUp:
        moveCurrentTo(m_current - columns * m_rows);
        break;
    case Qt::Key_PageDown:
        moveCurrentTo(m_current + columns * m_rows);
        break;
    case Qt::Key_Home:
        moveCurrentTo(0);
        break;
    case Qt::Key_End:
        moveCurrentTo(count() - 1);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (m_current < 0)
            return false;
        choose(m_current);
        break;
    default:
        return false;
    }
    return true;
}

void Filmstrip::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const bool hasCurrent = m_current >= 0 && m_current < count();
    event->setAccepted(!byKey || hasCurrent); // the mouse's comes with the release of its button
    if (byKey && hasCurrent)
        Q_EMIT ImageClicked(m_current, rightButton, app::NoModifier);
}

void Filmstrip::focusInEvent(QFocusEvent*)
{
    if (m_current < 0 && !m_images.isEmpty())
        moveCurrentTo(selectedImage(m_selected.constFirst(), count()).value_or(0));
    frameCurrent();
}

void Filmstrip::focusOutEvent(QFocusEvent*)
{
    frameCurrent();
}

void Filmstrip::moveCurrentTo(qint64 index)
{
    m_current = int(std::clamp(index, qint64(0), qint64(count()) - 1));
    setAccessibleDescription(app::SplitPathName(m_images.at(m_current), 2));
    QAccessibleEvent told(this, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&told);
    QAccessibleEvent focused(this, QAccessible::Focus);
    focused.setChild(m_current);
    if (hasFocus())
        QAccessible::updateAccessibility(&focused);
    showCurrent();
    frameCurrent();
}

void Filmstrip::choose(int index)
{
    Q_EMIT IndexSelected(index);
    Q_EMIT ImageClicked(index, leftButton, app::NoModifier);
}

/// The place of an image on what is painted.
CellPlace Filmstrip::paintedPlace(int index) const
{
    const CellPlace place = placeOf(index, m_rows);
    return {place.column - firstPaintedColumn(), place.row};
}

QRect Filmstrip::cellRect(int index) const
{
    return m_pImages->cellRect(paintedPlace(index)).translated(m_pImages->pos());
}

int Filmstrip::indexAt(QPoint point) const
{
    if (!m_pImages->geometry().contains(point))
        return -1;
    return hit(QPointF(m_pImages->mapFromParent(point)) * app::twipsPerPixel).value_or(-1);
}

/// Scrolls no further than it takes to see the cell.
void Filmstrip::showCurrent()
{
    if (m_sBar->isHidden())
        return;
    const int column = m_current / m_rows;
    const int width = innerTwips().width();
    if (isWhole()) {
        const int left = column * m_cell.width();
        const int right = left + m_cell.width() - width; // with this left edge it ends where the control ends
        if (-m_drag.left > left)
            m_sBar->SetValue(left / scrollUnit);
        else if (-m_drag.left < right)
            m_sBar->SetValue((right + scrollUnit - 1) / scrollUnit);
        return;
    }
    const int first = firstPaintedColumn();
    const int seen = std::max(width / std::max(m_cell.width(), 1), 1);
    if (column < first || column >= first + seen)
        m_sBar->SetValue(column < first ? column : column - seen + 1);
}

void Filmstrip::frameCurrent()
{
    if (!hasFocus() || m_current < 0 || m_current >= count())
        return m_pImages->frame(std::nullopt);
    m_pImages->frame(paintedPlace(m_current));
}

} // namespace quorvia::collections
