// What the panels beside the picture tell of the current image, as values, and where they get it from.
#pragma once

#include <QSize>

#include <functional>

namespace quorvia::app {

struct ImageFacts
{
    QSize pixels;
    int bitsPerPixel = 0;
};

/// Asks for the image that is current now.
struct ImageQuestions
{
    std::function<ImageFacts()> facts; ///< cheap: known when the header is read
    std::function<int()> uniqueColors; ///< dear: waits for every pixel, then counts
};

/// Milliseconds for which an image has to stay before its colours are counted for a panel: whoever walks
/// through pictures does not wait for each.
inline constexpr int restBeforeCounting = 100;

} // namespace quorvia::app
