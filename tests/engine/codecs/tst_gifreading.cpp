#include "CodecFixtures.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "GifMaker.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RowNames.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestGifReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void composesTheFirstFrame_data();
    void composesTheFirstFrame();
    void findsNoFreeEntry();
    void passesOtherBlocks();
    void tellsTheDepth_data();
    void tellsTheDepth();

  private:
    const Codec& m_codec = gifCodec();
};

void TestGifReading::sniffs()
{
    QVERIFY(m_codec.sniff("GIF87a....", QString()));
    QVERIFY(m_codec.sniff("GIF89a....", QStringLiteral("jpg")));
    QVERIFY(!m_codec.sniff("GIF90a....", QStringLiteral("gif")));
    QVERIFY(!m_codec.sniff(QByteArray(), QStringLiteral("gif")));
}

void TestGifReading::readsFilesOfTools_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(640, 9)}) {
        const QImage many = palettePicture(size, 256);
        QTest::newRow(rowName("convert", size).constData())
            << QStringLiteral("convert") << words("ppm:- gif:-") << many;
        QTest::newRow(rowName("convert interlaced", size).constData())
            << QStringLiteral("convert") << words("ppm:- -interlace GIF gif:-") << many;
        QTest::newRow(rowName("convert 87", size).constData())
            << QStringLiteral("convert") << words("ppm:- gif87:-") << many;
        QTest::newRow(rowName("gm", size).constData())
            << QStringLiteral("gm") << words("convert ppm:- gif:-") << palettePicture(size, 100);
        QTest::newRow(rowName("pamtogif", size).constData())
            << QStringLiteral("pamtogif") << QStringList() << many;
        QTest::newRow(rowName("pamtogif interlaced", size).constData())
            << QStringLiteral("pamtogif") << words("-interlace") << palettePicture(size, 5);
        QTest::newRow(rowName("pamtogif bits", size).constData())
            << QStringLiteral("pamtogif") << QStringList() << dotPicture(size);
    }
}

void TestGifReading::readsFilesOfTools()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QImage, picture);
    const QByteArray bytes = runTool(program, arguments, writePnm(picture));
    QVERIFY(m_codec.sniff(bytes.left(512), QString()));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(difference(result->image, picture), QString());
    QCOMPARE(result->image.format(), QImage::Format_Indexed8);
    QVERIFY(result->complete && result->isFull());
    QCOMPARE(difference(result->image, readByMagick(bytes, QStringLiteral("gif"))), QString());
}

void TestGifReading::composesTheFirstFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    // One letter a pixel: palette entries r g b w, t transparent, k black.
    QTest::addColumn<QString>("pixels");
    const auto add = [](const char* name, const GifMaker& gif, const char* pixels, QSize size = {4, 3}) {
        QTest::newRow(name) << gif.bytes() << size << QString::fromLatin1(pixels).remove(QLatin1Char(' '));
    };
    GifMaker gif;
    add("covers", gif, "rgbw rgbw rgbw");
    gif.transparent = 1;
    add("covers, transparent entry", gif, "rtbw rtbw rtbw");
    gif.transparent = 200;
    add("covers, transparent entry past the palette", gif, "rgbw rgbw rgbw");
    gif = {};
    gif.local = {qRgb(255, 255, 255), qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)};
    add("palette of its own", gif, "wrgb wrgb wrgb");
    gif.global.clear();
    add("no palette of the file", gif, "wrgb wrgb wrgb");
    gif = {};
    gif.frame = QRect(1, 1, 2, 1);
    gif.pixels = QByteArray::fromHex("0203");
    add("in the middle", gif, "tttt tbwt tttt");
    gif.transparent = 3;
    add("in the middle, transparent entry", gif, "tttt tbtt tttt");
    gif = {};
    gif.frame = QRect(2, 1, 4, 3);
    add("reaches beyond right and bottom", gif, "tttt ttrg ttrg");
    gif.frame = QRect(0, 0, 6, 5);
    gif.pixels = QByteArray::fromHex("000102030101 010203000101 020300010101 000000000000 000000000000");
    add("larger than the canvas", gif, "rgbwgg gbwrgg bwrggg rrrrrr rrrrrr", {6, 5});
    gif.frame = QRect(1, 1, 5, 2);
    gif.pixels = QByteArray::fromHex("0001020300 0102030001");
    add("wider than the canvas, off its corner", gif, "tttttt trgbwr tgbwrg", {6, 3});
    gif.frame = QRect(3, 0, 2, 4);
    gif.pixels = QByteArray::fromHex("0001 0002 0003 0000");
    add("higher than the canvas, off its corner", gif, "tttrg tttrb tttrw tttrr", {5, 4});
    gif.frame = QRect(9, 9, 1, 1);
    gif.pixels = QByteArray::fromHex("02");
    add("beside the canvas", gif, "tttt tttt tttt");
    gif = {};
    gif.canvas = QSize(0, 0);
    add("no canvas", gif, "rgbw rgbw rgbw");
    gif.frame = QRect(3, 2, 4, 3);
    add("no canvas, off its corner", gif, "rgbw rgbw rgbw");
    gif.canvas = QSize(0, 9);
    add("a canvas without width", gif, "rgbw rgbw rgbw");
    gif = {};
    gif.pixels = QByteArray::fromHex("000102ff 040203fe 00010203");
    add("indices past the palette", gif, "rgbk kbwk rgbw");
    gif = {};
    gif.interlaced = true;
    gif.canvas = QSize(1, 9);
    gif.frame = QRect(0, 0, 1, 9);
    gif.pixels = QByteArray::fromHex("000101020303 030302").left(9); // rows 0 8 4 2 6 1 3 5 7
    add("interlaced", gif, "rwbwgwwb g", QSize(1, 9));
}

