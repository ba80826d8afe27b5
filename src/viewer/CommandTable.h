// The table of commands: one row a command, with its handler.
#pragma once

#include "commands/ToolDispatcher.h"

#include <vector>

namespace quorvia::viewer {

class frmImageView;

/// All commands of the main window. The handlers hold on to `window`.
std::vector<commands::Tool> commandTable(frmImageView& window);

} // namespace quorvia::viewer
