// The thread that reads ahead. Each page is decoded on a thread of its own that takes the processor after
// everybody else: lowered a little while the page may still be wanted, and to the bottom once it is not and
// the decoder goes on all the same. One that ends soon is not lowered further: it would only hold its locks,
// as the one for freeing memory, for longer while the wanted page is decoded.
#pragma once

#include <sys/types.h>

namespace quorvia::engine {

struct LoadPool;

/// What the thread does, until LoadPool::stopping: whenever the loader is idle, the nearest neighbour that is
/// not settled.
void runReadAhead(LoadPool& pool);

/// Makes the calling thread stand back for good: a batch thread never takes the processor from one that wakes
/// up, and at its level it gets a quarter of a contended one.
void stepBack();

/// Makes `thread` of this process, which has not come to its end yet, the last to get the processor. Cannot
/// be undone without privilege.
void makeLast(pid_t thread);

} // namespace quorvia::engine
