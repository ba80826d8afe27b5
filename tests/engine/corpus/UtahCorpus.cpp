#include "MapTools.h"
#include "UtahMaker.h"

namespace quorvia::test {

namespace {

Fixture byNetpbm(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, fromPnm(runTool(QStringLiteral("rletopnm"), {}, file))};
}

/// The same with alpha, which netpbm gives as a map of its own.
Fixture withAlpha(const char* name, const QByteArray& file)
{
    const ScratchFiles files;
    const QString mask = files.path(QStringLiteral("alpha.pgm"));
    Fixture fixture = {
        QString::fromLatin1(name), file,
        fromPnm(runTool(QStringLiteral("rletopnm"), {QStringLiteral("--alphaout=") + mask}, file))};
    const Rgba alpha = fromPnm(files.read(QStringLiteral("alpha.pgm")));
    for (qsizetype i = 0; i < fixture.expected.pixels.size(); i += 4)
        fixture.expected.pixels[i + 3] = alpha.pixels[i];
    return fixture;
}

Fixture byMagick(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, readWithMagick(file, QStringLiteral("rle"))};
}

/// A channel of the colour map: 256 entries, the value in the upper half of 16 bits.
QByteArray mapChannel(int factor, int offset)
{
    QByteArray map;
    for (int i = 0; i < 256; ++i) {
        map += '\0';
        map += char((i * factor + offset) & 255);
    }
    return map;
}

/// Four rows of 300 pixels whose runs and skips need the long form of the codes.
QByteArray longCodes()
{
    UtahMaker maker({300, 4}, 3, UtahMaker::NoBackground);
    maker.color(0).run(300, 200).color(1).skipPixels(290).pixels("0123456789").color(2).run(257, 9);
    maker.skipLines(2).color(0).pixels(QByteArray(300, 'x'));
    return maker.file();
}

/// Grey or three channels of 20 x 3 pixels through a colour map.
QByteArray mapped(int channels, int maps)
{
    QByteArray map;
    for (int i = 0; i < maps; ++i)
        map += mapChannel(3 + 2 * i, 40 * i);
    UtahMaker maker({20, 3}, channels, UtahMaker::NoBackground, {}, maps, 8, map);
    for (int y = 0; y < 3; ++y) {
        for (int channel = 0; channel < channels; ++channel)
            maker.color(channel).pixels("abcdefghij").run(10, 100 + y + 50 * channel);
        maker.skipLines(1);
    }
    return maker.file();
}

} // namespace

std::vector<Fixture> utahCorpus()
{
    const auto grey = [](QSize size) { return piped("pnmtorle", pgmOf(samplePicture(size))); };
    const auto color = [](QSize size) { return piped("pnmtorle", sampleMap(size)); };
    UtahMaker background({6, 4}, 3, UtahMaker::ClearFirst, QByteArray::fromHex("0a141e"));
    background.color(0).skipPixels(1).run(3, 99).skipLines(2).color(1).pixels("ab");
    UtahMaker overlay({6, 4}, 3, 0, QByteArray::fromHex("0a141e"));
    overlay.color(0).skipPixels(1).run(3, 99).skipLines(2).color(1).pixels("ab");
    return {
        byNetpbm("grey, 1 x 1", grey({1, 1})),
        byNetpbm("grey, 33 x 17", grey({33, 17})),
        byNetpbm("colour, 1 x 1", color({1, 1})),
        byNetpbm("colour, 33 x 17", color({33, 17})),
        byNetpbm("colour, 1 x 20000", color({1, 20000})),
        byNetpbm("colour, 20000 x 1", color({20000, 1})),
        byNetpbm("bilevel", piped("pnmtorle", piped("pgmtopbm -floyd", pgmOf(samplePicture({40, 20}))))),
        withAlpha("colour with alpha", piped("pnmtorle -alpha", sampleMap({33, 17}))),
        byNetpbm("long codes", longCodes()),
        byMagick("background, corner off the origin", background.at(3, 4).file()),
        byNetpbm("background not to be cleared to", overlay.file()),
        byNetpbm("palette", mapped(1, 3)),
        byNetpbm("colour through a map of three", mapped(3, 3)),
    };
}

} // namespace quorvia::test
