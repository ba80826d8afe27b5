// What stands before the records of a metafile, and the size in pixels that follows from it. Cheap: the
// header, then a pass over the heads of the records where there is no placeable header.
#pragma once

#include "engine/codecs/wmf/WmfRecords.h"
#include "engine/Result.h"

#include <QRect>
#include <QSize>
#include <QSizeF>

#include <memory>
#include <optional>

namespace quorvia::engine {

/// The box of a placeable metafile, which says where it lies and how large it is.
struct WmfPlacement
{
    QRect box;            ///< in units of the drawing, normalised; a mirrored one is turned round
    int unitsPerInch = 0; ///< above 0
};

struct WmfHeader
{
    std::optional<WmfPlacement> placement; ///< absent in plain metafiles and where the box is empty
    qint64 recordOffset = 0;               ///< of the first record, bytes from the start
};

/// True when `head` begins with a placeable or a plain metafile header.
bool isMetafile(const QByteArray& head);

/// Reads the headers. Damaged when they are cut short. An inch of 0 units counts as 96: a unit is a pixel.
/// Source: the published description of the placeable and of the plain header.
Result<WmfHeader> readWmfHeader(const ByteSource& source);

/// What the records say about the frame before anything is drawn.
struct WmfExtents
{
    std::optional<QSize> window;   ///< the first SetWindowExt, as stored: sides may be negative
    std::optional<QRect> viewport; ///< the first viewport, normalised
    bool fixedUnits = false;       ///< the map mode that counts has units of a fixed size
};

WmfExtents readWmfExtents(const std::shared_ptr<ByteSource>& source, qint64 recordOffset);

/// Pixels that a metafile of `fileBytes` bytes may have: enough for any drawing, and for the pixels of a
/// bitmap as long as the file.
qint64 mostWmfPixels(qint64 fileBytes);

/// The size in pixels of a placeable metafile at 96 dots per inch, rounded; brought down in proportion where
/// it is beyond `mostPixels` or the engine's longest side. At least 1 x 1.
QSize placedWmfSize(const WmfPlacement& placement, qint64 mostPixels);

/// The size in pixels of a drawing that only tells its extent in units: the units as pixels where the longer
/// side has up to 1024, else brought down in proportion to that. At least 1 x 1.
QSize plainWmfSize(QSizeF units);

} // namespace quorvia::engine
