// Huffman codes of lossless JPEG: differences read through a table of the next bits, and the best codes for
// counted categories. Building either costs some thousand steps.
#pragma once

#include "engine/codecs/losslessjpeg/LosslessJpegBits.h"

#include <array>
#include <optional>
#include <vector>

namespace quorvia::engine {

/// Categories of differences: 0 to 16, by the bits of their size.
constexpr int jpegCategories = 17;

/// Decodes differences.
class DifferenceCodes
{
  public:
    /// Nothing when the codes of `spec` do not fit into their lengths or name no category.
    static std::optional<DifferenceCodes> from(const HuffmanSpec& spec);

    /// The next difference (of 16 bits, modulo 2^16); inlined into the loops that live on it. `broken` is set
    /// when the bits are no code.
    [[gnu::always_inline]] int next(JpegBits& bits, bool& broken) const
    {
        if (bits.ready() < longestDifference)
            bits.refill();
        const Entry entry = m_entries[bits.peek(lookAhead)];
        if (entry.length == 0)
            return nextLong(bits, broken);
        bits.drop(entry.length);
        return entry.rest == 0 ? entry.difference : extended(bits.take(entry.rest), entry.rest);
    }

  private:
    static constexpr int lookAhead = 11;
    static constexpr int longestDifference = 32; ///< bits of the longest code and category

    /// What the next bits say. `rest` bits of the difference follow; with 0 it is known.
    struct Entry
    {
        qint16 difference = 0;
        quint8 length = 0; ///< bits to drop; 0 for codes longer than the look-ahead
        quint8 rest = 0;
    };

    static int extended(unsigned value, int category)
    {
        return value < 1U << (category - 1) ? int(value) - (1 << category) + 1 : int(value);
    }
    void enter(int code, int length, int category);
    int nextLong(JpegBits& bits, bool& broken) const;

    std::array<Entry, 1 << lookAhead> m_entries = {};
    std::array<int, 17> m_firstCode = {};  ///< by length
    std::array<int, 17> m_firstValue = {}; ///< index of its value
    std::array<int, 17> m_count = {};
    std::vector<uchar> m_values;
};

/// The category of `difference` (-32768 to 32767, of 16 bits): how many bits it takes; 16 for -32768.
int jpegCategory(int difference);

/// A code of `length` bits.
struct HuffmanCode
{
    int code = 0;
    int length = 0; ///< 0 for categories that do not occur
};

/// The shortest codes for categories that occur `counts` times, of at most 16 bits and none of them all ones,
/// as T.81, C and K.2 want them. At least one count is above 0.
HuffmanSpec bestHuffmanSpec(const std::array<qint64, jpegCategories>& counts);

/// The codes of `spec` by category.
std::array<HuffmanCode, jpegCategories> huffmanCodes(const HuffmanSpec& spec);

} // namespace quorvia::engine
