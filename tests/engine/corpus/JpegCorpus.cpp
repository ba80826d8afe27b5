// JPEG files of libjpeg-turbo's writer, with the pixels that its reader gives.
#include "Corpus.h"
#include "JpegFixtures.h"
#include "ProfileFixtures.h"
#include "TiffMaker.h"

namespace quorvia::test {

namespace {

struct Recipe
{
    const char* name;
    const char* options;
    QSize size;
};

QByteArray segment(uchar code, const QByteArray& content)
{
    const qsizetype length = content.size() + 2;
    return QByteArray(1, '\xff') + char(code) + char(length >> 8) + char(length & 255) + content;
}

/// `profile` in pieces of `most` bytes, a segment each.
QByteArray profileSegments(const QByteArray& profile, qsizetype most)
{
    QByteArray segments;
    const qsizetype count = (profile.size() + most - 1) / most;
    for (qsizetype i = 0; i < count; ++i)
        segments += segment(0xe2, QByteArray("ICC_PROFILE\0", 12) + char(i + 1) + char(count) +
                                      profile.mid(i * most, most));
    return segments;
}

/// What cameras tell in EXIF: nothing that changes the pixels.
QByteArray cameraSegment()
{
    TiffMaker directory;
    directory.set(274, 3, {1});
    directory.set(282, 4, {72});
    directory.set(283, 4, {72});
    directory.set(296, 3, {2});
    directory.bigEndian = true;
    return segment(0xe1, QByteArray("Exif\0\0", 6) + directory.bytes());
}

/// `file` with `segments` in front of all others.
QByteArray withSegments(QByteArray file, const QByteArray& segments)
{
    return file.insert(2, segments);
}

} // namespace

std::vector<Fixture> jpegCorpus()
{
    const Recipe recipes[] = {
        {"2x2", "-sample 2x2", {83, 49}},
        {"2x1", "-sample 2x1", {83, 49}},
        {"1x2", "-sample 1x2", {83, 49}},
        {"1x1", "-sample 1x1 -quality 97", {83, 49}},
        {"4x1", "-sample 4x1", {83, 49}},
        {"1x4", "-sample 1x4", {83, 49}},
        {"4x2, progressive", "-sample 4x2 -progressive", {83, 49}},
        {"RGB", "-rgb", {40, 33}},
        {"progressive", "-progressive", {83, 49}},
        {"progressive with restarts", "-progressive -restart 2", {83, 49}},
        {"restart by block", "-restart 3B", {83, 49}},
        {"worst quality", "-quality 1", {83, 49}},
        {"best quality, optimised", "-quality 100 -optimize", {83, 49}},
        {"arithmetic", "-arithmetic", {83, 49}},
        {"arithmetic, progressive", "-arithmetic -progressive -restart 1", {83, 49}},
        {"grey", "-grayscale", {83, 49}},
        {"grey progressive", "-grayscale -progressive", {61, 7}},
        {"1 x 1", "", {1, 1}},
        {"1 x 20000", "", {1, 20000}},
        {"20000 x 1", "-grayscale", {20000, 1}},
        {"8 x 8", "", {8, 8}},
    };
    std::vector<Fixture> fixtures;
    const auto add = [&fixtures](const QString& name, const QByteArray& file) {
        fixtures.push_back({name, file, djpeg(file)});
    };
    for (const Recipe& recipe : recipes) {
        const QStringList options =
            QString::fromLatin1(recipe.options).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        add(QString::fromLatin1(recipe.name), colorJpeg(recipe.size, options));
    }
    const Rgba inks = samplePicture({61, 47});
    add(QStringLiteral("CMYK"), fourInkJpeg(inks, false));
    // No pixels to compare: the other readers take the inks for Adobe's, with the mark or without.
    fixtures.push_back(
        {QStringLiteral("CMYK without Adobe's mark"), withoutSegments(fourInkJpeg(inks, false), 0xee), {}});
    add(QStringLiteral("YCCK"), fourInkJpeg(inks, true));
    const QByteArray plain = colorJpeg({40, 33});
    add(QStringLiteral("profile in pieces"), withSegments(plain, profileSegments(rgbProfile(adobeRgb), 150)));
    add(QStringLiteral("profile of grey"), withSegments(colorJpeg({40, 33}, {QStringLiteral("-grayscale")}),
                                                        profileSegments(grayProfile(1.8), 100)));
    add(QStringLiteral("EXIF"), withSegments(plain, cameraSegment()));
    add(QStringLiteral("EXIF and a profile"),
        withSegments(plain, cameraSegment() + profileSegments(rgbProfile(displayP3), 200)));
    return fixtures;
}

} // namespace quorvia::test
