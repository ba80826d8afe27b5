#include "engine/codecs/jpegxl/JxlLayers.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/jpegxl/JxlReader.h"
#include "engine/Limits.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

qint64 pixelsOf(QSize size)
{
    return qint64(size.width()) * size.height();
}

/// The most pixels of all layers: that many whole ones, and a little where the picture itself is little.
qint64 mostPixels(QSize canvas)
{
    constexpr qint64 wholeLayers = 64;
    constexpr qint64 always = qint64(4) << 20;
    return wholeLayers * pixelsOf(canvas) + always;
}

} // namespace

QSize jxlSize(uint32_t width, uint32_t height)
{
    constexpr uint32_t most = 0x7FFFFFFF;
    return {int(std::min(width, most)), int(std::min(height, most))};
}

Status checkJxlPlanes(QSize size, int planes)
{
    return checkCost(size, 4 + 4 * std::max(planes, 3));
}

Result<qint64> jxlLayerPixels(const JxlLibrary& library, const ByteSource& source, QSize canvas, int planes,
                              const CancelFlag& cancel)
{
    JxlReader reader(library, source, JXL_DEC_FRAME);
    if (!reader.get())
        return noMemoryError();
    reader.tellLayers();
    qint64 sum = 0;
    for (;;) {
        JxlDecoderStatus event = JXL_DEC_ERROR;
        const JxlEnd end = reader.run(cancel, event);
        if (end == JxlEnd::Cancelled)
            return cancelledError();
        if (end != JxlEnd::Event)
            return sum; // what is there of it is decoded all the same
        const JxlFrameHeader frame = reader.frame();
        const QSize layer = jxlSize(frame.layer_info.xsize, frame.layer_info.ysize);
        const Status allowed = checkJxlPlanes(layer, planes);
        if (!allowed)
            return allowed.error();
        sum += pixelsOf(layer);
        if (sum > mostPixels(canvas))
            return Error{ErrorKind::TooLarge,
                         QStringLiteral("JPEG XL with layers of %1 pixels in all, for %2 x %3")
                             .arg(sum)
                             .arg(canvas.width())
                             .arg(canvas.height())};
        if (frame.is_last || frame.duration > 0)
            return sum;
    }
}

} // namespace quorvia::engine
