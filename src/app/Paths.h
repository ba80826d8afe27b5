// Where the program's own files lie. A look at the environment; the file system is asked once.
#pragma once

#include <QString>

namespace quorvia::app {

/// The data root, ending in "/": `$QUORVIA_ROOT`; else the program's directory when it is writable and holds
/// a file `portable`; else `$XDG_DATA_HOME/quorvia/`. Need not exist.
QString InstallPath();
/// The rule behind InstallPath(): `root` as the environment gives it, empty when it does not.
QString installPathFor(const QString& root, const QString& programDirectory);
/// The full path of the running program file. Needs no application object.
QString programPath();
/// `$XDG_STATE_HOME/quorvia/qolog.log`.
QString logPath();

} // namespace quorvia::app
