// The records that draw bitmaps and patterns, and those that make brushes of them.
#pragma once

#include "engine/codecs/wmf/WmfState.h"

namespace quorvia::engine {

/// Plays the records of bitmaps; `reader` gives the embedded ones from the file. False for other records.
bool playBitmap(WmfContext& context, const WmfRecord& record, const WmfRecordReader& reader);

/// Bytes of parameters before the DIB in `record`; -1 when it holds none.
qint64 wmfDibOffset(const WmfRecord& record);

/// The brush that a record with a pattern makes; None when the pattern cannot be read.
WmfBrush patternBrush(WmfContext& context, const WmfRecord& record, const WmfRecordReader& reader);

} // namespace quorvia::engine
