#include "engine/LoadPool.h"

#include "engine/ColorConversion.h"

#include <algorithm>
#include <exception>

namespace quorvia::engine {

namespace {

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

void runFirst(LoadPool& pool, const LoadTaskPointer& task)
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
    std::vector<LoadCallback> callbacks;
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
    for (const LoadCallback& callback : callbacks)
        callback();
}

void runFull(LoadPool& pool, const LoadTaskPointer& task)
{
    const Result<Picture> full = decodeTask(*task, QSize());
    std::vector<LoadCallback> callbacks;
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
    for (const LoadCallback& callback : callbacks)
        callback();
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
    LoadTaskPointer task = pick([](const LoadTaskPointer& t) { return !t->begun; });
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

void LoadPool::drop(LoadTask& task)
{
    task.dropped = true;
    task.stop = true;
    std::erase_if(queue, [&task](const LoadTaskPointer& queued) { return queued.get() == &task; });
    changed.notify_all();
}

void LoadPool::dropUnlessHeld(const LoadTaskPointer& task)
{
    if (task && task->holds == 0 && task != newest)
        drop(*task);
}

LoadTaskPointer LoadPool::findShared(const PageKey& key, QSize box)
{
    std::erase_if(known, [](const std::weak_ptr<LoadTask>& entry) { return entry.expired(); });
    for (const std::weak_ptr<LoadTask>& entry : known) {
        LoadTaskPointer task = entry.lock();
        if (task && !task->dropped && !task->failed() && task->key == key && task->covers(box))
            return task;
    }
    return {};
}

/// The callbacks of a finished task, taken out so that they run and die without the mutex.
std::vector<LoadCallback> takeCallbacks(LoadTask& task)
{
    std::vector<LoadCallback> taken;
    for (auto& entry : task.callbacks)
        taken.push_back(std::move(entry.second));
    task.callbacks.clear();
    return taken;
}

std::vector<LoadCallback> takeCallbacksOf(LoadTask& task, const void* hold)
{
    std::vector<LoadCallback> taken;
    for (auto& entry : task.callbacks) {
        if (entry.first == hold)
            taken.push_back(std::move(entry.second));
    }
    std::erase_if(task.callbacks, [hold](const auto& entry) { return entry.first == hold; });
    return taken;
}

void runThread(LoadPool& pool)
{
    std::unique_lock lock(pool.mutex);
    while (!pool.stopping) {
        std::optional<LoadJob> job = pool.take();
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

} // namespace quorvia::engine
