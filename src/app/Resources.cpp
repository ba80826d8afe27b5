#include "app/Resources.h"

#include "app/Paths.h"
#include "platform/FileStatus.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace quorvia::app {

namespace {

/// The directories in which a resource is looked for, in order.
QStringList resourceDirectories()
{
    const QString program = QFileInfo(programPath()).path() + u'/';
    QStringList directories{InstallPath(), QDir::cleanPath(program + QStringLiteral(QUORVIA_SHARE)) + u'/'};
    // An installed program must not look into a directory that anybody could make after the build was
    // removed.
    if (program.startsWith(QStringLiteral(QUORVIA_BUILD_TREE)))
        directories += {program + QStringLiteral("data/"), QStringLiteral(QUORVIA_DATA)};
    return directories;
}

} // namespace

QStringList companionDirectories()
{
    const QString program = QFileInfo(programPath()).path() + u'/';
    return {program, QDir::cleanPath(program + QStringLiteral(QUORVIA_COMPANIONS)) + u'/'};
}

QString resourcePathIn(const QStringList& directories, const QString& name)
{
    const auto found = std::find_if(directories.begin(), directories.end(), [&name](const QString& each) {
        return platform::isRegularFile(each + name);
    });
    return (found == directories.end() ? directories.value(0) : *found) + name;
}

QString resourcePath(const QString& name)
{
    return resourcePathIn(resourceDirectories(), name);
}

} // namespace quorvia::app
