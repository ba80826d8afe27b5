// Gives a file another name in its directory, and never takes the name of another file. Cheap: no byte is
// copied.
#pragma once

#include <QString>

namespace quorvia::platform {

/// The file or link at `path` (native) is called `name` from now on, a name without directory. True when
/// done. False, with nothing changed and the reason in `why` (may be null), when `name` is none that a file
/// can bear (empty, ".", "..", with "/" or a zero character, longer than 255 bytes), when another file bears
/// it, or when the system refuses. On a disk that takes no notice of case a name in other case is no other
/// file's.
bool renameInPlace(const QString& path, const QString& name, QString* why = nullptr);

} // namespace quorvia::platform
