#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/JpegDecoder.h"
#include "JpegFixtures.h"

#include <QTest>

#include <cstdlib>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();

} // namespace

class TestJpegCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffsByContent_data();
    void sniffsByContent();
    void looksLikeTheReferenceReader_data();
    void looksLikeTheReferenceReader();
    void headerNeedsNoPixels();
    void scalesToTheBox_data();
    void scalesToTheBox();
    void choosesEighths_data();
    void choosesEighths();
    void readsFourInks_data();
    void readsFourInks();
    void readsFourInksWithoutMark();
};

void TestJpegCodec::sniffsByContent_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("JFIF") << QByteArray("\xff\xd8\xff\xe0") << true;
    QTest::newRow("bare tables first") << QByteArray("\xff\xd8\xff\xdb") << true;
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n") << false;
    QTest::newRow("two bytes") << QByteArray("\xff\xd8") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestJpegCodec::sniffsByContent()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("jpg")), accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("txt")), accepted);
}

void TestJpegCodec::looksLikeTheReferenceReader_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QString>("options");
    QTest::addColumn<bool>("gray");
    const auto color = [](const char* name, QSize size, const char* options) {
        QTest::newRow(name) << size << QString::fromLatin1(options) << false;
    };
    const auto gray = [](const char* name, QSize size, const char* options) {
        QTest::newRow(name) << size << QString::fromLatin1(options) << true;
    };
    const QSize usual(203, 149);
    color("2x2", usual, "-sample 2x2");
    color("2x1", usual, "-sample 2x1");
    color("1x2", usual, "-sample 1x2");
    color("1x1", usual, "-sample 1x1");
    color("4x1", usual, "-sample 4x1");
    color("4x2", usual, "-sample 4x2");
    color("1x4", usual, "-sample 1x4");
    color("2x2,1x2,2x1", usual, "-sample 2x2,1x2,2x1");
    color("RGB", usual, "-rgb");
    color("RGB progressive", usual, "-rgb -progressive");
    color("progressive", usual, "-progressive");
    color("progressive 1x1", usual, "-progressive -sample 1x1");
    color("progressive with restarts", usual, "-progressive -restart 2");
    color("restart by row", usual, "-restart 1");
    color("restart by block", usual, "-restart 3B");
    color("best quality", usual, "-quality 100");
    color("worst quality, 16-bit tables", usual, "-quality 1");
    color("worst quality, 8-bit tables", usual, "-quality 1 -baseline");
    color("optimised", usual, "-optimize");
    color("arithmetic", usual, "-arithmetic");
    color("arithmetic progressive", usual, "-arithmetic -progressive");
    color("1 x 1", QSize(1, 1), "");
    color("7 x 13", QSize(7, 13), "");
    color("8 x 8", QSize(8, 8), "");
    color("17 x 16", QSize(17, 16), "");
    color("1 x 20000", QSize(1, 20000), "");
    color("20000 x 1", QSize(20000, 1), "");
    color("3 x 65500", QSize(3, 65500), "");
    color("progressive 1 x 1", QSize(1, 1), "-progressive");
    color("progressive 1 x 20000", QSize(1, 20000), "-progressive");
    gray("grey", usual, "");
    gray("grey of a colour file", usual, "-grayscale");
    gray("grey progressive", usual, "-grayscale -progressive");
    gray("grey 1 x 1", QSize(1, 1), "-grayscale");
    gray("grey 7 x 13 restart", QSize(7, 13), "-grayscale -restart 1B");
    gray("grey 65500 x 1", QSize(65500, 1), "-grayscale");
}

