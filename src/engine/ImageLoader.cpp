#include "engine/ImageLoader.h"

#include "engine/LoadPool.h"
#include "engine/ReadAheadThread.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

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

class Hold final : public ImageLoad
{
  public:
    /// With the pool's mutex held.
    Hold(std::shared_ptr<LoadPool> pool, LoadTaskPointer task)
        : m_pool(std::move(pool)), m_task(std::move(task))
    {
        ++m_task->holds;
    }

    ~Hold() override
    {
        const std::lock_guard lock(m_pool->mutex);
        letGo();
        m_pool->dropUnlessHeld(m_task);
        m_pool->discard(m_task);
    }

    const PageKey& key() const override { return m_task->key; }
    Result<PageHeader> header() override { return wait(&LoadTask::header); }
    Result<Picture> first() override { return wait(&LoadTask::first); }

    Result<Picture> full() override
    {
        {
            const std::lock_guard lock(m_pool->mutex);
            ++m_task->fullWaiters;
            wantFull();
            if (!m_cancelled && !m_task->full)
                m_pool->breakOffAhead();
        }
        Result<Picture> result = wait(&LoadTask::full);
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

    void cancel() override
    {
        LoadTaskPointer forgotten; // dies after the lock
        const std::lock_guard lock(m_pool->mutex);
        letGo();
        if (m_task->holds == 0 && m_pool->newest == m_task)
            forgotten = std::move(m_pool->newest);
        m_pool->dropUnlessHeld(m_task);
        m_pool->discard(forgotten);
        m_pool->changed.notify_all();
    }

  private:
    // --- with the mutex held

    void letGo()
    {
        if (m_cancelled)
            return;
        m_cancelled = true;
        --m_task->holds;
        m_pool->work.notify_all(); // reading ahead may have waited for its full picture
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
    Result<Value> wait(std::optional<Result<Value>> LoadTask::*answer)
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

    const std::shared_ptr<LoadPool> m_pool;
    LoadTaskPointer m_task;
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
    Private(DecoderOpener opener, unsigned processorCount)
        : pool(std::make_shared<LoadPool>(std::move(opener))),
          processors(processorCount > 0 ? processorCount : std::thread::hardware_concurrency())
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
        std::vector<LoadTaskPointer> alive; // these five die after the lock
        std::vector<LoadTaskPointer> discarded;
        LoadTaskPointer newest;
        LoadTaskPointer expected;
        ReadAheadCache ready;
        {
            const std::lock_guard lock(pool->mutex);
            pool->stopping = true;
            std::swap(ready, pool->ahead.ready);
            for (const std::weak_ptr<LoadTask>& entry : pool->known) {
                const LoadTaskPointer task = entry.lock();
                if (!task)
                    continue;
                alive.push_back(task);
                pool->drop(*task);
            }
            newest = std::move(pool->newest);
            expected = std::move(pool->expected);
            std::swap(discarded, pool->discarded);
            pool->work.notify_all();
            pool->changed.notify_all();
        }
        threads.clear(); // joins
    }

    /// With the pool's mutex held, which keeps two callers apart.
    void beginReadAhead()
    {
        if (readsAhead)
            return;
        readsAhead = true;
        try {
            threads.emplace_back([this] { runReadAhead(*pool); });
        } catch (const std::system_error&) {
            // no thread left on this machine: nothing is read ahead
        }
    }

    std::shared_ptr<LoadPool> pool;
    const unsigned processors;
    std::vector<std::jthread> threads;
    bool readsAhead = false;
};

ImageLoader::ImageLoader() : ImageLoader(openFile) {}

ImageLoader::ImageLoader(DecoderOpener opener, unsigned processors)
    : d(std::make_unique<Private>(std::move(opener), processors))
{
}

ImageLoader::~ImageLoader() = default;

std::shared_ptr<ImageLoad> ImageLoader::load(const QString& path, int page, QSize box)
{
    const PageKey key = PageKey::of(path, page);
    LoadPool& pool = *d->pool;
    LoadTaskPointer before;
    LoadTaskPointer expected;
    std::vector<ReadyPage> outdated; // freed without the mutex
    std::shared_ptr<Hold> hold;      // locks it when it goes, also on the way out of an exception
    const std::lock_guard lock(pool.mutex);
    outdated = pool.ahead.ready.dropOutdated(key);
    LoadTaskPointer task = pool.findShared(key, box);
    if (task)
        pool.adopt(*task);
    else
        task = pool.findReady(key, box);
    if (!task) {
        pool.breakOffAhead();
        task = std::make_shared<LoadTask>(key, box);
        pool.known.push_back(task);
        pool.breakOffBackground();
        pool.enqueue(task);
    }
    before = std::exchange(pool.newest, task);
    expected = std::move(pool.expected);
    hold = std::make_shared<Hold>(d->pool, task);
    for (LoadTaskPointer* const former : {&before, &expected}) {
        pool.dropUnlessHeld(*former);
        pool.discard(*former);
    }
    return hold;
}

void ImageLoader::expect(const QString& path, QSize box)
{
    if (d->processors < 2)
        return;
    const PageKey key = path.isEmpty() ? PageKey() : PageKey::of(path, 1);
    LoadPool& pool = *d->pool;
    LoadTaskPointer before;
    const std::lock_guard lock(pool.mutex);
    if (pool.expected && pool.expected->key == key && pool.expected->covers(box))
        return;
    before = std::move(pool.expected);
    pool.dropUnlessHeld(before);
    pool.discard(before);
    if (key.size < 0 || pool.findShared(key, box) || pool.ahead.ready.find(key, box))
        return;
    pool.breakOffAhead();
    pool.breakOffBackground();
    pool.expected = std::make_shared<LoadTask>(key, box);
    pool.known.push_back(pool.expected);
    pool.enqueue(pool.expected);
}

void ImageLoader::setNeighbours(const QStringList& paths, QSize box)
{
    LoadPool& pool = *d->pool;
    const std::lock_guard lock(pool.mutex);
    ReadAheadWork& ahead = pool.ahead;
    if (ahead.neighbours == paths && ahead.box == box)
        return;
    ahead.neighbours = paths;
    ahead.box = box;
    ahead.settled.clear();
    if (ahead.task && (ahead.task->box != box || !paths.contains(ahead.task->key.path)))
        pool.breakOffAhead();
    d->beginReadAhead();
    pool.work.notify_all();
}

void ImageLoader::forget(const QString& path)
{
    std::vector<ReadyPage> gone; // dies after the lock
    LoadPool& pool = *d->pool;
    const std::lock_guard lock(pool.mutex);
    gone = pool.ahead.ready.drop(path);
    for (const std::weak_ptr<LoadTask>& entry : pool.known) {
        const LoadTaskPointer task = entry.lock();
        if (task && task->key.path == path)
            task->outdated = true;
    }
    if (pool.ahead.task && pool.ahead.task->key.path == path)
        pool.breakOffAhead();
    pool.ahead.settled.remove(path);
    pool.work.notify_all();
}

void ImageLoader::setReadAheadCap(qint64 bytes)
{
    std::vector<ReadyPage> gone; // dies after the lock
    const std::lock_guard lock(d->pool->mutex);
    gone = d->pool->ahead.ready.setCap(bytes);
    d->pool->work.notify_all();
}

qint64 ImageLoader::readAheadBytes() const
{
    const std::lock_guard lock(d->pool->mutex);
    return d->pool->ahead.ready.bytes();
}

int ImageLoader::pageCount(const QString& path)
{
    try {
        const auto decoder = openFile(path);
        return decoder ? (*decoder)->pageCount() : 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

} // namespace quorvia::engine
