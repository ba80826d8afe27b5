// The error manager for libjpeg: errors jump to a landing place, warnings are counted, nothing is printed.
#pragma once

#include "engine/codecs/Guarded.h"
#include "engine/Result.h"

#include <jpeglib.h>

#include <cstdio>

namespace quorvia::engine {

struct JpegErrors
{
    jpeg_error_mgr manager = {}; ///< first, so that libjpeg's pointer to it is one to this
    Landing landing;
    int damage = 0;         ///< warnings that tell of lost or wrong pixels
    bool dataEnded = false; ///< the entropy-coded data ended before its last block
    bool fileEnded = false; ///< the file ended before its end mark
    bool cancelled = false; ///< left because the asker dropped the request

    /// Prepares the manager; assign the result to the `err` of the library's object.
    jpeg_error_mgr* attach();
    /// The error of the last failed step.
    Error error() const;
};

/// Leaves the library because the request was dropped. Only below guarded().
[[noreturn]] void leaveCancelled(j_common_ptr info);

} // namespace quorvia::engine
