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

/// Where the parts of a place are kept: under a stem, or under keys of their own.
class PlacementStore
{
  public:
    explicit PlacementStore(const QString& stem) : m_stem(stem) {}
    explicit PlacementStore(const PlacementKeys& keys) : m_keys(keys) {}

    int read(Placement part, int present) const
    {
        if (!m_keys)
            return readPlacement(m_stem, part, present);
        return part == Placement::WinState ? app::read(m_keys->state) : app::read(keyOf(part), present);
    }
    void save(Placement part, int value) const
    {
        if (!m_keys)
            savePlacement(m_stem, part, value);
        else if (part == Placement::WinState)
            app::save(m_keys->state, value);
        else
            app::save(keyOf(part), value);
    }
    /// A stored length in twips; `pixels` when there is none, or one that no window has.
    int length(Placement part, int pixels) const
    {
        const int stored = read(part, toTwips(pixels));
        return stored > 0 ? stored : toTwips(pixels);
    }

  private:
    const OpenNumberKey& keyOf(Placement part) const
    {
        switch (part) {
        case Placement::Left:
            return m_keys->left;
        case Placement::Top:
            return m_keys->top;
        case Placement::Width:
            return m_keys->width;
        default:
            return m_keys->height;
        }
    }

    QString m_stem;
    std::optional<PlacementKeys> m_keys;
};

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

namespace {

void savePlace(const PlacementStore& store, QWidget* window)
{
    store.save(Placement::WinState, stateOf(*window));
    if (stateOf(*window) != normal) {
        constexpr int patience = 500; // milliseconds for the window manager
        const QSize usual = window->normalGeometry().size();
        applyState(*window, normal);
        letEventsRunUntil([&] { return window->size() == usual; }, patience);
    }
    store.save(Placement::Left, toTwips(window->x()));
    store.save(Placement::Top, toTwips(window->y()));
    store.save(Placement::Width, toTwips(window->width()));
    store.save(Placement::Height, toTwips(window->height()));
}

void loadPlace(const PlacementStore& store, QWidget* window, bool useDefaultPosition)
{
    const int state = store.read(Placement::WinState, stateOf(*window));
    const QPoint present(toTwips(window->x()), toTwips(window->y()));
    const QPoint stored(store.read(Placement::Left, present.x()), store.read(Placement::Top, present.y()));
    const QSize size(store.length(Placement::Width, window->width()),
                     store.length(Placement::Height, window->height()));
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

} // namespace

void SaveWindowPlacement(const QString& stem, QWidget* window)
{
    savePlace(PlacementStore(stem), window);
}

void LoadWindowPlacement(const QString& stem, QWidget* window, bool useDefaultPosition)
{
    loadPlace(PlacementStore(stem), window, useDefaultPosition);
}

void SaveWindowPlacement(const PlacementKeys& keys, QWidget* window)
{
    savePlace(PlacementStore(keys), window);
}

void LoadWindowPlacement(const PlacementKeys& keys, QWidget* window)
{
    loadPlace(PlacementStore(keys), window, false);
}

} // namespace quorvia::app
