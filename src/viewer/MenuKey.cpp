#include "viewer/MenuKey.h"

#include "platform/MenuKeys.h"
#include "viewer/frmImageView.h"

#include <QKeyEvent>

namespace quorvia::viewer {

MenuKey::MenuKey(frmImageView* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

/// Sees what no widget within the window took. The clients of the bands, which take all keys, ask for the
/// menu themselves; a floating band hands the question on.
bool MenuKey::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && platform::isMenuKey(*static_cast<QKeyEvent*>(event))) {
        platform::askForMenu(*m_window);
        return true;
    }
    if (platform::asksForMenu(*event)) {
        event->accept();
        openMenu();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

void MenuKey::openMenu()
{
    const QWidget* const view = m_window->pContain();
    m_window->interfaceTools()->openMenuByKeys(view->mapToGlobal(view->rect().center()));
}

} // namespace quorvia::viewer
