// The transforms of the image engine as plain functions over images. Depth and palette are kept where they
// can be.
#pragma once

#include <QColor>
#include <QImage>
#include <QSize>

namespace quorvia::engine {

/// The size of `size` turned by `degrees`: of its bounding box, where that is no multiple of 90.
QSize rotatedSize(QSize size, double degrees);

/// `image` turned by `degrees`, positive counter-clockwise. Multiples of 90 move pixels exactly and keep the
/// format; others give the bounding box, bilinearly resampled about the centre, filled with `fill`, in 32
/// bits (8 bits grey for a grey image and fill). Null without memory; unchanged when `degrees` is not finite.
QImage rotated(const QImage& image, double degrees, const QColor& fill);

/// `image` at `size` pixels: area-averaged when made smaller, bicubic (Catmull-Rom) when made larger, per
/// axis. An image with a palette comes back with 8 bits grey or 32 bits; one that has the size already comes
/// back as it is. Null for an empty size or image.
QImage resized(const QImage& image, QSize size);

/// `image` with an edge of `width` pixels inside it: style 1 raised (light top and left, dark bottom and
/// right), any other sunken. `intensity` 0 to 25 is the share mixed in of white or black at the outer rim, in
/// parts of 25; it fades evenly to nothing over the width. The width is bounded by half the shorter side.
/// Where two sides meet at a corner the nearer rim counts, the upper left one on the diagonal. Alpha stays; a
/// palette becomes 8 bits grey or 32 bits. Unchanged for a width or an intensity below 1.
QImage bevelled(const QImage& image, int style, int width, int intensity);

} // namespace quorvia::engine
