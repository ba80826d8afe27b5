// The program's own icon, the drawing data/quorvia.svg. Unlike those of tools it has colours of its own. All
// its sizes together take a millisecond; even so it is made after the first picture.
#pragma once

#include <QIcon>
#include <QImage>

namespace quorvia::platform {

/// The icon, `side` pixels wide and high, on a transparent ground. Needs no application object.
QImage programDrawing(int side);

/// The icon in the sizes that window managers ask for.
QIcon programIcon();

} // namespace quorvia::platform
