// Turns what the mouse does on the image control into panning, zooming and commands. In a fit only the double
// click, the context menu and the wheel with Ctrl do something.
#pragma once

#include <QObject>
#include <QPoint>
#include <QPointF>

#include <functional>
#include <optional>

class QMouseEvent;
class QWheelEvent;

namespace quorvia::viewer {

class Viewport;

class ViewportGestures : public QObject
{
    Q_OBJECT

  public:
    /// Where gestures lead.
    struct Sinks
    {
        std::function<void(const QString&)> runTool;
        std::function<void()> openMenu; ///< shows the context menu
    };

    /// Watches the mouse on the image control of `viewport`, which outlives this.
    ViewportGestures(Viewport* viewport, Sinks sinks, QObject* parent = nullptr);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void press(const QMouseEvent& event);
    void clickTwice(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    void turnWheel(const QWheelEvent& event);
    void pan(QPointF pointer);
    /// Scrolls by turns of the wheel, eighths of a degree each way.
    void scroll(QPoint angle);
    void drawSelection(QPointF pointer);
    /// The pixel under `pointer`, within the image.
    QPoint boundedPixel(QPointF pointer) const;
    /// Runs the zoom command `tool` so that what lies under `pointer`, a place in the panel, stays there.
    void zoomAround(const QString& tool, QPointF pointer);

    Viewport* m_viewport;
    Sinks m_sinks;
    QPointF m_panStart;                 ///< pointer position at the last pan step, in the panel
    QPointF m_scrollLeft;               ///< of a device pixel of scrolling
    QPoint m_selectionStart;            ///< image pixel
    std::optional<quint64> m_leftPress; ///< the last one, milliseconds of the display's clock
    bool m_inMouseStep = false;
    bool m_panned = false;
    int m_wheelLeft = 0; ///< of a step of the wheel, eighths of a degree
};

} // namespace quorvia::viewer
