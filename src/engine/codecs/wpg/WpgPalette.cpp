#include "engine/codecs/wpg/WpgPalette.h"

namespace quorvia::engine {

namespace {

/// A digital-analogue converter's six bits as eight.
int fromSixBits(int value)
{
    return value << 2 | value >> 4;
}

QRgb egaColor(int index)
{
    constexpr int brown = 6; // the one colour that leaves the rule: half the green
    const int light = index & 8 ? 0x55 : 0;
    const int green = index == brown ? 0x55 : (index & 2 ? 0xAA : 0) + light;
    return qRgb((index & 4 ? 0xAA : 0) + light, green, (index & 1 ? 0xAA : 0) + light);
}

/// How far a channel is up at `step` of the circle of 24 hues: 0 to 4.
int hueLevel(int step)
{
    constexpr std::array<int, 24> levels = {0, 1, 2, 3, 4, 4, 4, 4, 4, 4, 4, 4,
                                            4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0, 0};
    return levels[size_t(step % 24)];
}

} // namespace

WpgPalette::WpgPalette()
{
    constexpr std::array<int, 16> greys = {0, 5, 8, 11, 14, 17, 20, 24, 28, 32, 36, 40, 45, 50, 56, 63};
    // Nine circles of hues, from strong and bright to pale and dark: the levels of a channel in six bits.
    constexpr std::array<std::array<int, 5>, 9> circles = {{{0, 16, 31, 47, 63},
                                                            {31, 39, 47, 55, 63},
                                                            {45, 49, 54, 58, 63},
                                                            {0, 7, 14, 21, 28},
                                                            {14, 17, 21, 24, 28},
                                                            {20, 22, 24, 26, 28},
                                                            {0, 4, 8, 12, 16},
                                                            {8, 10, 12, 14, 16},
                                                            {11, 12, 13, 15, 16}}};
    m_colors.fill(qRgb(0, 0, 0));
    for (int i = 0; i < 16; ++i) {
        m_colors[size_t(i)] = egaColor(i);
        const int grey = fromSixBits(greys[size_t(i)]);
        m_colors[16 + size_t(i)] = qRgb(grey, grey, grey);
    }
    size_t at = 32;
    for (const auto& circle : circles) {
        const auto channel = [&](int step) { return fromSixBits(circle[size_t(hueLevel(step))]); };
        for (int hue = 0; hue < 24; ++hue) // from blue over red and green
            m_colors[at++] = qRgb(channel(hue), channel(hue + 16), channel(hue + 8));
    }
}

void WpgPalette::read(const WpgFile& file, const WpgRecord& record, const ByteSource& source)
{
    constexpr qint64 longest = 4 + 256 * 8;
    WpgNumbers in(source.bytes(record.offset, std::min(record.length, longest)));
    const bool deep = file.version == 2 && record.type == wpg2::deepColorMap;
    const auto channel = [&] { return deep ? in.u16() >> 8 : in.u8(); };
    const int sampleBytes = deep ? 2 : 1;
    const int entryBytes = (file.version == 1 ? 3 : 4) * sampleBytes; // version 2 adds the transparency
    const int first = in.u16();
    m_named = in.u16();
    for (int i = 0; i < m_named && first + i < 256 && in.left() >= entryBytes; ++i) {
        const int red = channel();
        const int green = channel();
        m_colors[size_t(first) + size_t(i)] = qRgb(red, green, channel());
        in.skip(entryBytes - 3 * sampleBytes);
    }
}

QList<QRgb> WpgPalette::colors(int bits) const
{
    if (bits == 1 && m_named != 2)
        return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    return QList<QRgb>(m_colors.begin(), m_colors.begin() + (qsizetype(1) << bits));
}

const WpgPalette& WpgPalettes::at(const WpgFile& file, size_t index, const ByteSource& source)
{
    if (index < m_next) {
        m_palette = WpgPalette();
        m_next = 0;
    }
    constexpr double recordCost = 2;
    constexpr double mapCost = 2000;
    for (; m_next < index; ++m_next) {
        m_cost += recordCost;
        const WpgRecord& record = file.records[m_next];
        if (!file.isColorMap(record))
            continue;
        m_palette.read(file, record, source);
        m_cost += mapCost;
    }
    return m_palette;
}

} // namespace quorvia::engine
