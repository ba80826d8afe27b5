#include "engine/codecs/tiff/TiffPages.h"

#include <QtEndian>

#include <array>
#include <optional>
#include <unordered_set>

namespace quorvia::engine {

namespace {

/// Reads the whole numbers of one file.
class Numbers
{
  public:
    explicit Numbers(const ByteSource& source) : m_source(source)
    {
        std::array<char, 2> mark = {};
        source.read(0, mark.data(), 2);
        m_big = mark[0] == 'M';
    }

    template <class T>
    std::optional<T> at(quint64 offset) const
    {
        std::array<uchar, sizeof(T)> bytes;
        const auto size = quint64(m_source.size());
        if (offset > size || size - offset < sizeof(T) ||
            m_source.read(qint64(offset), bytes.data(), sizeof(T)) != qint64(sizeof(T)))
            return std::nullopt;
        return m_big ? qFromBigEndian<T>(bytes.data()) : qFromLittleEndian<T>(bytes.data());
    }

  private:
    const ByteSource& m_source;
    bool m_big;
};

/// How the two kinds of TIFF store their directories.
struct Kind
{
    bool wide; ///< BigTIFF
    quint64 firstAt() const { return wide ? 8 : 4; }
    quint64 countBytes() const { return wide ? 8 : 2; }
    quint64 entryBytes() const { return wide ? 20 : 12; }
};

std::optional<quint64> offsetAt(const Numbers& numbers, Kind kind, quint64 at)
{
    if (kind.wide)
        return numbers.at<quint64>(at);
    return numbers.at<quint32>(at);
}

std::optional<quint64> countAt(const Numbers& numbers, Kind kind, quint64 at)
{
    if (kind.wide)
        return numbers.at<quint64>(at);
    return numbers.at<quint16>(at);
}

} // namespace

std::vector<quint64> tiffPageOffsets(const ByteSource& source)
{
    const Numbers numbers(source);
    constexpr quint16 bigTiff = 43;
    const Kind kind = {numbers.at<quint16>(2).value_or(0) == bigTiff};
    std::vector<quint64> pages;
    std::unordered_set<quint64> seen;
    std::optional<quint64> next = offsetAt(numbers, kind, kind.firstAt());
    while (next && *next != 0 && int(pages.size()) < mostTiffPages && seen.insert(*next).second) {
        const std::optional<quint64> entries = countAt(numbers, kind, *next);
        if (!entries || *entries == 0)
            break;
        pages.push_back(*next);
        constexpr quint64 mostEntries = 65535; // what a classic directory can hold; more is damage
        if (*entries > mostEntries)
            break;
        next = offsetAt(numbers, kind, *next + kind.countBytes() + *entries * kind.entryBytes());
    }
    return pages;
}

} // namespace quorvia::engine
