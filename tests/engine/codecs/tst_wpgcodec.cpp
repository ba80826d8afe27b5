#include "corpus/Corpus.h"
#include "corpus/WpgMaker.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::wpg;

namespace {

QByteArray encoded(const QImage& image)
{
    const auto bytes = wpgCodec().encode(image, QStringLiteral("wpg"), {});
    return bytes ? *bytes : QByteArray();
}

/// `file` as GraphicsMagick reads it; told the format, since it comes through a pipe.
QImage readByGm(const QByteArray& file)
{
    return readPnm(outputOf(QStringLiteral("gm"),
                            {QStringLiteral("convert"), QStringLiteral("wpg:-"), QStringLiteral("-depth"),
                             QStringLiteral("8"), QStringLiteral("ppm:-")},
                            file));
}

/// `image` as RGB32, alpha laid over white.
QImage flat(const QImage& image)
{
    QImage result(image.size(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto over = [&](int channel) {
                return (channel * qAlpha(pixel) + 255 * (255 - qAlpha(pixel)) + 127) / 255;
            };
            result.setPixel(x, y, qRgb(over(qRed(pixel)), over(qGreen(pixel)), over(qBlue(pixel))));
        }
    }
    return result;
}

/// The pixel of a drawing of 2400 x 1200 units at a place in units from the lower left corner.
QRgb pixelAt(const QImage& image, int x, int y)
{
    return image.pixel(x * image.width() / 2400, image.height() - 1 - y * image.height() / 1200);
}

const QRgb white = qRgb(255, 255, 255);

} // namespace

class TestWpgCodec : public QObject
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
    void drawsShapes_data();
    void drawsShapes();
    void drawsPlacedBitmaps();
    void drawsArcsAndCurves();
    void drawsGradientsAndCompounds();
    void sizesDrawings_data();
    void sizesDrawings();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesManyColors();
    void raisesTheResolution();
    void refusesToWrite();
    void stopsWhenCancelled_data();
    void stopsWhenCancelled();
    void endsDrawingsWithoutEnd();
    void readsEachColorMapOnce();
    void findsTheFrameOfEachBitmap();
    void keepsLibwpgFromHarm_data();
    void keepsLibwpgFromHarm();
    void readsTheSamples();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = wpgCodec();
};

void TestWpgCodec::sniffs_data()
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

void TestWpgCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QTEST(m_codec.sniff(head, QStringLiteral("wpg")), "known");
    QTEST(m_codec.sniff(head, QString()), "known");
}

void TestWpgCodec::readsTheCorpus_data()
{
    QTest::addColumn<Fixture>("fixture");
    const std::vector<Fixture> all = wpgCorpus();
    QVERIFY(all.size() >= 10);
    for (const Fixture& fixture : all)
        QTest::newRow(qPrintable(fixture.name)) << fixture;
}

void TestWpgCodec::readsTheCorpus()
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

void TestWpgCodec::keepsDepths_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("1") << 1 << QImage::Format_Mono;
    QTest::newRow("2") << 2 << QImage::Format_Indexed8;
    QTest::newRow("4") << 4 << QImage::Format_Indexed8;
    QTest::newRow("8") << 8 << QImage::Format_Indexed8;
    QTest::newRow("24") << 24 << QImage::Format_RGB32;
}

void TestWpgCodec::keepsDepths()
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

void TestWpgCodec::knowsColorsWithoutAMap_data()
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

void TestWpgCodec::knowsColorsWithoutAMap()
{
    QFETCH(int, index);
    const auto result = decoded(m_codec, file1(bitmap1(1, 1, 8, bytes({1, index}))));
    QVERIFY(result);
    QTEST(result->image.pixel(0, 0), "color");
}

void TestWpgCodec::takesATwoColorMapForOneBit()
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

void TestWpgCodec::joinsMaps()
{
    const auto result =
        decoded(m_codec, file1(map1(0, 128) + map1(128, 64) + bitmap1(4, 1, 8, bytes({4, 0, 1, 128, 129}))));
    QVERIFY(result);
    QCOMPARE(result->image.pixel(0, 0), qRgb(20, 60, 255));
    QCOMPARE(result->image.pixel(1, 0), qRgb(57, 71, 254));
    QCOMPARE(result->image.pixel(2, 0), qRgb(20, 60, 255));
    QCOMPARE(result->image.pixel(3, 0), qRgb(57, 71, 254));
}

