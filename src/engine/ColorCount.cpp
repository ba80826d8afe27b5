#include "engine/ColorCount.h"

#include "engine/Bands.h"
#include "engine/Resample.h"

#include <QList>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr QRgb colorMask = 0x00ffffffU;

/// One bit for each of the 2^24 colours.
class ColorSet
{
  public:
    ColorSet() : m_words(size_t(1) << 18) {}

    void add(const QRgb* pixels, int count)
    {
        QRgb last = ~pixels[0]; // runs of one colour are common: they cost a comparison
        for (int i = 0; i < count; ++i) {
            if (pixels[i] == last)
                continue;
            last = pixels[i];
            const QRgb color = last & colorMask;
            m_words[color >> 6] |= std::uint64_t(1) << (color & 63);
        }
    }

    void unite(const ColorSet& other)
    {
        std::transform(m_words.begin(), m_words.end(), other.m_words.begin(), m_words.begin(),
                       [](std::uint64_t a, std::uint64_t b) { return a | b; });
    }

    int count() const
    {
        int total = 0;
        for (const std::uint64_t word : m_words)
            total += std::popcount(word);
        return total;
    }

  private:
    std::vector<std::uint64_t> m_words;
};

int countDeep(const QImage& image)
{
    const int bands = bandCount(image.height(), qint64(image.width()) * image.height());
    std::vector<ColorSet> sets(static_cast<size_t>(bands));
    inBands(image.height(), bands, [&](int index, int from, int to) {
        for (int y = from; y < to; ++y)
            sets[static_cast<size_t>(index)].add(reinterpret_cast<const QRgb*>(image.constScanLine(y)),
                                                 image.width());
    });
    for (size_t i = 1; i < sets.size(); ++i)
        sets[0].unite(sets[i]);
    return sets[0].count();
}

using Used = std::array<bool, 256>;

Used usedBytes(const QImage& image)
{
    Used used = {};
    for (int y = 0; y < image.height(); ++y) {
        const uchar* line = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x)
            used[line[x]] = true;
    }
    return used;
}

Used usedBits(const QImage& image)
{
    Used used = {};
    const int whole = image.width() / 8;
    const int rest = image.width() % 8;
    const auto restMask = static_cast<uchar>(0xff00 >> rest);
    for (int y = 0; y < image.height() && !(used[0] && used[1]); ++y) {
        const uchar* line = image.constScanLine(y);
        const auto look = [&used](uchar byte, uchar mask) {
            used[1] = used[1] || (byte & mask) != 0;
            used[0] = used[0] || (byte & mask) != mask;
        };
        for (int i = 0; i < whole; ++i)
            look(line[i], 0xff);
        if (rest != 0)
            look(line[whole], restMask);
    }
    return used;
}

/// Entries that hold the same colour count once; an index beyond the table is black.
int countEntries(const Used& used, const QList<QRgb>& table)
{
    std::vector<QRgb> colors;
    for (size_t i = 0; i < used.size(); ++i) {
        if (used[i])
            colors.push_back(table.value(static_cast<qsizetype>(i)) & colorMask);
    }
    std::sort(colors.begin(), colors.end());
    return static_cast<int>(std::unique(colors.begin(), colors.end()) - colors.begin());
}

} // namespace

int countColors(const QImage& image)
{
    const QImage plain = normalized(image);
    switch (plain.format()) {
    case QImage::Format_Invalid:
        return 0;
    case QImage::Format_Mono:
        return countEntries(usedBits(plain), plain.colorTable());
    case QImage::Format_Indexed8:
        return countEntries(usedBytes(plain), plain.colorTable());
    case QImage::Format_Grayscale8: {
        const Used used = usedBytes(plain);
        return static_cast<int>(std::count(used.begin(), used.end(), true));
    }
    default:
        return countDeep(plain);
    }
}

} // namespace quorvia::engine
