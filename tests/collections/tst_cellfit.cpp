#include "collections/CellFit.h"

#include <QTest>

using namespace quorvia::collections;

class TestCellFit : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void colorsGoRound_data()
    {
        QTest::addColumn<QColor>("present");
        QTest::addColumn<QColor>("next");
        QTest::newRow("light grey") << QColor(0xE0, 0xE0, 0xE0) << QColor(0xC0, 0xC0, 0xC0);
        QTest::newRow("dark grey") << QColor(0xC0, 0xC0, 0xC0) << QColor(255, 255, 255);
        QTest::newRow("white") << QColor(255, 255, 255) << QColor(0xE0, 0xE0, 0xE0);
        QTest::newRow("selected") << QColor(0, 0, 255) << QColor(0xE0, 0xE0, 0xE0);
        QTest::newRow("any other") << QColor(1, 2, 3) << QColor(0xE0, 0xE0, 0xE0);
    }

    void colorsGoRound()
    {
        QFETCH(QColor, present);
        QTEST(nextCellColor(present), "next");
    }

    void selectedIsBlue() { QCOMPARE(selectedCellColor(), QColor(0, 0, 255)); }

    void canvasHasTheProportionsOfACell()
    {
        QCOMPARE(workingCanvas(15), QSizeF(2992.5, 2250));
        QCOMPARE(workingCanvas(12), QSizeF(2394, 1800));
    }

    void fit_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<double>("twipsPerPixel");
        QTest::addColumn<double>("density");
        QTest::addColumn<QRectF>("picture"); // twips
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("square") << QSize(100, 100) << 15.0 << 1.0 << QRectF(50, 50, 2892.5, 2150)
                                << QSize(193, 143);
        QTest::newRow("square, of one pixel")
            << QSize(1, 1) << 15.0 << 1.0 << QRectF(50, 50, 2892.5, 2150) << QSize(193, 143);
        // 3000 : 2000 on 2992.5: as high as 1995, which is below 2150
        QTest::newRow("wide") << QSize(3000, 2000) << 15.0 << 1.0 << QRectF(50, 177.5, 2892.5, 1895)
                              << QSize(193, 126);
        // 400 * (2992.5 / 500) = 2394, more than 2150: fills the height
        QTest::newRow("hardly wide") << QSize(500, 400) << 15.0 << 1.0 << QRectF(50, 50, 2892.5, 2150)
                                     << QSize(193, 143);
        // 4 : 3 gives 2244.375, rounded 2244, more than 2150
        QTest::newRow("4 : 3 fills the canvas")
            << QSize(4000, 3000) << 15.0 << 1.0 << QRectF(50, 50, 2892.5, 2150) << QSize(193, 143);
        // 2250 / 3000 * 2000 = 1500
        QTest::newRow("tall") << QSize(2000, 3000) << 15.0 << 1.0 << QRectF(796.25, 50, 1400, 2150)
                              << QSize(93, 143);
        QTest::newRow("hardly tall") << QSize(999, 1000) << 15.0 << 1.0
                                     << QRectF(1496.25 - 2247.75 / 2 + 50, 50, 2147.75, 2150)
                                     << QSize(143, 143);
        QTest::newRow("other twips") << QSize(2000, 3000) << 12.0 << 1.0 << QRectF(647, 50, 1100, 1700)
                                     << QSize(92, 142);
        QTest::newRow("a dense screen")
            << QSize(2000, 3000) << 15.0 << 2.0 << QRectF(796.25, 50, 1400, 2150) << QSize(187, 287);
        QTest::newRow("a thread across")
            << QSize(65535, 1) << 15.0 << 1.0 << QRectF(50, 1117.5, 2892.5, 15) << QSize(193, 1);
        QTest::newRow("a thread down")
            << QSize(1, 65535) << 15.0 << 1.0 << QRectF(1488.75, 50, 15, 2150) << QSize(1, 143);
    }

    void fit()
    {
        QFETCH(QSize, image);
        QFETCH(double, twipsPerPixel);
        QFETCH(double, density);
        const CellFit fit = fitCell(image, twipsPerPixel, density);
        QCOMPARE(fit.canvas, workingCanvas(twipsPerPixel));
        QTEST(fit.picture, "picture");
        QTEST(fit.pixels, "pixels");
    }

    void aTallImageAllButAsWideAsTheCanvasFillsIt()
    {
        // At 2 twips a pixel the canvas is 399 wide and 300 high: 299.7 is within 100 of its width.
        const CellFit fit = fitCell(QSize(999, 1000), 2);
        QCOMPARE(fit.picture, QRectF(50, 50, 299, 200));
        QCOMPARE(fit.pixels, QSize(150, 100)); // 149.5, to the even number
    }
};

QTEST_GUILESS_MAIN(TestCellFit)
#include "tst_cellfit.moc"
