// Arithmetic of a metafile player, without a painter: the way from the drawing's units to pixels, curves as
// corner points, and the clipping that keeps far-off coordinates away from the painter.
#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSize>
#include <QSizeF>

namespace quorvia::engine {

/// Window and viewport of a drawing, and the frame of viewport units that is the picture.
class WmfMapping
{
  public:
    /// `frame`, in viewport units, is what a picture of `picture` pixels shows. The viewport starts as the
    /// frame when `viewport` is true, else one unit of the window is one of the viewport.
    WmfMapping(QRectF frame, QSize picture, bool viewport);

    /// Map modes 2 to 6 have units of a fixed size (at 96 dots per inch) and y that runs up; 7 keeps both
    /// axes at one scale; all others go by window and viewport.
    void setMode(int mode);
    void setWindowOrg(QPoint origin);
    void setWindowExt(QSize extent); ///< ignored when a side is 0
    void offsetWindowOrg(QPoint by);
    /// Multiplies the extent by `numerator` / `denominator`; ignored when a result is 0.
    void scaleWindowExt(QPoint numerator, QPoint denominator);
    void setViewportOrg(QPoint origin);
    void setViewportExt(QSize extent); ///< ignored when a side is 0
    void offsetViewportOrg(QPoint by);
    void scaleViewportExt(QPoint numerator, QPoint denominator);

    /// A point in units as pixels from the left and the top of the picture; kept within a million.
    QPointF map(QPointF units) const;
    /// A distance in units as pixels; negative where an axis is mirrored.
    QPointF mapVector(QPointF units) const;
    /// The point in units that lies at `pixels`.
    QPointF unmap(QPointF pixels) const;
    /// Pixels a unit, without direction: the geometric mean of both axes.
    double scale() const;

  private:
    void update();

    QRectF m_frame;
    QSizeF m_picture;
    int m_mode = 8;
    QPointF m_windowOrg;
    QSizeF m_windowExt;
    QPointF m_viewportOrg;
    QSizeF m_viewportExt;
    QPointF m_factor = {1, 1}; ///< pixels a unit
    QPointF m_shift;           ///< pixels of the point 0, 0
};

/// The corner points of the ellipse in `box` (pixels) from the angle `start` on over `sweep` radians, close
/// enough together to look round. Angles grow clockwise from the right, as y runs down.
QPolygonF arcPoints(QRectF box, double start, double sweep);

/// Start and sweep, for arcPoints(), of the arc in `box` that runs against the clock from the ray through
/// `from` to the ray through `to`. The whole ellipse when both are the same.
struct WmfSweep
{
    double start = 0;
    double sweep = 0;
};
WmfSweep arcSweep(QRectF box, QPointF from, QPointF to);

/// A rectangle whose corners are quarters of an ellipse of `corner` pixels width and height.
QPolygonF roundedRect(QRectF box, QSizeF corner);

/// True when every edge is level or upright, to a hundredth of a pixel; `closed` counts the edge from the
/// last point to the first.
bool isUpright(const QPolygonF& points, bool closed);

/// The part of the filled figure `points` inside `box`. Its outline may run along the box's edge.
QPolygonF clippedFigure(const QPolygonF& points, const QRectF& box);

/// The pieces of the line through `points` inside `box`.
QList<QPolygonF> clippedLine(const QPolygonF& points, const QRectF& box);

} // namespace quorvia::engine
