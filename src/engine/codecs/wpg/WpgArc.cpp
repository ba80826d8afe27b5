#include "engine/codecs/wpg/WpgArc.h"

#include <QTransform>

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

void addSvgArc(QPainterPath& path, QSizeF radii, double degrees, bool large, bool sweep, QPointF end)
{
    const QPointF start = path.currentPosition();
    double rx = std::abs(radii.width());
    double ry = std::abs(radii.height());
    if (rx == 0 || ry == 0 || start == end) {
        path.lineTo(end);
        return;
    }
    // In a system with its origin half way and its axes along the ellipse's, `from` is the start.
    const QTransform turn = QTransform().rotate(degrees);
    const QPointF from = turn.inverted().map((start - end) / 2);
    const double tooFar = std::pow(from.x() / rx, 2) + std::pow(from.y() / ry, 2);
    if (tooFar > 1) {
        rx *= std::sqrt(tooFar);
        ry *= std::sqrt(tooFar);
    }
    const double reach = std::pow(rx * from.y(), 2) + std::pow(ry * from.x(), 2);
    const double away = std::sqrt(std::max(0.0, (rx * rx * ry * ry - reach) / reach));
    const double side = large == sweep ? -away : away;
    const QPointF center(side * rx * from.y() / ry, -side * ry * from.x() / rx);

    // Angles as QPainterPath counts them: counter-clockwise on the screen.
    const auto angleOf = [&](QPointF point) {
        return std::atan2(-(point.y() - center.y()) / ry, (point.x() - center.x()) / rx) * 180 / M_PI;
    };
    const double first = angleOf(from);
    double span = angleOf(-from) - first;
    if (sweep && span > 0)
        span -= 360;
    if (!sweep && span < 0)
        span += 360;
    QPainterPath arc;
    const QRectF around(center.x() - rx, center.y() - ry, 2 * rx, 2 * ry);
    arc.arcMoveTo(around, first);
    arc.arcTo(around, first, span);
    const QPointF middle = (start + end) / 2;
    path.connectPath((turn * QTransform::fromTranslate(middle.x(), middle.y())).map(arc));
}

} // namespace quorvia::engine
