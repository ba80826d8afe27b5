#include "engine/codecs/WmfPlayer.h"

#include "engine/codecs/BmpLayout.h"
#include "engine/codecs/WmfBitmaps.h"
#include "engine/codecs/WmfShapes.h"
#include "engine/codecs/WmfText.h"

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
    const auto* palette = context.objects.findAs<WmfPalette>(number);
    if (!palette)
        return;
    context.state.palette = *palette;
    context.state.paletteNumber = number;
}

void changePalette(WmfContext& context, const WmfParams& params)
{
    setPaletteEntries(context.state.palette, params);
    if (auto* object = context.objects.findAs<WmfPalette>(context.state.paletteNumber.value_or(-1)))
        *object = context.state.palette;
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
        context.objects.add(paletteOf(params));
        return true;
    case WmfFunction::CreateRegion:
        context.objects.add(regionOf(params));
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
        changePalette(context, params);
        return true;
    default:
        return false;
    }
}

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
    if (playState(context, record, params) || playObject(context, record.function, params) ||
        playShape(context, record, params))
        return;
    playText(context, record, params);
}

} // namespace

void playRecords(WmfContext& context, WmfRecordReader& reader)
{
    constexpr double workPerRecord = 50;
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
