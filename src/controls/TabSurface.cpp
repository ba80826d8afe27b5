#include "controls/TabSurface.h"

#include "app/Colors.h"
#include "controls/TabAccessible.h"
#include "controls/TabMetrics.h"
#include "controls/TabPainter.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace quorvia::controls {

namespace {

/// The tab that `key` leads to; 0 for a key that means nothing here.
int tabForKey(int key, int selected, int count)
{
    switch (key) {
    case Qt::Key_Left:
        return std::max(selected - 1, 1);
    case Qt::Key_Right:
        return std::min(selected + 1, count);
    case Qt::Key_Home:
        return 1;
    case Qt::Key_End:
        return count;
    default:
        return 0;
    }
}

} // namespace

TabSurface::TabSurface(const TabList& tabs, const TabProperties& properties, QWidget* parent)
    : QWidget(parent), m_tabs(tabs), m_properties(properties)
{
    installTabAccessibility();
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

int TabSurface::tabAtPosition(QPoint position) const
{
    return rect().contains(position) ? tabAt(m_tabs.spans(), position.x()) : 0;
}

void TabSurface::announceSelection()
{
    if (m_tabs.selected() == 0)
        return;
    for (const auto kind : {QAccessible::Selection, QAccessible::Focus}) {
        if (kind == QAccessible::Focus && !hasFocus())
            continue;
        QAccessibleEvent event(this, kind);
        event.setChild(m_tabs.selected() - 1);
        QAccessible::updateAccessibility(&event);
    }
}

bool TabSurface::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    // The tip goes when the pointer leaves the tab that it belongs to.
    auto* const help = static_cast<QHelpEvent*>(event);
    const int index = tabAtPosition(help->pos());
    if (index == 0 || m_tabs.at(index).ToolTip.isEmpty()) {
        QToolTip::hideText();
        event->ignore();
    } else {
        const TabRecord& tab = m_tabs.at(index);
        QToolTip::showText(help->globalPos(), tab.ToolTip, this, {tab.Left, 0, tab.Width, height()});
    }
    return true;
}

void TabSurface::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), app::propertyColor(m_properties.BackColor, palette()));
    constexpr double disabledOpacity = 0.5;
    if (!isEnabled())
        painter.setOpacity(disabledOpacity);
    paintTabs(painter, m_tabs,
              {.properties = m_properties,
               .palette = palette(),
               .font = font(),
               .height = height(),
               .showFocus = m_keyed && hasFocus()});
}

void TabSurface::mousePressEvent(QMouseEvent*)
{
    if (m_tabs.count() == 0)
        return;
    setKeyed(false);
}

void TabSurface::mouseMoveEvent(QMouseEvent* event)
{
    if (m_tabs.count() == 0)
        return;
    Q_EMIT pointerMoved(event->buttons(), event->modifiers(), event->position().toPoint());
}

void TabSurface::mouseReleaseEvent(QMouseEvent* event)
{
    if (m_tabs.count() == 0)
        return;
    const int index = event->button() == Qt::LeftButton ? tabAtPosition(event->position().toPoint()) : 0;
    update();
    if (index != 0)
        Q_EMIT tabPressed(index);
}

void TabSurface::leaveEvent(QEvent*)
{
    Q_EMIT pointerLeft();
}

void TabSurface::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int index =
        plain && m_tabs.count() > 0 ? tabForKey(event->key(), m_tabs.selected(), m_tabs.count()) : 0;
    if (index == 0) {
        event->ignore();
        return;
    }
    setKeyed(true);
    if (index != m_tabs.selected())
        Q_EMIT tabKeyed(index);
}

void TabSurface::focusInEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    // The focus that comes back with the window is shown as it was.
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        setKeyed(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                 reason == Qt::ShortcutFocusReason);
    update();
}

void TabSurface::focusOutEvent(QFocusEvent*)
{
    update();
}

void TabSurface::setKeyed(bool keyed)
{
    m_keyed = keyed;
    update();
}

} // namespace quorvia::controls
