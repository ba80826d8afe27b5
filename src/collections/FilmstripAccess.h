// What a screen reader sees of a filmstrip: a list of pictures by their file names, one of which the keys
// lead from.
#pragma once

namespace quorvia::collections {

/// Makes known how a Filmstrip presents itself; cheap, and only the first call does anything.
void announceFilmstrips();

} // namespace quorvia::collections
