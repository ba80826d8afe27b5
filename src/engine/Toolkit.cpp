#include "engine/Toolkit.h"

#include <QGuiApplication>

#include <chrono>
#include <thread>

namespace quorvia::engine {

bool waitForToolkit(const CancelFlag& cancel, int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()) || QCoreApplication::startingUp()) {
        if (cancel || Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return !cancel;
}

} // namespace quorvia::engine
