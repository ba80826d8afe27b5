// Writes WordPerfect graphics of version 1 that hold one bitmap.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` with 1 bit a pixel when it is black and white, 4 bits for up to 16 colours, else 8; what has more
/// than 256 colours is brought to that many, alpha is laid over white. Unsupported for a null image or one of
/// more than 65535 pixels a side.
Result<QByteArray> writeWpg(const QImage& image);

} // namespace quorvia::engine
