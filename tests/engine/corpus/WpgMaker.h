// Puts WordPerfect graphics together byte by byte, for there is no common program that writes them. Shares
// nothing with the codec.
#pragma once

#include <QByteArray>
#include <QList>

#include <initializer_list>

namespace quorvia::test::wpg {

inline QByteArray words(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values) {
        bytes += char(value & 255);
        bytes += char(value >> 8 & 255);
    }
    return bytes;
}

inline QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray out;
    for (const int value : values)
        out += char(value);
    return out;
}

/// How a record's length is spelt, short forms allowing only short records.
enum class Length { Byte, Word, Long };

inline QByteArray lengthBytes(qsizetype length, Length form)
{
    if (form == Length::Byte && length < 255)
        return bytes({int(length)});
    if (form != Length::Long && length < 0x8000)
        return bytes({255}) + words({int(length)});
    return bytes({255}) + words({int(length >> 16) | 0x8000, int(length & 0xFFFF)});
}

inline QByteArray record1(int type, const QByteArray& content, Length form = Length::Byte)
{
    return bytes({type}) + lengthBytes(content.size(), form) + content;
}

inline QByteArray header(int version)
{
    return QByteArray("\xFFWPC") + words({16, 0}) + bytes({1, 0x16, version, 0}) + words({0, 0});
}

/// A file of version 1 that holds `records`, its page in units of 1/1200 inch.
inline QByteArray file1(const QByteArray& records, int width = 1200, int height = 1200)
{
    return header(1) + record1(0x0F, bytes({1, 0}) + words({width, height})) + records + record1(0x10, {});
}

/// Colours for `count` entries, no two alike; entry 0 and 1 are neither black nor white.
inline QByteArray colors(int count, int bytesPerEntry = 3)
{
    QByteArray out;
    for (int i = 0; i < count; ++i) {
        out += bytes({(i * 37 + 20) & 255, (i * 11 + 60) & 255, 255 - i});
        out += QByteArray(bytesPerEntry - 3, '\0');
    }
    return out;
}

inline QByteArray map1(int first, int count)
{
    return record1(0x0E, words({first, count}) + colors(count));
}

/// Rows of `rowBytes`, with equal neighbours here and there.
inline QByteArray pixelBytes(int rowBytes, int height)
{
    QByteArray out;
    quint32 noise = 7;
    for (int i = 0; i < rowBytes * height; ++i) {
        noise = noise * 1664525u + 1013904223u;
        const bool repeats = !out.isEmpty() && (noise >> 28) < 9;
        out += repeats ? out.back() : char(noise >> 20);
    }
    return out;
}

/// `rows` in literals of up to 127 bytes and runs of 2 or more.
inline QByteArray runs1(const QByteArray& rows, int rowBytes)
{
    QByteArray out;
    for (qsizetype start = 0; start < rows.size(); start += rowBytes) {
        const QByteArray row = rows.mid(start, rowBytes);
        for (qsizetype at = 0; at < row.size();) {
            qsizetype same = 1;
            while (at + same < row.size() && same < 127 && row[at + same] == row[at])
                ++same;
            if (same > 1) {
                out += bytes({0x80 | int(same)}) + row.mid(at, 1);
                at += same;
                continue;
            }
            qsizetype count = 1;
            while (at + count < row.size() && count < 127 && row[at + count] != row[at + count - 1])
                ++count;
            out += bytes({int(count)}) + row.mid(at, count);
            at += count;
        }
    }
    return out;
}

inline int rowBytes(int width, int bits)
{
    return (width * bits + 7) / 8;
}

inline QByteArray bitmap1(int width, int height, int bits, const QByteArray& codes,
                          Length form = Length::Byte)
{
    return record1(0x0B, words({width, height, bits, 75, 75}) + codes, form);
}

/// A bitmap with sample pixels.
inline QByteArray bitmap1(int width, int height, int bits)
{
    const int row = rowBytes(width, bits);
    return bitmap1(width, height, bits, runs1(pixelBytes(row, height), row));
}

inline QByteArray placedBitmap1(int turn, int width, int height, int bits, std::initializer_list<int> place)
{
    const int row = rowBytes(width, bits);
    return record1(0x14, words({turn}) + words(place) + words({width, height, bits, 75, 75}) +
                             runs1(pixelBytes(row, height), row));
}

inline QByteArray record2(int type, const QByteArray& content, int subRecords = 0)
{
    return bytes({0, type, subRecords}) + lengthBytes(content.size(), Length::Byte) + content;
}

/// A file of version 2 that holds `records`, its page in units of 1/1200 inch.
inline QByteArray file2(const QByteArray& records, int width = 1200, int height = 1200)
{
    const QByteArray corners = words({0, 0, width, height});
    return header(2) + record2(0x01, words({1200, 1200}) + bytes({0}) + corners + corners) + records +
           record2(0x02, {});
}

inline QByteArray map2(int count)
{
    return record2(0x0C, words({0, count}) + colors(count, 4));
}

/// The frame of a bitmap with the flags and numbers that make up its shape.
inline QByteArray frame2(const QByteArray& shape, std::initializer_list<int> corners)
{
    return record2(0x1B, shape + words(corners) + words({75, 75}), 1);
}

inline QByteArray bitmap2(int width, int height, int format, bool runs, const QByteArray& codes)
{
    return record2(0x0E, words({width, height}) + bytes({format, runs ? 1 : 0}) + codes);
}

/// Attributes and shapes of version 1: a filled rectangle, a triangle, an ellipse and a line on a page of
/// 2400 x 1200 units.
inline QByteArray drawing1()
{
    const auto fill = [](int color) { return record1(0x01, bytes({1, color})); };
    const auto line = [](int style, int color, int width) {
        return record1(0x02, bytes({style, color}) + words({width}));
    };
    return file1(line(0, 0, 0) + fill(4) + record1(0x07, words({100, 100, 500, 400})) + fill(2) +
                     record1(0x08, words({3, 800, 100, 1400, 100, 1100, 700})) + fill(14) +
                     record1(0x09, words({1900, 600, 300, 200, 0, 0, 0, 0})) + line(1, 1, 48) +
                     record1(0x05, words({0, 1000, 2400, 1000})),
                 2400, 1200);
}

/// The same shapes in version 2, in other colours.
inline QByteArray drawing2()
{
    const auto fill = [](int red, int green, int blue) {
        return record2(0x31, bytes({0, red, green, blue, 0}));
    };
    constexpr int filled = 0x6000;
    constexpr int framed = 0x8000;
    return file2(fill(200, 0, 0) + record2(0x18, words({filled, 100, 100, 600, 500, 0, 0})) +
                     fill(0, 200, 0) + record2(0x15, words({filled, 3, 800, 100, 1400, 100, 1100, 700})) +
                     fill(250, 250, 0) + record2(0x19, words({filled, 1900, 600, 300, 200, 300, 0, 300, 0})) +
                     record2(0x26, bytes({0, 0, 200, 0})) + record2(0x2B, words({48, 48})) +
                     record2(0x15, words({framed, 2, 0, 1000, 2400, 1000})),
                 2400, 1200);
}

} // namespace quorvia::test::wpg
