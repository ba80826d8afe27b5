// Writes Targa files, version 2: bottom row first, run length where that is smaller. Costs two passes over
// the rows.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as 8 bits with palette for Mono and Indexed8, grey for Grayscale8, 24 bits for what has no alpha,
/// 32 bits for what has. Unsupported for a null image and for sides over 65535.
Result<QByteArray> writeTga(const QImage& image);

} // namespace quorvia::engine
