#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"

#include <QTest>

#include <algorithm>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = losslessJpegCodec();

} // namespace

class TestLosslessJpegBroken : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void takesUpAfterDamage();
    void wantsEveryComponent();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
};

void TestLosslessJpegBroken::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    const auto patched = [](int offset, int value) {
        QByteArray file = sampleMaker().bytes();
        file[frameAt(file) + offset] = char(value);
        return file;
    };
    LosslessJpegMaker maker = sampleMaker();
    maker.sampling = 0x21;
    add("sub-sampling", maker.bytes(), ErrorKind::Unsupported);
    add("height behind the pixels", withSize(sampleMaker().bytes(), 17, 0), ErrorKind::Unsupported);
    add("no width", withSize(sampleMaker().bytes(), 0, 12), ErrorKind::Damaged);
    add("65535 x 65535", withSize(sampleMaker().bytes(), 65535, 65535),
        checkSize(QSize(65535, 65535)) ? ErrorKind::Damaged : ErrorKind::TooLarge);
    add("17 bits", patched(4, 17), ErrorKind::Damaged);
    add("1 bit", patched(4, 1), ErrorKind::Damaged);
    add("no component", patched(9, 0), ErrorKind::Unsupported);
    add("5 components", patched(9, 5), ErrorKind::Unsupported);
    maker = sampleMaker();
    maker.predictor = 1;
    QByteArray scan = maker.bytes();
    const qsizetype predictorAt = markerAt(scan, 0xda) + 5 + 2 * 3;
    QCOMPARE(int(scan[predictorAt]), 1);
    scan[predictorAt] = 0;
    add("no predictor, as in a hierarchy", scan, ErrorKind::Unsupported);
    scan[predictorAt] = 8;
    add("predictor 8", scan, ErrorKind::Damaged);
    scan[predictorAt] = 1;
    scan[predictorAt + 2] = 8;
    add("all bits shifted away", scan, ErrorKind::Damaged);
    maker = sampleMaker();
    maker.restartRows = 2;
    QByteArray within = maker.bytes();
    within[markerAt(within, 0xdd) + 5] = 9;
    add("restarts within a row", within, ErrorKind::Unsupported);
    add("no Huffman table", withoutSegments(sampleMaker().bytes(), 0xc4), ErrorKind::Damaged);
    const QByteArray good = sampleMaker().bytes();
    add("no scan", good.left(markerAt(good, 0xda)), ErrorKind::Damaged);
    add("no samples", good.left(markerAt(good, 0xda) + 14), ErrorKind::Damaged);
    for (const int process : {0xcb, 0xc7, 0xc5, 0xcf}) {
        maker = sampleMaker();
        maker.process = process;
        add(qPrintable(QStringLiteral("process %1").arg(process - 0xc0)), maker.bytes(),
            ErrorKind::Unsupported);
    }
    maker = sampleMaker();
    maker.process = 0xc1;
    maker.picture.precision = 12;
    add("12 bits, DCT", maker.bytes(), ErrorKind::Unsupported);
}

void TestLosslessJpegBroken::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    // By way of the table: whoever takes the file has to say the same.
    const auto decoder = openDecoder(ByteSource::fromBytes(file), QStringLiteral("ljp"));
    const CancelFlag go = false;
    const auto picture = decoder ? (*decoder)->decode(1, {}, go) : decoder.error();
    QVERIFY(!picture);
    QVERIFY2(int(picture.error().kind) == kind, qPrintable(picture.error().text));
    QVERIFY(!picture.error().text.isEmpty());
}

void TestLosslessJpegBroken::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    LosslessJpegMaker maker = sampleMaker(3, QSize(13, 9));
    QTest::newRow("one scan") << maker.bytes();
    maker.restartRows = 2;
    QTest::newRow("restarts") << maker.bytes();
    QTest::newRow("our own") << *codec.encode(imageOf(samplePicture(QSize(13, 9))), QStringLiteral("ljp"),
                                              {});
}

