// Brings an image, or the part of it that is needed, to another size. Each axis has a filter of its own. A
// result pixel depends on its place in the whole result only, never on the part it is computed with, so parts
// meet without a seam. Costs a pass over the source pixels behind the part; no copy of the source is made.
#pragma once

#include <QImage>

namespace quorvia::engine {

enum class Filter {
    Nearest, ///< the source pixel under the result pixel's centre: crisp squares
    Area,    ///< the average of the source under the result pixel; for making smaller
    Bicubic, ///< Catmull-Rom (a = -0.5) over four source pixels; for making larger, keeps edges sharp
};

/// Brings images of any other format to one of those that a codec gives (Mono, Indexed8, Grayscale8, RGB32,
/// ARGB32); these come back as they are.
QImage normalized(const QImage& image);

/// True when `image` is grey throughout by its format or its colour table.
bool isGrayByFormat(const QImage& image);

/// The pixels of `part` (in result pixels) of `source` brought to the size `target`, filtered by `across` and
/// `down`. RGB32 when `source` has no alpha, else ARGB32_Premultiplied (alpha is filtered premultiplied, so
/// transparent colours do not bleed). Shares the pixels of `source` where those are the result. Null when
/// `source` is null, `part` is empty or reaches out of `target`, or no memory is left.
QImage resampled(const QImage& source, QSize target, QRect part, Filter across, Filter down);

} // namespace quorvia::engine
