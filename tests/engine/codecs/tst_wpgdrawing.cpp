#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "WpgChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::wpg;

class TestWpgDrawing : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void drawsShapes_data();
    void drawsShapes();
    void drawsPlacedBitmaps();
    void drawsArcsAndCurves();
    void drawsGradientsAndCompounds();
    void sizesDrawings_data();
    void sizesDrawings();

  private:
    const Codec& m_codec = wpgCodec();
};

void TestWpgDrawing::drawsShapes_data()
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

void TestWpgDrawing::drawsShapes()
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

void TestWpgDrawing::drawsPlacedBitmaps()
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

void TestWpgDrawing::drawsArcsAndCurves()
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

void TestWpgDrawing::drawsGradientsAndCompounds()
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

void TestWpgDrawing::sizesDrawings_data()
{
    QTest::addColumn<QSize>("units");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("an inch") << QSize(1200, 1200) << QSize(96, 96);
    QTest::newRow("a page") << QSize(10200, 13200) << QSize(816, 1056);
    QTest::newRow("tiny") << QSize(60, 30) << QSize(64, 32);
    QTest::newRow("a hair") << QSize(60000, 1) << QSize(4096, 1);
    QTest::newRow("the largest") << QSize(65535, 65535) << QSize(4096, 4096);
}

void TestWpgDrawing::sizesDrawings()
{
    QFETCH(QSize, units);
    const QByteArray file = file1(record1(0x07, words({0, 0, 20, 20})), units.width(), units.height());
    const auto decoder = m_codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    const auto page = (*decoder)->header(1);
    QVERIFY(page);
    QTEST(page->size, "pixels");
}

QTEST_MAIN(TestWpgDrawing)
#include "tst_wpgdrawing.moc"
