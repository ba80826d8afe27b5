#include "engine/codecs/jpegxl/JxlLayers.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/Limits.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// What `size` costs in `planes`, in pixels of up to four; the smallest costs as much as some thousand.
qint64 pixelsOf(QSize size, int planes)
{
    constexpr int usual = 4;
    constexpr qint64 least = 64 * 64;
    return std::max(qint64(size.width()) * size.height(), least) * std::max(planes, usual) / usual;
}

/// The most pixels of all layers where a whole one has `canvas`: some dozens of those, and hundreds where the
/// picture is small, for animations whose frames last no time become layers.
qint64 mostPixels(qint64 canvas)
{
    constexpr qint64 wholeLayers = 32;
    constexpr qint64 always = qint64(16) << 20;
    return wholeLayers * canvas + always;
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

Result<std::vector<JxlStretch>> jxlLayers(const JxlLibrary& library, const ByteSource& source, QSize canvas,
                                          int planes, const CancelFlag& cancel)
{
    JxlReader reader(library, source, JXL_DEC_FRAME);
    if (!reader.get())
        return noMemoryError();
    reader.tellLayers();
    const qint64 whole = pixelsOf(canvas, planes);
    std::vector<JxlStretch> layers = {{0, whole}};
    qint64 sum = 0;
    for (;;) {
        JxlDecoderStatus event = JXL_DEC_ERROR;
        const JxlEnd end = reader.run(cancel, event);
        if (end == JxlEnd::Cancelled)
            return cancelledError();
        if (end != JxlEnd::Event)
            return layers; // what is there of it is decoded all the same
        const JxlFrameHeader frame = reader.frame();
        const QSize layer = jxlSize(frame.layer_info.xsize, frame.layer_info.ysize);
        const Status allowed = checkJxlPlanes(layer, planes);
        if (!allowed)
            return allowed.error();
        layers.push_back({reader.position(), std::max(pixelsOf(layer, planes), whole)});
        sum += layers.back().pixels;
        if (sum > mostPixels(whole))
            return Error{ErrorKind::TooLarge,
                         QStringLiteral("JPEG XL with layers that cost %1 pixels in all, for %2 x %3")
                             .arg(sum)
                             .arg(canvas.width())
                             .arg(canvas.height())};
        if (frame.is_last || frame.duration > 0)
            return layers;
    }
}

} // namespace quorvia::engine
