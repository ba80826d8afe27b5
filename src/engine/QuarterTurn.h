// Turns by quarters of a circle: pixels are only moved. As dear as a copy of the image, about; split over the
// cores.
#pragma once

#include <QImage>

namespace quorvia::engine {

/// `image` turned counter-clockwise by `quarters` times 90 degrees, 0 to 3, in its own format with its own
/// palette. Null without memory.
QImage turned(const QImage& image, int quarters);

} // namespace quorvia::engine
