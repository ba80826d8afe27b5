// What every codec owes a broken file.
#pragma once

#include "engine/Codec.h"

#include <QByteArray>
#include <QString>

namespace quorvia::test {

/// Opens `bytes`, asks for every fact and decodes the first pages. Empty when whatever came back keeps the
/// rules of Decoder (sizes within the limits, the header's promise kept, an error with a text), else what
/// broke them.
QString misbehaviour(const engine::Codec& codec, const QByteArray& bytes);
/// The same through the whole table of codecs, as a file of that name is opened. `pictures`, if there is one,
/// grows by the number of pages that came back as pictures.
QString misbehaviour(const QString& extension, const QByteArray& bytes, int* pictures = nullptr);

/// The first page of `bytes`, all pixels; the error when it fails.
engine::Result<engine::Picture> decoded(const engine::Codec& codec, const QByteArray& bytes, int page = 1);

} // namespace quorvia::test
