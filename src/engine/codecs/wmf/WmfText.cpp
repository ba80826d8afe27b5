#include "engine/codecs/wmf/WmfText.h"

#include "engine/codecs/wmf/WmfCharset.h"
#include "engine/codecs/wmf/WmfFonts.h"

#include <QFontMetricsF>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

namespace {

/// One text as a record asks for it.
struct Request
{
    QByteArray text;
    QPoint at; ///< units
    int options = 0;
    std::optional<QRectF> box; ///< pixels; for Opaque and Clipped
    QList<int> steps;          ///< units from letter to letter, one a byte; may be empty
    QList<int> drops;          ///< the same downwards, with PairedSteps
};

constexpr int opaqueOption = 0x2;
constexpr int clippedOption = 0x4;
constexpr int glyphOption = 0x10;
constexpr int rightToLeftOption = 0x80;
constexpr int pairedStepsOption = 0x2000;

constexpr int updatePosition = 0x1; // of the text alignment
constexpr int horizontalMask = 0x6;
constexpr int rightAligned = 0x2;
constexpr int centered = 0x6;
constexpr int verticalMask = 0x18;
constexpr int bottomAligned = 0x8;
constexpr int baselineAligned = 0x18;
constexpr int rightToLeftAlign = 0x100;

Request textOutOf(const WmfParams& params)
{
    const qsizetype count = params.unsignedWord(0);
    const qsizetype behind = 1 + (count + 1) / 2;
    Request request;
    request.text = params.bytes(2, count);
    request.at = params.pointYX(behind);
    return request;
}

Request extTextOutOf(const WmfContext& context, const WmfParams& params)
{
    Request request;
    request.at = params.pointYX(0);
    const qsizetype count = params.unsignedWord(2);
    request.options = params.unsignedWord(3);
    qsizetype at = 4;
    if ((request.options & (opaqueOption | clippedOption)) != 0) {
        request.box = pixelBox(context.state.mapping, params.point(at), params.point(at + 2));
        at += 4;
    }
    request.text = params.bytes(2 * at, count);
    at += (count + 1) / 2;
    const bool paired = (request.options & pairedStepsOption) != 0;
    const qsizetype words = request.text.size() * (paired ? 2 : 1);
    if (words == 0 || params.words() - at < words)
        return request;
    for (qsizetype i = 0; i < words; i += paired ? 2 : 1) {
        request.steps.append(params.word(at + i));
        if (paired)
            request.drops.append(params.word(at + i + 1));
    }
    return request;
}

QList<WmfLetter> lettersOf(const WmfFont& font, const QByteArray& text)
{
    const WmfSigns signs = wmfSignsOf(wmfFaceName(font));
    return signs == WmfSigns::None ? wmfLetters(text, font.charset) : wmfSignLetters(text, signs);
}

bool runsFromTheRight(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar letter) {
        return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
    });
}

/// A text on its baseline, in pixels from its beginning.
struct Line
{
    struct Piece
    {
        QString text;
        QPointF at;
        double across = 1; ///< further stretching, for a text that is drawn as a whole
    };
    QList<Piece> pieces;
    double width = 0;
};

/// Distances in pixels that the records give in units.
double across(const WmfState& state, double units)
{
    return std::copysign(state.mapping.mapVector(QPointF(units, 0)).x(), units);
}

/// The letters at the places that the record gives.
Line steppedLine(const WmfState& state, const Request& request, const QList<WmfLetter>& letters)
{
    Line line;
    QPointF at;
    qsizetype byte = 0;
    for (const WmfLetter& letter : letters) {
        line.pieces.append({letter.text, at, 1});
        for (int i = 0; i < letter.bytes && byte < request.steps.size(); ++i, ++byte) {
            at.rx() += across(state, request.steps[byte]);
            if (!request.drops.isEmpty())
                at.ry() += state.mapping.mapVector(QPointF(0, request.drops[byte])).y();
        }
    }
    line.width = at.x();
    return line;
}

/// The letters one behind the other, with extra room as the context asks for it.
Line spacedLine(const WmfState& state, const WmfFace& face, const QList<WmfLetter>& letters)
{
    const QFontMetricsF metrics(face.font);
    const double extra = across(state, state.charExtra);
    const double blank =
        state.breakCount > 0 ? across(state, double(state.breakExtra) / state.breakCount) : 0;
    Line line;
    for (const WmfLetter& letter : letters) {
        line.pieces.append({letter.text, {line.width, 0}, 1});
        line.width += metrics.horizontalAdvance(letter.text) * face.across + extra;
        if (letter.text == QLatin1String(" "))
            line.width += blank;
    }
    return line;
}

