#include "CancelChecks.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "JpegFixtures.h"
#include "Mutator.h"
#include "RefusalChecks.h"

#include <QTest>

#include <algorithm>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();

} // namespace

class TestJpegBroken : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void cutAtEveryLength_data();
    void cutAtEveryLength();
    void keepsTheRowsBeforeTheCut();
    void warningsAreNotFatal();
    void garbageBehindTheHeader();
    void garbageBehindTheEnd();
    void garbageBetweenTheScans_data();
    void garbageBetweenTheScans();
    void givesUpRefining();
    void promisesCostNothing_data();
    void promisesCostNothing();
    void stopsWhenCancelled_data();
    void stopsWhenCancelled();
    void survivesMutants_data();
    void survivesMutants();
};

void TestJpegBroken::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("word");
    const QByteArray good = colorJpeg(QSize(40, 30));
    const qsizetype frame = frameAt(good);
    const auto patched = [&](qsizetype at, int byte) {
        QByteArray file = good;
        file[frame + at] = char(byte);
        return file;
    };
    const auto row = [](const char* name, const QByteArray& file, ErrorKind kind, const char* word) {
        QTest::newRow(name) << file << int(kind) << QString::fromLatin1(word);
    };
    row("lossless", patched(1, 0xc3), ErrorKind::Unsupported, "lossless");
    row("lossless arithmetic", patched(1, 0xcb), ErrorKind::Unsupported, "lossless");
    row("hierarchical", patched(1, 0xc5), ErrorKind::Unsupported, "hierarchical");
    row("12 bits", patched(4, 12), ErrorKind::Unsupported, "12 bits");
    row("16 bits", patched(4, 16), ErrorKind::Unsupported, "16 bits");
    row("two components", patched(9, 2), ErrorKind::Unsupported, "2 colour");
    row("five components", patched(9, 5), ErrorKind::Unsupported, "5 colour");
    row("no component", patched(9, 0), ErrorKind::Unsupported, "0 colour");
    row("height behind the pixels", withSize(good, 40, 0), ErrorKind::Unsupported, "height");
    row("no width", withSize(good, 0, 30), ErrorKind::Damaged, "0 x 30");
    row("too wide", withSize(good, 65501, 1), ErrorKind::TooLarge, "65500");
    row("too high", withSize(good, 1, 65535), ErrorKind::TooLarge, "65500");
    row("no frame header", good.left(2) + good.mid(markerAt(good, 0xda)), ErrorKind::Damaged, "frame");
    row("only the mark", good.left(3), ErrorKind::Damaged, "frame");
    row("cut in the frame header", good.left(frame + 8), ErrorKind::Damaged, "frame");
    row("garbage behind the mark", good.left(3) + QByteArray(3 << 20, 'x'), ErrorKind::Damaged, "frame");
    row("empty segments for ever", good.left(2) + QByteArray("\xff\xe1\x00\x02", 4).repeated(100000),
        ErrorKind::Damaged, "frame");
    row("a segment of no length", good.left(2) + QByteArray("\xff\xe1\x00\x00", 4) + good.mid(2),
        ErrorKind::Damaged, "frame");
}

void TestJpegBroken::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QFETCH(QString, word);
    QCOMPARE(refusalFault(codec, file, ErrorKind(kind), word), QString());
}

void TestJpegBroken::cutAtEveryLength_data()
{
    QTest::addColumn<QByteArray>("file");
    const QSize size(45, 37);
    QTest::newRow("baseline") << colorJpeg(size, {QStringLiteral("-optimize")});
    QTest::newRow("progressive") << colorJpeg(size, {QStringLiteral("-progressive")});
    QTest::newRow("restarts") << colorJpeg(size, {QStringLiteral("-restart"), QStringLiteral("1B")});
    QTest::newRow("arithmetic") << colorJpeg(size, {QStringLiteral("-arithmetic")});
    QTest::newRow("grey") << colorJpeg(size, {QStringLiteral("-grayscale")});
    QTest::newRow("inks") << fourInkJpeg(samplePicture(size), true);
}

void TestJpegBroken::cutAtEveryLength()
{
    QFETCH(QByteArray, file);
    int shown = 0;
    for (qsizetype length = 0; length < file.size(); ++length) {
        const auto picture = decodeBytes(codec, file.left(length));
        if (!picture) {
            QCOMPARE(picture.error().kind, ErrorKind::Damaged);
            continue;
        }
        ++shown;
        QVERIFY2(!picture->complete, QByteArray::number(length).constData());
        QCOMPARE(picture->image.size(), QSize(45, 37));
    }
    QVERIFY(shown > file.size() / 8);
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole && whole->complete);
}

