#include "engine/LargePages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace quorvia::engine {

void preferLargePages(void* memory, qint64 length)
{
#ifdef MADV_HUGEPAGE
    constexpr qint64 worthIt = 4 << 20; // bytes
    if (!memory || length < worthIt)
        return;
    const auto page = std::uintptr_t(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (begin + page - 1) / page * page;
    const std::uintptr_t last = (begin + std::uintptr_t(length)) / page * page;
    ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
    Q_UNUSED(memory)
    Q_UNUSED(length)
#endif
}

} // namespace quorvia::engine
