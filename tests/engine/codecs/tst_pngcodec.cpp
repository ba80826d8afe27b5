#include "corpus/Corpus.h"
#include "engine/codecs/Codecs.h"
#include "PngFixtures.h"
#include "RefusalChecks.h"

#include <QTest>

#include <algorithm>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = pngCodec();

struct Kind
{
    int depth = 0;
    int colors = 0;
};

Kind kindOf(const QByteArray& file)
{
    return {uchar(file[24]), uchar(file[25])};
}

} // namespace

class TestPngCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffsByContent_data();
    void sniffsByContent();
    void looksLikeIndependentReaders_data();
    void looksLikeIndependentReaders();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void smallInterlaced();
    void roundsSixteenBits();
    void keepsThePalette_data();
    void keepsThePalette();
    void leavesGammaAlone();
    void headerNeedsNoPixels();
    void writesEveryFormat_data();
    void writesEveryFormat();
    void refusesToWrite();
};

void TestPngCodec::sniffsByContent_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("PNG") << pngHeader(1, 1, 8, 0) << true;
    QTest::newRow("line ends changed on the way") << QByteArray("\x89PNG\n\x1a\n") << false;
    QTest::newRow("JPEG") << QByteArray("\xff\xd8\xff\xe0") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestPngCodec::sniffsByContent()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("png")), accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("txt")), accepted);
}