void TestJpegBroken::keepsTheRowsBeforeTheCut()
{
    const QByteArray file = colorJpeg(QSize(320, 400));
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole);
    int last = 0;
    for (int tenth = 1; tenth < 10; ++tenth) {
        const QByteArray cut = file.left(file.size() * tenth / 10);
        const auto picture = decodeBytes(codec, cut);
        if (!picture)
            continue;
        QVERIFY(!picture->complete);
        const int same = equalRows(picture->image, whole->image);
        QVERIFY(same >= last);
        last = same;
        // What stands above the cut is what the reference reader makes of it.
        const Rgba reference = djpeg(cut);
        const QRect top(0, 0, 320, same);
        QCOMPARE(firstDifference(rgbaOf(picture->image.copy(top)), rgbaOf(imageOf(reference).copy(top))),
                 QString());
    }
    QVERIFY2(last > 300, QByteArray::number(last).constData());
}

void TestJpegBroken::warningsAreNotFatal()
{
    QByteArray file = colorJpeg(QSize(320, 200), {QStringLiteral("-restart"), QStringLiteral("1")});
    const auto good = decodeBytes(codec, file);
    const qsizetype scan = markerAt(file, 0xda);
    const qsizetype hurt = scan + (file.size() - scan) / 2;
    for (qsizetype i = hurt; i < hurt + 40; ++i)
        file[i] = char(0x5a ^ i * 37);
    const auto picture = decodeBytes(codec, file);
    QVERIFY(good && picture);
    QCOMPARE(picture->image.size(), good->image.size());
    const int same = equalRows(picture->image, good->image);
    QVERIFY(same > 50 && same < 200);
    // Behind the next restart mark the picture is right again.
    QVERIFY(std::equal(picture->image.constScanLine(199), picture->image.constScanLine(199) + 320 * 4,
                       good->image.constScanLine(199)));
}

void TestJpegBroken::garbageBehindTheHeader()
{
    const QByteArray good = colorJpeg(QSize(200, 100));
    const qsizetype scan = markerAt(good, 0xda) + 14;
    QByteArray file = good.left(scan);
    for (int i = 0; i < 5000; ++i)
        file.append(char((i * 2654435761U) >> 13));
    const auto picture = decodeBytes(codec, file);
    if (picture) {
        QVERIFY(!picture->complete);
        QCOMPARE(picture->image.size(), QSize(200, 100));
    } else {
        QCOMPARE(picture.error().kind, ErrorKind::Damaged);
    }
}

void TestJpegBroken::garbageBehindTheEnd()
{
    const QByteArray file = colorJpeg(QSize(50, 40)) + QByteArray(100000, '\xa5');
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture);
    QVERIFY(picture->complete);
}

void TestJpegBroken::garbageBetweenTheScans_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("complete");
    const QByteArray junk(40, '\x55');
    for (const bool progressive : {false, true}) {
        const char* kind = progressive ? "progressive" : "baseline";
        const QByteArray good = colorJpeg(
            QSize(61, 47), progressive ? QStringList{QStringLiteral("-progressive")} : QStringList());
        const auto with = [&](qsizetype at) { return QByteArray(good).insert(at, junk); };
        const qsizetype end = good.size() - 2;
        QTest::addRow("%s, none", kind) << good << true;
        QTest::addRow("%s, behind the last scan", kind) << with(end) << false;
        QTest::addRow("%s, behind the end", kind) << good + junk << true;
        QTest::addRow("%s, before the frame", kind) << with(frameAt(good)) << true;
        QTest::addRow("%s, a scan's mark broken", kind)
            << QByteArray(good).replace(good.lastIndexOf("\xff\xda"), 1, "\x55") << false;
    }
}

void TestJpegBroken::garbageBetweenTheScans()
{
    QFETCH(QByteArray, file);
    const auto picture = decodeBytes(codec, file);
    if (picture)
        QTEST(picture->complete, "complete");
    else
        QTEST(false, "complete");
}

void TestJpegBroken::givesUpRefining()
{
    const QByteArray good = colorJpeg(QSize(60, 40), {QStringLiteral("-progressive")});
    qsizetype last = good.size() - 2;
    while (uchar(good[last]) != 0xff || uchar(good[last + 1]) != 0xda)
        --last;
    const QByteArray scan = good.mid(last, good.size() - 2 - last);
    const QByteArray end = good.right(2);
    const QByteArray few = good.left(good.size() - 2) + scan.repeated(3) + end;
    const QByteArray many = good.left(good.size() - 2) + scan.repeated(20000) + end;
    QVERIFY(decodeBytes(codec, few));

    const auto source = std::make_shared<WatchedSource>(many);
    auto decoder = codec.open(source);
    QVERIFY(decoder);
    const CancelFlag goOn{false};
    const auto picture = (*decoder)->decode(1, {}, goOn);
    QVERIFY(picture);
    QVERIFY(!picture->complete);
    QCOMPARE(picture->image.size(), QSize(60, 40));
    QVERIFY(source->reached() < many.size() / 10);
}

