// Paths in texts that came from elsewhere (a playlist, a command line), made native. Costs a look at the file
// system or two; nothing is opened.
#pragma once

#include <QString>

namespace quorvia::app {

/// `path` as it stands when it names something, or when it looks native; a path with "\\" or a drive letter
/// has "\\" turned to "/" and the drive dropped, and is kept so only when it then names a file. Relative
/// paths are looked for from `directory` (empty: the present one) and stay relative.
QString nativePath(const QString& path, const QString& directory = QString());

} // namespace quorvia::app
