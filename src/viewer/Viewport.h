// The viewport: keeps the image control in its place inside its panel. The picture is not redrawn for it,
// only moved, sized and told how to scale.
#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::viewer {

class Viewport : public QObject
{
    Q_OBJECT

  public:
    /// `ix1` is a child of `pContain`; both outlive the viewport.
    Viewport(QWidget* pContain, engine::ImageEngine* ix1, QObject* parent = nullptr);

    bool FitToWindow() const { return m_fitToWindow; }
    void setFitToWindow(bool fit) { m_fitToWindow = fit; }
    /// Flips the fit and goes back to 100%. What both view commands do.
    void flipFit();

    /// The layout step: places `ix1` for the present panel, image, zoom and fit.
    void layout();
    /// How large the first picture of the next load must be, in device pixels; empty for every pixel.
    QSize loadBox() const;
    /// Tells the engine so.
    void announceLoadBox();

  Q_SIGNALS:
    /// The layout step has run.
    void laidOut();

  private:
    QWidget* m_pContain;
    engine::ImageEngine* m_ix1;
    bool m_fitToWindow = true;
};

} // namespace quorvia::viewer