/// The text as a whole, so that its letters join and run as its script has it; stretched to `width` pixels
/// when that is above 0.
Line wholeLine(const WmfFace& face, const QString& text, double width)
{
    const double own = QFontMetricsF(face.font).horizontalAdvance(text) * face.across;
    const double stretch = width > 0 && own > 0 ? std::clamp(width / own, 0.5, 2.0) : 1;
    return {{{text, {}, stretch}}, own * stretch};
}

Line lineOf(const WmfState& state, const Request& request, const WmfFace& face)
{
    const QList<WmfLetter> letters = lettersOf(state.font, request.text);
    QString text;
    for (const WmfLetter& letter : letters)
        text += letter.text;
    const bool stepped = !request.steps.isEmpty();
    if (runsFromTheRight(text))
        return wholeLine(face, text, stepped ? steppedLine(state, request, letters).width : 0);
    if (stepped)
        return steppedLine(state, request, letters);
    if (state.charExtra != 0 || (state.breakExtra != 0 && state.breakCount > 0))
        return spacedLine(state, face, letters);
    return wholeLine(face, text, 0);
}

/// Where a text begins on its baseline relative to its reference point, before it is turned.
QPointF alignment(int align, double width, double ascent, double descent)
{
    QPointF shift(0, ascent);
    if ((align & horizontalMask) == centered)
        shift.setX(-width / 2);
    else if ((align & horizontalMask) == rightAligned)
        shift.setX(-width);
    if ((align & verticalMask) == baselineAligned)
        shift.setY(0);
    else if ((align & verticalMask) == bottomAligned)
        shift.setY(-descent);
    return shift;
}

void drawBar(QPainter& painter, double middle, double thickness, double width, QColor color)
{
    painter.fillRect(QRectF(0, middle - thickness / 2, width, thickness), color);
}

void drawLine(QPainter& painter, const WmfState& state, const WmfFace& face, const Line& line, bool fromRight)
{
    const QColor color(state.rgb(state.textColor));
    painter.setPen(color);
    painter.setFont(face.font);
    painter.setLayoutDirection(fromRight ? Qt::RightToLeft : Qt::LeftToRight);
    const QTransform base = painter.transform();
    for (const Line::Piece& piece : line.pieces) {
        painter.translate(piece.at);
        painter.scale(face.across * piece.across, face.down);
        painter.drawText(QPointF(), piece.text);
        painter.setTransform(base);
    }
    const QFontMetricsF metrics(face.font);
    const double thickness = std::max(metrics.lineWidth() * face.down, 1.0);
    if (state.font.underline)
        drawBar(painter, metrics.underlinePos() * face.down, thickness, line.width, color);
    if (state.font.strikeOut)
        drawBar(painter, -metrics.strikeOutPos() * face.down, thickness, line.width, color);
}

/// Where the text lies in pixels when it takes up `box` around its line of `width`, given in pixels from the
/// beginning of the baseline.
QRectF placed(const WmfState& state, const Request& request, const QRectF& box, QPointF shift)
{
    const QPointF at = state.mapping.map(request.at);
    return QTransform::fromTranslate(at.x(), at.y())
        .rotate(-state.font.escapement / 10.0)
        .mapRect(box.translated(shift));
}

/// Pixels that a text takes up.
struct Extent
{
    QRectF box;
    double width = 0; ///< of its line
};

/// What a text takes up at most, where no font can be asked: letters are up to an em wide, and as high as
/// those of fonts for high lines.
Extent roughExtent(const WmfState& state, const Request& request)
{
    constexpr double above = 0.95; // of the em
    constexpr double below = 0.3;
    constexpr double beside = 0.1;
    const double em = wmfTextHeight(state);
    Line line;
    if (request.steps.isEmpty())
        line.width = std::max(em + across(state, state.charExtra), 0.0) * double(request.text.size());
    else
        line = steppedLine(state, request, lettersOf(state.font, request.text));
    QRectF box(0, -above * em, std::max(line.width, em), (above + below) * em);
    for (const Line::Piece& piece : line.pieces)
        box |= QRectF(piece.at.x(), piece.at.y() - above * em, em, (above + below) * em);
    box.adjust(-beside * em, 0, beside * em, 0);
    const QPointF shift = alignment(state.textAlign, line.width, wmfUsualAscent * em, wmfUsualDescent * em);
    return {placed(state, request, box, shift), line.width};
}

/// The same as the letters of the font have it.
Extent extentOf(const WmfState& state, const Request& request, const WmfFace& face)
{
    constexpr double around = 0.05; // of the em, for smooth edges
    const Line line = lineOf(state, request, face);
    const QFontMetricsF metrics(face.font);
    QRectF box(0, -face.ascent, line.width, face.ascent + face.descent);
    for (const Line::Piece& piece : line.pieces) {
        const QRectF letters = metrics.boundingRect(piece.text);
        box |= QTransform::fromTranslate(piece.at.x(), piece.at.y())
                   .scale(face.across * piece.across, face.down)
                   .mapRect(letters);
    }
    const double edge = around * wmfTextHeight(state);
    box.adjust(-edge, -edge, edge, edge);
    const QPointF shift = alignment(state.textAlign, line.width, face.ascent, face.descent);
    return {placed(state, request, box, shift), line.width};
}

