#include "engine/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

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

/// 0 when the disk has what was written, else the system's error number.
int syncError(int file)
{
    if (::fsync(file) == 0)
        return 0;
    return errno == EINVAL || errno == ENOTSUP ? 0 : errno; // not every file system offers it
}

/// A new file in the folder of another one, hidden there, which is gone in the end unless it takes that one's
/// name. Its own name is short: that of the other may be as long as names can be.
class FileBeside
{
  public:
    explicit FileBeside(const QString& path) : m_folder(QFileInfo(path).path() + QLatin1String("/.quorvia-"))
    {
    }
    ~FileBeside()
    {
        if (m_file.isOpen())
            m_file.remove();
    }
    FileBeside(const FileBeside&) = delete;
    FileBeside& operator=(const FileBeside&) = delete;

    QFile& file() { return m_file; }
    /// False when the folder takes no new file; file() tells why.
    bool open()
    {
        constexpr int tries = 100; // each of one name out of thousands of millions
        for (int i = 0; i < tries && !m_file.isOpen(); ++i) {
            m_file.setFileName(m_folder + QString::number(QRandomGenerator::global()->generate(), 36));
            const bool opened =
                m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered);
            if (!opened && !QFileInfo::exists(m_file.fileName()))
                return false;
        }
        return m_file.isOpen();
    }
    /// Gives the file the name `path`. 0, or the system's error number.
    int take(const QString& path)
    {
        if (::rename(QFile::encodeName(m_file.fileName()).constData(), QFile::encodeName(path).constData()) !=
            0)
            return errno;
        m_file.close();
        return 0;
    }

  private:
    const QString m_folder;
    QFile m_file;
};

Status failure(const QFileDevice& file)
{
    return Error{ErrorKind::WriteFailed, file.errorString()};
}

/// Where `path` leads to, be it there or not.
QString behindLinks(const QString& path)
{
    constexpr int mostLinks = 40; // as the kernel follows
    QString target = path;
    for (int i = 0; i < mostLinks && QFileInfo(target).isSymLink(); ++i)
        target = QFileInfo(target).symLinkTarget();
    return target;
}

} // namespace

Status writeWholeFile(const QString& path, const QByteArray& bytes)
{
    const QString target = behindLinks(path);
    const QFileInfo there(target);
    if (there.exists() && !there.isFile())
        return Error{ErrorKind::WriteFailed, QStringLiteral("the target is not a regular file")};
    constexpr auto anybody = QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    if (there.exists() && (!there.isWritable() || !(there.permissions() & anybody)))
        return Error{ErrorKind::WriteFailed, QStringLiteral("the target is read-only")};
    const SizeSignalHeld held; // longer than the file lives, which writes at its end too
    FileBeside beside(target);
    if (!beside.open()) {
        return Error{ErrorKind::WriteFailed,
                     there.exists()
                         ? QStringLiteral("the directory does not take a new file beside the old one: %1")
                               .arg(beside.file().errorString())
                         : beside.file().errorString()};
    }
    QFile& file = beside.file();
    if (there.exists())
        file.setPermissions(there.permissions());
    if (file.write(bytes) != bytes.size())
        return failure(file);
    if (const int error = syncError(file.handle()); error != 0)
        return Error{ErrorKind::WriteFailed, qt_error_string(error)};
    if (const int error = beside.take(target); error != 0)
        return Error{ErrorKind::WriteFailed, qt_error_string(error)};
    return ok();
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
