// Decodes a TIFF page strile by strile with our own conversion, on all cores. Each core holds a libtiff
// handle and one strile.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/codecs/tiff/TiffLayout.h"

namespace quorvia::engine {

/// How much of a page was drawn.
struct TiffProgress
{
    bool drawn = false;
    bool complete = true;
};

/// The stored rows of the page that is the present directory of `handle`, described by `layout` (not
/// TiffColors::Library), out of `source`. At most `mostThreads` work on it (0: one a core).
Result<QImage> decodeTiffStriles(TiffHandle& handle, const std::shared_ptr<ByteSource>& source,
                                 const TiffLayout& layout, const CancelFlag& cancel, TiffProgress& progress,
                                 int mostThreads = 0);

} // namespace quorvia::engine
