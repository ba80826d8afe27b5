#include "Confinement.h"

#include <QDirIterator>
#include <QFile>

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorvia::test {

namespace {

bool writeText(const char* path, const QByteArray& text)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(text) == text.size();
}

/// Own name spaces; a user who is not root needs one of users first, in which he keeps his number.
bool leaveNameSpaces()
{
    constexpr int own = CLONE_NEWNS | CLONE_NEWNET;
    if (::geteuid() == 0)
        return ::unshare(own) == 0;
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    return ::unshare(CLONE_NEWUSER | own) == 0 && writeText("/proc/self/setgroups", "deny") &&
           writeText("/proc/self/uid_map", user + ' ' + user + " 1") &&
           writeText("/proc/self/gid_map", group + ' ' + group + " 1");
}

bool setReadOnly(const char* path, bool readOnly, unsigned flags)
{
    mount_attr change = {};
    (readOnly ? change.attr_set : change.attr_clr) = MOUNT_ATTR_RDONLY;
    return ::mount_setattr(AT_FDCWD, path, flags, &change, sizeof change) == 0;
}

bool mountReadOnlyBut(const QByteArray& folder)
{
    return ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           ::mount(folder.constData(), folder.constData(), nullptr, MS_BIND, nullptr) == 0 &&
           setReadOnly("/", true, AT_RECURSIVE) && setReadOnly(folder.constData(), false, 0);
}

bool becomeNobody(const QByteArray& folder)
{
    constexpr unsigned nobody = 65534;
    if (::geteuid() != 0) {
        errno = EPERM;
        return false;
    }
    QDirIterator each(QFile::decodeName(folder),
                      QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (each.hasNext()) {
        if (::lchown(QFile::encodeName(each.next()).constData(), nobody, nobody) != 0)
            return false;
    }
    return ::chown(folder.constData(), nobody, nobody) == 0 && ::setgroups(0, nullptr) == 0 &&
           ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
}

} // namespace

Confinement confineAsNobody(const QString& folder)
{
    if (becomeNobody(QFile::encodeName(folder)))
        return {true, false, QStringLiteral("as nobody; what all may write and the network are open")};
    return {false, false, QStringLiteral("not nobody: ") + QString::fromLocal8Bit(std::strerror(errno))};
}

Confinement confineTo(const QString& folder)
{
    if (leaveNameSpaces() && mountReadOnlyBut(QFile::encodeName(folder)))
        return {true, true, QStringLiteral("by name spaces")};
    const QString why = QString::fromLocal8Bit(std::strerror(errno));
    Confinement other = confineAsNobody(folder);
    other.how += QStringLiteral(" (no name spaces: %1)").arg(why);
    return other;
}

QString firstWritable(const QStringList& folders)
{
    for (const QString& folder : folders) {
        const QByteArray path =
            QFile::encodeName(folder) + "/.quorvia-soak-" + QByteArray::number(qint64(::getpid()));
        const int descriptor = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor < 0)
            continue;
        ::close(descriptor);
        ::unlink(path.constData());
        return folder;
    }
    return {};
}

} // namespace quorvia::test