void TestWpgCodec::unpacksElementsOfThreeBytes()
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

void TestWpgCodec::mirrorsVersion2()
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

void TestWpgCodec::drawsShapes_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QRgb>>("colors"); // rectangle, triangle, ellipse, line
    QTest::newRow("version 1") << drawing1()
                               << QList<QRgb>{qRgb(0xAA, 0, 0), qRgb(0, 0xAA, 0), qRgb(0xFF, 0xFF, 0x55),
                                              qRgb(0, 0, 0xAA)};
    QTest::newRow("version 2") << drawing2()
                               << QList<QRgb>{qRgb(200, 0, 0), qRgb(0, 200, 0), qRgb(250, 250, 0),
                                              qRgb(0, 0, 200)};
}

void TestWpgCodec::drawsShapes()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<QRgb>, colors);
    const auto result = decoded(m_codec, file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete && result->isFull());
    const QImage& image = result->image;
    QCOMPARE(image.size(), QSize(192, 96));
    QCOMPARE(image.format(), QImage::Format_RGB32);
    QCOMPARE(result->bitsPerPixel, 24);
    QCOMPARE(pixelAt(image, 350, 300), colors[0]);
    QCOMPARE(pixelAt(image, 150, 150), colors[0]);
    QCOMPARE(pixelAt(image, 50, 300), white);
    QCOMPARE(pixelAt(image, 1100, 300), colors[1]);
    QCOMPARE(pixelAt(image, 850, 500), white); // beside the triangle's left edge
    QCOMPARE(pixelAt(image, 1900, 600), colors[2]);
    QCOMPARE(pixelAt(image, 2150, 600), colors[2]);
    QCOMPARE(pixelAt(image, 1650, 770), white); // in the ellipse's corner
    QCOMPARE(pixelAt(image, 1200, 1000), colors[3]);
    QCOMPARE(pixelAt(image, 1200, 1100), white);
}

void TestWpgCodec::drawsPlacedBitmaps()
{
    // A bitmap of two pixels, red and blue, on 400 x 200 units beside a green square.
    const QByteArray two = bytes({2, 4, 1});
    const QByteArray one = file1(record1(0x02, bytes({0, 0}) + words({0})) + record1(0x01, bytes({1, 2})) +
                                     record1(0x07, words({100, 100, 200, 200})) +
                                     record1(0x14, words({0, 1000, 400, 1400, 600, 2, 1, 8, 75, 75}) + two),
                                 2400, 1200);
    const QByteArray second = file2(map2(256) + record2(0x31, bytes({0, 0, 0xAA, 0, 0})) +
                                        record2(0x18, words({0x2000, 100, 100, 300, 300, 0, 0})) +
                                        frame2(words({0}), {1000, 400, 1400, 600}) +
                                        bitmap2(2, 1, 8, false, bytes({0xAA, 0, 0, 0, 0, 0xAA})),
                                    2400, 1200);
    for (const QByteArray& file : {one, second}) {
        const auto result = decoded(m_codec, file);
        QVERIFY2(result, result ? "" : qPrintable(result.error().text));
        QCOMPARE(pixelAt(result->image, 200, 200), qRgb(0, 0xAA, 0));
        QCOMPARE(pixelAt(result->image, 1040, 500), qRgb(0xAA, 0, 0));
        QCOMPARE(pixelAt(result->image, 1360, 500), qRgb(0, 0, 0xAA));
        QCOMPARE(pixelAt(result->image, 1500, 500), white);
        QCOMPARE(pixelAt(result->image, 1200, 700), white);
        QVERIFY(result->complete);
    }
}

