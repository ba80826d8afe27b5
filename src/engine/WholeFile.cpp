#include "engine/WholeFile.h"

#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

namespace quorvia::engine {

namespace {

/// While it lives, a write beyond the user's limit on file sizes is an error like any other, and no longer
/// the end of the program.
class SizeSignalHeld
{
  public:
    SizeSignalHeld()
    {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~SizeSignalHeld()
    {
        constexpr timespec noTime = {};
        while (sigtimedwait(&m_signal, nullptr, &noTime) == SIGXFSZ) {
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    SizeSignalHeld(const SizeSignalHeld&) = delete;
    SizeSignalHeld& operator=(const SizeSignalHeld&) = delete;

  private:
    sigset_t m_signal = {};
    sigset_t m_before = {};
};

/// 0 when the disk has what was written, else the system's error number. Committing a QSaveFile asks the same
/// and goes on whatever the answer.
int syncError(int file)
{
    if (::fsync(file) == 0)
        return 0;
    return errno == EINVAL || errno == ENOTSUP ? 0 : errno; // not every file system offers it
}

Status failure(const QFileDevice& file)
{
    return Error{ErrorKind::WriteFailed, file.errorString()};
}

} // namespace

Status writeWholeFile(const QString& path, const QByteArray& bytes)
{
    const QFileInfo there(path);
    const QString resolved = there.canonicalFilePath(); // empty for what does not exist
    if (there.exists() && !there.isFile())
        return Error{ErrorKind::WriteFailed, QStringLiteral("the target is not a regular file")};
    constexpr auto anybody = QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (there.exists() && !(there.permissions() & anybody))
        return Error{ErrorKind::WriteFailed, QStringLiteral("the target is read-only")};
    const SizeSignalHeld held; // longer than the file lives, which writes at its end too
    QSaveFile file(resolved.isEmpty() ? path : resolved);
    if (!file.open(QIODevice::WriteOnly)) {
        const bool fileTakesIt = there.exists() && there.isWritable();
        return Error{ErrorKind::WriteFailed,
                     fileTakesIt
                         ? QStringLiteral("the directory does not take a new file beside the old one: %1")
                               .arg(file.errorString())
                         : file.errorString()};
    }
    if (file.write(bytes) != bytes.size() || !file.flush())
        return failure(file);
    if (const int error = syncError(file.handle()); error != 0)
        return Error{ErrorKind::WriteFailed, qt_error_string(error)};
    return file.commit() ? ok() : failure(file);
}

Status writeScratchFile(const QString& path, const QByteArray& bytes)
{
    const SizeSignalHeld held;
    QFile file(path);
    file.remove(); // never written in place: its content may have another name by now
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return failure(file);
    if (file.write(bytes) == bytes.size())
        return ok();
    Status why = failure(file);
    file.remove();
    return why;
}

Status writeFromScratch(const QString& scratch, const QString& path)
{
    QFile file(scratch);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file);
    const auto giveName = [&] {
        return syncError(file.handle()) == 0 &&
               ::link(QFile::encodeName(scratch).constData(), QFile::encodeName(path).constData()) == 0;
    };
    // The name comes last, as with any whole file; it is never taken from another one.
    return !QFileInfo::exists(path) && giveName() ? ok() : writeWholeFile(path, file.readAll());
}

void syncDirectoryOf(const QString& path)
{
    const QByteArray directory = QFile::encodeName(QFileInfo(path).path());
    const int opened = ::open(directory.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened < 0)
        return;
    ::fsync(opened);
    ::close(opened);
}

} // namespace quorvia::engine
