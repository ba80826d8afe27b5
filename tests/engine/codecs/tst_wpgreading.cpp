#include "CodecChecks.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "WpgChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::wpg;

class TestWpgReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void keepsDepths_data();
    void keepsDepths();
    void knowsColorsWithoutAMap_data();
    void knowsColorsWithoutAMap();
    void takesATwoColorMapForOneBit();
    void joinsMaps();
    void unpacksElementsOfThreeBytes();
    void mirrorsVersion2();
    void findsTheFrameOfEachBitmap();
    void readsTheSamples();

  private:
    const Codec& m_codec = wpgCodec();
};

void TestWpgReading::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    QTest::newRow("version 1") << header(1) << true;
    QTest::newRow("version 2") << header(2) << true;
    QTest::newRow("a document, no graphic") << header(1).replace(9, 1, "\x0A") << false;
    QTest::newRow("short") << header(1).left(15) << false;
    QTest::newRow("other mark") << header(1).replace(0, 1, "\xFE") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestWpgReading::sniffs()
{
    QFETCH(QByteArray, head);
    QTEST(m_codec.sniff(head, QStringLiteral("wpg")), "known");
    QTEST(m_codec.sniff(head, QString()), "known");
}

void TestWpgReading::readsTheCorpus_data()
{
    addFixtureRows(wpgCorpus());
}

void TestWpgReading::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    QVERIFY(m_codec.sniff(fixture.file.left(1024), QString()));
    const auto result = decoded(m_codec, fixture.file, fixture.page);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete && result->isFull());
    if (!fixture.expected.size.isEmpty())
        QCOMPARE(firstDifference(rgbaOf(result->image), fixture.expected, fixture.tolerance), QString());
    QCOMPARE(misbehaviour(m_codec, fixture.file), QString());
}

void TestWpgReading::keepsDepths_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("1") << 1 << QImage::Format_Mono;
    QTest::newRow("2") << 2 << QImage::Format_Indexed8;
    QTest::newRow("4") << 4 << QImage::Format_Indexed8;
    QTest::newRow("8") << 8 << QImage::Format_Indexed8;
    QTest::newRow("24") << 24 << QImage::Format_RGB32;
}

void TestWpgReading::keepsDepths()
{
    QFETCH(int, bits);
    const auto decoder = m_codec.open(ByteSource::fromBytes(file1(bitmap1(11, 3, bits))));
    QVERIFY(decoder);
    const auto page = (*decoder)->header(1);
    QVERIFY(page);
    QCOMPARE(page->size, QSize(11, 3));
    QCOMPARE(page->bitsPerPixel, bits);
    const CancelFlag go = false;
    QTEST((*decoder)->decode(1, {}, go)->image.format(), "format");
}

void TestWpgReading::knowsColorsWithoutAMap_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QRgb>("color");
    QTest::newRow("black") << 0 << qRgb(0, 0, 0);
    QTest::newRow("blue") << 1 << qRgb(0, 0, 0xAA);
    QTest::newRow("green") << 2 << qRgb(0, 0xAA, 0);
    QTest::newRow("red") << 4 << qRgb(0xAA, 0, 0);
    QTest::newRow("brown") << 6 << qRgb(0xAA, 0x55, 0);
    QTest::newRow("light red") << 12 << qRgb(0xFF, 0x55, 0x55);
    QTest::newRow("white") << 15 << white;
    QTest::newRow("darkest grey") << 16 << qRgb(0, 0, 0);
    QTest::newRow("second grey") << 17 << qRgb(0x14, 0x14, 0x14);
    QTest::newRow("white among the greys") << 31 << white;
    QTest::newRow("strong blue") << 32 << qRgb(0, 0, 0xFF);
    QTest::newRow("from blue to magenta") << 33 << qRgb(0x41, 0, 0xFF);
    QTest::newRow("strong red") << 40 << qRgb(0xFF, 0, 0);
    QTest::newRow("strong green") << 48 << qRgb(0, 0xFF, 0);
    QTest::newRow("from cyan to blue") << 55 << qRgb(0, 0x41, 0xFF);
    QTest::newRow("pale blue") << 56 << qRgb(0x7D, 0x7D, 0xFF);
    QTest::newRow("dark blue") << 104 << qRgb(0, 0, 0x71);
    QTest::newRow("last colour") << 247 << qRgb(0x2C, 0x30, 0x41);
    QTest::newRow("behind the last") << 248 << qRgb(0, 0, 0);
}

void TestWpgReading::knowsColorsWithoutAMap()
{
    QFETCH(int, index);
    const auto result = decoded(m_codec, file1(bitmap1(1, 1, 8, bytes({1, index}))));
    QVERIFY(result);
    QTEST(result->image.pixel(0, 0), "color");
}

