// Colours as the store and the controls' properties hold them, and the back colour of panes.
#pragma once

#include <QColor>

class QPalette;
class QWidget;

namespace quorvia::app {

/// The stored number of a colour: red in the lowest byte, then green, then blue.
int toColorNumber(const QColor& color);
/// The colour that a stored number spells; the bits above the three bytes do not count.
QColor fromColorNumber(int number);

/// The colour of a property: a stored number, or, when its top byte is 0x80, the desktop's colour with the
/// code in the lowest byte (as 0x8000000F, the face of a button) as `palette` has it. Black for a code that
/// names none.
QColor propertyColor(quint32 number, const QPalette& palette);

QColor paneColor(const QWidget* pane);
/// Gives a pane its back colour, and a text colour that can be read on it.
void setPaneColor(QWidget* pane, const QColor& color);
/// Gives a control that stands on a coloured pane, and draws arrows and bars of its own, the desktop's
/// colours back. To be called again when those change.
void setDesktopColors(QWidget* control);

} // namespace quorvia::app
