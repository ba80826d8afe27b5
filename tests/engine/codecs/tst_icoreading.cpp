#include "CodecChecks.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IcoMaker.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::ico;

class TestIcoReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void choosesTheBest_data();
    void choosesTheBest();
    void readsFiveBitsAChannel();
    void takesTheMaskWhereNoAlphaIs();
    void readsCursors();

  private:
    const Codec& m_codec = icoCodec();
};

void TestIcoReading::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("known");
    const auto add = [](const char* name, const QByteArray& head, bool known, const char* extension = "") {
        QTest::newRow(name) << head << QString::fromLatin1(extension) << known;
    };
    const Slot good = {bitmap(2, 2, 9)};
    add("icon", icon({good}), true);
    add("icon by another name", icon({good}), true, "tga");
    add("two entries", icon({good, good}), true);
    add("many entries, cut at 1024 bytes", icon(QList<Slot>(100, good)).left(1024), true);
    add("no entry", icon({}), false, "ico");
    add("entry cut short", icon({good}).left(21), false, "ico");
    add("cursor", icon({good}, 2), true, "cur");
    add("cursor named as an icon", icon({good}, 2), true, "ico");
    add("what may be a TGA", icon({good}, 2), false, "tga");
    add("what may be a TGA, no name", icon({good}, 2), false);
    add("type 3", icon({good}, 3), false, "ico");
    Slot odd = good;
    odd.reserved = 255;
    add("reserved byte 255", icon({odd}), true);
    odd.reserved = 7;
    add("reserved byte 7", icon({odd}), false);
    add("reserved byte 7, by its name", icon({odd}), true, "ico");
    odd = good;
    odd.bits = 0;
    odd.planes = 0;
    add("no depth told", icon({odd}), true);
    odd.bits = 33;
    add("33 bits", icon({odd}), false);
    add("33 bits, by its name", icon({odd}), true, "ico");
    odd.bits = 256;
    add("256 for the bits, by its name", icon({odd}), true, "cur");
    odd = good;
    odd.planes = 99;
    add("99 planes", icon({odd}), false);
    add("99 planes, by its name", icon({odd}), true, "ico");
    odd = good;
    odd.offset = 21;
    add("content in the directory", icon({odd}), false, "ico");
    add("second entry makes no sense", icon({good, odd}), false);
    add("second entry makes no sense, by its name", icon({good, odd}), true, "ico");
    add("first entry makes no sense, by its name", icon({odd, good}), true, "ico");
    odd.offset = 0;
    add("null entry, by its name", icon({odd, good}), true, "ico");
    add("null entry alone, by its name", icon({odd}), false, "ico");
    QByteArray noLength = icon({good});
    noLength.replace(14, 4, QByteArray(4, '\0'));
    add("length 0", noLength, false);
    add("length 0, by its name", noLength, true, "ico");
    add("nothing", {}, false, "ico");
    // 300 x 200, 24 bits, unpacked: the usual header of a TGA.
    add("a TGA", QByteArray::fromHex("000002000000000000000000 2c01 c800 1800") + QByteArray(900, 'x'), false,
        "tga");
}

void TestIcoReading::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(m_codec.sniff(head, extension), "known");
}

void TestIcoReading::readsTheCorpus_data()
{
    addFixtureRows(icoCorpus());
}

void TestIcoReading::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    QVERIFY(m_codec.sniff(fixture.file.left(1024), QString()));
    const auto result = decoded(m_codec, fixture.file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete && result->isFull());
    if (!fixture.expected.size.isEmpty())
        QCOMPARE(firstDifference(rgbaOf(result->image), fixture.expected, fixture.tolerance), QString());
    QCOMPARE(misbehaviour(m_codec, fixture.file), QString());
}

