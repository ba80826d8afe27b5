#include "CodecChecks.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "PcxMaker.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::pcx;

class TestPcxReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs_data();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void choosesThePalette_data();
    void choosesThePalette();
    void findsThePaletteBehindThePixels();
    void readsGreysWithoutPalette();
    void readsFourPlanesAsAlpha();
    void readsRunsOverRowEnds();

  private:
    const Codec& m_codec = pcxCodec();
    const Codec& m_book = dcxCodec();
    std::vector<Fixture> m_corpus;
    std::vector<Fixture> m_bookCorpus;
};

void TestPcxReading::initTestCase()
{
    m_corpus = pcxCorpus();
    m_bookCorpus = dcxCorpus();
    QVERIFY(m_corpus.size() >= 10 && m_bookCorpus.size() >= 10);
}

void TestPcxReading::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    const QByteArray good = header({3, 3}, 8, 3, 4);
    const auto with = [&good](int at, int value) {
        QByteArray head = good;
        head[at] = char(value);
        return head;
    };
    QTest::newRow("good") << good << true;
    QTest::newRow("only its beginning") << good.left(12) << true;
    QTest::newRow("too short") << good.left(11) << false;
    QTest::newRow("another mark") << with(0, 11) << false;
    for (const int version : {0, 2, 3, 4, 5})
        QTest::newRow(qPrintable(QStringLiteral("version %1").arg(version))) << with(1, version) << true;
    QTest::newRow("version 1") << with(1, 1) << false;
    QTest::newRow("version 6") << with(1, 6) << false;
    QTest::newRow("not packed") << with(2, 0) << true;
    QTest::newRow("another coding") << with(2, 2) << false;
    QTest::newRow("3 bits") << with(3, 3) << false;
    QTest::newRow("no planes") << with(65, 0) << false;
    QTest::newRow("5 planes") << with(65, 5) << false;
    QTest::newRow("empty window") << with(4, 9) << false;
    QTest::newRow("text") << QByteArray("\n\n\n\n\n\n\n\n\n\n\n\n\n\n") << false;
}

void TestPcxReading::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(m_codec.sniff(head, QStringLiteral("pcx")), known);
    QVERIFY(m_book.sniff(QByteArray::fromHex("b168de3a00"), QString()));
    QVERIFY(!m_book.sniff(head, QStringLiteral("dcx")));
}

void TestPcxReading::readsWhatOthersWrite_data()
{
    QTest::addColumn<bool>("book");
    QTest::addColumn<int>("index");
    for (const bool book : {false, true}) {
        const std::vector<Fixture>& corpus = book ? m_bookCorpus : m_corpus;
        for (size_t i = 0; i < corpus.size(); ++i)
            QTest::newRow(qPrintable(QLatin1String(book ? "DCX, " : "PCX, ") + corpus[i].name))
                << book << int(i);
    }
}

void TestPcxReading::readsWhatOthersWrite()
{
    QFETCH(bool, book);
    QFETCH(int, index);
    QCOMPARE(fixtureFault(book ? m_book : m_codec, (book ? m_bookCorpus : m_corpus)[size_t(index)]),
             QString());
}

