// A small file of the user's that other programs write too: read whole, replaced whole or not at all.
#pragma once

#include <QByteArray>
#include <QString>

namespace quorvia::platform {

enum class TextRead {
    Done,
    Missing,
    Refused, ///< not a regular file, too large, or not to be read
};

/// Reads the file at `path` into `text`, which stays alone when it cannot be read. Never waits for a pipe.
/// More than 4 MiB are refused.
TextRead readTextFile(const QString& path, QByteArray& text);

/// Where a write to `path` ends: behind all links, of its directories too, be the file there or not. Empty
/// for a ring of links, and for a name whose bytes are no letters.
QString endOfLinks(const QString& path);

/// Replaces the content of the file at `path`, or makes it with its directory. A link stays one: the file at
/// its other end is replaced, which keeps its permissions and owner. True when written; else the former file
/// is as it was and `why` (may be null) says what stood in the way. More than can be read is not written.
bool replaceTextFile(const QString& path, const QByteArray& text, QString* why);

/// Removes the file at `path`; behind a link, the file at its other end and the link are left, emptied. True
/// when it is gone or empty.
bool removeTextFile(const QString& path, QString* why);

} // namespace quorvia::platform
