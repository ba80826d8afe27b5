#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CodecFixtures.h"
#include "corpus/Corpus.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "WmfChecks.h"

#include <QtTest>

#include <functional>
#include <optional>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// What the address sanitizer keeps back of the memory that was given free.
constexpr qint64 sanitizerQuarantine()
{
#ifdef __SANITIZE_ADDRESS__
    return qint64(512) << 20;
#else
    return 0;
#endif
}

} // namespace

class TestWmfHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds();
    void leavesCutBitmapRecordsOut_data();
    void leavesCutBitmapRecordsOut();
    void showsTheRowsOfACutBitmap();
    void boundsTheWork_data();
    void boundsTheWork();
    void leavesOutWhatIsTooDear_data();
    void leavesOutWhatIsTooDear();
    void boundsTheMemory_data();
    void boundsTheMemory();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = wmfCodec();
    std::vector<Fixture> m_corpus;
};

void TestWmfHostile::initTestCase()
{
    m_corpus = wmfCorpus();
    QVERIFY(m_corpus.size() >= 10);
}

void TestWmfHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray good = big().fillWith(red).rectangle(0, 0, 9, 9).file();
    QTest::newRow("mark only") << good.left(4);
    QTest::newRow("cut in the plain header") << good.left(39);
    QTest::newRow("no record") << good.left(40);
    QTest::newRow("nothing drawn before the end of the file") << big().file(false);
    QTest::newRow("plain, no extent, nothing drawn") << WmfMaker().file();
    QTest::newRow("a record of no size") << big().file(false) + QByteArray(6, '\0');
    QTest::newRow("a bitmap that is none")
        << big().record(0x0F43, {0x20, 0xCC, 0, 9, 9, 0, 0, 9, 9, 0, 0}, QByteArray(60, '\x77')).file();
}

void TestWmfHostile::refuses()
{
    QFETCH(QByteArray, file);
    const auto picture = decoded(m_codec, file);
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::Damaged);
    QVERIFY(!picture.error().text.isEmpty());
}

void TestWmfHostile::showsWhatACutFileHolds()
{
    WmfMaker maker = WmfMaker::pixels(QSize(80, 10)).fillWith(red);
    QList<qsizetype> ends; // of the record of each square, bytes
    for (int i = 0; i < 8; ++i) {
        maker.rectangle(10 * i, 0, 10 * i + 10, 10);
        ends.append(maker.file(false).size());
    }
    const QByteArray file = maker.file();
    for (qsizetype length = 0; length < file.size(); ++length) {
        const qsizetype squares =
            std::count_if(ends.begin(), ends.end(), [=](qsizetype end) { return end <= length; });
        const auto picture = decoded(m_codec, file.left(length));
        QCOMPARE(bool(picture), squares > 0);
        if (!picture) {
            QCOMPARE(picture.error().kind, ErrorKind::Damaged);
            continue;
        }
        QVERIFY(!picture->complete);
        const Rgba wanted = Paper(QSize(80, 10)).box(0, 0, int(10 * squares), 10, red).rgba();
        QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
    }
}

void TestWmfHostile::leavesCutBitmapRecordsOut_data()
{
    QTest::addColumn<QByteArray>("record"); ///< of a black box from 15, 15 to 35, 35
    QTest::addColumn<qsizetype>("fixed");   ///< bytes without which it cannot be drawn
    const auto bytes = [](int function, const QList<int>& words, const QByteArray& tail = {}) {
        return WmfMaker().record(function, words, tail).file(false).mid(18);
    };
    const QByteArray dib = WmfMaker::dib(QSize(20, 20), 24, {}, 0, [](int, int) { return black; });
    QTest::newRow("PatBlt") << bytes(0x061D, {0x42, 0, 20, 20, 15, 15}) << qsizetype(6 + 12);
    QTest::newRow("BitBlt without bitmap")
        << bytes(0x0922, {0x42, 0, 0, 0, 0, 20, 20, 15, 15}) << qsizetype(6 + 18);
    QTest::newRow("StretchBlt without bitmap")
        << bytes(0x0B23, {0x42, 0, 20, 20, 0, 0, 0, 20, 20, 15, 15}) << qsizetype(6 + 22);
    QTest::newRow("StretchDIB, which needs no source")
        << bytes(0x0F43, {0x42, 0, 0, 20, 20, 0, 0, 20, 20, 15, 15}, dib) << qsizetype(6 + 22);
    QTest::newRow("DIBBitBlt, which needs no source")
        << bytes(0x0940, {0x42, 0, 0, 0, 20, 20, 15, 15}, dib) << qsizetype(6 + 16);
}

