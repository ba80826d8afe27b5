#include "viewer/ViewportGestures.h"

#include "app/PendingEvents.h"
#include "controls/ScrollBar.h"
#include "engine/ImageEngine.h"
#include "viewer/Viewport.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>

namespace quorvia::viewer {

namespace {

// The modes of the mouse, which the image control's pointer holds.
constexpr int idle = 0;
constexpr int panning = 25;
constexpr int selecting = 30;

/// The modifiers that make a gesture of a button. Many desktops keep Alt and a button for their windows, so
/// that Ctrl serves too.
bool isZoomModifier(Qt::KeyboardModifiers modifiers)
{
    return modifiers == Qt::AltModifier || modifiers == Qt::ControlModifier;
}

/// Keeps a nested step out while pending events run.
class Guard
{
  public:
    explicit Guard(bool& inside) : m_inside(inside) { m_inside = true; }
    ~Guard() { m_inside = false; }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

  private:
    bool& m_inside;
};

} // namespace

ViewportGestures::ViewportGestures(Viewport* viewport, Sinks sinks, QObject* parent)
    : QObject(parent), m_viewport(viewport), m_sinks(std::move(sinks))
{
    m_viewport->ix1()->installEventFilter(this);
    m_viewport->pContain()->installEventFilter(this);
}

bool ViewportGestures::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Wheel) { // beside the picture too
        turnWheel(static_cast<QWheelEvent&>(*event));
        return true;
    }
    if (watched != m_viewport->ix1())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(static_cast<QMouseEvent&>(*event));
        return true;
    case QEvent::MouseMove:
        move(static_cast<QMouseEvent&>(*event));
        return true;
    case QEvent::MouseButtonRelease:
        release(static_cast<QMouseEvent&>(*event));
        return true;
    case QEvent::MouseButtonDblClick:
        m_sinks.runTool(QStringLiteral("miFullScreen"));
        return true;
    default:
        return false;
    }
}

void ViewportGestures::press(const QMouseEvent& event)
{
    if (m_viewport->FitToWindow() || event.button() != Qt::LeftButton)
        return;
    engine::ImageEngine* const ix1 = m_viewport->ix1();
    if (isZoomModifier(event.modifiers())) {
        ix1->ClearRubberBand();
        m_selectionStart = boundedPixel(event.position());
        ix1->SetMousePointer(selecting);
    } else if (event.modifiers() == Qt::NoModifier && m_viewport->canScroll()) {
        m_panStart = ix1->mapToParent(event.position().toPoint());
        ix1->SetMousePointer(panning);
    }
}

void ViewportGestures::move(const QMouseEvent& event)
{
    if (m_inMouseStep)
        return;
    const int mode = m_viewport->ix1()->MousePointer();
    if (mode == panning) {
        const Guard guard(m_inMouseStep);
        pan(m_viewport->ix1()->mapToParent(event.position().toPoint()));
        app::letPendingEventsRun();
    } else if (mode == selecting && event.buttons() & Qt::LeftButton) {
        const Guard guard(m_inMouseStep);
        drawSelection(event.position());
        app::letPendingEventsRun();
    }
}

void ViewportGestures::pan(QPointF pointer)
{
    const QPointF moved = pointer - m_panStart;
    const double ratio = m_viewport->pContain()->devicePixelRatioF();
    m_panned = m_panned || !moved.isNull();
    m_panStart = pointer;
    m_viewport->scrollBy(-int(std::lround(moved.x() * ratio)), -int(std::lround(moved.y() * ratio)));
}

QPoint ViewportGestures::boundedPixel(QPointF pointer) const
{
    const engine::ImageEngine& ix1 = *m_viewport->ix1();
    return clampedPixel(m_viewport->imagePixelAt(pointer),
                        QSize(ix1.ImagePixelWidth(), ix1.ImagePixelHeight()));
}

void ViewportGestures::drawSelection(QPointF pointer)
{
    const QPoint end = boundedPixel(pointer);
    engine::ImageEngine* const ix1 = m_viewport->ix1();
    ix1->ClearRubberBand();
    ix1->DrawRubberBand(m_selectionStart.x(), m_selectionStart.y(), end.x(), end.y(), Qt::red, true);
}

void ViewportGestures::release(const QMouseEvent& event)
{
    engine::ImageEngine* const ix1 = m_viewport->ix1();
    const bool selected = ix1->MousePointer() == selecting;
    const bool panned = std::exchange(m_panned, false);
    ix1->SetMousePointer(idle);
    const bool plain = event.modifiers() == Qt::NoModifier;
    if (event.button() == Qt::RightButton) {
        if (plain)
            m_sinks.openMenu();
        else if (isZoomModifier(event.modifiers()) && !m_viewport->FitToWindow())
            m_sinks.runTool(QStringLiteral("miZoomOut"));
        return;
    }
    if (event.button() != Qt::LeftButton)
        return;
    if (isZoomModifier(event.modifiers())) {
        if (selected && !m_viewport->FitToWindow())
            m_viewport->zoomOnto(m_selectionStart, boundedPixel(event.position()));
    } else if (plain && ix1->ZoomFactor() != 1.0 && !panned) {
        ix1->Zoom(1.0);
        app::letPendingEventsRun();
        m_viewport->layout();
    }
}

void ViewportGestures::turnWheel(const QWheelEvent& event)
{
    constexpr int step = 120; // eighths of a degree
    constexpr int pixelsPerStep = 60;
    const int turned = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
    if (event.modifiers() & Qt::ControlModifier) {
        m_wheelLeft += turned;
        for (; std::abs(m_wheelLeft) >= step; m_wheelLeft += m_wheelLeft > 0 ? -step : step)
            zoomAround(m_wheelLeft > 0 ? QStringLiteral("miZoomIn") : QStringLiteral("miZoomOut"),
                       m_viewport->pContain()->mapFromGlobal(event.globalPosition()));
        return;
    }
    const double ratio = m_viewport->pContain()->devicePixelRatioF();
    const auto scrolled = [&](int angle) {
        return -int(std::lround(double(angle) * pixelsPerStep * ratio / step));
    };
    const bool downShows = !m_viewport->sb1()->isHidden();
    const bool acrossShows = !m_viewport->sb2()->isHidden();
    const bool across = (event.modifiers() & Qt::ShiftModifier && acrossShows) || !downShows;
    if (event.angleDelta().x() != 0 && event.angleDelta().y() != 0) // a touch pad goes both ways at once
        m_viewport->scrollBy(scrolled(event.angleDelta().x()), scrolled(event.angleDelta().y()));
    else if (across || (event.angleDelta().y() == 0 && acrossShows))
        m_viewport->scrollBy(scrolled(turned), 0);
    else
        m_viewport->scrollBy(0, scrolled(turned));
}

void ViewportGestures::zoomAround(const QString& tool, QPointF pointer)
{
    const engine::ImageEngine* const ix1 = m_viewport->ix1();
    const QPointF share((pointer.x() - ix1->x()) / std::max(ix1->width(), 1),
                        (pointer.y() - ix1->y()) / std::max(ix1->height(), 1));
    m_sinks.runTool(tool);
    m_viewport->bring(share, pointer);
}

} // namespace quorvia::viewer
