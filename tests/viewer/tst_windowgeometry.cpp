#include "viewer/WindowGeometry.h"

#include <QTest>

using namespace quorvia::viewer;

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
        QTEST(defaultGeometry(screen), "window");
    }

    void smallest_data()
    {
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<QSize>("used");
        QTest::newRow("a stored width of 100") << QSize(100, 9000) << QSize(1500, 9000);
        QTest::newRow("too low") << QSize(9000, 1999) << QSize(9000, 2000);
        QTest::newRow("just right") << QSize(1500, 2000) << QSize(1500, 2000);
        QTest::newRow("negative") << QSize(-5, -5) << QSize(1500, 2000);
    }

    void smallest()
    {
        QFETCH(QSize, stored);
        QTEST(usableSize(stored), "used");
    }
};

QTEST_GUILESS_MAIN(TestWindowGeometry)
#include "tst_windowgeometry.moc"
