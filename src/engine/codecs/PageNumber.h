// What decoders answer to the number of a page that is not there.
#pragma once

#include "engine/Result.h"

#include <QString>

namespace quorvia::engine {

/// Good for pages 1 to `count`; Damaged for any other.
inline Status pageAmong(int page, int count)
{
    if (page >= 1 && page <= count)
        return ok();
    return Error{ErrorKind::Damaged, QStringLiteral("there is no page %1").arg(page)};
}

/// The same for files that hold one page.
inline Status onlyPage(int page)
{
    return pageAmong(page, 1);
}

} // namespace quorvia::engine
