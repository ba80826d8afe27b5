// The records that draw lines and filled shapes.
#pragma once

#include "engine/codecs/wmf/WmfState.h"

namespace quorvia::engine {

/// Plays lines, polygons, rectangles, ellipses and their parts, pixels and regions. False for other records.
bool playShape(WmfContext& context, const WmfRecord& record, const WmfParams& params);

} // namespace quorvia::engine
