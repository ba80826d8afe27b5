// What every codec is held to with the fixtures of its corpus. Each check gives an empty text when all is
// well, else the first fault with the fixture's name.
#pragma once

#include "corpus/Corpus.h"
#include "engine/Codec.h"

namespace quorvia::test {

/// Header, completeness and pixels of `fixture` against the independent reader's.
QString fixtureFault(const engine::Codec& codec, const Fixture& fixture);

/// All fixtures of `corpus`; at least ten.
QString corpusFault(const engine::Codec& codec, const std::vector<Fixture>& corpus);

/// Cuts the fixture's file at every length, or at some 400 places of a longer one: nothing may go wrong; a
/// picture with other pixels than the whole is not complete, and what a shorter file shows, a longer one
/// shows too. With `shows`, at least half of the places must give a picture.
QString cutFault(const engine::Codec& codec, const Fixture& fixture, bool shows = true);

/// `count` broken children of the corpus.
QString mutantFault(const engine::Codec& codec, const std::vector<Fixture>& corpus, int count);

} // namespace quorvia::test
