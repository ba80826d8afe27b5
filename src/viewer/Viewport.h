// The viewport: keeps the image control in its place inside its panel, and the two scroll bars in step. The
// picture is not redrawn for it, only moved, sized and told how to scale.
#pragma once

#include "viewer/ImageLayout.h"
#include "viewer/ScrollLayout.h"
#include "viewer/ZoomSteps.h"

#include <QObject>
#include <QSize>

#include <functional>
#include <optional>

class QWidget;

namespace quorvia::controls {
class ScrollBar;
}

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::viewer {

class Viewport : public QObject
{
    Q_OBJECT

  public:
    /// `ix1` is a child of `pContain`; both outlive the viewport, which makes the bars `sb1` and `sb2` beside
    /// it.
    Viewport(QWidget* pContain, engine::ImageEngine* ix1, QObject* parent = nullptr);

    bool FitToWindow() const { return m_fitToWindow; }
    void setFitToWindow(bool fit) { m_fitToWindow = fit; }
    /// Flips the fit and goes back to 100%. What both view commands do.
    void flipFit();
    /// Goes to the magnification `zoom`, 1.0 is 100%.
    void zoomTo(double zoom);
    /// Shows the image pixels between two corners as large as they go. False when they have no area.
    bool zoomOnto(QPoint corner, QPoint other);

    /// True when a bar shows, so that there is something to pan.
    bool canScroll() const;
    /// Moves the picture by so many device pixels, as far as the bars that show allow: to the left and up for
    /// positive ones.
    void scrollBy(int horizontal, int vertical);

    /// The image pixel under `position`, device-independent pixels in ix1.
    QPoint imagePixelAt(QPointF position) const;
    /// The point of the image under `position` of the panel, in shares of its width and height: 0 to 1 within
    /// it.
    QPointF shareAt(QPointF position) const;
    /// Moves the picture so that the point of the image at the shares `share` (0 to 1 across and down) stands
    /// at `position` of the panel, as far as the bars allow.
    void bring(QPointF share, QPointF position);

    /// The layout step: places `ix1` for the present panel, image, zoom and fit, then the bars.
    void layout();
    /// How large the first picture of the next load must be, in device pixels; empty for every pixel.
    QSize loadBox() const;
    /// `box` gives that size while the picture is shown elsewhere, and nothing while it is shown here.
    void setLoadBoxElsewhere(std::function<std::optional<QSize>()> box) { m_boxElsewhere = std::move(box); }
    /// Tells the engine so.
    void announceLoadBox();

    engine::ImageEngine* ix1() const { return m_ix1; }
    controls::ScrollBar* sb1() const { return m_sb1; }
    controls::ScrollBar* sb2() const { return m_sb2; }
    QWidget* pContain() const { return m_pContain; }

  Q_SIGNALS:
    /// The layout step has run, or the picture is shown elsewhere, or no longer.
    void laidOut();

  private:
    /// Twips to a device pixel of the screen, TPX and TPY.
    QSizeF twipsPerPixel() const;
    /// Size of the panel without its bars, device pixels.
    QSizeF clearPanel() const;
    ViewState state() const;
    void layoutBars(QSize control);
    void followBar(const controls::ScrollBar* bar);

    QWidget* m_pContain;
    engine::ImageEngine* m_ix1;
    controls::ScrollBar* m_sb1; ///< vertical
    controls::ScrollBar* m_sb2; ///< horizontal
    std::function<std::optional<QSize>()> m_boxElsewhere;
    bool m_fitToWindow = true;
};

} // namespace quorvia::viewer
