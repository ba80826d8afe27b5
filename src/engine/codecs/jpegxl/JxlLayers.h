// What the layers of a JPEG XL picture cost, told before a pixel of them is decoded. Each has a size of its
// own, which may go far beyond the picture's; a small one still costs a pass over the whole picture. Cheap
// for a picture of one layer; the others are read past.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Codec.h"
#include "engine/codecs/jpegxl/JxlLibrary.h"
#include "engine/codecs/jpegxl/JxlReader.h"

#include <QSize>

#include <vector>

namespace quorvia::engine {

/// Width and height as the library tells them; too large for any limit where they are beyond int.
QSize jxlSize(uint32_t width, uint32_t height);

/// Beside Limits a picture of `size` pixels and `planes` must leave room for the library, which holds whole
/// planes of 4 bytes a sample, and some of them twice.
Status checkJxlPlanes(QSize size, int planes);

/// The layers up to the first frame that is shown, as many of them as `source` holds, in a picture of
/// `canvas` pixels and `planes`: what stands before them, then a stretch of the file for each. A layer counts
/// its own pixels or the canvas's, whichever are more, and more than four planes count like more pixels.
/// TooLarge when one of them, or all together, are beyond what the picture may cost; Cancelled when `cancel`
/// was set.
Result<std::vector<JxlStretch>> jxlLayers(const JxlLibrary& library, const ByteSource& source, QSize canvas,
                                          int planes, const CancelFlag& cancel);

} // namespace quorvia::engine
