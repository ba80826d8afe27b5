#include "app/WindowGeometry.h"

#include <algorithm>

namespace quorvia::app {

QSize defaultSize(QSize screen)
{
    return {screen.width() - screen.width() / 8, screen.height() - screen.height() / 8};
}

QPoint defaultCorner(QSize screen, QSize size)
{
    return {screen.width() / 2 - size.width() / 2, screen.height() / 2 - size.height() / 2};
}

QPoint visibleCorner(QPoint stored, QSize size, const QList<QRect>& screens, QPoint fallback)
{
    // Compared side by side: a damaged setting may lie where a rectangle's far edge does not fit an int.
    const bool visible = std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const bool beside = stored.x() > screen.right() || stored.x() <= screen.left() - size.width();
        const bool above = stored.y() > screen.bottom() || stored.y() <= screen.top() - size.height();
        return !beside && !above;
    });
    return visible ? stored : fallback;
}

QSize usableSize(QSize size, QSize desktop)
{
    return size.boundedTo(desktop).expandedTo(QSize(1500, 2000));
}

} // namespace quorvia::app
