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

} // namespace quorvia::platform
