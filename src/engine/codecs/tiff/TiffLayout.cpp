#include "engine/codecs/tiff/TiffLayout.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Orientation.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quorvia::engine {

namespace {

template <class T>
T field(TIFF* tiff, quint32 tag, T absent)
{
    T value = absent;
    return TIFFGetField(tiff, tag, &value) ? value : absent;
}

template <class T>
T fieldOrDefault(TIFF* tiff, quint32 tag)
{
    T value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

/// A side as a number that a QSize holds; anything greater is too large in any case.
int side(quint32 pixels)
{
    return int(std::min<quint32>(pixels, std::numeric_limits<int>::max()));
}

/// A tile may reach beyond the page, but one that is many times as large only costs memory.
Status checkTile(QSize tile, QSize page)
{
    Status allowed = checkSize(tile);
    if (!allowed)
        return allowed;
    constexpr qint64 usual = qint64(2048) * 2048; // pixels; small pages have tiles like their large kin
    const qint64 pixels = qint64(tile.width()) * tile.height();
    if (pixels > std::max(usual, 4 * qint64(page.width()) * page.height()))
        return Error{ErrorKind::TooLarge, QStringLiteral("tiles of %1 x %2 pixels for a page of %3 x %4")
                                              .arg(tile.width())
                                              .arg(tile.height())
                                              .arg(page.width())
                                              .arg(page.height())};
    return ok();
}

Status readSizes(TIFF* tiff, TiffLayout& layout)
{
    layout.stored = QSize(side(field<uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0)),
                          side(field<uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0)));
    Status page = checkSize(layout.stored);
    if (!page)
        return page;
    layout.orientation = fieldOrDefault<uint16_t>(tiff, TIFFTAG_ORIENTATION);
    layout.size = isTransposed(layout.orientation) ? layout.stored.transposed() : layout.stored;

    layout.tiled = TIFFIsTiled(tiff) != 0;
    if (layout.tiled) {
        layout.strile = QSize(side(field<uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0)),
                              side(field<uint32_t>(tiff, TIFFTAG_TILELENGTH, 0)));
        return checkTile(layout.strile, layout.stored);
    }
    const auto rows = fieldOrDefault<uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP);
    const bool whole = rows == 0 || rows > quint32(layout.stored.height());
    layout.strile = QSize(layout.stored.width(), whole ? layout.stored.height() : int(rows));
    return ok();
}

Status readNumbers(TIFF* tiff, TiffLayout& layout)
{
    layout.bits = fieldOrDefault<uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE);
    layout.samples = fieldOrDefault<uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL);
    layout.planar = fieldOrDefault<uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE;
    if (layout.samples < 1 || layout.bits < 1)
        return damaged(QStringLiteral("%1 samples of %2 bits").arg(layout.samples).arg(layout.bits));
    bool known = false;
    switch (fieldOrDefault<uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT)) {
    case SAMPLEFORMAT_UINT:
    case SAMPLEFORMAT_VOID:
    case SAMPLEFORMAT_INT:
        layout.numbers = TiffNumbers::Unsigned;
        known = layout.bits <= 16 || layout.bits == 32;
        break;
    case SAMPLEFORMAT_IEEEFP:
        layout.numbers = TiffNumbers::Float;
        known = layout.bits == 16 || layout.bits == 32 || layout.bits == 64;
        break;
    default:
        break;
    }
    if (!known)
        return unsupported(QStringLiteral("samples of %1 bits in their number format").arg(layout.bits));
    return ok();
}

Status readPalette(TIFF* tiff, TiffLayout& layout)
{
    if (layout.bits > 8 || layout.numbers != TiffNumbers::Unsigned)
        return unsupported(QStringLiteral("a palette with %1 bits").arg(layout.bits));
    uint16_t* red = nullptr;
    uint16_t* green = nullptr;
    uint16_t* blue = nullptr;
    if (!TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue) || !red || !green || !blue)
        return damaged(QStringLiteral("the palette is missing"));
    const int count = 1 << layout.bits;
    const auto all = [&](const auto& test) {
        return std::all_of(red, red + count, test) && std::all_of(green, green + count, test) &&
               std::all_of(blue, blue + count, test);
    };
    // Some writers store 8 bits where 16 belong, some shift them; all others span the 16 bits.
    const bool narrow = all([](uint16_t value) { return value < 256; });
    const bool shifted = all([](uint16_t value) { return (value & 0xFF) == 0; });
    const auto entry = [narrow, shifted](int value) {
        return narrow ? value : shifted ? value >> 8 : (value + 128) / 257;
    };
    for (int i = 0; i < count; ++i)
        layout.palette.append(qRgb(entry(red[i]), entry(green[i]), entry(blue[i])));
    return ok();
}

