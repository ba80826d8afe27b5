// GIF files of netpbm, ImageMagick and GraphicsMagick.
#include "Corpus.h"
#include "PngFixtures.h"

namespace quorvia::test {

namespace {

struct Recipe
{
    const char* name;
    const char* program;
    const char* arguments; ///< it reads PPM from its input and writes to its output
    int levels;            ///< of each channel
    QSize size;
};

Fixture made(const Recipe& recipe)
{
    const QStringList arguments =
        QString::fromLatin1(recipe.arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const Rgba picture = coarse(samplePicture(recipe.size), recipe.levels);
    Fixture fixture{QString::fromLatin1(recipe.name),
                    runTool(QString::fromLatin1(recipe.program), arguments, ppmOf(picture)),
                    {}};
    if (fixture.name.contains(QLatin1String("further frame")))
        fixture.expected = readWithMagick(fixture.file, QStringLiteral("gif"),
                                          {QStringLiteral("-delete"), QStringLiteral("1")});
    else
        fixture.expected = expectedOf(fixture.file, QStringLiteral("gif"), picture);
    return fixture;
}

} // namespace

std::vector<Fixture> gifCorpus()
{
    const Recipe recipes[] = {
        {"netpbm", "pamtogif", "", 6, {37, 13}},
        {"netpbm, interlaced", "pamtogif", "-interlace", 6, {61, 47}},
        {"netpbm, 8 colours", "pamtogif", "", 2, {77, 21}},
        {"netpbm, transparent colour", "pamtogif", "-transparent=rgb:00/00/00", 2, {40, 9}},
        {"netpbm, 1 x 1", "pamtogif", "", 6, {1, 1}},
        {"netpbm, 1 x 20000", "pamtogif", "", 3, {1, 20000}},
        {"netpbm, 20000 x 1, interlaced", "pamtogif", "-interlace", 3, {20000, 1}},
        {"ImageMagick", "convert", "ppm:- gif:-", 6, {64, 48}},
        {"ImageMagick, GIF87a", "convert", "ppm:- gif87:-", 6, {33, 31}},
        {"ImageMagick, interlaced", "convert", "ppm:- -interlace GIF gif:-", 6, {33, 5}},
        {"ImageMagick, black and white", "convert", "ppm:- -monochrome gif:-", 2, {65, 33}},
        {"ImageMagick, transparent colour", "convert", "ppm:- -transparent #ff0000 gif:-", 2, {51, 12}},
        {"ImageMagick, a further frame", "convert", "ppm:- ( +clone -negate ) gif:-", 4, {20, 15}},
        {"GraphicsMagick", "gm", "convert ppm:- gif:-", 4, {100, 75}},
    };
    std::vector<Fixture> fixtures;
    for (const Recipe& recipe : recipes)
        fixtures.push_back(made(recipe));
    return fixtures;
}

} // namespace quorvia::test