void TestPngCodec::looksLikeIndependentReaders_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("depth");  // as stored
    QTest::addColumn<int>("colors"); // as stored
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bitsPerPixel");
    const ScratchFiles files;
    const auto row = [](const QString& name, const QByteArray& file, int depth, int colors,
                        QImage::Format format, int bits) {
        QTest::newRow(qPrintable(name)) << file << depth << colors << int(format) << bits;
    };
    const QStringList plain;
    const QStringList interlace = {QStringLiteral("-interlace")};
    for (const QSize size : {QSize(7, 13), QSize(65, 40)}) {
        const Rgba picture = samplePicture(size);
        for (const QStringList& options : {plain, interlace}) {
            const QString tail = QStringLiteral(" %1 x %2%3")
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(options.isEmpty() ? QString() : QStringLiteral(" interlaced"));
            const bool woven = !options.isEmpty();
            const auto both = [](int levels, const Rgba& source) { return coarse(source, levels); };
            row(QStringLiteral("grey 1") + tail, magickFile(both(2, picture), 0, 1, woven), 1, 0,
                QImage::Format_Mono, 1);
            row(QStringLiteral("grey 2") + tail, magickFile(both(4, picture), 0, 2, woven), 2, 0,
                QImage::Format_Grayscale8, 2);
            row(QStringLiteral("grey 4") + tail, magickFile(both(16, picture), 0, 4, woven), 4, 0,
                QImage::Format_Grayscale8, 4);
            row(QStringLiteral("grey 8") + tail, magickFile(picture, 0, 8, woven), 8, 0,
                QImage::Format_Grayscale8, 8);
            row(QStringLiteral("grey 16") + tail, magickFile(picture, 0, 16, woven), 16, 0,
                QImage::Format_Grayscale8, 16);
            row(QStringLiteral("RGB 8") + tail, magickFile(picture, 2, 8, woven), 8, 2, QImage::Format_RGB32,
                24);
            row(QStringLiteral("RGB 16") + tail, magickFile(picture, 2, 16, woven), 16, 2,
                QImage::Format_RGB32, 48);
            row(QStringLiteral("grey alpha 8") + tail, magickFile(picture, 4, 8, woven), 8, 4,
                QImage::Format_ARGB32, 16);
            row(QStringLiteral("grey alpha 16") + tail, magickFile(picture, 4, 16, woven), 16, 4,
                QImage::Format_ARGB32, 32);
            row(QStringLiteral("RGBA 8") + tail, magickFile(picture, 6, 8, woven), 8, 6,
                QImage::Format_ARGB32, 32);
            row(QStringLiteral("RGBA 16") + tail, magickFile(picture, 6, 16, woven), 16, 6,
                QImage::Format_ARGB32, 64);
        }
    }
    // ImageMagick's policy stops at sides of 16000 pixels.
    for (const QSize size : {QSize(1, 20000), QSize(20000, 1), QSize(65535, 2)}) {
        const Rgba picture = samplePicture(size);
        for (const QStringList& options : {plain, interlace}) {
            const QString tail = QStringLiteral(" %1 x %2%3")
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(options.isEmpty() ? QString() : QStringLiteral(" interlaced"));
            row(QStringLiteral("grey 8") + tail, netpbmFile(pgmOf(picture), options), 8, 0,
                QImage::Format_Grayscale8, 8);
            row(QStringLiteral("RGB 8") + tail, netpbmFile(ppmOf(picture), options), 8, 2,
                QImage::Format_RGB32, 24);
        }
    }
    const QSize size(65, 40);
    const Rgba picture = samplePicture(size);
    const QString alpha = files.write(QStringLiteral("alpha.pgm"), alphaPgmOf(picture));
    const QString alphaCoarse = files.write(QStringLiteral("few.pgm"), alphaPgmOf(coarse(picture, 3)));
    // The colour of the first pixel is the one that is clear.
    const uchar* first = picture.at(0, 0);
    const QByteArray firstColor =
        bigEndian(first[0]).right(2) + bigEndian(first[1]).right(2) + bigEndian(first[2]).right(2);
    for (const QStringList& options : {plain, interlace}) {
        const QString tail = options.isEmpty() ? QString() : QStringLiteral(" interlaced");
        const bool woven = !options.isEmpty();
        row(QStringLiteral("palette 8") + tail, netpbmFile(ppmOf(coarse(picture, 5)), options), 8, 3,
            QImage::Format_Indexed8, 8);
        row(QStringLiteral("palette 4") + tail,
            netpbmFile(runTool(QStringLiteral("pnmquant"), {QStringLiteral("13")}, ppmOf(picture)), options),
            4, 3, QImage::Format_Indexed8, 4);
        row(QStringLiteral("palette 2") + tail, netpbmFile(ppmOf(coarse(picture, 2)), options), 2, 3,
            QImage::Format_Indexed8, 2);
        row(QStringLiteral("palette 8 with alpha") + tail,
            netpbmFile(ppmOf(coarse(picture, 3)),
                       options + QStringList{QStringLiteral("-alpha"), alphaCoarse}),
            8, 3, QImage::Format_Indexed8, 8);
        row(QStringLiteral("RGBA from netpbm") + tail,
            netpbmFile(ppmOf(picture), options + QStringList{QStringLiteral("-alpha"), alpha}), 8, 6,
            QImage::Format_ARGB32, 32);
        row(QStringLiteral("RGB 8 with a clear colour") + tail,
            withChunk(magickFile(picture, 2, 8, woven), pngChunk("tRNS", firstColor)), 8, 2,
            QImage::Format_ARGB32, 24);
        const QByteArray deep = magickFile(picture, 2, 16, woven);
        row(QStringLiteral("RGB 16 with a clear colour") + tail,
            withChunk(
                deep,
                pngChunk("tRNS", runTool(QStringLiteral("pngtopam"), {}, deep).right(65 * 40 * 6).left(6))),
            16, 2, QImage::Format_ARGB32, 48);
        for (const int depth : {1, 2, 4, 8, 16}) {
            const QByteArray value = depth == 16 ? QByteArray("\x12\x34", 2) : QByteArray("\0\1", 2);
            row(QStringLiteral("grey %1 with a clear value").arg(depth) + tail,
                withChunk(magickFile(coarse(picture, std::min(1 << depth, 256)), 0, depth, woven),
                          pngChunk("tRNS", value)),
                depth, 0, QImage::Format_ARGB32, depth);
        }
    }
}

void TestPngCodec::looksLikeIndependentReaders()
{
    QFETCH(QByteArray, file);
    QFETCH(int, depth);
    QFETCH(int, colors);
    QFETCH(int, format);
    QFETCH(int, bitsPerPixel);
    QVERIFY(!file.isEmpty());
    QCOMPARE(kindOf(file).depth, depth);
    QCOMPARE(kindOf(file).colors, colors);

    auto decoder = codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto facts = (*decoder)->header(1);
    QVERIFY(facts);
    QCOMPARE(facts->bitsPerPixel, bitsPerPixel);
    const CancelFlag goOn{false};
    const auto picture = (*decoder)->decode(1, QSize(10, 10), goOn);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->bitsPerPixel, bitsPerPixel);
    QCOMPARE(picture->fullSize, facts->size);
    QCOMPARE(picture->image.size(), facts->size);
    QCOMPARE(int(picture->image.format()), format);
    // netpbm does not see the clear colour of an RGB file.
    const bool keyed = colors == 2 && format == int(QImage::Format_ARGB32);
    const Rgba wanted = keyed ? readWithMagick(file, QStringLiteral("png")) : readWithNetpbm(file);
    // ImageMagick cuts 16 bits off where we round.
    const int tolerance = keyed && depth == 16 ? 1 : 0;
    QCOMPARE(firstDifference(rgbaOf(picture->image), wanted, tolerance), QString());
}

