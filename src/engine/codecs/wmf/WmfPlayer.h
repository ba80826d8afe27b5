// Plays the records of a metafile on a canvas. Dear: as much as there is to draw, within the canvas's bound.
#pragma once

#include "engine/codecs/wmf/WmfState.h"

namespace quorvia::engine {

/// Plays records until the end record, the end of the file, a cancel or the end of what the canvas may spend.
/// `context.complete` tells afterwards whether all there is to see is drawn.
void playRecords(WmfContext& context, WmfRecordReader& reader);

/// The depth in bits of the one bitmap that the records from `recordOffset` on draw, where they draw nothing
/// else; otherwise 24. Cheap: stops at the second drawing record.
int wmfDepth(const std::shared_ptr<ByteSource>& source, qint64 recordOffset);

} // namespace quorvia::engine
