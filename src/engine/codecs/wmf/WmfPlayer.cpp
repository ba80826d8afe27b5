#include "engine/codecs/wmf/WmfPlayer.h"

#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/wmf/WmfBitmaps.h"
#include "engine/codecs/wmf/WmfShapes.h"
#include "engine/codecs/wmf/WmfText.h"

namespace quorvia::engine {

namespace {

bool isBitmapRecord(WmfFunction function)
{
    switch (function) {
    case WmfFunction::BitBlt:
    case WmfFunction::DibBitBlt:
    case WmfFunction::StretchBlt:
    case WmfFunction::DibStretchBlt:
    case WmfFunction::StretchDib:
    case WmfFunction::SetDibToDevice:
    case WmfFunction::PatBlt:
        return true;
    default:
        return false;
    }
}

bool isPatternRecord(WmfFunction function)
{
    return function == WmfFunction::DibCreatePatternBrush || function == WmfFunction::CreatePatternBrush;
}

void select(WmfContext& context, int number)
{
    const WmfObject* object = context.objects.find(number);
    if (!object)
        return;
    WmfState& state = context.state;
    if (const auto* pen = std::get_if<WmfPen>(object))
        state.pen = *pen;
    else if (const auto* brush = std::get_if<WmfBrush>(object))
        state.brush = *brush;
    else if (const auto* font = std::get_if<WmfFont>(object))
        state.font = *font;
    else if (std::holds_alternative<WmfRegion>(*object))
        selectClip(context, number);
}

void selectPalette(WmfContext& context, int number)
{
    if (const auto* palette = context.objects.findAs<WmfSharedPalette>(number))
        context.state.palette = *palette;
}

void addPalette(WmfContext& context, const WmfParams& params)
{
    const auto palette = std::make_shared<WmfPalette>(paletteOf(params));
    palette->hold = context.memory.take(palette->entries.size() * qint64(sizeof(QRgb)));
    if (!palette->hold) {
        palette->entries = {};
        context.complete = false;
    }
    context.objects.add(palette);
}

void addRegion(WmfContext& context, const WmfParams& params)
{
    WmfRegion region = regionOf(params);
    region.hold = context.memory.take(region.rects.size() * qint64(sizeof(QRect)));
    if (!region.hold) {
        region.rects = {};
        context.complete = false;
    }
    context.objects.add(std::move(region));
}

/// Plays the records that make, select and delete objects. False for other records.
bool playObject(WmfContext& context, WmfFunction function, const WmfParams& params)
{
    switch (function) {
    case WmfFunction::CreatePen:
        context.objects.add(penOf(params));
        return true;
    case WmfFunction::CreateBrushIndirect:
        context.objects.add(brushOf(params));
        return true;
    case WmfFunction::CreateFont:
        context.objects.add(fontOf(params));
        return true;
    case WmfFunction::CreatePalette:
        addPalette(context, params);
        return true;
    case WmfFunction::CreateRegion:
        addRegion(context, params);
        return true;
    case WmfFunction::CreateBrush:
    case WmfFunction::CreateBitmap:
    case WmfFunction::CreateBitmapIndirect:
        context.objects.add(WmfOther());
        return true;
    case WmfFunction::SelectObject:
        select(context, params.unsignedWord(0));
        return true;
    case WmfFunction::DeleteObject:
        context.objects.remove(params.unsignedWord(0));
        return true;
    case WmfFunction::SelectPalette:
        selectPalette(context, params.unsignedWord(0));
        return true;
    case WmfFunction::SetPaletteEntries:
    case WmfFunction::AnimatePalette:
        setPaletteEntries(*context.state.palette, params);
        return true;
    default:
        return false;
    }
}

constexpr double workPerRecord = 1500; // finding it, reading its parameters, passing on an object
constexpr double workPerWord = 2;      // of parameters, which the longest lists have half a million of

void playRecord(WmfContext& context, const WmfRecord& record, const WmfRecordReader& reader)
{
    if (isBitmapRecord(record.function)) {
        playBitmap(context, record, reader);
        return;
    }
    if (isPatternRecord(record.function)) {
        context.objects.add(patternBrush(context, record, reader));
        return;
    }
    const WmfParams params = reader.params(record);
    context.canvas.spend(workPerWord * double(params.words()));
    if (playState(context, record, params) || playObject(context, record.function, params) ||
        playShape(context, record, params))
        return;
    playText(context, record, params);
}

} // namespace

void playRecords(WmfContext& context, WmfRecordReader& reader)
{
    while (!context.cancel) {
        const auto record = reader.next();
        if (!record)
            break;
        // A cut list of points would draw a wrong shape; a cut bitmap shows its first rows.
        if (record->whole || isBitmapRecord(record->function))
            playRecord(context, *record, reader);
        context.canvas.spend(workPerRecord);
        if (context.canvas.isExhausted())
            break;
    }
    context.complete = context.complete && reader.reachedEnd() && !context.canvas.isExhausted();
}

int wmfDepth(const std::shared_ptr<ByteSource>& source, qint64 recordOffset)
{
    constexpr int drawingDepth = 24;
    constexpr int mostRecords = 1000; // before the bitmap; a drawing has drawn by then
    int depth = drawingDepth;
    int bitmaps = 0;
    WmfCanvas canvas;
    const CancelFlag go = false;
    WmfContext context{canvas, go, {WmfMapping(QRectF(0, 0, 1, 1), QSize(1, 1), false)}};
    WmfRecordReader reader(source, recordOffset);
    for (int i = 0; i < mostRecords; ++i) {
        const auto record = reader.next();
        if (!record)
            break;
        if (!isBitmapRecord(record->function)) {
            playRecord(context, *record, reader);
            if (canvas.wasDrawnOn())
                return drawingDepth;
            continue;
        }
        const qint64 offset = wmfDibOffset(*record);
        if (++bitmaps > 1 || offset < 0)
            return drawingDepth;
        const auto dib = reader.tail(*record, offset);
        const auto layout = readBmpLayout(dib->bytes(0, bmpHeadLength), dib->size());
        if (layout && layout->bitsPerPixel > 0)
            depth = layout->bitsPerPixel;
    }
    return depth;
}

} // namespace quorvia::engine