void TestPngCodec::readsTheCorpus_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("pixels");
    QTest::addColumn<QSize>("size");
    for (const Fixture& fixture : pngCorpus())
        QTest::newRow(qPrintable(fixture.name))
            << fixture.file << fixture.expected.pixels << fixture.expected.size;
}

void TestPngCodec::readsTheCorpus()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, pixels);
    QFETCH(QSize, size);
    QVERIFY(!size.isEmpty());
    const auto picture = decodeBytes(codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(firstDifference(rgbaOf(picture->image), Rgba{size, pixels}), QString());
}

void TestPngCodec::smallInterlaced()
{
    // Passes without a pixel are left out of the file: every combination of small sides.
    for (int width = 1; width <= 9; ++width) {
        for (int height = 1; height <= 9; ++height) {
            const QByteArray source = ppmOf(samplePicture(QSize(width, height)));
            const auto picture = decodeBytes(
                codec, netpbmFile(source, {QStringLiteral("-interlace"), QStringLiteral("-force")}));
            QVERIFY2(picture && picture->complete,
                     qPrintable(QStringLiteral("%1 x %2").arg(width).arg(height)));
            QCOMPARE(firstDifference(rgbaOf(picture->image), fromPnm(source)), QString());
        }
    }
}

void TestPngCodec::roundsSixteenBits()
{
    QByteArray rows;
    for (int y = 0; y < 256; ++y) {
        rows.append('\0');
        for (int x = 0; x < 256; ++x)
            rows.append(char(y)).append(char(x));
    }
    const QByteArray file =
        pngHeader(256, 256, 16, 0) + pngChunk("IDAT", zlibStream(rows)) + pngChunk("IEND", QByteArray());
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture && picture->complete);
    for (int value = 0; value < 65536; ++value) {
        const int wanted = (value * 255 + 32767) / 65535;
        QCOMPARE(int(picture->image.constScanLine(value >> 8)[value & 255]), wanted);
    }
}

void TestPngCodec::keepsThePalette_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<QByteArray>("alphas");
    QTest::addColumn<int>("format");
    QTest::newRow("1 bit") << 1 << QByteArray() << int(QImage::Format_Mono);
    QTest::newRow("1 bit with alpha") << 1 << QByteArray("\x80", 1) << int(QImage::Format_Indexed8);
    QTest::newRow("2 bits") << 2 << QByteArray() << int(QImage::Format_Indexed8);
    QTest::newRow("4 bits with alpha") << 4 << QByteArray("\xff\x00\x7f", 3) << int(QImage::Format_Indexed8);
    QTest::newRow("8 bits") << 8 << QByteArray() << int(QImage::Format_Indexed8);
    QTest::newRow("8 bits with alpha") << 8 << QByteArray("\x01\x02", 2) << int(QImage::Format_Indexed8);
}

void TestPngCodec::keepsThePalette()
{
    QFETCH(int, depth);
    QFETCH(QByteArray, alphas);
    QFETCH(int, format);
    QByteArray palette;
    QList<QRgb> wanted;
    for (int i = 0; i < 1 << depth; ++i) {
        const int red = 255 - i;
        palette.append(char(red)).append(char(i)).append(char(i * 3));
        wanted.append(qRgba(red, i, (i * 3) & 255, i < alphas.size() ? uchar(alphas[i]) : 255));
    }
    QByteArray rows;
    for (int y = 0; y < 256; ++y)
        rows.append('\0').append(char(y));
    QByteArray file = pngHeader(quint32(8 / depth), 256, depth, 3) + pngChunk("PLTE", palette);
    if (!alphas.isEmpty())
        file += pngChunk("tRNS", alphas);
    file += pngChunk("IDAT", zlibStream(rows)) + pngChunk("IEND", QByteArray());
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(int(picture->image.format()), format);
    QCOMPARE(picture->image.colorTable(), wanted);
    QCOMPARE(picture->bitsPerPixel, depth);
    for (int y = 0; y < 256; ++y)
        QCOMPARE(picture->image.pixelIndex(0, y), y >> (8 - depth));
}

