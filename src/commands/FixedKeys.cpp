#include "commands/FixedKeys.h"

#include "app/KeyCodes.h"

#include <algorithm>
#include <array>

namespace quorvia::commands {

namespace {

namespace code = app::keyCode;
using app::AltBit;
using app::CtrlBit;
using app::NoModifier;
using app::ShiftBit;

} // namespace

std::span<const FixedKey> fixedKeys()
{
    static constexpr std::array keys = {
        FixedKey{.keyCode = code::f1,
                 .shift = NoModifier,
                 .step = KeyStep::AskForHelp,
                 .text = "read the help pages, after a question"},
        FixedKey{.keyCode = code::f2,
                 .shift = NoModifier,
                 .step = KeyStep::AskForShortcutHelp,
                 .text = "read which keys do what, after a question"},
        FixedKey{.keyCode = code::f10,
                 .shift = NoModifier,
                 .step = KeyStep::ShowInformation,
                 .text = "tell about the program"},
        FixedKey{'H', NoModifier, "miHideInterface"},
        FixedKey{
            .keyCode = code::escape, .shift = NoModifier, .step = KeyStep::Exit, .text = "end the program"},
        FixedKey{'Z', NoModifier, "miQuickHide"},
        FixedKey{
            .keyCode = 'X', .shift = NoModifier, .step = KeyStep::Minimise, .text = "minimise the window"},
        FixedKey{'1', NoModifier, "miViewNormal"},
        FixedKey{'2', NoModifier, "miViewInformation"},
        FixedKey{'3', NoModifier, "miViewFilmstrip"},
        FixedKey{code::right, NoModifier, "miNext"},
        FixedKey{code::left, NoModifier, "miPrevious"},
        FixedKey{code::down, NoModifier, "miNext"},
        FixedKey{code::up, NoModifier, "miPrevious"},
        FixedKey{'P', NoModifier, "miSlideShow"},
        FixedKey{.keyCode = 'F',
                 .shift = AltBit,
                 .step = KeyStep::FitWindowToImage,
                 .group = CommandGroup::View,
                 .text = "fit the window to the image"},
    };
    return keys;
}

/// Shift too asks to erase: X servers and compositors keep Ctrl+Alt and a function key for the consoles.
std::span<const FixedKey> earlyKeys()
{
    static constexpr std::array keys = {
        FixedKey{.keyCode = code::f7,
                 .shift = CtrlBit | AltBit,
                 .step = KeyStep::AskToErase,
                 .text = "erase all settings and end, after a question"},
        FixedKey{.keyCode = code::f7,
                 .shift = ShiftBit | CtrlBit | AltBit,
                 .step = KeyStep::AskToErase,
                 .text = "the same, where the system keeps the key above"},
        FixedKey{.keyCode = code::f12,
                 .shift = anyModifier,
                 .step = KeyStep::ShowEngine,
                 .text = "tell about the image engine and its types"},
    };
    return keys;
}

const FixedKey* keyAmong(std::span<const FixedKey> keys, int keyCode, int shift)
{
    const auto found = std::find_if(keys.begin(), keys.end(), [=](const FixedKey& key) {
        return key.keyCode == keyCode && (key.shift == shift || key.shift == anyModifier);
    });
    return found == keys.end() ? nullptr : &*found;
}

} // namespace quorvia::commands
