#include "CancelChecks.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "Mutator.h"
#include "PngFixtures.h"
#include "RefusalChecks.h"

#include <QtEndian>
#include <QTest>

#include <algorithm>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = pngCodec();

/// Rows that stand in `part` as in `whole`, from the top; -1 when one of the others is not blank.
int rowsRead(const QImage& part, const QImage& whole)
{
    const int rows = equalRows(part, whole);
    for (int y = rows; y < part.height(); ++y) {
        const uchar* row = part.constScanLine(y);
        if (std::any_of(row, row + part.bytesPerLine(), [](uchar byte) { return byte != 0; }))
            return -1;
    }
    return rows;
}

} // namespace

class TestPngBroken : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void coversMissingEntries_data();
    void coversMissingEntries();
    void refuses_data();
    void refuses();
    void cutAtEveryLength_data();
    void cutAtEveryLength();
    void showsWhatStandsBeforeTheDamage_data();
    void showsWhatStandsBeforeTheDamage();
    void goodInSpiteOf_data();
    void goodInSpiteOf();
    void promisesCostNothing_data();
    void promisesCostNothing();
    void stopsWhenCancelled_data();
    void stopsWhenCancelled();
    void survivesMutants_data();
    void survivesMutants();
};

void TestPngBroken::coversMissingEntries_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("entries");
    QTest::newRow("1 bit, one entry") << 1 << 2;
    QTest::newRow("2 bits, one entry") << 2 << 4;
    QTest::newRow("8 bits, one entry") << 8 << 201;
}

void TestPngBroken::coversMissingEntries()
{
    QFETCH(int, depth);
    QFETCH(int, entries);
    const QByteArray rows = QByteArray("\0\0\0", 3) + char(depth == 8 ? 200 : 255);
    const QByteArray file = pngHeader(1, 2, depth, 3) + pngChunk("PLTE", QByteArray("\x10\x20\x30", 3)) +
                            pngChunk("IDAT", zlibStream(rows)) + pngChunk("IEND", QByteArray());
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->image.colorCount(), entries);
    QCOMPARE(picture->image.pixel(0, 0), qRgb(0x10, 0x20, 0x30));
    QCOMPARE(picture->image.pixel(0, 1), qRgb(0, 0, 0));
}

void TestPngBroken::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const QByteArray pixels =
        pngChunk("IDAT", zlibStream(QByteArray(100, '\0'))) + pngChunk("IEND", QByteArray());
    const auto row = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    row("no width", pngHeader(0, 5, 8, 0) + pixels, ErrorKind::Damaged);
    row("no height", pngHeader(5, 0, 8, 0) + pixels, ErrorKind::Damaged);
    row("a width over 2^31", pngHeader(0x80000001, 5, 8, 0) + pixels, ErrorKind::Damaged);
    row("too wide", pngHeader(65536, 1, 8, 0) + pixels, ErrorKind::TooLarge);
    row("too high", pngHeader(1, 0x7fffffff, 8, 0) + pixels, ErrorKind::TooLarge);
    row("depth 3", pngHeader(5, 5, 3, 0) + pixels, ErrorKind::Damaged);
    row("RGB of 4 bits", pngHeader(5, 5, 4, 2) + pixels, ErrorKind::Damaged);
    row("palette of 16 bits", pngHeader(5, 5, 16, 3) + pixels, ErrorKind::Damaged);
    row("colour type 5", pngHeader(5, 5, 8, 5) + pixels, ErrorKind::Damaged);
    row("interlace 2", pngHeader(5, 5, 8, 0, 2) + pixels, ErrorKind::Damaged);
    row("no palette", pngHeader(5, 5, 8, 3) + pixels, ErrorKind::Damaged);
    row("no pixels", pngHeader(5, 5, 8, 0) + pngChunk("IEND", QByteArray()), ErrorKind::Damaged);
    row("not deflated", pngHeader(5, 5, 8, 0) + pngChunk("IDAT", QByteArray(100, 'x')), ErrorKind::Damaged);
    row("header is not first", pngHeader(5, 5, 8, 0).left(8) + pixels, ErrorKind::Damaged);
    row("only the signature", pngHeader(5, 5, 8, 0).left(8), ErrorKind::Damaged);
    row("empty chunks for ever",
        pngHeader(5, 5, 8, 0) + pngChunk("quOr", QByteArray()).repeated(1100000) + pixels,
        ErrorKind::Damaged);
}

void TestPngBroken::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(codec, file, ErrorKind(kind)), QString());
}

void TestPngBroken::cutAtEveryLength_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("interlaced");
    const Rgba picture = samplePicture(QSize(23, 31));
    QTest::newRow("RGB") << magickFile(picture, 2, 8, false) << false;
    QTest::newRow("RGBA 16") << magickFile(picture, 6, 16, false) << false;
    QTest::newRow("palette") << netpbmFile(ppmOf(coarse(picture, 5))) << false;
    QTest::newRow("grey 1") << magickFile(coarse(picture, 2), 0, 1, false) << false;
    QTest::newRow("RGB interlaced") << magickFile(picture, 2, 8, true) << true;
}

