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
    const std::uintptr_t skipped = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
    const std::uintptr_t whole = (std::uintptr_t(length) - skipped) / page * page;
    ::madvise(static_cast<char*>(memory) + skipped, whole, MADV_HUGEPAGE);
#else
    Q_UNUSED(memory)
    Q_UNUSED(length)
#endif
}

} // namespace quorvia::engine