void TestJpegCodec::looksLikeTheReferenceReader()
{
    QFETCH(QSize, size);
    QFETCH(QString, options);
    QFETCH(bool, gray);
    const QStringList list = options.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const Rgba source = samplePicture(size);
    const QByteArray file = cjpeg(gray && list.isEmpty() ? pgmOf(source) : ppmOf(source), list);
    QVERIFY(!file.isEmpty());

    auto decoder = codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto facts = (*decoder)->header(1);
    QVERIFY(facts);
    QCOMPARE(facts->size, size);
    QCOMPARE(facts->bitsPerPixel, gray ? 8 : 24);

    const CancelFlag goOn{false};
    const auto picture = (*decoder)->decode(1, {}, goOn);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QCOMPARE(picture->image.format(), gray ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    QCOMPARE(picture->fullSize, size);
    QCOMPARE(picture->bitsPerPixel, gray ? 8 : 24);
    QVERIFY(picture->complete);
    QVERIFY(picture->isFull());
    QCOMPARE(firstDifference(rgbaOf(picture->image), djpeg(file)), QString());
}

void TestJpegCodec::headerNeedsNoPixels()
{
    // 300 KB of metadata before the frame header, as from a camera with an embedded preview.
    QByteArray file = colorJpeg(QSize(64, 48));
    QByteArray segment = QByteArray("\xff\xe1\xff\xff", 4) + QByteArray(65533, '\0');
    for (int i = 0; i < 5; ++i)
        file.insert(2, segment);
    const auto source = std::make_shared<WatchedSource>(file);
    auto decoder = codec.open(source);
    QVERIFY(decoder);
    const auto facts = (*decoder)->header(1);
    QVERIFY(facts);
    QCOMPARE(facts->size, QSize(64, 48));
    QVERIFY(source->reached() <= frameAt(file) + 4096);
    QVERIFY(!(*decoder)->header(0));
    QVERIFY(!(*decoder)->header(2));
    const CancelFlag goOn{false};
    QVERIFY((*decoder)->decode(1, {}, goOn));
    QVERIFY(!(*decoder)->decode(2, {}, goOn));
}

void TestJpegCodec::scalesToTheBox_data()
{
    QTest::addColumn<QSize>("page");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QString>("scale");
    QTest::addColumn<QSize>("expected");
    QTest::addColumn<QString>("options");
    const auto row = [](const char* name, QSize page, QSize box, const char* scale, QSize expected,
                        const char* options = "") {
        QTest::newRow(name) << page << box << QString::fromLatin1(scale) << expected
                            << QString::fromLatin1(options);
    };
    const QSize page(803, 601);
    row("1/8", page, QSize(101, 76), "1/8", QSize(101, 76));
    row("just over 1/8", page, QSize(103, 100), "2/8", QSize(201, 151));
    row("2/8", page, QSize(200, 200), "2/8", QSize(201, 151));
    row("3/8", page, QSize(300, 225), "3/8", QSize(302, 226));
    row("4/8", page, QSize(400, 1000), "4/8", QSize(402, 301));
    row("over a half is full", page, QSize(420, 400), "8/8", page);
    row("larger than the page", page, QSize(2000, 2000), "8/8", page);
    row("bound by the height", page, QSize(5000, 75), "1/8", QSize(101, 76));
    row("progressive 2/8", page, QSize(160, 120), "2/8", QSize(201, 151), "-progressive");
    row("grey 3/8", page, QSize(250, 200), "3/8", QSize(302, 226), "-grayscale");
    row("no subsampling 4/8", page, QSize(400, 300), "4/8", QSize(402, 301), "-sample 1x1");
    row("2x1 1/8", page, QSize(100, 75), "1/8", QSize(101, 76), "-sample 2x1");
    row("1x2 2/8", page, QSize(150, 110), "2/8", QSize(201, 151), "-sample 1x2");
    row("one column", QSize(1, 900), QSize(100, 100), "1/8", QSize(1, 113));
}

void TestJpegCodec::scalesToTheBox()
{
    QFETCH(QSize, page);
    QFETCH(QSize, box);
    QFETCH(QString, scale);
    QFETCH(QSize, expected);
    QFETCH(QString, options);
    const QByteArray file = colorJpeg(page, options.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    const auto picture = decodeBytes(codec, file, box);
    QVERIFY(picture);
    QCOMPARE(picture->image.size(), expected);
    QCOMPARE(picture->fullSize, page);
    QCOMPARE(picture->isFull(), expected == page);
    QVERIFY(picture->complete);
    const Rgba wanted = djpeg(file, {QStringLiteral("-scale"), scale});
    QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
}

void TestJpegCodec::choosesEighths_data()
{
    QTest::addColumn<QSize>("page");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<int>("eighths");
    const QSize large(6000, 4000);
    QTest::newRow("no box") << large << QSize() << 8;
    QTest::newRow("one side of the box empty") << large << QSize(100, 0) << 8;
    QTest::newRow("screen") << large << QSize(1600, 1000) << 2;
    QTest::newRow("exactly 1/8") << large << QSize(750, 500) << 1;
    QTest::newRow("a pixel more") << large << QSize(751, 501) << 2;
    QTest::newRow("exactly 3/8") << large << QSize(2250, 1500) << 3;
    QTest::newRow("exactly 4/8") << large << QSize(3000, 2000) << 4;
    QTest::newRow("5/8 is dearer than full") << large << QSize(3600, 2400) << 8;
    QTest::newRow("full") << large << large << 8;
    QTest::newRow("largest") << QSize(65500, 65500) << QSize(8188, 8188) << 1;
    QTest::newRow("tiny box") << large << QSize(1, 1) << 1;
    // An eighth of a pixel, rounded up, is that pixel.
    QTest::newRow("tiny page") << QSize(1, 1) << QSize(1, 1) << 1;
}

void TestJpegCodec::choosesEighths()
{
    QFETCH(QSize, page);
    QFETCH(QSize, box);
    QFETCH(int, eighths);
    QCOMPARE(eighthsFor(page, box), eighths);
}

void TestJpegCodec::readsFourInks_data()
{
    QTest::addColumn<bool>("ycck");
    QTest::newRow("CMYK") << false;
    QTest::newRow("YCCK") << true;
}

// Two readers agree: the reference one uses the same formula on the same samples, so it is exact; ImageMagick
// multiplies in 16 bits and rounds at other places, which moves a value by one.
void TestJpegCodec::readsFourInks()
{
    QFETCH(bool, ycck);
    const QByteArray file = fourInkJpeg(samplePicture(QSize(61, 47)), ycck);
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture);
    QVERIFY(picture->complete);
    QCOMPARE(picture->bitsPerPixel, 32);
    QCOMPARE(picture->image.format(), QImage::Format_RGB32);
    const Rgba got = rgbaOf(picture->image);
    QCOMPARE(firstDifference(got, djpeg(file)), QString());
    const Rgba other =
        readWithMagick(file, QStringLiteral("jpg"), {QStringLiteral("-colorspace"), QStringLiteral("sRGB")});
    QCOMPARE(firstDifference(got, other, 1), QString());
    const auto half = decodeBytes(codec, file, QSize(30, 23));
    QVERIFY(half);
    QCOMPARE(half->image.size(), QSize(31, 24));
}

void TestJpegCodec::readsFourInksWithoutMark()
{
    // Without Adobe's mark the samples are the inks themselves.
    Rgba inks{QSize(16, 16), {}};
    for (int i = 0; i < 256; ++i)
        inks.pixels.append("\x33\x66\x00\x80", 4); // 51, 102, 0 and black 128
    const QByteArray marked = fourInkJpeg(inks, false);
    const QByteArray bare = withoutSegments(marked, 0xee);
    QVERIFY(bare.size() < marked.size());
    const auto inverted = decodeBytes(codec, marked);
    const auto plain = decodeBytes(codec, bare);
    QVERIFY(inverted && plain);
    const QColor one = inverted->image.pixelColor(8, 8);
    const QColor other = plain->image.pixelColor(8, 8);
    const auto near = [](int got, int wanted) { return std::abs(got - wanted) <= 2; }; // the file is lossy
    QVERIFY(near(one.red(), 51 * 128 / 255) && near(one.green(), 102 * 128 / 255) && near(one.blue(), 0));
    QVERIFY(near(other.red(), 204 * 127 / 255) && near(other.green(), 153 * 127 / 255));
    QVERIFY(near(other.blue(), 127));
}

QTEST_GUILESS_MAIN(TestJpegCodec)
#include "tst_jpegcodec.moc"
