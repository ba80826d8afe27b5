// Targa files put together field by field, for the variants that no tool writes.
#pragma once

#include "CodecFixtures.h"

#include <vector>

namespace quorvia::test {

struct TgaMaker
{
    QSize size;
    int type = 2;
    int depth = 24;
    int descriptor = 0; ///< 20 top down, 10 right to left, lower four bits: attribute bits
    QByteArray idField;
    int paletteFirst = 0;
    int paletteCount = 0;
    int entryBits = 0;
    QByteArray palette;
    std::vector<QByteArray> pixels; ///< as stored, in the order of the file
    QByteArray data;                ///< packets that stand for the pixels; empty for plain ones
    int attributesType = -1;        ///< of an extension area; -1 for a file without one

    QByteArray bytes() const;
    /// The same with packets of runs and of different pixels; with `across` they do not end with the rows.
    TgaMaker packed(bool across) const;
    /// What a reader shows: for 24 and 32 bits and for grey with alpha, rows not interleaved.
    Rgba shown() const;

    /// True colour of 15, 16, 24 or 32 bits, with runs in it.
    static TgaMaker trueColor(QSize size, int depth);
    /// Palette values of `depth` bits under `count` entries from `first` on.
    static TgaMaker mapped(QSize size, int depth, int entryBits, int count, int first);
    /// Grey with alpha.
    static TgaMaker gray(QSize size);
};

} // namespace quorvia::test
