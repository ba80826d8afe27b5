// An elliptic arc between two points, as SVG's path command A tells it.
#pragma once

#include <QPainterPath>
#include <QSizeF>

namespace quorvia::engine {

/// Appends to `path` an arc of an ellipse of `radii`, turned by `degrees`, from the path's end to `end`; of
/// the four that there are, the one of more than 180 degrees with `large` and clockwise on the screen with
/// `sweep`. Radii that are too short grow until they reach; without a radius it is a line.
/// Source: SVG 1.1, appendix F.6.5, "Conversion from endpoint to center parameterization".
void addSvgArc(QPainterPath& path, QSizeF radii, double degrees, bool large, bool sweep, QPointF end);

} // namespace quorvia::engine
