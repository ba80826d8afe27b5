// Errors that several codecs report in the same words.
#pragma once

#include "engine/Result.h"

#include <QString>

namespace quorvia::engine {

inline Error cancelledError()
{
    return Error{ErrorKind::Cancelled, QStringLiteral("cancelled")};
}

inline Error noMemoryError()
{
    return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the picture")};
}

/// The file holds not a single pixel.
inline Error nothingToShowError()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the file ends before the first pixel")};
}

inline Error noImageError()
{
    return Error{ErrorKind::Unsupported, QStringLiteral("there is no image to write")};
}

} // namespace quorvia::engine
