#include "engine/codecs/wmf/WmfState.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::engine {

QRectF pixelBox(const WmfMapping& mapping, QPoint one, QPoint other)
{
    return QRectF(mapping.map(one), mapping.map(other)).normalized();
}

QRect wholePixels(const QRectF& box)
{
    const QPoint first(int(std::lround(box.left())), int(std::lround(box.top())));
    const QPoint behind(int(std::lround(box.right())), int(std::lround(box.bottom())));
    return QRect(first, QSize(behind.x() - first.x(), behind.y() - first.y()));
}

double workOfRegion(qsizetype rects)
{
    constexpr double each = 100;
    return double(rects) * (each + double(rects) / 4);
}

namespace {

constexpr size_t mostSaved = 1000;      // contexts; real files nest a handful
constexpr int mostClipRects = 4096;     // a clip of more pieces is not cut any further
constexpr double workPerClipRect = 100; // in filled pixels

QList<qreal> dashesOf(WmfLine line, double width)
{
    // In pen widths; the dashes of a thin pen are three times as long.
    const double unit = width < 2 ? 3 : 1;
    switch (line) {
    case WmfLine::Dash:
        return {6 * unit, 2 * unit};
    case WmfLine::Dot:
        return {unit, unit};
    case WmfLine::DashDot:
        return {3 * unit, 2 * unit, unit, 2 * unit};
    case WmfLine::DashDotDot:
        return {3 * unit, unit, unit, unit, unit, unit};
    default:
        return {};
    }
}

Qt::PenCapStyle capOf(int style)
{
    switch (style & 0xF00) {
    case 0x100:
        return Qt::SquareCap;
    case 0x200:
        return Qt::FlatCap;
    default:
        return Qt::RoundCap;
    }
}

Qt::PenJoinStyle joinOf(int style)
{
    switch (style & 0xF000) {
    case 0x1000:
        return Qt::BevelJoin;
    case 0x2000:
        return Qt::MiterJoin;
    default:
        return Qt::RoundJoin;
    }
}

QPen solidPen(const WmfState& state, WmfColor color)
{
    constexpr double widest = 65536; // pixels; more than any picture has
    QPen pen{QColor(state.rgb(color))};
    pen.setWidthF(std::clamp(state.pen.width * state.mapping.scale(), 1.0, widest));
    pen.setCapStyle(capOf(state.pen.capsAndJoins));
    pen.setJoinStyle(joinOf(state.pen.capsAndJoins));
    constexpr double miterLimit = 10;
    pen.setMiterLimit(miterLimit);
    return pen;
}

} // namespace

QBrush qtBrushOf(const WmfBrush& brush, const WmfState& state)
{
    switch (brush.kind) {
    case WmfBrush::Kind::None:
        return {};
    case WmfBrush::Kind::Solid:
        return QBrush(QColor(state.rgb(brush.color)));
    case WmfBrush::Kind::Hatch:
        return QBrush(hatchTile(brush.hatch, state.rgb(brush.color),
                                state.opaque ? state.rgb(state.bkColor) : qRgba(0, 0, 0, 0)));
    default:
        break;
    }
    if (!brush.twoColored)
        return QBrush(brush.tile);
    QImage tile = brush.tile.convertToFormat(QImage::Format_Mono);
    const bool blackFirst = qGray(tile.color(0)) < qGray(tile.color(1));
    const QRgb text = state.rgb(state.textColor);
    const QRgb ground = state.rgb(state.bkColor);
    tile.setColorTable({blackFirst ? text : ground, blackFirst ? ground : text});
    return QBrush(tile.convertToFormat(QImage::Format_RGB32));
}

std::optional<WmfFill> fillOf(const WmfState& state)
{
    const auto mode = compositionOf(state.rop2);
    if (!mode || state.brush.kind == WmfBrush::Kind::None)
        return std::nullopt;
    return WmfFill{qtBrushOf(state.brush, state), state.winding ? Qt::WindingFill : Qt::OddEvenFill, *mode};
}

std::optional<WmfStroke> strokeOf(const WmfState& state)
{
    const auto mode = compositionOf(state.rop2);
    if (!mode || state.pen.line == WmfLine::None)
        return std::nullopt;
    QPen pen = solidPen(state, state.pen.color);
    const QList<qreal> dashes = dashesOf(state.pen.line, pen.widthF());
    if (!dashes.isEmpty()) {
        pen.setDashPattern(dashes);
        pen.setCapStyle(Qt::FlatCap);
    }
    return WmfStroke{pen, *mode};
}

std::optional<WmfStroke> groundStrokeOf(const WmfState& state)
{
    const bool dashed = state.pen.line != WmfLine::Solid && state.pen.line != WmfLine::None &&
                        state.pen.line != WmfLine::InsideFrame;
    const auto mode = compositionOf(state.rop2);
    if (!dashed || !state.opaque || mode != QPainter::CompositionMode_SourceOver)
        return std::nullopt;
    QPen pen = solidPen(state, state.bkColor);
    pen.setCapStyle(Qt::FlatCap);
    return WmfStroke{pen, *mode};
}

