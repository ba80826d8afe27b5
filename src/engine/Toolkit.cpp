#include "engine/Toolkit.h"

#include <QGuiApplication>

#include <atomic>
#include <chrono>
#include <thread>

namespace quorvia::engine {

namespace {

std::atomic<int> holds{0};

bool toolkitStands()
{
    return holds == 0 && qobject_cast<QGuiApplication*>(QCoreApplication::instance()) &&
           !QCoreApplication::startingUp();
}

} // namespace

ToolkitHold::ToolkitHold()
{
    ++holds;
}

ToolkitHold::~ToolkitHold()
{
    --holds;
}

bool waitForToolkit(const CancelFlag& cancel, int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!toolkitStands()) {
        if (cancel || Clock::now() >= end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return !cancel;
}

} // namespace quorvia::engine
