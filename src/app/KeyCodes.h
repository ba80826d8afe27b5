// Keys as virtual key codes and modifier masks, which the tables of keys are written in.
#pragma once

#include <Qt>

namespace quorvia::app {

/// Bits of the modifier mask.
enum Modifier : int { NoModifier = 0, ShiftBit = 1, CtrlBit = 2, AltBit = 4 };

/// The codes of the keys that have a name instead of a character.
namespace keyCode {
inline constexpr int escape = 27;
inline constexpr int left = 37;
inline constexpr int up = 38;
inline constexpr int right = 39;
inline constexpr int down = 40;
inline constexpr int openBracket = 219;
inline constexpr int closeBracket = 221;
} // namespace keyCode

/// The virtual key code of a Qt key (Qt::Key): letters and digits are their upper-case character codes. 0 for
/// a key that no table names.
int virtualKeyCode(int qtKey);
/// The modifier mask of Qt's modifiers; the keypad and group bits do not count.
int modifierMask(Qt::KeyboardModifiers modifiers);

} // namespace quorvia::app
