#include "MapTools.h"

namespace quorvia::test {

namespace {

Fixture fixture(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, mapPixels(file)};
}

QByteArray withAlpha(QSize size, const char* options)
{
    const QByteArray command = QByteArray("convert png:- ") + options + " pam:-";
    return piped(command.constData(), samplePng(size, true));
}

} // namespace

std::vector<Fixture> ppmCorpus()
{
    const QByteArray small = sampleMap({33, 17});
    QByteArray commented = small;
    commented.replace("33 17\n255\n", "# a\n# b\n33\t17\r\n#c\n255\n");
    return {
        fixture("raw, 1 x 1", piped("pamtopnm", sampleMap({1, 1}))),
        fixture("raw, 33 x 17", piped("pamtopnm", small)),
        fixture("raw, 1 x 20000", piped("pamtopnm", sampleMap({1, 20000}))),
        fixture("raw, 20000 x 1", piped("pamtopnm", sampleMap({20000, 1}))),
        fixture("raw, maxval 1", piped("pamdepth -quiet 1", small)),
        fixture("raw, maxval 31", piped("pamdepth -quiet 31", small)),
        fixture("raw, maxval 256", piped("pamdepth -quiet 256", small)),
        fixture("raw, maxval 65535", piped("pamdepth -quiet 65535", small)),
        fixture("plain", piped("pamtopnm -plain", small)),
        fixture("plain, maxval 1023", piped("pamdepth -quiet -plain 1023", small)),
        fixture("ImageMagick, 16 bits", piped("convert ppm:- -depth 16 ppm:-", small)),
        fixture("ImageMagick, plain", piped("convert ppm:- -compress none ppm:-", small)),
        fixture("GraphicsMagick", piped("gm convert ppm:- ppm:-", small)),
        fixture("comments in the header", commented),
        fixture("arbitrary map, RGB", piped("pamtopam", small)),
        fixture("arbitrary map, RGB and alpha", withAlpha({33, 17}, "-depth 8")),
        fixture("arbitrary map, RGB and alpha of 16 bits", withAlpha({33, 17}, "-depth 16")),
        fixture("arbitrary map, grey and alpha", withAlpha({33, 17}, "-colorspace gray -depth 8")),
    };
}

} // namespace quorvia::test
