#include "Input.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>

#include <array>

namespace quorvia::test {

namespace {

constexpr std::array modifiers{Qt::NoModifier,      Qt::NoModifier,    Qt::NoModifier,
                               Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier};

QPoint somewhere(const QWindow& window, StepRandom& random)
{
    const int x = random.below(qMax(1, window.width()));
    return {x, random.below(qMax(1, window.height()))};
}

/// One mouse event at a time that lies after all before; too short after the last one, a click would be a
/// double click.
class Mouse
{
  public:
    Mouse(QWindow* window, Qt::KeyboardModifiers held) : m_window(window), m_held(held) {}

    void send(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons down) const
    {
        static int time = 0;
        time += type == QEvent::MouseButtonPress && !m_isSecond ? 1000 : 10;
        if (QWindow* const window = m_window.data())
            qt_handleMouseEvent(window, at, window->mapToGlobal(at), down, button, type, m_held, time);
    }
    void click(QPoint at, Qt::MouseButton button)
    {
        send(QEvent::MouseButtonPress, at, button, button);
        send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
        m_isSecond = true;
    }

  private:
    QPointer<QWindow> m_window;
    Qt::KeyboardModifiers m_held;
    bool m_isSecond = false;
};

} // namespace

QWidget* blocker()
{
    QWidget* const menu = QApplication::activePopupWidget();
    return menu ? menu : QApplication::activeModalWidget();
}

QWindow* inputWindow(const QWidget* main)
{
    const QWidget* window = blocker();
    if (!window)
        window = QApplication::activeWindow();
    if (!window && main && main->isVisible())
        window = main;
    return window ? window->window()->windowHandle() : nullptr;
}

void press(QWindow* window, const KeyPress& key)
{
    const QPointer<QWindow> alive = window;
    qt_handleKeyEvent(window, QEvent::KeyPress, key.key, key.modifiers, key.text);
    if (alive)
        qt_handleKeyEvent(window, QEvent::KeyRelease, key.key, key.modifiers, key.text);
}

void clickSomewhere(QWindow* window, StepRandom& random)
{
    const QPoint at = somewhere(*window, random);
    const Qt::MouseButton button = random.oneIn(4) ? Qt::RightButton : Qt::LeftButton;
    Mouse mouse(window, random.oneOf(modifiers));
    const bool twice = random.oneIn(5);
    mouse.send(QEvent::MouseMove, at, Qt::NoButton, Qt::NoButton);
    mouse.click(at, button);
    if (twice)
        mouse.click(at, button);
}

void dragSomewhere(QWindow* window, StepRandom& random)
{
    const QPoint from = somewhere(*window, random);
    const QPoint to = somewhere(*window, random);
    const Qt::MouseButton button = random.oneIn(4) ? Qt::RightButton : Qt::LeftButton;
    const Mouse mouse(window, random.oneOf(modifiers));
    mouse.send(QEvent::MouseMove, from, Qt::NoButton, Qt::NoButton);
    mouse.send(QEvent::MouseButtonPress, from, button, button);
    for (int part = 1; part <= 4; ++part)
        mouse.send(QEvent::MouseMove, from + (to - from) * part / 4, Qt::NoButton, button);
    mouse.send(QEvent::MouseButtonRelease, to, button, Qt::NoButton);
}

void turnWheel(QWindow* window, StepRandom& random)
{
    constexpr int notch = 120;
    const QPoint at = somewhere(*window, random);
    const QPoint turn(0, random.oneIn(2) ? notch : -notch);
    QWheelEvent event(at, window->mapToGlobal(at), {}, turn, Qt::NoButton, random.oneOf(modifiers),
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &event);
}

} // namespace quorvia::test