void TestPngBroken::cutAtEveryLength()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, interlaced);
    // What was read stands, the rest is blank. The passes of an interlaced picture fill all rows anew.
    const CutMeasure measure = interlaced ? [](const QImage&, const QImage&) { return 0; } : rowsRead;
    QCOMPARE(growingCutFault(codec, file, measure, interlaced ? 0 : 31), QString());
}

void TestPngBroken::showsWhatStandsBeforeTheDamage_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("rows"); // at the least
    QByteArray content;
    for (int y = 0; y < 100; ++y)
        content.append('\0').append(QByteArray(30, char(y + 1)));
    const QByteArray start = pngHeader(10, 100, 8, 2);
    const QByteArray end = pngChunk("IEND", QByteArray());
    const QByteArray packed = zlibStream(content);
    const QByteArray good = start + pngChunk("IDAT", packed) + end;

    QByteArray wrongSum = good;
    wrongSum[wrongSum.size() - 13] = char(wrongSum[wrongSum.size() - 13] ^ 1);
    QTest::newRow("wrong check sum of the pixels") << wrongSum << 100;
    QTest::newRow("rows missing") << start + pngChunk("IDAT", zlibStream(content.left(31 * 60))) + end << 60;
    QTest::newRow("no end") << start + pngChunk("IDAT", packed) << 100;
    QTest::newRow("second half not deflated") << start + pngChunk("IDAT", packed.left(packed.size() / 2)) +
                                                     pngChunk("IDAT", QByteArray(300, '\xff')) + end
                                              << 10;
    QByteArray tooLong = good;
    const qsizetype data = pngChunkAt(good, "IDAT");
    tooLong.replace(data, 4, bigEndian(0x7fffffff));
    QTest::newRow("a length past the end") << tooLong << 100;
    QTest::newRow("garbage instead of a chunk")
        << start + pngChunk("IDAT", packed) + QByteArray(500, '\x01') << 100;
    QByteArray wrongFilter = content;
    wrongFilter[31 * 70] = char(9);
    QTest::newRow("no such row filter") << start + pngChunk("IDAT", zlibStream(wrongFilter)) + end << 70;
}

void TestPngBroken::showsWhatStandsBeforeTheDamage()
{
    QFETCH(QByteArray, file);
    QFETCH(int, rows);
    const auto picture = decodeBytes(codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(!picture->complete);
    QCOMPARE(picture->image.size(), QSize(10, 100));
    for (int y = 0; y < rows; ++y)
        QCOMPARE(picture->image.pixel(9, y), qRgb(y + 1, y + 1, y + 1));
}

void TestPngBroken::goodInSpiteOf_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray plain = magickFile(samplePicture(QSize(20, 10)), 2, 8, false);
    QByteArray text = pngChunk("tEXt", QByteArray("Comment\0wrong", 13));
    text.back() = char(text.back() ^ 0x55);
    QTest::newRow("as it is") << plain;
    QTest::newRow("a text with a wrong check sum") << withChunk(plain, text);
    QTest::newRow("a wrong gamma") << withChunk(plain, pngChunk("gAMA", bigEndian(0)));
    QTest::newRow("a broken profile") << withChunk(plain, pngChunk("iCCP", QByteArray("x\0\0garbage", 10)));
    QTest::newRow("a critical chunk that nobody knows")
        << withChunk(plain, pngChunk("ABCD", QByteArray(50, 'x')));
    QTest::newRow("10 MB of text") << withChunk(
        plain, pngChunk("tEXt", QByteArray("a\0", 2) + QByteArray(10 << 20, 't')));
    QTest::newRow("a text that inflates to 64 MB")
        << withChunk(plain, pngChunk("zTXt", QByteArray("a\0\0", 3) + zlibStream(QByteArray(64 << 20, 't'))));
    QTest::newRow("20000 chunks") << withChunk(plain,
                                               pngChunk("tEXt", QByteArray("a\0b", 3)).repeated(20000));
    QTest::newRow("bytes behind the end") << plain + QByteArray(1000, 'x');
    QByteArray split;
    const qsizetype data = pngChunkAt(plain, "IDAT");
    const QByteArray content = plain.mid(data + 8, qFromBigEndian<quint32>(plain.constData() + data));
    for (const char byte : content)
        split += pngChunk("IDAT", QByteArray(1, byte)) + pngChunk("IDAT", QByteArray());
    QByteArray wrongAdler = content;
    wrongAdler.back() = char(wrongAdler.back() ^ 1);
    QTest::newRow("a wrong sum in the deflated stream")
        << plain.left(data) + pngChunk("IDAT", wrongAdler) + pngChunk("IEND", QByteArray());
    QTest::newRow("pixels byte by byte") << plain.left(data) + split + pngChunk("IEND", QByteArray());
}

