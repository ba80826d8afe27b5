// What a picture may cost. Checked against the header, before anything is allocated.
#pragma once

#include "engine/Result.h"

#include <QSize>

namespace quorvia::engine {

struct Limits
{
    int maxSide = 65535; ///< pixels, width and height each
    qint64 maxBytes = 0; ///< bytes of one decoded picture at 4 bytes a pixel

    /// The limits in force: a quarter of this machine's memory for one picture unless setMachineBytes() said
    /// otherwise. Cheap after the first call.
    static Limits machine();
    /// Sets maxBytes of machine() from now on, for the whole program; any value below 1 brings the quarter of
    /// the memory back. May be called from any thread.
    static void setMachineBytes(qint64 bytes);
};

/// Ok when a picture of `size` pixels may be decoded under `limits`; Damaged for a side below 1, else
/// TooLarge.
Status checkSize(QSize size, const Limits& limits = Limits::machine());

/// The same for a picture whose decoding takes `bytesPerPixel` bytes, which are more than its own four.
Status checkCost(QSize size, int bytesPerPixel, const Limits& limits = Limits::machine());

} // namespace quorvia::engine
