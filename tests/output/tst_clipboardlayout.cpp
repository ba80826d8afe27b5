// The arithmetic of the clipboard preview, in twips.
#include "output/ClipboardLayout.h"

#include <QTest>

using namespace quorvia::output;

class TestClipboardLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void scrollBars_data()
    {
        QTest::addColumn<QSize>("clip");
        QTest::addColumn<QSize>("area");
        QTest::addColumn<int>("maxAcross"); // 0: the bar is hidden
        QTest::addColumn<int>("maxDown");
        // The room is 6000 x 3000, the bars are 270 thick.
        QTest::newRow("nothing") << QSize(0, 0) << QSize(6000, 3000) << 0 << 0;
        QTest::newRow("small") << QSize(100, 100) << QSize(6000, 3000) << 0 << 0;
        QTest::newRow("just fits") << QSize(6000, 3000) << QSize(6000, 3000) << 0 << 0;
        QTest::newRow("a twip too wide") << QSize(6001, 100) << QSize(6000, 2730) << 201 << 0;
        QTest::newRow("a twip too high") << QSize(100, 3001) << QSize(5730, 3000) << 0 << 201;
        QTest::newRow("both too large") << QSize(9000, 9000) << QSize(5730, 2730) << 3470 << 6470;
        QTest::newRow("wide, and as high as the bar leaves")
            << QSize(6001, 2730) << QSize(6000, 2730) << 201 << 0;
        QTest::newRow("wide, and under the bar") << QSize(6001, 2731) << QSize(5730, 2730) << 471 << 201;
        QTest::newRow("high, and as wide as the bar leaves")
            << QSize(5730, 3001) << QSize(5730, 3000) << 0 << 201;
        QTest::newRow("high, and under the bar") << QSize(5731, 3001) << QSize(5730, 2730) << 201 << 471;
        QTest::newRow("as wide as the room, a twip too high")
            << QSize(6000, 3001) << QSize(5730, 2730) << 470 << 471;
        QTest::newRow("largest") << QSize(65535 * 15, 65535 * 15) << QSize(5730, 2730)
                                 << 65535 * 15 - 5730 + 200 << 65535 * 15 - 2730 + 200;
    }

    void scrollBars()
    {
        QFETCH(QSize, clip);
        const ClipboardView view = scrollBarView(clip, QSize(6000, 3000), 270);
        QTEST(view.area, "area");
        QTEST(view.maxAcross, "maxAcross");
        QTEST(view.maxDown, "maxDown");
        QCOMPARE(view.hasAcross, view.maxAcross > 0);
        QCOMPARE(view.hasDown, view.maxDown > 0);
        QVERIFY(!view.stretched);
    }

    void aRoomThinnerThanItsBars()
    {
        const ClipboardView view = scrollBarView(QSize(900, 900), QSize(100, 100), 270);
        QCOMPARE(view.area, QSize(0, 0));
        QCOMPARE(view.maxAcross, 1100);
        QCOMPARE(view.maxDown, 1100);
    }

    void aspectResize_data()
    {
        QTest::addColumn<QSize>("clip");
        QTest::addColumn<bool>("stretched");
        QTest::newRow("nothing") << QSize(0, 0) << false;
        QTest::newRow("small") << QSize(100, 100) << false;
        QTest::newRow("just fits") << QSize(6000, 3000) << false;
        QTest::newRow("too wide") << QSize(6001, 100) << true;
        QTest::newRow("too high") << QSize(100, 3001) << true;
        QTest::newRow("both") << QSize(9000, 9000) << true;
    }

    void aspectResize()
    {
        QFETCH(QSize, clip);
        QFETCH(bool, stretched);
        const ClipboardView expected{.area = QSize(6000, 3000), .stretched = stretched};
        QVERIFY(aspectResizeView(clip, QSize(6000, 3000)) == expected);
    }

    void sizes_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("pixels");
        QTest::addColumn<int>("twips");
        QTest::newRow("nothing") << 1.0 << 0 << 0;
        QTest::newRow("one to one") << 1.0 << 100 << 1500;
        QTest::newRow("two") << 2.0 << 100 << 750;
        QTest::newRow("two, odd") << 2.0 << 101 << 758;
        QTest::newRow("one and a half") << 1.5 << 100 << 1000;
        QTest::newRow("one and a tenth") << 1.1 << 11 << 150;
    }

    void sizes()
    {
        QFETCH(double, ratio);
        QFETCH(int, pixels);
        const QSize size = clipSize(QSize(pixels, 0), ratio);
        QTEST(size.width(), "twips");
        QCOMPARE(size.height(), 0);
    }

    void theWayBack_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("pixels");
        QTest::newRow("one to one") << 1.0 << 14; // 13.3
        QTest::newRow("one and a half") << 1.5 << 20;
        QTest::newRow("two") << 2.0 << 27; // 26.7
    }

    void theWayBack()
    {
        QFETCH(double, ratio);
        QTEST(devicePixels(QSize(200, 0), ratio).width(), "pixels");
    }
};

QTEST_APPLESS_MAIN(TestClipboardLayout)
#include "tst_clipboardlayout.moc"
