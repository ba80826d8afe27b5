#include "platform/Band.h"

#include "platform/BandDock.h"
#include "platform/BandTitleBar.h"
#include "platform/MenuControl.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>

#include <array>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr std::array<std::pair<int, Qt::DockWidgetArea>, 4> sides = {
    {{dockingArea::left, Qt::LeftDockWidgetArea},
     {dockingArea::right, Qt::RightDockWidgetArea},
     {dockingArea::top, Qt::TopDockWidgetArea},
     {dockingArea::bottom, Qt::BottomDockWidgetArea}}};

Qt::DockWidgetArea toSide(int area)
{
    for (const auto& [number, side] : sides) {
        if (number == area)
            return side;
    }
    return Qt::LeftDockWidgetArea;
}

int fromSide(Qt::DockWidgetArea side)
{
    for (const auto& [number, known] : sides) {
        if (known == side)
            return number;
    }
    return dockingArea::left;
}

QList<QRect> screenRects()
{
    QList<QRect> rects;
    for (const QScreen* screen : QGuiApplication::screens())
        rects.append(screen->availableGeometry());
    return rects;
}

/// How far the first floating place lies from the docked one, so that the user sees what has happened.
constexpr QPoint firstOffset(24, 24);

/// `state` with one of its values replaced.
BandState with(BandState state, auto BandState::*which, auto value)
{
    state.*which = value;
    return state;
}

} // namespace

Band::Band(MenuControl* control, const QString& name, const QString& toolName, const QString& caption,
           int area)
    : m_control(control), m_name(name), m_toolName(toolName), m_caption(caption),
      m_dockedArea(isDockingArea(area) && area != dockingArea::floating ? area : dockingArea::left)
{
    setObjectName(name);
    m_state.visible = false;
    m_state.area = m_dockedArea;
}

Band::~Band()
{
    delete m_dock;
}

void Band::setClient(QWidget* client)
{
    if (client == m_client)
        return;
    if (!m_dock && m_client)
        m_client->setParent(nullptr);
    m_client = client;
    if (m_dock) {
        m_dock->setClient(client);
    } else if (client) {
        client->setParent(m_control, Qt::Widget);
        client->hide();
    }
}

void Band::setVisible(bool visible)
{
    change(with(state(), &BandState::visible, visible));
}

void Band::setDockingArea(int area)
{
    change(with(state(), &BandState::area, area));
}

void Band::setWidth(int width)
{
    change(with(state(), &BandState::width, width));
}

void Band::toggleFloating()
{
    setDockingArea(isFloating() ? m_dockedArea : dockingArea::floating);
}

BandState Band::state() const
{
    BandState now = m_state;
    if (!m_dock || !m_dock->isVisible())
        return now;
    if (isFloating()) {
        now.floatingPosition = m_dock->geometry().topLeft();
        now.floatingSize = m_dock->size();
    } else if (m_control->isClientAreaShown()) {
        (isUpright(m_state.area) ? now.width : now.height) = actualExtent(m_state.area);
    }
    return now;
}

void Band::apply(const BandState& state)
{
    change(state);
}

void Band::change(const BandState& next)
{
    const BandState before = state();
    m_state = usableState(next, before, screenRects());
    if (!isFloating())
        m_dockedArea = m_state.area;
    place();
    const BandState after = m_state;
    if (after.area != before.area)
        Q_EMIT areaChanged(after.area);
    if (after.visible != before.visible)
        Q_EMIT visibilityChanged(after.visible);
    if (after.width != before.width || after.height != before.height ||
        after.floatingPosition != before.floatingPosition || after.floatingSize != before.floatingSize)
        Q_EMIT geometryChanged();
}

