#include "scan/Cancellation.h"

#include <pthread.h>

#include <atomic>
#include <csignal>
#include <thread>

namespace quorvia::scan {

namespace {

constexpr int cancelSignal = SIGUSR1;

// A signal handler reaches nothing else.
std::atomic<bool> wasSignalled = false;
std::atomic<SANE_Handle> scanning = nullptr;

void cancel(int)
{
    if (const SANE_Handle device = scanning.exchange(nullptr))
        sane_cancel(device);
}

sigset_t endingSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

/// In a process that a driver has begun: it is ended by these signals.
void letSignalsEnd()
{
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

void waitForSignals(pthread_t mainThread)
{
    const sigset_t signals = endingSignals();
    int number = 0;
    while (sigwait(&signals, &number) == 0) {
        wasSignalled = true;
        pthread_kill(mainThread, cancelSignal);
    }
}

} // namespace

void watchForCancellation()
{
    struct sigaction action = {};
    action.sa_handler = cancel; // no restart: what blocks is interrupted
    sigemptyset(&action.sa_mask);
    sigaction(cancelSignal, &action, nullptr);
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    pthread_atfork(nullptr, nullptr, letSignalsEnd);
    std::thread(waitForSignals, pthread_self()).detach();
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
