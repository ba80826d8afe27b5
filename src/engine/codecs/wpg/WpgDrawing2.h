// Draws a WordPerfect graphic of version 2 through libwpg. Dear: libwpg builds lists of properties for every
// point. What it is handed is a copy of the records in which everything is left out or replaced that makes it
// read past its buffers, or costs time and memory without bound; bitmaps are decoded by us.
#pragma once

#include "engine/codecs/wpg/WpgCanvas.h"
#include "engine/codecs/wpg/WpgRecords.h"

namespace quorvia::engine {

/// The extent of the drawing in inches, from its start record; empty when it tells none.
QSizeF wpg2Extent(const WpgFile& file, const ByteSource& source);

/// Draws `file` (version 2). False when it is too large for libwpg, or libwpg gave up; what was drawn until
/// then stays. No exception leaves this.
bool playWpg2(const WpgFile& file, const ByteSource& source, WpgCanvas& canvas);

} // namespace quorvia::engine
