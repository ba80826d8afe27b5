// Errors that several codecs report in the same words.
#pragma once

#include "engine/Result.h"

#include <QString>

namespace quorvia::engine {

/// The file breaks its format's rules in the way that `text` tells.
inline Error damaged(const QString& text)
{
    return Error{ErrorKind::Damaged, text};
}

/// The format has it, but it is not read or written; `text` tells what.
inline Error unsupported(const QString& text)
{
    return Error{ErrorKind::Unsupported, text};
}

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
    return damaged(QStringLiteral("the file ends before the first pixel"));
}

inline Error noImageError()
{
    return unsupported(QStringLiteral("there is no image to write"));
}

} // namespace quorvia::engine
