#include "scan/Cancellation.h"

#include <atomic>
#include <csignal>

namespace quorvia::scan {

namespace {

// A signal handler reaches nothing else.
std::atomic<bool> wasSignalled = false;
std::atomic<SANE_Handle> scanning = nullptr;

void onSignal(int)
{
    if (wasSignalled.exchange(true))
        return;
    if (const SANE_Handle device = scanning.load())
        sane_cancel(device);
}

} // namespace

void watchForCancellation()
{
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    for (const int number : {SIGTERM, SIGINT})
        sigaction(number, &action, nullptr);
}

bool isCancelled()
{
    return wasSignalled;
}

void setScanning(SANE_Handle device)
{
    scanning = device;
}

} // namespace quorvia::scan
