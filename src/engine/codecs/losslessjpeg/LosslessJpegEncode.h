// Writes a lossless JPEG (SOF3): 8 bits, one interleaved scan, the predictor that suits the picture, Huffman
// tables counted from it. Two passes and a look at some rows.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// The lossless JPEG of `image` (any QImage format; alpha is laid over white): one component for images whose
/// pixels or palette entries are all grey by their format, else RGB under an Adobe mark that says so. Embeds
/// the ICC profile `profile`: one for RGB makes every image RGB, one for grey is left out of an RGB file.
/// Unsupported for a null image and for sides over 65535. Format: ITU-T T.81, H.
Result<QByteArray> encodeLosslessJpeg(const QImage& image, const QByteArray& profile);

} // namespace quorvia::engine