void TestPngBroken::goodInSpiteOf()
{
    QFETCH(QByteArray, file);
    const auto picture = decodeBytes(codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    Rgba wanted = samplePicture(QSize(20, 10));
    for (qsizetype i = 3; i < wanted.pixels.size(); i += 4)
        wanted.pixels[i] = char(255);
    QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
}

void TestPngBroken::promisesCostNothing_data()
{
    QTest::addColumn<QByteArray>("file");
    const auto file = [](quint32 width, quint32 height, int depth, int colors, int interlace) {
        return pngHeader(width, height, depth, colors, interlace) +
               pngChunk("IDAT", zlibStream(QByteArray(200000, '\0'))) + pngChunk("IEND", QByteArray());
    };
    QTest::newRow("60000 x 60000") << pngHeader(60000, 60000, 8, 6) +
                                          pngChunk("IDAT", zlibStream(QByteArray(20, '\0')));
    QTest::newRow("20000 x 20000") << file(20000, 20000, 8, 2, 0);
    QTest::newRow("20000 x 20000 grey") << file(20000, 20000, 8, 0, 0);
    QTest::newRow("20000 x 20000 of 64 bits") << file(20000, 20000, 16, 6, 0);
    QTest::newRow("65535 x 2") << file(65535, 2, 16, 6, 0);
    QTest::newRow("20000 x 20000 interlaced") << file(20000, 20000, 8, 2, 1);
}

void TestPngBroken::promisesCostNothing()
{
    QFETCH(QByteArray, file);
    const qint64 growth = peakGrowth([&file] {
        const auto picture = decodeBytes(codec, file);
        if (picture)
            QVERIFY(!picture->complete);
        else
            QVERIFY(picture.error().kind == ErrorKind::TooLarge ||
                    picture.error().kind == ErrorKind::Damaged);
    });
    QVERIFY(growth >= 0);
    // The largest picture that a row makes is 20000 x 20000 pixels of 4 bytes; nearly all of it stays
    // untouched.
    const qint64 granted = (qint64(32) << 20) + sanitizerShare(qint64(20000) * 20000 * 4);
    QVERIFY2(growth < granted, QByteArray::number(growth).constData());
}

void TestPngBroken::stopsWhenCancelled_data()
{
    QTest::addColumn<qint64>("after");
    QTest::newRow("before the first byte") << qint64(-1);
    QTest::newRow("in the first bytes of the pixels") << qint64(40);
    QTest::newRow("between the reads") << qint64(100000);
}

void TestPngBroken::stopsWhenCancelled()
{
    QFETCH(qint64, after);
    // 64 MB of zeros in some 280 KB: a single read of 64 KB inflates to 15 MB.
    constexpr int fast = 1;
    const QByteArray packed = qCompress(QByteArray(qsizetype(2001) * 32000, '\0'), fast).mid(4);
    QVERIFY(packed.size() > 200000);
    const QByteArray file =
        pngHeader(2000, 32000, 8, 0) + pngChunk("IDAT", packed) + pngChunk("IEND", QByteArray());
    const qint64 most = std::max<qint64>(after, 0) + 2 * 65536;
    QCOMPARE(lateCancelFault(codec, file, after, most), QString());
}

void TestPngBroken::survivesMutants_data()
{
    QTest::addColumn<QByteArray>("good");
    QTest::addColumn<int>("seed");
    const Rgba picture = samplePicture(QSize(47, 33));
    QTest::newRow("RGBA 16 interlaced") << magickFile(picture, 6, 16, true) << 1;
    QTest::newRow("palette") << netpbmFile(ppmOf(coarse(picture, 5))) << 2;
    QTest::newRow("grey 2") << magickFile(coarse(picture, 4), 0, 2, false) << 3;
}

void TestPngBroken::survivesMutants()
{
    QFETCH(QByteArray, good);
    QFETCH(int, seed);
    constexpr int children = 100;
    Mutator mutator(good, quint32(seed));
    int shown = 0;
    for (int i = 0; i < children; ++i) {
        const auto picture = decodeBytes(codec, mutator.next());
        if (!picture) {
            QVERIFY(picture.error().kind != ErrorKind::Cancelled);
            continue;
        }
        ++shown;
        QCOMPARE(picture->image.size(), picture->fullSize);
        QVERIFY(checkSize(picture->fullSize));
        if (!picture->image.colorTable().isEmpty() && picture->image.depth() == 8) {
            for (int y = 0; y < std::min(picture->image.height(), 100); ++y) {
                const uchar* row = picture->image.constScanLine(y);
                const int largest = *std::max_element(row, row + picture->image.width());
                QVERIFY(largest < picture->image.colorCount());
            }
        }
    }
    QVERIFY(shown > 0);
}

QTEST_GUILESS_MAIN(TestPngBroken)
#include "tst_pngbroken.moc"
