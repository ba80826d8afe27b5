// What the streams in an AVIF or HEIF file announce for themselves: sizes, for which a decoder makes room
// whatever the boxes tell, and pictures, all of which it decodes. It can be told no limit. Cheap: the headers
// of units are looked at, what they hold is passed over.
#pragma once

#include "engine/codecs/avif/HeifPieces.h"

#include <QByteArray>
#include <QSize>

namespace quorvia::engine {

/// The bytes that may be looked at in search of headers, over all the streams of a file: ample for the
/// largest grid.
constexpr qint64 heifGlances = 1 << 21;
constexpr qint64 glanceOfHeifUnit = 8;     ///< what passing over a unit costs of them
constexpr qint64 longestHeifHeader = 1024; ///< bytes of a sequence header before its size, many times over

struct HeifStream
{
    QSize size;           ///< the largest width and height of several; empty when none is told
    quint64 pictures = 0; ///< that are decoded, shown or not; what may be as dear as a picture counts as one

    void add(const HeifStream& other)
    {
        if (!other.size.isEmpty())
            size = size.expandedTo(other.size);
        pictures += other.pictures;
    }
};

/// What `stream`, a row of open bitstream units, announces (AV1 specification, 5.3): the sizes of its
/// sequence headers and of frames that differ from them, and each frame, by its header. Takes what it looked
/// at from `glances`; they are below 0 when the stream was not looked through.
HeifStream av1Stream(const HeifPieces& stream, qint64& glances);

/// What one HEVC unit announces (ITU-T H.265, 7.3.2.2 and 7.3.6), with its two header bytes: a sequence
/// parameter set a size, a slice a picture, since nothing keeps each slice from covering the whole of it.
HeifStream hevcUnit(const QByteArray& unit);

/// As av1Stream() for a row of HEVC units, each behind its length in four bytes.
HeifStream hevcStream(const HeifPieces& stream, qint64& glances);

} // namespace quorvia::engine
