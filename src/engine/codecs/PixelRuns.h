// Splits a row of stored pixels into runs of equal ones and what lies between them, for run-length writers.
#pragma once

#include <QByteArray>

#include <cstring>

namespace quorvia::engine {

struct PixelRunRules
{
    int bytes;      ///< a pixel
    int shortest;   ///< pixels from which on a run is worth its own code
    int longest;    ///< pixels that one run can name
    int longestRaw; ///< pixels that one piece of different ones can name
};

/// The rules of formats whose codes are one byte: a run pays from two pixels on, of single bytes from three
/// on. `longest` and `longestRaw` in pixels.
constexpr PixelRunRules byteCodedRuns(int bytes, int longest, int longestRaw)
{
    return {bytes, bytes == 1 ? 3 : 2, longest, longestRaw};
}

/// An `onRaw` for forEachPixelRun() that appends to `out` the number of pixels less one in a byte, then the
/// pixels of `bytes` bytes each.
inline auto rawAppender(QByteArray& out, int bytes)
{
    return [&out, bytes](const char* pixels, int count) {
        out.append(char(count - 1));
        out.append(pixels, qsizetype(count) * bytes);
    };
}

/// Calls `onRaw(pixels, count)` and `onRun(pixel, count)` for the pieces of `row` from left to right.
template <class OnRaw, class OnRun>
void forEachPixelRun(const QByteArray& row, const PixelRunRules& rules, const OnRaw& onRaw,
                     const OnRun& onRun)
{
    const auto width = int(row.size() / rules.bytes);
    const auto at = [&](int pixel) { return row.constData() + qsizetype(pixel) * rules.bytes; };
    const auto flush = [&](int from, int to) {
        for (; from < to; from += rules.longestRaw)
            onRaw(at(from), to - from < rules.longestRaw ? to - from : rules.longestRaw);
    };
    int pending = 0; // first pixel not written yet
    for (int x = 0; x < width;) {
        int end = x + 1;
        while (end < width && end - x < rules.longest &&
               std::memcmp(at(x), at(end), size_t(rules.bytes)) == 0)
            ++end;
        if (end - x >= rules.shortest) {
            flush(pending, x);
            onRun(at(x), end - x);
            pending = end;
        }
        x = end;
    }
    flush(pending, width);
}

} // namespace quorvia::engine