void TestPngCodec::leavesGammaAlone()
{
    const QByteArray plain = magickFile(samplePicture(QSize(30, 20)), 2, 8, false);
    const QByteArray primaries = (bigEndian(31270) + bigEndian(32900)).repeated(4);
    const QByteArray marked =
        withChunk(plain, pngChunk("gAMA", bigEndian(100000)) + pngChunk("cHRM", primaries));
    const auto one = decodeBytes(codec, plain);
    const auto other = decodeBytes(codec, marked);
    QVERIFY(one && other && other->complete);
    QCOMPARE(other->image, one->image);
}

void TestPngCodec::headerNeedsNoPixels()
{
    const auto source =
        std::make_shared<WatchedSource>(magickFile(samplePicture(QSize(300, 200)), 2, 8, false));
    auto decoder = codec.open(source);
    QVERIFY(decoder);
    const auto facts = (*decoder)->header(1);
    QVERIFY(facts);
    QCOMPARE(facts->size, QSize(300, 200));
    QCOMPARE(source->reached(), qint64(33));
    QVERIFY(!(*decoder)->header(0));
    QVERIFY(!(*decoder)->header(2));
    const CancelFlag goOn{false};
    QVERIFY(!(*decoder)->decode(2, {}, goOn));
    QVERIFY((*decoder)->decode(1, {}, goOn));
    QVERIFY((*decoder)->decode(1, {}, goOn)); // a decoder can be asked again
}

void TestPngCodec::writesEveryFormat_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("depth"); // as stored
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("readBack");
    const auto row = [](const char* name, QImage::Format format, int depth, int colors,
                        QImage::Format readBack) {
        QTest::newRow(name) << int(format) << depth << colors << int(readBack);
    };
    row("Mono", QImage::Format_Mono, 1, 3, QImage::Format_Mono);
    row("MonoLSB", QImage::Format_MonoLSB, 1, 3, QImage::Format_Mono);
    row("Indexed8", QImage::Format_Indexed8, 8, 3, QImage::Format_Indexed8);
    row("Grayscale8", QImage::Format_Grayscale8, 8, 0, QImage::Format_Grayscale8);
    row("Grayscale16", QImage::Format_Grayscale16, 8, 0, QImage::Format_Grayscale8);
    row("RGB32", QImage::Format_RGB32, 8, 2, QImage::Format_RGB32);
    row("RGB16", QImage::Format_RGB16, 8, 2, QImage::Format_RGB32);
    row("RGB888", QImage::Format_RGB888, 8, 2, QImage::Format_RGB32);
    row("ARGB32", QImage::Format_ARGB32, 8, 6, QImage::Format_ARGB32);
    row("ARGB32_Premultiplied", QImage::Format_ARGB32_Premultiplied, 8, 6, QImage::Format_ARGB32);
    row("RGBA64", QImage::Format_RGBA64, 8, 6, QImage::Format_ARGB32);
}

void TestPngCodec::writesEveryFormat()
{
    QFETCH(int, format);
    QFETCH(int, depth);
    QFETCH(int, colors);
    QFETCH(int, readBack);
    const QSize size(61, 150); // more rows than a strip has
    const Rgba source = samplePicture(size);
    QImage image = imageOf(source).convertToFormat(QImage::Format(format));
    if (image.depth() == 1)
        image.setColorTable({qRgb(200, 10, 10), qRgb(255, 255, 0)});
    const auto file = codec.encode(image, QStringLiteral("png"), {});
    QVERIFY(file);
    QCOMPARE(kindOf(*file).depth, depth);
    QCOMPARE(kindOf(*file).colors, colors);
    const bool alpha = image.hasAlphaChannel();
    const Rgba wanted = rgbaOf(image.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32));
    QCOMPARE(firstDifference(readWithNetpbm(*file), wanted), QString());
    QCOMPARE(firstDifference(readWithMagick(*file, QStringLiteral("png")), wanted), QString());
    const auto again = decodeBytes(codec, *file);
    QVERIFY(again && again->complete);
    QCOMPARE(int(again->image.format()), readBack);
    if (colors == 3)
        QCOMPARE(again->image.colorTable(), image.colorTable());
}

void TestPngCodec::refusesToWrite()
{
    QCOMPARE(writingRefusalFault(codec, QStringLiteral("png"), {QImage()}), QString());
    QVERIFY(codec.canEncode(QStringLiteral("png")));
    QVERIFY(!codec.canEncode(QStringLiteral("jpg")));
}

QTEST_GUILESS_MAIN(TestPngCodec)
#include "tst_pngcodec.moc"
