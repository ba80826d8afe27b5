#include "viewer/MenuKey.h"

#include "viewer/frmImageView.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>

namespace quorvia::viewer {

MenuKey::MenuKey(frmImageView* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

bool MenuKey::isMenuKey(const QKeyEvent& key)
{
    return key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier && !key.isAutoRepeat();
}

/// Sees what no widget within the window took.
bool MenuKey::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && isMenuKey(*static_cast<QKeyEvent*>(event))) {
        askForMenu();
        return true;
    }
    // Of the menu key the toolkit makes such an event itself.
    if (event->type() == QEvent::ContextMenu &&
        static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard) {
        event->accept();
        openMenu();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

/// As the toolkit does it for the menu key; what nobody takes comes to the window.
void MenuKey::askForMenu()
{
    QWidget* const focused = m_window->focusWidget() ? m_window->focusWidget() : m_window;
    const QPoint middle = focused->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, focused->mapToGlobal(middle));
    QCoreApplication::sendEvent(focused, &event);
}

void MenuKey::openMenu()
{
    const QWidget* const view = m_window->pContain();
    m_window->interfaceTools()->openMenuByKeys(view->mapToGlobal(view->rect().center()));
}

} // namespace quorvia::viewer