void TestWmfHostile::leavesCutBitmapRecordsOut()
{
    QFETCH(QByteArray, record);
    QFETCH(qsizetype, fixed);
    const QByteArray start =
        WmfMaker::pixels(QSize(40, 40)).fillWith(red).rectangle(0, 0, 10, 10).file(false);
    for (qsizetype length = 0; length <= record.size(); length += length < fixed ? 1 : 101) {
        const auto picture = decoded(m_codec, start + record.left(length));
        QVERIFY(picture && !picture->complete);
        Paper wanted = Paper(QSize(40, 40)).box(0, 0, 10, 10, red);
        if (length >= fixed)
            wanted.box(15, 15, 35, 35, black);
        QCOMPARE(firstDifference(rgbaOf(picture->image), wanted.rgba()), QString());
    }
}

void TestWmfHostile::showsTheRowsOfACutBitmap()
{
    const auto file = m_codec.encode(colorPicture(QSize(20, 30)), QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto whole = decoded(m_codec, *file);
    const auto part = decoded(m_codec, file->left(file->size() - 6 - 10 * 60));
    QVERIFY(whole && part);
    QVERIFY(whole->complete && !part->complete);
    QCOMPARE(part->image.copy(0, 10, 20, 20), whole->image.copy(0, 10, 20, 20));
}

void TestWmfHostile::boundsTheWork_data()
{
    using Step = std::function<void(WmfMaker&, int)>;
    QTest::addColumn<WmfMaker>("start");
    QTest::addColumn<Step>("step"); ///< repeated
    QTest::addColumn<int>("times");
    const auto row = [](const char* name, const WmfMaker& start, int times, const Step& step) {
        QTest::newRow(name) << start << step << times;
    };
    QList<int> zigzag = {30000};
    for (int i = 0; i < 30000; ++i)
        zigzag << (i % 2 == 0 ? -30000 : 30000) << i;
    QList<int> crowd = {30000};
    for (int i = 0; i < 30000; ++i)
        crowd << i * 7919 % 5700 << i * 4729 % 5700;
    const WmfMaker small = WmfMaker().placed(0, 0, 1000, 1000, 96);
    const WmfMaker large = WmfMaker().placed(0, 0, 5700, 5700, 96);
    row("polygons of many points", WmfMaker(large).fillWith(red), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0324, crowd); });
    row("dashes", WmfMaker(large).pen(2, 1, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, zigzag); });
    row("thin lines", WmfMaker(large).pen(0, 1, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, crowd); });
    row("wide pens", WmfMaker(large).pen(0, 32767, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, crowd); });
    row("hatches", WmfMaker(large).brush(2, blue, 5).select(0), 9000, [](WmfMaker& maker, int i) {
        maker.record(0x0418, {5700, 5700, i % 7, 0});
    });
    row("gigantic arcs", WmfMaker(small).pen(0, 9, blue).select(0), 9000, [](WmfMaker& maker, int i) {
        maker.record(0x0817, {0, 100, 0, 100, 30000, 50, -30000, i % 99 - 30000});
    });
    row("gigantic letters", WmfMaker(small).font(-30000, "Arial").select(0), 9000,
        [](WmfMaker& maker, int) { maker.text(-20000, 1000, "HHHHHHHHHHHHHHHH"); });
    row("many letters", WmfMaker(small).font(-20, "Arial").select(0), 2000,
        [](WmfMaker& maker, int) { maker.text(0, 0, QByteArray(30000, 'W')); });
    row("patterns", WmfMaker(large).brush(2, blue, 5).select(0), 9000, [](WmfMaker& maker, int) {
        maker.record(0x061D, {0x49, 0x5A, 5700, 5700, 0, 0});
    });
    row("saved contexts", WmfMaker(small).fillWith(red).rectangle(0, 0, 9, 9), 20000,
        [](WmfMaker& maker, int) { maker.record(0x001E); });
    row("clips of many pieces", WmfMaker(small).fillWith(red), 9000, [](WmfMaker& maker, int i) {
        const int x = i * 7 % 900;
        const int y = i % 900;
        maker.record(0x0415, {y + 1, x + 1, y, x}).rectangle(0, 0, 1000, 1000);
    });
    const QByteArray promise = WmfMaker::number<quint32>(40) + WmfMaker::number<qint32>(4000) +
                               WmfMaker::number<qint32>(4000) + WmfMaker::words({1, 8, 1, 0}) +
                               QByteArray(20, '\0') + QByteArray(2048, '\1');
    row("bitmaps that promise much", WmfMaker(small).fillWith(red).rectangle(0, 0, 9, 9), 3000,
        [promise](WmfMaker& maker, int) {
            maker.record(0x0F43, {0x20, 0xCC, 0, 4000, 4000, 0, 0, 100, 100, 0, 0}, promise);
        });
}

