#include "engine/codecs/avif/HeifItems.h"

#include "engine/codecs/avif/HeifBoxes.h"
#include "engine/codecs/avif/HeifFields.h"
#include "engine/codecs/CodecErrors.h"

#include <QSet>

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr qsizetype versionAndFlags = 4;
constexpr quint64 mostItems = 20000;          // as many as libheif takes
constexpr quint64 mostExtents = 32;           // of an item, the same
constexpr qsizetype mostReferences = 1 << 18; // four times the tiles of the largest grid

Error tooMany(const char* what)
{
    return damaged(QStringLiteral("more %1 than any picture has").arg(QLatin1String(what)));
}

/// The boxes that tell of items; null where there is none.
struct Boxes
{
    QByteArray primary;
    QByteArray types;
    QByteArray places;
    QByteArray references;
    QByteArray data;
    QByteArray properties;
    QList<QByteArray> associations;
};

/// Keeps the first box of a kind in `kept`; false for a second one.
bool keep(QByteArray& kept, const QByteArray& content)
{
    const bool first = kept.isNull();
    kept = content;
    return first;
}

/// Finds the boxes in `file`, each once.
Result<Boxes> boxesOf(const QByteArray& file)
{
    Boxes boxes;
    QByteArray meta;
    QByteArray property;
    bool once = true;
    bool few = forEachHeifBox(file, 0, [&](const QByteArray& name, const QByteArray& content) {
        if (name == "meta")
            once = keep(meta, content) && once;
    });
    few = forEachHeifBox(meta, versionAndFlags,
                         [&](const QByteArray& name, const QByteArray& content) {
                             if (name == "pitm")
                                 once = keep(boxes.primary, content) && once;
                             else if (name == "iinf")
                                 once = keep(boxes.types, content) && once;
                             else if (name == "iloc")
                                 once = keep(boxes.places, content) && once;
                             else if (name == "iref")
                                 once = keep(boxes.references, content) && once;
                             else if (name == "idat")
                                 once = keep(boxes.data, content) && once;
                             else if (name == "iprp")
                                 once = keep(property, content) && once;
                         }) &&
          few;
    few = forEachHeifBox(property, 0,
                         [&](const QByteArray& name, const QByteArray& content) {
                             if (name == "ipco")
                                 once = keep(boxes.properties, content) && once;
                             else if (name == "ipma")
                                 boxes.associations.append(content);
                         }) &&
          few;
    if (!once)
        return damaged(QStringLiteral("two boxes of a kind of which one tells"));
    if (!few)
        return tooMany("boxes");
    return boxes;
}

void readPrimary(const QByteArray& box, HeifItems& items)
{
    if (box.isEmpty())
        return;
    HeifFields fields(box);
    const quint64 version = fields.take(1);
    fields.take(3);
    items.primary = quint32(fields.take(version == 0 ? 2 : 4));
}

Status readTypes(const QByteArray& box, HeifItems& items)
{
    const int countBytes = box.isEmpty() || box[0] == 0 ? 2 : 4;
    bool once = true;
    const auto each = [&](const QByteArray& name, const QByteArray& content) {
        if (name != "infe")
            return;
        HeifFields fields(content);
        const quint64 version = fields.take(1);
        fields.take(3);
        const auto id = quint32(fields.take(version == 3 ? 4 : 2));
        fields.take(2);
        once = once && !items.items.contains(id);
        items.items[id].type = version == 2 || version == 3 ? fields.bytes(4) : QByteArray();
    };
    if (!forEachHeifBox(box, versionAndFlags + countBytes, each))
        return tooMany("items");
    if (!once)
        return damaged(QStringLiteral("two types of one item"));
    return ok();
}

/// How wide the numbers of the box of places are, bytes.
struct Widths
{
    int offset;
    int length;
    int base;
    int index;

    bool areUsual() const
    {
        const auto usual = [](int bytes) { return bytes == 0 || bytes == 4 || bytes == 8; };
        return usual(offset) && usual(length) && usual(base) && usual(index);
    }
};

/// Reads where one item is, of which the number is read; null stands for an item that nobody knows.
Status readPlace(HeifFields& fields, quint64 version, const Widths& widths, HeifItem* item)
{
    constexpr quint64 inFile = 0;
    constexpr quint64 inData = 1;
    const quint64 method = version > 0 ? fields.take(2) & 15 : inFile;
    fields.take(2);
    const quint64 base = fields.take(widths.base);
    const quint64 extents = fields.take(2);
    if (extents > mostExtents)
        return tooMany("pieces of an item");
    const bool empty = widths.index + widths.offset + widths.length == 0;
    for (quint64 i = 0; i < extents && !fields.isAtEnd() && !(empty && i > 0); ++i) {
        fields.take(widths.index);
        const quint64 offset = fields.take(widths.offset);
        const quint64 length = fields.take(widths.length);
        if (offset > std::numeric_limits<quint64>::max() - base)
            return damaged(QStringLiteral("an item beyond any file"));
        if (item && (method == inFile || method == inData))
            item->places.append(HeifPlace{method == inData, base + offset, length});
    }
    return ok();
}

