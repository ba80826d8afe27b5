#include "app/PendingEvents.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace quorvia::app {

void letPendingEventsRun()
{
    QCoreApplication::processEvents();
}

void letPendingEventsRunButInput()
{
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

bool letEventsRunUntil(const std::function<bool()>& done, int milliseconds)
{
    const QDeadlineTimer deadline(milliseconds);
    QTimer wake; // so that waiting for events ends at the deadline even when none comes
    wake.setSingleShot(true);
    wake.start(milliseconds);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return done();
}

} // namespace quorvia::app
