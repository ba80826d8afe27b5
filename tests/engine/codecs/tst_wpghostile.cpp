#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/Corpus.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"
#include "WpgChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::wpg;

namespace {

/// Colour maps that each name one more colour, and bitmaps of one pixel in it behind each.
QByteArray mapsAndBitmaps(int count)
{
    QByteArray records =
        record2(0x31, bytes({0, 0, 0xAA, 0, 0})) + record2(0x18, words({0x2000, 100, 100, 300, 300, 0, 0}));
    for (int i = 0; i < count; ++i)
        records += record2(0x0C, words({1, 1}) + bytes({i, 7, 9, 0})) +
                   frame2(words({0}), {1000, 400, 1400, 600}) + bitmap2(1, 1, 4, false, bytes({1}));
    return file2(records, 2400, 1200);
}

} // namespace

class TestWpgHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void stopsWhenCancelled_data();
    void stopsWhenCancelled();
    void endsDrawingsWithoutEnd();
    void readsEachColorMapOnce();
    void keepsLibwpgFromHarm_data();
    void keepsLibwpgFromHarm();
    void leavesOutAGraphicInAGraphic_data();
    void leavesOutAGraphicInAGraphic();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = wpgCodec();
};

void TestWpgHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    add("mark only", header(1), ErrorKind::Damaged);
    add("no picture", file1({}), ErrorKind::Damaged);
    add("version 3", header(3) + record1(0x0F, words({1, 2, 3})), ErrorKind::Unsupported);
    add("encrypted", header(1).replace(12, 2, "xy") + record1(0x0F, words({1, 2, 3})),
        ErrorKind::Unsupported);
    add("only PostScript", file1(record1(0x11, words({0, 0, 9, 9}) + "%!PS showpage")),
        ErrorKind::Unsupported);
    add("only placed PostScript", file1(record1(0x1B, QByteArray(62, '\0') + "%!PS")),
        ErrorKind::Unsupported);
    add("3 bits", file1(bitmap1(4, 4, 3, bytes({4, 1, 2, 3, 4}))), ErrorKind::Unsupported);
    add("no width", file1(bitmap1(0, 4, 8, bytes({1, 1}))), ErrorKind::Damaged);
    add("no pixel", file1(bitmap1(4, 4, 8, {})), ErrorKind::Damaged);
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        add("beyond the limits", file1(bitmap1(65535, 65535, 8, bytes({1, 1}))), ErrorKind::TooLarge);
    add("version 2, colour format 7", file2(bitmap2(2, 1, 7, false, bytes({1, 2, 3, 4}))),
        ErrorKind::Unsupported);
    add("version 2, compression 2",
        header(2) + record2(0x01, words({1200, 1200, 0})) +
            record2(0x0E, words({2, 1}) + bytes({4, 2, 1, 1})),
        ErrorKind::Unsupported);
    add("a drawing without extent", file1(record1(0x07, words({0, 0, 9, 9})), 0, 0), ErrorKind::Damaged);
    add("a drawing of nothing", file1(record1(0x08, words({0}))), ErrorKind::Damaged);
}

void TestWpgHostile::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestWpgHostile::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap, version 1") << file1(map1(0, 16) + bitmap1(15, 9, 4));
    QTest::newRow("bitmap, version 2") << file2(map2(16) + bitmap2(15, 9, 4, false, pixelBytes(15, 9)));
    QTest::newRow("drawing, version 1") << drawing1();
    QTest::newRow("drawing, version 2") << drawing2();
}

void TestWpgHostile::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(everyCutFault(m_codec, file), QString());
}

void TestWpgHostile::stopsWhenCancelled_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap") << file1(bitmap1(300, 301, 8));
    QTest::newRow("drawing, version 1") << drawing1();
    QTest::newRow("drawing, version 2") << drawing2();
}

void TestWpgHostile::stopsWhenCancelled()
{
    QFETCH(QByteArray, file);
    QCOMPARE(cancelFault(m_codec, file), QString());
    // While it is at it, too: asked to stop when half of the file was read.
    QCOMPARE(lateCancelFault(m_codec, file, file.size() / 2 + 1, file.size()), QString());
}

void TestWpgHostile::endsDrawingsWithoutEnd()
{
    // Twenty thousand ellipses over the whole of the largest page: far more than is ever drawn.
    QByteArray shapes = record1(0x01, bytes({1, 4}));
    for (int i = 0; i < 20'000; ++i)
        shapes += record1(0x09, words({30000, 30000, 32000, 32000, 45, 0, 0, 0}));
    const auto result = decoded(m_codec, file1(shapes, 65535, 65535));
    QVERIFY(result);
    QVERIFY(!result->complete);
}

void TestWpgHostile::readsEachColorMapOnce()
{
    constexpr int count = 50;
    const QByteArray file = mapsAndBitmaps(count);
    int reads = 0;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64) { ++reads; });
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    const CancelFlag go = false;
    const int before = reads;
    const auto result = (*decoder)->decode(1, {}, go);
    QVERIFY(result && result->complete);
    QCOMPARE(pixelAt(result->image, 1200, 500), qRgb(count - 1, 7, 9));
    // Each bitmap is copied for libwpg, then looked up with its frame and its map: a handful of reads.
    QVERIFY2(reads - before < 12 * count, qPrintable(QString::number(reads - before)));
}

