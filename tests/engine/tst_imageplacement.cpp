#include "engine/ImagePlacement.h"

#include <QtTest>

using namespace quorvia::engine;

Q_DECLARE_METATYPE(quorvia::engine::DisplaySettings)
Q_DECLARE_METATYPE(quorvia::engine::Filter)

class tst_ImagePlacement : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void placed_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<QSize>("control");
        QTest::addColumn<DisplaySettings>("settings");
        QTest::addColumn<QRect>("place");
        const auto row = [](const char* name, QSize image, QSize control, DisplaySettings settings,
                            QRect place) { QTest::newRow(name) << image << control << settings << place; };
        const DisplaySettings fit{scaleToControl, 0, 1.0};
        const DisplaySettings fill{scaleToControl, 1, 1.0};
        row("fit, wide into square", {200, 100}, {100, 100}, fit, {0, 25, 100, 50});
        row("fit, tall into square", {100, 200}, {100, 100}, fit, {25, 0, 50, 100});
        row("fit, odd rest goes below", {200, 99}, {100, 100}, fit, {0, 25, 100, 49});
        row("fit, same proportions", {400, 200}, {200, 100}, fit, {0, 0, 200, 100});
        row("fit enlarges too", {10, 10}, {100, 50}, fit, {25, 0, 50, 50});
        row("fit, thin line keeps a pixel", {65535, 1}, {100, 100}, fit, {0, 49, 100, 1});
        row("fit ignores the zoom", {200, 100}, {100, 100}, {scaleToControl, 0, 3.0}, {0, 25, 100, 50});
        row("fill both axes", {200, 100}, {100, 100}, fill, {0, 0, 100, 100});
        row("any other option fills", {200, 100}, {30, 70}, {scaleToControl, -3, 1.0}, {0, 0, 30, 70});
        row("natural size, small control", {200, 100}, {50, 50}, {0, 0, 1.0}, {0, 0, 200, 100});
        row("natural size, large control", {20, 10}, {500, 500}, {0, 0, 1.0}, {0, 0, 20, 10});
        row("zoom 4", {20, 10}, {50, 50}, {0, 0, 4.0}, {0, 0, 80, 40});
        row("zoom 0.2", {200, 101}, {50, 50}, {0, 0, 0.2}, {0, 0, 40, 20});
        row("zoom keeps a pixel", {2, 2}, {50, 50}, {0, 0, 0.01}, {0, 0, 1, 1});
        row("other modes are natural", {20, 10}, {50, 50}, {2, 1, 1.0}, {0, 0, 20, 10});
        row("huge zoom stays inside an int", {65535, 65535}, {50, 50}, {0, 0, 1e9}, {0, 0, 1 << 29, 1 << 29});
        row("no image", {0, 0}, {50, 50}, fit, {});
        row("no control", {50, 50}, {0, 10}, {0, 0, 1.0}, {});
    }

    void placed()
    {
        QFETCH(QSize, image);
        QFETCH(QSize, control);
        QFETCH(DisplaySettings, settings);
        QFETCH(QRect, place);
        QCOMPARE(placedImage(image, control, settings), place);
    }

    void filter_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<Filter>("filter");
        QTest::newRow("smaller") << 100 << 99 << Filter::Area;
        QTest::newRow("same") << 100 << 100 << Filter::Bicubic;
        QTest::newRow("a little larger") << 100 << 101 << Filter::Bicubic;
        QTest::newRow("300%") << 100 << 300 << Filter::Bicubic;
        QTest::newRow("above 300%") << 100 << 301 << Filter::Nearest;
        QTest::newRow("largest") << 65535 << (1 << 29) << Filter::Nearest;
    }

    void filter()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(Filter, filter);
        QCOMPARE(displayFilter(from, to), filter);
    }

    void covers_data()
    {
        QTest::addColumn<QSize>("decoded");
        QTest::addColumn<QSize>("target");
        QTest::addColumn<bool>("enough");
        QTest::newRow("full covers anything") << QSize(1000, 500) << QSize(4000, 2000) << true;
        QTest::newRow("larger") << QSize(250, 125) << QSize(200, 100) << true;
        QTest::newRow("as large") << QSize(250, 125) << QSize(250, 125) << true;
        QTest::newRow("one pixel short across") << QSize(250, 125) << QSize(251, 125) << false;
        QTest::newRow("one pixel short down") << QSize(250, 125) << QSize(250, 126) << false;
    }

    void covers()
    {
        QFETCH(QSize, decoded);
        QFETCH(QSize, target);
        QFETCH(bool, enough);
        QCOMPARE(coversTarget(decoded, QSize(1000, 500), target), enough);
    }

    void band_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::addColumn<QRect>("target");
        QTest::addColumn<QRect>("outline");
        QTest::newRow("at 100%") << QPoint(2, 3) << QPoint(5, 7) << QRect(0, 0, 20, 10) << QRect(2, 3, 4, 5);
        QTest::newRow("any order") << QPoint(5, 3) << QPoint(2, 7) << QRect(0, 0, 20, 10)
                                   << QRect(2, 3, 4, 5);
        QTest::newRow("one pixel") << QPoint(2, 3) << QPoint(2, 3) << QRect(0, 0, 20, 10)
                                   << QRect(2, 3, 1, 1);
        QTest::newRow("at 400%") << QPoint(2, 3) << QPoint(5, 7) << QRect(0, 0, 80, 40)
                                 << QRect(8, 12, 16, 20);
        QTest::newRow("at 50%, moved")
            << QPoint(2, 4) << QPoint(5, 7) << QRect(100, 50, 10, 5) << QRect(101, 52, 2, 2);
        QTest::newRow("never thinner than a pixel")
            << QPoint(2, 2) << QPoint(2, 2) << QRect(0, 0, 2, 1) << QRect(0, 0, 1, 1);
    }

    void band()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(QRect, target);
        QFETCH(QRect, outline);
        const QRegion frame = bandFrame(from, to, QSize(20, 10), target);
        QCOMPARE(frame, QRegion(outline).subtracted(outline.adjusted(1, 1, -1, -1)));
    }

    void noBandWithoutImage() { QVERIFY(bandFrame(QPoint(0, 0), QPoint(5, 5), QSize(), QRect()).isEmpty()); }

    void devicePixels_data()
    {
        QTest::addColumn<QRect>("logical");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QRect>("device");
        QTest::newRow("1") << QRect(3, 4, 5, 6) << 1.0 << QRect(3, 4, 5, 6);
        QTest::newRow("2") << QRect(3, 4, 5, 6) << 2.0 << QRect(6, 8, 10, 12);
        QTest::newRow("1.5 reaches outwards") << QRect(1, 1, 1, 3) << 1.5 << QRect(1, 1, 2, 5);
        QTest::newRow("1.1 is not thrown off by rounding")
            << QRect(10, 20, 10, 10) << 1.1 << QRect(11, 22, 11, 11);
        QTest::newRow("empty") << QRect() << 2.0 << QRect();
    }

    void devicePixels()
    {
        QFETCH(QRect, logical);
        QFETCH(double, ratio);
        QFETCH(QRect, device);
        QCOMPARE(toDevicePixels(logical, ratio), device);
        if (!logical.isEmpty())
            QVERIFY(toLogicalPixels(device, ratio).contains(logical));
    }

    void twips_data()
    {
        QTest::addColumn<int>("pixels");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("twips");
        QTest::newRow("1") << 100 << 1.0 << 1500;
        QTest::newRow("2") << 101 << 2.0 << 758; // 757.5 rounded
        QTest::newRow("1.25") << 7 << 1.25 << 84;
        QTest::newRow("largest") << 65535 << 1.0 << 983025;
        QTest::newRow("none") << 0 << 1.0 << 0;
    }

    void twips()
    {
        QFETCH(int, pixels);
        QFETCH(double, ratio);
        QFETCH(int, twips);
        QCOMPARE(toTwips(pixels, ratio), twips);
    }
};

QTEST_APPLESS_MAIN(tst_ImagePlacement)
#include "tst_imageplacement.moc"
