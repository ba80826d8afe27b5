#include "engine/codecs/wmf/WmfGeometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace quorvia::engine {

namespace {

constexpr double pi = std::numbers::pi;
constexpr double farthest = 1e6; // pixels; beyond it a coordinate says nothing any more

/// Pixels a unit at 96 dots per inch in the map modes 2 to 6: tenths and hundredths of a millimetre,
/// hundredths and thousandths of an inch, twips.
double fixedUnit(int mode)
{
    constexpr std::array<double, 5> units = {96 / 254.0, 96 / 2540.0, 96 / 100.0, 96 / 1000.0, 96 / 1440.0};
    return units.at(size_t(mode - 2));
}

bool hasFixedUnits(int mode)
{
    return mode >= 2 && mode <= 6;
}

double scaled(double value, int numerator, int denominator)
{
    const double result = std::trunc(value * numerator / denominator);
    return std::clamp(result, -1e9, 1e9);
}

QSizeF scaledExtent(QSizeF extent, QPoint numerator, QPoint denominator)
{
    if (denominator.x() == 0 || denominator.y() == 0)
        return extent;
    const QSizeF result(scaled(extent.width(), numerator.x(), denominator.x()),
                        scaled(extent.height(), numerator.y(), denominator.y()));
    return result.width() == 0 || result.height() == 0 ? extent : result;
}

double kept(double value)
{
    return std::clamp(value, -farthest, farthest);
}

} // namespace

WmfMapping::WmfMapping(QRectF frame, QSize picture, bool viewport)
    : m_frame(frame), m_picture(picture), m_windowExt(1, 1), m_viewportExt(1, 1)
{
    if (viewport) {
        m_viewportOrg = frame.topLeft();
        m_viewportExt = frame.size();
    }
    update();
}

void WmfMapping::setMode(int mode)
{
    m_mode = mode;
    update();
}

void WmfMapping::setWindowOrg(QPoint origin)
{
    m_windowOrg = origin;
    update();
}

void WmfMapping::setWindowExt(QSize extent)
{
    if (extent.width() == 0 || extent.height() == 0)
        return;
    m_windowExt = extent;
    update();
}

void WmfMapping::offsetWindowOrg(QPoint by)
{
    m_windowOrg += by;
    update();
}

void WmfMapping::scaleWindowExt(QPoint numerator, QPoint denominator)
{
    m_windowExt = scaledExtent(m_windowExt, numerator, denominator);
    update();
}

void WmfMapping::setViewportOrg(QPoint origin)
{
    m_viewportOrg = origin;
    update();
}

void WmfMapping::setViewportExt(QSize extent)
{
    if (extent.width() == 0 || extent.height() == 0)
        return;
    m_viewportExt = extent;
    update();
}

void WmfMapping::offsetViewportOrg(QPoint by)
{
    m_viewportOrg += by;
    update();
}

void WmfMapping::scaleViewportExt(QPoint numerator, QPoint denominator)
{
    m_viewportExt = scaledExtent(m_viewportExt, numerator, denominator);
    update();
}

void WmfMapping::update()
{
    QPointF factor(m_viewportExt.width() / m_windowExt.width(),
                   m_viewportExt.height() / m_windowExt.height());
    if (hasFixedUnits(m_mode)) {
        factor = QPointF(fixedUnit(m_mode), -fixedUnit(m_mode));
    } else if (m_mode == 7) {
        const double smaller = std::min(std::abs(factor.x()), std::abs(factor.y()));
        factor = QPointF(std::copysign(smaller, factor.x()), std::copysign(smaller, factor.y()));
    }
    const QPointF zoom(m_picture.width() / m_frame.width(), m_picture.height() / m_frame.height());
    const QPointF shift(m_viewportOrg.x() - m_windowOrg.x() * factor.x() - m_frame.left(),
                        m_viewportOrg.y() - m_windowOrg.y() * factor.y() - m_frame.top());
    m_factor = QPointF(factor.x() * zoom.x(), factor.y() * zoom.y());
    m_shift = QPointF(shift.x() * zoom.x(), shift.y() * zoom.y());
}

QPointF WmfMapping::map(QPointF units) const
{
    return {kept(units.x() * m_factor.x() + m_shift.x()), kept(units.y() * m_factor.y() + m_shift.y())};
}

QPointF WmfMapping::mapVector(QPointF units) const
{
    return {kept(units.x() * m_factor.x()), kept(units.y() * m_factor.y())};
}

QPointF WmfMapping::unmap(QPointF pixels) const
{
    return {(pixels.x() - m_shift.x()) / m_factor.x(), (pixels.y() - m_shift.y()) / m_factor.y()};
}

double WmfMapping::scale() const
{
    return std::sqrt(std::abs(m_factor.x() * m_factor.y()));
}

