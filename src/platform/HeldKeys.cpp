#include "platform/HeldKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>

#include <xcb/xcb.h>

namespace quorvia::platform {

namespace {

/// A window that takes all keys of the program comes or goes.
bool changesWhoIsAsked(const QObject& watched, QEvent::Type type)
{
    if ((type != QEvent::Show && type != QEvent::Hide) || !watched.isWidgetType())
        return false;
    const auto& widget = static_cast<const QWidget&>(watched);
    return widget.isWindow() && widget.isModal();
}

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
    QCoreApplication::instance()->installNativeEventFilter(this);
}

void HeldKeys::dropHeld()
{
    m_dropped = m_repeats.key();
}

void HeldKeys::rest()
{
    if (QCoreApplication* const application = QCoreApplication::instance()) {
        application->removeEventFilter(this);
        application->removeNativeEventFilter(this);
    }
}

/// X alone: the toolkit tells nobody of a key that is let go over a window that a modal one blocks.
bool HeldKeys::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    constexpr quint8 sentByProgram = 0x80;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & ~sentByProgram) == XCB_KEY_RELEASE) {
        const auto& release = reinterpret_cast<const xcb_key_release_event_t&>(event);
        m_repeats.noteRelease(release.detail, release.time);
    }
    return false;
}

bool HeldKeys::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (changesWhoIsAsked(*watched, type))
        dropHeld();
    if (type != QEvent::ShortcutOverride && type != QEvent::KeyPress && type != QEvent::KeyRelease)
        return false;
    const auto& key = *static_cast<const QKeyEvent*>(event);
    if (type == QEvent::KeyRelease) {
        m_repeats.noteRelease(key);
        return false;
    }
    if (!m_repeats.isLast(key)) { // else it comes by once more, for another receiver
        m_isHeld = m_repeats.isRepeat(key);
        if (!m_isHeld)
            m_dropped = 0;
    }
    const bool isDropped = m_isHeld && (m_dropsAll || m_dropped == m_repeats.key());
    if (isDropped && type == QEvent::ShortcutOverride)
        event->accept(); // as a key of whoever has the focus, to whom it will not come either
    return isDropped;
}

} // namespace quorvia::platform
