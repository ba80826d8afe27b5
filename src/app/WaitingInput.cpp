#include "app/WaitingInput.h"

#include <QAbstractEventDispatcher>

namespace quorvia::app {

namespace {

/// The platform reads, the toolkit queues, and then it delivers: each may take a turn of its own, after the
/// timers of that turn.
constexpr int turnsOnTheWay = 3;

/// Some platforms look at input that was left aside only when they are woken.
void wakeUp()
{
    if (QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance())
        dispatcher->wakeUp();
}

} // namespace

WaitingInput::WaitingInput(QObject* parent) : QObject(parent)
{
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &WaitingInput::countTurn);
}

void WaitingInput::letPass()
{
    m_turnsLeft = turnsOnTheWay;
    m_turn.start();
    wakeUp();
}

void WaitingInput::countTurn()
{
    if (--m_turnsLeft > 0) {
        wakeUp();
        return;
    }
    m_turn.stop();
    Q_EMIT delivered();
}

} // namespace quorvia::app
