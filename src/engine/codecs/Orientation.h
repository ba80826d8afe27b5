// Turns a stored picture the way its orientation number says.
#pragma once

#include <QImage>

namespace quorvia::engine {

/// True when width and height change places (5 to 8).
constexpr bool isTransposed(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/// `stored` turned upright, exact, its format kept. `orientation` is the number of TIFF 6.0: 1 is upright,
/// others than 1 to 8 count as 1. A null image when there is no memory left.
QImage upright(QImage stored, int orientation);

} // namespace quorvia::engine