void Band::makeDock()
{
    if (m_dock)
        return;
    m_dock = new BandDock(this, m_control);
    if (m_client)
        m_dock->setClient(m_client);
    connect(m_dock, &QDockWidget::topLevelChanged, this, &Band::noteArea);
    connect(m_dock, &QDockWidget::dockLocationChanged, this, &Band::noteArea);
    connect(m_dock, &BandDock::pressed, this, &Band::adoptFloatingRect);
    connect(m_dock, &BandDock::windowClosed, this, &Band::noteClosed);
    connect(m_dock, &BandDock::geometryChanged, this, [this] {
        if (!m_placing)
            Q_EMIT geometryChanged();
    });
    connect(m_dock->titleBar(), &BandTitleBar::floatingToggled, this, &Band::toggleFloating);
    connect(m_dock->titleBar(), &BandTitleBar::closeClicked, this, [this] { setVisible(false); });
}

void Band::place()
{
    const QScopedValueRollback placing(m_placing, true);
    const bool canShow = m_state.visible && (!isFloating() || m_control->isVisible());
    if (!canShow) {
        if (m_dock)
            m_dock->hide();
    } else {
        makeDock();
        if (isFloating())
            placeFloating();
        else
            placeDocked();
    }
    m_control->recalcLayout();
}

void Band::placeFloating()
{
    if (!m_state.floatingPosition) {
        const bool fromSide = m_dock->isVisible() && !m_dock->isFloating();
        const QWidget* origin = fromSide ? static_cast<QWidget*>(m_dock) : m_control;
        m_state.floatingPosition = origin->mapToGlobal(firstOffset);
    }
    const QRect rect = onScreen(*m_state.floatingPosition, m_state.floatingSize, screenRects());
    m_state.floatingPosition = rect.topLeft();
    m_state.floatingSize = rect.size();
    if (m_control->sideOf(m_dock) == Qt::NoDockWidgetArea)
        m_control->addDockWidget(toSide(m_dockedArea), m_dock); // so that it knows where it docks
    m_dock->floatAt(rect);
}

void Band::placeDocked()
{
    if (m_control->sideOf(m_dock) != toSide(m_dockedArea))
        m_control->addDockWidget(toSide(m_dockedArea), m_dock);
    if (m_dock->isFloating())
        m_dock->setFloating(false);
    m_dock->show();
    m_control->shareExtent(this);
}

void Band::noteArea()
{
    if (m_placing)
        return;
    const int area = m_dock->isFloating() ? dockingArea::floating : fromSide(m_control->sideOf(m_dock));
    if (area == m_state.area)
        return;
    m_state.area = area;
    if (!isFloating()) {
        m_dockedArea = area;
        m_control->takeSharedExtent(this);
    }
    Q_EMIT areaChanged(area);
}

void Band::adoptFloatingRect()
{
    if (!isFloating() || !m_dock->isVisible())
        return;
    m_state.floatingPosition = m_dock->geometry().topLeft();
    m_state.floatingSize = m_dock->size();
}

/// The window of a floating band is closed by the window manager for the user, who then wants the band
/// hidden, or because the whole program ends, and then the band stays as it is. Which of them is known when
/// the main window's own close has, or has not, come in the same turn.
void Band::noteClosed()
{
    adoptFloatingRect();
    if (m_control->isWindowClosing())
        return;
    m_closePending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (std::exchange(m_closePending, false))
                setVisible(false);
        },
        Qt::QueuedConnection);
}

void Band::keepDespiteClose()
{
    m_closePending = false;
}

int Band::wantedExtent(int area) const
{
    return isUpright(area) ? m_state.width : m_state.height;
}

void Band::setWantedExtent(int area, int extent)
{
    (isUpright(area) ? m_state.width : m_state.height) = extent;
}

int Band::actualExtent(int area) const
{
    return isUpright(area) ? m_dock->width() : m_dock->height();
}

void Band::showFloat()
{
    const bool isUp = m_dock && m_dock->isVisible();
    if (isFloating() && m_state.visible && !isUp)
        place();
}

void Band::hideFloat()
{
    if (!m_dock || !isFloating() || !m_dock->isVisible())
        return;
    adoptFloatingRect();
    m_dock->hide();
}

} // namespace quorvia::platform
