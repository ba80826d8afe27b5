#include "engine/ImageLoader.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quorvia::engine {

namespace {

Result<std::unique_ptr<Decoder>> openFile(const QString& path)
{
    auto source = ByteSource::open(path);
    if (!source)
        return source.error();
    return openDecoder(*source, QFileInfo(path).suffix().toLower());
}

Error cancelled()
{
    return Error{ErrorKind::Cancelled, QStringLiteral("the load was dropped")};
}

using Callback = std::function<void()>;

/// The work of one load, shared by its holds and the thread that does it. Everything below the line is
/// guarded by Pool::mutex, but for `decoder`, which belongs to the thread that set `running`.
struct Task
{
    Task(PageKey pageKey, QSize firstBox) : key(std::move(pageKey)), box(firstBox) {}

    const PageKey key;
    const QSize box;
    CancelFlag stop{false}; ///< the decoder looks at it; set under the mutex, cleared when a job is taken
    std::unique_ptr<Decoder> decoder;
    // ----
    int holds = 0;
    int fullWaiters = 0;
    bool dropped = false;    ///< nobody wants it any more; what has not been done will not be
    bool begun = false;      ///< the first picture is under way or done
    bool running = false;    ///< a thread works on it
    bool fullWanted = false; ///< asked for; stays set when the decode is broken off
    std::optional<Result<PageHeader>> header;
    std::optional<Result<Picture>> first; ///< gives way to the full one
    std::optional<Result<Picture>> full;
    std::vector<std::pair<const void*, Callback>> callbacks; ///< with the hold that asked

    bool failed() const { return (header && !*header) || (first && !*first) || (full && !*full); }
    bool fullIsDue() const { return fullWanted && first && !full && !running && !dropped; }

    /// True when the first picture is, or will be, enough for `wanted`.
    bool covers(QSize wanted) const
    {
        if (full)
            return true;
        if (header && *header) {
            const QSize here = fittedSize((*header)->size, box);
            const QSize there = fittedSize((*header)->size, wanted);
            return here.width() >= there.width() && here.height() >= there.height();
        }
        return box.isEmpty() ||
               (!wanted.isEmpty() && wanted.width() <= box.width() && wanted.height() <= box.height());
    }
};

using TaskPointer = std::shared_ptr<Task>;

/// A thread's next piece of work.
struct Job
{
    TaskPointer task;
    bool first = false; ///< header and first picture; else the full one
};

/// What the loader, its threads and all holds share. One mutex guards it all: it is only ever held for a few
/// assignments, never while decoding, calling back or freeing what a callback holds.
struct Pool
{
    explicit Pool(DecoderOpener decoderOpener) : opener(std::move(decoderOpener)) {}

    const DecoderOpener opener;
    std::mutex mutex;
    std::condition_variable work;    ///< for the threads: there may be a job
    std::condition_variable changed; ///< for the waits: some task came on
    bool stopping = false;
    int firstsRunning = 0;
    TaskPointer newest;
    std::vector<std::weak_ptr<Task>> known; ///< oldest first; all that are alive, for sharing
    std::vector<TaskPointer> queue;         ///< oldest first; all that a thread has still to work on

    // --- all of these with the mutex held

    /// Takes the most urgent job: a first picture (newest first), a full one that is waited for, and when no
    /// first picture is under way either, any full one.
    std::optional<Job> take()
    {
        const auto pick = [this](auto due) {
            const auto found = std::find_if(queue.rbegin(), queue.rend(), due);
            return found == queue.rend() ? TaskPointer() : *found;
        };
        TaskPointer task = pick([](const TaskPointer& t) { return !t->begun; });
        const bool first = task != nullptr;
        if (!task)
            task = pick([](const TaskPointer& t) { return t->fullIsDue() && t->fullWaiters > 0; });
        if (!task && firstsRunning == 0)
            task = pick([](const TaskPointer& t) { return t->fullIsDue(); });
        if (!task)
            return std::nullopt;
        std::erase(queue, task);
        task->begun = true;
        task->running = true;
        task->stop = false;
        firstsRunning += first ? 1 : 0;
        return Job{task, first};
    }

    void enqueue(const TaskPointer& task)
    {
        if (stopping || task->dropped || std::find(queue.begin(), queue.end(), task) != queue.end())
            return;
        queue.push_back(task);
        work.notify_all();
    }

    /// Full decodes that nobody waits for end, to be begun again when the first pictures are done.
    void breakOffBackground()
    {
        for (const std::weak_ptr<Task>& entry : known) {
            const TaskPointer task = entry.lock();
            if (task && task->running && task->first && task->fullWaiters == 0)
                task->stop = true;
        }
    }

    void drop(Task& task)
    {
        task.dropped = true;
        task.stop = true;
        std::erase_if(queue, [&task](const TaskPointer& queued) { return queued.get() == &task; });
        changed.notify_all();
    }

    void dropUnlessHeld(const TaskPointer& task)
    {
        if (task && task->holds == 0 && task != newest)
            drop(*task);
    }

