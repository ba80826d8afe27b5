// Writes a GIF of one frame.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` with at most 256 colours, exact when it has no more. Pixels less than half opaque become the one
/// transparent entry. Unsupported for a null image or a side over 65535.
Result<QByteArray> writeGif(const QImage& image);

} // namespace quorvia::engine
