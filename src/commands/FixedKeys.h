// The keys of the main window that win over the shortcut table, as values: a key runs a command, or a step of
// the keyboard's own.
#pragma once

#include "commands/CommandCatalog.h"

#include <span>

namespace quorvia::commands {

/// What a fixed key does.
enum class KeyStep {
    RunTool,
    AskForHelp,
    AskForShortcutHelp,
    ShowInformation,
    Exit,
    Minimise,
    FitWindowToImage,
    AskToErase,
    ShowEngine
};

/// A modifier mask that stands for all of them.
inline constexpr int anyModifier = -1;

struct FixedKey
{
    int keyCode;                ///< a virtual key code
    int shift;                  ///< 1 Shift, 2 Ctrl, 4 Alt
    const char* tool = nullptr; ///< what RunTool runs; null for the other steps
    KeyStep step = KeyStep::RunTool;
    CommandGroup group = CommandGroup::Program; ///< where a step of its own is told of
    const char* text = "";                      ///< what such a step does, a phrase without a full stop
};

/// The keys that are looked at before the shortcut table.
std::span<const FixedKey> fixedKeys();
/// The keys that do something before that, and then go on.
std::span<const FixedKey> earlyKeys();
/// The first of `keys` with that key code and that modifier mask; null when there is none.
const FixedKey* keyAmong(std::span<const FixedKey> keys, int keyCode, int shift);

} // namespace quorvia::commands
