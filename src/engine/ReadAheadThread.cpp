#include "engine/ReadAheadThread.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/LoadPool.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <future>
#include <latch>
#include <new>
#include <system_error>
#include <thread>

namespace quorvia::engine {

namespace {

/// How far the calling thread stands back while it reads ahead: a batch thread never takes the processor from
/// one that wakes up, and at this level it gets a quarter of a contended one. Not less, for what it decodes
/// may be asked for while other programs keep the processors busy, and a thread cannot be raised again.
void stepBack()
{
    constexpr int level = 5;
    const sched_param none = {};
    sched_setscheduler(0, SCHED_BATCH, &none); // 0: this thread
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), level);
}

/// The next path to read ahead. With the mutex held.
std::optional<QString> nextNeighbour(const LoadPool& pool)
{
    const ReadAheadWork& ahead = pool.ahead;
    if (!pool.isIdle() || ahead.ready.cap() <= 0)
        return std::nullopt;
    const auto next = std::find_if(ahead.neighbours.begin(), ahead.neighbours.end(),
                                   [&ahead](const QString& path) { return !ahead.settled.contains(path); });
    return next == ahead.neighbours.end() ? std::nullopt : std::optional(*next);
}

/// The task for `key`; null when there is nothing to decode. With the mutex held.
LoadTaskPointer beginAhead(LoadPool& pool, const PageKey& key, QSize box)
{
    ReadAheadWork& ahead = pool.ahead;
    const ReadyPage* const page = ahead.ready.find(key, box);
    if (key.size < 0 || (page && page->isMadeFor(box)) || pool.findShared(key, box)) {
        ahead.settled.insert(key.path);
        return {};
    }
    auto task = std::make_shared<LoadTask>(key, box);
    task->ahead = true;
    task->begun = true;
    task->running = true;
    pool.known.push_back(task);
    ahead.task = task;
    return task;
}

void setThread(LoadPool& pool, std::optional<pthread_t> thread)
{
    const std::lock_guard lock(pool.mutex);
    pool.ahead.thread = thread;
    if (thread && pool.ahead.task->dropped && !pool.ahead.endsSoon)
        makeLast(*thread);
}

/// While this lives, others may lower `thread`, which therefore waits for `gone` before it ends: the system
/// takes a thread that has ended for the calling one.
class NamedThread
{
  public:
    NamedThread(LoadPool& pool, pthread_t thread, std::latch& gone) : m_pool(pool), m_gone(gone)
    {
        setThread(pool, thread);
    }
    ~NamedThread()
    {
        setThread(m_pool, std::nullopt);
        m_gone.count_down();
    }
    NamedThread(const NamedThread&) = delete;
    NamedThread& operator=(const NamedThread&) = delete;

  private:
    LoadPool& m_pool;
    std::latch& m_gone;
};

AheadOutcome decodeOnThreadOfItsOwn(LoadPool& pool, LoadTask& task)
{
    try {
        std::latch gone(1);
        std::packaged_task<AheadOutcome()> decode([&task] {
            stepBack();
            return decodeAhead(task);
        });
        std::future<AheadOutcome> outcome = decode.get_future();
        std::jthread thread([&decode, &gone] {
            decode();
            gone.wait();
        });
        const NamedThread named(pool, thread.native_handle(), gone);
        return outcome.get();
    } catch (const std::bad_alloc&) {
        return {noMemoryError(), std::nullopt};
    } catch (const std::system_error&) {
        return decodeAhead(task); // no thread left on this machine: here, at the common level
    }
}

void readAhead(LoadPool& pool, const LoadTaskPointer& task)
{
    const Status opened = openAhead(pool, task);
    endAhead(pool, task, opened ? decodeOnThreadOfItsOwn(pool, *task) : AheadOutcome{opened.error(), {}});
}

} // namespace

void makeLast(pthread_t thread)
{
    // Not only the lowest level: the scheduler counts a processor with nothing but such threads as a free
    // one, and so puts the threads that decode the wanted page there at once.
    const sched_param none = {};
    pthread_setschedparam(thread, SCHED_IDLE, &none);
}

void runReadAhead(LoadPool& pool)
{
    std::unique_lock lock(pool.mutex);
    while (!pool.stopping) {
        const std::optional<QString> path = nextNeighbour(pool);
        if (!path) {
            pool.work.wait(lock);
            continue;
        }
        const QSize box = pool.ahead.box;
        lock.unlock();
        const PageKey key = PageKey::of(*path, 1); // the disk may take its time
        lock.lock();
        if (pool.stopping || nextNeighbour(pool) != path || pool.ahead.box != box)
            continue;
        std::vector<ReadyPage> gone = pool.ahead.ready.dropOutdated(key);
        LoadTaskPointer task = beginAhead(pool, key, box);
        lock.unlock();
        gone.clear();
        if (task)
            readAhead(pool, task);
        lock.lock();
        LoadTaskPointer ended = std::exchange(pool.ahead.task, {});
        lock.unlock();
        task.reset(); // perhaps the last holds on a picture: freed without the mutex
        ended.reset();
        lock.lock();
    }
}

} // namespace quorvia::engine
