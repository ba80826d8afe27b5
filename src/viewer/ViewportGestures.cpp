#include "viewer/ViewportGestures.h"

#include "app/PendingEvents.h"
#include "controls/ScrollBar.h"
#include "engine/ImageEngine.h"
#include "viewer/Viewport.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>

namespace quorvia::viewer {

namespace {

// The modes of the mouse, which the image control's pointer holds.
constexpr int idle = 0;
constexpr int panning = 25;
constexpr int selecting = 30;

constexpr int wheelStep = 120; // eighths of a degree

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
    m_viewport->ix1()->setMouseTracking(
        true); // a movement without a button tells of a release that went elsewhere
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
        clickTwice(static_cast<QMouseEvent&>(*event));
        return true;
    default:
        return false;
    }
}

void ViewportGestures::press(const QMouseEvent& event)
{
    m_panned = false;
    if (event.button() == Qt::LeftButton)
        m_leftPress = event.timestamp();
    engine::ImageEngine* const ix1 = m_viewport->ix1();
    ix1->ClearRubberBand(); // of a rectangle that was dropped
    if (m_viewport->FitToWindow() || event.button() != Qt::LeftButton)
        return;
    if (isZoomModifier(event.modifiers())) {
        m_selectionStart = boundedPixel(event.position());
        ix1->SetMousePointer(selecting);
    } else if (event.modifiers() == Qt::NoModifier && m_viewport->canScroll()) {
        m_panStart = ix1->mapToParent(event.position());
        ix1->SetMousePointer(panning);
    }
}

/// Two presses of another button soon after each other are two presses. So are two of which the first was for
/// a window that it closed.
void ViewportGestures::clickTwice(const QMouseEvent& event)
{
    const int longest = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    const bool both = m_leftPress && event.timestamp() - *m_leftPress <= quint64(longest);
    m_leftPress.reset();
    if (event.button() == Qt::LeftButton && both)
        m_sinks.runTool(QStringLiteral("miFullScreen"));
    else
        press(event);
}

void ViewportGestures::move(const QMouseEvent& event)
{
    if (m_inMouseStep)
        return;
    const int mode = m_viewport->ix1()->MousePointer();
    if (mode != idle && !(event.buttons() & Qt::LeftButton)) { // the release went elsewhere
        m_viewport->ix1()->SetMousePointer(idle);
        m_panned = false;
    } else if (mode == panning) {
        const Guard guard(m_inMouseStep);
        pan(m_viewport->ix1()->mapToParent(event.position()));
        app::letPendingEventsRun();
    } else if (mode == selecting) {
        const Guard guard(m_inMouseStep);
        drawSelection(event.position());
        app::letPendingEventsRun();
    }
}

void ViewportGestures::pan(QPointF pointer)
{
    const double ratio = m_viewport->pContain()->devicePixelRatioF();
    const QPoint moved = ((pointer - m_panStart) * ratio).toPoint(); // in whole device pixels
    if (moved.isNull())
        return;
    m_panned = true;
    m_panStart += QPointF(moved) / ratio; // what is left over counts for the next step
    m_viewport->scrollBy(-moved.x(), -moved.y());
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
    const int turned = event.angleDelta().y() != 0 ? event.angleDelta().y() : event.angleDelta().x();
    if (event.modifiers() & Qt::ControlModifier) {
        if ((m_wheelLeft > 0) != (turned > 0))
            m_wheelLeft = 0;
        m_wheelLeft += turned;
        for (; std::abs(m_wheelLeft) >= wheelStep; m_wheelLeft += m_wheelLeft > 0 ? -wheelStep : wheelStep)
            zoomAround(m_wheelLeft > 0 ? QStringLiteral("miZoomIn") : QStringLiteral("miZoomOut"),
                       m_viewport->pContain()->mapFromGlobal(event.globalPosition()));
        return;
    }
    const bool downShows = !m_viewport->sb1()->isHidden();
    const bool acrossShows = !m_viewport->sb2()->isHidden();
    const bool across = (event.modifiers() & Qt::ShiftModifier && acrossShows) || !downShows;
    if (event.angleDelta().x() != 0 && event.angleDelta().y() != 0) // a touch pad goes both ways at once
        scroll(event.angleDelta());
    else if (across || (event.angleDelta().y() == 0 && acrossShows))
        scroll({turned, 0});
    else
        scroll({0, turned});
}

void ViewportGestures::scroll(QPoint angle)
{
    constexpr double pixelsPerStep = 60;
    const double ratio = m_viewport->pContain()->devicePixelRatioF();
    m_scrollLeft += QPointF(angle) * (-pixelsPerStep * ratio / wheelStep);
    const QPoint whole(int(m_scrollLeft.x()), int(m_scrollLeft.y()));
    m_scrollLeft -= whole;
    m_viewport->scrollBy(whole.x(), whole.y());
}

void ViewportGestures::zoomAround(const QString& tool, QPointF pointer)
{
    const QPointF share = m_viewport->shareAt(pointer);
    m_sinks.runTool(tool);
    m_viewport->bring(share, pointer);
}

} // namespace quorvia::viewer
