// The paper that a metafile is drawn on, in pixels: white, opaque, with a bound on the work put into it. Or a
// measuring canvas without pixels, which only notes what is drawn where. Dear: everything that fills.
#pragma once

#include "engine/Codec.h"

#include <QBrush>
#include <QImage>
#include <QList>
#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <QRegion>

#include <optional>

namespace quorvia::engine {

/// How shapes meet what is drawn already, from the metafile's raster operation of two operands (1 to 16,
/// 13 copies). None: nothing is drawn at all.
std::optional<QPainter::CompositionMode> compositionOf(int rop2);

struct WmfFill
{
    QBrush brush;
    Qt::FillRule rule = Qt::OddEvenFill;
    QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver;
};

struct WmfStroke
{
    QPen pen; ///< width in pixels, at least 1
    QPainter::CompositionMode mode = QPainter::CompositionMode_SourceOver;
};

class WmfCanvas
{
  public:
    /// A measuring canvas.
    WmfCanvas() = default;
    /// A canvas of `size` pixels; isUsable() is false when there is no memory for it.
    explicit WmfCanvas(QSize size);
    WmfCanvas(const WmfCanvas&) = delete;
    WmfCanvas& operator=(const WmfCanvas&) = delete;
    ~WmfCanvas();

    bool isMeasuring() const { return m_image.isNull(); }
    bool isUsable() const { return m_painter.isActive(); }

    /// Keeps what follows to `clip` (pixels); no clip draws everywhere.
    void setClip(const std::optional<QRegion>& clip);
    /// The pixels that can be drawn at present, as one box.
    QRect reach() const;

    /// Fills `figures` (closed) as one shape. Smooth edges, unless all are upright or the mode is a raster
    /// operation.
    void fill(const QList<QPolygonF>& figures, const WmfFill& fill);
    /// Draws lines through the points of `lines`, each closed when `closed`. A coordinate is the middle of a
    /// pixel, and the last pixel of a thin open line stays out, as the format has it.
    void stroke(const QList<QPolygonF>& lines, bool closed, const WmfStroke& stroke);
    /// Puts RGB32 pixels at `at`.
    void put(QPoint at, const QImage& pixels);

    /// The pixels so far (RGB32), null for a measuring canvas.
    const QImage& image() const { return m_image; }
    /// For text; clip and work are the caller's: see spend().
    QPainter& painter() { return m_painter; }
    /// Notes that `box` is drawn on.
    void note(const QRectF& box);
    /// Takes `work`, about a nanosecond or one filled pixel a unit, from what may be spent; false when
    /// nothing is left and nothing more may be drawn.
    bool spend(double work);
    bool isExhausted() const { return m_exhausted; }
    /// What has been drawn on, in pixels; empty when nothing was.
    QRectF noted() const { return m_noted; }
    /// How often something was drawn.
    int drawings() const { return m_drawings; }
    bool wasDrawnOn() const { return m_drawings > 0; }

    /// Ends the drawing and gives the picture.
    QImage take();

  private:
    static constexpr double workToMeasure = 1e9;

    QRectF nearby(double margin) const;
    /// What makes a shape dear.
    struct Cost
    {
        double points = 0;
        double edges = 0; ///< pixels along all edges, as far as they are drawn
        double rows = 1;  ///< of the picture that the shape can touch
        double area = 0;  ///< pixels of the picture that the shape can touch
    };
    Cost costOf(const QList<QPolygonF>& figures, double widthPixels) const;
    bool spendOnFill(const Cost& cost);
    bool spendOnStroke(Cost cost, const QPen& pen);

    QImage m_image;
    QPainter m_painter;
    QRegion m_clip;
    bool m_isClipped = false;
    double m_workLeft = workToMeasure;
    bool m_exhausted = false;
    int m_drawings = 0;
    QRectF m_noted;
};

} // namespace quorvia::engine
