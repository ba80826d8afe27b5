#include "engine/LoadPool.h"

#include "engine/ColorConversion.h"
#include "engine/ReadAheadThread.h"

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

namespace quorvia::engine {

namespace {

/// Runs `step`; what it throws becomes a failure of the page.
template <class Value, class Step>
Result<Value> guarded(Step step)
{
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the picture")};
    } catch (const std::exception& problem) {
        return Error{ErrorKind::Damaged, QString::fromLocal8Bit(problem.what())};
    }
}

Result<PageHeader> readHeader(const LoadPool& pool, LoadTask& task)
{
    return guarded<PageHeader>([&]() -> Result<PageHeader> {
        auto opened = pool.opener(task.key.path);
        if (!opened)
            return opened.error();
        task.decoder = *std::move(opened);
        return task.decoder->header(task.key.page);
    });
}

Result<Picture> decodeTask(LoadTask& task, QSize box)
{
    return guarded<Picture>([&] {
        Result<Picture> picture = task.decoder->decode(task.key.page, box, task.stop);
        if (picture)
            ColorConversion::of(picture->profile); // made here, it stands ready when the picture is painted
        return picture;
    });
}

/// True when a decode ended because its flag was set, not because of the file.
bool brokenOff(const LoadTask& task, const Result<Picture>& result)
{
    return task.stop && !result && result.error().kind == ErrorKind::Cancelled;
}

Result<PageHeader> beginFirst(LoadPool& pool, const LoadTaskPointer& task)
{
    Result<PageHeader> header = readHeader(pool, *task);
    const std::lock_guard lock(pool.mutex);
    task->header = header;
    pool.changed.notify_all();
    return header;
}

/// `first` stands, and with it `full` where that is there already. With the mutex held.
void endFirst(LoadPool& pool, const LoadTaskPointer& task, const Result<Picture>& first,
              const std::optional<Result<Picture>>& full)
{
    task->running = false;
    if (!task->ahead)
        --pool.firstsRunning;
    task->first = first;
    if (full) {
        task->full = full;
    } else if (task->fullWanted) {
        pool.enqueue(task);
    }
    pool.changed.notify_all();
    pool.work.notify_all(); // full decodes may have waited for this one
}

/// The full picture when the decode for the box gave it, or failed: then there is none either.
std::optional<Result<Picture>> fullOf(const Result<Picture>& decoded)
{
    return !decoded || decoded->isFull() ? std::optional(decoded) : std::nullopt;
}

void runFirst(LoadPool& pool, const LoadTaskPointer& task)
{
    const Result<PageHeader> header = beginFirst(pool, task);
    const Result<Picture> first = header ? decodeTask(*task, task->box) : Result<Picture>(header.error());
    const auto full = fullOf(first);
    if (full)
        task->decoder.reset();
    const std::lock_guard lock(pool.mutex);
    endFirst(pool, task, first, full);
}

/// Every pixel; opens the file first when the first picture did not come from it.
Result<Picture> decodeFull(const LoadPool& pool, LoadTask& task, QSize pageSize)
{
    if (!task.decoder) {
        const Result<PageHeader> header = readHeader(pool, task);
        if (!header)
            return header.error();
        if (header->size != pageSize || PageKey::of(task.key.path, task.key.page) != task.key)
            return Error{ErrorKind::Unreadable, QStringLiteral("the file has changed")};
    }
    return decodeTask(task, QSize());
}

void runFull(LoadPool& pool, const LoadTaskPointer& task, QSize pageSize)
{
    const Result<Picture> full = decodeFull(pool, *task, pageSize);
    std::optional<Result<Picture>> outdated; // freed without the mutex
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
    }
    pool.changed.notify_all();
    pool.work.notify_all(); // reading ahead may have waited for this one
}

