#include "engine/codecs/wmf/WmfHeader.h"

#include "engine/Limits.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvia::engine {

namespace {

constexpr int placeableBytes = 22;
constexpr int plainBytes = 18;
constexpr double screenDots = 96; // per inch
constexpr QByteArrayView placeableMark("\xD7\xCD\xC6\x9A", 4);

int wordAt(const QByteArray& bytes, qsizetype offset)
{
    return qFromLittleEndian<qint16>(bytes.constData() + offset);
}

bool isPlainHeader(const QByteArray& head, qsizetype offset)
{
    if (head.size() < offset + 6)
        return false;
    const int type = wordAt(head, offset);
    const int version = wordAt(head, offset + 4);
    return (type == 1 || type == 2) && wordAt(head, offset + 2) == plainBytes / 2 &&
           (version == 0x0100 || version == 0x0300);
}

std::optional<WmfPlacement> placementOf(const QByteArray& head)
{
    const int left = wordAt(head, 6);
    const int top = wordAt(head, 8);
    const int right = wordAt(head, 10);
    const int bottom = wordAt(head, 12);
    const int inch = wordAt(head, 14) & 0xFFFF;
    if (left == right || top == bottom)
        return std::nullopt;
    WmfPlacement placement;
    placement.box = QRect(QPoint(std::min(left, right), std::min(top, bottom)),
                          QSize(std::abs(right - left), std::abs(bottom - top)));
    placement.unitsPerInch = inch > 0 ? inch : int(screenDots);
    return placement;
}

QSize rounded(double width, double height)
{
    return {std::max(int(std::lround(width)), 1), std::max(int(std::lround(height)), 1)};
}

} // namespace

bool isMetafile(const QByteArray& head)
{
    return head.startsWith(placeableMark) || isPlainHeader(head, 0);
}

Result<WmfHeader> readWmfHeader(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, placeableBytes + plainBytes);
    const bool placeable = head.startsWith(placeableMark);
    const int needed = plainBytes + (placeable ? placeableBytes : 0);
    if (head.size() < needed)
        return Error{ErrorKind::Damaged, QStringLiteral("the metafile's header is cut short")};
    WmfHeader header;
    header.recordOffset = needed;
    if (placeable)
        header.placement = placementOf(head);
    return header;
}

WmfExtents readWmfExtents(const std::shared_ptr<ByteSource>& source, qint64 recordOffset)
{
    WmfExtents extents;
    QPoint viewportOrg;
    constexpr int mostRecords = 200'000; // both stand near the beginning, if at all
    WmfRecordReader reader(source, recordOffset);
    for (int i = 0; i < mostRecords && !(extents.window && extents.viewport); ++i) {
        const auto record = reader.next();
        if (!record)
            break;
        if (record->function == WmfFunction::SetMapMode) {
            const int mode = reader.params(*record).word(0);
            if (!extents.window)
                extents.fixedUnits = mode >= 2 && mode <= 6;
        } else if (record->function == WmfFunction::SetWindowExt && !extents.window) {
            const QPoint size = reader.params(*record).pointYX(0);
            if (size.x() != 0 && size.y() != 0)
                extents.window = QSize(size.x(), size.y());
        } else if (record->function == WmfFunction::SetViewportOrg && !extents.viewport) {
            viewportOrg = reader.params(*record).pointYX(0);
        } else if (record->function == WmfFunction::SetViewportExt && !extents.viewport) {
            const QPoint size = reader.params(*record).pointYX(0);
            if (size.x() != 0 && size.y() != 0) {
                const QPoint corner(std::min(size.x(), 0), std::min(size.y(), 0));
                extents.viewport = QRect(viewportOrg + corner, QSize(std::abs(size.x()), std::abs(size.y())));
            }
        }
    }
    return extents;
}

qint64 mostWmfPixels(qint64 fileBytes)
{
    constexpr qint64 forDrawings = qint64(1) << 25;
    constexpr qint64 pixelsPerByte = 8; // of a bitmap of 1 bit
    return std::max(forDrawings, fileBytes * pixelsPerByte);
}

QSize placedWmfSize(const WmfPlacement& placement, qint64 mostPixels)
{
    double width = placement.box.width() * screenDots / placement.unitsPerInch;
    double height = placement.box.height() * screenDots / placement.unitsPerInch;
    const double side = Limits::machine().maxSide;
    const double fit = std::min({1.0, side / width, side / height});
    width *= fit;
    height *= fit;
    // A side of one pixel cannot shrink, so the bound is held against what will be allocated.
    const double pixels = std::max(width, 1.0) * std::max(height, 1.0);
    if (pixels > double(mostPixels)) {
        const double shrink = std::sqrt(double(mostPixels) / pixels);
        width *= shrink;
        height *= shrink;
    }
    return rounded(width, height);
}

QSize plainWmfSize(QSizeF units)
{
    constexpr double most = 1024;
    const double width = std::abs(units.width());
    const double height = std::abs(units.height());
    const double fit = std::min(1.0, most / std::max({width, height, 1.0}));
    return rounded(width * fit, height * fit);
}

} // namespace quorvia::engine
