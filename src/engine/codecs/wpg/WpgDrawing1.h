// Plays the vector records of a WordPerfect graphic of version 1. Costs what its shapes cover. Our own player
// rather than libwpg's: that one leaves the last piece off curves, draws whole ellipses for arcs and puts
// placed bitmaps at their resolution's scale instead of 1/1200 inch.
#pragma once

#include "engine/codecs/wpg/WpgCanvas.h"
#include "engine/codecs/wpg/WpgRecords.h"

namespace quorvia::engine {

/// The extent of the drawing in inches, from its start record; empty when it tells none.
QSizeF wpg1Extent(const WpgFile& file, const ByteSource& source);

/// Draws the records of `file` (version 1) in their order until they end or the canvas has stopped. Bitmaps
/// that cannot be decoded and embedded PostScript are left out.
void playWpg1(const WpgFile& file, const ByteSource& source, WpgCanvas& canvas);

} // namespace quorvia::engine
