#include "commands/Keys.h"

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

struct KeyRow
{
    int keyCode;
    int shift;
    const char* tool;
};

constexpr int escape = 27;
constexpr int left = 37;
constexpr int up = 38;
constexpr int right = 39;
constexpr int down = 40;
constexpr int openBracket = 219;
constexpr int closeBracket = 221;

constexpr std::array fixedKeys = {
    KeyRow{escape, NoModifier, "miExit"},   KeyRow{right, NoModifier, "miNext"},
    KeyRow{left, NoModifier, "miPrevious"}, KeyRow{down, NoModifier, "miNext"},
    KeyRow{up, NoModifier, "miPrevious"},
};

constexpr std::array shortcutKeys = {
    KeyRow{closeBracket, NoModifier, "miNext"},
    KeyRow{openBracket, NoModifier, "miPrevious"},
    KeyRow{'N', CtrlBit, "miNext"},
    KeyRow{'B', CtrlBit, "miPrevious"},
    KeyRow{'R', NoModifier, "miRandom"},
    KeyRow{'2', CtrlBit, "miBestFit"},
    KeyRow{'1', CtrlBit, "miActualSize"},
    KeyRow{'Q', NoModifier, "miCloseImage"},
};

struct KeyCode
{
    int qtKey;
    int code;
};

constexpr std::array namedKeys = {
    KeyCode{Qt::Key_Escape, escape},
    KeyCode{Qt::Key_Left, left},
    KeyCode{Qt::Key_Up, up},
    KeyCode{Qt::Key_Right, right},
    KeyCode{Qt::Key_Down, down},
    KeyCode{Qt::Key_BracketLeft, openBracket},
    KeyCode{Qt::Key_BracketRight, closeBracket},
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

QStringList toolsForKey(int keyCode, int shift)
{
    const auto matches = [=](const KeyRow& row) { return row.keyCode == keyCode && row.shift == shift; };
    if (const auto fixed = std::find_if(fixedKeys.begin(), fixedKeys.end(), matches);
        fixed != fixedKeys.end())
        return {QLatin1String(fixed->tool)};
    QStringList tools;
    for (const KeyRow& row : shortcutKeys) {
        if (matches(row))
            tools.append(QLatin1String(row.tool));
    }
    return tools;
}

} // namespace quorvia::commands
