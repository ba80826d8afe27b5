// Writes Windows bitmaps with file header. A colour profile makes the header one of version 5 and stands
// behind the pixels.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as uncompressed rows: 1 bit for Mono, 8 bits with palette for Indexed8 and Grayscale8, 24 bits for
/// what has no alpha, 32 bits under a version 5 header with alpha mask for what has. `profile` (ICC) is
/// embedded when its colours are those of the image: grey for Grayscale8, else RGB. Unsupported for a null
/// image or more than 4 GiB.
Result<QByteArray> writeBmp(const QImage& image, const QByteArray& profile = {});

/// `image` as RLE8: Indexed8 and Grayscale8 as they are, anything else brought to 256 colours over white.
/// `profile` as for writeBmp().
Result<QByteArray> writeRleBmp(const QImage& image, const QByteArray& profile = {});

} // namespace quorvia::engine
