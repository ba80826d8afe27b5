// The sizes that the streams in an AVIF or HEIF file announce for themselves. A decoder makes room for those,
// whatever the boxes tell, and can be told no limit. Cheap: the headers of units are looked at, what they
// hold is passed over.
#pragma once

#include "engine/codecs/avif/HeifPieces.h"

#include <QByteArray>
#include <QList>
#include <QSize>

namespace quorvia::engine {

/// The bytes that may be looked at in search of sizes, over all the streams of a file: ample for the largest
/// grid.
constexpr qint64 heifGlances = 1 << 20;

/// The size in the AV1 sequence headers (AV1 specification, 5.5) of `stream`, a row of open bitstream units;
/// the largest width and height where there are several, empty when there is none. Takes what it looked at
/// from `glances`; they are below 0 when the stream was not looked through.
QSize av1StreamSize(const HeifPieces& stream, qint64& glances);
QSize av1StreamSize(const HeifPieces& stream);

/// The size in the HEVC sequence parameter set `unit` (ITU-T H.265, 7.3.2.2), with its two header bytes;
/// empty when it is none.
QSize hevcUnitSize(const QByteArray& unit);

/// As av1StreamSize() for a row of HEVC units, each behind its length in four bytes.
QSize hevcStreamSize(const HeifPieces& stream, qint64& glances);

/// The sizes that the AV1 and HEVC streams of the primary item of `file`, and of those that it is made of,
/// announce, those of their decoder configurations among them; of all items when there is no primary one.
QList<QSize> heifCodedSizes(const QByteArray& file);

} // namespace quorvia::engine
