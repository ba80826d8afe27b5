// What can be read on which ground.
#pragma once

#include <QColor>

class QPalette;

namespace quorvia::platform {

/// The contrast of two opaque colours as WCAG 2 defines it: 1 for the same, 21 for black and white.
double contrast(const QColor& one, const QColor& other);

/// A colour for texts and drawings on `ground`: `own` where that stands out well, else the better one of
/// white and near black.
QColor inkOn(const QColor& ground, const QColor& own);

/// `share` (0 to 1) of the text's colour laid over the window's: a tint that goes with light and dark
/// palettes.
QColor tint(const QPalette& palette, double share);

} // namespace quorvia::platform
