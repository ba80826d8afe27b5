// The yardsticks: what the libraries' own documentation does to get a file's pixels, and no more. Files that
// do not decode end the program.
#pragma once

#include <cstdint>
#include <memory>

namespace quorvia::bench {

/// Pixels of 32 bits: blue, green, red, and one that is 255.
struct BarePicture
{
    int width = 0;
    int height = 0;
    std::unique_ptr<std::uint32_t[]> pixels;
};

/// libjpeg-turbo, scaled by `eighths` / 8.
BarePicture bareJpeg(const char* path, unsigned eighths = 8);
/// libpng, row by row.
BarePicture barePng(const char* path);
/// libtiff, strip by strip; RGB with 8 bits a sample.
BarePicture bareTiff(const char* path);

} // namespace quorvia::bench
