// Feeds libjpeg from a ByteSource in reads of 64 KB. A source that ends early is given an end-of-image mark,
// as libjpeg asks for, and that is remembered as a warning.
#pragma once

#include "engine/Codec.h"

#include <jpeglib.h>

#include <cstdio>

namespace quorvia::engine {

struct JpegSource
{
    jpeg_source_mgr manager = {}; ///< first, so that libjpeg's pointer to it is one to this
    const ByteSource* bytes = nullptr;
    const CancelFlag* cancel = nullptr; ///< looked at before each read
    qint64 offset = 0;                  ///< of the next read
    JOCTET buffer[65536];

    /// Prepares the manager; assign the result to the `src` of the library's object. Both must outlive it.
    jpeg_source_mgr* attach(const ByteSource& source, const CancelFlag& flag);
};

} // namespace quorvia::engine
