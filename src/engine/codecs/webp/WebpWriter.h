// Writes WebP files.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` without loss, with alpha where it has any; the colours under full transparency stay. `profile` is
/// the ICC profile to embed, empty for none; one of greys is left out, since the pixels are RGB. Unsupported
/// for a null image or more than 16383 pixels a side, TooLarge when there is no memory.
Result<QByteArray> writeWebp(const QImage& image, const QByteArray& profile);

} // namespace quorvia::engine
