// Writes a picture as a placeable metafile that holds one bitmap.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` as a bitmap of 1 bit (Mono), 4 or 8 bits with palette (Indexed8 of up to 16 colours, and others),
/// 8 bits (Grayscale8) or 24 bits, at 96 dots per inch; alpha laid over white. Unsupported for a null image
/// and beyond 32767 pixels a side.
Result<QByteArray> writeWmf(const QImage& image);

} // namespace quorvia::engine
