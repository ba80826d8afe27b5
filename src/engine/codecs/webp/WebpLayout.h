// The chunks at the beginning of a WebP file. Cheap: some small reads, whatever the file's length.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QSize>

namespace quorvia::engine {

struct WebpLayout
{
    QSize size; ///< of the canvas, pixels
    bool hasAlpha = false;
    bool isAnimated = false;
    bool hasProfile = false;
};

/// True when `head` begins like a WebP file.
bool isWebp(const QByteArray& head);

/// Reads the first chunk of `source`, and the heads of further ones up to the picture's. Damaged when it
/// tells no size, Unsupported for codings of the future.
Result<WebpLayout> readWebpLayout(const ByteSource& source);

} // namespace quorvia::engine
