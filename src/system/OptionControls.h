// Numbers into the controls of the options and out of them again.
#pragma once

#include "system/OptionRows.h"

class QColor;
class QWidget;

namespace quorvia::system {

/// Shows `value` in `control`, which is of the row's kind. A slider takes its nearest end; a line that a list
/// has not, and anything but 0 and 1 for a check, leave the control as it is.
void showValue(QWidget& control, OptionControl kind, int value);
/// What `control` shows.
int shownValue(const QWidget& control, OptionControl kind);

/// Gives a patch its colour, and says it to a screen reader.
void showColor(QWidget& patch, const QColor& color);

} // namespace quorvia::system
