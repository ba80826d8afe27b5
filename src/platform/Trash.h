// The desktop's trash. Nothing is ever deleted for good here: what cannot go there stays where it is.
#pragma once

#include <QString>

namespace quorvia::platform {

/// Moves the file or folder at `path` to the trash of the desktop; a link goes itself, not what it leads to.
/// A relative path counts from the working directory. True when it lies in the trash and no more at `path`.
/// False when nothing has changed: it is missing, may not be moved, or there is no trash where it lies; `why`
/// (may be null) then has the reason, in the words of the system.
bool moveToTrash(const QString& path, QString* why = nullptr);

/// The same for a file that the user wants gone: one that he may not write stays, whatever its directory
/// allows. A link may always go, since what it leads to stays.
bool trashUnlessReadOnly(const QString& path, QString* why = nullptr);

/// Puts what the file at `path` holds now into the trash, as "name (replaced).ext" of the same folder, since
/// another file is about to take its name. `path` itself is not touched; of a link, what it leads to counts.
/// Costs no copy where the disk gives one file two names. False when the trash did not take it, with the
/// reason in `why` (may be null).
bool keepInTrash(const QString& path, QString* why = nullptr);

} // namespace quorvia::platform
