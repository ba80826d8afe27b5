#include "MapTools.h"

namespace quorvia::test {

namespace {

Fixture fixture(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, mapPixels(file)};
}

QByteArray bits(QSize size)
{
    return piped("pgmtopbm -threshold", pgmOf(samplePicture(size)));
}

} // namespace

std::vector<Fixture> pbmCorpus()
{
    const QByteArray photo = pgmOf(samplePicture({50, 40}));
    QByteArray commented = bits({13, 7});
    commented.replace("13 7", "# first\n13 # columns\n#\n7");
    return {
        fixture("raw, 1 x 1", bits({1, 1})),
        fixture("raw, 8 x 8", bits({8, 8})),
        fixture("raw, 13 x 7", bits({13, 7})),
        fixture("raw, 17 x 33", bits({17, 33})),
        fixture("raw, 1 x 20000", bits({1, 20000})),
        fixture("raw, 20000 x 1", bits({20000, 1})),
        fixture("raw, dithered, 50 x 40", piped("pgmtopbm -floyd", photo)),
        fixture("plain, 13 x 7", piped("pamtopnm -plain", bits({13, 7}))),
        fixture("plain, 1 x 1", piped("pamtopnm -plain", bits({1, 1}))),
        fixture("plain, 200 x 3", piped("pamtopnm -plain", bits({200, 3}))),
        fixture("ImageMagick, 50 x 40", piped("convert pgm:- -monochrome pbm:-", photo)),
        fixture("ImageMagick, plain", piped("convert pgm:- -monochrome -compress none pbm:-", photo)),
        fixture("GraphicsMagick, 50 x 40", piped("gm convert pgm:- -monochrome pbm:-", photo)),
        fixture("raw, comments in the header", commented),
        fixture("arbitrary map, 13 x 7", piped("pamtopam", bits({13, 7}))),
    };
}

} // namespace quorvia::test
