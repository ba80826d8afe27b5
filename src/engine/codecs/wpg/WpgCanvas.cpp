#include "engine/codecs/wpg/WpgCanvas.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quorvia::engine {

namespace {

constexpr double dotsPerInch = 96;
constexpr double shortest = 64; // pixels of the longer side
constexpr double longest = 4096;

// What drawing costs is counted in pixels filled. The others were measured against these, rounded up.
constexpr double leastBudget = 5e9; // five seconds on a slow machine
constexpr double mostBudget = 6e9;
constexpr double elementCost = 300; // a point
constexpr double thinCost = 30;     // a pixel's length of a thin line
constexpr double letterCost = 20'000;

constexpr double farthest = 100'000; // pixels from the corner that a point may lie

double bounded(double value)
{
    return std::isfinite(value) ? std::clamp(value, -farthest, farthest) : 0;
}

/// What the edges of `path` add up to, in pixels.
double lengthOf(const QPainterPath& path)
{
    double length = 0;
    for (int i = 1; i < path.elementCount(); ++i) {
        const auto one = path.elementAt(i - 1);
        const auto other = path.elementAt(i);
        if (!other.isMoveTo())
            length += std::abs(other.x - one.x) + std::abs(other.y - one.y);
    }
    return length;
}

/// What filling between edges of `length` pixels that lie in `covered` takes: the rasteriser sorts those that
/// meet a row of pixels, so that crowded ones cost far more than lonely ones.
double edgeCost(double length, const QRectF& covered)
{
    const double crowd = std::min(length / std::max(covered.height(), 1.0), covered.width());
    return length * (20 + 12 * crowd);
}

} // namespace

QSize WpgCanvas::pixelsFor(QSizeF inches)
{
    if (!(inches.width() > 0 && inches.height() > 0) || !std::isfinite(inches.width() + inches.height()))
        return {};
    const double side = std::max(inches.width(), inches.height());
    const double scale = std::clamp(side * dotsPerInch, shortest, longest) / side;
    return QSize(int(std::lround(inches.width() * scale)), int(std::lround(inches.height() * scale)))
        .expandedTo(QSize(1, 1));
}

WpgCanvas::WpgCanvas(QImage& image, QSizeF inches, const CancelFlag& cancel)
    : m_size(image.size()), m_painter(&image), m_cancel(cancel), m_scaleX(image.width() / inches.width()),
      m_scaleY(image.height() / inches.height())
{
    constexpr double layers = 400; // a drawing may cover the whole canvas so many times
    m_budget = std::clamp(layers * image.width() * image.height(), leastBudget, mostBudget);
    m_painter.fillRect(image.rect(), Qt::white);
    m_painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
}

bool WpgCanvas::afford(double pixels)
{
    m_exhausted = m_exhausted || pixels > m_budget;
    if (pixels > m_budget)
        return false;
    m_budget -= pixels;
    return true;
}

void WpgCanvas::spend(double pixels)
{
    m_exhausted = m_exhausted || pixels > m_budget;
    m_budget -= pixels;
}

QPainterPath WpgCanvas::toPixels(const QPainterPath& inches) const
{
    QPainterPath path = inches;
    for (int i = 0; i < path.elementCount(); ++i) {
        const auto element = path.elementAt(i);
        path.setElementPositionAt(i, bounded(element.x * m_scaleX), bounded(element.y * m_scaleY));
    }
    return path;
}

