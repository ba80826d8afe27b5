#include "engine/codecs/WmfBitmaps.h"

#include "engine/codecs/WmfPixels.h"

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
    bool fromBottom = false;  ///< `from` counts from the lower left
    bool numbered = false;    ///< the bitmap's palette holds numbers
    bool device = false;      ///< a bitmap of the device kind
    qint64 bitmapOffset = -1; ///< bytes of parameters before it; -1 when there is none
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
    return request;
}

Request setDibOf(const WmfParams& params)
{
    Request request;
    request.numbered = params.word(0) == 1;
    request.from = params.pointYX(3);
    request.toSize = params.pointYX(5);
    request.fromSize = request.toSize;
    request.to = params.pointYX(7);
    request.fromBottom = true;
    request.bitmapOffset = 18;
    return request;
}

Request patBltOf(const WmfParams& params)
{
    Request request;
    request.rop = ropOf(params);
    request.toSize = params.pointYX(2);
    request.to = params.pointYX(4);
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

/// The bitmap in a record as it is stored; null when it cannot be had.
QImage readDib(WmfContext& context, std::shared_ptr<ByteSource> source, bool numbered)
{
    // Run-length codes promise much with few bytes; real ones in records are small.
    constexpr qint64 always = qint64(1) << 24;
    constexpr qint64 pixelsPerByte = 8;
    const qint64 most = std::max(always, source->size() * pixelsPerByte);
    const auto decoder = openDib(std::move(source), numbered, context.state.palette);
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

QImage readBitmap(WmfContext& context, const Request& request, const WmfRecord& record,
                  const WmfRecordReader& reader)
{
    auto source = reader.tail(record, request.bitmapOffset);
    if (!request.device)
        return readDib(context, std::move(source), request.numbered);
    constexpr qsizetype headerBytes = 10;
    const WmfState& state = context.state;
    const QImage bitmap = deviceBitmap(source->bytes(0, source->size()), headerBytes,
                                       state.rgb(state.textColor), state.rgb(state.bkColor));
    return context.canvas.spend(double(bitmap.width()) * bitmap.height()) ? bitmap : QImage();
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

/// Where the bitmap of `size` comes to lie; nothing when no pixel of it does.
std::optional<WmfStretch> stretchOf(const WmfState& state, const Request& request, QSize size)
{
    const QPointF one = state.mapping.map(request.to);
    const QPointF other = state.mapping.map(request.to + request.toSize);
    int fromY = request.from.y();
    if (request.fromBottom && request.fromSize.y() != 0)
        fromY = size.height() - request.from.y() - request.fromSize.y();
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

/// True when every pixel of the picture becomes the pixel of the bitmap at its place.
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
    const QImage stored = readBitmap(context, request, record, reader);
    if (stored.isNull()) {
        context.complete = false;
        return;
    }
    const bool first = !context.canvas.wasDrawnOn();
    context.canvas.note(box);
    const auto stretch = stretchOf(context.state, request, stored.size());
    if (!stretch)
        return;
    const QImage bitmap = stored.convertToFormat(QImage::Format_RGB32);
    if (first && coversAll(context, request, *stretch)) {
        context.whole = stored;
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
    if (request)
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
    if (record.function == WmfFunction::CreatePatternBrush) {
        const auto source = reader.tail(record, 0);
        brush.tile =
            deviceBitmap(source->bytes(0, source->size()), devicePixels, qRgb(0, 0, 0), qRgb(255, 255, 255));
        brush.twoColored = source->bytes(0, devicePixels).mid(9, 1) == QByteArray(1, '\1');
    } else {
        const WmfParams params(reader.tail(record, 0)->bytes(0, dibOffset));
        const auto source = reader.tail(record, dibOffset);
        constexpr qsizetype bitsOffset = 14;
        brush.tile = readDib(context, source, params.word(1) == 1).convertToFormat(QImage::Format_RGB32);
        brush.twoColored =
            params.word(0) == deviceStyle && source->bytes(bitsOffset, 1) == QByteArray(1, '\1');
    }
    if (!brush.tile.isNull())
        brush.kind = WmfBrush::Kind::Tile;
    return brush;
}

} // namespace quorvia::engine
