// Writes PCX files of version 5 with run length.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` with 1 bit for Mono in black and white, 8 bits and a palette for Mono in other colours, Indexed8
/// and Grayscale8, 24 bits for everything else; alpha is laid over white. Unsupported for a null image or
/// more than 65535 pixels a side, TooLarge when there is no memory.
Result<QByteArray> writePcx(const QImage& image);

} // namespace quorvia::engine