void TestIcoReading::choosesTheBest_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("red"); // of the entry that is to be shown
    const Slot small = {bitmap(4, 4, 1), 4, 4};
    const Slot large = {bitmap(8, 6, 2), 8, 6};
    const Slot wide = {bitmap(300, 2, 3), 44, 2};
    QTest::newRow("largest last") << icon({small, large}) << QSize(8, 6) << 2;
    QTest::newRow("largest first") << icon({large, small}) << QSize(8, 6) << 2;
    QTest::newRow("wider than the directory can tell") << icon({large, wide}) << QSize(300, 2) << 3;
    QTest::newRow("same size twice") << icon({{bitmap(4, 4, 7), 4, 4}, small}) << QSize(4, 4) << 7;
    QTest::newRow("directory tells another size")
        << icon({small, {bitmap(8, 6, 2), 1, 1}}) << QSize(8, 6) << 2;
    QTest::newRow("height without a mask") << icon({{bitmap(4, 6, 5, false), 4, 6}}) << QSize(4, 6) << 5;
    QTest::newRow("height without a mask, an entry behind")
        << icon({{bitmap(4, 6, 5, false), 4, 6}, small}) << QSize(4, 6) << 5;
    QTest::newRow("slot tells the height with the mask's rows")
        << icon({{bitmap(8, 6, 5), 8, 12}}) << QSize(8, 6) << 5;
    QTest::newRow("slot tells the height with the mask's rows, an entry behind")
        << icon({{bitmap(8, 6, 5), 8, 12}, {bitmap(8, 5, 4), 8, 5}}) << QSize(8, 6) << 5;
    QTest::newRow("height 0 for 256 means 128 and the mask")
        << icon({{bitmap(128, 128, 5), 0, 0}}) << QSize(128, 128) << 5;
    QTest::newRow("two squares are a picture and its mask")
        << icon({{bitmap(8, 8, 5) + QByteArray(999, '\0'), 8, 16}}) << QSize(8, 8) << 5;
    Slot noPlanes = small;
    noPlanes.content.replace(12, 2, word(0));
    QTest::newRow("0 planes") << icon({noPlanes}) << QSize(4, 4) << 1;
    QTest::newRow("null entry") << icon({Slot{{}, 0, 0, 0, 0, 0}, small}) << QSize(4, 4) << 1;
    Slot broken = large;
    broken.content[0] = 99;
    QTest::newRow("largest has no header") << icon({broken, small}) << QSize(4, 4) << 1;
    Slot cut = large;
    cut.content.truncate(60);
    QTest::newRow("largest is cut short") << icon({small, cut}) << QSize(4, 4) << 1;
    Slot away = large;
    away.offset = 1 << 20;
    QTest::newRow("largest lies behind the end") << icon({away, small}) << QSize(4, 4) << 1;
    QByteArray file = png(QSize(20, 20));
    file.truncate(60);
    QTest::newRow("largest is a PNG of nothing") << icon({small, {file, 20, 20, 32}}) << QSize(4, 4) << 1;
    QByteArray huge = png(QSize(20, 20));
    huge.replace(16, 8, QByteArray::fromHex("7fffffff7fffffff"));
    QTest::newRow("largest is beyond the limits") << icon({{huge, 0, 0, 32}, small}) << QSize(4, 4) << 1;
}

void TestIcoReading::choosesTheBest()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    const auto result = decoded(m_codec, file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), size);
    QTEST(qRed(result->image.pixel(1, 1)), "red");
    QVERIFY(result->complete);
    QCOMPARE(misbehaviour(m_codec, file), QString());
}

void TestIcoReading::readsFiveBitsAChannel()
{
    QByteArray content = bitmap(2, 1, 0).left(40);
    content[14] = 16;
    content += word(31 << 10 | 1 << 5 | 16) + word(0x7FFF) + longWord(0x40); // the mask's second pixel is set
    const auto result = decoded(m_codec, icon({{content, 2, 1, 16}}));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.pixel(0, 0), qRgb(255, 8, 132));
    QCOMPARE(result->image.pixel(1, 0), qRgba(255, 255, 255, 0));
    QCOMPARE(result->bitsPerPixel, 16);
}

void TestIcoReading::takesTheMaskWhereNoAlphaIs()
{
    QByteArray content = bitmap(2, 1, 0).left(40);
    content[14] = 32;
    const QByteArray noAlpha = content + longWord(0x102030) + longWord(0x405060) + longWord(0x40);
    const auto masked = decoded(m_codec, icon({{noAlpha, 2, 1, 32}}));
    QVERIFY(masked);
    QCOMPARE(masked->image.pixel(0, 0), qRgb(0x10, 0x20, 0x30));
    QCOMPARE(masked->image.pixel(1, 0), qRgba(0x40, 0x50, 0x60, 0));
    const QByteArray alpha = content + longWord(0x80102030) + longWord(0x405060) + longWord(0x80);
    const auto own = decoded(m_codec, icon({{alpha, 2, 1, 32}}));
    QVERIFY(own);
    QCOMPARE(own->image.pixel(0, 0), qRgba(0x10, 0x20, 0x30, 0x80)); // though the mask would clear it
    QCOMPARE(own->image.pixel(1, 0), qRgba(0x40, 0x50, 0x60, 0));
}

void TestIcoReading::readsCursors()
{
    const auto result = decoded(m_codec, icon({{bitmap(8, 6, 2), 8, 6, 5, 0, -1, 3}}, 2));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), QSize(8, 6));
    QVERIFY(!m_codec.canEncode(QStringLiteral("cur")));
}

QTEST_GUILESS_MAIN(TestIcoReading)
#include "tst_icoreading.moc"
