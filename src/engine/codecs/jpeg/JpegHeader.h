// Reads the frame header (SOF) of a JPEG without libjpeg: a few reads, no pixel.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QSize>

namespace quorvia::engine {

struct JpegFrame
{
    int process = 0;    ///< n of the SOFn marker: 0 baseline, 1 extended, 2 progressive, 3 lossless, 9 ...
    int precision = 0;  ///< bits a sample
    QSize size;         ///< pixels; a height of 0 is told only after the first scan
    int components = 0; ///< samples a pixel
    qint64 offset = 0;  ///< bytes from the start to the segment's length, behind the marker
};

/// The frame header of the JPEG in `source`. Damaged when there is none before the first scan. Format: ITU-T
/// T.81, B.1.1 and B.2.2.
Result<JpegFrame> readJpegFrame(const ByteSource& source);

} // namespace quorvia::engine
