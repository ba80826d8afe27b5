#include "engine/Limits.h"

#include <unistd.h>

#include <atomic>

namespace quorvia::engine {

namespace {

std::atomic<qint64> chosenBytes{0};

qint64 quarterOfMemory()
{
    const qint64 pages = ::sysconf(_SC_PHYS_PAGES);
    const qint64 pageBytes = ::sysconf(_SC_PAGESIZE);
    constexpr qint64 assumedMemory = qint64(4) << 30; // where the system does not tell
    return (pages > 0 && pageBytes > 0 ? pages * pageBytes : assumedMemory) / 4;
}

} // namespace

Limits Limits::machine()
{
    static const qint64 quarter = quarterOfMemory();
    Limits limits;
    const qint64 chosen = chosenBytes;
    limits.maxBytes = chosen > 0 ? chosen : quarter;
    return limits;
}

void Limits::setMachineBytes(qint64 bytes)
{
    chosenBytes = bytes;
}

Status checkSize(QSize size, const Limits& limits)
{
    if (size.width() < 1 || size.height() < 1)
        return Error{ErrorKind::Damaged,
                     QStringLiteral("a size of %1 x %2").arg(size.width()).arg(size.height())};
    const bool sidesFit = size.width() <= limits.maxSide && size.height() <= limits.maxSide;
    if (!sidesFit || qint64(size.width()) * size.height() * 4 > limits.maxBytes)
        return Error{ErrorKind::TooLarge, QStringLiteral("%1 x %2 pixels are more than this machine shows")
                                              .arg(size.width())
                                              .arg(size.height())};
    return ok();
}

Status checkCost(QSize size, int bytesPerPixel, const Limits& limits)
{
    Status allowed = checkSize(size, limits);
    if (!allowed)
        return allowed;
    Limits tighter = limits;
    tighter.maxBytes = limits.maxBytes * 4 / bytesPerPixel;
    return checkSize(size, tighter);
}

} // namespace quorvia::engine
