// Counts the colours of an image, exactly.
#pragma once

#include <QImage>

namespace quorvia::engine {

/// The number of different RGB values in `image` (alpha does not count); 0 for a null image. Deep images use
/// one bit a colour over 2^24 (2 MiB); palettes are counted by the entries in use.
int countColors(const QImage& image);

} // namespace quorvia::engine
