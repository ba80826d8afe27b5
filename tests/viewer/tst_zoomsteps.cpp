#include "viewer/ZoomSteps.h"

#include <QTest>

using namespace quorvia::viewer;

using Zoom = std::optional<RectangleZoom>;
Q_DECLARE_METATYPE(Zoom)

class TestZoomSteps : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void steps_data();
    void steps();
    void walksUpAndDownAgain();
    void pixels_data();
    void pixels();
    void clamps_data();
    void clamps();
    void rectangles_data();
    void rectangles();
};

void TestZoomSteps::steps_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<double>("in");
    QTest::addColumn<double>("out");
    QTest::newRow("lowest") << 0.2 << 0.4 << 0.2;
    QTest::newRow("0.4") << 0.4 << 0.6 << 0.2;
    QTest::newRow("below the lowest") << 0.1 << 0.3 << 0.2;
    QTest::newRow("0.5") << 0.5 << 0.7 << 0.3;
    QTest::newRow("100%") << 1.0 << 1.2 << 0.8;
    QTest::newRow("1.8") << 1.8 << 2.0 << 1.6;
    QTest::newRow("1.9") << 1.9 << 2.1 << 1.7;
    QTest::newRow("200%") << 2.0 << 4.0 << 1.8;
    QTest::newRow("just above 200%") << 2.1 << 4.1 << 0.2;
    QTest::newRow("4") << 4.0 << 6.0 << 2.0;
    QTest::newRow("from a rectangle") << 3.7 << 5.7 << 1.7;
    QTest::newRow("no upper limit") << 100.0 << 102.0 << 98.0;
}

void TestZoomSteps::steps()
{
    QFETCH(double, zoom);
    QTEST(zoomedIn(zoom), "in");
    QTEST(zoomedOut(zoom), "out");
}

void TestZoomSteps::walksUpAndDownAgain()
{
    const double up[] = {0.4, 0.6, 0.8, 1.0, 1.2, 1.4, 1.6, 1.8, 2.0, 4.0, 6.0};
    double zoom = 0.2;
    for (const double next : up) {
        zoom = zoomedIn(zoom);
        QVERIFY2(zoom == next, qPrintable(QString::number(zoom, 'g', 17)));
    }
    for (auto it = std::rbegin(up) + 1; it != std::rend(up); ++it) {
        zoom = zoomedOut(zoom);
        QVERIFY2(zoom == *it, qPrintable(QString::number(zoom, 'g', 17))); // 1 is the unzoomed state, exactly
    }
}

void TestZoomSteps::pixels_data()
{
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<double>("twips");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPoint>("pixel");
    QTest::newRow("100%") << QPointF(10, 20) << 15.0 << 1.0 << QPoint(10, 20);
    QTest::newRow("within a pixel") << QPointF(10.9, 20.1) << 15.0 << 1.0 << QPoint(10, 20);
    QTest::newRow("zoomed") << QPointF(10, 20) << 15.0 << 4.0 << QPoint(2, 5);
    QTest::newRow("small") << QPointF(10, 20) << 15.0 << 0.2 << QPoint(50, 100);
    QTest::newRow("two device pixels each") << QPointF(10, 20.5) << 7.5 << 1.0 << QPoint(20, 41);
    QTest::newRow("before the image") << QPointF(-1, -0.5) << 15.0 << 1.0 << QPoint(-1, -1);
}

void TestZoomSteps::pixels()
{
    QFETCH(QPointF, position);
    QFETCH(double, twips);
    QFETCH(double, zoom);
    QTEST(imagePixelAt(position, QSizeF(twips, twips), zoom), "pixel");
}

void TestZoomSteps::clamps_data()
{
    QTest::addColumn<QPoint>("pixel");
    QTest::addColumn<QPoint>("clamped");
    QTest::newRow("within") << QPoint(5, 6) << QPoint(5, 6);
    QTest::newRow("before") << QPoint(-5, -1) << QPoint(0, 0);
    QTest::newRow("behind") << QPoint(100, 50) << QPoint(99, 49);
    QTest::newRow("one each") << QPoint(-1, 500) << QPoint(0, 49);
}

void TestZoomSteps::clamps()
{
    QFETCH(QPoint, pixel);
    QTEST(clampedPixel(pixel, QSize(100, 50)), "clamped");
    QCOMPARE(clampedPixel(pixel, QSize(0, 0)), QPoint(0, 0));
}

void TestZoomSteps::rectangles_data()
{
    QTest::addColumn<QPoint>("corner");
    QTest::addColumn<QPoint>("other");
    QTest::addColumn<Zoom>("zoom");
    // The panel has 800 x 600 pixels.
    const auto row = [](const char* name, QPoint corner, QPoint other, const Zoom& zoom) {
        QTest::newRow(name) << corner << other << zoom;
    };
    row("same shape", {100, 50}, {300, 200}, RectangleZoom{4, 400, 200});
    row("from the other corner", {300, 200}, {100, 50}, RectangleZoom{4, 400, 200});
    row("crossed corners", {300, 50}, {100, 200}, RectangleZoom{4, 400, 200});
    row("height binds, centred across", {100, 50}, {200, 200}, RectangleZoom{4, 400 - 200, 200});
    row("width binds, centred down", {100, 50}, {300, 150}, RectangleZoom{4, 400, 200 - 100});
    row("near the left edge it comes out negative", {0, 0}, {100, 150}, RectangleZoom{4, -200, 0});
    row("one pixel", {40, 30}, {41, 31}, RectangleZoom{10, 400 - 395, 300});
    row("just above ten", {0, 0}, {79, 59}, RectangleZoom{10, 0, -5});
    row("larger than the panel", {0, 0}, {1600, 1200}, RectangleZoom{0.5, 0, 0});
    row("a point", {40, 30}, {40, 30}, {});
    row("no width", {40, 30}, {40, 90}, {});
    row("no height", {40, 30}, {90, 30}, {});
    row("negative corner", {-1, 30}, {90, 90}, {});
}

void TestZoomSteps::rectangles()
{
    QFETCH(QPoint, corner);
    QFETCH(QPoint, other);
    QFETCH(Zoom, zoom);
    const Zoom got = zoomOnto(corner, other, QSizeF(800, 600));
    QCOMPARE(got.has_value(), zoom.has_value());
    if (zoom) {
        QCOMPARE(got->zoom, zoom->zoom);
        QCOMPARE(got->horizontal, zoom->horizontal);
        QCOMPARE(got->vertical, zoom->vertical);
    }
    QVERIFY(!zoomOnto(corner, other, QSizeF(0, 600)));
}

QTEST_APPLESS_MAIN(TestZoomSteps)
#include "tst_zoomsteps.moc"
