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
    KeyCode{Qt::Key_Escape, keyCode::escape},
    KeyCode{Qt::Key_Left, keyCode::left},
    KeyCode{Qt::Key_Up, keyCode::up},
    KeyCode{Qt::Key_Right, keyCode::right},
    KeyCode{Qt::Key_Down, keyCode::down},
    KeyCode{Qt::Key_BracketLeft, keyCode::openBracket},
    KeyCode{Qt::Key_BracketRight, keyCode::closeBracket},
};

} // namespace

int virtualKeyCode(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey; // Qt's codes of these are the characters' own
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
