#include "platform/Rename.h"

#include "platform/FileStatus.h"
#include "platform/Reason.h"

#include <QDir>
#include <QFile>

#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace quorvia::platform {

namespace {

constexpr qsizetype longestName = 255; // bytes

bool isName(const QString& name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(u'/') && !name.contains(QChar(u'\0')) &&
           QFile::encodeName(name).size() <= longestName;
}

/// True when `target` is what `path` is, and its directory knows it by another spelling only: the disk takes
/// no notice of case. Two names of one file would both be there.
bool isOwnName(const QString& path, const QString& directory, const QString& name)
{
    struct stat own = {};
    struct stat there = {};
    return fileStatus(path, own, Links::Keep) == 0 && fileStatus(directory + name, there, Links::Keep) == 0 &&
           own.st_dev == there.st_dev && own.st_ino == there.st_ino &&
           !QDir(directory)
                .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
                .contains(name);
}

/// 0 when renamed, else the system's error number.
int renameUnlessThere(const QString& path, const QString& directory, const QString& name)
{
    const QByteArray from = QFile::encodeName(path);
    const QByteArray to = QFile::encodeName(directory + name);
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    const bool isUnknown = errno == EINVAL || errno == ENOSYS; // not every file system can do that
    if (errno != EEXIST && !isUnknown)
        return errno;
    struct stat there = {};
    const bool isFree = fileStatus(directory + name, there, Links::Keep) == ENOENT;
    if (!(isUnknown && isFree) && !isOwnName(path, directory, name))
        return EEXIST;
    return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
}

} // namespace

bool renameInPlace(const QString& path, const QString& name, QString* why)
{
    if (!isName(name))
        return fail(why, QStringLiteral("no file can have this name"));
    if (path.isEmpty() || path.contains(QChar(u'\0')))
        return fail(why, QString::fromLocal8Bit(std::strerror(ENOENT)));
    const QString directory = path.left(path.lastIndexOf(u'/') + 1);
    const int error = renameUnlessThere(path, directory, name);
    return error == 0 || fail(why, QString::fromLocal8Bit(std::strerror(error)));
}

} // namespace quorvia::platform