void movePosition(WmfState& state, double width)
{
    if ((state.textAlign & updatePosition) == 0 || (state.textAlign & horizontalMask) == centered)
        return;
    const double sign = (state.textAlign & horizontalMask) == rightAligned ? -1 : 1;
    const double angle = state.font.escapement * 3.14159265358979 / 1800;
    const QPointF moved =
        state.mapping.map(state.position) + QPointF(std::cos(angle), -std::sin(angle)) * width * sign;
    const QPointF units = state.mapping.unmap(moved);
    constexpr double farthest = 1e6;
    state.position = QPoint(int(std::clamp(std::round(units.x()), -farthest, farthest)),
                            int(std::clamp(std::round(units.y()), -farthest, farthest)));
}

/// The face of the selected font; null when making it is more than may be spent.
const WmfFace* faceOf(WmfContext& context)
{
    constexpr double workPerFace = 1e6;
    if (!context.faces)
        context.faces = std::make_shared<WmfFaces>();
    if (const WmfFace* known = context.faces->find(context.state))
        return known;
    return context.canvas.spend(workPerFace) ? context.faces->make(context.state) : nullptr;
}

/// Takes what laying out and drawing the text costs from what may be spent; false when that is too much.
bool spendOnText(WmfContext& context, const Request& request)
{
    constexpr double workPerText = 10'000;
    constexpr double workPerLetter = 5000;
    constexpr double workPerClipRect = 200; // to narrow a clip of many pieces, and to widen it again
    const WmfState& state = context.state;
    const bool clipped = (request.options & clippedOption) != 0;
    const double clipWork = clipped && state.clip ? workPerClipRect * state.clip->rectCount() : 0;
    const double area = wmfTextHeight(state) * wmfTextHeight(state) * double(request.text.size());
    const QRect reach = context.canvas.reach();
    const double shown = double(reach.width()) * reach.height();
    return context.canvas.spend(workPerText + workPerLetter * double(request.text.size()) + clipWork +
                                2 * std::min(area, 4 * shown));
}

/// Notes where the text lies, and moves the position behind it.
void measureText(WmfContext& context, const Request& request)
{
    const WmfFace* face = context.asksFonts ? faceOf(context) : nullptr;
    const Extent extent =
        face ? extentOf(context.state, request, *face) : roughExtent(context.state, request);
    context.canvas.note(extent.box);
    movePosition(context.state, extent.width);
}

void paintText(WmfContext& context, const Request& request)
{
    const WmfFace* made = faceOf(context);
    if (!made)
        return;
    const WmfState& state = context.state;
    const WmfFace& face = *made;
    const Line line = lineOf(state, request, face);
    QPainter& painter = context.canvas.painter();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if ((request.options & clippedOption) != 0)
        painter.setClipRect(*request.box, Qt::IntersectClip);
    painter.translate(state.mapping.map(request.at));
    painter.rotate(-state.font.escapement / 10.0);
    painter.translate(alignment(state.textAlign, line.width, face.ascent, face.descent));
    if (state.opaque)
        painter.fillRect(QRectF(0, -face.ascent, line.width, face.ascent + face.descent),
                         QColor(state.rgb(state.bkColor)));
    const bool fromRight =
        (request.options & rightToLeftOption) != 0 || (state.textAlign & rightToLeftAlign) != 0;
    drawLine(painter, state, face, line, fromRight);
    painter.restore();
    movePosition(context.state, line.width);
}

void drawText(WmfContext& context, Request request)
{
    WmfState& state = context.state;
    if ((state.textAlign & updatePosition) != 0)
        request.at = state.position;
    if ((request.options & opaqueOption) != 0)
        context.canvas.fill({QPolygonF{request.box->topLeft(), request.box->topRight(),
                                       request.box->bottomRight(), request.box->bottomLeft()}},
                            {QColor(state.rgb(state.bkColor))});
    // Numbers of glyphs mean nothing outside of the font that they were taken from.
    if (request.text.isEmpty() || (request.options & glyphOption) != 0)
        return;
    if (!spendOnText(context, request))
        return;
    if (context.canvas.isMeasuring()) {
        measureText(context, request);
        return;
    }
    context.canvas.note({});
    paintText(context, request);
}

} // namespace

bool playText(WmfContext& context, const WmfRecord& record, const WmfParams& params)
{
    switch (record.function) {
    case WmfFunction::TextOut:
        drawText(context, textOutOf(params));
        return true;
    case WmfFunction::ExtTextOut:
        drawText(context, extTextOutOf(context, params));
        return true;
    default:
        return false;
    }
}

} // namespace quorvia::engine