void TestJpegBroken::promisesCostNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    const QSize size(40, 30);
    QTest::newRow("baseline") << withSize(colorJpeg(size), 20000, 20000);
    QTest::newRow("grey") << withSize(colorJpeg(size, {QStringLiteral("-grayscale")}), 20000, 20000);
    QTest::newRow("progressive") << withSize(colorJpeg(size, {QStringLiteral("-progressive")}), 20000, 20000);
    QTest::newRow("arithmetic")
        << withSize(colorJpeg(size, {QStringLiteral("-arithmetic")}), 20000, 20000).chopped(2);
    QTest::newRow("largest") << withSize(colorJpeg(size), 65500, 65500);
    QTest::newRow("inks") << withSize(fourInkJpeg(samplePicture(size), true), 15000, 15000);
}

void TestJpegBroken::promisesCostNothing()
{
    QFETCH(QByteArray, file);
    const qint64 growth = peakGrowth([&file] {
        const auto picture = decodeBytes(codec, file);
        if (picture)
            QVERIFY(!picture->complete);
        else
            QCOMPARE(picture.error().kind, ErrorKind::TooLarge);
    });
    QVERIFY(growth >= 0);
    // The largest picture that a row makes is 20000 x 20000 pixels of 4 bytes; nearly all of it stays
    // untouched.
    const qint64 granted = (qint64(64) << 20) + sanitizerShare(qint64(20000) * 20000 * 4);
    QVERIFY2(growth < granted, QByteArray::number(growth).constData());
}

void TestJpegBroken::stopsWhenCancelled_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<qint64>("after");
    QTest::newRow("before the first byte") << QString() << qint64(-1);
    QTest::newRow("in the rows") << QString() << qint64(70000);
    QTest::newRow("in the scans") << QStringLiteral("-progressive") << qint64(70000);
    QTest::newRow("in the last scan") << QStringLiteral("-progressive") << qint64(200000);
}

void TestJpegBroken::stopsWhenCancelled()
{
    QFETCH(QString, options);
    QFETCH(qint64, after);
    const QByteArray file =
        colorJpeg(QSize(1200, 900), options.split(QLatin1Char(' '), Qt::SkipEmptyParts) +
                                        QStringList{QStringLiteral("-quality"), QStringLiteral("95")});
    QVERIFY(file.size() > 250000);
    const qint64 most = std::max<qint64>(after, 4096) + 2 * 65536;
    QCOMPARE(lateCancelFault(codec, file, after, most), QString());
    if (after < 0)
        QCOMPARE(cancelFault(codec, file), QString()); // a decoder can be asked again
}

void TestJpegBroken::survivesMutants_data()
{
    QTest::addColumn<QByteArray>("good");
    QTest::addColumn<int>("seed");
    const QSize size(97, 61);
    QTest::newRow("baseline") << colorJpeg(size, {QStringLiteral("-restart"), QStringLiteral("1")}) << 1;
    QTest::newRow("progressive") << colorJpeg(size, {QStringLiteral("-progressive")}) << 2;
    QTest::newRow("inks") << fourInkJpeg(samplePicture(size), true) << 3;
    QTest::newRow("arithmetic") << colorJpeg(size,
                                             {QStringLiteral("-arithmetic"), QStringLiteral("-progressive")})
                                << 4;
}

void TestJpegBroken::survivesMutants()
{
    QFETCH(QByteArray, good);
    QFETCH(int, seed);
    constexpr int children = 100;
    Mutator mutator(good, quint32(seed));
    int shown = 0;
    for (int i = 0; i < children; ++i) {
        const QByteArray child = mutator.next();
        for (const QSize box : {QSize(), QSize(20, 20)}) {
            const auto picture = decodeBytes(codec, child, box);
            if (!picture) {
                QVERIFY(picture.error().kind != ErrorKind::Cancelled);
                continue;
            }
            ++shown;
            QVERIFY(!picture->image.isNull());
            QVERIFY(picture->fullSize.width() <= 65500 && picture->fullSize.height() <= 65500);
            QVERIFY(picture->image.width() <= picture->fullSize.width());
        }
    }
    QVERIFY(shown > 0);
}

QTEST_GUILESS_MAIN(TestJpegBroken)
#include "tst_jpegbroken.moc"
