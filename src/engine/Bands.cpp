#include "engine/Bands.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace quorvia::engine {

int bandCount(int rows, qint64 work)
{
    constexpr qint64 worthAThread = 1 << 19;
    constexpr qint64 most = 16; // more threads wait for memory, not for cores
    const qint64 cores = std::clamp<qint64>(std::thread::hardware_concurrency(), 1, most);
    return static_cast<int>(std::clamp<qint64>(std::min<qint64>(work / worthAThread, rows), 1, cores));
}

void inBands(int rows, int count, const std::function<void(int index, int from, int to)>& band)
{
    const auto edge = [rows, count](int index) { return static_cast<int>(qint64(rows) * index / count); };
    std::vector<std::exception_ptr> problems(static_cast<size_t>(std::max(count, 0)));
    const auto run = [&](int index) noexcept {
        try {
            band(index, edge(index), edge(index + 1));
        } catch (...) {
            problems[static_cast<size_t>(index)] = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> threads; // joined at the end of this block
        threads.reserve(problems.size());
        for (int index = 0; index < count; ++index) {
            if (index + 1 < count) {
                try {
                    threads.emplace_back(run, index);
                    continue;
                } catch (const std::system_error&) {
                    // no thread left on this machine: the caller does it
                }
            }
            run(index);
        }
    }
    for (const std::exception_ptr& problem : problems) {
        if (problem)
            std::rethrow_exception(problem);
    }
}

} // namespace quorvia::engine