    TaskPointer findShared(const PageKey& key, QSize box)
    {
        std::erase_if(known, [](const std::weak_ptr<Task>& entry) { return entry.expired(); });
        for (const std::weak_ptr<Task>& entry : known) {
            const TaskPointer task = entry.lock();
            if (task && !task->dropped && !task->failed() && task->key == key && task->covers(box))
                return task;
        }
        return {};
    }
};

/// The callbacks of a finished task, taken out so that they run and die without the mutex.
std::vector<Callback> takeCallbacks(Task& task)
{
    std::vector<Callback> taken;
    for (auto& entry : task.callbacks)
        taken.push_back(std::move(entry.second));
    task.callbacks.clear();
    return taken;
}

std::vector<Callback> takeCallbacksOf(Task& task, const void* hold)
{
    std::vector<Callback> taken;
    for (auto& entry : task.callbacks) {
        if (entry.first == hold)
            taken.push_back(std::move(entry.second));
    }
    std::erase_if(task.callbacks, [hold](const auto& entry) { return entry.first == hold; });
    return taken;
}

/// Runs `step`; what it throws (there is no memory left, most likely) becomes a failure of the page.
template <class Value, class Step>
Result<Value> guarded(Step step)
{
    try {
        return step();
    } catch (const std::exception& problem) {
        return Error{ErrorKind::TooLarge, QString::fromLocal8Bit(problem.what())};
    }
}

Result<PageHeader> readHeader(const Pool& pool, Task& task)
{
    return guarded<PageHeader>([&]() -> Result<PageHeader> {
        auto opened = pool.opener(task.key.path);
        if (!opened)
            return opened.error();
        task.decoder = *std::move(opened);
        return task.decoder->header(task.key.page);
    });
}

Result<Picture> decodeTask(Task& task, QSize box)
{
    return guarded<Picture>([&] { return task.decoder->decode(task.key.page, box, task.stop); });
}

/// True when a decode ended because its flag was set, not because of the file.
bool brokenOff(const Task& task, const Result<Picture>& result)
{
    return task.stop && !result && result.error().kind == ErrorKind::Cancelled;
}

void runFirst(Pool& pool, const TaskPointer& task)
{
    const Result<PageHeader> header = readHeader(pool, *task);
    {
        const std::lock_guard lock(pool.mutex);
        task->header = header;
        pool.changed.notify_all();
    }
    const Result<Picture> first = header ? decodeTask(*task, task->box) : Result<Picture>(header.error());
    const bool last = !first || first->isFull();
    if (last)
        task->decoder.reset();
    std::vector<Callback> callbacks;
    {
        const std::lock_guard lock(pool.mutex);
        task->running = false;
        --pool.firstsRunning;
        task->first = first;
        if (last) {
            task->full = first;
            callbacks = takeCallbacks(*task);
        } else if (task->fullWanted) {
            pool.enqueue(task);
        }
        pool.changed.notify_all();
        pool.work.notify_all(); // full decodes may have waited for this one
    }
    for (const Callback& callback : callbacks)
        callback();
}

void runFull(Pool& pool, const TaskPointer& task)
{
    const Result<Picture> full = decodeTask(*task, QSize());
    std::vector<Callback> callbacks;
    std::optional<Result<Picture>> outdated; // freed without the mutex
    {
        const std::lock_guard lock(pool.mutex);
        task->running = false;
        if (brokenOff(*task, full)) {
            pool.enqueue(task); // does nothing for a dropped one
        } else {
            task->full = full;
            outdated = task->first;
            if (full)
                task->first = full;
            task->decoder.reset();
            callbacks = takeCallbacks(*task);
        }
        pool.changed.notify_all();
    }
    for (const Callback& callback : callbacks)
        callback();
}

void runThread(Pool& pool)
{
    std::unique_lock lock(pool.mutex);
    while (!pool.stopping) {
        std::optional<Job> job = pool.take();
        if (!job) {
            pool.work.wait(lock);
            continue;
        }
        lock.unlock();
        if (job->first)
            runFirst(pool, job->task);
        else
            runFull(pool, job->task);
        job.reset(); // perhaps the last hold on a picture: freed without the mutex
        lock.lock();
    }
}

class Hold final : public ImageLoad
{
  public:
    /// With the pool's mutex held.
    Hold(std::shared_ptr<Pool> pool, TaskPointer task) : m_pool(std::move(pool)), m_task(std::move(task))
    {
        ++m_task->holds;
    }

    ~Hold() override
    {
        std::vector<Callback> callbacks; // dies after the lock
        const std::lock_guard lock(m_pool->mutex);
        callbacks = letGo();
        m_pool->dropUnlessHeld(m_task);
    }

    const PageKey& key() const override { return m_task->key; }
    Result<PageHeader> header() override { return wait(&Task::header); }
    Result<Picture> first() override { return wait(&Task::first); }

    Result<Picture> full() override
    {
        {
            const std::lock_guard lock(m_pool->mutex);
            ++m_task->fullWaiters;
            wantFull();
        }
        Result<Picture> result = wait(&Task::full);
        const std::lock_guard lock(m_pool->mutex);
        --m_task->fullWaiters;
        return result;
    }

