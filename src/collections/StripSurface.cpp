#include "collections/StripSurface.h"

#include "app/Twips.h"
#include "controls/ScrollComposition.h"

#include <QPainter>
#include <QPaintEvent>

#include <algorithm>
#include <cmath>

namespace quorvia::collections {

namespace {

/// Lets `painter` count device pixels from the widget's corner, on whole ones.
void toDevicePixels(QPainter& painter, double ratio)
{
    painter.scale(1 / ratio, 1 / ratio);
    const QPointF origin = painter.deviceTransform().map(QPointF(0, 0));
    painter.translate(std::round(origin.x()) - origin.x(), std::round(origin.y()) - origin.y());
}

} // namespace

StripSurface::StripSurface(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    resize(1, height());
}

void StripSurface::setGrid(int columns, int rows, QSize cell)
{
    if (rows != m_rows)
        m_cells.clear(); // their places count in the rows of before
    m_columns = columns;
    m_rows = rows;
    m_cell = cell;
    m_cells.resize(size_t(columns) * size_t(rows));
    update();
}

void StripSurface::wipe()
{
    std::fill(m_cells.begin(), m_cells.end(), QImage());
    update();
}

void StripSurface::put(CellPlace place, const QImage& cell)
{
    if (!holds(place))
        return;
    m_cells[size_t(place.column) * size_t(m_rows) + size_t(place.row)] = cell;
    update(logicalRect(place));
}

QSize StripSurface::pixelsAt(CellPlace place, double ratio) const
{
    return deviceRect(place, ratio).size();
}

void StripSurface::frame(std::optional<CellPlace> place)
{
    for (const auto& changed : {std::exchange(m_framed, place), place}) {
        if (changed)
            update(logicalRect(*changed));
    }
}

void StripSurface::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const double ratio = controls::paintRatio(painter);
    painter.fillRect(event->rect(), Qt::white);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    toDevicePixels(painter, ratio);
    const int width = std::max(m_cell.width(), 1);
    const int first = std::max(app::toTwips(event->rect().left() - 1) / width, 0);
    const int last = std::min(app::toTwips(event->rect().right() + 2) / width, m_columns - 1);
    for (CellPlace place{first, 0}; place.column <= last; ++place.column) {
        for (place.row = 0; place.row < m_rows; ++place.row) {
            const QImage& cell = m_cells[size_t(place.column) * size_t(m_rows) + size_t(place.row)];
            if (!cell.isNull())
                painter.drawImage(deviceRect(place, ratio), cell);
        }
    }
    drawFrame(painter, ratio);
}

bool StripSurface::holds(CellPlace place) const
{
    return place.column >= 0 && place.column < m_columns && place.row >= 0 && place.row < m_rows;
}

/// From edge to edge, so that cells meet whatever a cell's width is in pixels.
QRect StripSurface::deviceRect(CellPlace place, double ratio) const
{
    const auto pixel = [ratio](qint64 twips) { return qRound(double(twips) * ratio / app::twipsPerPixel); };
    const QPoint near(pixel(qint64(m_cell.width()) * place.column),
                      pixel(qint64(m_cell.height()) * place.row));
    const QPoint far(pixel(qint64(m_cell.width()) * (place.column + 1)),
                     pixel(qint64(m_cell.height()) * (place.row + 1)));
    return {near, QSize(std::max(far.x() - near.x(), 1), std::max(far.y() - near.y(), 1))};
}

QRect StripSurface::logicalRect(CellPlace place) const
{
    return deviceRect(place, 1).adjusted(-1, -1, 1, 1);
}

/// Black within white, which stands out from every cell.
void StripSurface::drawFrame(QPainter& painter, double ratio)
{
    if (!m_framed || !holds(*m_framed))
        return;
    const int line = std::max(qRound(ratio), 1);
    QRect around = deviceRect(*m_framed, ratio);
    painter.setBrush(Qt::NoBrush);
    for (const QColor color : {Qt::white, Qt::black}) {
        for (int i = 0; i < line; ++i) {
            painter.setPen(QPen(color, 1));
            painter.drawRect(around.adjusted(0, 0, -1, -1));
            around.adjust(1, 1, -1, -1);
        }
    }
}

} // namespace quorvia::collections
