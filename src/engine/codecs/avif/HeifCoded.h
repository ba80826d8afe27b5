// The sizes that the streams in an AVIF or HEIF file announce for themselves. A decoder makes room for those,
// whatever the boxes tell, and can be told no limit. Cheap: only the beginnings of the streams are looked at.
#pragma once

#include <QByteArray>
#include <QList>
#include <QSize>

namespace quorvia::engine {

/// The size in the first AV1 sequence header (AV1 specification, 5.5) of `stream`, a row of open bitstream
/// units; empty when there is none.
QSize av1StreamSize(const QByteArray& stream);

/// The size in the HEVC sequence parameter set `unit` (ITU-T H.265, 7.3.2.2), with its two header bytes;
/// empty when it is none.
QSize hevcUnitSize(const QByteArray& unit);

/// The sizes that the AV1 and HEVC streams of the items in `file` announce, those of their decoder
/// configurations among them.
QList<QSize> heifCodedSizes(const QByteArray& file);

} // namespace quorvia::engine
