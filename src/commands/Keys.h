// The table of keys and which command they run.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::commands {

/// The commands that a key runs, in order, told as virtual key code and modifier mask: the fixed key's when
/// there is one, else every matching row of the shortcut table. Modifiers are compared as a whole.
QStringList toolsForKey(int keyCode, int shift);

} // namespace quorvia::commands
