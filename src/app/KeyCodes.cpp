#include "app/KeyCodes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quorvia::app {

namespace {

constexpr int asterisk = 106;

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
    KeyCode{Qt::Key_Asterisk, asterisk},
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

/// What a US keyboard has in a row of its keys, from the scan code of the first.
struct KeyRow
{
    quint32 first;
    std::string_view keys;
};

constexpr std::array usKeyboard = {KeyRow{10, "1234567890"}, KeyRow{24, "QWERTYUIOP[]"},
                                   KeyRow{38, "ASDFGHJKL"}, KeyRow{52, "ZXCVBNM"}};

int codeOfPlace(quint32 scanCode)
{
    for (const auto& [first, keys] : usKeyboard) {
        if (scanCode < first || scanCode >= first + keys.size())
            continue;
        const char key = keys[scanCode - first];
        return key == '[' ? keyCode::openBracket : key == ']' ? keyCode::closeBracket : key;
    }
    return 0;
}

int codeOfKey(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return qtKey; // Qt's codes of these are the characters' own
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24)
        return keyCode::f1 + qtKey - Qt::Key_F1;
    const auto found = std::find_if(namedKeys.begin(), namedKeys.end(),
                                    [qtKey](const KeyCode& key) { return key.qtKey == qtKey; });
    return found == namedKeys.end() ? 0 : found->code;
}

/// Whether no key of a table has the code: it is that of a sign, or none.
bool isUnused(int code)
{
    constexpr int firstSign = 186;
    const bool bracket = code == keyCode::openBracket || code == keyCode::closeBracket;
    return code == 0 || code == asterisk || (code >= firstSign && !bracket);
}

struct NamedKey
{
    int code;
    const char* name;
};

constexpr std::array keyNames = {
    NamedKey{keyCode::enter, "Enter"},   NamedKey{keyCode::escape, "Esc"},
    NamedKey{keyCode::space, "Space"},   NamedKey{keyCode::left, "Left"},
    NamedKey{keyCode::up, "Up"},         NamedKey{keyCode::right, "Right"},
    NamedKey{keyCode::down, "Down"},     NamedKey{keyCode::deleteKey, "Delete"},
    NamedKey{keyCode::openBracket, "["}, NamedKey{keyCode::closeBracket, "]"},
};

QString plainKeyName(int code)
{
    constexpr int lastFunctionKey = keyCode::f1 + 23;
    if (code >= keyCode::f1 && code <= lastFunctionKey)
        return u'F' + QString::number(code - keyCode::f1 + 1);
    const auto found = std::find_if(keyNames.begin(), keyNames.end(),
                                    [code](const NamedKey& key) { return key.code == code; });
    return found == keyNames.end() ? QString(QChar(code)) : QString(QLatin1String(found->name));
}

} // namespace

int virtualKeyCode(int qtKey, quint32 scanCode)
{
    const int code = codeOfKey(qtKey);
    const int place = isUnused(code) ? codeOfPlace(scanCode) : 0;
    return place != 0 ? place : code;
}

QString keyName(int keyCode, int shift)
{
    QString name;
    for (const auto& [bit, text] : {std::pair{CtrlBit, "Ctrl+"}, {AltBit, "Alt+"}, {ShiftBit, "Shift+"}}) {
        if (shift & bit)
            name += QLatin1String(text);
    }
    return name + plainKeyName(keyCode);
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
