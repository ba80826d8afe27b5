// The small tools that come with the program. Until a tool of the same name is installed, they stand in the
// store as components of the family.
#pragma once

#include <QString>

namespace quorvia::system {

/// Names the mail tool "postrel" in the store when `directories`, each ending in "/", hold it and no other
/// tool of that name is there. The first directory that does wins. Some reads of the store a call.
void publishCompanions(const QStringList& directories);
/// Takes out of the store what publishCompanions() put there for one of `directories`.
void withdrawCompanions(const QStringList& directories);

} // namespace quorvia::system