void TestWmfHostile::boundsTheWork()
{
    using Step = std::function<void(WmfMaker&, int)>;
    QFETCH(WmfMaker, start);
    QFETCH(Step, step);
    QFETCH(int, times);
    for (int i = 0; i < times; ++i)
        step(start, i);
    const auto picture = decoded(m_codec, start.file());
    QVERIFY(picture);
    QVERIFY(!inkOf(picture->image.copy(0, 0, 100, 100)).isEmpty() || !picture->complete);
}

void TestWmfHostile::leavesOutWhatIsTooDear_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("whole");
    const WmfMaker start =
        WmfMaker::pixels(QSize(200, 200)).record(0x0102, {1}).fillWith(red).rectangle(0, 0, 50, 50);
    WmfMaker fonts = start;
    for (int i = 0; i < 3000; ++i)
        fonts.font(-10 - i % 190, "Face " + QByteArray::number(i))
            .select(2)
            .text(10, 10, "x")
            .record(0x01F0, {2});
    QTest::newRow("a font for every text") << fonts.file() << false;
    WmfMaker few = start;
    for (int i = 0; i < 30; ++i)
        few.font(-10 - i, "Arial");
    for (int i = 0; i < 5000; ++i)
        few.select(2 + i % 30).text(10, 10, "x");
    QTest::newRow("a few fonts for many texts") << few.file() << true;
    QList<int> region = {0, 6, 0, 0, 0, 60, 60, 0, 0, 200, 200};
    for (int y = 0; y < 60; ++y) {
        region += {60, 3 * y, 3 * y + 2};
        for (int x = 0; x < 60; ++x)
            region << 3 * x + x % 2;
        region << 60;
    }
    WmfMaker clipped = start;
    clipped.record(0x06FF, region).record(0x012C, {2}).font(-12, "Arial").select(3);
    for (int i = 0; i < 5000; ++i)
        clipped.record(0x0A32, {i % 200, i % 190, 1, 4, 0, 0, 200, 200}, QByteArray("x\0", 2));
    QTest::newRow("texts clipped by many pieces") << clipped.file() << false;
}

void TestWmfHostile::leavesOutWhatIsTooDear()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, whole);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->complete, whole);
    QCOMPARE(picture->image.pixel(0, 0), red);
}

