#include "output/PageSurface.h"

#include "engine/Resample.h"
#include "platform/OneLine.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quorvia::output {

namespace {

constexpr double twipsPerInch = 1440;
constexpr double pointsPerInch = 72;
constexpr double twipsPerDrawWidth = 15;

qint64 areaOf(QRect rect)
{
    return qint64(rect.width()) * rect.height();
}

/// Averaged when made smaller, smooth otherwise, however large.
engine::Filter printFilter(int from, int to)
{
    return to < from ? engine::Filter::Area : engine::Filter::Bicubic;
}

/// What of the picture the page shows within `band` when its copies stand at `corners`; in pixels of the
/// copy.
QRect seenPart(const std::vector<QPoint>& corners, QSize size, QRect band)
{
    QRect seen;
    for (const QPoint corner : corners)
        seen |= band.translated(-corner) & QRect(QPoint(), size);
    return seen;
}

/// Where the tiles of one axis begin on `length` pixels, each once, and where the last one ends. No more than
/// there are pixels, however small the step is.
std::vector<int> tileEdges(double step, int length)
{
    std::vector<int> edges{0};
    const double used = std::max(step, 1.0);
    while (edges.back() < length)
        edges.push_back(int(std::min(std::round(double(edges.size()) * used), 1e9)));
    return edges;
}

/// Copies `tile`, or the beginning of it, between all edges on the row of tiles that begins at `y`.
void drawRow(QPainter& painter, const QImage& tile, const std::vector<int>& columns, int y, int height)
{
    for (size_t i = 0; i + 1 < columns.size(); ++i)
        painter.drawImage(QPoint(columns[i], y), tile, QRect(0, 0, columns[i + 1] - columns[i], height));
}

QPen penOf(const PageShape& shape, double perTwip)
{
    QPen pen(QColor::fromRgb(shape.color));
    pen.setWidthF(std::max(shape.drawWidth * twipsPerDrawWidth * perTwip, 1.0));
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

} // namespace

bool PageContent::operator==(const PageContent& other) const
{
    return picture.cacheKey() == other.picture.cacheKey() && imageSize == other.imageSize &&
           printer == other.printer && resolution == other.resolution && title == other.title &&
           footer == other.footer && hasFooter == other.hasFooter && titleAlign == other.titleAlign &&
           area == other.area && custom == other.custom && twipsPerPixel == other.twipsPerPixel &&
           decorations == other.decorations && font == other.font && textColor == other.textColor;
}

double PageSurface::toDevice(double twips) const
{
    return twips * m_content.resolution / twipsPerInch;
}

double PageSurface::toTwips(double device) const
{
    return device * twipsPerInch / m_content.resolution;
}

QFont PageSurface::pageFont() const
{
    QFont font = m_content.font;
    const double points = font.pointSizeF();
    if (points > 0)
        font.setPixelSize(std::max(qRound(points * m_content.resolution / pointsPerInch), 1));
    return font;
}

bool PageSurface::compose(const PageContent& content)
{
    if (m_number > 0 && content == m_content && (!m_page.isNull() || m_layout.page.isEmpty()))
        return true;
    m_content = content;
    m_content.title = platform::oneLine(content.title);
    m_content.footer = platform::oneLine(content.footer);
    ++m_number;

    const QFontMetricsF metrics(pageFont());
    const auto measured = [&](const QString& text) {
        return QSizeF(toTwips(metrics.horizontalAdvance(text)), toTwips(metrics.height()));
    };
    PageInput input{.printer = content.printer,
                    .image = content.imageSize,
                    .area = content.area,
                    .titleAlign = content.titleAlign,
                    .custom = content.custom,
                    .twipsPerPixel = content.twipsPerPixel,
                    .decorations = content.decorations};
    if (!content.title.isEmpty())
        input.title = measured(m_content.title);
    if (content.hasFooter)
        input.footer = measured(m_content.footer);
    m_layout = layOutPage(input);

    const QSize size(qRound(toDevice(m_layout.page.width())), qRound(toDevice(m_layout.page.height())));
    if (m_page.size() != size) {
        m_page = {}; // before, not after: never two pages at once
        dropScaled();
        m_page = QImage(size, QImage::Format_RGB32);
    }
    if (!m_page.isNull()) {
        m_page.fill(Qt::white);
        QPainter painter(&m_page);
        painter.setRenderHint(QPainter::Antialiasing);
        drawTexts(painter);
        drawShapes(painter);
        drawPictures(painter);
    }
    m_content.title = content.title;
    m_content.footer = content.footer;
    return !m_page.isNull() || size.isEmpty();
}

void PageSurface::drawTexts(QPainter& painter) const
{
    const QFont font = pageFont();
    const double ascent = QFontMetricsF(font).ascent();
    painter.setFont(font);
    painter.setPen(m_content.textColor);
    const auto draw = [&](QPointF at, const QString& text) {
        painter.drawText(QPointF(toDevice(at.x()), toDevice(at.y()) + ascent), text);
    };
    if (!m_content.title.isEmpty())
        draw(m_layout.title, m_content.title);
    if (m_content.hasFooter)
        draw(m_layout.footer, m_content.footer);
}

/// What lies far off the page is brought near to it: the toolkit's lines end somewhere.
void PageSurface::drawShapes(QPainter& painter) const
{
    const double perTwip = toDevice(1);
    for (const PageShape& shape : m_layout.shapes) {
        const QPen pen = penOf(shape, perTwip);
        const QRectF rect(shape.rect.topLeft() * perTwip, shape.rect.size() * perTwip);
        const double beyond = 2 * pen.widthF() + 1;
        const QRectF room = QRectF(m_page.rect()).adjusted(-beyond, -beyond, beyond, beyond);
        const QRectF near = rect & room;
        if (near.isEmpty())
            continue;
        painter.setPen(pen);
        painter.setBrush(shape.form == PageForm::Outline ? QBrush(Qt::NoBrush)
                                                         : QBrush(QColor::fromRgb(shape.color)));
        if (shape.form == PageForm::Circle)
            painter.drawEllipse(rect);
        else
            painter.drawRect(near);
    }
}

void PageSurface::drawPictures(QPainter& painter)
{
    if (m_content.picture.isNull() || m_layout.image.isEmpty())
        return;
    if (m_layout.tiles) {
        drawTiles(painter);
        return;
    }
    const auto shown = [this](double twips) { return std::max(qRound(toDevice(twips)), 1); }; // however flat
    const QSize size(shown(m_layout.image.width()), shown(m_layout.image.height()));
    std::vector<QPoint> corners;
    for (const QPointF& corner : m_layout.pictures)
        corners.emplace_back(qRound(toDevice(corner.x())), qRound(toDevice(corner.y())));
    drawCopies(painter, m_page.rect(), corners, size);
}

/// Draws the copies as far as `band` of the page shows them, from one scaled picture; in two halves when that
/// would be larger than the page.
void PageSurface::drawCopies(QPainter& painter, QRect band, const std::vector<QPoint>& corners, QSize size)
{
    const QRect seen = seenPart(corners, size, band);
    if (seen.isEmpty())
        return;
    if (areaOf(seen) > areaOf(m_page.rect()) && band.height() > 1) {
        const int half = band.height() / 2;
        drawCopies(painter, QRect(band.topLeft(), QSize(band.width(), half)), corners, size);
        drawCopies(painter, band.adjusted(0, half, 0, 0), corners, size);
        return;
    }
    const QImage& picture = scaled(size, seen);
    painter.setClipRect(band);
    for (const QPoint corner : corners) {
        const QRect part = band.translated(-corner) & seen;
        if (!part.isEmpty())
            painter.drawImage(corner + part.topLeft(), picture, part.translated(-seen.topLeft()));
    }
}

/// Small tiles go as a row that is painted once.
void PageSurface::drawTiles(QPainter& painter)
{
    constexpr size_t manyTiles = 20'000;
    const double across = toDevice(m_layout.image.width());
    const double down = toDevice(m_layout.image.height());
    const std::vector<int> columns = tileEdges(across, m_page.width());
    const std::vector<int> rows = tileEdges(down, m_page.height());
    const QSize size(std::max(int(std::ceil(across)), 1), std::max(int(std::ceil(down)), 1));
    const QImage tile = scaled(size, m_page.rect() & QRect(QPoint(), size));
    if (tile.isNull())
        return;
    const bool asRows = columns.size() * rows.size() > manyTiles;
    QImage row;
    if (asRows) {
        row = QImage(m_page.width(), tile.height(), tile.format());
        if (row.isNull())
            return;
        row.fill(Qt::transparent);
        QPainter rowPainter(&row);
        drawRow(rowPainter, tile, columns, 0, tile.height());
    }
    for (size_t i = 0; i + 1 < rows.size(); ++i) {
        const int height = std::min(rows[i + 1] - rows[i], tile.height());
        if (asRows)
            painter.drawImage(QPoint(0, rows[i]), row, QRect(0, 0, row.width(), height));
        else
            drawRow(painter, tile, columns, rows[i], height);
    }
}

/// The pixels of `part` of the picture at `size`; null without memory.
const QImage& PageSurface::scaled(QSize size, QRect part)
{
    const QImage& picture = m_content.picture;
    if (m_scaled.isNull() || m_scaledFrom != picture.cacheKey() || m_scaledSize != size ||
        m_scaledPart != part) {
        dropScaled();
        m_scaled = engine::resampled(picture, size, part, printFilter(picture.width(), size.width()),
                                     printFilter(picture.height(), size.height()));
        m_scaledFrom = picture.cacheKey();
        m_scaledSize = size;
        m_scaledPart = part;
    }
    return m_scaled;
}

void PageSurface::dropScaled()
{
    m_scaled = {};
}

} // namespace quorvia::output
