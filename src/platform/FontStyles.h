// Which of a family's styles stands for a weight and a slope.
#pragma once

#include <QString>

#include <span>

namespace quorvia::platform {

/// One style of a family of fonts.
struct FontStyle
{
    QString name;        ///< as the family calls it: "Book", "Bold Oblique"
    int weight = 400;    ///< of 1 to 1000, as QFont::Weight
    bool italic = false; ///< sloped in whatever way
};

/// The name of the style among `styles` that is nearest to `weight` (1 to 1000) and `italic`: the weight
/// counts before the slope, as a family without slopes is sloped by the toolkit. Of equals the shortest name,
/// since others are condensed, then the first. Empty when there is none.
QString nearestStyle(std::span<const FontStyle> styles, int weight, bool italic);

} // namespace quorvia::platform
