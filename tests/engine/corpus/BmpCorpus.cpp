// Bitmaps of netpbm, ImageMagick and GraphicsMagick; the same without their file header; run-length ones,
// those with 4 bits written here, since no program makes them.
#include "Corpus.h"
#include "PngFixtures.h"
#include "ProfileFixtures.h"

#include <QtEndian>

namespace quorvia::test {

namespace {

struct Recipe
{
    const char* name;
    const char* program;
    const char* arguments; ///< it reads PPM from its input and writes to its output
    int levels;            ///< of each channel; few of them fit a palette
    QSize size;
};

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

Fixture made(const Recipe& recipe)
{
    const Rgba picture = coarse(samplePicture(recipe.size), recipe.levels);
    Fixture fixture{QString::fromLatin1(recipe.name),
                    runTool(QString::fromLatin1(recipe.program), words(recipe.arguments), ppmOf(picture)),
                    {}};
    fixture.expected = expectedOf(fixture.file, QStringLiteral("bmp"), picture);
    return fixture;
}

/// The bitmap without its file header.
QByteArray withoutFileHeader(const QByteArray& file)
{
    return file.mid(14);
}

void put32(QByteArray& out, quint32 value)
{
    const quint32 little = qToLittleEndian(value);
    out.append(reinterpret_cast<const char*>(&little), 4);
}

void put16(QByteArray& out, int value)
{
    out.append(char(value & 255)).append(char(value >> 8));
}

/// A bitmap of 16 grades in 4 bits, coded by `rowCodes` row by row from the bottom.
QByteArray fourBitRuns(QSize size, QByteArray (*rowCodes)(QSize size, int y))
{
    QByteArray codes;
    for (int y = size.height() - 1; y >= 0; --y)
        codes += rowCodes(size, y) + QByteArray(2, '\0');
    codes[codes.size() - 1] = 1; // the end of the picture in place of the end of its last row
    QByteArray palette;
    for (int grade = 0; grade < 16; ++grade)
        put32(palette, quint32(grade * 0x111111));
    QByteArray file = "BM";
    put32(file, quint32(54 + palette.size() + codes.size()));
    put32(file, 0);
    put32(file, quint32(54 + palette.size()));
    put32(file, 40);
    put32(file, quint32(size.width()));
    put32(file, quint32(size.height()));
    put16(file, 1);
    put16(file, 4);
    put32(file, 2); // run length, 4 bits
    put32(file, quint32(codes.size()));
    put32(file, 2835);
    put32(file, 2835);
    put32(file, 16);
    put32(file, 0);
    return file + palette + codes;
}

int grade(QSize size, int x, int y)
{
    return (x * 5 / std::max(1, size.width()) + y) & 15;
}

/// Runs of one grade each.
QByteArray solidRuns(QSize size, int y)
{
    QByteArray codes;
    for (int x = 0; x < size.width();) {
        int end = x;
        while (end < size.width() && end - x < 255 && grade(size, end, y) == grade(size, x, y))
            ++end;
        codes.append(char(end - x)).append(char(grade(size, x, y) * 17));
        x = end;
    }
    return codes;
}

/// Runs of two grades in turn.
QByteArray pairedRuns(QSize size, int y)
{
    QByteArray codes;
    for (int x = 0; x < size.width(); x += 7)
        codes.append(char(std::min(7, size.width() - x))).append(char(((y & 15) << 4) | (x & 15)));
    return codes;
}

/// Literal pixels, filled up to 16 bits.
QByteArray literals(QSize size, int y)
{
    QByteArray codes;
    for (int x = 0; x < size.width(); x += 9) {
        const int count = std::min(9, size.width() - x);
        if (count < 3) { // shorter ones have other meanings
            for (int i = 0; i < count; ++i)
                codes.append(char(1)).append(char(((x + i + y) & 15) << 4));
            continue;
        }
        codes.append('\0').append(char(count));
        const int bytes = (count + 3) / 4 * 2;
        for (int i = 0; i < bytes; ++i)
            codes.append(char((((x + 2 * i + y) & 15) << 4) | ((x + 2 * i + 1 + y) & 15)));
    }
    return codes;
}

Fixture fourBits(const char* name, QSize size, QByteArray (*rowCodes)(QSize, int))
{
    Fixture fixture{QString::fromLatin1(name), fourBitRuns(size, rowCodes), {}};
    fixture.expected = readWithMagick(fixture.file, QStringLiteral("bmp"));
    return fixture;
}

std::vector<Fixture> madeAll(std::initializer_list<Recipe> recipes)
{
    std::vector<Fixture> fixtures;
    for (const Recipe& recipe : recipes)
        fixtures.push_back(made(recipe));
    return fixtures;
}

/// A bitmap with a colour profile behind its pixels.
Fixture profiled()
{
    const ScratchFiles files;
    const QString profile = files.write(QStringLiteral("some.icc"), rgbProfile(adobeRgb));
    Fixture fixture{
        QStringLiteral("version 5, profile"),
        runTool(QStringLiteral("convert"),
                {QStringLiteral("ppm:-"), QStringLiteral("-profile"), profile, QStringLiteral("bmp:-")},
                ppmOf(samplePicture(QSize(33, 31)))),
        {}};
    fixture.expected = readWithMagick(fixture.file, QStringLiteral("bmp"));
    return fixture;
}

} // namespace

std::vector<Fixture> bmpCorpus()
{
    std::vector<Fixture> fixtures = madeAll({
        {"24 bits", "ppmtobmp", "-windows -bpp=24", 256, {37, 13}},
        {"24 bits, OS/2", "ppmtobmp", "-os2 -bpp=24", 256, {23, 9}},
        {"8 bits", "ppmtobmp", "-windows -bpp=8", 5, {61, 17}},
        {"8 bits, OS/2", "ppmtobmp", "-os2 -bpp=8", 5, {30, 7}},
        {"4 bits", "ppmtobmp", "-windows -bpp=4", 2, {37, 5}},
        {"4 bits, OS/2", "ppmtobmp", "-os2 -bpp=4", 2, {9, 9}},
        {"1 bit", "convert", "ppm:- -monochrome -type bilevel bmp3:-", 2, {77, 21}},
        {"version 3, 24 bits", "convert", "ppm:- -type TrueColor bmp3:-", 256, {64, 48}},
        {"version 5, 24 bits", "convert", "ppm:- -type TrueColor bmp:-", 256, {33, 31}},
        {"version 5, 32 bits",
         "convert",
         "ppm:- -alpha set -channel A -evaluate set 60% bmp:-",
         256,
         {33, 31}},
        {"16 bits, 565", "convert", "ppm:- -define bmp:subtype=RGB565 bmp:-", 256, {29, 14}},
        {"16 bits, 555", "convert", "ppm:- -define bmp:subtype=RGB555 bmp:-", 256, {29, 14}},
        {"GraphicsMagick", "gm", "convert ppm:- -type TrueColor bmp:-", 256, {101, 3}},
        {"1 x 1", "ppmtobmp", "-windows -bpp=24", 256, {1, 1}},
        {"1 x 20000", "ppmtobmp", "-windows -bpp=24", 256, {1, 20000}},
        {"20000 x 1", "ppmtobmp", "-windows -bpp=8", 4, {20000, 1}},
    });
    fixtures.push_back(profiled());
    return fixtures;
}

std::vector<Fixture> dibCorpus()
{
    std::vector<Fixture> fixtures = madeAll({
        {"with a file header", "ppmtobmp", "-windows -bpp=24", 256, {37, 13}},
        {"with a file header, OS/2", "ppmtobmp", "-os2 -bpp=8", 4, {18, 13}},
    });
    const std::vector<Fixture> stripped = madeAll({
        {"24 bits", "ppmtobmp", "-windows -bpp=24", 256, {37, 13}},
        {"24 bits, OS/2", "ppmtobmp", "-os2 -bpp=24", 256, {37, 13}},
        {"8 bits", "ppmtobmp", "-windows -bpp=8", 5, {61, 17}},
        {"8 bits, OS/2", "ppmtobmp", "-os2 -bpp=8", 5, {30, 7}},
        {"4 bits", "ppmtobmp", "-windows -bpp=4", 2, {37, 5}},
        {"1 bit", "convert", "ppm:- -monochrome -type bilevel bmp3:-", 2, {77, 21}},
        {"version 5, 24 bits", "convert", "ppm:- -type TrueColor bmp:-", 256, {33, 31}},
        {"16 bits, 565", "convert", "ppm:- -define bmp:subtype=RGB565 bmp:-", 256, {29, 14}},
        {"runs", "convert", "ppm:- -type Palette -compress RLE bmp3:-", 4, {50, 14}},
        {"1 x 1", "ppmtobmp", "-windows -bpp=24", 256, {1, 1}},
        {"1 x 20000", "ppmtobmp", "-windows -bpp=24", 256, {1, 20000}},
    });
    for (Fixture fixture : stripped) {
        fixture.name += QStringLiteral(", no file header");
        fixture.file = withoutFileHeader(fixture.file);
        fixture.marked = !fixture.name.contains(QLatin1String("OS/2")); // 12 is too small a number for a mark
        fixtures.push_back(fixture);
    }
    return fixtures;
}

std::vector<Fixture> rleCorpus()
{
    std::vector<Fixture> fixtures = madeAll({
        {"8 bits", "convert", "ppm:- -type Palette -compress RLE bmp3:-", 5, {300, 17}},
        {"8 bits, flat", "convert", "ppm:- -threshold 50% -type Palette -compress RLE bmp3:-", 2, {601, 40}},
        {"8 bits, version 4", "convert", "ppm:- -type Palette -compress RLE bmp:-", 4, {33, 9}},
        {"8 bits, GraphicsMagick", "gm", "convert ppm:- -type Palette -compress RLE bmp3:-", 5, {301, 17}},
        {"8 bits, 1 x 1", "convert", "ppm:- -type Palette -compress RLE bmp3:-", 5, {1, 1}},
        {"8 bits, 1 x 20000", "gm", "convert ppm:- -type Palette -compress RLE bmp3:-", 2, {1, 20000}},
        {"8 bits, 20000 x 1", "gm", "convert ppm:- -type Palette -compress RLE bmp3:-", 2, {20000, 1}},
    });
    fixtures.push_back(fourBits("4 bits", {127, 64}, solidRuns));
    fixtures.push_back(fourBits("4 bits, runs of pairs", {61, 33}, pairedRuns));
    fixtures.push_back(fourBits("4 bits, literals", {83, 21}, literals));
    fixtures.push_back(fourBits("4 bits, 1 x 1", {1, 1}, solidRuns));
    fixtures.push_back(fourBits("4 bits, 16000 x 1", {16000, 1}, solidRuns));
    // They have no alpha, and what ImageMagick tells for it is whatever stood in its memory before.
    for (Fixture& fixture : fixtures) {
        for (qsizetype i = 3; i < fixture.expected.pixels.size(); i += 4)
            fixture.expected.pixels[i] = char(255);
    }
    return fixtures;
}

} // namespace quorvia::test