QPolygonF arcPoints(QRectF box, double start, double sweep)
{
    // A chord over an angle of a strays r * a * a / 8 from the circle: a twentieth of a pixel is allowed.
    const double radius = std::max({std::abs(box.width()), std::abs(box.height()), 1.0}) / 2;
    const double whole = std::clamp(std::ceil(2 * pi / std::sqrt(8 * 0.05 / radius)), 16.0, 2000.0);
    const int steps = std::max(int(std::ceil(whole * std::abs(sweep) / (2 * pi))), 2);
    QPolygonF points;
    points.reserve(steps + 1);
    for (int i = 0; i <= steps; ++i) {
        const double angle = start + sweep * i / steps;
        points.append(QPointF(box.center().x() + std::cos(angle) * box.width() / 2,
                              box.center().y() + std::sin(angle) * box.height() / 2));
    }
    return points;
}

WmfSweep arcSweep(QRectF box, QPointF from, QPointF to)
{
    const auto angleOf = [box](QPointF point) {
        const double x = (point.x() - box.center().x()) * std::max(std::abs(box.height()), 1e-6);
        const double y = (point.y() - box.center().y()) * std::max(std::abs(box.width()), 1e-6);
        return std::atan2(y, x);
    };
    const double start = angleOf(from);
    double sweep = angleOf(to) - start;
    if (sweep >= 0)
        sweep -= 2 * pi;
    return {start, sweep};
}

QPolygonF roundedRect(QRectF box, QSizeF corner)
{
    const double width = std::min(std::abs(corner.width()), box.width());
    const double height = std::min(std::abs(corner.height()), box.height());
    const double right = box.right() - width;
    const double bottom = box.bottom() - height;
    QPolygonF points = arcPoints(QRectF(right, bottom, width, height), 0, pi / 2);
    points += arcPoints(QRectF(box.left(), bottom, width, height), pi / 2, pi / 2);
    points += arcPoints(QRectF(box.left(), box.top(), width, height), pi, pi / 2);
    points += arcPoints(QRectF(right, box.top(), width, height), 3 * pi / 2, pi / 2);
    return points;
}

bool isUpright(const QPolygonF& points, bool closed)
{
    constexpr double near = 0.01;
    const qsizetype count = points.size();
    for (qsizetype i = 0; i + (closed ? 0 : 1) < count; ++i) {
        const QPointF edge = points[(i + 1) % count] - points[i];
        if (std::abs(edge.x()) > near && std::abs(edge.y()) > near)
            return false;
    }
    return true;
}

namespace {

enum class Edge { Left, Right, Top, Bottom };

/// How far `point` lies on the inner side of an edge of `box`; negative outside.
double inside(QPointF point, const QRectF& box, Edge edge)
{
    switch (edge) {
    case Edge::Left:
        return point.x() - box.left();
    case Edge::Right:
        return box.right() - point.x();
    case Edge::Top:
        return point.y() - box.top();
    default:
        return box.bottom() - point.y();
    }
}

QPolygonF cutAt(const QPolygonF& points, const QRectF& box, Edge edge)
{
    QPolygonF out;
    out.reserve(points.size() + 8);
    for (qsizetype i = 0; i < points.size(); ++i) {
        const QPointF from = points[i == 0 ? points.size() - 1 : i - 1];
        const QPointF to = points[i];
        const double fromDepth = inside(from, box, edge);
        const double toDepth = inside(to, box, edge);
        if ((fromDepth < 0) != (toDepth < 0))
            out.append(from + (to - from) * (fromDepth / (fromDepth - toDepth)));
        if (toDepth >= 0)
            out.append(to);
    }
    return out;
}

/// Shortens the line from `from` to `to` to what lies inside `box`; false when nothing does.
bool shorten(QPointF& from, QPointF& to, const QRectF& box)
{
    for (const Edge edge : {Edge::Left, Edge::Right, Edge::Top, Edge::Bottom}) {
        const double fromDepth = inside(from, box, edge);
        const double toDepth = inside(to, box, edge);
        if (fromDepth < 0 && toDepth < 0)
            return false;
        if (fromDepth < 0)
            from += (to - from) * (fromDepth / (fromDepth - toDepth));
        else if (toDepth < 0)
            to += (from - to) * (toDepth / (toDepth - fromDepth));
    }
    return true;
}

} // namespace

QPolygonF clippedFigure(const QPolygonF& points, const QRectF& box)
{
    QPolygonF out = points;
    for (const Edge edge : {Edge::Left, Edge::Right, Edge::Top, Edge::Bottom})
        out = cutAt(out, box, edge);
    return out;
}

QList<QPolygonF> clippedLine(const QPolygonF& points, const QRectF& box)
{
    QList<QPolygonF> pieces;
    for (qsizetype i = 1; i < points.size(); ++i) {
        QPointF from = points[i - 1];
        QPointF to = points[i];
        if (!shorten(from, to, box))
            continue;
        if (!pieces.isEmpty() && pieces.last().last() == from)
            pieces.last().append(to);
        else
            pieces.append(QPolygonF{from, to});
    }
    return pieces;
}

} // namespace quorvia::engine
