// The way through the boxes to the streams of a file's items (ISO/IEC 14496-12, 23008-12).
#include "engine/codecs/avif/HeifCoded.h"

#include <QHash>
#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 longestBeginning = 64 * 1024; // of a stream

/// Numbers of a box, highest byte first; zeros behind its end.
class Fields
{
  public:
    explicit Fields(QByteArray bytes, qsizetype at = 0) : m_bytes(std::move(bytes)), m_at(at) {}

    quint64 take(int bytes)
    {
        quint64 value = 0;
        for (int i = 0; i < bytes; ++i, ++m_at)
            value = value << 8 | (m_at < m_bytes.size() ? uchar(m_bytes[m_at]) : 0U);
        return value;
    }
    QByteArray bytes(qsizetype count)
    {
        QByteArray taken = m_bytes.mid(std::min(m_at, m_bytes.size()), count);
        m_at += count;
        return taken;
    }
    bool isAtEnd() const { return m_at >= m_bytes.size(); }

  private:
    QByteArray m_bytes;
    qsizetype m_at;
};

/// Calls `each` with the name and the content of every box in `bytes` from `at` on. The content lies in
/// `bytes`.
template <class Each>
void forEachBox(const QByteArray& bytes, qsizetype at, const Each& each)
{
    while (at + 8 <= bytes.size()) {
        Fields head(bytes, at);
        quint64 length = head.take(4);
        const QByteArray name = head.bytes(4);
        qsizetype headLength = 8;
        if (length == 1) {
            length = head.take(8);
            headLength = 16;
        } else if (length == 0) {
            length = quint64(bytes.size() - at);
        }
        if (length < quint64(headLength))
            return;
        length = std::min(length, quint64(bytes.size() - at));
        each(name,
             QByteArray::fromRawData(bytes.constData() + at + headLength, qsizetype(length) - headLength));
        at += qsizetype(length);
    }
}

/// Where the beginning of an item's data is.
struct Place
{
    bool inData = false; ///< in the box of item data, not in the file
    quint64 offset = 0;
    quint64 length = 0; ///< 0: up to the end
};

struct Items
{
    QHash<quint64, QByteArray> types;
    QHash<quint64, QList<Place>> places;
    QByteArray data;    ///< lies in the file
    QList<QSize> sizes; ///< in the decoders' configurations
};

void readTypes(const QByteArray& box, Items& items)
{
    const int countBytes = box.isEmpty() || box[0] == 0 ? 2 : 4;
    forEachBox(box, 4 + countBytes, [&items](const QByteArray& name, const QByteArray& content) {
        if (name != "infe")
            return;
        Fields fields(content);
        const quint64 version = fields.take(1);
        fields.take(3);
        const quint64 id = fields.take(version == 3 ? 4 : 2);
        fields.take(2);
        items.types[id] = fields.bytes(4);
    });
}

void readPlaces(const QByteArray& box, Items& items)
{
    Fields fields(box);
    const quint64 version = fields.take(1);
    fields.take(3);
    const quint64 widths = fields.take(2);
    const int offsetBytes = int(widths >> 12 & 15);
    const int lengthBytes = int(widths >> 8 & 15);
    const int baseBytes = int(widths >> 4 & 15);
    const int indexBytes = version > 0 ? int(widths & 15) : 0;
    const int idBytes = version < 2 ? 2 : 4;
    for (quint64 count = fields.take(idBytes); count > 0 && !fields.isAtEnd(); --count) {
        const quint64 id = fields.take(idBytes);
        const bool inData = version > 0 && (fields.take(2) & 15) == 1;
        fields.take(2);
        const quint64 base = fields.take(baseBytes);
        for (quint64 extents = fields.take(2); extents > 0 && !fields.isAtEnd(); --extents) {
            fields.take(indexBytes);
            const quint64 offset = base + fields.take(offsetBytes);
            items.places[id].append(Place{inData, offset, fields.take(lengthBytes)});
        }
    }
}

/// The parameter sets in the configuration of an HEVC decoder.
void readParameterSets(const QByteArray& box, QList<QSize>& sizes)
{
    constexpr qsizetype arrays = 22;
    Fields fields(box, arrays);
    for (quint64 count = fields.take(1); count > 0 && !fields.isAtEnd(); --count) {
        fields.take(1);
        for (quint64 units = fields.take(2); units > 0 && !fields.isAtEnd(); --units)
            sizes.append(hevcUnitSize(fields.bytes(qsizetype(fields.take(2)))));
    }
}

void readConfigurations(const QByteArray& properties, QList<QSize>& sizes)
{
    constexpr qsizetype av1Units = 4;
    forEachBox(properties, 0, [&sizes](const QByteArray& name, const QByteArray& content) {
        if (name != "ipco")
            return;
        forEachBox(content, 0, [&sizes](const QByteArray& property, const QByteArray& bytes) {
            if (property == "av1C")
                sizes.append(av1StreamSize(bytes.mid(av1Units)));
            else if (property == "hvcC")
                readParameterSets(bytes, sizes);
        });
    });
}

Items itemsOf(const QByteArray& file)
{
    constexpr qsizetype versionAndFlags = 4;
    Items items;
    forEachBox(file, 0, [&items](const QByteArray& name, const QByteArray& meta) {
        if (name != "meta")
            return;
        forEachBox(meta, versionAndFlags, [&items](const QByteArray& inner, const QByteArray& content) {
            if (inner == "iinf")
                readTypes(content, items);
            else if (inner == "iloc")
                readPlaces(content, items);
            else if (inner == "idat")
                items.data = content;
            else if (inner == "iprp")
                readConfigurations(content, items.sizes);
        });
    });
    return items;
}

/// The beginning of what lies at `places`.
QByteArray beginning(const QByteArray& file, const Items& items, const QList<Place>& places)
{
    QByteArray stream;
    for (const Place& place : places) {
        const QByteArray& bytes = place.inData ? items.data : file;
        if (place.offset >= quint64(bytes.size()) || stream.size() >= longestBeginning)
            break;
        const quint64 wanted = place.length > 0 ? place.length : quint64(longestBeginning);
        stream += bytes.mid(qsizetype(place.offset), qsizetype(std::min(wanted, quint64(longestBeginning))));
    }
    return stream;
}

/// The parameter sets among the units of an HEVC stream, each behind its length in four bytes.
void readUnits(const QByteArray& stream, QList<QSize>& sizes)
{
    Fields fields(stream);
    while (!fields.isAtEnd())
        sizes.append(hevcUnitSize(fields.bytes(qsizetype(fields.take(4)))));
}

} // namespace

QList<QSize> heifCodedSizes(const QByteArray& file)
{
    const Items items = itemsOf(file);
    QList<QSize> sizes = items.sizes;
    for (auto item = items.places.cbegin(); item != items.places.cend(); ++item) {
        const QByteArray type = items.types.value(item.key());
        if (type == "av01")
            sizes.append(av1StreamSize(beginning(file, items, item.value())));
        else if (type == "hvc1" || type == "hev1")
            readUnits(beginning(file, items, item.value()), sizes);
    }
    sizes.removeIf([](QSize size) { return size.isEmpty(); });
    return sizes;
}

} // namespace quorvia::engine
