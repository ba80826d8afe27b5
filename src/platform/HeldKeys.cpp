#include "platform/HeldKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quorvia::platform {

namespace {

/// Repeats come closer than this, even where they are slow; presses of one who reads what is asked do not.
constexpr ulong closest = 300; // milliseconds
/// The first repeat comes after this at most. A key that was let go in another program is not waited for
/// longer.
constexpr ulong longestDelay = 1500; // milliseconds
/// Where the display lets a key go for each repeat, the press follows sooner than a finger could.
constexpr ulong fastestFinger = 25; // milliseconds

} // namespace

void HeldKeys::watch()
{
    look(true);
}

void HeldKeys::observe()
{
    look(false);
}

void HeldKeys::look(bool dropsAll)
{
    m_dropsAll = dropsAll;
    QCoreApplication::instance()->installEventFilter(this);
}

void HeldKeys::dropHeld()
{
    m_dropped = m_key;
}

void HeldKeys::rest()
{
    QCoreApplication::instance()->removeEventFilter(this);
}

bool HeldKeys::isRepeat(const QKeyEvent& press) const
{
    if (press.isAutoRepeat())
        return true;
    if (press.key() != m_key || press.timestamp() == 0)
        return false;
    const ulong since = press.timestamp() - m_time;
    const bool isDown = m_released < m_time || press.timestamp() - m_released < fastestFinger;
    return since < closest || (isDown && since < longestDelay);
}

bool HeldKeys::eventFilter(QObject*, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::ShortcutOverride && type != QEvent::KeyPress && type != QEvent::KeyRelease)
        return false;
    const auto& key = *static_cast<const QKeyEvent*>(event);
    if (type == QEvent::KeyRelease) {
        if (key.key() == m_key && !key.isAutoRepeat())
            m_released = key.timestamp();
        return false;
    }
    const bool isOnItsWay = key.key() == m_key && key.timestamp() == m_time && m_time != 0;
    if (!isOnItsWay) { // else it comes by once more, for another receiver
        m_isHeld = isRepeat(key);
        m_key = key.key();
        m_time = key.timestamp();
        if (!m_isHeld)
            m_dropped = 0;
    }
    const bool isDropped = m_isHeld && (m_dropsAll || m_dropped == m_key);
    if (isDropped && type == QEvent::ShortcutOverride)
        event->accept(); // as a key of whoever has the focus, to whom it will not come either
    return isDropped;
}

} // namespace quorvia::platform
