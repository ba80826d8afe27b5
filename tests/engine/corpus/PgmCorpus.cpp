#include "MapTools.h"

namespace quorvia::test {

namespace {

Fixture fixture(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, mapPixels(file)};
}

QByteArray grey(QSize size)
{
    return piped("ppmtopgm", sampleMap(size));
}

} // namespace

std::vector<Fixture> pgmCorpus()
{
    const QByteArray small = grey({33, 17});
    QByteArray commented = small;
    commented.replace("33 17", "33 17 # of them");
    return {
        fixture("raw, 1 x 1", grey({1, 1})),
        fixture("raw, 33 x 17", small),
        fixture("raw, 1 x 20000", grey({1, 20000})),
        fixture("raw, 20000 x 1", grey({20000, 1})),
        fixture("raw, maxval 1", piped("pamdepth -quiet 1", small)),
        fixture("raw, maxval 15", piped("pamdepth -quiet 15", small)),
        fixture("raw, maxval 100", piped("pamdepth -quiet 100", small)),
        fixture("raw, maxval 1000", piped("pamdepth -quiet 1000", small)),
        fixture("raw, maxval 65535", piped("pamdepth -quiet 65535", small)),
        fixture("plain", piped("pamtopnm -plain", small)),
        fixture("plain, maxval 4095", piped("pamdepth -quiet -plain 4095", small)),
        fixture("ImageMagick, 16 bits", piped("convert pgm:- -depth 16 pgm:-", small)),
        fixture("ImageMagick, plain", piped("convert pgm:- -compress none pgm:-", small)),
        fixture("GraphicsMagick", piped("gm convert pgm:- pgm:-", small)),
        fixture("comment in the header", commented),
        fixture("arbitrary map, grey", piped("pamtopam", small)),
    };
}

} // namespace quorvia::test
