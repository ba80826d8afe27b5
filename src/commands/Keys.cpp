#include "commands/Keys.h"

#include "app/KeyCodes.h"

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

using app::CtrlBit;
using app::NoModifier;
namespace keyCode = app::keyCode;

struct KeyRow
{
    int keyCode;
    int shift;
    const char* tool;
};

constexpr std::array fixedKeys = {
    KeyRow{keyCode::escape, NoModifier, "miExit"},   KeyRow{keyCode::right, NoModifier, "miNext"},
    KeyRow{keyCode::left, NoModifier, "miPrevious"}, KeyRow{keyCode::down, NoModifier, "miNext"},
    KeyRow{keyCode::up, NoModifier, "miPrevious"},
};

constexpr std::array shortcutKeys = {
    KeyRow{keyCode::closeBracket, NoModifier, "miNext"},
    KeyRow{keyCode::openBracket, NoModifier, "miPrevious"},
    KeyRow{'N', CtrlBit, "miNext"},
    KeyRow{'B', CtrlBit, "miPrevious"},
    KeyRow{'R', NoModifier, "miRandom"},
    KeyRow{'2', CtrlBit, "miBestFit"},
    KeyRow{'1', CtrlBit, "miActualSize"},
    KeyRow{'Q', NoModifier, "miCloseImage"},
};

} // namespace

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
