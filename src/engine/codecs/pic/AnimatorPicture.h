// The pictures of the Animator programs, which share the extension pic: 256 colours, not packed, or 1 bit.
// Opening reads the header and the palette.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

/// True when `head` begins as a picture of the first Animator.
bool isAnimatorPicture(const QByteArray& head);
/// True when `head` begins as a picture or mask of Animator Pro.
bool isAnimatorProPicture(const QByteArray& head);

/// Opens a picture of either program. Damaged or Unsupported on failure. Source: the published descriptions
/// of both formats.
Result<std::unique_ptr<Decoder>> openAnimatorPicture(std::shared_ptr<ByteSource> source);

} // namespace quorvia::engine
