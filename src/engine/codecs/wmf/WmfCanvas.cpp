#include "engine/codecs/wmf/WmfCanvas.h"

#include "engine/codecs/wmf/WmfGeometry.h"

#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::engine {

namespace {

/// What may be spent on a picture: every pixel drawn over a few hundred times, enough for a detailed small
/// one, and less often for a large one, down to a bitmap of its size.
double workFor(QSize size)
{
    constexpr double layers = 300;
    constexpr double least = 1e9;
    constexpr double most = 4e9;
    constexpr double oneBitmap = 20;
    const double pixels = double(size.width()) * size.height();
    return std::max(std::clamp(layers * pixels, least, most), oneBitmap * pixels);
}

QRectF boundsOf(const QList<QPolygonF>& figures)
{
    QRectF bounds;
    for (const QPolygonF& figure : figures) {
        // Flat figures have an area too, else a union leaves them out.
        if (!figure.isEmpty())
            bounds |= figure.boundingRect().adjusted(0, 0, 1, 1);
    }
    return bounds;
}

bool areUpright(const QList<QPolygonF>& figures, bool closed)
{
    return std::all_of(figures.begin(), figures.end(),
                       [closed](const QPolygonF& figure) { return isUpright(figure, closed); });
}

QPolygonF rounded(const QPolygonF& points)
{
    QPolygonF out = points;
    for (QPointF& point : out)
        point = QPointF(std::round(point.x()), std::round(point.y()));
    return out;
}

QPolygonF withoutLastPixel(QPolygonF line)
{
    const QPointF edge = line.last() - line[line.size() - 2];
    const double length = std::hypot(edge.x(), edge.y());
    constexpr double hardlyAny = 0.001; // the first pixel stays in
    if (length >= 1)
        line.last() -= edge / length * (length > 1 ? 1 : 1 - hardlyAny);
    return line;
}

/// True when all of `points` lie in `box`; a level or upright line has no area, but a place.
bool liesIn(const QPolygonF& points, const QRectF& box)
{
    const QRectF bounds = points.boundingRect();
    return bounds.left() >= box.left() && bounds.right() <= box.right() && bounds.top() >= box.top() &&
           bounds.bottom() <= box.bottom();
}

/// The line along a box without width or height; one that is drawn, though the box be a point.
QPolygonF withBothEnds(const QRectF& box)
{
    constexpr double hardlyAny = 0.001;
    return {box.topLeft(), box.isNull() ? box.topLeft() + QPointF(hardlyAny, 0) : box.bottomRight()};
}

/// Lines further out than this many pixels are cut before they reach the painter.
constexpr double farOut = 1024;

} // namespace

std::optional<QPainter::CompositionMode> compositionOf(int rop2)
{
    using Painter = QPainter;
    constexpr std::array<Painter::CompositionMode, 16> modes = {
        Painter::RasterOp_ClearDestination,        Painter::RasterOp_NotSourceAndNotDestination,
        Painter::RasterOp_NotSourceAndDestination, Painter::RasterOp_NotSource,
        Painter::RasterOp_SourceAndNotDestination, Painter::RasterOp_NotDestination,
        Painter::RasterOp_SourceXorDestination,    Painter::RasterOp_NotSourceOrNotDestination,
        Painter::RasterOp_SourceAndDestination,    Painter::RasterOp_NotSourceXorDestination,
        Painter::CompositionMode_Destination,      Painter::RasterOp_NotSourceOrDestination,
        Painter::CompositionMode_SourceOver,       Painter::RasterOp_SourceOrNotDestination,
        Painter::RasterOp_SourceOrDestination,     Painter::RasterOp_SetDestination,
    };
    constexpr int nop = 11;
    constexpr int copy = 13;
    if (rop2 == nop)
        return std::nullopt;
    return rop2 >= 1 && rop2 <= 16 ? modes[size_t(rop2 - 1)] : modes[copy - 1];
}

