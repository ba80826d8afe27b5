// Writes a PNG that keeps the image's kind: 1 bit, palette, grey, RGB or RGB with alpha. Deflating is the
// cost.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// The PNG file of `image` (any QImage format; deeper ones are brought to 8 bits a channel, premultiplied
/// alpha is undone). `profile` (ICC) is embedded when its colours are those of the file: grey or RGB.
/// Unsupported for a null image.
Result<QByteArray> encodePng(const QImage& image, const QByteArray& profile = {});

} // namespace quorvia::engine
