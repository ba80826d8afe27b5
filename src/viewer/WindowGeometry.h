// Place and size of the main window: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QSize>

namespace quorvia::viewer {

/// The window of a first start on a screen of `screen` twips: seven eighths of it each way, centred.
QRect defaultGeometry(QSize screen);

/// `size` raised to the smallest that the window takes: 1500 x 2000 twips.
QSize usableSize(QSize size);

} // namespace quorvia::viewer
