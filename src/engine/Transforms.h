// The transforms of the image engine as plain functions over images. Depth and palette are kept where they
// can be.
#pragma once

#include <QColor>
#include <QImage>

namespace quorvia::engine {

/// `image` turned by `degrees`, positive counter-clockwise. Multiples of 90 move pixels exactly and keep the
/// format; others give the bounding box, smoothly resampled, filled with `fill`.
QImage rotated(const QImage& image, double degrees, const QColor& fill);

/// `image` at `size` pixels: area-averaged when made smaller, bicubic when made larger (per axis). An image
/// with a palette comes back with 8 bits grey or 32 bits. Null for an empty size or image.
QImage resized(const QImage& image, QSize size);

/// `image` with an edge of `width` pixels inside it: style 1 raised (light top and left, dark bottom and
/// right), any other sunken. `intensity` 0 to 100 is the share mixed in of white or black, in percent, at the
/// outer rim; it fades towards the inside. The width is bounded by half the shorter side.
QImage bevelled(const QImage& image, int style, int width, int intensity);

} // namespace quorvia::engine