void TestWpgCodec::drawsArcsAndCurves()
{
    const QByteArray setUp = record1(0x02, bytes({0, 0}) + words({0})) + record1(0x01, bytes({1, 4}));
    // A quarter of a disc, up and right of its centre; a curve that closes two of its three pieces up.
    const QByteArray pie = record1(0x09, words({600, 600, 500, 500, 0, 0, 90, 1}));
    const QByteArray curve = record1(0x13, words({0, 0, 7, 1400, 200, 1400, 800, 1600, 1000, 1800, 1000, 2000,
                                                  1000, 2200, 800, 2200, 200}));
    const QByteArray closed = record1(0x13, words({0, 0, 7, 1400, 200, 1400, 800, 1600, 1000, 1800, 1000,
                                                   2200, 1000, 2200, 200, 1400, 200}));
    const auto opened = decoded(m_codec, file1(setUp + pie + curve, 2400, 1200));
    QVERIFY(opened);
    QCOMPARE(pixelAt(opened->image, 800, 800), qRgb(0xAA, 0, 0));
    QCOMPARE(pixelAt(opened->image, 400, 800), white);
    QCOMPARE(pixelAt(opened->image, 800, 400), white);
    QCOMPARE(pixelAt(opened->image, 1800, 600), white); // an open curve has no inside
    const auto filled = decoded(m_codec, file1(setUp + closed, 2400, 1200));
    QVERIFY(filled);
    QCOMPARE(pixelAt(filled->image, 1700, 700), qRgb(0xAA, 0, 0));
}

void TestWpgCodec::drawsGradientsAndCompounds()
{
    constexpr int filled = 0x6000;
    const QByteArray gradient = record2(0x2F, words({0, 0, 65535, 65535, 0})) +
                                record2(0x31, bytes({1, 2, 0, 255, 0, 0, 0, 0, 0, 255, 0}) + words({32768}));
    const auto result = decoded(
        m_codec, file2(gradient + record2(0x18, words({filled, 100, 100, 1100, 1100, 0, 0})), 2400, 1200));
    QVERIFY(result);
    const QRgb high = pixelAt(result->image, 600, 1050);
    const QRgb low = pixelAt(result->image, 600, 150);
    QVERIFY2(qBlue(high) > qRed(high) && qRed(low) > qBlue(low),
             qPrintable(QStringLiteral("%1 %2").arg(high, 8, 16).arg(low, 8, 16)));

    const QByteArray ring = record2(0x31, bytes({0, 0, 0, 0, 0})) + record2(0x1A, words({filled}), 2) +
                            record2(0x15, words({filled, 4, 200, 200, 1000, 200, 1000, 1000, 200, 1000})) +
                            record2(0x15, words({filled, 4, 400, 400, 800, 400, 800, 800, 400, 800}));
    const auto shape = decoded(m_codec, file2(ring, 2400, 1200));
    QVERIFY(shape);
    QCOMPARE(pixelAt(shape->image, 300, 600), qRgb(0, 0, 0));
    QCOMPARE(pixelAt(shape->image, 600, 600), white); // the hole
}

void TestWpgCodec::sizesDrawings_data()
{
    QTest::addColumn<QSize>("units");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("an inch") << QSize(1200, 1200) << QSize(96, 96);
    QTest::newRow("a page") << QSize(10200, 13200) << QSize(816, 1056);
    QTest::newRow("tiny") << QSize(60, 30) << QSize(64, 32);
    QTest::newRow("a hair") << QSize(60000, 1) << QSize(4096, 1);
    QTest::newRow("the largest") << QSize(65535, 65535) << QSize(4096, 4096);
}

void TestWpgCodec::sizesDrawings()
{
    QFETCH(QSize, units);
    const QByteArray file = file1(record1(0x07, words({0, 0, 20, 20})), units.width(), units.height());
    const auto decoder = m_codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    const auto page = (*decoder)->header(1);
    QVERIFY(page);
    QTEST(page->size, "pixels");
}

void TestWpgCodec::refuses_data()
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

void TestWpgCodec::refuses()
{
    QFETCH(QByteArray, file);
    const auto result = decoded(m_codec, file);
    QVERIFY(!result);
    QTEST(int(result.error().kind), "kind");
    QVERIFY(!result.error().text.isEmpty());
}

void TestWpgCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap, version 1") << file1(map1(0, 16) + bitmap1(15, 9, 4));
    QTest::newRow("bitmap, version 2") << file2(map2(16) + bitmap2(15, 9, 4, false, pixelBytes(15, 9)));
    QTest::newRow("drawing, version 1") << drawing1();
    QTest::newRow("drawing, version 2") << drawing2();
}

void TestWpgCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(everyCutFault(m_codec, file), QString());
}

void TestWpgCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(9, 13), QSize(300, 200)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QTest::newRow(name("black and white").constData()) << dotPicture(size) << 1;
        QImage inverse = dotPicture(size);
        inverse.setColorTable({white, qRgb(0, 0, 0)});
        QTest::newRow(name("white and black").constData()) << inverse << 1;
        QImage two = dotPicture(size);
        two.setColorTable({qRgb(200, 10, 20), qRgb(10, 20, 200)});
        QTest::newRow(name("two colours").constData()) << two << 4;
        QTest::newRow(name("16 colours").constData()) << palettePicture(size, 16) << 4;
        QTest::newRow(name("17 colours").constData()) << palettePicture(size, 17) << 8;
        QTest::newRow(name("256 colours").constData()) << palettePicture(size, 256) << 8;
        QTest::newRow(name("grey").constData()) << greyPicture(size) << 8;
    }
    const QImage few = palettePicture(QSize(50, 30), 200);
    constexpr std::array formats = {QImage::Format_MonoLSB,
                                    QImage::Format_RGB32,
                                    QImage::Format_ARGB32,
                                    QImage::Format_RGB888,
                                    QImage::Format_BGR888,
                                    QImage::Format_RGBX8888,
                                    QImage::Format_RGBA8888,
                                    QImage::Format_RGBA64,
                                    QImage::Format_ARGB32_Premultiplied,
                                    QImage::Format_Grayscale16,
                                    QImage::Format_RGB16,
                                    QImage::Format_RGB30,
                                    QImage::Format_RGBX64,
                                    QImage::Format_ARGB4444_Premultiplied};
    for (const QImage::Format format : formats) {
        const QImage picture = format == QImage::Format_MonoLSB ? dotPicture(QSize(21, 4)) : few;
        const QImage converted = picture.convertToFormat(format);
        QTest::newRow(qPrintable(QStringLiteral("format %1").arg(format)))
            << converted << (format == QImage::Format_MonoLSB ? 1 : 8);
    }
    QImage clear = palettePicture(QSize(20, 20), 5);
    clear.setColor(2, qRgba(0, 100, 200, 128));
    QTest::newRow("a half transparent entry") << clear << 4;
}

void TestWpgCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("wpg"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    const QImage wanted = flat(picture);
    QCOMPARE(difference(readByGm(*bytes), wanted), QString());
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("wpg")), wanted), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, wanted), QString());
    QTEST(own->bitsPerPixel, "bits");
}

void TestWpgCodec::writesManyColors()
{
    const QImage picture = colorPicture(QSize(70, 40)); // noise: as hard as it gets for 256 colours
    const QByteArray bytes = encoded(picture);
    const auto own = decoded(m_codec, bytes);
    QVERIFY(own);
    QCOMPARE(difference(readByGm(bytes), own->image), QString());
    QVERIFY(psnr(rgbaOf(own->image), rgbaOf(picture)) > 15);
    const auto over = decoded(m_codec, encoded(alphaPicture(QSize(70, 40))));
    QVERIFY(over);
    QVERIFY(psnr(rgbaOf(over->image), rgbaOf(flat(alphaPicture(QSize(70, 40))))) > 15);
}

