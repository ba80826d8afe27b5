#include "viewer/WindowGeometry.h"

namespace quorvia::viewer {

QRect defaultGeometry(QSize screen)
{
    const QSize size(screen.width() - screen.width() / 8, screen.height() - screen.height() / 8);
    const QPoint corner(screen.width() / 2 - size.width() / 2, screen.height() / 2 - size.height() / 2);
    return {corner, size};
}

QSize usableSize(QSize size)
{
    return size.expandedTo(QSize(1500, 2000));
}

} // namespace quorvia::viewer
