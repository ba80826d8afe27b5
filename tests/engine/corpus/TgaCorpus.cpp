#include "Corpus.h"
#include "TgaMaker.h"

namespace quorvia::test {

namespace {

QString named(const char* what, QSize size)
{
    return QStringLiteral("%1, %2 x %3").arg(QLatin1String(what)).arg(size.width()).arg(size.height());
}

/// `file` as netpbm reads it; its reader gives colours and alpha apart.
Rgba readByNetpbm(const QByteArray& file, bool alpha)
{
    const ScratchFiles files;
    const QString in = files.write(QStringLiteral("in.tga"), file);
    const QString clear = files.path(QStringLiteral("alpha.pgm"));
    QStringList options = {in};
    if (alpha)
        options.prepend(QStringLiteral("--alphaout=") + clear);
    Rgba picture = fromPnm(runTool(QStringLiteral("tgatoppm"), options));
    if (alpha) {
        const Rgba alphas = fromPnm(files.read(QStringLiteral("alpha.pgm")));
        for (qsizetype i = 0; i < picture.pixels.size() && i < alphas.pixels.size(); i += 4)
            picture.pixels[i + 3] = alphas.pixels[i];
    }
    return picture;
}

/// `file` as GraphicsMagick reads it: 5 bits are repeated to fill 8, where netpbm rounds them.
Rgba readByGraphics(const QByteArray& file)
{
    const ScratchFiles files;
    const QString in = files.write(QStringLiteral("in.tga"), file);
    return fromPnm(runTool(QStringLiteral("gm"), {QStringLiteral("convert"), in, QStringLiteral("-depth"),
                                                  QStringLiteral("8"), QStringLiteral("ppm:-")}));
}

/// What `program` makes of a PNM.
QByteArray made(const char* program, const char* options, const QByteArray& pnm)
{
    return runTool(QLatin1String(program),
                   QString::fromLatin1(options).split(QLatin1Char(' '), Qt::SkipEmptyParts), pnm);
}

/// RGB and alpha as PAM.
QByteArray pamOf(const Rgba& picture)
{
    return "P7\nWIDTH " + QByteArray::number(picture.size.width()) + "\nHEIGHT " +
           QByteArray::number(picture.size.height()) + "\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n" +
           picture.pixels;
}

/// Few colours in patches: something for run lengths and palettes.
QByteArray patches(QSize size, int colors)
{
    QByteArray bytes =
        "P6\n" + QByteArray::number(size.width()) + ' ' + QByteArray::number(size.height()) + "\n255\n";
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int color = (x / 7 + y / 3 * 5) % colors;
            bytes.append(char(color * 40));
            bytes.append(char(255 - color * 11));
            bytes.append(char(color * 97));
        }
    }
    return bytes;
}

void addToolFiles(std::vector<Fixture>& corpus, QSize size)
{
    const Rgba picture = samplePicture(size);
    const QByteArray ppm = ppmOf(picture);
    const QByteArray few = patches(size, 9);
    const auto add = [&](const char* name, const QByteArray& file) {
        corpus.push_back({named(name, size), file, readByNetpbm(file, false)});
    };
    add("pamtotga 24 bits", made("pamtotga", "-rgb", ppm));
    add("pamtotga 24 bits, run length", made("pamtotga", "-rgb", few));
    add("pamtotga palette", made("pamtotga", "-cmap", few));
    add("pamtotga grey", made("pamtotga", "-mono", pgmOf(picture)));
    add("pamtotga grey, plain", made("pamtotga", "-mono -norle", pgmOf(picture)));
    add("ImageMagick 24 bits", made("convert", "ppm:- -compress None -type TrueColor tga:-", ppm));
    add("ImageMagick run length", made("convert", "ppm:- -compress RLE -type TrueColor tga:-", few));
    add("GraphicsMagick 24 bits", made("gm", "convert ppm:- -type TrueColor tga:-", ppm));
    add("GraphicsMagick palette", made("gm", "convert ppm:- -type Palette tga:-", few));
    const QByteArray shallow = made("pamtotga", "-cmap16", few);
    corpus.push_back({named("pamtotga palette of 16 bits", size), shallow, readByGraphics(shallow)});
    if (size == QSize(1, 1))
        return; // its only pixel is clear, which is taken for an alpha that nobody has filled
    const QByteArray deep = made("convert", "pam:- -type TrueColorAlpha -compress RLE tga:-", pamOf(picture));
    corpus.push_back({named("ImageMagick 32 bits, run length", size), deep, readByNetpbm(deep, true)});
}

void addOwnFiles(std::vector<Fixture>& corpus)
{
    const auto addRead = [&](const char* name, const TgaMaker& maker, bool alpha = false) {
        corpus.push_back({named(name, maker.size), maker.bytes(), readByNetpbm(maker.bytes(), alpha)});
    };
    const QSize size(23, 11);
    TgaMaker maker = TgaMaker::trueColor(size, 24);
    addRead("bottom up", maker);
    maker.idField = QByteArray(255, 'i');
    addRead("an id of 255 bytes", maker);
    maker.descriptor = 0x60;
    addRead("interleaved by two", maker);
    maker.descriptor = 0xA0;
    addRead("interleaved by four", maker);
    maker = TgaMaker::trueColor(size, 24).packed(true);
    addRead("packets across rows", maker);
    maker = TgaMaker::trueColor(size, 32);
    maker.descriptor = 0x08;
    addRead("32 bits with alpha", maker, true);
    for (const int bits : {15, 16}) {
        maker = TgaMaker::trueColor(size, bits);
        corpus.push_back(
            {named(bits == 15 ? "15 bits" : "16 bits", size), maker.bytes(), readByGraphics(maker.bytes())});
        maker = maker.packed(false);
        corpus.push_back({named("16 bits, run length", size), maker.bytes(), readByGraphics(maker.bytes())});
    }
    maker = TgaMaker::mapped(size, 8, 24, 40, 100);
    addRead("palette from 100 on", maker);
    addRead("palette from 100 on, run length", maker.packed(false));
    maker = TgaMaker::mapped(size, 16, 24, 400, 0);
    addRead("palette of 400, 16-bit values", maker);
    maker = TgaMaker::mapped(size, 8, 32, 90, 0);
    addRead("palette with alpha", maker, true);
    for (const bool topDown : {false, true}) { // no reader but one mirrors: pixels known by their making
        maker = TgaMaker::trueColor(size, 24);
        maker.descriptor = topDown ? 0x30 : 0x10;
        corpus.push_back({named("right to left", size), maker.bytes(), maker.shown()});
    }
    // No reader at hand takes grey with alpha.
    maker = TgaMaker::gray(size);
    corpus.push_back({named("grey with alpha", size), maker.bytes(), maker.shown()});
    corpus.push_back(
        {named("grey with alpha, run length", size), maker.packed(false).bytes(), maker.shown()});
}

} // namespace

std::vector<Fixture> tgaCorpus()
{
    std::vector<Fixture> corpus;
    addToolFiles(corpus, QSize(37, 23));
    addToolFiles(corpus, QSize(1, 1));
    const QSize tall(1, 20000);
    const QSize wide(20000, 1);
    for (const QSize size : {tall, wide}) {
        const QByteArray file = made("pamtotga", "-rgb", patches(size, 6));
        corpus.push_back({named("pamtotga", size), file, readByNetpbm(file, false)});
    }
    addOwnFiles(corpus);
    for (Fixture& fixture : corpus)
        fixture.marked = false;
    return corpus;
}

} // namespace quorvia::test
