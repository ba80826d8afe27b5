// Writes a TIFF of one page.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as little-endian TIFF in strips: black and white as CCITT group 4; palettes, grey, RGB and RGBA
/// (alpha not multiplied in) as LZW, grey and deep ones with differencing. `profile` (ICC) is embedded when
/// its colours are those of the file: grey or RGB. Unsupported for a null image or more than 4 GiB.
Result<QByteArray> writeTiff(const QImage& image, const QByteArray& profile = {});

} // namespace quorvia::engine