void TestLosslessJpegBroken::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole && whole->complete);
    const Rgba wanted = rgbaOf(whole->image);
    int before = 0;
    bool shown = false;
    for (qsizetype length = 0; length < file.size(); ++length) {
        const auto part = decodeBytes(codec, file.left(length));
        QVERIFY2(part || !shown, qPrintable(QString::number(length)));
        if (!part)
            continue;
        shown = true;
        const Rgba got = rgbaOf(part->image);
        const int equal = equalRows(part->image, whole->image);
        QVERIFY(equal >= before);
        before = equal;
        QCOMPARE(part->complete, equal == wanted.size.height());
        // A row that was begun holds good pixels, then none.
        bool ended = false;
        for (int x = 0; x < wanted.size.width() && equal < wanted.size.height(); ++x) {
            const bool same = std::equal(got.at(x, equal), got.at(x, equal) + 4, wanted.at(x, equal));
            const uchar* pixel = got.at(x, equal);
            ended = ended || !same;
            QVERIFY(same || pixel[0] + pixel[1] + pixel[2] == 0);
        }
    }
    QCOMPARE(before, wanted.size.height()); // the last bytes are the end marker
}

void TestLosslessJpegBroken::takesUpAfterDamage()
{
    LosslessJpegMaker maker = sampleMaker(1, QSize(16, 60));
    maker.restartRows = 5;
    const QByteArray file = maker.bytes();
    const Rgba wanted = shownPlanes(maker.picture);
    const auto restartAt = [&](int number) { return file.indexOf(QByteArray("\xff") + char(0xd0 + number)); };
    QVERIFY(restartAt(2) > 0 && restartAt(3) > restartAt(2));
    QByteArray broken = file; // half of the rows 15 to 19 is gone
    broken.remove(restartAt(2) + 10, (restartAt(3) - restartAt(2)) / 2);
    QByteArray gap = file; // the rows 15 to 24 with one of their markers
    gap.remove(restartAt(2) + 2, restartAt(4) - restartAt(2) - 2);
    struct Case
    {
        QByteArray file;
        int lastBad;
    };
    for (const Case& each : {Case{broken, 19}, Case{gap, 24}}) {
        const auto picture = decodeBytes(codec, each.file);
        QVERIFY(picture);
        QVERIFY(!picture->complete);
        const QImage image = picture->image;
        const QImage right = imageOf(wanted);
        const auto same = [&](int from, int to) {
            return firstDifference(rgbaOf(image.copy(0, from, 16, to - from)),
                                   rgbaOf(right.copy(0, from, 16, to - from)));
        };
        QCOMPARE(same(0, 15), QString());
        QVERIFY(!same(15, each.lastBad + 1).isEmpty());
        QCOMPARE(same(each.lastBad + 1, 60), QString());
    }
}

void TestLosslessJpegBroken::wantsEveryComponent()
{
    LosslessJpegMaker maker = sampleMaker(3);
    maker.interleaved = false;
    const QByteArray file = maker.bytes();
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole && whole->complete);
    const auto part = decodeBytes(codec, file.left(file.lastIndexOf("\xff\xda")));
    QVERIFY(part && !part->complete);
    QCOMPARE(part->image.pixel(3, 3) & 0xFFFF00, whole->image.pixel(3, 3) & 0xFFFF00);
    QCOMPARE(qBlue(part->image.pixel(3, 3)), 0);
}

void TestLosslessJpegBroken::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(codec, sampleMaker().bytes()), QString());
}

void TestLosslessJpegBroken::survivesBrokenFiles()
{
    LosslessJpegMaker restarts = sampleMaker(3);
    restarts.restartRows = 1;
    LosslessJpegMaker scans = sampleMaker(4);
    scans.interleaved = false;
    scans.longCodes = true;
    LosslessJpegMaker deep = sampleMaker(1);
    deep.picture = samplePlanes(QSize(20, 20), 1, 16);
    deep.predictor = 6;
    const QList<QByteArray> parents = {
        sampleMaker(1).bytes(), restarts.bytes(), scans.bytes(), deep.bytes(),
        *codec.encode(imageOf(samplePicture(QSize(30, 20))), QStringLiteral("ljp"), {})};
    QCOMPARE(mutantFault(codec, parents, 400), QString());
}

QTEST_GUILESS_MAIN(TestLosslessJpegBroken)
#include "tst_losslessjpegbroken.moc"
