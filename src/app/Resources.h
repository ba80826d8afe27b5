// Where the read-only files that come with the program lie. Some looks at the file system a call.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::app {

/// The full path of the resource `name`, which may hold "/": the first that is a file of InstallPath(), of
/// the installed share directory and, for a program that runs from its build tree, of what the build made
/// beside it, in "data", and of the source tree. When there is none, the path in InstallPath().
QString resourcePath(const QString& name);
/// Where the small programs that come with this one may lie, each ending in "/": beside it, else where an
/// installation puts them.
QStringList companionDirectories();
/// The rule behind resourcePath(): the first of `directories`, each ending in "/", that holds the file
/// `name`; else the first of them.
QString resourcePathIn(const QStringList& directories, const QString& name);

} // namespace quorvia::app
