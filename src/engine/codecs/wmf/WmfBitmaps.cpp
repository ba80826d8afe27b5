#include "engine/codecs/wmf/WmfBitmaps.h"

#include "engine/codecs/wmf/WmfPixels.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quorvia::engine {

namespace {

constexpr int copySource = 0xCC; // raster operations, as combined() counts them
constexpr int copyPattern = 0xF0;

/// What a record of bitmaps asks for.
struct Request
{
    int rop = copySource;
    QPoint to;     ///< units
    QPoint toSize; ///< units, may be negative
    QPoint from;   ///< pixels of the bitmap
    QPoint fromSize;
    bool fromBottom = false; ///< `from` counts from the lower left, unless the bitmap begins with its top row
    int firstScan = 0;       ///< which of the picture's rows is the bitmap's first, as it stores them
    int scans = 0;           ///< how many it stores; 0 for as many as it says itself
    bool numbered = false;   ///< the bitmap's palette holds numbers
    bool device = false;     ///< a bitmap of the device kind
    qint64 bitmapOffset = -1; ///< bytes of parameters before it; -1 when there is none
    qint64 fixedBytes = 0;    ///< of parameters, without which nothing can be drawn
};

int ropOf(const WmfParams& params)
{
    return int(params.doubleWord(0) >> 16 & 0xFF);
}

/// True when the record holds nothing but its fixed words.
bool hasNoBitmap(const WmfRecord& record)
{
    constexpr int headWords = 3;
    return record.words == (record.functionCode >> 8) + headWords;
}

/// BitBlt and its kind: operation, source, [one unused word,] height, width, target.
Request bitBltOf(const WmfRecord& record, const WmfParams& params, bool device)
{
    const int skip = hasNoBitmap(record) ? 1 : 0;
    Request request;
    request.rop = ropOf(params);
    request.from = params.pointYX(2);
    request.toSize = params.pointYX(4 + skip);
    request.fromSize = request.toSize;
    request.to = params.pointYX(6 + skip);
    request.device = device;
    request.bitmapOffset = skip != 0 ? -1 : 16;
    request.fixedBytes = skip != 0 ? 18 : 16;
    return request;
}

/// StretchBlt and its kind: operation, source size, source, [one unused word,] target size, target.
Request stretchBltOf(const WmfRecord& record, const WmfParams& params, bool device)
{
    const int skip = hasNoBitmap(record) ? 1 : 0;
    Request request;
    request.rop = ropOf(params);
    request.fromSize = params.pointYX(2);
    request.from = params.pointYX(4);
    request.toSize = params.pointYX(6 + skip);
    request.to = params.pointYX(8 + skip);
    request.device = device;
    request.bitmapOffset = skip != 0 ? -1 : 20;
    request.fixedBytes = skip != 0 ? 22 : 20;
    return request;
}

Request stretchDibOf(const WmfRecord& record, const WmfParams& params)
{
    constexpr qint64 fixedBytes = 22;
    Request request;
    request.rop = ropOf(params);
    request.numbered = params.word(2) == 1;
    request.fromSize = params.pointYX(3);
    request.from = params.pointYX(5);
    request.toSize = params.pointYX(7);
    request.to = params.pointYX(9);
    request.fromBottom = true;
    request.bitmapOffset = record.length > fixedBytes ? fixedBytes : -1;
    request.fixedBytes = fixedBytes;
    return request;
}

Request setDibOf(const WmfParams& params)
{
    Request request;
    request.numbered = params.word(0) == 1;
    request.scans = params.unsignedWord(1);
    request.firstScan = params.unsignedWord(2);
    request.from = params.pointYX(3);
    request.toSize = params.pointYX(5);
    request.fromSize = request.toSize;
    request.to = params.pointYX(7);
    request.fromBottom = true;
    request.bitmapOffset = 18;
    request.fixedBytes = 18;
    return request;
}

Request patBltOf(const WmfParams& params)
{
    Request request;
    request.rop = ropOf(params);
    request.toSize = params.pointYX(2);
    request.to = params.pointYX(4);
    request.fixedBytes = 12;
    return request;
}

std::optional<Request> requestOf(const WmfRecord& record, const WmfParams& params)
{
    switch (record.function) {
    case WmfFunction::PatBlt:
        return patBltOf(params);
    case WmfFunction::BitBlt:
    case WmfFunction::DibBitBlt:
        return bitBltOf(record, params, record.function == WmfFunction::BitBlt);
    case WmfFunction::StretchBlt:
    case WmfFunction::DibStretchBlt:
        return stretchBltOf(record, params, record.function == WmfFunction::StretchBlt);
    case WmfFunction::StretchDib:
        return stretchDibOf(record, params);
    case WmfFunction::SetDibToDevice:
        return setDibOf(params);
    default:
        return std::nullopt;
    }
}

/// Pixels that a bitmap of `bytes` may have. Run-length codes promise much with few bytes, up to `always`.
qint64 mostPixels(qint64 bytes, qint64 always)
{
    constexpr qint64 pixelsPerByte = 8;
    return std::max(always, bytes * pixelsPerByte);
}

constexpr qint64 mostInRecord = qint64(1) << 24; // real ones that are drawn are small,
constexpr qint64 mostInTile = qint64(1) << 22;   // and patterns smaller still

/// The height that the DIB in `source` tells, below 0 when its top row is the first; 0 when it tells none.
int dibHeight(const ByteSource& source)
{
    constexpr qint64 coreBytes = 12;
    const WmfParams head(source.bytes(0, coreBytes));
    return head.doubleWord(0) == coreBytes ? head.unsignedWord(3) : int(head.doubleWord(4));
}

/// The DIB in `source` as one of `scans` rows, when it tells more: a band of a picture stores no others.
std::shared_ptr<ByteSource> withScans(std::shared_ptr<ByteSource> source, int scans)
{
    constexpr qsizetype longHeight = 8; // bytes before it
    const qint64 told = dibHeight(*source);
    if (scans == 0 || std::abs(told) <= scans || source->bytes(0, 1) == QByteArray(1, '\x0C'))
        return source;
    QByteArray dib = source->bytes(0, source->size());
    qToLittleEndian(qint32(told < 0 ? -scans : scans), dib.data() + longHeight);
    return ByteSource::fromBytes(dib);
}

/// The bitmap in a record as it is stored; null when it cannot be had or has more than `always` pixels and
/// than its bytes can hold.
QImage readDib(WmfContext& context, std::shared_ptr<ByteSource> source, bool numbered, qint64 always)
{
    const qint64 most = mostPixels(source->size(), always);
    const auto decoder = openDib(std::move(source), numbered, *context.state.palette);
    const auto header = decoder ? (*decoder)->header(1) : decoder.error();
    if (!header)
        return {};
    const qint64 pixels = qint64(header->size.width()) * header->size.height();
    constexpr double workPerPixel = 4;
    if (pixels > most || !context.canvas.spend(workPerPixel * double(pixels)))
        return {};
    auto picture = (*decoder)->decode(1, QSize(), context.cancel);
    if (!picture)
        return {};
    context.complete = context.complete && picture->complete;
    // The fourth byte of a pixel is no alpha to a metafile.
    if (picture->image.format() == QImage::Format_ARGB32)
        return std::move(picture->image).convertToFormat(QImage::Format_RGB32);
    return picture->image;
}

/// The upper left part, up to `most`, of a bitmap of the device kind; null when it cannot be had.
QImage readDevice(WmfContext& context, const ByteSource& source, qsizetype pixelOffset, QSize most, QRgb zero,
                  QRgb one)
{
    const QByteArray bytes = source.bytes(0, source.size());
    const QSize size = deviceBitmapSize(bytes, pixelOffset).boundedTo(most);
    constexpr double workPerPixel = 4;
    if (size.isEmpty() || !context.canvas.spend(workPerPixel * size.width() * size.height()))
        return {};
    return deviceBitmap(bytes, pixelOffset, size, zero, one);
}

QImage readBitmap(WmfContext& context, const Request& request, const std::shared_ptr<ByteSource>& source)
{
    if (!request.device)
        return readDib(context, withScans(source, request.scans), request.numbered, mostInRecord);
    constexpr qsizetype headerBytes = 10;
    constexpr QSize all(32767, 32767);
    const WmfState& state = context.state;
    return readDevice(context, *source, headerBytes, all, state.rgb(state.textColor),
                      state.rgb(state.bkColor));
}

/// One axis of a stretch: `from` and `size` in the bitmap of `length` pixels, `to` and `behind` in the
/// picture.
struct Axis
{
    int from = 0;
    int size = 0;
    int to = 0;
    int behind = 0;
    bool mirrored = false;
};

/// Turns an axis the right way round and keeps it to the pixels that the bitmap has; false when none is
/// left.
bool normalize(Axis& axis, double to, double behind, int from, int size, int length)
{
    if (size == 0) {
        from = 0;
        size = length;
    }
    axis.mirrored = (behind < to) != (size < 0);
    const int start = size < 0 ? from + size : from;
    const int count = std::abs(size);
    const int keptStart = std::clamp(start, 0, length);
    const int keptEnd = std::clamp(start + count, 0, length);
    if (keptStart == keptEnd)
        return false;
    const double first = std::min(to, behind);
    const double extent = std::abs(behind - to);
    // What was cut off at the bitmap's first side comes from the picture's other side when mirrored.
    const double lead = axis.mirrored ? start + count - keptEnd : keptStart - start;
    axis.from = keptStart;
    axis.size = keptEnd - keptStart;
    axis.to = int(std::lround(first + extent * lead / count));
    axis.behind = int(std::lround(first + extent * (lead + axis.size) / count));
    if (axis.behind == axis.to)
        axis.behind = axis.to + 1;
    return true;
}

/// Where the bitmap of `size` comes to lie; nothing when no pixel of it does. `topDown`: its first row is the
/// uppermost.
std::optional<WmfStretch> stretchOf(const WmfState& state, const Request& request, QSize size, bool topDown)
{
    const QPointF one = state.mapping.map(request.to);
    const QPointF other = state.mapping.map(request.to + request.toSize);
    int fromY = request.from.y() - request.firstScan;
    if (request.fromBottom && !topDown && request.fromSize.y() != 0)
        fromY = size.height() - fromY - request.fromSize.y();
    Axis x;
    Axis y;
    if (!normalize(x, one.x(), other.x(), request.from.x(), request.fromSize.x(), size.width()) ||
        !normalize(y, one.y(), other.y(), fromY, request.fromSize.y(), size.height()))
        return std::nullopt;
    WmfStretch stretch;
    stretch.from = QRect(x.from, y.from, x.size, y.size);
    stretch.to = QRect(x.to, y.to, x.behind - x.to, y.behind - y.to);
    stretch.mirrorX = x.mirrored;
    stretch.mirrorY = y.mirrored;
    constexpr int halftone = 4;
    stretch.smooth = request.rop == copySource || state.stretchMode == halftone;
    return stretch;
}

/// Combines `source` (may be null) with the pattern and with what is drawn at `at`, in place.
void combine(const WmfContext& context, int rop, QRect at, QImage& source)
{
    const QBrush brush = qtBrushOf(context.state.brush, context.state);
    const QImage tile = brush.style() == Qt::TexturePattern
                            ? brush.textureImage().convertToFormat(QImage::Format_RGB32)
                            : QImage();
    const QRgb solid = brush.style() == Qt::NoBrush ? qRgb(255, 255, 255) : brush.color().rgb();
    const QImage& target = context.canvas.image();
    for (int y = 0; y < at.height(); ++y) {
        auto* pixels = reinterpret_cast<QRgb*>(source.scanLine(y));
        const auto* below = reinterpret_cast<const QRgb*>(target.constScanLine(at.top() + y)) + at.left();
        const auto* row =
            tile.isNull() ? nullptr
                          : reinterpret_cast<const QRgb*>(tile.constScanLine((at.top() + y) % tile.height()));
        for (int x = 0; x < at.width(); ++x) {
            const QRgb pattern = row ? row[(at.left() + x) % tile.width()] : solid;
            pixels[x] = combined(rop, pattern, pixels[x], below[x]);
        }
    }
}

void putOperation(WmfContext& context, int rop, QRect visible, QImage pixels)
{
    if (pixels.isNull())
        return;
    constexpr double workPerPixel = 20;
    if (rop != copySource) {
        if (!context.canvas.spend(workPerPixel * visible.width() * visible.height()))
            return;
        combine(context, rop, visible, pixels);
    }
    context.canvas.put(visible.topLeft(), pixels);
}

/// Fills the target with the pattern, white, black or what is there turned over.
void drawPattern(WmfContext& context, const Request& request)
{
    const QRectF box = pixelBox(context.state.mapping, request.to, request.to + request.toSize);
    context.canvas.note(box);
    const QRect visible = wholePixels(box) & context.canvas.reach();
    const bool usesPattern = ((request.rop >> 4 ^ request.rop) & 0x0F) != 0;
    const bool noBrush = context.state.brush.kind == WmfBrush::Kind::None;
    if (visible.isEmpty() || context.canvas.isMeasuring() || (usesPattern && noBrush))
        return;
    if (request.rop == copyPattern) {
        context.canvas.fill({QPolygonF(box)}, {qtBrushOf(context.state.brush, context.state)});
        return;
    }
    QImage pixels = allocateImage(visible.size(), QImage::Format_RGB32);
    putOperation(context, request.rop, visible, std::move(pixels));
}

/// True when every pixel of the picture is the pixel of the bitmap at the same place.
bool coversAll(const WmfContext& context, const Request& request, const WmfStretch& stretch)
{
    const QRect picture = context.canvas.image().rect();
    return request.rop == copySource && stretch.to == picture && stretch.from == picture &&
           !stretch.mirrorX && !stretch.mirrorY && !context.state.clip;
}

void drawBitmap(WmfContext& context, const Request& request, const WmfRecord& record,
                const WmfRecordReader& reader)
{
    if (!ropNeedsSource(request.rop)) {
        drawPattern(context, request);
        return;
    }
    if (request.bitmapOffset < 0)
        return; // the source would be the picture itself, which no file means
    const QRectF box = pixelBox(context.state.mapping, request.to, request.to + request.toSize);
    if (context.canvas.isMeasuring()) {
        context.canvas.note(box);
        return;
    }
    const std::shared_ptr<ByteSource> source = reader.tail(record, request.bitmapOffset);
    const QImage stored = readBitmap(context, request, source);
    if (stored.isNull()) {
        context.complete = false;
        return;
    }
    const bool first = !context.canvas.wasDrawnOn();
    context.canvas.note(box);
    const bool topDown = !request.device && dibHeight(*source) < 0;
    const auto stretch = stretchOf(context.state, request, stored.size(), topDown);
    if (!stretch)
        return;
    const QImage bitmap = stored.convertToFormat(QImage::Format_RGB32);
    if (first && coversAll(context, request, *stretch)) {
        // The bitmap may go on where the picture ends.
        context.whole = stored.rect() == stretch->from ? stored : stored.copy(stretch->from);
        context.canvas.put(QPoint(), bitmap);
        return;
    }
    const QRect visible = stretch->to & context.canvas.reach();
    if (!visible.isEmpty() && !bitmap.isNull())
        putOperation(context, request.rop, visible, stretched(bitmap, *stretch, visible));
}

} // namespace

