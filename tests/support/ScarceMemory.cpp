#include "ScarceMemory.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace quorvia::test {

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

/// Address space in use, bytes; -1 when the system does not tell.
qint64 usedBytes()
{
    long pages = -1;
    if (FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld", &pages) != 1)
            pages = -1;
        std::fclose(file);
    }
    return pages < 0 ? -1 : qint64(pages) * ::sysconf(_SC_PAGESIZE);
}

bool limitMemory(qint64 spare)
{
    rlimit limit = {};
    const qint64 used = usedBytes();
    if (used < 0 || ::getrlimit(RLIMIT_AS, &limit) != 0)
        return false;
    limit.rlim_cur = rlim_t(used);
    if (::setrlimit(RLIMIT_AS, &limit) != 0)
        return false;
    // What the heap has kept for later is taken first, down to small pieces; the child never gives it back.
    for (size_t piece = size_t(64) << 20; piece >= 512; piece /= 2) {
        while (void* taken = std::malloc(piece))
            *static_cast<volatile char*>(taken) = 1;
    }
    limit.rlim_cur = rlim_t(used + spare);
    return ::setrlimit(RLIMIT_AS, &limit) == 0;
}

} // namespace

int heldWithMemory(qint64 spare, const std::function<bool()>& check)
{
    if (sanitized) // it needs the address space for itself
        return -2;
    const pid_t child = ::fork();
    if (child == 0) {
        for (const int fatal : {SIGABRT, SIGBUS, SIGSEGV})
            std::signal(fatal, SIG_DFL); // the test program's own handlers want memory
        if (!limitMemory(spare))
            std::abort();
        // What gets out ends the child here: further up, the test runner would catch it and go on.
        ::_exit([&check]() noexcept { return check(); }() ? 1 : 0);
    }
    int status = 0;
    const bool ended = child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status);
    return ended ? WEXITSTATUS(status) : -1;
}

} // namespace quorvia::test
