// What the desktop has of this program: its entry, and the types of file that it brought along. An installed
// package has put both where they belong; without one, as from a build tree, copies of the user's own stand
// in.
#pragma once

#include <QString>

namespace quorvia::system {

/// The id of our entry.
QString ownEntryId();
/// The path of our entry: an installed one, else a copy with the running program's path, made now when it is
/// missing or names another program. Empty, after a line in the log, when it cannot be made.
QString provideOwnEntry();
/// Takes that copy away; no entry that we did not make.
void removeOwnEntry();

/// Tells the desktop of the types of file that it does not know. Nothing is done when it knows all of them.
void provideOwnTypes();
/// Takes that back.
void removeOwnTypes();

/// Lets the desktop read the user's entries again. Some milliseconds, five seconds at most.
void refreshApplications();
/// True when the desktop's digest of the user's entries has to be brought in line with our copy.
bool ownEntryIsNews();

} // namespace quorvia::system
