// Finds a picture with nine marks on a screen, wherever a viewer places it and however large. Plain
// arithmetic over pixels; nothing here knows of a display.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvia::bench {

/// Pixels of a screen as 0xRRGGBB, row after row; the upper byte is not looked at.
struct ScreenPixels
{
    const std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0; ///< pixels from row to row

    std::uint32_t at(int x, int y) const { return pixels[std::ptrdiff_t(y) * stride + x]; }
};

/// Where a picture lies, in pixels of the screen; empty when none was found.
struct Place
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool isEmpty() const { return width <= 0 || height <= 0; }
};

/// The code of a mark's colour: bit 0 red, 1 green, 2 blue, each full or none at all; 0 for black, white and
/// all that is no such colour.
inline int markCode(std::uint32_t pixel)
{
    constexpr std::uint32_t full = 230;
    constexpr std::uint32_t none = 25;
    int code = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const std::uint32_t value = pixel >> (16 - 8 * bit) & 0xff;
        if (value > none && value < full)
            return 0;
        code |= value >= full ? 1 << bit : 0;
    }
    return code == 7 ? 0 : code;
}

/// Steps from sample to sample, in pixels: a mark of a picture a third of the screen wide is four of them.
constexpr int sampleStep = 8;

/// First and last index of `counts` that have at least four tenths of the most, and three; {0, -1} for none.
/// Small copies of the picture at the side of it stay outside.
inline std::array<int, 2> reachOf(const std::vector<int>& counts)
{
    const int most = counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
    const auto counted = [most](int count) { return count >= 3 && count * 10 >= most * 4; };
    const auto first = std::find_if(counts.begin(), counts.end(), counted);
    if (first == counts.end())
        return {0, -1};
    const auto last = std::find_if(counts.rbegin(), counts.rend(), counted);
    return {int(first - counts.begin()), int(counts.rend() - last) - 1};
}

/// True when the nine marks of colour `code`, and nothing of it between them, stand in a picture at `place`.
inline bool marksStand(const ScreenPixels& screen, const Place& place, int code)
{
    constexpr std::array centres{0.12, 0.5, 0.88};
    constexpr std::array between{0.31, 0.69};
    const auto codeAt = [&](double across, double down) {
        const int x = place.x + int(across * place.width);
        const int y = place.y + int(down * place.height);
        const bool inside = x >= 0 && y >= 0 && x < screen.width && y < screen.height;
        return inside ? markCode(screen.at(x, y)) : 0;
    };
    for (const double across : centres) {
        for (const double down : centres) {
            if (codeAt(across, down) != code)
                return false;
        }
    }
    for (const double across : between) {
        for (const double down : between) {
            if (codeAt(across, down) == code)
                return false;
        }
    }
    return true;
}

/// The place of a whole 3:2 picture with marks of colour `code` (1 to 6), at least a third of the screen
/// wide, to a few pixels; empty when it does not stand.
inline Place findPicture(const ScreenPixels& screen, int code)
{
    std::vector<int> columns(std::size_t(screen.width / sampleStep));
    std::vector<int> rows(std::size_t(screen.height / sampleStep));
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            if (markCode(screen.at(int(column) * sampleStep, int(row) * sampleStep)) == code) {
                ++columns[column];
                ++rows[row];
            }
        }
    }
    const auto [left, right] = reachOf(columns);
    const auto [top, bottom] = reachOf(rows);
    // The marks reach from 8 to 92 percent of the picture.
    const double width = (right + 1 - left) * sampleStep / 0.84;
    const double height = (bottom + 1 - top) * sampleStep / 0.84;
    if (width < screen.width / 3.0 || width < height * 1.38 || width > height * 1.62)
        return {};
    const Place place{int(left * sampleStep - 0.08 * width), int(top * sampleStep - 0.08 * height),
                      int(width), int(height)};
    return marksStand(screen, place, code) ? place : Place{};
}

/// The part of `place` cut off at the edges of the screen.
inline Place insideOf(const ScreenPixels& screen, const Place& place)
{
    const int x = std::clamp(place.x, 0, screen.width);
    const int y = std::clamp(place.y, 0, screen.height);
    return {x, y, std::clamp(place.x + place.width, x, screen.width) - x,
            std::clamp(place.y + place.height, y, screen.height) - y};
}

/// The share of the pixels at `place`, which lies on the screen, that are others than in `seen`: 0 to 1, and
/// 1 the first time or after another size. More than `enough` brings `seen` to what stands; less leaves it,
/// so that small changes add up.
inline double changedShare(const ScreenPixels& screen, const Place& place, std::vector<std::uint32_t>& seen,
                           double enough)
{
    const std::size_t count = std::size_t(place.width) * std::size_t(place.height);
    if (count == 0)
        return 0;
    const auto rowAt = [&](int y) {
        return screen.pixels + std::ptrdiff_t(place.y + y) * screen.stride + place.x;
    };
    double share = 1;
    if (seen.size() == count) {
        std::size_t changed = 0;
        std::size_t index = 0;
        for (int y = 0; y < place.height; ++y) {
            const std::uint32_t* row = rowAt(y);
            for (int x = 0; x < place.width; ++x, ++index)
                changed += ((seen[index] ^ row[x]) & 0xffffff) != 0 ? 1 : 0;
        }
        share = double(changed) / double(count);
    }
    if (share <= enough)
        return share;
    seen.resize(count);
    for (int y = 0; y < place.height; ++y)
        std::copy_n(rowAt(y), place.width, seen.begin() + std::ptrdiff_t(y) * place.width);
    return share;
}

} // namespace quorvia::bench
