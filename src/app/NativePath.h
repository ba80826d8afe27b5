// Paths in texts that came from elsewhere (a playlist, a command line), made native.
#pragma once

#include <QString>

namespace quorvia::app {

/// `path` as it stands when it names something, or when it looks native; a path with "\\" or a drive letter
/// has "\\" turned to "/" and the drive dropped, and is kept so only when it then names a file.
QString nativePath(const QString& path);

} // namespace quorvia::app
