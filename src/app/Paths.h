// Where the program's own files lie.
#pragma once

#include <QString>

namespace quorvia::app {

/// The data root, ending in "/": `$QUORVIA_ROOT`; else the program's directory when it is writable and holds
/// a file `portable`; else `$XDG_DATA_HOME/quorvia/`. Worked out once.
QString InstallPath();
/// The full path of the running program file.
QString programPath();
/// `$XDG_STATE_HOME/quorvia/qolog.log`.
QString logPath();

} // namespace quorvia::app
