// What the boxes of an AVIF or HEIF file tell without a library: whether it is one, how deep its samples are,
// how long the file promises to be. Cheap.
#pragma once

#include <QByteArray>

namespace quorvia::engine {

/// True when `head` begins with the file type box of an AVIF or HEIF picture or sequence.
bool isHeif(const QByteArray& head);

struct HeifSamples
{
    int channels = 3; ///< 1 grey, 3 colour; without alpha
    int bits = 8;
};

/// How the samples of the pictures in `file` are stored, by their pixel information; the deepest where there
/// are several. Three channels of 8 bits when nothing tells.
HeifSamples heifSamples(const QByteArray& file);

/// The length in bytes that the outermost boxes of `file` promise; that of `file` when they promise nothing.
qint64 promisedHeifLength(const QByteArray& file);

} // namespace quorvia::engine
