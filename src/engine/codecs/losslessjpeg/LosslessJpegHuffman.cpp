#include "engine/codecs/losslessjpeg/LosslessJpegHuffman.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <numeric>

namespace quorvia::engine {

namespace {

constexpr int longestCode = 16;
constexpr int mostNegative = -32768; // what category 16 means; it has no further bits

/// Code lengths of a Huffman tree over `weights`, all above 0.
std::vector<int> treeDepths(const std::vector<qint64>& weights)
{
    struct Node
    {
        qint64 weight;
        std::vector<size_t> leaves;
    };
    std::vector<Node> nodes;
    for (size_t i = 0; i < weights.size(); ++i)
        nodes.push_back({weights[i], {i}});
    std::vector<int> depths(weights.size(), 0);
    while (nodes.size() > 1) {
        std::stable_sort(nodes.begin(), nodes.end(),
                         [](const Node& a, const Node& b) { return a.weight > b.weight; });
        const Node last = std::move(nodes.back());
        nodes.pop_back();
        Node& joined = nodes.back();
        joined.weight += last.weight;
        joined.leaves.insert(joined.leaves.end(), last.leaves.begin(), last.leaves.end());
        for (const size_t leaf : joined.leaves)
            ++depths[leaf];
    }
    return depths;
}

} // namespace

std::optional<DifferenceCodes> DifferenceCodes::from(const HuffmanSpec& spec)
{
    DifferenceCodes codes;
    codes.m_values = spec.values;
    if (std::any_of(spec.values.begin(), spec.values.end(),
                    [](int value) { return value >= jpegCategories; }))
        return {};
    int code = 0;
    int value = 0;
    for (int length = 1; length <= longestCode; ++length, code <<= 1) {
        const int count = spec.counts[size_t(length) - 1];
        codes.m_firstCode[size_t(length)] = code;
        codes.m_firstValue[size_t(length)] = value;
        codes.m_count[size_t(length)] = count;
        if (code + count > 1 << length)
            return {};
        for (int i = 0; i < count; ++i)
            codes.enter(code++, length, spec.values[size_t(value++)]);
    }
    return codes;
}

/// Fills the entries for all look-ahead bits that begin with a code.
void DifferenceCodes::enter(int code, int length, int category)
{
    const int spare = lookAhead - length;
    if (spare < 0)
        return;
    for (int tail = 0; tail < 1 << spare; ++tail) {
        Entry& entry = m_entries[size_t(code << spare | tail)];
        entry.length = quint8(length);
        if (category == 0 || category == 16) {
            entry.difference = qint16(category == 0 ? 0 : mostNegative);
        } else if (category <= spare) {
            const int rest = tail >> (spare - category);
            entry.difference = qint16(extended(unsigned(rest), category));
            entry.length = quint8(length + category);
        } else {
            entry.rest = quint8(category);
        }
    }
}

int DifferenceCodes::nextLong(JpegBits& bits, bool& broken) const
{
    for (int length = lookAhead + 1; length <= longestCode; ++length) {
        const int index = int(bits.peek(length)) - m_firstCode[size_t(length)];
        if (index < 0 || index >= m_count[size_t(length)])
            continue;
        bits.drop(length);
        const int value = m_firstValue[size_t(length)] + index;
        const int category = m_values[size_t(value)];
        if (category == 0 || category == 16)
            return category == 0 ? 0 : mostNegative;
        return extended(bits.take(category), category);
    }
    broken = true;
    return 0;
}

int jpegCategory(int difference)
{
    return std::bit_width(unsigned(std::abs(difference)));
}

HuffmanSpec bestHuffmanSpec(const std::array<qint64, jpegCategories>& counts)
{
    std::vector<int> categories;
    for (int category = 0; category < jpegCategories; ++category) {
        if (counts[size_t(category)] > 0)
            categories.push_back(category);
    }
    std::stable_sort(categories.begin(), categories.end(),
                     [&](int a, int b) { return counts[size_t(a)] > counts[size_t(b)]; });
    std::vector<qint64> weights;
    weights.reserve(categories.size() + 1);
    for (const int category : categories)
        weights.push_back(counts[size_t(category)]);
    weights.push_back(1); // stands for the code of all ones, which is the last of the longest
    std::vector<int> depths = treeDepths(weights);
    while (*std::max_element(depths.begin(), depths.end()) > longestCode) {
        for (qint64& weight : weights)
            weight = (weight + 1) / 2;
        depths = treeDepths(weights);
    }
    std::sort(depths.begin(), depths.end());
    HuffmanSpec spec;
    for (size_t i = 0; i < categories.size(); ++i) {
        ++spec.counts[size_t(depths[i]) - 1];
        spec.values.push_back(uchar(categories[i]));
    }
    return spec;
}

std::array<HuffmanCode, jpegCategories> huffmanCodes(const HuffmanSpec& spec)
{
    std::array<HuffmanCode, jpegCategories> codes;
    int code = 0;
    size_t value = 0;
    for (int length = 1; length <= longestCode; ++length, code <<= 1) {
        for (int i = 0; i < spec.counts[size_t(length) - 1]; ++i)
            codes[spec.values[value++]] = {code++, length};
    }
    return codes;
}

} // namespace quorvia::engine
