// The records that draw text. Dear: the first text waits for the application object, whose fonts it needs.
#pragma once

#include "engine/codecs/WmfState.h"

#include <QFont>
#include <QStringList>

namespace quorvia::engine {

/// The families to look for in place of `face`, best first: itself, faces of the same measures, faces of the
/// same character. `pitchAndFamily` is the font record's field.
QStringList wmfFamilies(const QString& face, int pitchAndFamily);

/// Plays the records of text. False for other records.
bool playText(WmfContext& context, const WmfRecord& record, const WmfParams& params);

} // namespace quorvia::engine