WmfCanvas::WmfCanvas(QSize size)
    : m_image(allocateImage(size, QImage::Format_RGB32)), m_workLeft(workFor(size))
{
    if (m_image.isNull())
        return;
    m_image.fill(Qt::white);
    m_painter.begin(&m_image);
}

WmfCanvas::~WmfCanvas() = default;

void WmfCanvas::setClip(const std::optional<QRegion>& clip)
{
    m_isClipped = clip.has_value();
    m_clip = clip.value_or(QRegion());
    if (!isUsable())
        return;
    if (m_isClipped)
        m_painter.setClipRegion(m_clip);
    else
        m_painter.setClipping(false);
}

QRect WmfCanvas::reach() const
{
    return m_isClipped ? m_image.rect() & m_clip.boundingRect() : m_image.rect();
}

QRectF WmfCanvas::nearby(double margin) const
{
    return QRectF(m_image.rect()).adjusted(-margin, -margin, margin, margin);
}

void WmfCanvas::note(const QRectF& box)
{
    ++m_drawings;
    if (isMeasuring() && !m_exhausted)
        m_noted |= box;
}

bool WmfCanvas::spend(double work)
{
    m_workLeft -= work;
    m_exhausted = m_exhausted || m_workLeft < 0;
    return !m_exhausted;
}

WmfCanvas::Cost WmfCanvas::costOf(const QList<QPolygonF>& figures, double widthPixels) const
{
    const double width = m_image.width() + 2 * farOut;
    const double height = m_image.height() + 2 * farOut;
    Cost cost;
    for (const QPolygonF& figure : figures) {
        cost.points += double(figure.size());
        for (qsizetype i = 0; i < figure.size(); ++i) {
            const QPointF edge = figure[i] - figure[i == 0 ? figure.size() - 1 : i - 1];
            cost.edges += std::min(std::abs(edge.x()), width) + std::min(std::abs(edge.y()), height);
        }
    }
    const QRectF shown =
        boundsOf(figures).adjusted(-widthPixels, -widthPixels, widthPixels, widthPixels) & QRectF(reach());
    cost.rows = std::max(shown.height(), 1.0);
    cost.area = std::max(shown.width() * shown.height(), 0.0);
    return cost;
}

bool WmfCanvas::spendOnFill(const Cost& cost)
{
    // The rasteriser keeps the crossings of a row in a list and walks along it for each new one.
    constexpr double perPoint = 50;
    constexpr double perCrossing = 20;
    constexpr double perStep = 2;
    const double crossings = std::min(cost.edges, cost.area * cost.points) + cost.points;
    const double walked = crossings * (crossings / cost.rows) * perStep;
    return spend(cost.area + perPoint * cost.points + perCrossing * crossings + walked);
}

bool WmfCanvas::spendOnStroke(Cost cost, const QPen& pen)
{
    // Thin lines are drawn pixel by pixel, wide ones as filled outlines with round joints.
    constexpr double perPixel = 60;
    constexpr double perPoint = 200;
    if (pen.widthF() <= 1)
        return spend(perPixel * cost.edges + perPoint * cost.points);
    const double dashes = pen.style() == Qt::SolidLine ? 0 : cost.edges / pen.widthF();
    const double joint = std::min(pen.widthF(), cost.rows);
    cost.edges = 2 * cost.edges + 4 * joint * (cost.points + dashes);
    cost.points = 8 * (cost.points + dashes);
    return spendOnFill(cost);
}

