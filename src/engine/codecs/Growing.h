// Lets C libraries write into a QByteArray: no exception may pass through their frames.
#pragma once

#include <QByteArray>

#include <new>

namespace quorvia::engine {

/// Appends `length` bytes to `out`; false, with `out` as it was, when there is no memory for them.
inline bool appended(QByteArray& out, const void* bytes, qsizetype length) noexcept
{
    try {
        out.append(static_cast<const char*>(bytes), length);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace quorvia::engine