Status readPlaces(const QByteArray& box, HeifItems& items)
{
    HeifFields fields(box);
    const quint64 version = fields.take(1);
    fields.take(3);
    const quint64 told = fields.take(2);
    const Widths widths = {int(told >> 12 & 15), int(told >> 8 & 15), int(told >> 4 & 15),
                           version > 0 ? int(told & 15) : 0};
    // Readers do not agree whether version 1 has an index.
    if (!widths.areUsual() || version > 2 || (version == 1 && widths.index > 0))
        return Error{ErrorKind::Unsupported, QStringLiteral("places of items in numbers of odd widths")};
    const int idBytes = version < 2 ? 2 : 4;
    const quint64 count = fields.take(idBytes);
    if (count > mostItems)
        return tooMany("items");
    QSet<quint32> seen;
    for (quint64 i = 0; i < count && !fields.isAtEnd(); ++i) {
        const auto id = quint32(fields.take(idBytes));
        if (seen.contains(id))
            return damaged(QStringLiteral("two places of one item"));
        seen.insert(id);
        const auto item = items.items.find(id);
        Status done = readPlace(fields, version, widths, item != items.items.end() ? &item.value() : nullptr);
        if (!done)
            return done;
    }
    return ok();
}

Status readReferences(const QByteArray& box, HeifItems& items)
{
    const int idBytes = box.isEmpty() || box[0] == 0 ? 2 : 4;
    qsizetype references = 0;
    bool once = true;
    const auto each = [&](const QByteArray& name, const QByteArray& content) {
        const bool isPart = name == "dimg";
        if (!isPart && name != "auxl")
            return;
        HeifFields fields(content);
        const auto from = quint32(fields.take(idBytes));
        const auto whole = items.items.find(from);
        once = once && !(isPart && whole != items.items.end() && !whole->parts.isEmpty());
        const quint64 count = fields.take(2);
        for (quint64 i = 0; i < count && !fields.isAtEnd() && references <= mostReferences; ++i) {
            const auto to = quint32(fields.take(idBytes));
            const auto target = items.items.find(to);
            ++references;
            if (isPart && whole != items.items.end())
                whole->parts.append(to);
            else if (!isPart && target != items.items.end())
                target->auxiliaries.append(from);
        }
    };
    if (!forEachHeifBox(box, versionAndFlags, each) || references > mostReferences)
        return tooMany("references");
    if (!once)
        return damaged(QStringLiteral("two lists of an item's parts"));
    return ok();
}

Status readAssociations(const QByteArray& box, HeifItems& items)
{
    HeifFields fields(box);
    const int idBytes = fields.take(1) == 0 ? 2 : 4;
    const bool wide = (fields.take(3) & 1) != 0;
    const quint64 count = fields.take(4);
    if (count > mostItems)
        return tooMany("items");
    for (quint64 i = 0; i < count && !fields.isAtEnd(); ++i) {
        const auto item = items.items.find(quint32(fields.take(idBytes)));
        if (item != items.items.end() && !item->properties.isEmpty())
            return damaged(QStringLiteral("two lists of an item's properties"));
        for (quint64 left = fields.take(1); left > 0 && !fields.isAtEnd(); --left) {
            const quint64 index = wide ? fields.take(2) & 0x7FFF : fields.take(1) & 0x7F;
            if (item != items.items.end() && index > 0 && index <= quint64(items.properties.size()))
                item->properties.append(int(index) - 1);
        }
    }
    return ok();
}

} // namespace

Result<HeifItems> heifItems(const QByteArray& file)
{
    const Result<Boxes> boxes = boxesOf(file);
    if (!boxes)
        return boxes.error();
    HeifItems items;
    items.data = boxes->data;
    readPrimary(boxes->primary, items);
    Status done = readTypes(boxes->types, items);
    if (done)
        done = readPlaces(boxes->places, items);
    if (done)
        done = readReferences(boxes->references, items);
    const bool few =
        forEachHeifBox(boxes->properties, 0, [&items](const QByteArray& name, const QByteArray& content) {
            items.properties.append(HeifProperty{name, content});
        });
    if (done && !few)
        done = tooMany("properties");
    for (qsizetype i = 0; i < boxes->associations.size() && done; ++i)
        done = readAssociations(boxes->associations[i], items);
    if (!done)
        return done.error();
    return items;
}

HeifPieces heifPieces(const QByteArray& file, const HeifItems& items, const HeifItem& item)
{
    HeifPieces pieces;
    for (const HeifPlace& place : item.places) {
        const QByteArray& bytes = place.inData ? items.data : file;
        if (place.offset >= quint64(bytes.size()))
            break;
        const quint64 rest = quint64(bytes.size()) - place.offset;
        const quint64 length = place.length > 0 ? std::min(place.length, rest) : rest;
        pieces.append(QByteArray::fromRawData(bytes.constData() + place.offset, qsizetype(length)));
    }
    return pieces;
}

qint64 wantedHeifLength(const QByteArray& file, const HeifItems& items)
{
    const auto promised = quint64(promisedHeifLength(file));
    quint64 end = quint64(file.size());
    for (const HeifItem& item : items.items) {
        for (const HeifPlace& place : item.places) {
            if (!place.inData)
                end = std::max(end, std::min(place.offset, promised) + std::min(place.length, promised));
        }
    }
    return qint64(std::min(end, promised));
}

} // namespace quorvia::engine
