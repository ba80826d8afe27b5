#include "platform/BaseDirectories.h"

#include <QDir>
#include <QFile>

namespace quorvia::platform {

namespace {

QString baseDirectory(const char* variable, QLatin1String below)
{
    const QString named = QFile::decodeName(qgetenv(variable));
    return QDir::isAbsolutePath(named) ? QDir::cleanPath(named) : QDir::homePath() + below;
}

QStringList searchDirectories(const char* variable, QLatin1String usual)
{
    QStringList directories;
    QString named = QFile::decodeName(qgetenv(variable));
    if (named.isEmpty())
        named = usual;
    const QStringList parts = named.split(u':', Qt::SkipEmptyParts);
    for (const QString& each : parts) {
        if (QDir::isAbsolutePath(each))
            directories.append(QDir::cleanPath(each));
    }
    return directories;
}

} // namespace

QString configHome()
{
    return baseDirectory("XDG_CONFIG_HOME", QLatin1String("/.config"));
}

QString dataHome()
{
    return baseDirectory("XDG_DATA_HOME", QLatin1String("/.local/share"));
}

QString stateHome()
{
    return baseDirectory("XDG_STATE_HOME", QLatin1String("/.local/state"));
}

QStringList configDirectories()
{
    return searchDirectories("XDG_CONFIG_DIRS", QLatin1String("/etc/xdg"));
}

QStringList dataDirectories()
{
    return searchDirectories("XDG_DATA_DIRS", QLatin1String("/usr/local/share:/usr/share"));
}

} // namespace quorvia::platform
