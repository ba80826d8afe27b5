// The imaging control: what it writes to files.
#include "engine/ColorConversion.h"
#include "engine/ImageEngine.h"
#include "engine/ImageEnginePrivate.h"
#include "engine/WholeFile.h"

#include <QFileInfo>

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace quorvia::engine {

namespace {

constexpr int jpegSaveType = 8;

bool isBlackAndWhite(const QImage& image)
{
    const QList<QRgb> table = image.colorTable();
    return std::all_of(table.begin(), table.end(),
                       [](QRgb color) { return color == qRgb(0, 0, 0) || color == qRgb(255, 255, 255); });
}

/// The colours in which encoders write `image`; nothing where it is grey in one format and a palette in the
/// next.
std::optional<ColorModel> writtenModel(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8:
        return ColorModel::Gray;
    case QImage::Format_Mono:
        if (isBlackAndWhite(image))
            return {};
        break;
    default:
        break;
    }
    return ColorModel::Rgb;
}

/// True when `codec` writes `image` together with `profile`.
bool keeps(const Codec& codec, const QString& extension, const QByteArray& profile, const QImage& image)
{
    const auto model = colorModelOf(profile);
    return model && model == writtenModel(image) && codec.keepsProfile(extension, *model);
}

} // namespace

void ImageEngine::SetSaveFileName(const QString& path)
{
    d->saveFileName = path;
}

void ImageEngine::SetSaveFileType(int type)
{
    d->saveFileType = type;
}

bool ImageEngine::SaveFile()
{
    const auto write = [this]() -> Status {
        QImage image = d->fullImage();
        if (image.isNull())
            return Error{ErrorKind::WriteFailed, QStringLiteral("no image is held")};
        const QString extension =
            d->saveFileType == jpegSaveType ? QStringLiteral("jpg") : QFileInfo(d->saveFileName).suffix();
        const Codec* codec = encoderFor(extension);
        if (!codec)
            return Error{ErrorKind::Unsupported,
                         QStringLiteral("no format is written for the extension \"%1\"").arg(extension)};
        EncodeOptions options = d->encodeOptions;
        const QByteArray profile = d->profile();
        if (keeps(*codec, extension.toLower(), profile, image))
            options.profile = profile;
        else
            image = toSrgb(std::move(image), profile);
        if (image.isNull())
            return Error{ErrorKind::WriteFailed, QStringLiteral("no memory to convert the colours")};
        const auto bytes = codec->encode(image, extension, options);
        if (!bytes)
            return bytes.error();
        const auto writeFile = d->saveIsScratch ? writeScratchFile : writeWholeFile;
        return writeFile(d->saveFileName, *bytes);
    };
    const auto save = [&write]() -> Status {
        try {
            return write();
        } catch (const std::bad_alloc&) {
            return Error{ErrorKind::WriteFailed, QStringLiteral("no memory to write the file")};
        }
    };
    const Status saved = save();
    d->lastError = saved ? QString() : saved.error().text;
    if (saved)
        d->loader->forget(d->saveFileName);
    return static_cast<bool>(saved);
}

void ImageEngine::SetSaveIsScratch(bool scratch)
{
    d->saveIsScratch = scratch;
}

void ImageEngine::SetJPEGLuminance(int strength)
{
    d->encodeOptions.jpeg.luminance = strength;
}

void ImageEngine::SetJPEGChrominance(int strength)
{
    d->encodeOptions.jpeg.chrominance = strength;
}

void ImageEngine::SetJPEGSubSampling(int mode)
{
    d->encodeOptions.jpeg.subSampling = mode;
}

void ImageEngine::SetJPEGGrayscale(bool gray)
{
    d->encodeOptions.jpeg.gray = gray;
}

} // namespace quorvia::engine
