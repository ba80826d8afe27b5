// Colours as the store holds them, and the back colour of panes.
#pragma once

#include <QColor>

class QWidget;

namespace quorvia::viewer {

/// The stored number of a colour: red in the lowest byte, then green, then blue.
int toColorNumber(const QColor& color);
/// The colour that a stored number spells; the bits above the three bytes do not count.
QColor fromColorNumber(int number);

QColor paneColor(const QWidget* pane);
void setPaneColor(QWidget* pane, const QColor& color);

} // namespace quorvia::viewer
