#include "platform/Trash.h"

#include "platform/FileStatus.h"
#include "platform/GioParts.h"

#include <QDir>
#include <QFileInfo>

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

bool fail(QString* why, const QString& reason)
{
    if (why)
        *why = reason;
    return false;
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

} // namespace quorvia::platform