void WmfCanvas::fill(const QList<QPolygonF>& figures, const WmfFill& fill)
{
    note(boundsOf(figures));
    if (!isUsable() || fill.brush.style() == Qt::NoBrush)
        return;
    const bool smooth = fill.mode == QPainter::CompositionMode_SourceOver && !areUpright(figures, true);
    const QRectF box = nearby(farOut);
    QPainterPath path;
    path.setFillRule(fill.rule);
    QList<QPolygonF> shown;
    for (const QPolygonF& figure : figures) {
        const QPolygonF placed = smooth ? figure : rounded(figure);
        const QPolygonF clipped = liesIn(placed, box) ? placed : clippedFigure(placed, box);
        if (clipped.size() < 3)
            continue;
        path.addPolygon(clipped);
        path.closeSubpath();
        shown.append(clipped);
    }
    Cost cost = costOf(shown, 0);
    constexpr double tileCost = 4; // of a pixel, as much as four plain ones
    cost.area *= fill.brush.style() == Qt::TexturePattern ? tileCost : 1;
    if (path.isEmpty() || !spendOnFill(cost))
        return;
    m_painter.setRenderHint(QPainter::Antialiasing, smooth);
    m_painter.setCompositionMode(fill.mode);
    m_painter.fillPath(path, fill.brush);
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void WmfCanvas::stroke(const QList<QPolygonF>& lines, bool closed, const WmfStroke& stroke)
{
    QPen pen = stroke.pen;
    const double half = pen.widthF() / 2;
    note(boundsOf(lines).adjusted(-half, -half, half, half));
    if (!isUsable() || pen.style() == Qt::NoPen)
        return;
    const bool upright = areUpright(lines, closed);
    if (upright)
        pen.setWidthF(std::max(std::round(pen.widthF()), 1.0));
    const bool thin = pen.widthF() < 1.5;
    if (thin)
        pen.setCapStyle(Qt::SquareCap);
    if (thin && upright)
        pen.setJoinStyle(Qt::MiterJoin);
    // A line of an odd width runs through the middle of pixels, one of an even width between them.
    const bool odd = int(std::lround(pen.widthF())) % 2 != 0;
    const QPointF shift = odd ? QPointF(0.5, 0.5) : QPointF();
    const QRectF box = nearby(farOut + pen.widthF());
    QPainterPath path;
    QList<QPolygonF> shown;
    for (const QPolygonF& line : lines) {
        if (line.size() < 2)
            continue;
        QPolygonF placed = upright ? rounded(line) : line;
        placed.translate(shift);
        const QSizeF extent = placed.boundingRect().size();
        if (thin && !closed && extent.isNull())
            continue; // ends before its last pixel, and has no other
        // An outline that goes back on itself is a line with both ends.
        const bool flat = thin && closed && upright && (extent.width() == 0 || extent.height() == 0);
        if (flat)
            placed = withBothEnds(placed.boundingRect());
        if (liesIn(placed, box)) {
            path.addPolygon(thin && !closed ? withoutLastPixel(placed) : placed);
            if (closed && !flat)
                path.closeSubpath();
            shown.append(placed);
            continue;
        }
        if (closed && !flat)
            placed.append(placed.first());
        for (const QPolygonF& piece : clippedLine(placed, box)) {
            path.addPolygon(piece);
            shown.append(piece);
        }
    }
    // The painter has a quick way for lines of up to one pixel, which leaves corners out.
    constexpr double exact = 1.001;
    if (thin && upright && pen.style() == Qt::SolidLine)
        pen.setWidthF(exact);
    if (path.isEmpty() || !spendOnStroke(costOf(shown, pen.widthF()), pen))
        return;
    m_painter.setRenderHint(QPainter::Antialiasing, stroke.mode == QPainter::CompositionMode_SourceOver);
    m_painter.setCompositionMode(stroke.mode);
    m_painter.strokePath(path, pen);
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void WmfCanvas::put(QPoint at, const QImage& pixels)
{
    if (!isUsable() || !spend(2.0 * pixels.width() * pixels.height()))
        return;
    m_painter.setCompositionMode(QPainter::CompositionMode_Source);
    m_painter.drawImage(at, pixels);
    m_painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

QImage WmfCanvas::take()
{
    if (m_painter.isActive())
        m_painter.end();
    return std::move(m_image);
}

} // namespace quorvia::engine
