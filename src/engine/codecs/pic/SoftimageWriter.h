// Writes Softimage pictures: mixed run length, colour and alpha in packets of their own. One pass.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QImage>

namespace quorvia::engine {

/// `image` with 8 bits a channel, with an alpha packet when it has alpha. Unsupported for a null image and
/// for sides over 65535.
Result<QByteArray> writeSoftimage(const QImage& image);

} // namespace quorvia::engine
