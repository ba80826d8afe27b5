// What decoders of formats with one page a file answer to a page number.
#pragma once

#include "engine/Result.h"

#include <QString>

namespace quorvia::engine {

/// Good for page 1; Damaged for any other.
inline Status onlyPage(int page)
{
    if (page == 1)
        return ok();
    return Error{ErrorKind::Damaged, QStringLiteral("there is no page %1").arg(page)};
}

} // namespace quorvia::engine