bool isFax(int compression)
{
    return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
           compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

int photometricOf(TIFF* tiff, const TiffLayout& layout, int compression)
{
    constexpr uint16_t absent = 0xFFFF;
    const auto told = field<uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, absent);
    if (told != absent)
        return told;
    if (isFax(compression))
        return PHOTOMETRIC_MINISWHITE;
    return layout.samples >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
}

Status leaveToLibrary(TIFF* tiff, TiffLayout& layout)
{
    char text[1024] = "";
    if (!TIFFRGBAImageOK(tiff, text))
        return unsupported(QString::fromLocal8Bit(text));
    layout.colors = TiffColors::Library;
    return ok();
}

/// The numbers that YCbCr is brought to RGB by; the usual ones where those in the file make no sense.
/// Format: TIFF 6.0, sections 20 and 21.
void readLuma(TIFF* tiff, TiffLayout& layout)
{
    const float* luma = nullptr;
    layout.luma = {0.299F, 0.587F, 0.114F};
    if (TIFFGetFieldDefaulted(tiff, TIFFTAG_YCBCRCOEFFICIENTS, &luma) && luma &&
        std::all_of(luma, luma + 3, [](float share) { return share > 0.001F && share < 1; }))
        std::copy_n(luma, 3, layout.luma.begin());
    const float* range = nullptr;
    layout.range = {0, 255, 128, 255, 128, 255};
    const auto spans = [](const float* pair) {
        return std::isfinite(pair[0]) && std::isfinite(pair[1]) && std::abs(pair[1] - pair[0]) >= 1;
    };
    if (TIFFGetFieldDefaulted(tiff, TIFFTAG_REFERENCEBLACKWHITE, &range) && range && spans(range) &&
        spans(range + 2) && spans(range + 4))
        std::copy_n(range, 6, layout.range.begin());
}

Status readYCbCr(TIFF* tiff, TiffLayout& layout, int compression)
{
    if (compression == COMPRESSION_JPEG && !layout.planar && layout.samples == 3) {
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE,
                     JPEGCOLORMODE_RGB); // the JPEG decoder converts and upsamples
        layout.colors = TiffColors::Rgb;
        return ok();
    }
    uint16_t across = 1;
    uint16_t down = 1;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_YCBCRSUBSAMPLING, &across, &down);
    const auto isUsual = [](int step) { return step == 1 || step == 2 || step == 4; };
    const bool ours =
        layout.bits == 8 && layout.samples == 3 && !layout.planar && isUsual(across) && isUsual(down) &&
        layout.numbers == TiffNumbers::Unsigned && compression != COMPRESSION_OJPEG &&
        compression != COMPRESSION_JPEG &&
        (layout.strile.height() % down == 0 || layout.strile.height() == layout.stored.height());
    if (!ours)
        return leaveToLibrary(tiff, layout);
    layout.colors = TiffColors::YCbCr;
    layout.block = QSize(across, down);
    readLuma(tiff, layout);
    return ok();
}

Status readLab(TIFF* tiff, TiffLayout& layout, TiffColors kind)
{
    if ((layout.bits != 8 && layout.bits != 16) || layout.numbers == TiffNumbers::Float || layout.samples < 3)
        return leaveToLibrary(tiff, layout);
    layout.colors = kind;
    return ok();
}

