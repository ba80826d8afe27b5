// The items of an AVIF or HEIF file: what they are, where their bytes lie, what they are made of and what is
// said of them. Cheap: reads the boxes in front, none of the pictures' bytes.
#pragma once

#include "engine/codecs/avif/HeifPieces.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <optional>

namespace quorvia::engine {

struct HeifProperty
{
    QByteArray name;
    QByteArray content;
};

/// A part of an item's bytes.
struct HeifPlace
{
    bool inData = false; ///< in the box of item data, not in the file
    quint64 offset = 0;
    quint64 length = 0; ///< 0: up to the end
};

struct HeifItem
{
    QByteArray type; ///< empty where the file keeps none
    QList<HeifPlace> places;
    QList<int> properties;      ///< in HeifItems::properties
    QList<quint32> parts;       ///< the items that it is put together from
    QList<quint32> auxiliaries; ///< the items that give it alpha, depth and the like
};

/// Its byte arrays lie in the file that they were read from, which must stay.
struct HeifItems
{
    std::optional<quint32> primary;
    QHash<quint32, HeifItem> items;
    QList<HeifProperty> properties;
    QByteArray data; ///< the box of item data
};

/// The items of `file` (ISO/IEC 14496-12, 8.11; 23008-12, 9.3). Whatever ends early ends the items without an
/// error. Damaged when the boxes can be read in two ways: two of a kind where one must be, an item told of
/// twice; or when they are more than any picture needs. Unsupported for widths of numbers that nobody writes.
Result<HeifItems> heifItems(const QByteArray& file);

/// The bytes of `item`, as far as `file` has them.
HeifPieces heifPieces(const QByteArray& file, const HeifItems& items, const HeifItem& item);

/// The length in bytes that `file` would have with all bytes of its `items` in it, as far as its boxes
/// promise them; no less than it has.
qint64 wantedHeifLength(const QByteArray& file, const HeifItems& items);

} // namespace quorvia::engine
