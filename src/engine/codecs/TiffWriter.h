// Writes a TIFF of one page.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as little-endian TIFF in strips: black and white as CCITT group 4; palettes, grey, RGB and RGBA
/// (alpha not multiplied in) as LZW, grey and deep ones with differencing. Unsupported for a null image or
/// more than 4 GiB.
Result<QByteArray> writeTiff(const QImage& image);

} // namespace quorvia::engine
