#include "platform/MenuKeys.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

namespace quorvia::platform {

bool isMenuKey(const QKeyEvent& key)
{
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier && !key.isAutoRepeat();
}

void askForMenu(QWidget& window)
{
    QWidget& focused = window.focusWidget() ? *window.focusWidget() : window;
    // Of what has no caret the toolkit gives the middle.
    const QPoint at = focused.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, at, focused.mapToGlobal(at));
    QCoreApplication::sendEvent(&focused, &event);
}

bool asksForMenu(const QEvent& event)
{
    return event.type() == QEvent::ContextMenu &&
           static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
}

} // namespace quorvia::platform
