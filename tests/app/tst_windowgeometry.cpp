#include "app/WindowGeometry.h"

#include <QTest>

using namespace quorvia::app;

class TestWindowGeometry : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void defaults_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::addColumn<QRect>("window");
        QTest::newRow("1600 x 1000 pixels") << QSize(24000, 15000) << QRect(1500, 938, 21000, 13125);
        QTest::newRow("odd") << QSize(1001, 1003) << QRect(62, 62, 876, 878);
        QTest::newRow("nothing") << QSize(0, 0) << QRect(0, 0, 0, 0);
    }

    void defaults()
    {
        QFETCH(QSize, screen);
        const QSize size = defaultSize(screen);
        QTEST(QRect(defaultCorner(screen, size), size), "window");
    }

    void corners_data()
    {
        QTest::addColumn<QPoint>("stored");
        QTest::addColumn<QPoint>("used");
        const QPoint fallback(7, 9);
        QTest::newRow("inside") << QPoint(100, 200) << QPoint(100, 200);
        QTest::newRow("partly outside") << QPoint(-2900, 14000) << QPoint(-2900, 14000);
        QTest::newRow("just outside, left") << QPoint(-3000, 0) << fallback;
        QTest::newRow("just outside, right") << QPoint(24000, 0) << fallback;
        QTest::newRow("just outside, above") << QPoint(0, -2000) << fallback;
        QTest::newRow("just outside, below") << QPoint(0, 15000) << fallback;
        QTest::newRow("far out") << QPoint(-2000000000, 2147483647) << fallback;
    }

    void corners()
    {
        QFETCH(QPoint, stored);
        QTEST(visibleCorner(stored, QSize(3000, 2000), {QRect(0, 0, 24000, 15000)}, QPoint(7, 9)), "used");
    }

    void cornersOnTwoScreens_data()
    {
        QTest::addColumn<QPoint>("stored");
        QTest::addColumn<bool>("visible");
        // A low screen to the right of a high one.
        QTest::newRow("on the first") << QPoint(100, 14000) << true;
        QTest::newRow("on the second") << QPoint(30000, 5000) << true;
        QTest::newRow("across both") << QPoint(23000, 5000) << true;
        QTest::newRow("below the second, where no screen is") << QPoint(30000, 12000) << false;
        QTest::newRow("to the right of both") << QPoint(43200, 0) << false;
    }

    void cornersOnTwoScreens()
    {
        QFETCH(QPoint, stored);
        QFETCH(bool, visible);
        const QList<QRect> screens = {QRect(0, 0, 24000, 15000), QRect(24000, 0, 19200, 10800)};
        QCOMPARE(visibleCorner(stored, QSize(3000, 1000), screens, QPoint(7, 9)) == stored, visible);
        QCOMPARE(visibleCorner(stored, QSize(3000, 1000), {}, QPoint(7, 9)), QPoint(7, 9));
    }

    void smallest_data()
    {
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<QSize>("used");
        QTest::newRow("a stored width of 100") << QSize(100, 9000) << QSize(1500, 9000);
        QTest::newRow("too low") << QSize(9000, 1999) << QSize(9000, 2000);
        QTest::newRow("just right") << QSize(1500, 2000) << QSize(1500, 2000);
        QTest::newRow("negative") << QSize(-5, -5) << QSize(1500, 2000);
        QTest::newRow("as large as the desktop") << QSize(24000, 15000) << QSize(24000, 15000);
        QTest::newRow("larger than the desktop") << QSize(2000000000, 24001) << QSize(24000, 15000);
    }

    void smallest()
    {
        QFETCH(QSize, stored);
        QTEST(usableSize(stored, QSize(24000, 15000)), "used");
    }
};

QTEST_GUILESS_MAIN(TestWindowGeometry)
#include "tst_windowgeometry.moc"
