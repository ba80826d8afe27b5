// Good files cut short at every length.
#pragma once

#include "engine/Codec.h"

namespace quorvia::test {

/// Empty when every shorter part of `file`, which is good, behaves and is Damaged or shows a picture of the
/// whole size, equal to the whole one where it calls itself complete; when what a shorter part shows a longer
/// one shows too; and when some part shows an incomplete picture. Else the first fault, with the length.
QString everyCutFault(const engine::Codec& codec, const QByteArray& file);

} // namespace quorvia::test
