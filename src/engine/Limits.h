// What a picture may cost. Checked against the header, before anything is allocated.
#pragma once

#include "engine/Result.h"

#include <QSize>

namespace quorvia::engine {

struct Limits
{
    int maxSide = 65535; ///< pixels, width and height each
    qint64 maxBytes = 0; ///< bytes of one decoded picture at 4 bytes a pixel

    /// The limits of this machine: a quarter of its memory for one picture. Cheap after the first call.
    static const Limits& machine();
};

/// Ok when a picture of `size` pixels may be decoded under `limits`; Damaged for a side below 1, else
/// TooLarge.
Status checkSize(QSize size, const Limits& limits = Limits::machine());

} // namespace quorvia::engine
