// Which keys the parts of the list's panel keep for themselves; all others are the main window's. A plain
// table.
#pragma once

#include <Qt>

namespace quorvia::collections {

enum class PanelPart { Tree, List, Button, NameBox };

/// Whether a key (Qt::Key) that reaches `part` moves or selects within it. The list leaves the plain arrows
/// to the main window, whose steps walk the list.
bool keepsKey(PanelPart part, int key, Qt::KeyboardModifiers modifiers);

} // namespace quorvia::collections
