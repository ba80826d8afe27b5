// The options that the user edits: one row each with its key, the control that shows it and how its stored
// value is read. Without widgets; reading and writing cost some tens of microseconds a row.
#pragma once

#include "app/Settings.h"

#include <QString>

#include <optional>
#include <span>

namespace quorvia::system {

/// How the stored value becomes a number.
enum class OptionReading {
    Plain,     ///< as everywhere else
    Int16,     ///< by int16Of()
    Elsewhere, ///< it is not: who shows the control gives it
};

/// What shows the option.
enum class OptionControl {
    List,   ///< its line, 0-based
    Check,  ///< 0 or 1
    Color,  ///< a patch of the colour
    Slider, ///< a label with a number, whose buddy is the slider
};

struct OptionRow
{
    app::NumberKey key;
    const char* control; ///< its objectName
    OptionControl kind;
    OptionReading reading;
};

/// All options, in the order in which they are written.
std::span<const OptionRow> optionRows();

/// The 16-bit number that `text` spells, blanks around it or not; a half goes to the even number. Nothing
/// when it spells none, or none that fits into 16 bits: the option is shown as it is designed then, as the
/// rest of the program takes it.
std::optional<int> int16Of(const QString& text);

/// The stored value, the default when there is none. Nothing when it cannot be read, or is not to be.
std::optional<int> readOption(const OptionRow& row);
/// True when written.
bool saveOption(const OptionRow& row, int value);

} // namespace quorvia::system
