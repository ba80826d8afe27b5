// What the boxes of an AVIF or HEIF file tell without a library: whether it is one, how long the file
// promises to be. Cheap.
#pragma once

#include <QByteArray>

namespace quorvia::engine {

/// True when `head` begins with the file type box of an AVIF or HEIF picture or sequence.
bool isHeif(const QByteArray& head);

/// The length in bytes that the outermost boxes of `file` promise; that of `file` when they promise nothing.
qint64 promisedHeifLength(const QByteArray& file);

} // namespace quorvia::engine