void TestPcxReading::choosesThePalette_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QRgb>>("colors"); // of the four pixels
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    const QByteArray bits = header({4, 1}, 1, 1, 2) + QByteArray::fromHex("5000"); // 0 1 0 1
    const QList<QRgb> blackWhite = {black, white, black, white};
    QTest::newRow("1 bit, colours told")
        << withPalette(bits, "ff0000 00ff00")
        << QList<QRgb>{qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(255, 0, 0), qRgb(0, 255, 0)};
    QTest::newRow("1 bit, white first")
        << withPalette(bits, "ffffff 000000") << QList<QRgb>{white, black, white, black};
    QTest::newRow("1 bit, no colours") << bits << blackWhite;
    QTest::newRow("1 bit, twice the same") << withPalette(bits, "101010 101010") << blackWhite;
    QTest::newRow("1 bit, colours of the adapter") << withPalette(bits, "000000 0000aa") << blackWhite;
    const QByteArray old = header({4, 1}, 1, 1, 2, 3) + QByteArray::fromHex("5000");
    QTest::newRow("1 bit, version without palette") << withPalette(old, "ff0000 00ff00") << blackWhite;
    const QByteArray two = header({4, 1}, 2, 1, 2) + QByteArray::fromHex("1b00"); // 0 1 2 3
    QTest::newRow("2 bits, told") << withPalette(two, "010203 040506 070809 0a0b0c")
                                  << QList<QRgb>{qRgb(1, 2, 3), qRgb(4, 5, 6), qRgb(7, 8, 9),
                                                 qRgb(10, 11, 12)};
    QTest::newRow("2 bits, not told")
        << two << QList<QRgb>{black, qRgb(85, 255, 255), qRgb(255, 85, 255), white};
    const QByteArray four = header({4, 1}, 4, 1, 2, 3) + QByteArray::fromHex("014f"); // 0 1 4 15
    QTest::newRow("4 bits, not told") << four << QList<QRgb>{black, qRgb(0, 0, 170), qRgb(170, 0, 0), white};
    QTest::newRow("8 bits") << header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff") + longPalette()
                            << QList<QRgb>{qRgb(0, 255, 7), qRgb(1, 254, 7), qRgb(128, 127, 7),
                                           qRgb(255, 0, 7)};
}

void TestPcxReading::choosesThePalette()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<QRgb>, colors);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QVERIFY(picture->image.colorCount() > 0);
    for (int x = 0; x < 4; ++x)
        QCOMPARE(picture->image.pixel(x, 0), colors[x]);
}

void TestPcxReading::findsThePaletteBehindThePixels()
{
    const QByteArray file =
        header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff") + longPalette() + "something else";
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->image.format(), QImage::Format_Indexed8);
    QCOMPARE(picture->image.pixel(1, 0), qRgb(1, 254, 7));
}

void TestPcxReading::readsGreysWithoutPalette()
{
    const auto picture = decoded(m_codec, header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff"));
    QVERIFY(picture);
    QCOMPARE(picture->image.format(), QImage::Format_Grayscale8);
    QCOMPARE(picture->image.pixel(2, 0), qRgb(128, 128, 128));
}

void TestPcxReading::readsFourPlanesAsAlpha()
{
    const QByteArray file = header({2, 1}, 8, 4, 2) + QByteArray::fromHex("0102 0304 0506 0780");
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->bitsPerPixel, 32);
    QCOMPARE(picture->image.format(), QImage::Format_ARGB32);
    QCOMPARE(picture->image.pixel(0, 0), qRgba(1, 3, 5, 7));
    QCOMPARE(picture->image.pixel(1, 0), qRgba(2, 4, 6, 128));
}

void TestPcxReading::readsRunsOverRowEnds()
{
    // Rows of 4 bytes; a run of 10, an empty run, then two single bytes.
    const auto picture =
        decoded(m_codec, header({4, 3}, 8, 1, 4) + QByteArray::fromHex("ca11 c099 22 c1c7") + longPalette());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.pixelIndex(1, 2), 0x11);
    QCOMPARE(picture->image.pixelIndex(2, 2), 0x22);
    QCOMPARE(picture->image.pixelIndex(3, 2), 0xC7);
    // Bytes as they are.
    QByteArray plain = header({4, 1}, 8, 1, 4) + QByteArray::fromHex("c0c1c2c3");
    plain[2] = 0;
    const auto flat = decoded(m_codec, plain);
    QVERIFY(flat && flat->complete);
    QCOMPARE(qRed(flat->image.pixel(3, 0)), 0xC3);
    // Rows that are shorter than the window is wide: the rest stays blank.
    const auto narrow =
        decoded(m_codec, header({6, 2}, 8, 1, 2) + QByteArray::fromHex("01020304") + longPalette());
    QVERIFY(narrow && !narrow->complete);
    QCOMPARE(narrow->image.pixelIndex(1, 1), 4);
    QCOMPARE(narrow->image.pixelIndex(5, 1), 0);
}

QTEST_GUILESS_MAIN(TestPcxReading)
#include "tst_pcxreading.moc"
