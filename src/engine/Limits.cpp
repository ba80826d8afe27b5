#include "engine/Limits.h"

#include <unistd.h>

namespace quorvia::engine {

const Limits& Limits::machine()
{
    static const Limits limits = [] {
        Limits found;
        const qint64 pages = ::sysconf(_SC_PHYS_PAGES);
        const qint64 pageBytes = ::sysconf(_SC_PAGESIZE);
        constexpr qint64 assumedMemory = qint64(4) << 30; // where the system does not tell
        found.maxBytes = (pages > 0 && pageBytes > 0 ? pages * pageBytes : assumedMemory) / 4;
        return found;
    }();
    return limits;
}

Status checkSize(QSize size, const Limits& limits)
{
    if (size.width() < 1 || size.height() < 1)
        return Error{ErrorKind::Damaged,
                     QStringLiteral("a size of %1 x %2").arg(size.width()).arg(size.height())};
    const qint64 bytes = qint64(size.width()) * size.height() * 4;
    if (size.width() > limits.maxSide || size.height() > limits.maxSide || bytes > limits.maxBytes)
        return Error{ErrorKind::TooLarge, QStringLiteral("%1 x %2 pixels are more than this machine shows")
                                              .arg(size.width())
                                              .arg(size.height())};
    return ok();
}

} // namespace quorvia::engine
