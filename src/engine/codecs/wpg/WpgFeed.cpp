#include "engine/codecs/wpg/WpgFeed.h"

#include "engine/codecs/wpg/WpgBitmap.h"

#include <QtEndian>

namespace quorvia::engine {

namespace {

// A real drawing stays far below these. libwpg takes about half a kilobyte for each point.
constexpr qint64 mostBytes = 16 * 1024 * 1024;
constexpr qint64 mostPointBytes = 4 * 1024 * 1024; ///< in all lists of points
constexpr qint64 mostCompoundBytes = 512 * 1024;   ///< in the lists that make up one compound shape
constexpr qint64 mostTextBytes = 64 * 1024;        ///< in one text
constexpr int mostGroups = 100'000;
constexpr int ignoredType = 0x0A; // a comment
constexpr int compound = 0x1A;

void appendNumber(QByteArray& out, quint32 value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.append(char(value >> (8 * i) & 0xFF));
}

void appendVariable(QByteArray& out, quint32 value)
{
    if (value < 0xFF) {
        appendNumber(out, value, 1);
        return;
    }
    out.append('\xFF');
    if (value >= 0x8000)
        appendNumber(out, value >> 16 | 0x8000, 2);
    appendNumber(out, value, 2);
}

void appendRecord(QByteArray& out, int type, int subRecords, const QByteArray& content)
{
    out.append('\0'); // the class, which nobody looks at
    out.append(char(type));
    appendVariable(out, quint32(subRecords));
    appendVariable(out, quint32(content.size()));
    out.append(content);
}

/// A bitmap of one pixel whose colour is the number `index`.
QByteArray onePixel(size_t index)
{
    constexpr quint32 rgb = 8;
    constexpr quint32 plain = 0;
    QByteArray content;
    appendNumber(content, 1, 2);
    appendNumber(content, 1, 2);
    appendNumber(content, rgb, 1);
    appendNumber(content, plain, 1);
    for (const int shift : {16, 8, 0})
        appendNumber(content, quint32(index >> shift), 1);
    return content;
}

/// Whether the record holds all colours that its gradient tells: libwpg reads on behind its end.
bool holdsItsColors(const WpgRecord& record, const QByteArray& content)
{
    WpgNumbers in(content);
    const bool gradient = in.u8() != 0;
    const qint64 count = in.u16();
    const qint64 colorBytes = record.type == wpg2::deepBrushForeColor ? 8 : 4;
    return !gradient || (count > 0 && in.left() >= count * (colorBytes + 2) - 2);
}

class Copier
{
  public:
    Copier(const WpgFile& file, const ByteSource& source) : m_file(file), m_source(source) {}

    WpgFeed copied()
    {
        m_feed.bytes = QByteArray("\xFFWPC\x10\0\0\0\1\x16\2\0\0\0\0\0", 16);
        for (size_t i = 0; i < m_file.records.size(); ++i) {
            append(i);
            if (m_feed.bytes.size() > mostBytes)
                return {};
        }
        appendRecord(m_feed.bytes, wpg2::end, 0, {});
        return m_feed;
    }

  private:
    void append(size_t index)
    {
        const WpgRecord& record = m_file.records[index];
        // What is left out leaves a comment behind: groups count their records.
        const int subRecords = record.subRecords > 0 && m_groups++ < mostGroups ? record.subRecords : 0;
        if (m_file.isBitmap(record) && m_feed.bitmaps.size() < 0xFFFFFF) {
            appendRecord(m_feed.bytes, wpg2::bitmapData, subRecords, onePixel(m_feed.bitmaps.size()));
            m_feed.bitmaps.push_back(index);
            return;
        }
        const bool wanted = isWanted(record);
        const QByteArray content = wanted ? m_source.bytes(record.offset, record.length) : QByteArray();
        const bool isBrush = record.type == wpg2::brushForeColor || record.type == wpg2::deepBrushForeColor;
        const bool usable = wanted && (!isBrush || holdsItsColors(record, content));
        m_feed.partial = m_feed.partial || (!usable && !m_file.isColorMap(record));
        appendRecord(m_feed.bytes, usable ? record.type : ignoredType, subRecords,
                     usable ? content : QByteArray());
    }

    /// Counts what the record costs; false when it is not to be copied.
    bool isWanted(const WpgRecord& record)
    {
        if (m_file.isColorMap(record)) // says nothing but to bitmaps
            return false;
        if (record.length > mostBytes)
            return false;
        if (record.type == wpg2::textData)
            return record.length <= mostTextBytes;
        if (record.type == compound)
            m_compoundBytes = 0;
        if (record.type >= wpg2::polyline && record.type < wpg2::polyline + 3) {
            m_pointBytes += record.length;
            m_compoundBytes += record.length;
            return m_pointBytes <= mostPointBytes && m_compoundBytes <= mostCompoundBytes;
        }
        return true;
    }

    const WpgFile& m_file;
    const ByteSource& m_source;
    WpgFeed m_feed;
    qint64 m_pointBytes = 0;
    qint64 m_compoundBytes = 0;
    int m_groups = 0;
};

} // namespace

WpgFeed wpgFeed(const WpgFile& file, const ByteSource& source)
{
    return Copier(file, source).copied();
}

QImage feedBitmap(const WpgFile& file, const ByteSource& source, const WpgFeed& feed, int index,
                  WpgPalettes& palettes, WpgCanvas& canvas)
{
    if (index < 0 || size_t(index) >= feed.bitmaps.size())
        return {};
    const size_t record = feed.bitmaps[size_t(index)];
    const Result<WpgBitmap> bitmap = readWpgBitmap(source, file, record);
    if (!bitmap || !canvas.afford(double(bitmap->stored.width()) * bitmap->stored.height()))
        return {};
    const double before = palettes.cost();
    const WpgPalette& palette = palettes.at(file, record, source);
    canvas.spend(palettes.cost() - before);
    if (canvas.stopped())
        return {};
    const auto picture = decodeWpgBitmap(source, *bitmap, palette, canvas.cancel());
    return picture ? picture->image : QImage();
}

} // namespace quorvia::engine
