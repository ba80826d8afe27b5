#include "scan/Cancellation.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <thread>

namespace quorvia::scan {

namespace {

constexpr int cancelSignal = SIGUSR1;
constexpr auto patience = std::chrono::seconds(4); ///< until a process that does not end is ended
constexpr int cancelledStatus = 4;                 ///< as an orderly end has it

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

/// In a process that a driver has begun: it is ended by these signals, and by a pipe that nobody reads.
void letSignalsEnd()
{
    std::signal(SIGPIPE, SIG_DFL);
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

/// For a driver that does not come back: there may be no viewer any more that would end this process.
[[noreturn]] void endAtOnce()
{
    if (getpgrp() == getpid())
        kill(0, SIGKILL); // with what the driver has begun
    _exit(cancelledStatus);
}

/// Waits for one of `signals`, until `end`. False when none came.
bool waitUntil(std::chrono::steady_clock::time_point end, const sigset_t& signals)
{
    using namespace std::chrono;
    const auto left = duration_cast<nanoseconds>(end - steady_clock::now()).count();
    if (left <= 0)
        return false;
    constexpr std::int64_t second = 1'000'000'000;
    const timespec time{.tv_sec = time_t(left / second), .tv_nsec = long(left % second)};
    return sigtimedwait(&signals, nullptr, &time) > 0 || errno == EINTR;
}

void waitForSignals(pthread_t mainThread)
{
    const sigset_t signals = endingSignals();
    int number = 0;
    while (sigwait(&signals, &number) != 0) {
    }
    const auto end = std::chrono::steady_clock::now() + patience;
    do {
        wasSignalled = true;
        pthread_kill(mainThread, cancelSignal);
    } while (waitUntil(end, signals));
    endAtOnce();
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

void endSoon(int status)
{
    std::thread([status] {
        std::this_thread::sleep_for(patience);
        _exit(status);
    }).detach();
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
