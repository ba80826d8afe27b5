#include "ChildCheck.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace quorvia::test {

int heldInChild(const std::function<bool()>& check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        for (const int fatal : {SIGABRT, SIGBUS, SIGSEGV})
            std::signal(fatal, SIG_DFL); // the test program's own handlers want memory
        // What gets out ends the child here: further up, the test runner would catch it and go on.
        ::_exit([&check]() noexcept { return check(); }() ? 1 : 0);
    }
    int status = 0;
    const bool ended = child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status);
    return ended ? WEXITSTATUS(status) : -1;
}

} // namespace quorvia::test
