// What encoders ask of an image: one of five formats, or a palette of at most 256 colours, exact where the
// image allows it, else the best with the error spread over the neighbours. A palette costs two or three
// passes.
#pragma once

#include <QImage>

namespace quorvia::engine {

/// True when an entry of the palette of `image` is not opaque.
bool hasTransparentEntry(const QImage& image);

/// `image` in the one of Mono, Indexed8, Grayscale8, RGB32 and ARGB32 that holds it without loss of what the
/// others hold: palettes stay unless an entry is not opaque, all other formats become RGB32 or, with alpha,
/// ARGB32.
QImage storable(const QImage& image);

/// `image` as Indexed8 with at most `colors` (2 to 256) palette entries. The colours stay exact when there
/// are no more than that. Pixels whose alpha is below 128 share one entry with alpha 0; all others become
/// opaque. The unused byte of RGB32 is not looked at. A null image when there is no memory for the result.
QImage reducedToPalette(const QImage& image, int colors);

} // namespace quorvia::engine
