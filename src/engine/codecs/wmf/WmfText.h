// The records that draw text. Dear: the first text waits for the application object, whose fonts it needs.
#pragma once

#include "engine/codecs/wmf/WmfState.h"

namespace quorvia::engine {

/// Plays the records of text. False for other records.
bool playText(WmfContext& context, const WmfRecord& record, const WmfParams& params);

} // namespace quorvia::engine
