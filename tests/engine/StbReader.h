// Softimage pictures as a reader that is not ours sees them: the one of the stb headers.
#pragma once

#include "CodecFixtures.h"

namespace quorvia::test {

/// The pixels of the Softimage picture `file`; an empty size, and a failed test, when it cannot be read.
Rgba readByStb(const QByteArray& file);

} // namespace quorvia::test
