#include "platform/InstanceGuard.h"

#include "platform/BaseDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace quorvia::platform {

namespace {

constexpr int sharedAttempts = 200;

bool tryLock(int descriptor, int kind)
{
    int result = 0;
    do {
        result = ::flock(descriptor, kind | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

/// Waits a little for an instance that holds the lock exclusively, which it does for microseconds only; one
/// that was stopped in just these must not keep this one from starting.
void takeShared(int descriptor)
{
    for (int n = 0; n < sharedAttempts && !tryLock(descriptor, LOCK_SH); ++n)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

} // namespace

InstanceGuard::InstanceGuard(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (m_descriptor < 0)
        return;

    if (!tryLock(m_descriptor, LOCK_EX)) {
        m_others = errno == EWOULDBLOCK;
        takeShared(m_descriptor);
        return;
    }
    // Going down to shared is not one step in the kernel: whoever slipped in between was first.
    if (!tryLock(m_descriptor, LOCK_SH)) {
        m_others = true;
        takeShared(m_descriptor);
    }
}

InstanceGuard::~InstanceGuard()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

QString instanceLockPath()
{
    const QString runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    if (QDir::isAbsolutePath(runtime) && QFileInfo(runtime).isDir())
        return QDir::cleanPath(runtime) + QStringLiteral("/quorvia.lock");
    return stateHome() + QStringLiteral("/quorvia/quorvia.lock");
}

} // namespace quorvia::platform
