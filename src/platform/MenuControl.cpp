#include "platform/MenuControl.h"

#include "platform/BandDock.h"

#include <QLayout>
#include <QMenu>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace quorvia::platform {

MenuControl::MenuControl(QWidget* parent) : QMainWindow(parent)
{
    setWindowFlags(Qt::Widget);
    setDockOptions({}); // neither tabs, which would hide a band that counts as shown, nor moving pictures
}

MenuControl::~MenuControl() = default;

Band* MenuControl::addBand(const QString& name, const QString& toolName, const QString& caption, int area)
{
    m_bands.emplace_back(new Band(this, name, toolName, caption, area));
    return m_bands.back().get();
}

Band* MenuControl::band(const QString& name) const
{
    const auto found = std::find_if(m_bands.begin(), m_bands.end(),
                                    [&](const auto& candidate) { return candidate->name() == name; });
    return found == m_bands.end() ? nullptr : found->get();
}

void MenuControl::setClientArea(QWidget* widget)
{
    if (widget == centralWidget())
        return;
    if (QWidget* former = takeCentralWidget())
        former->hide();
    if (widget) {
        const bool hidden = widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
        setCentralWidget(widget);
        widget->setVisible(!hidden);
    }
    recalcLayout();
}

void MenuControl::recalcLayout()
{
    resizeSides(dockingArea::left, dockingArea::right, width());
    resizeSides(dockingArea::top, dockingArea::bottom, height());
    if (!isVisible())
        layout()->invalidate(); // a hidden one has not heard of its size yet
    layout()->activate();
}

void MenuControl::resizeSides(int near, int far, int available)
{
    const int keptForFar = bandsAt(far).empty() ? 0 : smallestBand;
    resizeSide(far, available - resizeSide(near, available - keptForFar));
}

/// Gives the side what its bands want, as far as `available` goes; the result is what it got.
int MenuControl::resizeSide(int area, int available)
{
    const std::vector<Band*> bands = bandsAt(area);
    if (bands.empty())
        return 0;
    const int extent = dockedExtent(bands.front()->wantedExtent(area), available);
    if (isClientAreaShown() && extent != bands.front()->actualExtent(area))
        resizeDocks({bands.front()->dock()}, {std::max(extent, 1)}, // the toolkit knows no dock of 0
                    isUpright(area) ? Qt::Horizontal : Qt::Vertical);
    return extent;
}

QMenu* MenuControl::createPopupMenu()
{
    return nullptr; // the viewer has a context menu of its own
}

bool MenuControl::isClientAreaShown() const
{
    return centralWidget() && !centralWidget()->isHidden();
}

std::vector<Band*> MenuControl::bandsAt(int area) const
{
    std::vector<Band*> found;
    for (const auto& band : m_bands) {
        if (band->dock() && band->isDockedAt(area))
            found.push_back(band.get());
    }
    return found;
}

void MenuControl::shareExtent(const Band* band)
{
    const int area = band->dockingArea();
    for (Band* other : bandsAt(area))
        other->setWantedExtent(area, band->wantedExtent(area));
}

void MenuControl::takeSharedExtent(Band* band)
{
    const int area = band->dockingArea();
    for (const Band* other : bandsAt(area)) {
        if (other != band)
            band->setWantedExtent(area, other->wantedExtent(area));
    }
}

void MenuControl::noteExtents()
{
    m_extentsAtPress.clear();
    for (const auto& band : m_bands) {
        if (band->dock() && band->visible() && !band->isFloating())
            m_extentsAtPress.emplace_back(band.get(), band->actualExtent(band->dockingArea()));
    }
}

/// After the user has moved a splitter: what has changed is what is wanted from now on.
void MenuControl::adoptExtents()
{
    for (const auto& [band, before] : m_extentsAtPress) {
        const int now = band->actualExtent(band->dockingArea());
        if (now != before)
            band->setWantedExtent(band->dockingArea(), now);
    }
    m_extentsAtPress.clear();
}

bool MenuControl::event(QEvent* event)
{
    const bool press = event->type() == QEvent::MouseButtonPress;
    const bool release = event->type() == QEvent::MouseButtonRelease;
    const bool handled = QMainWindow::event(event);
    if (press && event->isAccepted()) { // only a press on a splitter is
        m_separatorHeld = true;
        noteExtents();
    } else if (release && std::exchange(m_separatorHeld, false)) {
        adoptExtents();
    }
    return handled;
}

void MenuControl::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    recalcLayout(); // bands that had been squeezed get back what they want
}

void MenuControl::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    watchWindow();
    // Later, so that the main window comes up first.
    QMetaObject::invokeMethod(
        this,
        [this] {
            for (const auto& band : m_bands)
                band->showFloat();
        },
        Qt::QueuedConnection);
}

void MenuControl::hideEvent(QHideEvent* event)
{
    QMainWindow::hideEvent(event);
    if (event->spontaneous()) // minimised: the window manager takes the floating bands along
        return;
    for (const auto& band : m_bands)
        band->hideFloat();
}

void MenuControl::watchWindow()
{
    if (m_window == window())
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window();
    m_window->installEventFilter(this);
}

bool MenuControl::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Close)
        noteWindowCloses();
    return QMainWindow::eventFilter(watched, event);
}

/// Windows of floating bands that are closed in the same turn as the main window leave their bands visible:
/// so they come back at the next start.
void MenuControl::noteWindowCloses()
{
    m_windowClosing = true;
    for (const auto& band : m_bands)
        band->keepDespiteClose();
    QMetaObject::invokeMethod(
        this, [this] { m_windowClosing = false; }, Qt::QueuedConnection);
}

} // namespace quorvia::platform