void TestWpgHostile::keepsLibwpgFromHarm_data()
{
    QTest::addColumn<QByteArray>("records");
    const QByteArray shape = record2(0x18, words({0x6000, 100, 100, 600, 500, 0, 0}));
    QTest::newRow("a bitmap whose size overflows 32 bits")
        << bitmap2(65535, 65535, 8, true, bytes({0x7F, 9}));
    QTest::newRow("elements of 255 bytes, rows repeated")
        << bitmap2(65535, 2, 4, true, bytes({0x7D, 255, 0xFF, 255, 0xFF, 255, 0xFE, 255, 0xFE, 255}));
    QTest::newRow("elements of no byte") << bitmap2(5, 2, 4, true, bytes({0x7D, 0, 0xFF, 255}));
    QTest::newRow("a map that tells more than it holds") << record2(0x0C, words({0, 65535}));
    QTest::newRow("a gradient that tells more than it holds") << record2(0x31, bytes({1}) + words({65535}));
    QTest::newRow("a line that tells more than it holds") << record2(0x15, words({0x8000, 65535, 1, 1}));
    QTest::newRow("text that is none")
        << record2(0x1C, words({0, 0, 100, 100, 0, 0, 0})) + record2(0x0F, QByteArray(300, '\xD4'));
    QTest::newRow("an object that is no picture")
        << record2(0x21, words({0, 0, 0, 900, 900, 1}) + bytes({6, 0, 0, 0, 0, 0, 0, 0}), 1) +
               record2(0x12, words({0}) + "BM no bitmap");
    QTest::newRow("groups in groups") << record2(0x1A, words({0x6000}), 200).repeated(300);
}

void TestWpgHostile::keepsLibwpgFromHarm()
{
    QFETCH(QByteArray, records);
    const QByteArray shape = record2(0x18, words({0x6000, 100, 100, 600, 500, 0, 0}));
    const QByteArray file = file2(shape + records, 2400, 1200);
    QString fault;
    const qint64 grown = peakGrowth([&] { fault = misbehaviour(m_codec, file); });
    QCOMPARE(fault, QString());
    QVERIFY2(grown < 64 * 1024 * 1024, qPrintable(QString::number(grown)));
    const auto result = decoded(m_codec, file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(pixelAt(result->image, 350, 300), qRgb(0, 0, 0));
}

void TestWpgHostile::leavesOutAGraphicInAGraphic_data()
{
    QTest::addColumn<QByteArray>("inner");
    QTest::addColumn<bool>("drawn");
    QImage red(4, 4, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    const QByteArray blackRun = bytes({0x7F, 0}); // more than enough of entry 0
    QTest::newRow("bitmap") << encodeBytes(bmpCodec(), red, "bmp") << true;
    QTest::newRow("PNG") << encodeBytes(pngCodec(), red, "png") << true;
    QTest::newRow("graphic, version 1") << file1(bitmap1(4, 4, 8)) << false;
    QTest::newRow("graphic, version 2") << file2(bitmap2(4, 4, 8, true, blackRun)) << false;
}

/// A picture in another format is drawn at its place; a graphic there would have others in it in turn.
void TestWpgHostile::leavesOutAGraphicInAGraphic()
{
    QFETCH(QByteArray, inner);
    QFETCH(bool, drawn);
    QVERIFY(drawn || decoded(m_codec, inner));
    const QByteArray shape = record2(0x18, words({0x6000, 1500, 100, 2000, 500, 0, 0}));
    const QByteArray capsule =
        record2(0x21, words({0, 0, 0, 900, 900, 1}) + bytes({6, 0, 0, 0, 0, 0, 0, 0}), 1) +
        record2(0x12, words({0}) + inner);
    const auto result = decoded(m_codec, file2(shape + capsule, 2400, 1200));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);
    QCOMPARE(pixelAt(result->image, 1750, 300), qRgb(0, 0, 0));
    QCOMPARE(pixelAt(result->image, 450, 450), drawn ? qRgb(255, 0, 0) : qRgb(255, 255, 255));
}

void TestWpgHostile::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, wpgCorpus(), 400), QString());
}

QTEST_MAIN(TestWpgHostile)
#include "tst_wpghostile.moc"
