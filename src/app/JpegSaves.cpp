#include "app/JpegSaves.h"

#include "app/Settings.h"
#include "engine/ImageEngine.h"

namespace quorvia::app {

bool isJpegName(const QString& path)
{
    constexpr int length = 4;
    const QString end = path.right(length).toLower();
    return end == QLatin1String(".jpg") || end == QLatin1String("jpeg");
}

void takeJpegSettings(engine::ImageEngine& image)
{
    image.SetJPEGChrominance(read(setting::JPEGChrome));
    image.SetJPEGLuminance(read(setting::JPEGLum));
    image.SetJPEGSubSampling(read(setting::JPEGSampling));
    image.SetJPEGGrayscale(read(setting::JPEGGray) != 0);
}

} // namespace quorvia::app