void TestWpgCodec::raisesTheResolution()
{
    QImage wide(65535, 1, QImage::Format_Mono);
    wide.setColorTable({qRgb(0, 0, 0), white});
    wide.fill(0);
    wide.setDotsPerMeterX(3780);
    wide.setDotsPerMeterY(3780);
    const QByteArray bytes = encoded(wide);
    QCOMPARE(bytes.mid(16, 4), QByteArray::fromHex("0f060100"));
    const auto word = [&](qsizetype at) { return uchar(bytes[at]) | uchar(bytes[at + 1]) << 8; };
    QCOMPARE(word(20), 65535);     // width in 1/1200 inch
    QCOMPARE(word(22), 1200 / 96); // height
    const qsizetype bitmap = bytes.indexOf('\x0B', 24 + 2 + 10);
    QCOMPARE(word(bitmap + 2), 65535);
    QCOMPARE(word(bitmap + 8), 1200); // dots per inch
    QCOMPARE(word(bitmap + 10), 96);
    const auto own = decoded(m_codec, bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(own->image.size(), wide.size());
}

void TestWpgCodec::refusesToWrite()
{
    for (const QImage& image :
         {QImage(), QImage(65536, 1, QImage::Format_Mono), QImage(1, 65536, QImage::Format_Mono)}) {
        const auto bytes = m_codec.encode(image, QStringLiteral("wpg"), {});
        QVERIFY(!bytes);
        QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    }
    QVERIFY(m_codec.canEncode(QStringLiteral("wpg")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("wmf")));
}

void TestWpgCodec::stopsWhenCancelled_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap") << file1(bitmap1(300, 301, 8));
    QTest::newRow("drawing, version 1") << drawing1();
    QTest::newRow("drawing, version 2") << drawing2();
}

void TestWpgCodec::stopsWhenCancelled()
{
    QFETCH(QByteArray, file);
    const auto decoder = m_codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    CancelFlag cancel = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    cancel = false;
    QVERIFY((*decoder)->decode(1, QSize(), cancel));

    // While it is at it, too: asked to stop when half of the file was read.
    bool halfway = false;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
        halfway = halfway || offset > file.size() / 2;
        cancel = cancel || halfway;
    });
    const auto watched = m_codec.open(source);
    QVERIFY(watched && (*watched)->header(1));
    halfway = false;
    cancel = false;
    const auto stopped = (*watched)->decode(1, QSize(), cancel);
    QVERIFY(halfway);
    QVERIFY(!stopped);
    QCOMPARE(stopped.error().kind, ErrorKind::Cancelled);
}

void TestWpgCodec::endsDrawingsWithoutEnd()
{
    // Twenty thousand ellipses over the whole of the largest page: far more than is ever drawn.
    QByteArray shapes = record1(0x01, bytes({1, 4}));
    for (int i = 0; i < 20'000; ++i)
        shapes += record1(0x09, words({30000, 30000, 32000, 32000, 45, 0, 0, 0}));
    const auto result = decoded(m_codec, file1(shapes, 65535, 65535));
    QVERIFY(result);
    QVERIFY(!result->complete);
}

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

void TestWpgCodec::readsEachColorMapOnce()
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

void TestWpgCodec::findsTheFrameOfEachBitmap()
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

void TestWpgCodec::keepsLibwpgFromHarm_data()
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

void TestWpgCodec::keepsLibwpgFromHarm()
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

void TestWpgCodec::readsTheSamples()
{
    const QString samples = qEnvironmentVariable("QUORVIA_SAMPLES");
    const QDir folder(samples + QStringLiteral("/wpg"));
    const QStringList names = folder.entryList({QStringLiteral("*.wpg")}, QDir::Files);
    if (samples.isEmpty() || names.isEmpty()) {
        qInfo("no samples: QUORVIA_SAMPLES names no folder that holds wpg/*.wpg");
        return;
    }
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto result = decoded(m_codec, bytes);
        QVERIFY2(result, qPrintable(name));
        QVERIFY(result->complete);
        if (!bytes.contains("%!PS") && !bytes.contains("PS-Adobe")) // which would need another program
            QCOMPARE(difference(readByGm(bytes), result->image), QString());
    }
}

void TestWpgCodec::survivesBrokenFiles()
{
    const std::vector<Fixture> parents = wpgCorpus();
    for (quint32 seed = 1; seed <= 400; ++seed) {
        const QByteArray& good = parents[seed % parents.size()].file;
        const QString fault = misbehaviour(m_codec, Mutator(good, seed).next());
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

QTEST_MAIN(TestWpgCodec)
#include "tst_wpgcodec.moc"
