#include "engine/Bands.h"

#include <algorithm>
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
    std::vector<std::jthread> threads;
    threads.reserve(static_cast<size_t>(std::max(count - 1, 0)));
    for (int index = 0; index < count; ++index) {
        const int from = edge(index);
        const int to = edge(index + 1);
        if (index + 1 < count) {
            try {
                threads.emplace_back([&band, index, from, to] { band(index, from, to); });
                continue;
            } catch (const std::system_error&) {
                // no thread left on this machine: the caller does it
            }
        }
        band(index, from, to);
    }
}

} // namespace quorvia::engine
