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

/// Tells the desktop of the types of file that it does not know; some milliseconds, five seconds at most.
/// Nothing is done when it knows all of them, or when something else stands in our file's place.
void provideOwnTypes();
/// Takes that back; nothing that we did not write.
void removeOwnTypes();

/// Marks the user's entries as changed, for desktops that look at the time of their directory. They are not
/// indexed: the index would offer every program among them for all types that its entry names, for good.
void markApplications();

} // namespace quorvia::system
