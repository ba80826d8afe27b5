// Keys as virtual key codes and modifier masks, which the tables of keys are written in.
#pragma once

#include <QString>
#include <Qt>

namespace quorvia::app {

/// Bits of the modifier mask.
enum Modifier : int { NoModifier = 0, ShiftBit = 1, CtrlBit = 2, AltBit = 4 };

/// The codes of the keys that have a name instead of a character.
namespace keyCode {
inline constexpr int enter = 13;
inline constexpr int escape = 27;
inline constexpr int space = 32;
inline constexpr int left = 37;
inline constexpr int up = 38;
inline constexpr int right = 39;
inline constexpr int down = 40;
inline constexpr int deleteKey = 46;
inline constexpr int f1 = 112;
inline constexpr int f2 = 113;
inline constexpr int f7 = 118;
inline constexpr int f10 = 121;
inline constexpr int f12 = 123;
inline constexpr int openBracket = 219;
inline constexpr int closeBracket = 221;
} // namespace keyCode

/// The virtual key code of a Qt key (Qt::Key): letters and digits are their upper-case character codes,
/// function keys count on from F1. 0 for a modifier, a lock and every key that the table of codes leaves out.
/// A character counts by itself, wherever it stands on the keyboard; Enter and the digits of the keypad count
/// as the others. Where the layout gives a character that no command knows, the letter, digit or bracket
/// counts that a US keyboard has in the place `scanCode` (as X11 and Wayland number the keys; 0 for no
/// place).
int virtualKeyCode(int qtKey, quint32 scanCode);
/// The modifier mask of Qt's modifiers; the keypad and group bits do not count.
int modifierMask(Qt::KeyboardModifiers modifiers);
/// A virtual key code and a modifier mask as a keyboard has them printed: "Ctrl+F", "Delete", "]". A code
/// without a name of its own gives its character.
QString keyName(int keyCode, int shift);

} // namespace quorvia::app
