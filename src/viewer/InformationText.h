// The texts of the information panel, made from values. To gather the facts of a file takes a few looks at
// the disk; the texts cost nothing.
#pragma once

#include "app/ImageFacts.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace quorvia::viewer {

struct FileTimes
{
    QDateTime created;
    QDateTime modified;
    QDateTime accessed;
};

struct FileFacts
{
    qint64 bytes = 0;
    std::optional<FileTimes> times; ///< none when the file could not be opened
    QString attributes;             ///< as words
};

/// The facts of the file at `path`; none when nothing can be asked of it. The empty path is an empty file
/// without times.
std::optional<FileFacts> fileFacts(const QString& path);

/// Size, times and attributes, each on a line; the lines of the times only when they are known.
QString fileInfoText(const FileFacts& facts);
/// Size in pixels, colour depth and number of different colours, each on a line; `colors` are left out while
/// they are not counted yet.
QString imageInfoText(const app::ImageFacts& facts, std::optional<int> colors);

} // namespace quorvia::viewer
