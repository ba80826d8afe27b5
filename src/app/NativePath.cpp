#include "app/NativePath.h"

#include "platform/FileStatus.h"

#include <QDir>

namespace quorvia::app {

namespace {

bool isLatinLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool hasDrive(const QString& path)
{
    return path.size() > 1 && path[1] == u':' && isLatinLetter(path[0]);
}

} // namespace

QString nativePath(const QString& path, const QString& directory)
{
    const bool drive = hasDrive(path);
    const QDir base(directory.isEmpty() ? QDir::currentPath() : directory);
    if ((!drive && !path.contains(u'\\')) || platform::pathExists(base.absoluteFilePath(path)))
        return path;
    QString mapped = drive ? path.mid(2) : path;
    mapped.replace(u'\\', u'/');
    return !mapped.isEmpty() && platform::isRegularFile(base.absoluteFilePath(mapped)) ? mapped : path;
}

} // namespace quorvia::app
