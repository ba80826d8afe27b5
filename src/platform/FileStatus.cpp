#include "platform/FileStatus.h"

#include <QFile>

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

} // namespace quorvia::platform
