#include "collections/CellFit.h"

#include "app/Colors.h"

#include <algorithm>
#include <cmath>

namespace quorvia::collections {

namespace {

constexpr int darkGray = 0xC0C0C0;
constexpr int lightGray = 0xE0E0E0;
constexpr int white = 0xFFFFFF;
constexpr int blue = 0xFF0000; // as stored: the highest byte is blue's

constexpr double canvasWidth = 199.5; // pixels
constexpr double canvasHeight = 150;  // pixels
constexpr double border = 50;         // twips
constexpr int mostPixels = 32767;

/// A length along an axis of the canvas and where it begins.
struct Span
{
    double start = border;
    double length = 0;

    /// Leaves the border free, and a pixel at least to be seen, which then stands in the middle.
    void narrow(double canvas, double pixel)
    {
        length -= 2 * border;
        if (length >= pixel)
            return;
        length = pixel;
        start = (canvas - pixel) / 2;
    }
};

/// Rounded, a half to the even number.
int toPixelCount(double length, double pixel)
{
    return std::clamp(int(std::nearbyint(length / pixel)), 1, mostPixels);
}

} // namespace

QColor nextCellColor(const QColor& present)
{
    switch (app::toColorNumber(present)) {
    case lightGray:
        return app::fromColorNumber(darkGray);
    case darkGray:
        return app::fromColorNumber(white);
    default:
        return app::fromColorNumber(lightGray);
    }
}

QColor selectedCellColor()
{
    return app::fromColorNumber(blue);
}

QSizeF workingCanvas(double twipsPerPixel)
{
    return {canvasWidth * twipsPerPixel, canvasHeight * twipsPerPixel};
}

CellFit fitCell(QSize image, double twipsPerPixel, double density)
{
    const QSizeF canvas = workingCanvas(twipsPerPixel);
    Span across{border, canvas.width()};
    Span down{border, canvas.height()};
    if (image.height() > image.width()) {
        across.length = canvas.height() / image.height() * image.width();
        if (across.length > canvas.width() - 2 * border)
            across.length = canvas.width();
        across.start = canvas.width() / 2 - across.length / 2 + border;
    } else if (image.width() > image.height()) {
        down.length = std::nearbyint(image.height() * (canvas.width() / image.width()));
        if (down.length > canvas.height() - 2 * border)
            down.length = canvas.height();
        down.start = canvas.height() / 2 - down.length / 2 + border;
    }
    across.narrow(canvas.width(), twipsPerPixel);
    down.narrow(canvas.height(), twipsPerPixel);
    const double pixel = twipsPerPixel / density;
    return {canvas,
            {across.start, down.start, across.length, down.length},
            {toPixelCount(across.length, pixel), toPixelCount(down.length, pixel)}};
}

} // namespace quorvia::collections
