// Draws the shapes of a WordPerfect graphic, given in inches from the upper left corner, on white. Costs what
// the shapes cover; a file whose shapes together cover far more than any picture needs is cut off.
#pragma once

#include "engine/Codec.h"

#include <QBrush>
#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QSizeF>

namespace quorvia::engine {

struct WpgStyle
{
    bool stroked = true;
    QColor line = Qt::black;
    double lineWidth = 0; ///< inches; thin lines are drawn one pixel wide
    QList<double> dashes; ///< inches, drawn and left out by turns; empty for a solid line
    QBrush fill = Qt::NoBrush;
};

class WpgCanvas
{
  public:
    /// The pixels that a drawing of `inches` is given: 96 to the inch, but at least 64 and at most 4096 on
    /// the longer side. Empty for a drawing without extent.
    static QSize pixelsFor(QSizeF inches);

    /// Draws on `image`, which stands for `inches`.
    WpgCanvas(QImage& image, QSizeF inches, const CancelFlag& cancel);

    void drawPath(const QPainterPath& inches, const WpgStyle& style);
    /// Draws `picture` into `inches`.
    void drawImage(const QImage& picture, const QRectF& inches);
    /// Draws `text` with its base line's start at `inches`, turned by `degrees` counter-clockwise, `size`
    /// inches high. `alignment` 0 starts, 1 centres, 2 ends the line there.
    void drawText(QPointF inches, const QString& text, QFont font, double size, const QColor& color,
                  int alignment = 0, double degrees = 0);

    /// True when nothing more is drawn: the asker has cancelled, or the shapes' cost is beyond all bounds.
    bool stopped() const { return m_cancel || m_budget < least; }
    /// True when a shape was left out for its cost.
    bool exhausted() const { return m_exhausted; }
    /// The asker's flag, for what is decoded on the way.
    const CancelFlag& cancel() const { return m_cancel; }
    /// How many things were drawn so far.
    int drawn() const { return m_drawn; }
    /// Takes the cost of `pixels` from what is left; false, and nothing is taken, when that is not enough.
    bool afford(double pixels);
    /// Takes the cost of `pixels`, spent already, from what is left, even where it is more than that.
    void spend(double pixels);

  private:
    static constexpr double least = 1e5; ///< what the smallest shapes cost

    QPainterPath toPixels(const QPainterPath& inches) const;
    double costOf(const QPainterPath& path, double length, const QPen& pen, bool filled) const;
    QPen penFor(const WpgStyle& style, double length) const;

    QSize m_size;
    QPainter m_painter;
    const CancelFlag& m_cancel;
    double m_scaleX;
    double m_scaleY;
    double m_budget; ///< what may still be spent, in pixels
    bool m_exhausted = false;
    int m_drawn = 0;
};

} // namespace quorvia::engine
