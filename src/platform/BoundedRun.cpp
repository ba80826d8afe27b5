#include "platform/BoundedRun.h"

#include "platform/Reason.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

namespace quorvia::platform {

namespace {

/// Starts the program in a session of its own, so that an end of ours is none of its. The system's error
/// number.
int start(pid_t& process, const QString& program, const QStringList& arguments)
{
    QList<QByteArray> words{QFile::encodeName(program)};
    for (const QString& argument : arguments)
        words.append(QFile::encodeName(argument));
    QList<char*> vector;
    for (QByteArray& word : words)
        vector.append(word.data());
    vector.append(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    const int number =
        posix_spawnp(&process, words.first().constData(), &actions, &attributes, vector.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return number;
}

} // namespace

bool runBounded(const QString& program, const QStringList& arguments, int patience, QString* why)
{
    pid_t process = 0;
    if (const int number = start(process, program, arguments))
        return fail(why, program + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(number)));
    int status = 0;
    pid_t ended = 0;
    for (const QDeadlineTimer deadline(patience); ended == 0;) {
        ended = ::waitpid(process, &status, WNOHANG);
        if (ended < 0 && errno == EINTR)
            ended = 0;
        if (ended == 0 && deadline.hasExpired())
            return fail(why, program + QStringLiteral(" is not done yet"));
        if (ended == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    const bool well = ended == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return well || fail(why, program + QStringLiteral(" failed"));
}

} // namespace quorvia::platform
