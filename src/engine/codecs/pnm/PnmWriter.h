// Writes portable bitmaps, graymaps and pixmaps in their raw forms. Alpha is laid over white. Every format of
// QImage goes in; each form converts to its own depth. Unsupported for a null image, TooLarge when there is
// no memory.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// Black and white. Two-colour images become black below half intensity, or the darker colour does where both
/// lie on the same side of it; all others are brought to black and white with the error spread over the
/// neighbours (Floyd and Steinberg), so black and white stay exact.
Result<QByteArray> writePbm(const QImage& image);

/// Grey of 8 bits: (299 R + 587 G + 114 B) / 1000, rounded.
Result<QByteArray> writePgm(const QImage& image);

/// RGB of 8 bits each.
Result<QByteArray> writePpm(const QImage& image);

} // namespace quorvia::engine
