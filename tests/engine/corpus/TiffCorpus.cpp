#include "Corpus.h"
#include "TiffMaker.h"

#include <QMap>

#include <lcms2.h>

#include <algorithm>
#include <iterator>

namespace quorvia::test {

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// `picture` by ImageMagick with `kind`.
QByteArray plainFile(const Rgba& picture, const char* kind)
{
    const ScratchFiles files;
    const QString size = QStringLiteral("%1x%2").arg(picture.size.width()).arg(picture.size.height());
    const QStringList input = {QStringLiteral("-size"), size, QStringLiteral("-depth"), QStringLiteral("8"),
                               QStringLiteral("rgba:-")};
    // Without compression ImageMagick 6 cannot write floats: it sets what belongs to a compression.
    const bool isFloat = QByteArray(kind).contains("floating");
    const QStringList output = {QStringLiteral("-compress"),
                                isFloat ? QStringLiteral("zip") : QStringLiteral("none"),
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

/// Fills in what ImageMagick reads of `fixtures`, in one call.
void expectMagick(std::vector<Fixture>& fixtures, const QStringList& options = {})
{
    const ScratchFiles files;
    const auto name = [](size_t i, const char* end) {
        return QStringLiteral("%1%2").arg(i, 3, 10, QLatin1Char('0')).arg(QLatin1String(end));
    };
    QStringList arguments;
    for (size_t i = 0; i < fixtures.size(); ++i)
        arguments += files.write(name(i, ".tif"), fixtures[i].file);
    arguments += options;
    // Deep samples are rounded here: ImageMagick drops their lower halves.
    arguments += words("-alpha on -type TrueColorAlpha -depth 16 +adjoin");
    arguments += files.path(QStringLiteral("%03d.pam"));
    runTool(QStringLiteral("convert"), arguments);
    for (size_t i = 0; i < fixtures.size(); ++i)
        fixtures[i].expected = fromPnm(files.read(name(i, ".pam")));
}

struct Variant
{
    const char* name;
    const char* kind;
    const char* layout; ///< for tiffcp
    int tolerance = 0;
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
    // The independent reader multiplies inks otherwise.
    {"CMYK", "-alpha off -colorspace CMYK -type ColorSeparation", "-c none -r 100000", 1},
    {"RGB of 16 bits", "-alpha off -type TrueColor -evaluate Multiply 0.77 -depth 16", "-c zip:2 -r 9"},
    {"RGB of 16 bits, high byte first", "-alpha off -type TrueColor -evaluate Multiply 0.77 -depth 16",
     "-c none -B -r 9"},
    {"grey of 16 bits", "-alpha off -colorspace Gray -type Grayscale -depth 16", "-c lzw -r 6"},
    {"float", "-alpha off -type TrueColor -depth 32 -define quantum:format=floating-point", "-c none -r 8"},
    {"float, deflate with differences",
     "-alpha off -type TrueColor -depth 32 -define quantum:format=floating-point", "-c zip:3 -r 8"},
    {"alpha beside the colours", "-type TrueColorAlpha -define tiff:alpha=unassociated", "-c lzw:2 -r 5"},
    // A half is rounded up here, and down after ImageMagick has rounded it to 16 bits.
    {"alpha multiplied in", "-type TrueColorAlpha -define tiff:alpha=associated", "-c lzw -r 5", 1},
    {"grey and alpha", "-colorspace Gray -type GrayscaleAlpha", "-c zip"},
    {"grey, 0 is white", "-alpha off -colorspace Gray -type Grayscale -define quantum:polarity=min-is-white",
     "-c packbits"},
    // It rounds between YCbCr and RGB otherwise.
    {"YCbCr", "-alpha off -colorspace YCbCr", "-c none -r 10", 1},
};

/// A page in Lab, and what lcms2 makes of it under D50: the picture tools take Lab as seen under D65.
Fixture labFixture(int bits, const char* layout)
{
    const Rgba values = samplePicture(QSize(37, 41));
    const int scale = bits == 16 ? 256 : 1;
    const double full = bits == 16 ? 65535 : 255;
    QByteArray samples;
    std::vector<cmsCIELab> colors;
    for (qsizetype i = 0; i < values.pixels.size(); i += 4) {
        const auto hue = [&](qsizetype c) { return uchar(values.pixels[i + c]) / 2 - 64; };
        const int lightness = uchar(values.pixels[i]) * scale;
        colors.push_back({lightness * 100 / full, double(hue(1)), double(hue(2))});
        for (const int sample : {lightness, hue(1) * scale, hue(2) * scale}) {
            samples += char(sample);
            if (bits == 16)
                samples += char(sample >> 8);
        }
    }
    const cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    const cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    const cmsHTRANSFORM transform = cmsCreateTransform(lab, TYPE_Lab_DBL, srgb, TYPE_RGBA_8,
                                                       INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
    Rgba expected{values.size, QByteArray(values.pixels.size(), char(255))};
    cmsDoTransform(transform, colors.data(), expected.pixels.data(), cmsUInt32Number(colors.size()));
    cmsDeleteTransform(transform);
    cmsCloseProfile(lab);
    cmsCloseProfile(srgb);
    TiffMaker tiff;
    tiff.page(values.size.width(), values.size.height(), bits, 3, 8, samples);
    constexpr int tolerance = 2; // their roundings on the way differ
    return {QStringLiteral("Lab of %1 bits").arg(bits), copied(tiff.bytes(), layout), expected, tolerance};
}

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
        all.push_back({QStringLiteral("%1, 37 x 41").arg(QLatin1String(variant.name)),
                       copied(file, variant.layout),
                       {},
                       variant.tolerance});
    }
    constexpr auto color = "-alpha off -type TrueColor";
    for (const QSize size : {QSize(1, 1), QSize(1, 15000), QSize(15000, 1)}) {
        const QByteArray file = copied(plainFile(samplePicture(size), color), "-c lzw:2 -r 100");
        all.push_back({QStringLiteral("RGB, %1 x %2").arg(size.width()).arg(size.height()), file, {}});
    }
    expectMagick(all);
    std::vector<Fixture> orientations;
    const QByteArray turned = copied(plain[color], "-c lzw");
    for (int orientation = 2; orientation <= 8; ++orientation) {
        orientations.push_back({QStringLiteral("orientation %1, 37 x 41").arg(orientation),
                                withOrientation(turned, orientation),
                                {}});
    }
    expectMagick(orientations, {QStringLiteral("-auto-orient")});
    std::move(orientations.begin(), orientations.end(), std::back_inserter(all));
    all.push_back(labFixture(8, "-c lzw -r 10"));
    all.push_back(labFixture(16, "-c zip -r 10"));
    return all;
}

} // namespace quorvia::test
