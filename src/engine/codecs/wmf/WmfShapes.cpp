#include "engine/codecs/wmf/WmfShapes.h"

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

namespace {

void strokeLines(WmfContext& context, const QList<QPolygonF>& lines, bool closed)
{
    if (const auto ground = groundStrokeOf(context.state))
        context.canvas.stroke(lines, closed, *ground);
    if (const auto stroke = strokeOf(context.state))
        context.canvas.stroke(lines, closed, *stroke);
}

void fillFigures(WmfContext& context, const QList<QPolygonF>& figures)
{
    if (const auto fill = fillOf(context.state))
        context.canvas.fill(figures, *fill);
}

/// `count` points from word `first` of `params` on, in pixels; fewer when the record is shorter.
QPolygonF pointsOf(const WmfContext& context, const WmfParams& params, qsizetype first, qsizetype count)
{
    const qsizetype there = std::max<qsizetype>((params.words() - first) / 2, 0);
    QPolygonF points;
    points.reserve(std::min(count, there));
    for (qsizetype i = 0; i < std::min(count, there); ++i)
        points.append(context.state.mapping.map(params.point(first + 2 * i)));
    return points;
}

void drawPolygon(WmfContext& context, const WmfParams& params)
{
    const QPolygonF points = pointsOf(context, params, 1, params.unsignedWord(0));
    if (points.size() < 2)
        return;
    fillFigures(context, {points});
    strokeLines(context, {points}, true);
}

void drawPolyPolygon(WmfContext& context, const WmfParams& params)
{
    const qsizetype count = params.unsignedWord(0);
    qsizetype at = 1 + count;
    QList<QPolygonF> figures;
    for (qsizetype i = 0; i < count && at < params.words(); ++i) {
        const qsizetype points = params.unsignedWord(1 + i);
        const QPolygonF figure = pointsOf(context, params, at, points);
        at += 2 * points;
        if (figure.size() >= 2)
            figures.append(figure);
    }
    fillFigures(context, figures);
    strokeLines(context, figures, true);
}

void drawPolyline(WmfContext& context, const WmfParams& params)
{
    const QPolygonF points = pointsOf(context, params, 1, params.unsignedWord(0));
    if (points.size() >= 2)
        strokeLines(context, {points}, false);
}

void drawLineTo(WmfContext& context, QPoint end)
{
    const WmfMapping& mapping = context.state.mapping;
    strokeLines(context, {QPolygonF{mapping.map(context.state.position), mapping.map(end)}}, false);
    context.state.position = end;
}

/// The box of a shape with a frame: right and bottom lie outside of it, so that the line's middle is one
/// pixel nearer. A pen that draws inside the frame moves in by half its width.
QRectF outlineBox(const WmfState& state, const QRectF& box)
{
    const double inset = state.pen.line == WmfLine::InsideFrame
                             ? std::max((state.pen.width * state.mapping.scale() - 1) / 2, 0.0)
                             : 0;
    const QRectF outline = box.adjusted(inset, inset, -1 - inset, -1 - inset);
    return outline.width() < 0 || outline.height() < 0 ? QRectF(box.topLeft(), QSizeF(0, 0)) : outline;
}

QPolygonF cornersOf(const QRectF& box)
{
    return {box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()};
}

QRectF boxAt(const WmfContext& context, const WmfParams& params, qsizetype word)
{
    return pixelBox(context.state.mapping, params.pointYX(word + 2), params.pointYX(word));
}

void drawRectangle(WmfContext& context, const WmfParams& params)
{
    const QRectF box = wholePixels(boxAt(context, params, 0));
    if (box.isEmpty())
        return;
    fillFigures(context, {cornersOf(box)});
    strokeLines(context, {cornersOf(outlineBox(context.state, box))}, true);
}

void drawRoundRect(WmfContext& context, const WmfParams& params)
{
    const QRectF box = wholePixels(boxAt(context, params, 2));
    if (box.isEmpty())
        return;
    const QPointF corner = context.state.mapping.mapVector(params.pointYX(0));
    const QSizeF size(std::abs(corner.x()), std::abs(corner.y()));
    fillFigures(context, {roundedRect(box, size)});
    strokeLines(context, {roundedRect(outlineBox(context.state, box), size)}, true);
}

/// The whole turn of an ellipse without the last point, which is the first.
QPolygonF ellipse(const QRectF& box)
{
    constexpr double turn = 6.283185307179586;
    QPolygonF points = arcPoints(box, 0, turn);
    points.removeLast();
    return points;
}

/// The line of a framed shape runs through the middle of pixels, so its fill does where there is a line.
QRectF fillBox(const WmfState& state, const QRectF& box)
{
    return state.pen.line == WmfLine::None ? box : outlineBox(state, box).translated(0.5, 0.5);
}

void drawEllipse(WmfContext& context, const WmfParams& params)
{
    const QRectF box = boxAt(context, params, 0);
    if (box.isEmpty())
        return;
    fillFigures(context, {ellipse(fillBox(context.state, box))});
    strokeLines(context, {ellipse(outlineBox(context.state, box))}, true);
}

void drawArc(WmfContext& context, WmfFunction function, const WmfParams& params)
{
    const WmfMapping& mapping = context.state.mapping;
    const QRectF box = boxAt(context, params, 4);
    const WmfSweep arc = arcSweep(box, mapping.map(params.pointYX(2)), mapping.map(params.pointYX(0)));
    const auto shape = [&](const QRectF& in) {
        QPolygonF points = arcPoints(in, arc.start, arc.sweep);
        if (function == WmfFunction::Pie)
            points.append(in.center());
        return points;
    };
    const bool closed = function != WmfFunction::Arc;
    if (closed)
        fillFigures(context, {shape(fillBox(context.state, box))});
    strokeLines(context, {shape(outlineBox(context.state, box))}, closed);
}

void drawPixel(WmfContext& context, const WmfParams& params)
{
    const QPoint at = params.pointYX(2);
    const QRect cell = wholePixels(pixelBox(context.state.mapping, at, at + QPoint(1, 1)));
    const QRectF box(cell.topLeft(), cell.size().expandedTo(QSize(1, 1)));
    context.canvas.fill({cornersOf(box)}, {QColor(context.state.rgb(params.doubleWord(0)))});
}

QList<QPolygonF> figuresOf(const WmfContext& context, const WmfRegion& region)
{
    QList<QPolygonF> figures;
    for (const QRect& rect : region.rects)
        figures.append(cornersOf(wholePixels(pixelBox(
            context.state.mapping, rect.topLeft(), rect.topLeft() + QPoint(rect.width(), rect.height())))));
    return figures;
}

/// Fills a region with `brush` at present.
void fillRegion(WmfContext& context, int number, const WmfBrush& brush)
{
    const auto* region = context.objects.findAs<WmfRegion>(number);
    const auto mode = compositionOf(context.state.rop2);
    if (!region || !mode || brush.kind == WmfBrush::Kind::None)
        return;
    context.canvas.fill(figuresOf(context, *region),
                        {qtBrushOf(brush, context.state), Qt::WindingFill, *mode});
}

void invertRegion(WmfContext& context, int number)
{
    if (const auto* region = context.objects.findAs<WmfRegion>(number))
        context.canvas.fill(figuresOf(context, *region),
                            {QColor(Qt::black), Qt::WindingFill, QPainter::RasterOp_NotDestination});
}

/// Fills a strip of the given width and height along the inside of a region.
void frameRegion(WmfContext& context, const WmfParams& params)
{
    const auto* region = context.objects.findAs<WmfRegion>(params.unsignedWord(0));
    const auto* brush = context.objects.findAs<WmfBrush>(params.unsignedWord(1));
    const auto mode = compositionOf(context.state.rop2);
    if (!region || !brush || !mode || brush->kind == WmfBrush::Kind::None)
        return;
    const QPointF strip = context.state.mapping.mapVector(params.pointYX(2));
    const int width = std::max(int(std::lround(std::abs(strip.x()))), 1);
    const int height = std::max(int(std::lround(std::abs(strip.y()))), 1);
    if (!context.canvas.spend(workOfRegion(region->rects.size())))
        return;
    QRegion whole;
    for (const QPolygonF& figure : figuresOf(context, *region))
        whole += wholePixels(figure.boundingRect());
    const QRegion inner = whole.translated(width, 0) & whole.translated(-width, 0) &
                          whole.translated(0, height) & whole.translated(0, -height);
    QList<QPolygonF> figures;
    for (const QRect& rect : whole - inner)
        figures.append(cornersOf(rect));
    context.canvas.fill(figures, {qtBrushOf(*brush, context.state), Qt::WindingFill, *mode});
}

bool playRegion(WmfContext& context, WmfFunction function, const WmfParams& params)
{
    const int number = params.unsignedWord(0);
    switch (function) {
    case WmfFunction::PaintRegion:
        fillRegion(context, number, context.state.brush);
        return true;
    case WmfFunction::FillRegion:
        if (const auto* brush = context.objects.findAs<WmfBrush>(params.unsignedWord(1)))
            fillRegion(context, number, *brush);
        return true;
    case WmfFunction::InvertRegion:
        invertRegion(context, number);
        return true;
    case WmfFunction::FrameRegion:
        frameRegion(context, params);
        return true;
    default:
        return false;
    }
}

} // namespace

bool playShape(WmfContext& context, const WmfRecord& record, const WmfParams& params)
{
    switch (record.function) {
    case WmfFunction::MoveTo:
        context.state.position = params.pointYX(0);
        return true;
    case WmfFunction::LineTo:
        drawLineTo(context, params.pointYX(0));
        return true;
    case WmfFunction::Polyline:
        drawPolyline(context, params);
        return true;
    case WmfFunction::Polygon:
        drawPolygon(context, params);
        return true;
    case WmfFunction::PolyPolygon:
        drawPolyPolygon(context, params);
        return true;
    case WmfFunction::Rectangle:
        drawRectangle(context, params);
        return true;
    case WmfFunction::RoundRect:
        drawRoundRect(context, params);
        return true;
    case WmfFunction::Ellipse:
        drawEllipse(context, params);
        return true;
    case WmfFunction::Arc:
    case WmfFunction::Pie:
    case WmfFunction::Chord:
        drawArc(context, record.function, params);
        return true;
    case WmfFunction::SetPixel:
        drawPixel(context, params);
        return true;
    default:
        return playRegion(context, record.function, params);
    }
}

} // namespace quorvia::engine
