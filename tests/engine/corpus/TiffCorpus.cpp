#include "../TiffMaker.h"
#include "Corpus.h"

#include <QMap>

namespace quorvia::test {

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// `picture` by ImageMagick with `kind`, not compressed.
QByteArray plainFile(const Rgba& picture, const char* kind)
{
    const ScratchFiles files;
    const QString size = QStringLiteral("%1x%2").arg(picture.size.width()).arg(picture.size.height());
    const QStringList input = {QStringLiteral("-size"), size, QStringLiteral("-depth"), QStringLiteral("8"),
                               QStringLiteral("rgba:-")};
    const QStringList output = {QStringLiteral("-compress"), QStringLiteral("none"),
                                files.path(QStringLiteral("plain.tif"))};
    runTool(QStringLiteral("convert"), input + words(kind) + output, picture.pixels);
    return files.read(QStringLiteral("plain.tif"));
}

/// `plain` taken through tiffcp with `layout`.
QByteArray copied(const QByteArray& plain, const char* layout)
{
    const ScratchFiles files;
    const QString from = files.write(QStringLiteral("plain.tif"), plain);
    runTool(QStringLiteral("tiffcp"),
            words(layout) + QStringList{from, files.path(QStringLiteral("copied.tif"))});
    return files.read(QStringLiteral("copied.tif"));
}

Fixture fixture(const QString& name, const QByteArray& file)
{
    return {name, file, readWithMagick(file, QStringLiteral("tiff"))};
}

struct Variant
{
    const char* name;
    const char* kind;
    const char* layout;
};

constexpr Variant variants[] = {
    {"RGB, not compressed", "-alpha off -type TrueColor", "-c none -r 4"},
    {"RGB, one strip", "-alpha off -type TrueColor", "-c none -r 100000"},
    {"RGB, high byte first", "-alpha off -type TrueColor", "-c none -B"},
    {"RGB, BigTIFF", "-alpha off -type TrueColor", "-c lzw -8"},
    {"RGB, LZW", "-alpha off -type TrueColor", "-c lzw -r 5"},
    {"RGB, LZW with differences", "-alpha off -type TrueColor", "-c lzw:2 -r 5"},
    {"RGB, deflate", "-alpha off -type TrueColor", "-c zip -r 7"},
    {"RGB, deflate with differences", "-alpha off -type TrueColor", "-c zip:2 -r 7"},
    {"RGB, packbits", "-alpha off -type TrueColor", "-c packbits"},
    {"RGB, Zstandard", "-alpha off -type TrueColor", "-c zstd"},
    {"RGB, LZMA", "-alpha off -type TrueColor", "-c lzma"},
    {"RGB, tiles", "-alpha off -type TrueColor", "-c lzw -t -w 16 -l 32"},
    {"RGB, planes", "-alpha off -type TrueColor", "-c lzw -p separate -r 4"},
    {"RGB, planes in tiles", "-alpha off -type TrueColor", "-c zip -p separate -t -w 16 -l 16"},
    {"RGB, bits turned round", "-alpha off -type TrueColor", "-c lzw -f lsb2msb"},
    {"RGB, JPEG", "-alpha off -type TrueColor", "-c jpeg:raw:90 -r 16"},
    {"RGBA", "-type TrueColorAlpha", "-c zip:2 -r 3"},
    {"grey", "-alpha off -colorspace Gray -type Grayscale", "-c lzw:2"},
    {"palette", "-alpha off -type Palette", "-c packbits"},
    {"black and white, group 4", "-alpha off -monochrome -depth 1", "-c g4 -r 7"},
    {"black and white, group 3", "-alpha off -monochrome -depth 1", "-c g3:2d:fill"},
    {"black and white, packbits in tiles", "-alpha off -monochrome -depth 1", "-c packbits -t -w 16 -l 16"},
    {"black and white, JBIG", "-alpha off -monochrome -depth 1", "-c jbig"},
    {"CMYK", "-alpha off -colorspace CMYK -type ColorSeparation", "-c none -r 100000"},
};

} // namespace

std::vector<Fixture> tiffCorpus()
{
    std::vector<Fixture> all;
    const Rgba picture = samplePicture(QSize(37, 41));
    Rgba fewColors = picture; // for the palette
    for (char& value : fewColors.pixels)
        value = char(uchar(value) / 64 * 85);
    QMap<QByteArray, QByteArray> plain; // by kind
    for (const Variant& variant : variants) {
        QByteArray& file = plain[variant.kind];
        if (file.isEmpty())
            file =
                plainFile(QByteArray(variant.kind).contains("Palette") ? fewColors : picture, variant.kind);
        all.push_back(fixture(QStringLiteral("%1, 37 x 41").arg(QLatin1String(variant.name)),
                              copied(file, variant.layout)));
    }
    // The independent reader multiplies inks otherwise.
    all.back().tolerance = 1;
    constexpr auto color = "-alpha off -type TrueColor";
    for (const QSize size : {QSize(1, 1), QSize(1, 15000), QSize(15000, 1)}) {
        const QByteArray file = copied(plainFile(samplePicture(size), color), "-c lzw:2 -r 100");
        all.push_back(fixture(QStringLiteral("RGB, %1 x %2").arg(size.width()).arg(size.height()), file));
    }
    const QByteArray turned = copied(plain[color], "-c lzw");
    for (int orientation = 2; orientation <= 8; ++orientation) {
        const QByteArray file = withOrientation(turned, orientation);
        all.push_back({QStringLiteral("orientation %1, 37 x 41").arg(orientation), file,
                       readWithMagick(file, QStringLiteral("tiff"), {QStringLiteral("-auto-orient")})});
    }
    return all;
}

} // namespace quorvia::test