/// Bytes that decoding a page of `header` for `box` takes at least.
qint64 leastBytes(const PageHeader& header, QSize box, bool scales)
{
    const QSize size = scales ? fittedSize(header.size, box) : header.size;
    const qint64 pixels = qint64(size.width()) * size.height();
    if (header.bitsPerPixel <= 1)
        return pixels / 8;
    return header.bitsPerPixel <= 16 ? pixels : pixels * 4;
}

/// True when breaking off the decode of a page that large may be waited for too long.
bool holdsUpTheEnd(bool endsSoon, QSize page)
{
    constexpr qint64 mostPixels = 8'000'000; // about a second
    return !endsSoon && qint64(page.width()) * page.height() > mostPixels;
}

/// Puts a page that was read ahead with those that stand ready. With the mutex held; returns what went.
std::vector<ReadyPage> keepReady(ReadAheadWork& ahead, const LoadTask& task, const Picture& shown,
                                 const std::optional<Result<Picture>>& full)
{
    ReadyPage page{task.key, **task.header, shown};
    if (full && *full)
        page.full = **full;
    const qsizetype place = ahead.neighbours.indexOf(task.key.path);
    return ahead.ready.insert(std::move(page), ahead.neighbours.mid(0, std::max<qsizetype>(place, 0)));
}

} // namespace

bool LoadTask::covers(QSize wanted) const
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

std::optional<LoadJob> LoadPool::take()
{
    const auto pick = [this](auto due) {
        const auto found = std::find_if(queue.rbegin(), queue.rend(), due);
        return found == queue.rend() ? LoadTaskPointer() : *found;
    };
    LoadTaskPointer task = pick([this](const LoadTaskPointer& t) { return !t->begun && t != expected; });
    if (!task && expected && !expected->begun)
        task = pick([this](const LoadTaskPointer& t) { return t == expected; });
    const bool first = task != nullptr;
    if (!task)
        task = pick([](const LoadTaskPointer& t) { return t->fullIsDue() && t->fullWaiters > 0; });
    if (!task && firstsRunning == 0)
        task = pick([](const LoadTaskPointer& t) { return t->fullIsDue(); });
    if (!task)
        return std::nullopt;
    std::erase(queue, task);
    task->begun = true;
    task->running = true;
    task->stop = false;
    firstsRunning += first ? 1 : 0;
    return LoadJob{task, first};
}

void LoadPool::enqueue(const LoadTaskPointer& task)
{
    if (stopping || task->dropped || std::find(queue.begin(), queue.end(), task) != queue.end())
        return;
    queue.push_back(task);
    work.notify_all();
}

void LoadPool::breakOffBackground()
{
    for (const std::weak_ptr<LoadTask>& entry : known) {
        const LoadTaskPointer task = entry.lock();
        if (task && task->running && task->first && task->fullWaiters == 0)
            task->stop = true;
    }
}

void LoadPool::breakOffAhead()
{
    if (!ahead.task || !ahead.task->ahead || ahead.task->dropped)
        return;
    drop(*ahead.task);
}

void LoadPool::adopt(LoadTask& task)
{
    if (!task.ahead.exchange(false))
        return;
    if (task.running)
        ++firstsRunning;
}

bool LoadPool::isIdle() const
{
    if (!queue.empty())
        return false;
    for (const std::weak_ptr<LoadTask>& entry : known) {
        const LoadTaskPointer task = entry.lock();
        if (task && task->running)
            return false;
    }
    return !newest || newest->holds == 0 || newest->full || newest->failed();
}

void LoadPool::drop(LoadTask& task)
{
    task.dropped = true;
    task.stop = true;
    if (ahead.task.get() == &task && ahead.thread && !ahead.endsSoon)
        makeLast(*ahead.thread);
    std::erase_if(queue, [&task](const LoadTaskPointer& queued) { return queued.get() == &task; });
    changed.notify_all();
    work.notify_all();
}

void LoadPool::dropUnlessHeld(const LoadTaskPointer& task)
{
    if (task && task->holds == 0 && task != newest && task != expected)
        drop(*task);
}

