#include "ScarceMemory.h"

#include "ChildCheck.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace quorvia::test {

namespace {

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
    return heldInChild([spare, &check] {
        if (!limitMemory(spare))
            std::abort();
        return check();
    });
}

} // namespace quorvia::test
