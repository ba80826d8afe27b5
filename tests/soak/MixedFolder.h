// A folder as nobody would wish for: good pictures of all formats, cut and garbled copies of them, and what
// only looks like pictures.
#pragma once

#include <QString>

namespace quorvia::test {

/// Fills `folder`, which is made, with some hundred small files, the same ones every time: from `samples` (a
/// folder), from writers of ours and of ImageMagick, up to three a kind of the files below `extra` (may be
/// empty), their broken copies, files that once broke a decoder (below `findings`), links into `sources`, a
/// folder and a pipe with the names of pictures. `sources` gets read-only files. False when ImageMagick or
/// the disk failed.
struct MixedFolder
{
    QString samples;
    QString findings;
    QString extra;

    bool fill(const QString& folder, const QString& sources) const;
};

} // namespace quorvia::test
