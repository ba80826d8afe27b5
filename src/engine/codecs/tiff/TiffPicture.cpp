#include "engine/codecs/tiff/TiffPicture.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Orientation.h"
#include "engine/codecs/tiff/TiffPage.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

Error nothingDrawn(const TiffLayout& layout)
{
    const QString part = layout.tiled ? QStringLiteral("tile") : QStringLiteral("strip");
    const QString lack = layout.compressed ? QStringLiteral("no row of any %1 could be unpacked")
                                           : QStringLiteral("no row of any %1 is within the file");
    return Error{ErrorKind::Damaged, lack.arg(part)};
}

/// libtiff packs its pixels as alpha, blue, green, red; with alpha the colours are multiplied by it.
void fromLibraryPixels(QImage& image, int top, int rows)
{
    const bool hasAlpha = image.format() == QImage::Format_ARGB32;
    for (int y = top; y < top + rows; ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const quint32 pixel = row[x];
            const QRgb color = qRgba(int(TIFFGetR(pixel)), int(TIFFGetG(pixel)), int(TIFFGetB(pixel)),
                                     hasAlpha ? int(TIFFGetA(pixel)) : 255);
            row[x] = hasAlpha ? qUnpremultiply(color) : color;
        }
    }
}

struct LibraryImage
{
    TIFFRGBAImage image = {};
    bool open = false;
    LibraryImage() = default;
    LibraryImage(const LibraryImage&) = delete;
    LibraryImage& operator=(const LibraryImage&) = delete;
    ~LibraryImage()
    {
        if (open)
            TIFFRGBAImageEnd(&image);
    }
};

/// The page with libtiff's conversion, a row of striles at a time.
Result<QImage> decodeByLibrary(TiffHandle& handle, const TiffLayout& layout, const CancelFlag& cancel,
                               TiffProgress& progress)
{
    LibraryImage reader;
    char text[1024] = "";
    reader.open = TIFFRGBAImageBegin(&reader.image, handle.get(), 0, text) != 0;
    if (!reader.open)
        return Error{ErrorKind::Unsupported, QString::fromLocal8Bit(text)};
    // Both alike: the rows come as they are stored and are turned afterwards.
    reader.image.orientation = ORIENTATION_TOPLEFT;
    reader.image.req_orientation = ORIENTATION_TOPLEFT;

    const bool hasAlpha = layout.alpha != TiffAlpha::None;
    const QImage::Format format = hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    const quint64 strile = layout.tiled ? TIFFTileSize64(handle.get()) : TIFFStripSize64(handle.get());
    constexpr quint64 beyond = quint64(1) << 44; // so that what follows cannot overflow
    const qint64 planes = layout.planar ? layout.samples : 1;
    const Status affordable = checkTiffMemory(layout, format, qint64(std::min(strile, beyond)) * planes);
    if (!affordable)
        return affordable.error();
    QImage image = allocateImage(layout.stored, format);
    if (image.isNull())
        return noMemoryError();
    for (int top = 0; top < image.height(); top += layout.strile.height()) {
        if (cancel)
            return cancelledError();
        const int rows = std::min(layout.strile.height(), image.height() - top);
        const int errorsBefore = handle.errorCount();
        reader.image.row_offset = top;
        reader.image.col_offset = 0;
        auto* raster = reinterpret_cast<uint32_t*>(image.scanLine(top));
        const bool read =
            TIFFRGBAImageGet(&reader.image, raster, uint32_t(image.width()), uint32_t(rows)) != 0;
        fromLibraryPixels(image, top, rows);
        progress.drawn = progress.drawn || (read && handle.errorCount() == errorsBefore);
        progress.complete = progress.complete && read && handle.errorCount() == errorsBefore;
    }
    return image;
}

} // namespace

Result<Picture> decodeTiffPage(TiffHandle& handle, const std::shared_ptr<ByteSource>& source,
                               const TiffLayout& layout, const CancelFlag& cancel)
{
    TiffProgress progress;
    Result<QImage> stored = layout.colors == TiffColors::Library
                                ? decodeByLibrary(handle, layout, cancel, progress)
                                : decodeTiffStriles(handle, source, layout, cancel, progress);
    if (!stored)
        return stored.error();
    if (!progress.drawn)
        return nothingDrawn(layout); // libtiff counts its lines from one strip, or from nowhere
    Picture picture;
    picture.image = upright(*std::move(stored), layout.orientation);
    if (picture.image.isNull())
        return noMemoryError();
    picture.fullSize = layout.size;
    picture.bitsPerPixel = layout.bits * layout.samples;
    picture.complete = progress.complete;
    if (layout.colors != TiffColors::Cmyk) // those are sRGB by now
        picture.profile = layout.profile;
    return picture;
}

} // namespace quorvia::engine
