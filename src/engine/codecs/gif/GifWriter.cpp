#include "engine/codecs/gif/GifWriter.h"

#include "engine/codecs/Growing.h"
#include "engine/codecs/Palette.h"

#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace quorvia::engine {

namespace {

struct MapDeleter
{
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, MapDeleter>;

struct Output
{
    QByteArray bytes;
    bool full = false; ///< there was no memory for all of it; giflib does not look at every write
};

int appendBytes(GifFileType* gif, const GifByteType* bytes, int length)
{
    auto& out = *static_cast<Output*>(gif->UserData);
    out.full = out.full || !appended(out.bytes, bytes, length);
    return out.full ? 0 : length;
}

/// True when the palette can be written as it stands: opaque but for at most one clear entry.
bool isWritable(const QImage& image)
{
    if (image.format() != QImage::Format_Indexed8 || image.colorCount() < 1 || image.colorCount() > 256)
        return false;
    const QList<QRgb> palette = image.colorTable();
    const auto opaque =
        std::count_if(palette.begin(), palette.end(), [](QRgb c) { return qAlpha(c) == 255; });
    const auto clear = std::count_if(palette.begin(), palette.end(), [](QRgb c) { return qAlpha(c) == 0; });
    return opaque + clear == palette.size() && clear <= 1;
}

int clearEntry(const QList<QRgb>& palette)
{
    const auto found = std::find_if(palette.begin(), palette.end(), [](QRgb c) { return qAlpha(c) == 0; });
    return found == palette.end() ? NO_TRANSPARENT_COLOR : int(found - palette.begin());
}

/// A colour map of the next power of two entries, as the format asks for.
ColorMap mapOf(const QList<QRgb>& palette)
{
    int count = 2;
    while (count < palette.size())
        count *= 2;
    ColorMap map(GifMakeMapObject(count, nullptr));
    for (qsizetype i = 0; map && i < palette.size(); ++i)
        map->Colors[i] = {GifByteType(qRed(palette[i])), GifByteType(qGreen(palette[i])),
                          GifByteType(qBlue(palette[i]))};
    return map;
}

/// `row` has the width of `image`: giflib writes into the row that it is given.
bool writeFrame(GifFileType* gif, const QImage& image, const ColorMapObject* map,
                std::vector<GifByteType>& row)
{
    const int clear = clearEntry(image.colorTable());
    EGifSetGifVersion(gif, clear != NO_TRANSPARENT_COLOR); // transparency came with 89a
    const int background = clear != NO_TRANSPARENT_COLOR ? clear : 0;
    if (EGifPutScreenDesc(gif, image.width(), image.height(), map->BitsPerPixel, background, map) != GIF_OK)
        return false;
    if (clear != NO_TRANSPARENT_COLOR) {
        const GraphicsControlBlock control = {DISPOSAL_UNSPECIFIED, false, 0, clear};
        GifByteType bytes[4];
        const size_t length = EGifGCBToExtension(&control, bytes);
        if (EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, int(length), bytes) != GIF_OK)
            return false;
    }
    if (EGifPutImageDesc(gif, 0, 0, image.width(), image.height(), false, nullptr) != GIF_OK)
        return false;
    for (int y = 0; y < image.height(); ++y) {
        std::copy_n(image.constScanLine(y), image.width(), row.begin());
        if (EGifPutLine(gif, row.data(), image.width()) != GIF_OK)
            return false;
    }
    return true;
}

} // namespace

Result<QByteArray> writeGif(const QImage& image)
{
    constexpr int widest = 65535;
    if (image.isNull() || image.width() > widest || image.height() > widest)
        return Error{ErrorKind::Unsupported, QStringLiteral("a GIF has 1 to 65535 pixels a side")};
    constexpr int mostColors = 256;
    const QImage indexed = isWritable(image) ? image : reducedToPalette(image, mostColors);
    const ColorMap map = mapOf(indexed.colorTable());
    std::vector<GifByteType> row(size_t(image.width()));
    Output out;
    int error = 0;
    GifFileType* gif = indexed.isNull() || !map ? nullptr : EGifOpen(&out, appendBytes, &error);
    if (!gif)
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the GIF")};
    const bool written = writeFrame(gif, indexed, map.get(), row);
    const bool closed = EGifCloseFile(gif, &error) == GIF_OK;
    if (out.full)
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the GIF")};
    if (!written || !closed)
        return Error{ErrorKind::Unsupported, QStringLiteral("giflib cannot write the image")};
    return out.bytes;
}

} // namespace quorvia::engine
