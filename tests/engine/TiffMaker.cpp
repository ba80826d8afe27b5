#include "TiffMaker.h"

#include <QtEndian>

#include <numeric>

namespace quorvia::test {

namespace {

constexpr int stripOffsets = 273;
constexpr int stripCounts = 279;
constexpr int tileOffsets = 324;
constexpr int tileCounts = 325;
constexpr int orientationTag = 274;

int widthOf(int type)
{
    switch (type) {
    case 3:
        return 2;
    case 7:
        return 1;
    default:
        return 4;
    }
}

/// Reads the numbers of a classic file.
struct Reader
{
    const QByteArray& bytes;
    bool big;

    quint32 at(qint64 offset, int width) const
    {
        const char* place = bytes.constData() + offset;
        if (width == 1)
            return uchar(*place);
        if (width == 2)
            return big ? qFromBigEndian<quint16>(place) : qFromLittleEndian<quint16>(place);
        return big ? qFromBigEndian<quint32>(place) : qFromLittleEndian<quint32>(place);
    }
};

QByteArray inOrder(quint32 value, int width, bool big)
{
    QByteArray bytes(4, '\0');
    if (width == 1)
        bytes[0] = char(value);
    else if (width == 2 && big)
        qToBigEndian(quint16(value), bytes.data());
    else if (big)
        qToBigEndian(value, bytes.data());
    else
        qToLittleEndian(value, bytes.data());
    return bytes.left(width);
}

} // namespace

void TiffMaker::page(int width, int height, int bits, int samples, int photometric, const QByteArray& pixels)
{
    set(256, 4, {quint32(width)});
    set(257, 4, {quint32(height)});
    set(258, 3, QList<quint32>(samples, quint32(bits)));
    set(259, 3, {1});
    set(262, 3, {quint32(photometric)});
    set(277, 3, {quint32(samples)});
    set(278, 4, {quint32(height)});
    strips = {pixels};
}

void TiffMaker::set(int tag, int type, const QList<quint32>& values)
{
    m_fields[tag] = {type, values};
}

void TiffMaker::setShorts(int tag, const QByteArray& bytes)
{
    QList<quint32> values;
    for (qsizetype at = 0; at + 1 < bytes.size(); at += 2)
        values.append(qFromLittleEndian<quint16>(bytes.constData() + at));
    set(tag, 3, values);
}

void TiffMaker::tile(int width, int height)
{
    m_tiled = true;
    m_fields.remove(278);
    set(322, 4, {quint32(width)});
    set(323, 4, {quint32(height)});
}

QByteArray TiffMaker::number(quint32 value, int width) const
{
    return inOrder(value, width, bigEndian);
}

QByteArray TiffMaker::bytes() const
{
    QMap<int, Field> fields = m_fields;
    QList<quint32> counts;
    for (const QByteArray& strip : strips)
        counts.append(quint32(strip.size()));
    const int offsetTag = m_tiled ? tileOffsets : stripOffsets;
    const int countTag = m_tiled ? tileCounts : stripCounts;
    if (!fields.contains(countTag))
        fields[countTag] = {4, counts};
    const bool ownOffsets = !fields.contains(offsetTag);
    if (ownOffsets)
        fields[offsetTag] = {4, counts}; // the right length; the values follow

    qint64 valuesAt = 8 + 2 + 12 * fields.size() + 4;
    qint64 pixelsAt = valuesAt;
    for (const Field& field : fields) {
        const qint64 length = field.values.size() * widthOf(field.type);
        pixelsAt += length > 4 ? length : 0;
    }
    if (ownOffsets) {
        qint64 at = pixelsAt;
        for (qsizetype i = 0; i < strips.size(); ++i) {
            fields[offsetTag].values[i] = quint32(at);
            at += strips[i].size();
        }
    }
    QByteArray directory = number(quint32(fields.size()), 2);
    QByteArray values;
    for (auto field = fields.constBegin(); field != fields.constEnd(); ++field) {
        QByteArray content;
        for (const quint32 value : field->values)
            content += number(value, widthOf(field->type));
        directory += number(quint32(field.key()), 2) + number(quint32(field->type), 2);
        directory += number(quint32(field->values.size()), 4);
        if (content.size() > 4) {
            directory += number(quint32(valuesAt + values.size()), 4);
            values += content;
        } else {
            directory += content.leftJustified(4, '\0');
        }
    }
    directory += number(next, 4);
    QByteArray out = bigEndian ? QByteArray("MM\0*", 4) : QByteArray("II*\0", 4);
    out += number(8, 4) + directory + values;
    for (const QByteArray& strip : strips)
        out += strip;
    return out;
}

QByteArray withOrientation(const QByteArray& tiff, int orientation)
{
    QByteArray result = tiff;
    const Reader reader = {tiff, false};
    const qint64 directory = reader.at(4, 4);
    for (quint32 i = 0; i < reader.at(directory, 2); ++i) {
        const qint64 entry = directory + 2 + 12 * i;
        if (reader.at(entry, 2) == orientationTag)
            result[entry + 8] = char(orientation);
    }
    return result;
}

QByteArray directoryFirst(const QByteArray& tiff)
{
    const Reader reader = {tiff, tiff.startsWith('M')};
    if (reader.at(2, 2) != 42)
        return tiff;
    constexpr int widths[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
    const qint64 directory = reader.at(4, 4);
    const quint32 entries = reader.at(directory, 2);
    const qint64 valuesAt = 8 + 2 + 12 * qint64(entries) + 4;
    QByteArray fixed = tiff.mid(directory, 2 + 12 * entries) + QByteArray(4, '\0');
    QByteArray values;
    QByteArray pixels;
    qint64 pixelsAt = valuesAt;
    for (quint32 i = 0; i < entries; ++i) { // how long the values are, to know where the pixels begin
        const qint64 entry = directory + 2 + 12 * i;
        const qint64 length = qint64(reader.at(entry + 4, 4)) * widths[reader.at(entry + 2, 2)];
        pixelsAt += length > 4 ? length : 0;
    }
    QList<quint32> counts;
    for (quint32 i = 0; i < entries; ++i) {
        const qint64 entry = directory + 2 + 12 * i;
        const quint32 tag = reader.at(entry, 2);
        if (tag != stripCounts && tag != tileCounts)
            continue;
        const int width = widths[reader.at(entry + 2, 2)];
        const quint32 count = reader.at(entry + 4, 4);
        const qint64 at = width * count > 4 ? reader.at(entry + 8, 4) : entry + 8;
        for (quint32 n = 0; n < count; ++n)
            counts.append(reader.at(at + n * width, width));
    }
    for (quint32 i = 0; i < entries; ++i) {
        const qint64 entry = directory + 2 + 12 * i;
        const quint32 tag = reader.at(entry, 2);
        const int width = widths[reader.at(entry + 2, 2)];
        const quint32 count = reader.at(entry + 4, 4);
        const qint64 length = qint64(count) * width;
        const qint64 at = length > 4 ? reader.at(entry + 8, 4) : entry + 8;
        QByteArray content = tiff.mid(at, length);
        if (tag == stripOffsets || tag == tileOffsets) {
            content.clear();
            for (quint32 n = 0; n < count; ++n) {
                content += inOrder(quint32(pixelsAt + pixels.size()), width, reader.big);
                pixels += tiff.mid(reader.at(at + n * width, width), counts.value(n));
            }
        }
        const qint64 place = 2 + 12 * qint64(i) + 8;
        if (length > 4) {
            fixed.replace(place, 4, inOrder(quint32(valuesAt + values.size()), 4, reader.big));
            values += content;
        } else {
            fixed.replace(place, length, content);
        }
    }
    return tiff.left(4) + inOrder(8, 4, reader.big) + fixed + values + pixels;
}

} // namespace quorvia::test
