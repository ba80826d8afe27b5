// Makes the program the desktop's viewer for its image types, and gives the types back. The verb "Open" is
// the user's default for a type, "Preview" the programs that are offered besides; the program of a type and
// verb is named by the path of its desktop entry. Dear: some dozens of small files are read; only where it is
// asked for.
#pragma once

#include <QString>

namespace quorvia::platform {
class MimeApps;
}

namespace quorvia::system {

/// Does nothing unless `Associate` is 1. Otherwise saves who owns the types, takes all of them over and sets
/// `Associate` to 0. What cannot be written stays as it was and is told to the log.
void ApplyAssociations();

/// Gives all types back: what else the user's lists name for a type stays as it is; where they name nothing,
/// the earlier owner is set, when one is stored and still there. The records are forgotten then.
void RestoreAssociations();

/// The id of the desktop entry that files of `extension` (with or without its point) are opened with or, for
/// "Preview", that is offered first; empty when there is none.
QString GetAssociation(platform::MimeApps& desktop, const QString& extension, const QString& verb);

/// Puts the entry at the path `command` before all others for `extension` and `verb`. Stands once `desktop`
/// is saved.
void SetAssociation(platform::MimeApps& desktop, const QString& extension, const QString& command,
                    const QString& verb);

/// Takes this program out of the user's lists for `extension`, for both verbs. Stands once `desktop` is
/// saved.
void RemoveExtensionClass(platform::MimeApps& desktop, const QString& extension);

/// Tells the desktop that entries of the user's came or went.
void NotifyAssociationsChanged();

/// The full path of the entry `id` when it is a program that an earlier owner can be: an entry that exists
/// and is not this program's. Else empty. What follows the first ".desktop" is dropped.
QString earlierOwnerPath(const QString& id);

} // namespace quorvia::system
