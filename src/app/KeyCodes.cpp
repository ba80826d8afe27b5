#include "app/KeyCodes.h"

#include <algorithm>
#include <array>

namespace quorvia::app {

namespace {

struct KeyCode
{
    int qtKey;
    int code;
};

constexpr std::array namedKeys = {
    KeyCode{Qt::Key_Backspace, 8},
    KeyCode{Qt::Key_Tab, 9},
    KeyCode{Qt::Key_Backtab, 9},
    KeyCode{Qt::Key_Return, keyCode::enter},
    KeyCode{Qt::Key_Enter, keyCode::enter},
    KeyCode{Qt::Key_Pause, 19},
    KeyCode{Qt::Key_Escape, keyCode::escape},
    KeyCode{Qt::Key_Space, keyCode::space},
    KeyCode{Qt::Key_PageUp, 33},
    KeyCode{Qt::Key_PageDown, 34},
    KeyCode{Qt::Key_End, 35},
    KeyCode{Qt::Key_Home, 36},
    KeyCode{Qt::Key_Left, keyCode::left},
    KeyCode{Qt::Key_Up, keyCode::up},
    KeyCode{Qt::Key_Right, keyCode::right},
    KeyCode{Qt::Key_Down, keyCode::down},
    KeyCode{Qt::Key_Print, 44},
    KeyCode{Qt::Key_Insert, 45},
    KeyCode{Qt::Key_Delete, keyCode::deleteKey},
    KeyCode{Qt::Key_Help, 47},
    KeyCode{Qt::Key_Menu, 93},
    KeyCode{Qt::Key_Asterisk, 106},
    KeyCode{Qt::Key_Semicolon, 186},
    KeyCode{Qt::Key_Equal, 187},
    KeyCode{Qt::Key_Plus, 187},
    KeyCode{Qt::Key_Comma, 188},
    KeyCode{Qt::Key_Minus, 189},
    KeyCode{Qt::Key_Period, 190},
    KeyCode{Qt::Key_Slash, 191},
    KeyCode{Qt::Key_QuoteLeft, 192},
    KeyCode{Qt::Key_BracketLeft, keyCode::openBracket},
    KeyCode{Qt::Key_Backslash, 220},
    KeyCode{Qt::Key_BracketRight, keyCode::closeBracket},
    KeyCode{Qt::Key_Apostrophe, 222},
    KeyCode{Qt::Key_Less, 226},
};

} // namespace

int virtualKeyCode(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey; // Qt's codes of these are the characters' own
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return keyCode::f1 + qtKey - Qt::Key_F1;
    const auto found = std::find_if(namedKeys.begin(), namedKeys.end(),
                                    [qtKey](const KeyCode& key) { return key.qtKey == qtKey; });
    return found == namedKeys.end() ? 0 : found->code;
}

int modifierMask(Qt::KeyboardModifiers modifiers)
{
    int mask = NoModifier;
    if (modifiers & Qt::ShiftModifier)
        mask |= ShiftBit;
    if (modifiers & Qt::ControlModifier)
        mask |= CtrlBit;
    if (modifiers & Qt::AltModifier)
        mask |= AltBit;
    return mask;
}

} // namespace quorvia::app
