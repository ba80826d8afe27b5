#include "collections/StripLayout.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvia::collections {

namespace {

constexpr double proportion = 1.333; // width of a cell to its height
constexpr int columnsBeyond = 2;     // painted ahead of what fits into the control
constexpr int dragDistance = 10;     // pixels
constexpr int edgeZone = 100;        // pixels
constexpr int twipsPerDepth = 3;     // of a step, for each pixel into an edge zone

/// Rounded, a half to the even number; within an int's range.
int rounded(double number)
{
    constexpr double most = 1 << 30;
    return int(std::nearbyint(std::clamp(number, -most, most)));
}

double cellWidth(int height, int rows)
{
    return height * proportion / rows;
}

/// What one pass paints. Never the mark of a whole strip for a list that is too long for one.
int windowCells(const StripSpace& space)
{
    const double width = std::max(cellWidth(space.stripHeight, space.rows), 1.0);
    const int cells = rounded((space.control.width() / width + columnsBeyond) * space.rows);
    return cells == wholeStrip ? cells + 1 : cells;
}

int scrollRange(const StripLayout& layout, const StripSpace& space)
{
    if (layout.isWhole())
        return rounded(double(layout.strip.width() - space.control.width()) / scrollUnit);
    const double width = std::max(cellWidth(layout.strip.height(), space.rows), 1.0);
    return rounded(double(space.count) / space.rows - space.control.width() / width + 1);
}

/// The whole part of a length in cells; 0 before the first cell's end.
int wholeCells(double cells)
{
    return cells >= 1 ? int(std::min(cells, double(1 << 30))) : 0;
}

StripLayout laidOut(const StripSpace& space)
{
    StripLayout layout;
    if (space.count > wholeStrip)
        layout.maxDraw = windowCells(space);
    const int cells = std::min(space.count, layout.maxDraw);
    layout.columns = int((qint64(cells) + space.rows - 1) / space.rows);
    layout.barVisible =
        cellWidth(space.control.height(), space.rows) * layout.columns > space.control.width();
    const int height = stripHeight(space.control.height(), space.barHeight, layout.barVisible);
    layout.cell = cellSize(height, space.rows);
    layout.strip = {layout.cell.width() * layout.columns, height};
    if (layout.strip.width() < space.control.width())
        layout.barVisible = false;
    layout.barMaximum = scrollRange(layout, space);
    return layout;
}

} // namespace

int stripHeight(int controlHeight, int barHeight, bool barVisible)
{
    return std::max(barVisible ? controlHeight - barHeight : controlHeight, 0);
}

QSize cellSize(int height, int rows)
{
    if (height <= 0)
        return {0, 0};
    return {std::max(rounded(cellWidth(height, rows)), 1), std::max(rounded(double(height) / rows), 1)};
}

StripLayout sizeStrip(const StripSpace& space)
{
    StripLayout layout = laidOut(space);
    // A window that was measured without a bar has too few of the smaller cells above one.
    const bool hasMore = qint64(layout.columns) * space.rows < space.count;
    if (!layout.barVisible && hasMore && layout.strip.height() < space.stripHeight) {
        StripSpace aboveBar = space;
        aboveBar.stripHeight = layout.strip.height();
        layout = laidOut(aboveBar);
    }
    return layout;
}

std::optional<int> imageAt(QPointF point, QSize cell, int rows, int firstIndex, int count)
{
    if (cell.isEmpty())
        return std::nullopt;
    const int down = wholeCells(point.y() / cell.height()) + 1;
    int across = wholeCells(point.x() / cell.width());
    if (firstIndex > 0)
        across += (firstIndex - 1) / rows;
    const qint64 position = qint64(across) * rows + down - 1;
    return position < count ? std::optional(int(position)) : std::nullopt;
}

CellPlace placeOf(int position, int rows)
{
    return {position / rows, position % rows};
}

std::optional<int> valueShowing(int position, int cellWidth, int controlWidth, int value)
{
    const int visible = std::max(rounded(double(controlWidth) / (cellWidth + scrollUnit) - 1), 1);
    const double units = double(cellWidth) / scrollUnit;
    const double highest = units * (position - 1);
    const double lowest = highest - units * visible;
    return highest < value || lowest > value ? std::optional(rounded(highest)) : std::nullopt;
}

bool isDrag(int anchorX, int x)
{
    return std::abs(x - anchorX) > dragDistance;
}

StripDrag dragged(StripDrag drag, int x, int screenWidth, int controlWidth, int stripWidth, int twipsPerPixel)
{
    const int least = std::min(controlWidth - stripWidth, 0);
    if (x < edgeZone) {
        const int step = (edgeZone + 1 - x) * twipsPerDepth;
        if (drag.left - step < least) {
            drag.left = least;
        } else {
            drag.left -= step;
            drag.anchorLeft -= step;
        }
    } else if (x >= screenWidth - edgeZone) {
        const int step = -(edgeZone + 1 - (screenWidth - x)) * twipsPerDepth;
        if (drag.left - step > 0) {
            drag.left = 0;
        } else {
            drag.left -= step;
            drag.anchorLeft -= step;
        }
    } else {
        drag.left = std::clamp(drag.anchorLeft - (drag.anchorX - x) * twipsPerPixel, least, 0);
    }
    return drag;
}

int valueAtLeft(int left)
{
    return rounded(double(std::abs(left)) / scrollUnit);
}

QString listKey(const QStringList& files)
{
    const int count = int(files.size());
    QString key = QString::number(count);
    if (count >= 1)
        key += files.first();
    if (count >= 2)
        key += files.last();
    if (count > 3)
        key += files.at(rounded(count / 2.0) - 1);
    return key;
}

} // namespace quorvia::collections
