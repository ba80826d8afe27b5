// Place and size of windows: plain arithmetic in twips.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace quorvia::app {

/// The size of a first start on a screen of `screen`: seven eighths of it each way.
QSize defaultSize(QSize screen);

/// The corner that puts a window of `size` in the middle of `screen`.
QPoint defaultCorner(QSize screen, QSize size);

/// `stored`, or `fallback` when nothing of a window of `size` at `stored` would lie on any of `screens`.
QPoint visibleCorner(QPoint stored, QSize size, const QList<QRect>& screens, QPoint fallback);

/// `size` raised to the smallest that the window takes, 1500 x 2000, and lowered to `desktop`, the size of
/// all screens together: a damaged setting must not ask for a window that no display server makes.
QSize usableSize(QSize size, QSize desktop);

} // namespace quorvia::app
