#include "viewer/WindowGeometry.h"

namespace quorvia::viewer {

QSize defaultSize(QSize screen)
{
    return {screen.width() - screen.width() / 8, screen.height() - screen.height() / 8};
}

QPoint defaultCorner(QSize screen, QSize size)
{
    return {screen.width() / 2 - size.width() / 2, screen.height() / 2 - size.height() / 2};
}

QPoint visibleCorner(QPoint stored, QSize size, QRect desktop, QPoint fallback)
{
    // Compared side by side: a damaged setting may lie where a rectangle's far edge does not fit an int.
    const bool beside = stored.x() > desktop.right() || stored.x() <= desktop.left() - size.width();
    const bool above = stored.y() > desktop.bottom() || stored.y() <= desktop.top() - size.height();
    return beside || above ? fallback : stored;
}

QSize usableSize(QSize size, QSize desktop)
{
    return size.boundedTo(desktop).expandedTo(QSize(1500, 2000));
}

} // namespace quorvia::viewer
