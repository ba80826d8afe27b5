#include "platform/TerminationSignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace quorvia::platform {

namespace {

constexpr std::array watchedSignals = {SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> pipeEnds = {-1, -1};
std::array<struct sigaction, watchedSignals.size()> earlierActions;

void noteSignal(int)
{
    // Only what a signal handler may do: the event loop does the rest.
    const char mark = 1;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &mark, 1);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent)
{
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        char mark = 0;
        while (::read(pipeEnds[0], &mark, 1) == 1) {
        }
        Q_EMIT terminationAsked();
    });
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < watchedSignals.size(); ++i)
        ::sigaction(watchedSignals[i], &action, &earlierActions[i]);
}

TerminationSignals::~TerminationSignals()
{
    if (!m_notifier)
        return;
    for (size_t i = 0; i < watchedSignals.size(); ++i)
        ::sigaction(watchedSignals[i], &earlierActions[i], nullptr);
    m_notifier.reset();
    ::close(pipeEnds[0]);
    ::close(pipeEnds[1]);
    pipeEnds = {-1, -1};
}

} // namespace quorvia::platform
