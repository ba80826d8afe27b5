// The bands and tools that the menu control has before the definition is read: drop-down menus, the menu of
// the filmstrip, carriers of icons. About eighty small objects, made once.
#pragma once

#include "platform/ToolModel.h"

namespace quorvia::commands {

/// Puts them into an empty `model`. Copies on these bands do not follow their tools. An icon is named by the
/// carrier's name without its "#" and stands in variants 0 and 2.
void addDesignedTools(platform::ToolModel& model);

} // namespace quorvia::commands
