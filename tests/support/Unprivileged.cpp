#include "Unprivileged.h"

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace quorvia::test {

bool holdsUnprivileged(const std::function<bool()>& check)
{
    if (::geteuid() != 0)
        return check();
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr unsigned nobody = 65534;
        const bool dropped = ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
        ::_exit(dropped && check() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) &&
           WEXITSTATUS(status) == EXIT_SUCCESS;
}

bool openToEveryone(const char* path)
{
    return ::chmod(path, 0755) == 0;
}

} // namespace quorvia::test
