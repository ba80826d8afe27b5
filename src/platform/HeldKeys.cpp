#include "platform/HeldKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quorvia::platform {

namespace {

/// Repeats come closer than this, even where they are slow; presses of one who reads what is asked do not.
constexpr ulong closest = 300; // milliseconds

} // namespace

void HeldKeys::watch()
{
    QCoreApplication::instance()->installEventFilter(this);
}

void HeldKeys::rest()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

bool HeldKeys::eventFilter(QObject*, QEvent* event)
{
    const bool isShortcut = event->type() == QEvent::ShortcutOverride;
    if (!isShortcut && event->type() != QEvent::KeyPress)
        return false;
    const auto* const press = static_cast<QKeyEvent*>(event);
    const bool isSame = press->key() == m_key && press->timestamp() != 0;
    if (!isSame || press->timestamp() != m_time) { // else the press that has just come by, on its way
        m_isHeld = press->isAutoRepeat() || (isSame && press->timestamp() - m_time < closest);
        m_key = press->key();
        m_time = press->timestamp();
    }
    if (m_isHeld && isShortcut)
        event->accept(); // as a key of whoever has the focus, to whom it will not come either
    return m_isHeld;
}

} // namespace quorvia::platform
