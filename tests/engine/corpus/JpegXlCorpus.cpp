#include "MapTools.h"

namespace quorvia::test {

namespace {

Fixture fixture(const char* name, const char* options, const QByteArray& picture, const char* extension,
                int tolerance = 0)
{
    const QByteArray command = QByteArray("cjxl --quiet -e 3 ") + options + " @in @out";
    const QByteArray file = converted(command.constData(), picture, extension, "jxl");
    const QByteArray decoded = converted("djxl --quiet @in @out", file, "jxl", "png");
    return {QString::fromLatin1(name), file, pngPixels(decoded), tolerance};
}

/// The sample picture in grey with its alpha.
QByteArray greyWithAlpha(QSize size)
{
    const ScratchFiles files;
    const Rgba picture = samplePicture(size);
    const QString mask = files.write(QStringLiteral("in.pgm"), alphaPgmOf(picture));
    return runTool(QStringLiteral("pnmtopng"), {QStringLiteral("-quiet"), QStringLiteral("-alpha=") + mask},
                   pgmOf(picture));
}

/// A JPEG with an EXIF block that asks for `orientation`.
QByteArray orientedJpeg(int orientation)
{
    const QByteArray jpeg = piped("cjpeg -quality 90", sampleMap({24, 16}));
    const QByteArray exif = QByteArray("Exif\0\0", 6) +
                            QByteArray::fromHex("4d4d002a00000008 0001 0112 0003 00000001 00") +
                            char(orientation) + QByteArray::fromHex("0000 00000000");
    const QByteArray length = QByteArray(1, '\0') + char(exif.size() + 2);
    return jpeg.left(2) + QByteArray::fromHex("ffe1") + length + exif + jpeg.mid(2);
}

} // namespace

std::vector<Fixture> jpegXlCorpus()
{
    const QByteArray small = sampleMap({33, 17});
    const QByteArray clear = samplePng({33, 17}, true);
    const QByteArray grey = pgmOf(samplePicture({33, 17}));
    const QByteArray deepAlpha = piped("convert png:- -define png:exclude-chunks=gAMA,cHRM "
                                       "-define png:bit-depth=16 -define png:color-type=6 png:-",
                                       clear);
    return {
        fixture("lossless, 1 x 1", "-d 0", sampleMap({1, 1}), "ppm"),
        fixture("lossless, 33 x 17", "-d 0", small, "ppm"),
        fixture("lossless, 1 x 2000", "-d 0", sampleMap({1, 2000}), "ppm"),
        fixture("lossless, 2000 x 1", "-d 0", sampleMap({2000, 1}), "ppm"),
        fixture("lossless, grey", "-d 0", grey, "pgm"),
        fixture("lossless, grey, 16 bits", "-d 0", pgmOf(samplePicture({33, 17}), 65535), "pgm"),
        fixture("lossless, grey, alpha", "-d 0", greyWithAlpha({33, 17}), "png"),
        fixture("lossless, alpha", "-d 0", clear, "png"),
        // Its own program cannot write such pictures out again.
        {QStringLiteral("lossless, alpha, 16 bits"),
         converted("cjxl --quiet -e 3 -d 0 @in @out", deepAlpha, "png", "jxl"), pngPixels(clear)},
        fixture("lossless, 16 bits", "-d 0", piped("pamdepth -quiet 65535", small), "ppm"),
        fixture("lossless, premultiplied", "-d 0 --premultiply=1", clear, "png"),
        fixture("lossless, progressive", "-d 0 -p", sampleMap({100, 80}), "ppm"),
        fixture("lossless, in boxes", "-d 0 --container=1", small, "ppm"),
        fixture("lossless, 300 x 280, several groups", "-d 0", sampleMap({300, 280}), "ppm"),
        fixture("lossy", "-d 1", sampleMap({100, 80}), "ppm", 1),
        fixture("lossy, alpha", "-d 1", clear, "png", 1),
        fixture("lossy, grey", "-d 1", grey, "pgm", 1),
        fixture("a JPEG kept whole", "--lossless_jpeg=1", piped("cjpeg -quality 90", small), "jpg", 1),
        fixture("turned by its header", "--lossless_jpeg=1", orientedJpeg(6), "jpg", 1),
    };
}

} // namespace quorvia::test
