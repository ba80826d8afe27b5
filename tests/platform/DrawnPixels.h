// How much of a drawing there is.
#pragma once

#include <QImage>

namespace quorvia::test {

/// How many pixels are covered at least by half.
inline int drawnPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) >= 128;
    }
    return count;
}

} // namespace quorvia::test