    Picture fullIfReady() override
    {
        const std::lock_guard lock(m_pool->mutex);
        return !m_cancelled && m_task->full && *m_task->full ? **m_task->full : Picture();
    }

    void requestFull() override
    {
        const std::lock_guard lock(m_pool->mutex);
        wantFull();
    }

    void whenFull(std::function<void()> done) override
    {
        {
            const std::lock_guard lock(m_pool->mutex);
            if (m_cancelled || m_task->dropped)
                return;
            if (!m_task->full) {
                m_task->callbacks.emplace_back(this, std::move(done));
                return;
            }
        }
        done();
    }

    void cancel() override
    {
        std::vector<Callback> callbacks;
        TaskPointer forgotten;
        const std::lock_guard lock(m_pool->mutex);
        callbacks = letGo();
        if (m_task->holds == 0 && m_pool->newest == m_task)
            forgotten = std::move(m_pool->newest);
        m_pool->dropUnlessHeld(m_task);
        m_pool->changed.notify_all();
    }

  private:
    // --- with the mutex held

    std::vector<Callback> letGo()
    {
        if (m_cancelled)
            return {};
        m_cancelled = true;
        --m_task->holds;
        return takeCallbacksOf(*m_task, this);
    }

    void wantFull()
    {
        if (m_cancelled || m_task->full)
            return;
        m_task->fullWanted = true;
        if (m_task->first && !m_task->running)
            m_pool->enqueue(m_task);
        m_pool->work.notify_all(); // a queued one may have become urgent
    }

    // ---

    template <class Value>
    Result<Value> wait(std::optional<Result<Value>> Task::*answer)
    {
        std::unique_lock lock(m_pool->mutex);
        const auto ended = [&] {
            return m_cancelled || m_task.get()->*answer || m_task->dropped || m_pool->stopping;
        };
        m_pool->changed.wait(lock, ended);
        if (m_cancelled || !(m_task.get()->*answer))
            return cancelled();
        return *(m_task.get()->*answer);
    }

    const std::shared_ptr<Pool> m_pool;
    const TaskPointer m_task;
    bool m_cancelled = false;
};

} // namespace

ImageLoad::~ImageLoad() = default;

PageKey PageKey::of(const QString& path, int page)
{
    PageKey key{path, page};
    struct stat facts = {};
    if (::stat(QFile::encodeName(path).constData(), &facts) == 0) {
        key.size = facts.st_size;
        key.modified = qint64(facts.st_mtim.tv_sec) * 1'000'000'000 + facts.st_mtim.tv_nsec;
    }
    return key;
}

class ImageLoader::Private
{
  public:
    explicit Private(DecoderOpener opener) : pool(std::make_shared<Pool>(std::move(opener)))
    {
        const auto run = [this] { runThread(*pool); };
        threads.emplace_back(run); // for what is wanted now
        try {
            threads.emplace_back(run); // for what is useful later
        } catch (const std::system_error&) {
            // no thread left on this machine: the one does both
        }
    }

    ~Private()
    {
        std::vector<Callback> callbacks; // these three die after the lock
        std::vector<TaskPointer> alive;
        TaskPointer newest;
        {
            const std::lock_guard lock(pool->mutex);
            pool->stopping = true;
            for (const std::weak_ptr<Task>& entry : pool->known) {
                const TaskPointer task = entry.lock();
                if (!task)
                    continue;
                alive.push_back(task);
                pool->drop(*task);
                for (Callback& callback : takeCallbacks(*task))
                    callbacks.push_back(std::move(callback));
            }
            newest = std::move(pool->newest);
            pool->work.notify_all();
            pool->changed.notify_all();
        }
        threads.clear(); // joins
    }

    std::shared_ptr<Pool> pool;
    std::vector<std::jthread> threads;
};

ImageLoader::ImageLoader() : ImageLoader(openFile) {}

ImageLoader::ImageLoader(DecoderOpener opener) : d(std::make_unique<Private>(std::move(opener))) {}

ImageLoader::~ImageLoader() = default;

std::shared_ptr<ImageLoad> ImageLoader::load(const QString& path, int page, QSize box)
{
    const PageKey key = PageKey::of(path, page);
    Pool& pool = *d->pool;
    TaskPointer before; // perhaps the last hold on a picture: freed without the mutex
    const std::lock_guard lock(pool.mutex);
    TaskPointer task = pool.findShared(key, box);
    if (!task) {
        task = std::make_shared<Task>(key, box);
        pool.known.push_back(task);
        pool.breakOffBackground();
        pool.enqueue(task);
    }
    before = std::exchange(pool.newest, task);
    auto hold = std::make_shared<Hold>(d->pool, task);
    pool.dropUnlessHeld(before);
    return hold;
}

int ImageLoader::pageCount(const QString& path)
{
    const auto decoder = openFile(path);
    return decoder ? (*decoder)->pageCount() : 0;
}

} // namespace quorvia::engine
