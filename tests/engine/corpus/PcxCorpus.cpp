#include "MapTools.h"

namespace quorvia::test {

namespace {

Fixture fixture(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, fromPnm(runTool(QStringLiteral("pcxtoppm"), {}, file))};
}

QByteArray pcx(const char* options, const QByteArray& map)
{
    return piped((QByteArray("ppmtopcx -quiet ") + options).constData(), map);
}

} // namespace

std::vector<Fixture> pcxCorpus()
{
    const QByteArray small = sampleMap({33, 17});
    const QByteArray bits = piped("pgmtopbm -floyd", pgmOf(samplePicture({37, 21})));
    return {
        fixture("24 bits, 1 x 1", pcx("-24bit", sampleMap({1, 1}))),
        fixture("24 bits, 33 x 17", pcx("-24bit", small)),
        fixture("24 bits, 1 x 20000", pcx("-24bit", sampleMap({1, 20000}))),
        fixture("24 bits, 20000 x 1", pcx("-24bit", sampleMap({20000, 1}))),
        fixture("8 bits, 200 colours", pcx("", fewColors({33, 17}, 200))),
        fixture("8 bits, 3 colours", pcx("-8bit", fewColors({33, 17}, 3))),
        fixture("4 planes, 16 colours", pcx("", fewColors({33, 17}, 16))),
        fixture("3 planes, 8 colours", pcx("", fewColors({29, 9}, 8))),
        fixture("2 planes, 4 colours", pcx("", fewColors({30, 9}, 4))),
        fixture("4 bits packed, 16 colours", pcx("-packed", fewColors({33, 17}, 16))),
        fixture("2 bits packed, 4 colours", pcx("-packed", fewColors({35, 9}, 4))),
        fixture("1 bit, 37 x 21", pcx("", bits)),
        fixture("1 bit, 1 x 1", pcx("", piped("pgmtopbm -threshold", pgmOf(samplePicture({1, 1}))))),
        fixture("1 bit in colours", pcx("", fewColors({20, 20}, 2))),
        fixture("window off the origin", pcx("-24bit -xpos=7 -ypos=5", small)),
        fixture("ImageMagick, 24 bits", piped("convert ppm:- pcx:-", small)),
        fixture("ImageMagick, palette", piped("convert ppm:- -type Palette pcx:-", fewColors({33, 17}, 90))),
        fixture("GraphicsMagick, 24 bits", piped("gm convert ppm:- pcx:-", small)),
        fixture("GraphicsMagick, 1 bit", piped("gm convert pbm:- -monochrome pcx:-", bits)),
    };
}

} // namespace quorvia::test
