// The icons: our own drawings, all of one stroke, without a colour of their own. To make an icon is cheap;
// its drawing is read and drawn when it is first painted, and kept in the toolkit's cache for its size and
// colour.
#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace quorvia::platform {

/// True when `name`, with or without a "#" before it, names a drawing.
bool isIcon(const QString& name);

/// The drawing `name` in the text colours that the application's palette has when it is painted, so dark on
/// light and light on dark. Disabled, it shows the drawing `disabledName`, or the same one when that is
/// empty, in the colour of disabled text. A null icon when `name` names none.
QIcon icon(const QString& name, const QString& disabledName = QString());

/// The drawing `name` in `color`, `side` device pixels wide and high; null when there is none of that name.
QPixmap drawing(const QString& name, int side, const QColor& color);

} // namespace quorvia::platform
