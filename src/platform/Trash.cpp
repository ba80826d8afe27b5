#include "platform/Trash.h"

#include "platform/FileStatus.h"
#include "platform/GioParts.h"
#include "platform/Reason.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorvia::platform {

namespace {

/// `path` from the root on. With a ".." in it, it has the folder's own name: else GIO would go back over a
/// link to where the link lies, and take what bears the name there.
QString fromRoot(const QString& path)
{
    QString absolute = path.startsWith(u'/') ? path : QDir::currentPath() + u'/' + path;
    if (!QString(absolute + u'/').contains(QLatin1String("/../")))
        return absolute;
    const QFileInfo file(absolute);
    return QDir(file.path()).canonicalPath() + u'/' + file.fileName();
}

/// The name of a second "name.ext" beside it, "name (replaced).ext"; `number` counts on from 1.
QString nameOfReplaced(const QString& name, int number)
{
    constexpr qsizetype longest = 240; // bytes; the trash needs room behind a name
    const qsizetype point = name.lastIndexOf(u'.');
    QString base = point > 0 ? name.left(point) : name;
    const QString rest =
        (number > 1 ? QStringLiteral(" (replaced %1)").arg(number) : QStringLiteral(" (replaced)")) +
        (point > 0 ? name.mid(point) : QString());
    while (!base.isEmpty() && QFile::encodeName(base + rest).size() > longest)
        base.chop(1);
    return base + rest;
}

/// A name for what "name" in `folder` holds now, under which nothing is there.
QString freeName(const QString& folder, const QString& name)
{
    struct stat status = {};
    for (int number = 1;; ++number) {
        QString path = folder + u'/' + nameOfReplaced(name, number);
        if (fileStatus(path, status, Links::Keep) != 0)
            return path;
    }
}

/// Gives the content of the file `real` a second name, where the disk knows such a thing. True when another
/// program has just taken that name.
bool isTakenMeanwhile(const QString& real, const QString& second)
{
    return ::link(QFile::encodeName(real).constData(), QFile::encodeName(second).constData()) != 0 &&
           errno == EEXIST;
}

bool copied(const QString& real, const QString& copy, QString* why)
{
    QFile file(real);
    return file.copy(copy) || fail(why, file.errorString());
}

} // namespace

bool moveToTrash(const QString& path, QString* why)
{
    struct stat status = {};
    if (const int number = fileStatus(path, status, Links::Keep))
        return fail(why, QString::fromLocal8Bit(std::strerror(number)));
    GError* raw = nullptr;
    const bool moved = g_file_trash(gio::fileAt(fromRoot(path)).get(), nullptr, &raw);
    const gio::Error error(raw);
    return moved || fail(why, error ? QString::fromUtf8(error->message) : QString());
}

bool trashUnlessReadOnly(const QString& path, QString* why)
{
    struct stat status = {};
    const bool isLink = fileStatus(path, status, Links::Keep) == 0 && S_ISLNK(status.st_mode);
    if (!isLink && isReadOnly(path))
        return fail(why, QStringLiteral("A read-only file cannot be deleted"));
    return moveToTrash(path, why);
}

bool keepInTrash(const QString& path, QString* why)
{
    const QFileInfo real(QFileInfo(path).canonicalFilePath());
    if (real.filePath().isEmpty() || !isRegularFile(real.filePath()))
        return fail(why, QStringLiteral("it is not a regular file"));
    QString second;
    do {
        second = freeName(real.path(), real.fileName());
    } while (isTakenMeanwhile(real.filePath(), second));
    if (!pathExists(second) && !copied(real.filePath(), second, why))
        return false;
    if (moveToTrash(second, why))
        return true;
    QFile::remove(second); // a second name only: the file itself stays
    return false;
}

} // namespace quorvia::platform
