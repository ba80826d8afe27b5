// Decodes one entry of an icon file. Not through Qt's icon reader, which multiplies colours by their alpha
// and so loses them where it is low, keeps no palette and stops at Qt's own limit of memory.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/ico/IcoDirectory.h"

namespace quorvia::engine {

/// The picture of `entry` (one of readIcoDirectory()'s). A PNG comes from the PNG codec. A bitmap keeps its
/// palette or bits when no pixel is transparent, else it is ARGB32; the mask says which pixels are, unless
/// the bitmap has 32 bits and alpha of its own. Damaged or Cancelled on failure.
Result<Picture> decodeIcoEntry(const std::shared_ptr<ByteSource>& source, const IcoEntry& entry,
                               const CancelFlag& cancel);

} // namespace quorvia::engine