void LoadPool::discard(LoadTaskPointer& task)
{
    if (!task || stopping)
        return;
    try {
        discarded.push_back(std::move(task));
    } catch (const std::bad_alloc&) {
        return; // `task` stands as it was
    }
    work.notify_all();
}

LoadTaskPointer LoadPool::findShared(const PageKey& key, QSize box)
{
    std::erase_if(known, [](const std::weak_ptr<LoadTask>& entry) { return entry.expired(); });
    for (const std::weak_ptr<LoadTask>& entry : known) {
        LoadTaskPointer task = entry.lock();
        if (task && !task->dropped && !task->outdated && !task->isWorthAnother() && task->key == key &&
            task->covers(box))
            return task;
    }
    return {};
}

LoadTaskPointer LoadPool::findReady(const PageKey& key, QSize box)
{
    const ReadyPage* const page = ahead.ready.find(key, box);
    if (!page)
        return {};
    auto task = std::make_shared<LoadTask>(key, box);
    task->begun = true;
    task->header = page->header;
    task->first = page->firstFor(box);
    if (page->full)
        task->full = *page->full;
    else if (page->shown.isFull())
        task->full = page->shown;
    known.push_back(task);
    return task;
}

void runThread(LoadPool& pool)
{
    std::unique_lock lock(pool.mutex);
    while (!pool.stopping) {
        std::optional<LoadJob> job = pool.take();
        if (!job) {
            std::vector<LoadTaskPointer> discarded = std::exchange(pool.discarded, {});
            if (discarded.empty()) {
                pool.work.wait(lock);
                continue;
            }
            lock.unlock();
            discarded.clear();
            lock.lock();
            continue;
        }
        const QSize pageSize = job->first ? QSize() : (*job->task->header)->size;
        lock.unlock();
        if (job->first)
            runFirst(pool, job->task);
        else
            runFull(pool, job->task, pageSize);
        job.reset(); // perhaps the last hold on a picture: freed without the mutex
        lock.lock();
    }
}

Status openAhead(LoadPool& pool, const LoadTaskPointer& task)
{
    const Result<PageHeader> header = beginFirst(pool, task);
    if (!header)
        return header.error();
    const qint64 least = leastBytes(*header, task->box, task->decoder->scales());
    const bool endsSoon = task->decoder->canBreakOff(task->key.page);
    const bool isStubborn = holdsUpTheEnd(endsSoon, header->size);
    const std::lock_guard lock(pool.mutex);
    pool.ahead.endsSoon = endsSoon;
    if (task->stop)
        return Error{ErrorKind::Cancelled, QStringLiteral("broken off")};
    if (!task->ahead || (least <= pool.ahead.ready.cap() && !isStubborn))
        return ok();
    pool.ahead.settled.insert(task->key.path);
    pool.drop(*task); // who asks for it from here on gets a load of its own
    return Error{ErrorKind::Cancelled, QStringLiteral("too large to be read ahead")};
}

AheadOutcome decodeAhead(LoadTask& task)
{
    AheadOutcome outcome{decodeTask(task, task.box), std::nullopt};
    if (fullOf(outcome.decoded))
        task.decoder.reset();
    if (!outcome.decoded || !task.ahead)
        return outcome;
    auto shown =
        guarded<std::optional<Picture>>([&] { return atShownSize(*outcome.decoded, task.box, task.stop); });
    if (shown)
        outcome.shown = *std::move(shown);
    return outcome;
}

void endAhead(LoadPool& pool, const LoadTaskPointer& task, const AheadOutcome& outcome)
{
    std::vector<ReadyPage> gone; // freed without the mutex
    const std::lock_guard lock(pool.mutex);
    const auto full = fullOf(outcome.decoded);
    endFirst(pool, task, outcome.shown ? *outcome.shown : outcome.decoded, full);
    if (task->ahead && !task->dropped) {
        pool.ahead.settled.insert(task->key.path);
        if (outcome.shown && !outcome.shown->readError)
            gone = keepReady(pool.ahead, *task, *outcome.shown, full);
    }
}

} // namespace quorvia::engine
