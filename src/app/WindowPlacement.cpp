#include "app/WindowPlacement.h"

#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "app/WindowGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace quorvia::app {

namespace {

// The stored states of a window.
constexpr int normal = 0;
constexpr int minimised = 1;
constexpr int maximised = 2;

int stateOf(const QWidget& window)
{
    if (window.isMinimized())
        return minimised;
    return window.isMaximized() ? maximised : normal;
}

void applyState(QWidget& window, int state)
{
    Qt::WindowStates states = window.windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
    if (state == minimised)
        states |= Qt::WindowMinimized;
    if (state == maximised)
        states |= Qt::WindowMaximized;
    window.setWindowState(states);
}

/// A stored length in twips; `pixels` when there is none, or one that no window has.
int storedLength(const QString& stem, Placement which, int pixels)
{
    const int stored = readPlacement(stem, which, toTwips(pixels));
    return stored > 0 ? stored : toTwips(pixels);
}

/// The screen on which `window` is, or for one that never showed the one on which it belongs: its owner's, or
/// the primary one.
const QScreen& homeScreen(const QWidget& window)
{
    if (window.windowHandle())
        return *window.screen();
    const QWidget* const owner = window.parentWidget();
    return owner ? *owner->screen() : *QGuiApplication::primaryScreen();
}

} // namespace

QList<QRect> screensInTwips()
{
    QList<QRect> screens;
    const QList<QScreen*> all = QGuiApplication::screens();
    for (const QScreen* screen : all)
        screens.append(inTwips(screen->geometry()));
    return screens;
}

void SaveWindowPlacement(const QString& stem, QWidget* window)
{
    savePlacement(stem, Placement::WinState, stateOf(*window));
    if (stateOf(*window) != normal) {
        constexpr int patience = 500; // milliseconds for the window manager
        const QSize usual = window->normalGeometry().size();
        applyState(*window, normal);
        letEventsRunUntil([&] { return window->size() == usual; }, patience);
    }
    savePlacement(stem, Placement::Left, toTwips(window->x()));
    savePlacement(stem, Placement::Top, toTwips(window->y()));
    savePlacement(stem, Placement::Width, toTwips(window->width()));
    savePlacement(stem, Placement::Height, toTwips(window->height()));
}

void LoadWindowPlacement(const QString& stem, QWidget* window, bool useDefaultPosition)
{
    const int state = readPlacement(stem, Placement::WinState, stateOf(*window));
    const QPoint present(toTwips(window->x()), toTwips(window->y()));
    const QPoint stored(readPlacement(stem, Placement::Left, present.x()),
                        readPlacement(stem, Placement::Top, present.y()));
    const QSize size(storedLength(stem, Placement::Width, window->width()),
                     storedLength(stem, Placement::Height, window->height()));
    const QScreen& home = homeScreen(*window);
    const QRect screen = inTwips(home.geometry());
    const QSize usable =
        size.boundedTo(inTwips(home.virtualSize())).expandedTo(inTwips(window->minimumSize()));
    const QPoint middle = screen.topLeft() + defaultCorner(screen.size(), usable);
    // A size that had to be lowered was stored for another desktop, and so was its place.
    const bool lowered = usable.width() < size.width() || usable.height() < size.height();
    const QPoint asked = useDefaultPosition ? present : stored;
    const QPoint corner = lowered ? middle : visibleCorner(asked, usable, screensInTwips(), middle);
    window->move(toPixels(corner.x()), toPixels(corner.y()));
    window->resize(toPixels(usable.width()), toPixels(usable.height()));
    applyState(*window, state); // last: the toolkit takes a new size for the end of the other states
}

} // namespace quorvia::app
