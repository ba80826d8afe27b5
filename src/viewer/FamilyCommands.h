// The commands that lead out of the program: to the maker's pages, to the other tools of the family, to a
// newer version.
#pragma once

#include "commands/ToolDispatcher.h"

#include <vector>

namespace quorvia::viewer {

class frmImageView;

/// Puts them into `table`.
void addFamilyCommands(std::vector<commands::Tool>& table, frmImageView& window);

/// What is to be done about a newer version after a start; at the first one after an installation the updater
/// is told of that. Costs two reads of the store when nothing is due.
void checkVersionAfterStart(frmImageView& window);

} // namespace quorvia::viewer
