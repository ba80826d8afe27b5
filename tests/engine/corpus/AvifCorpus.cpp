#include "MapTools.h"

namespace quorvia::test {

namespace {

/// A file of avifenc's as avifdec sees it; `tolerance` covers the two ways to RGB.
Fixture avif(const char* name, const char* options, const QByteArray& png, int tolerance)
{
    const QByteArray command = QByteArray("avifenc -j 1 -s 8 ") + options + " @in @out";
    const QByteArray file = converted(command.constData(), png, "png", "avif");
    const QByteArray decoded = converted("avifdec -j 1 -d 8 @in @out", file, "avif", "png");
    return {QString::fromLatin1(name), file, pngPixels(decoded), tolerance};
}

/// The same turned by `transform`, which ImageMagick does to the source, since avifdec does not.
Fixture turned(const char* name, const char* options, const char* transform)
{
    const QByteArray png = samplePng({33, 17}, false);
    const QByteArray command = QByteArray("avifenc -j 1 -s 8 -l ") + options + " @in @out";
    return {QString::fromLatin1(name), converted(command.constData(), png, "png", "avif"),
            readWithMagick(png, QStringLiteral("png"), words(transform))};
}

/// A file whose halved colour planes each library brings up in its own way: as libheif's own program does.
Fixture byLibheif(const char* name, const char* command, const char* extension, QSize size, bool alpha)
{
    const QByteArray file = converted(command, samplePng(size, alpha), "png", extension);
    const QByteArray seen = converted("heif-convert @in @out", file, extension, "png");
    return {QString::fromLatin1(name), file, pngPixels(seen)};
}

} // namespace

std::vector<Fixture> avifCorpus()
{
    const QByteArray small = samplePng({33, 17}, false);
    const QByteArray clear = samplePng({33, 17}, true);
    return {
        avif("AVIF, lossless, 33 x 17", "-l", small, 0),
        avif("AVIF, lossless, 1 x 1", "-l", samplePng({1, 1}, false), 0),
        avif("AVIF, lossless, 1 x 300", "-l", samplePng({1, 300}, false), 0),
        avif("AVIF, lossless, alpha", "-l", clear, 0),
        avif("AVIF, lossless, premultiplied", "-l -p", clear, 3), // libyuv divides roughly
        avif("AVIF, 4:4:4", "-y 444 --min 10 --max 20", small, 3),
        byLibheif("AVIF, 4:2:0, 64 x 64", "avifenc -j 1 -s 8 -y 420 @in @out", "avif", {64, 64}, false),
        avif("AVIF, grey", "-y 400 --min 0 --max 0", small, 3),
        avif("AVIF, 10 bits", "-d 10 -y 444 --min 5 --max 10", small, 3),
        avif("AVIF, 12 bits, alpha", "-d 12 -y 444 --min 5 --max 10", clear, 3),
        avif("AVIF, grey, 10 bits", "-y 400 -d 10 --min 0 --max 0", small, 3),
        avif("AVIF, 12 bits, lossless, alpha", "-d 12 -l", clear, 0),
        // avifdec's own way back from colours of 8 bits under alpha is off by up to two.
        avif("AVIF, premultiplied", "-l --premultiply", clear, 2),
        avif("AVIF, premultiplied, 12 bits", "-l -d 12 --premultiply", clear, 0),
        avif("AVIF, tiles", "-l --grid 2x2", samplePng({256, 192}, false), 0),
        turned("AVIF, turned by 90 degrees", "--irot 1", "-rotate -90"),
        turned("AVIF, turned by 180 degrees", "--irot 2", "-rotate 180"),
        turned("AVIF, mirrored", "--imir 1", "-flop"),
        turned("AVIF, cropped", "--crop 4,2,20,10", "-crop 20x10+4+2 +repage"),
        byLibheif("HEIC, 33 x 17", "heif-enc -q 90 @in -o @out", "heic", {33, 17}, false),
        byLibheif("HEIC, 64 x 48", "heif-enc -q 90 @in -o @out", "heic", {64, 48}, false),
        byLibheif("HEIC, 4:4:4", "heif-enc -q 90 -p chroma=444 @in -o @out", "heic", {64, 48}, false),
        byLibheif("HEIC, alpha", "heif-enc -q 90 @in -o @out", "heic", {64, 48}, true),
    };
}

} // namespace quorvia::test
