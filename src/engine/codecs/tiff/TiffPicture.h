// Decodes one page of a TIFF into an image, upright.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/codecs/tiff/TiffLayout.h"

namespace quorvia::engine {

/// The page that is the present directory of `handle`, described by `layout`, out of `source`. Holds the
/// picture and one strip or tile a core; pages turned by a quarter are held twice for a moment.
Result<Picture> decodeTiffPage(TiffHandle& handle, const std::shared_ptr<ByteSource>& source,
                               const TiffLayout& layout, const CancelFlag& cancel);

} // namespace quorvia::engine
