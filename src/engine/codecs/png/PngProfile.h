// The colour profile in a PNG file, in and out. Reading walks the chunks before the pixels; without a profile
// nothing else is read.
#pragma once

#include "engine/ByteSource.h"
#include "engine/codecs/png/PngChunks.h"

#include <QByteArray>

namespace quorvia::engine {

/// The ICC profile of the PNG in `source`, whose header is `header`. Empty without one, beside a chunk that
/// says sRGB, and when it is broken, more than maxProfileBytes, or not of the file's colours (RGB or grey).
/// Source: ISO/IEC 15948, 11.3.3.3.
QByteArray readPngProfile(const ByteSource& source, const PngHeader& header);

/// The content of the chunk that embeds `profile`.
QByteArray pngProfileContent(const QByteArray& profile);

} // namespace quorvia::engine