double WpgCanvas::costOf(const QPainterPath& path, double length, const QPen& pen, bool filled) const
{
    const QRectF frame{QPointF(), QSizeF(m_size)};
    const QRectF covered = path.boundingRect() & frame;
    double cost = elementCost * path.elementCount();
    if (filled)
        cost += edgeCost(length, covered) + covered.width() * covered.height();
    if (pen.style() == Qt::NoPen)
        return cost;
    if (pen.widthF() <= 1)
        return cost + thinCost * length;
    // A wide stroke is an area: an edge on either side, around each of the joins, some to a curve, and across
    // the ends of each dash. Those across the ends were measured to cost their whole length, wherever they
    // lie.
    const double half = pen.widthF() / 2;
    const QRectF inked = path.boundingRect().adjusted(-half, -half, half, half) & frame;
    const double reach = std::min(pen.widthF(), std::hypot(m_size.width(), m_size.height()));
    const QList<qreal> dashes = pen.dashPattern();
    const double period = pen.widthF() * std::accumulate(dashes.begin(), dashes.end(), 0.0);
    const double ends = period > 0 ? 2 * length / period : 0;
    const double edges = 2.5 * length + 12.0 * path.elementCount() * reach + 3 * ends * pen.widthF();
    return cost + edgeCost(edges, inked) + length * pen.widthF();
}

QPen WpgCanvas::penFor(const WpgStyle& style, double length) const
{
    if (!style.stroked)
        return Qt::NoPen;
    const double width = std::max(1.0, bounded(style.lineWidth * (m_scaleX + m_scaleY) / 2));
    QPen pen(style.line, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    QList<qreal> dashes; // in line widths, as a pen counts them
    double period = 0;
    for (const double dash : style.dashes) {
        const double pixels = std::max(0.0, bounded(dash * m_scaleX));
        period += pixels;
        dashes.append(pixels / width);
    }
    constexpr double mostDashes = 50'000;
    if (dashes.size() % 2 == 0 && period >= 1 && length / period < mostDashes)
        pen.setDashPattern(dashes);
    return pen;
}

void WpgCanvas::drawPath(const QPainterPath& inches, const WpgStyle& style)
{
    if (stopped() || inches.isEmpty())
        return;
    QPainterPath path = toPixels(inches);
    path.setFillRule(inches.fillRule());
    const double length = lengthOf(path);
    const QPen pen = penFor(style, length);
    if (!afford(costOf(path, length, pen, style.fill.style() != Qt::NoBrush)))
        return;
    m_painter.setPen(pen);
    m_painter.setBrush(style.fill);
    m_painter.drawPath(path);
    ++m_drawn;
}

void WpgCanvas::drawImage(const QImage& picture, const QRectF& inches)
{
    const QRectF target(bounded(inches.x() * m_scaleX), bounded(inches.y() * m_scaleY),
                        bounded(inches.width() * m_scaleX), bounded(inches.height() * m_scaleY));
    const QRectF shown = target & QRectF(QPointF(), QSizeF(m_size));
    if (stopped() || picture.isNull() || target.isEmpty() ||
        !afford(double(picture.width()) * picture.height() + 4 * shown.width() * shown.height()))
        return;
    // A picture that is made much smaller is averaged first: the painter looks at four pixels only.
    const bool shrinks = target.width() * 2 < picture.width() || target.height() * 2 < picture.height();
    const QSize size = target.size().toSize().expandedTo(QSize(1, 1)).boundedTo(picture.size());
    const QImage source = shrinks ? picture.convertToFormat(QImage::Format_ARGB32_Premultiplied)
                                        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                  : picture;
    m_painter.drawImage(target, source);
    ++m_drawn;
}

void WpgCanvas::drawText(QPointF inches, const QString& text, QFont font, double size, const QColor& color,
                         int alignment, double degrees)
{
    constexpr qsizetype longestText = 4096;
    const QString shown = text.left(longestText);
    if (stopped() || shown.trimmed().isEmpty() || !afford(letterCost * double(shown.size())))
        return;
    font.setPixelSize(int(std::clamp(size * m_scaleY, 1.0, double(m_size.height()))));
    m_painter.save();
    m_painter.translate(bounded(inches.x() * m_scaleX), bounded(inches.y() * m_scaleY));
    m_painter.rotate(-degrees);
    m_painter.setFont(font);
    m_painter.setPen(color);
    const int advance = alignment == 0 ? 0 : m_painter.fontMetrics().horizontalAdvance(shown);
    m_painter.drawText(QPointF(-advance * alignment / 2.0, 0), shown);
    m_painter.restore();
    ++m_drawn;
}

} // namespace quorvia::engine
