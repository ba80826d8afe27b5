// Work on the rows of an image, split over the cores. Starting a thread costs some 50 microseconds, so small
// work stays on the calling thread.
#pragma once

#include <QtGlobal>

#include <functional>

namespace quorvia::engine {

/// How many bands `rows` rows with `work` steps in all (about a nanosecond each) are split into: at least 1,
/// at most one a core.
int bandCount(int rows, qint64 work);

/// Calls `band(index, from, to)` for `count` bands of the rows [0, rows), each on a thread of its own (the
/// last one on the caller's), and returns when all are done. What a band throws is thrown then.
void inBands(int rows, int count, const std::function<void(int index, int from, int to)>& band);

} // namespace quorvia::engine
