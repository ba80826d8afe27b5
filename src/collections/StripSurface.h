// The painted strip: a grid of cells, each kept as it was composed. Painting costs the cells in sight; memory
// is bounded by the size of the grid and of the working canvas.
#pragma once

#include "collections/StripLayout.h"

#include <QImage>
#include <QWidget>

#include <optional>
#include <vector>

namespace quorvia::collections {

class StripSurface : public QWidget
{
    Q_OBJECT

  public:
    explicit StripSurface(QWidget* parent);

    /// The grid from now on, `cell` in twips; cells that were put stay in their columns and rows.
    void setGrid(int columns, int rows, QSize cell);
    /// Forgets all cells.
    void wipe();
    /// Puts a cell; nothing happens outside of the grid.
    void put(CellPlace place, const QImage& cell);
    /// The size in device pixels of a cell at `place` on a screen of device pixel ratio `ratio`.
    QSize pixelsAt(CellPlace place, double ratio) const;
    /// Where the cell at `place` is painted, in pixels of the widget; of a place outside of the grid, where
    /// it would be.
    QRect cellRect(CellPlace place) const { return deviceRect(place, 1); }
    /// Draws the frame of the keyboard's focus around the cell at `place`, or none.
    void frame(std::optional<CellPlace> place);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    bool holds(CellPlace place) const;
    QRect deviceRect(CellPlace place, double ratio) const;
    QRect logicalRect(CellPlace place) const;
    void drawFrame(QPainter& painter, double ratio);

    std::vector<QImage> m_cells; // down a column first
    std::optional<CellPlace> m_framed;
    QSize m_cell;
    int m_columns = 0;
    int m_rows = 1;
};

} // namespace quorvia::collections
