#include "engine/codecs/tiff/TiffWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Palette.h"
#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/ColorConversion.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quorvia::engine {

namespace {

struct Shape
{
    int bits = 8;
    int samples = 1;
    int photometric = PHOTOMETRIC_RGB;
    int compression = COMPRESSION_LZW;
    bool differencing = true;
};

bool isBlackAndWhite(const QList<QRgb>& palette)
{
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    return palette.size() == 2 &&
           ((palette[0] == black && palette[1] == white) || (palette[0] == white && palette[1] == black));
}

Shape shapeOf(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
        if (isBlackAndWhite(image.colorTable())) {
            const bool whiteFirst = image.color(0) == qRgb(255, 255, 255);
            return {1, 1, whiteFirst ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_MINISBLACK, COMPRESSION_CCITTFAX4,
                    false};
        }
        return {1, 1, PHOTOMETRIC_PALETTE, COMPRESSION_LZW, false};
    case QImage::Format_Indexed8:
        return {8, 1, PHOTOMETRIC_PALETTE, COMPRESSION_LZW, false};
    case QImage::Format_Grayscale8:
        return {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW, true};
    case QImage::Format_ARGB32:
        return {8, 4, PHOTOMETRIC_RGB, COMPRESSION_LZW, true};
    default:
        return {8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, true};
    }
}

/// Strips of about 256 KiB: large enough to pack well, small enough to be decoded side by side.
int rowsPerStrip(qint64 rowBytes, int height)
{
    constexpr qint64 stripBytes = 256 * 1024;
    return int(std::clamp<qint64>(stripBytes / rowBytes, 1, height));
}

void setPalette(TIFF* tiff, const QImage& image, int bits)
{
    std::array<std::vector<uint16_t>, 3> maps;
    const QList<QRgb> palette = image.colorTable();
    for (auto& map : maps)
        map.resize(size_t(1) << bits);
    for (size_t i = 0; i < std::min(maps[0].size(), size_t(palette.size())); ++i) {
        const QRgb color = palette[qsizetype(i)];
        maps[0][i] = uint16_t(qRed(color) * 257);
        maps[1][i] = uint16_t(qGreen(color) * 257);
        maps[2][i] = uint16_t(qBlue(color) * 257);
    }
    TIFFSetField(tiff, TIFFTAG_COLORMAP, maps[0].data(), maps[1].data(), maps[2].data());
}

float dotsPerInch(int dotsPerMeter)
{
    constexpr float screen = 96;
    return dotsPerMeter > 0 ? float(dotsPerMeter) * 0.0254f : screen;
}

void setFields(TIFF* tiff, const QImage& image, const Shape& shape, int stripRows)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, uint32_t(image.width()));
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, uint32_t(image.height()));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, shape.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, shape.samples);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, shape.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, shape.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, uint32_t(stripRows));
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, double(dotsPerInch(image.dotsPerMeterX())));
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, double(dotsPerInch(image.dotsPerMeterY())));
    if (shape.differencing)
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    if (shape.samples == 4) {
        const uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
    }
    if (shape.photometric == PHOTOMETRIC_PALETTE)
        setPalette(tiff, image, shape.bits);
}

void setProfile(TIFF* tiff, const QByteArray& profile, const Shape& shape)
{
    const bool color = shape.photometric == PHOTOMETRIC_RGB || shape.photometric == PHOTOMETRIC_PALETTE;
    if (colorModelOf(profile) == (color ? ColorModel::Rgb : ColorModel::Gray))
        TIFFSetField(tiff, TIFFTAG_ICCPROFILE, uint32_t(profile.size()), profile.constData());
}

void packRow(const uchar* row, int width, const Shape& shape, uchar* out)
{
    if (shape.samples == 1) {
        std::copy_n(row, (qint64(width) * shape.bits + 7) / 8, out);
        return;
    }
    const auto* pixels = reinterpret_cast<const QRgb*>(row);
    for (int x = 0; x < width; ++x, out += shape.samples) {
        out[0] = uchar(qRed(pixels[x]));
        out[1] = uchar(qGreen(pixels[x]));
        out[2] = uchar(qBlue(pixels[x]));
        if (shape.samples == 4)
            out[3] = uchar(qAlpha(pixels[x]));
    }
}

bool writePage(TIFF* tiff, const QImage& image, const Shape& shape)
{
    const qint64 rowBytes = (qint64(image.width()) * shape.bits * shape.samples + 7) / 8;
    const int stripRows = rowsPerStrip(rowBytes, image.height());
    setFields(tiff, image, shape, stripRows);
    std::vector<uchar> strip(size_t(rowBytes * stripRows));
    uint32_t index = 0;
    for (int top = 0; top < image.height(); top += stripRows, ++index) {
        const int rows = std::min(stripRows, image.height() - top);
        for (int i = 0; i < rows; ++i)
            packRow(image.constScanLine(top + i), image.width(), shape, strip.data() + i * rowBytes);
        if (TIFFWriteEncodedStrip(tiff, index, strip.data(), tmsize_t(rowBytes * rows)) < 0)
            return false;
    }
    return TIFFWriteDirectory(tiff) != 0;
}

} // namespace

Result<QByteArray> writeTiff(const QImage& image, const QByteArray& profile)
{
    if (image.isNull())
        return noImageError();
    const QImage source = storable(image);
    QByteArray out;
    std::unique_ptr<TiffHandle> handle = TiffHandle::writing(out);
    if (source.isNull() || !handle->get())
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the TIFF")};
    const Shape shape = shapeOf(source);
    setProfile(handle->get(), profile, shape);
    if (!writePage(handle->get(), source, shape) || !TIFFFlush(handle->get()) || handle->errorCount() > 0)
        return Error{ErrorKind::Unsupported, handle->lastError()};
    handle.reset();
    return out;
}

} // namespace quorvia::engine
