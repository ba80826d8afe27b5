// What a playlist file names, read at once.
#pragma once

#include "collections/QolText.h"

namespace quorvia::test {

/// All lines of `bytes` that QolLines gives.
inline QStringList qolPaths(const QByteArray& bytes)
{
    QStringList paths;
    collections::QolLines lines(bytes);
    while (const std::optional<QByteArrayView> line = lines.next())
        paths.append(collections::qolLine(*line));
    return paths;
}

} // namespace quorvia::test