bool playBitmap(WmfContext& context, const WmfRecord& record, const WmfRecordReader& reader)
{
    constexpr qint64 fixedBytes = 32; // more than any of these records has before its bitmap
    const WmfParams params(reader.tail(record, 0)->bytes(0, fixedBytes));
    const auto request = requestOf(record, params);
    if (request && record.length >= request->fixedBytes)
        drawBitmap(context, *request, record, reader);
    return request.has_value();
}

qint64 wmfDibOffset(const WmfRecord& record)
{
    const auto request = requestOf(record, WmfParams({}));
    return request && !request->device ? request->bitmapOffset : -1;
}

WmfBrush patternBrush(WmfContext& context, const WmfRecord& record, const WmfRecordReader& reader)
{
    constexpr int deviceStyle = 3; // a pattern of the device kind, though stored as a DIB
    constexpr qint64 dibOffset = 4;
    constexpr qsizetype devicePixels = 32;
    WmfBrush brush;
    if (context.canvas.isMeasuring())
        return brush;
    brush.kind = WmfBrush::Kind::None;
    const QSize picture = context.canvas.image().size(); // what is beyond it of a tile is never seen
    if (record.function == WmfFunction::CreatePatternBrush) {
        const auto source = reader.tail(record, 0);
        brush.tile = readDevice(context, *source, devicePixels, picture, qRgb(0, 0, 0), qRgb(255, 255, 255));
        brush.twoColored = source->bytes(0, devicePixels).mid(9, 1) == QByteArray(1, '\1');
    } else {
        const WmfParams params(reader.tail(record, 0)->bytes(0, dibOffset));
        const auto source = reader.tail(record, dibOffset);
        constexpr qsizetype bitsOffset = 14;
        const QImage stored = readDib(context, source, params.word(1) == 1, mostInTile);
        brush.tile = stored.copy(QRect(QPoint(), stored.size().boundedTo(picture)))
                         .convertToFormat(QImage::Format_RGB32);
        brush.twoColored =
            params.word(0) == deviceStyle && source->bytes(bitsOffset, 1) == QByteArray(1, '\1');
    }
    brush.hold = context.memory.take(brush.tile.sizeInBytes());
    if (!brush.tile.isNull() && brush.hold)
        brush.kind = WmfBrush::Kind::Tile;
    else
        brush.tile = QImage();
    context.complete = context.complete && !brush.tile.isNull();
    return brush;
}

} // namespace quorvia::engine