void TestGifReading::composesTheFirstFrame()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(QString, pixels);
    const QHash<QChar, QRgb> colors = {
        {QLatin1Char('r'), qRgb(255, 0, 0)},   {QLatin1Char('g'), qRgb(0, 255, 0)},
        {QLatin1Char('b'), qRgb(0, 0, 255)},   {QLatin1Char('w'), qRgb(255, 255, 255)},
        {QLatin1Char('t'), qRgba(0, 0, 0, 0)}, {QLatin1Char('k'), qRgb(0, 0, 0)}};
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), size);
    QCOMPARE(result->image.format(), QImage::Format_Indexed8);
    QVERIFY(result->complete);
    QString seen;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            seen += colors.key(result->image.pixel(x, y), QLatin1Char('?'));
    }
    QCOMPARE(seen, pixels);
}

void TestGifReading::findsNoFreeEntry()
{
    GifMaker gif;
    gif.global = palettePicture(QSize(1, 1), 256).colorTable();
    gif.canvas = QSize(17, 17);
    gif.frame = QRect(1, 0, 16, 16);
    gif.pixels.clear();
    for (int i = 0; i < 256; ++i)
        gif.pixels += char(i);
    const auto full = decoded(m_codec, gif.bytes());
    QVERIFY(full);
    QCOMPARE(full->image.format(), QImage::Format_ARGB32);
    QCOMPARE(full->image.pixel(1, 0), gif.global[0]);
    QCOMPARE(full->image.pixel(16, 15), gif.global[255]);
    QCOMPARE(full->image.pixel(0, 3), 0u);
    QCOMPARE(full->image.pixel(5, 16), 0u);

    gif.pixels[77] = 76; // one entry falls free
    const auto palette = decoded(m_codec, gif.bytes());
    QVERIFY(palette);
    QCOMPARE(palette->image.format(), QImage::Format_Indexed8);
    QCOMPARE(palette->image.pixel(0, 3), 0u);
    QCOMPARE(palette->image.pixel(16, 15), gif.global[255]);
}

void TestGifReading::passesOtherBlocks()
{
    GifMaker gif;
    gif.before = QByteArray::fromHex("21fe05") + "hello" + QByteArray::fromHex("0321") + "ab" +
                 QByteArray(1, '\0') + QByteArray::fromHex("21ff0b") + "NETSCAPE2.0" +
                 QByteArray::fromHex("0301000000");
    const auto result = decoded(m_codec, gif.bytes());
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.pixel(2, 2), qRgb(0, 0, 255));
}

void TestGifReading::tellsTheDepth_data()
{
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("bits");
    QTest::newRow("2 colours") << 2 << 1;
    QTest::newRow("4 colours") << 4 << 4;
    QTest::newRow("16 colours") << 16 << 4;
    QTest::newRow("32 colours") << 32 << 8;
    QTest::newRow("256 colours") << 256 << 8;
}

void TestGifReading::tellsTheDepth()
{
    QFETCH(int, colors);
    const auto decoder = m_codec.open(
        ByteSource::fromBytes(encodeBytes(m_codec, palettePicture(QSize(30, 20), colors), "gif")));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, QSize(30, 20));
    QTEST(header->bitsPerPixel, "bits");
}

QTEST_GUILESS_MAIN(TestGifReading)
#include "tst_gifreading.moc"