Status readColors(TIFF* tiff, TiffLayout& layout, int compression)
{
    switch (photometricOf(tiff, layout, compression)) {
    case PHOTOMETRIC_MINISWHITE:
        layout.colors = TiffColors::GreyInverted;
        break;
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_MASK:
        layout.colors = TiffColors::Grey;
        break;
    case PHOTOMETRIC_PALETTE:
        layout.colors = TiffColors::Palette;
        if (Status palette = readPalette(tiff, layout); !palette)
            return palette;
        break;
    case PHOTOMETRIC_RGB:
        layout.colors = TiffColors::Rgb;
        break;
    case PHOTOMETRIC_SEPARATED:
        if (fieldOrDefault<uint16_t>(tiff, TIFFTAG_INKSET) != INKSET_CMYK)
            return unsupported(QStringLiteral("inks other than CMYK"));
        layout.colors = TiffColors::Cmyk;
        break;
    case PHOTOMETRIC_YCBCR:
        return readYCbCr(tiff, layout, compression);
    case PHOTOMETRIC_CIELAB:
        return readLab(tiff, layout, TiffColors::CieLab);
    case PHOTOMETRIC_ICCLAB:
        return readLab(tiff, layout, TiffColors::IccLab);
    default:
        return leaveToLibrary(tiff, layout);
    }
    if (compression == COMPRESSION_OJPEG)
        return leaveToLibrary(tiff, layout);
    if (layout.samples < layout.colorSamples())
        return damaged(QStringLiteral("%1 samples are too few").arg(layout.samples));
    return ok();
}

/// What the colours of a profile for the page must be; nothing where none can be used.
std::optional<ColorModel> profileModel(TIFF* tiff, const TiffLayout& layout)
{
    switch (layout.colors) {
    case TiffColors::Grey:
    case TiffColors::GreyInverted:
        return ColorModel::Gray;
    case TiffColors::Palette:
    case TiffColors::Rgb:
        return ColorModel::Rgb;
    case TiffColors::Cmyk:
        return ColorModel::Cmyk;
    default:
        if (fieldOrDefault<uint16_t>(tiff, TIFFTAG_PHOTOMETRIC) == PHOTOMETRIC_YCBCR)
            return ColorModel::Rgb;
        return {};
    }
}

void readProfile(TIFF* tiff, TiffLayout& layout)
{
    uint32_t length = 0;
    void* bytes = nullptr;
    if (!TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &length, &bytes) || !bytes || length > maxProfileBytes)
        return;
    const QByteArray profile(static_cast<const char*>(bytes), qsizetype(length));
    const auto model = colorModelOf(profile);
    if (model && model == profileModel(tiff, layout))
        layout.profile = profile;
}

void readAlpha(TIFF* tiff, TiffLayout& layout)
{
    uint16_t count = 0;
    uint16_t* kinds = nullptr;
    if (!TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) || count == 0 || !kinds ||
        layout.samples <= layout.colorSamples())
        return;
    // A sample of unspecified meaning can be anything (an infrared band), so that it hides nothing.
    if (kinds[0] == EXTRASAMPLE_ASSOCALPHA)
        layout.alpha = TiffAlpha::Associated;
    else if (kinds[0] == EXTRASAMPLE_UNASSALPHA)
        layout.alpha = TiffAlpha::Unassociated;
}

} // namespace

int TiffLayout::colorSamples() const
{
    switch (colors) {
    case TiffColors::Rgb:
    case TiffColors::YCbCr:
    case TiffColors::CieLab:
    case TiffColors::IccLab:
    case TiffColors::Library:
        return 3;
    case TiffColors::Cmyk:
        return 4;
    default:
        return 1;
    }
}

Result<TiffLayout> readTiffLayout(TIFF* tiff)
{
    TiffLayout layout;
    const Status sizes = readSizes(tiff, layout);
    if (!sizes)
        return sizes.error();
    const auto compression = fieldOrDefault<uint16_t>(tiff, TIFFTAG_COMPRESSION);
    if (!TIFFIsCODECConfigured(compression))
        return unsupported(QStringLiteral("compression %1").arg(compression));
    layout.compressed = compression != COMPRESSION_NONE;
    const Status numbers = readNumbers(tiff, layout);
    if (!numbers)
        return numbers.error();
    const Status colors = readColors(tiff, layout, compression);
    if (!colors)
        return colors.error();
    readAlpha(tiff, layout);
    readProfile(tiff, layout);
    return layout;
}

Status checkTiffMemory(const TiffLayout& layout, QImage::Format format, qint64 workBytes)
{
    const qint64 bits = QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 rowBytes = (layout.stored.width() * bits + 31) / 32 * 4;
    if (workBytes > Limits::machine().maxBytes - rowBytes * layout.stored.height())
        return Error{ErrorKind::TooLarge,
                     QStringLiteral("%1 MB to decode it are more than a picture may take on this machine")
                         .arg(workBytes >> 20)};
    return ok();
}

} // namespace quorvia::engine