void TestWmfHostile::boundsTheMemory_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QRgb>("corner"); ///< of what is still drawn
    const WmfMaker small = WmfMaker(big()).fillWith(red).rectangle(0, 0, 50, 50);
    const WmfMaker large =
        WmfMaker::pixels(QSize(2000, 2000)).fillWith(red).rectangle(0, 0, 50, 50); // pixels of 16 MB
    // Pictures of one colour by run lengths: a few bytes for many pixels.
    const auto plain = [](int side) {
        return WmfMaker::number<quint32>(40) + WmfMaker::number<qint32>(side) +
               WmfMaker::number<qint32>(side) + WmfMaker::words({1, 8, 1, 0}) + QByteArray(20, '\0') +
               QByteArray(1024, '\0') + QByteArray("\1\1\0\1", 4);
    };
    const auto row = [](const char* name, WmfMaker maker, int times,
                        const std::function<void(WmfMaker&, int)>& step) {
        for (int i = 0; i < times; ++i)
            step(maker, i);
        QTest::newRow(name) << maker.file() << red;
    };
    row("patterns larger than the picture", small, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000));
    });
    row("patterns that promise more than any has", small, 20, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(4096));
    });
    row("patterns as large as the picture", large, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000));
    });
    row("patterns that only saved contexts hold", large, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000)).select(2).record(0x001E).record(0x01F0, {2});
    });
    const QByteArray device = WmfMaker::words({0, 16000, 500, 2000}) + QByteArray("\1\1", 2) +
                              QByteArray(22, '\0') + QByteArray(2000 * 500, '\x55');
    row("patterns of the device kind", small, 20,
        [&](WmfMaker& maker, int) { maker.record(0x01F9, {}, device); });
    WmfMaker colors = small;
    colors.record(0x00F7, {0x300, 65535}, QByteArray(4 * 65535, '\1')).record(0x0234, {2});
    row("palettes changed between saved contexts", colors, 1000, [](WmfMaker& maker, int i) {
        maker.record(0x0037, {5, 1, i, 0}).record(0x001E);
    });
    row("objects without number", small, 600'000, [](WmfMaker& maker, int) { maker.record(0x00F8); });
    WmfMaker pieces = small;
    QList<int> scans = {0, 6, 0, 0, 0, 500, 32, 0, 0, 500, 1000};
    for (int y = 0; y < 500; ++y) {
        scans += {32, 2 * y, 2 * y + 1};
        for (int x = 0; x < 32; ++x)
            scans << 3 * x;
        scans << 32;
    }
    pieces.record(0x06FF, scans).record(0x012C, {2});
    row("clips of many pieces between saved contexts", pieces, 1000, [](WmfMaker& maker, int i) {
        maker.record(0x0220, {i % 2 == 0 ? 1 : -1, 0}).record(0x001E);
    });
}

void TestWmfHostile::boundsTheMemory()
{
    QFETCH(QByteArray, file);
    QFETCH(QRgb, corner);
    std::optional<Result<Picture>> picture;
    const qint64 grown = peakGrowth([&] { picture.emplace(decoded(m_codec, file)); });
    QVERIFY(*picture);
    QCOMPARE((*picture)->image.pixel(0, 0), corner);
    constexpr qint64 most = 112 << 20; // 64 MB of objects, the largest picture and what one record takes
    QVERIFY2(grown >= 0 && grown < most + sanitizerQuarantine(), qPrintable(QString::number(grown)));
}

void TestWmfHostile::stopsWhenCancelled()
{
    WmfMaker maker = big().fillWith(red);
    for (int i = 0; i < 100; ++i)
        maker.rectangle(0, 0, 100, 100);
    const QByteArray file = maker.file();
    QCOMPARE(lateCancelFault(m_codec, file, file.size() / 2 + 1, file.size()), QString());
}

void TestWmfHostile::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 6 * int(m_corpus.size())), QString());
}

QTEST_MAIN(TestWmfHostile)
#include "tst_wmfhostile.moc"
