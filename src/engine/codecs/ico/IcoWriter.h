// Writes icon files of one entry.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as an icon, made smaller with its proportions kept when a side is longer than 256 pixels. A side
/// of 256 gives a PNG entry. Below that bits and palettes of opaque colours are kept as 1, 4 or 8 bits, all
/// else has 32 bits with alpha. Unsupported for a null image.
Result<QByteArray> writeIco(const QImage& image);

} // namespace quorvia::engine
