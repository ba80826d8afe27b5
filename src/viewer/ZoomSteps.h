// The magnifications that the zoom commands reach, and the zoom onto a rectangle. Plain arithmetic.
#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QSizeF>

#include <optional>

namespace quorvia::viewer {

/// The next magnification up from `zoom` (1.0 is 100%): 0.2 more, from 2.0 on 2.0 more; without an upper
/// limit.
double zoomedIn(double zoom);
/// The next one down: 2.0 less above 2.0, else 0.2 less, never below 0.2.
double zoomedOut(double zoom);

/// The image pixel under `position`, device-independent pixels from the image control's corner. Not bounded.
QPoint imagePixelAt(QPointF position, QSizeF twipsPerPixel, double zoom);
/// `pixel` within an image of `image` pixels.
QPoint clampedPixel(QPoint pixel, QSize image);

/// What a zoom onto a rectangle sets.
struct RectangleZoom
{
    double zoom = 1.0;
    int horizontal = 0; ///< value of the horizontal bar, which clamps it
    int vertical = 0;
    bool operator==(const RectangleZoom&) const = default;
};

/// The zoom that shows the image pixels between two corners, in any order, in a panel of `panel` device
/// pixels (without its bars), at most 10 times, centred on the side that has room left. Nothing when the
/// rectangle has no area.
std::optional<RectangleZoom> zoomOnto(QPoint corner, QPoint other, QSizeF panel);

} // namespace quorvia::viewer