void TestWpgReading::takesATwoColorMapForOneBit()
{
    const QByteArray rows = bitmap1(8, 1, 1, bytes({1, 0x0F}));
    const auto result = decoded(m_codec, file1(map1(0, 2) + rows));
    QVERIFY(result);
    QCOMPARE(result->image.pixel(0, 0), qRgb(20, 60, 255));
    QCOMPARE(result->image.pixel(7, 0), qRgb(57, 71, 254));
    QCOMPARE(difference(result->image.convertToFormat(QImage::Format_ARGB32),
                        readByMagick(file1(map1(0, 2) + rows), QStringLiteral("wpg"))),
             QString());
}

void TestWpgReading::joinsMaps()
{
    const auto result =
        decoded(m_codec, file1(map1(0, 128) + map1(128, 64) + bitmap1(4, 1, 8, bytes({4, 0, 1, 128, 129}))));
    QVERIFY(result);
    QCOMPARE(result->image.pixel(0, 0), qRgb(20, 60, 255));
    QCOMPARE(result->image.pixel(1, 0), qRgb(57, 71, 254));
    QCOMPARE(result->image.pixel(2, 0), qRgb(20, 60, 255));
    QCOMPARE(result->image.pixel(3, 0), qRgb(57, 71, 254));
}

void TestWpgReading::unpacksElementsOfThreeBytes()
{
    const QByteArray codes = bytes({0x7D, 3, 0x82, 10, 20, 30, 0x01, 1, 2, 3, 4, 5, 6, 0x7E, 0x84, 1, 1, 1});
    const auto result = decoded(m_codec, file2(bitmap2(5, 2, 8, true, codes)));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);
    for (int x = 0; x < 3; ++x)
        QCOMPARE(result->image.pixel(x, 0), qRgb(10, 20, 30));
    QCOMPARE(result->image.pixel(3, 0), qRgb(1, 2, 3));
    QCOMPARE(result->image.pixel(4, 0), qRgb(4, 5, 6));
    QCOMPARE(result->image.pixel(0, 1), qRgb(11, 21, 31)); // the difference to the row above
    QCOMPARE(result->image.pixel(4, 1), qRgb(5, 4, 7));
}

void TestWpgReading::mirrorsVersion2()
{
    constexpr int scaled = 0x08;
    constexpr int named = 0x20;
    const auto scale = [](int value) { return words({0, value}); }; // 16 bits behind the point
    const QByteArray pixels = bitmap2(2, 2, 12, false, bytes({10, 20, 30, 40}));
    const auto corner = [&](const QByteArray& shape) {
        const auto result = decoded(m_codec, file2(frame2(shape, {0, 0, 100, 100}) + pixels));
        return result ? qRed(result->image.pixel(0, 0)) : -1;
    };
    QCOMPARE(corner(words({0})), 10);
    QCOMPARE(corner(words({scaled}) + scale(1) + scale(1)), 10);
    QCOMPARE(corner(words({scaled}) + scale(-1) + scale(1)), 20);
    QCOMPARE(corner(words({scaled}) + scale(1) + scale(-1)), 30);
    QCOMPARE(corner(words({scaled}) + scale(-1) + scale(-1)), 40);
    QCOMPARE(corner(words({scaled | named, 7}) + scale(-1) + scale(1)), 20);
    QCOMPARE(corner(words({scaled | named, 0x8000, 7}) + scale(-1) + scale(1)), 20);
}

void TestWpgReading::findsTheFrameOfEachBitmap()
{
    constexpr int scaled = 0x08;
    const auto frame = [](int sign) { return words({scaled, 0, sign, 0, 1}); }; // mirrored by the sign
    const QByteArray pixels = bitmap2(2, 1, 4, false, bytes({1, 2}));
    const QByteArray file = file2(pixels + frame2(frame(-1), {0, 0, 9, 9}) + pixels + pixels +
                                  frame2(frame(1), {0, 0, 9, 9}) + pixels);
    const QList<QRgb> plain = {qRgb(0, 0, 0xAA), qRgb(0, 0xAA, 0)};
    const QList<QRgb> mirrored = {plain[1], plain[0]};
    const QList<QList<QRgb>> wanted = {plain, mirrored, mirrored, plain};
    for (int page = 1; page <= wanted.size(); ++page) {
        const auto result = decoded(m_codec, file, page);
        QVERIFY(result);
        QCOMPARE((QList<QRgb>{result->image.pixel(0, 0), result->image.pixel(1, 0)}), wanted[page - 1]);
    }
}

void TestWpgReading::readsTheSamples()
{
    const auto folder = sampleFolder(QStringLiteral("wpg"));
    const QStringList names =
        folder ? folder->entryList({QStringLiteral("*.wpg")}, QDir::Files) : QStringList();
    if (names.isEmpty())
        QSKIP("QUORVIA_SAMPLES names no folder that holds wpg/*.wpg: the real samples are not looked at");
    for (const QString& name : names) {
        QFile file(folder->filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto result = decoded(m_codec, bytes);
        QVERIFY2(result, qPrintable(name));
        QVERIFY(result->complete);
        if (!bytes.contains("%!PS") && !bytes.contains("PS-Adobe")) // which would need another program
            QCOMPARE(difference(readByGm(bytes), result->image), QString());
    }
}

QTEST_MAIN(TestWpgReading)
#include "tst_wpgreading.moc"
