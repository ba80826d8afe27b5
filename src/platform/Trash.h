// The desktop's trash. Nothing is ever deleted for good here: what cannot go there stays where it is.
#pragma once

#include <QString>

namespace quorvia::platform {

/// Moves the file or folder at `path` to the trash of the desktop; a link goes itself, not what it leads to.
/// A relative path counts from the working directory. True when it lies in the trash and no more at `path`.
/// False when nothing has changed: it is missing, may not be moved, or there is no trash where it lies; `why`
/// (may be null) then has the reason, in the words of the system.
bool moveToTrash(const QString& path, QString* why = nullptr);

} // namespace quorvia::platform
