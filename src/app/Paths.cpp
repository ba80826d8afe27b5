#include "app/Paths.h"

#include "platform/BaseDirectories.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace quorvia::app {

namespace {

bool isPortable(const QString& programDirectory)
{
    return QFileInfo(programDirectory + QStringLiteral("/portable")).isFile() &&
           ::access(QFile::encodeName(programDirectory).constData(), W_OK | X_OK) == 0;
}

QString asRoot(const QString& directory)
{
    const QString clean = QDir::cleanPath(QDir::current().absoluteFilePath(directory));
    return clean.endsWith(QLatin1Char('/')) ? clean : clean + QLatin1Char('/');
}

} // namespace

QString installPathFor(const QString& root, const QString& programDirectory)
{
    if (!root.isEmpty())
        return asRoot(root);
    if (isPortable(programDirectory))
        return asRoot(programDirectory);
    return asRoot(platform::dataHome() + QStringLiteral("/quorvia"));
}

QString InstallPath()
{
    const QString root = QFile::decodeName(qgetenv("QUORVIA_ROOT"));
    if (!root.isEmpty())
        return asRoot(root);
    static const QString found = installPathFor(QString(), QFileInfo(programPath()).path());
    return found;
}

QString programPath()
{
    static const QString path = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return path;
}

QString logPath()
{
    return platform::stateHome() + QStringLiteral("/quorvia/qolog.log");
}

} // namespace quorvia::app