namespace {

QRegion clipOf(const WmfContext& context)
{
    return context.state.clip.value_or(QRegion(context.canvas.image().rect()));
}

void setClip(WmfContext& context, std::optional<QRegion> clip)
{
    context.state.clipHold.reset();
    if (clip && clip->rectCount() > 1) {
        context.state.clipHold = context.memory.take(clip->rectCount() * qint64(sizeof(QRect)));
        if (!context.state.clipHold) {
            clip = QRegion(clip->boundingRect());
            context.complete = false;
        }
    }
    context.state.clip = std::move(clip);
    if (context.canvas.isMeasuring())
        return;
    if (context.state.clip)
        context.canvas.spend(workPerClipRect * context.state.clip->rectCount());
    context.canvas.setClip(context.state.clip);
}

void cutClip(WmfContext& context, const WmfParams& params, bool keepInside)
{
    // Cutting a piece out takes time by the number of pieces.
    const QRegion clip = clipOf(context);
    if (clip.rectCount() > mostClipRects)
        return;
    const QRegion box = wholePixels(pixelBox(context.state.mapping, params.pointYX(2), params.pointYX(0)));
    setClip(context, keepInside ? clip & box : clip - box);
}

} // namespace

void selectClip(WmfContext& context, int number)
{
    const auto* region = context.objects.findAs<WmfRegion>(number);
    if (!region) {
        setClip(context, std::nullopt);
        return;
    }
    if (!context.canvas.spend(workOfRegion(region->rects.size())))
        return;
    QRegion clip;
    for (const QRect& rect : region->rects)
        clip += wholePixels(pixelBox(context.state.mapping, rect.topLeft(),
                                     rect.topLeft() + QPoint(rect.width(), rect.height())));
    setClip(context, clip);
}

namespace {

void offsetClip(WmfContext& context, QPoint by)
{
    if (!context.state.clip)
        return;
    const QPointF pixels = context.state.mapping.mapVector(by);
    setClip(context,
            context.state.clip->translated(int(std::lround(pixels.x())), int(std::lround(pixels.y()))));
}

void restore(WmfContext& context, int number)
{
    const qint64 count = qint64(context.saved.size());
    const qint64 wanted = number < 0 ? count + number : number - 1;
    if (number == 0 || wanted < 0 || wanted >= count)
        return;
    context.state = context.saved[size_t(wanted)];
    context.saved.resize(size_t(wanted), context.state);
    setClip(context, context.state.clip);
}

bool playMapping(WmfMapping& mapping, WmfFunction function, const WmfParams& params)
{
    const QPoint given = params.pointYX(0);
    const QSize extent(given.x(), given.y());
    switch (function) {
    case WmfFunction::SetMapMode:
        mapping.setMode(params.word(0));
        return true;
    case WmfFunction::SetWindowOrg:
        mapping.setWindowOrg(given);
        return true;
    case WmfFunction::SetWindowExt:
        mapping.setWindowExt(extent);
        return true;
    case WmfFunction::SetViewportOrg:
        mapping.setViewportOrg(given);
        return true;
    case WmfFunction::SetViewportExt:
        mapping.setViewportExt(extent);
        return true;
    case WmfFunction::OffsetWindowOrg:
        mapping.offsetWindowOrg(given);
        return true;
    case WmfFunction::OffsetViewportOrg:
        mapping.offsetViewportOrg(given);
        return true;
    case WmfFunction::ScaleWindowExt: // y denominator, y numerator, x denominator, x numerator
        mapping.scaleWindowExt({params.word(3), params.word(1)}, {params.word(2), params.word(0)});
        return true;
    case WmfFunction::ScaleViewportExt:
        mapping.scaleViewportExt({params.word(3), params.word(1)}, {params.word(2), params.word(0)});
        return true;
    default:
        return false;
    }
}

bool playMode(WmfState& state, WmfFunction function, const WmfParams& params)
{
    switch (function) {
    case WmfFunction::SetBkMode:
        state.opaque = params.word(0) != 1;
        return true;
    case WmfFunction::SetRop2:
        state.rop2 = params.word(0);
        return true;
    case WmfFunction::SetPolyFillMode:
        state.winding = params.word(0) == 2;
        return true;
    case WmfFunction::SetStretchMode:
        state.stretchMode = params.word(0);
        return true;
    case WmfFunction::SetTextCharExtra:
        state.charExtra = params.word(0);
        return true;
    case WmfFunction::SetTextAlign:
        state.textAlign = params.unsignedWord(0);
        return true;
    case WmfFunction::SetTextJustification:
        state.breakCount = params.unsignedWord(0);
        state.breakExtra = params.word(1);
        return true;
    case WmfFunction::SetBkColor:
        state.bkColor = params.doubleWord(0);
        return true;
    case WmfFunction::SetTextColor:
        state.textColor = params.doubleWord(0);
        return true;
    default:
        return false;
    }
}

} // namespace

bool playState(WmfContext& context, const WmfRecord& record, const WmfParams& params)
{
    if (playMapping(context.state.mapping, record.function, params) ||
        playMode(context.state, record.function, params))
        return true;
    switch (record.function) {
    case WmfFunction::SaveDc:
        if (context.saved.size() < mostSaved)
            context.saved.push_back(context.state);
        return true;
    case WmfFunction::RestoreDc:
        restore(context, params.word(0));
        return true;
    case WmfFunction::IntersectClipRect:
        cutClip(context, params, true);
        return true;
    case WmfFunction::ExcludeClipRect:
        cutClip(context, params, false);
        return true;
    case WmfFunction::SelectClipRegion:
        selectClip(context, params.unsignedWord(0));
        return true;
    case WmfFunction::OffsetClipRegion:
        offsetClip(context, params.pointYX(0));
        return true;
    default:
        return false;
    }
}

} // namespace quorvia::engine
