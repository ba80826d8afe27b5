#include "platform/FileStatus.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quorvia::platform {

int fileStatus(const QString& path, struct stat& status, Links links)
{
    if (path.isEmpty() || path.contains(QChar(u'\0')))
        return ENOENT;
    const QByteArray name = QFile::encodeName(path);
    struct stat found = {};
    const int failed =
        links == Links::Follow ? ::stat(name.constData(), &found) : ::lstat(name.constData(), &found);
    if (failed != 0)
        return errno;
    status = found;
    return 0;
}

bool pathExists(const QString& path)
{
    struct stat status = {};
    return fileStatus(path, status) == 0;
}

bool isDirectory(const QString& path)
{
    struct stat status = {};
    return fileStatus(path, status) == 0 && S_ISDIR(status.st_mode);
}

bool isRegularFile(const QString& path)
{
    struct stat status = {};
    return fileStatus(path, status) == 0 && S_ISREG(status.st_mode);
}

bool isFile(const QString& path)
{
    struct stat status = {};
    return fileStatus(path, status) == 0 && !S_ISDIR(status.st_mode);
}

bool isReadOnly(const QString& path)
{
    struct stat status = {};
    if (fileStatus(path, status) != 0)
        return false;
    constexpr mode_t anybody = S_IWUSR | S_IWGRP | S_IWOTH;
    return (status.st_mode & anybody) == 0 ||
           ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) != 0;
}

} // namespace quorvia::platform
