// Where the program's own files lie.
#pragma once

#include <QString>

namespace quorvia::app {

/// The data root, ending in "/": `$QUORVIA_ROOT`; else the program's directory when it is writable and holds a file
/// `portable`; else `$XDG_DATA_HOME/quorvia/`. Worked out once.
QString InstallPath();
/// The full path of the running program file.
QString programPath();
/// `$XDG_STATE_HOME/quorvia/qolog.log`.
QString logPath();

/// A path from a playlist or a command line as a native one: a path with "\" or a drive letter that names nothing as it
/// stands has "\" turned to "/" and the drive dropped, and is kept so only when it then names a file.
QString nativePath(const QString& path);

} // namespace quorvia::app
