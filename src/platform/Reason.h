// How an operation of this room says that it failed, and why.
#pragma once

#include <QString>

namespace quorvia::platform {

/// Puts `reason` into `why`, unless that is null, and gives false: the answer of what failed.
inline bool fail(QString* why, const QString& reason)
{
    if (why)
        *why = reason;
    return false;
}

} // namespace quorvia::platform
