// Keys as virtual key codes and modifier masks, and the table of which command they run.
#pragma once

#include <QString>
#include <QStringList>
#include <Qt>

namespace quorvia::commands {

/// Bits of the modifier mask.
enum Modifier : int { NoModifier = 0, ShiftBit = 1, CtrlBit = 2, AltBit = 4 };

/// The virtual key code of a Qt key (Qt::Key): letters and digits are their upper-case character codes. 0 for
/// a key that no table names.
int virtualKeyCode(int qtKey);
/// The modifier mask of Qt's modifiers; the keypad and group bits do not count.
int modifierMask(Qt::KeyboardModifiers modifiers);

/// The commands that a key runs, in order: the fixed key's when there is one, else every matching row of the
/// shortcut table. Modifiers are compared as a whole.
QStringList toolsForKey(int keyCode, int shift);

} // namespace quorvia::commands
