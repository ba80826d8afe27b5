// The work behind ImageLoader: tasks, their queue, and what a thread does with them.
#pragma once

#include "engine/ImageLoader.h"
#include "engine/ReadAhead.h"

#include <QSet>

#include <sys/types.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace quorvia::engine {

/// The work of one load, shared by its holds and the thread that does it. Everything below the line is
/// guarded by LoadPool::mutex, but for `decoder`, which belongs to the thread that set `running`, and for
/// reading `ahead`.
struct LoadTask
{
    LoadTask(PageKey pageKey, QSize firstBox) : key(std::move(pageKey)), box(firstBox) {}

    const PageKey key;
    const QSize box;
    CancelFlag stop{false}; ///< the decoder looks at it; set under the mutex, cleared when a job is taken
    std::unique_ptr<Decoder> decoder;
    // ----
    int holds = 0;
    int fullWaiters = 0;
    bool outdated = false;           ///< its file was written since; answers those who hold it, nobody else
    bool dropped = false;            ///< nobody wants it any more; what has not been done will not be
    bool begun = false;              ///< the first picture is under way or done
    bool running = false;            ///< a thread works on it
    std::atomic<bool> ahead = false; ///< read ahead and not asked for yet
    bool fullWanted = false;         ///< asked for; stays set when the decode is broken off
    std::optional<Result<PageHeader>> header;
    std::optional<Result<Picture>> first; ///< gives way to the full one
    std::optional<Result<Picture>> full;

    bool failed() const { return (header && !*header) || (first && !*first) || (full && !*full); }
    /// True when another try may give more than this has.
    bool isWorthAnother() const { return failed() || (first && (*first)->readError); }
    bool fullIsDue() const { return fullWanted && first && !full && !running && !dropped; }

    /// True when the first picture is, or will be, enough for `wanted`.
    bool covers(QSize wanted) const;
};

using LoadTaskPointer = std::shared_ptr<LoadTask>;

/// What is read ahead, and what stands ready of it.
struct ReadAheadWork
{
    QStringList neighbours; ///< nearest first
    QSize box;
    QSet<QString> settled; ///< those that stand ready, or could not be read, or found no room
    ReadAheadCache ready;
    LoadTaskPointer task;             ///< under way, also when it has been asked for or broken off meanwhile
    bool endsSoon = true;             ///< what the decoder says of the page of `task` (Decoder::canBreakOff)
    std::optional<pid_t> thread = {}; ///< that decodes `task`; lives while it stands here
};

/// A thread's next piece of work.
struct LoadJob
{
    LoadTaskPointer task;
    bool first = false; ///< header and first picture; else the full one
};

/// What the loader, its threads and all holds share. One mutex guards it all: it is only ever held for a few
/// assignments, never while decoding or freeing pictures.
struct LoadPool
{
    explicit LoadPool(DecoderOpener decoderOpener) : opener(std::move(decoderOpener)) {}

    const DecoderOpener opener;
    std::mutex mutex;
    std::condition_variable work;    ///< for the threads: there may be a job
    std::condition_variable changed; ///< for the waits: some task came on
    bool stopping = false;
    int firstsRunning = 0;
    LoadTaskPointer newest;
    LoadTaskPointer expected;                   ///< will be the newest, it is thought; nobody holds it yet
    std::vector<std::weak_ptr<LoadTask>> known; ///< oldest first; all that are alive, for sharing
    std::vector<LoadTaskPointer> queue;         ///< oldest first; all that a thread has still to work on
    std::vector<LoadTaskPointer> discarded;     ///< to be freed by a thread
    ReadAheadWork ahead;

    // --- all of these with the mutex held

    /// Takes the most urgent job: a first picture (newest first, the expected one last), a full one that is
    /// waited for, and when no first picture is under way either, any full one.
    std::optional<LoadJob> take();

    /// Puts `task` before the threads, unless it stands there already or nobody wants it any more.
    void enqueue(const LoadTaskPointer& task);

    /// Full decodes that nobody waits for end, to be begun again when the first pictures are done.
    void breakOffBackground();

    /// Ends the work on `task`; its waits give Cancelled for what does not stand.
    void drop(LoadTask& task);

    /// Drops a task that has no hold and is neither the newest nor the expected one.
    void dropUnlessHeld(const LoadTaskPointer& task);

    /// Lets go of `task` on one of the threads: to free a large picture takes milliseconds, which whoever
    /// drops a load may not have. Left to the caller when the threads have ended, and without memory.
    void discard(LoadTaskPointer& task);

    /// A task of `key` that is good for `box`, or null.
    LoadTaskPointer findShared(const PageKey& key, QSize box);

    /// A finished task made of what stands ready of `key`, or null.
    LoadTaskPointer findReady(const PageKey& key, QSize box);

    /// What was read ahead is asked for now: it goes on as a load.
    void adopt(LoadTask& task);

    /// The read-ahead under way ends, unless it has been asked for.
    void breakOffAhead();

    /// True when no thread has or will have anything to decode, and the newest load that is held has its full
    /// picture.
    bool isIdle() const;
};

/// What each thread of the loader does, until LoadPool::stopping.
void runThread(LoadPool& pool);

// Reading ahead, in three steps. The second may stand back as far as it likes: it never holds the mutex, for
// which others would have to wait.

/// What came of a task that is `ahead`.
struct AheadOutcome
{
    Result<Picture> decoded;
    std::optional<Picture> shown; ///< at the size that it will be shown at; only when nobody has asked for it
};

/// Reads the header of `task`. An error when there is nothing to decode: the file has no picture, or one that
/// would find no room or could not be broken off.
Status openAhead(LoadPool& pool, const LoadTaskPointer& task);
/// Decodes what openAhead() opened.
AheadOutcome decodeAhead(LoadTask& task);
/// Puts what came out with what stands ready, unless it has been asked for meanwhile.
void endAhead(LoadPool& pool, const LoadTaskPointer& task, const AheadOutcome& outcome);

} // namespace quorvia::engine
