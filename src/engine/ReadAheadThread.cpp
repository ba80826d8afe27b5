#include "engine/ReadAheadThread.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/LoadPool.h"

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <future>
#include <new>
#include <system_error>
#include <thread>

namespace quorvia::engine {

namespace {

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

void setThread(LoadPool& pool, std::optional<pid_t> thread)
{
    const std::lock_guard lock(pool.mutex);
    pool.ahead.thread = thread;
    if (thread && pool.ahead.task->dropped && !pool.ahead.endsSoon)
        makeLast(*thread);
}

/// While this lives, others may lower the thread that made it.
class NamedThread
{
  public:
    explicit NamedThread(LoadPool& pool) : m_pool(pool) { setThread(m_pool, gettid()); }
    ~NamedThread() { setThread(m_pool, std::nullopt); }
    NamedThread(const NamedThread&) = delete;
    NamedThread& operator=(const NamedThread&) = delete;

  private:
    LoadPool& m_pool;
};

AheadOutcome decodeOnThreadOfItsOwn(LoadPool& pool, LoadTask& task)
{
    try {
        std::packaged_task<AheadOutcome()> decode([&pool, &task] {
            if (task.ahead) // it may have been asked for by now
                stepBack();
            const NamedThread named(pool);
            return decodeAhead(task);
        });
        std::future<AheadOutcome> outcome = decode.get_future();
        const std::jthread thread([&decode] { decode(); });
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

void stepBack()
{
    // Not less: what is decoded may be asked for while other programs keep the processors busy, and a thread
    // cannot be raised again.
    constexpr int level = 5;
    const sched_param none = {};
    sched_setscheduler(0, SCHED_BATCH, &none); // 0: this thread
    const auto thread = static_cast<id_t>(gettid());
    // Who started the program further back than that gets no more.
    setpriority(PRIO_PROCESS, thread, std::max(getpriority(PRIO_PROCESS, thread), level));
}

void makeLast(pid_t thread)
{
    // Not SCHED_IDLE: beside a busy program such a thread may get no time at all, and the end waits for it.
    constexpr int last = 19;
    setpriority(PRIO_PROCESS, static_cast<id_t>(thread), last);
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
