#include "collections/StripLayout.h"

#include <QTest>

#include <limits>

using namespace quorvia::collections;

namespace {

constexpr int barHeight = 240;

StripLayout layoutOf(QSize control, int count, int rows)
{
    return sizeStrip({control, control.height(), barHeight, count, rows});
}

QStringList files(int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(QStringLiteral("<%1>").arg(i));
    return names;
}

} // namespace

class TestStripLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void cells_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QSize>("cell");
        QTest::newRow("one row") << 1500 << 1 << QSize(2000, 1500);  // 1999.5, to the even number
        QTest::newRow("two rows") << 1500 << 2 << QSize(1000, 750);  // 999.75
        QTest::newRow("three rows") << 1500 << 3 << QSize(666, 500); // 666.5
        QTest::newRow("hardly any height") << 1 << 3 << QSize(1, 1);
        QTest::newRow("no height") << 0 << 1 << QSize(0, 0);
    }

    void cells()
    {
        QFETCH(int, height);
        QFETCH(int, rows);
        QTEST(cellSize(height, rows), "cell");
    }

    void layout_data()
    {
        QTest::addColumn<QSize>("control");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("maxDraw");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QSize>("strip");
        QTest::addColumn<bool>("bar");
        QTest::addColumn<int>("maximum");
        QTest::newRow("empty") << QSize(9000, 1500) << 0 << 1 << 200 << 0 << QSize(0, 1500) << false << -180;
        QTest::newRow("fits") << QSize(9000, 1500) << 4 << 1 << 200 << 4 << QSize(8000, 1500) << false << -20;
        // 1260 high above the bar: a cell is 1679.58 wide
        QTest::newRow("too wide") << QSize(9000, 1500) << 6 << 1 << 200 << 6 << QSize(10080, 1260) << true
                                  << 22; // 21.6
        QTest::newRow("fits once the bar has its room")
            << QSize(9000, 1500) << 5 << 1 << 200 << 5 << QSize(8400, 1260) << false << -12;
        QTest::newRow("columns are rounded up")
            << QSize(9000, 1500) << 7 << 2 << 200 << 4 << QSize(4000, 1500) << false << -100;
        QTest::newRow("three rows") << QSize(3000, 1500) << 20 << 3 << 200 << 7 << QSize(3920, 1260) << true
                                    << 18; // 18.4
        QTest::newRow("200: whole") << QSize(9000, 1500) << 200 << 1 << 200 << 200 << QSize(336000, 1260)
                                    << true << 6540;
        // 9000 / 1999.5 + 2 = 6.5: 7 columns of 1680; 201 - 9000 / 1679.58 + 1 = 196.6
        QTest::newRow("201: a window")
            << QSize(9000, 1500) << 201 << 1 << 7 << 7 << QSize(11760, 1260) << true << 197;
        // (9000 / 666.5 + 2) * 3 = 46.5 cells would not fill the control once the bar has its room:
        // (9000 / 559.86 + 2) * 3 = 54.2; 201 / 3 - 9000 / 559.86 + 1 = 51.9
        QTest::newRow("201 in three rows")
            << QSize(9000, 1500) << 201 << 3 << 54 << 18 << QSize(10080, 1260) << true << 52;
        QTest::newRow("201 that fit")
            << QSize(500000, 1500) << 201 << 1 << 252 << 201 << QSize(402000, 1500) << false << -48;
        QTest::newRow("more rows than cells") << QSize(9000, 1500) << 6 << std::numeric_limits<int>::max()
                                              << 200 << 1 << QSize(1, 1500) << false << -180;
        QTest::newRow("no height") << QSize(9000, 0) << 250 << 1 << 9002 << 250 << QSize(0, 0) << false
                                   << -8749;
    }

    void layout()
    {
        QFETCH(QSize, control);
        QFETCH(int, count);
        QFETCH(int, rows);
        const StripLayout layout = layoutOf(control, count, rows);
        QTEST(layout.maxDraw, "maxDraw");
        QTEST(layout.columns, "columns");
        QTEST(layout.strip, "strip");
        QTEST(layout.barVisible, "bar");
        QTEST(layout.barMaximum, "maximum");
        QCOMPARE(layout.isWhole(), count <= 200);
    }

    void aWindowIsNeverMarkedWhole()
    {
        // 198 columns fit: with the two beyond, 200
        const StripLayout layout = layoutOf(QSize(264, 1), 10'000, 1);
        QVERIFY(!layout.isWhole());
        for (int width = 100; width < 400; ++width)
            QVERIFY(!layoutOf(QSize(width, 1), 10'000, 1).isWhole());
    }

    void aWindowIsNeverWithoutBar_data()
    {
        QTest::addColumn<int>("rows");
        for (int rows = 1; rows <= 3; ++rows)
            QTest::addRow("%d", rows) << rows;
    }

    void aWindowIsNeverWithoutBar()
    {
        QFETCH(int, rows);
        for (int height = 600; height < 4000; height += 75) {
            for (int width = 1500; width < 60'000; width += 1500) {
                const StripLayout layout = layoutOf(QSize(width, height), 10'000, rows);
                QVERIFY2(layout.barVisible, qPrintable(QStringLiteral("%1 x %2").arg(width).arg(height)));
                QVERIFY(layout.strip.width() >= width);
            }
        }
    }

    void theWindowIsMeasuredWithTheHeightBefore()
    {
        const StripLayout layout = sizeStrip({QSize(9000, 1500), 750, barHeight, 201, 1});
        QCOMPARE(layout.maxDraw, 11); // 9000 / 999.75 + 2
        QCOMPARE(layout.cell, QSize(1680, 1260));
    }

    void heights()
    {
        QCOMPARE(stripHeight(1500, 240, true), 1260);
        QCOMPARE(stripHeight(1500, 240, false), 1500);
        QCOMPARE(stripHeight(200, 240, true), 0);
    }

    void hits_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("firstIndex");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("position"); // -1: none
        QTest::newRow("first") << QPointF(0, 0) << 1 << 0 << 5 << 0;
        QTest::newRow("end of the first") << QPointF(999, 740) << 1 << 0 << 5 << 0;
        QTest::newRow("second") << QPointF(1000, 10) << 1 << 0 << 5 << 1;
        QTest::newRow("last") << QPointF(4999, 10) << 1 << 0 << 5 << 4;
        QTest::newRow("behind the last") << QPointF(5000, 10) << 1 << 0 << 5 << -1;
        QTest::newRow("second row") << QPointF(10, 750) << 2 << 0 << 5 << 1;
        QTest::newRow("second column, second row") << QPointF(1500, 800) << 2 << 0 << 5 << 3;
        QTest::newRow("below the last") << QPointF(2500, 800) << 2 << 0 << 5 << -1;
        QTest::newRow("third row") << QPointF(0, 1500) << 3 << 0 << 5 << 2;
        QTest::newRow("before the strip") << QPointF(-3000, 10) << 1 << 0 << 5 << 0;
        QTest::newRow("above the strip") << QPointF(2500, -900) << 1 << 0 << 5 << 2;
        QTest::newRow("a window from the first") << QPointF(1500, 10) << 1 << 1 << 300 << 1;
        QTest::newRow("a window") << QPointF(1500, 10) << 1 << 101 << 300 << 101;
        QTest::newRow("a window in three rows") << QPointF(1500, 800) << 3 << 31 << 300 << 34;
        QTest::newRow("behind a window") << QPointF(1500, 10) << 1 << 300 << 300 << -1;
        QTest::newRow("empty") << QPointF(0, 0) << 1 << 0 << 0 << -1;
        QTest::newRow("farther than numbers go") << QPointF(1e300, 0) << 3 << 0 << 5 << -1;
    }

    void hits()
    {
        QFETCH(QPointF, point);
        QFETCH(int, rows);
        QFETCH(int, firstIndex);
        QFETCH(int, count);
        QTEST(imageAt(point, QSize(1000, 750), rows, firstIndex, count).value_or(-1), "position");
    }

    void nothingLiesInAStripWithoutCells()
    {
        QCOMPARE(imageAt(QPointF(0, 0), QSize(0, 0), 1, 0, 5), std::nullopt);
    }

    void places_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("row");
        QTest::newRow("one row") << 7 << 1 << 7 << 0;
        QTest::newRow("two rows") << 7 << 2 << 3 << 1;
        QTest::newRow("three rows") << 7 << 3 << 2 << 1;
        QTest::newRow("the last of a column") << 8 << 3 << 2 << 2;
        QTest::newRow("the first") << 0 << 3 << 0 << 0;
    }

    void places()
    {
        QFETCH(int, position);
        QFETCH(int, rows);
        const CellPlace place = placeOf(position, rows);
        QTEST(place.column, "column");
        QTEST(place.row, "row");
    }

    void showing_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("cellWidth");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("shown"); // -1: left as it is
        // 20 units a cell; 10500 / 1050 - 1 = 9 cells are seen
        QTest::newRow("first, in sight") << 1 << 1000 << 10500 << 0 << -1;
        QTest::newRow("last in sight") << 10 << 1000 << 10500 << 0 << -1;
        QTest::newRow("beyond") << 11 << 1000 << 10500 << 0 << 200;
        QTest::newRow("just in sight at the left") << 3 << 1000 << 10500 << 40 << -1;
        QTest::newRow("to the left") << 2 << 1000 << 10500 << 40 << 20;
        QTest::newRow("one is seen at the least") << 2 << 1000 << 100 << 0 << -1;
        QTest::newRow("not two") << 3 << 1000 << 100 << 0 << 40;
        // 9975 / 1050 - 1 = 8.5, to the even number
        QTest::newRow("half a cell does not count") << 10 << 1000 << 9975 << 0 << 180;
        QTest::newRow("parts of a unit") << 4 << 1025 << 100 << 0 << 62; // 61.5
    }

    void showing()
    {
        QFETCH(int, position);
        QFETCH(int, cellWidth);
        QFETCH(int, width);
        QFETCH(int, value);
        QTEST(valueShowing(position, cellWidth, width, value).value_or(-1), "shown");
    }

    void dragsBeginPastTenPixels_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<bool>("drag");
        QTest::newRow("still") << 500 << false;
        QTest::newRow("ten to the right") << 510 << false;
        QTest::newRow("ten to the left") << 490 << false;
        QTest::newRow("eleven to the right") << 511 << true;
        QTest::newRow("eleven to the left") << 489 << true;
    }

    void dragsBeginPastTenPixels()
    {
        QFETCH(int, x);
        QTEST(isDrag(500, x), "drag");
    }

    void dragging_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("left");
        QTest::addColumn<int>("leftAfter");
        QTest::addColumn<int>("anchorLeftAfter");
        // pressed at x 500 with the strip at -3000, which is 20000 wide in a control of 9000; screen 1000
        QTest::newRow("follows the hand") << 520 << -3000 << -2700 << -3000;
        QTest::newRow("to the left") << 480 << -3000 << -3300 << -3000;
        QTest::newRow("to the near end") << 800 << -3000 << 0 << -3000;
        QTest::newRow("all but in the left zone") << 100 << -3000 << -9000 << -3000;
        QTest::newRow("all but in the right zone") << 899 << -3000 << 0 << -3000;
        QTest::newRow("into the left zone") << 99 << -5000 << -5006 << -3006;
        QTest::newRow("at the left edge") << 0 << -5000 << -5303 << -3303;
        QTest::newRow("at the left edge, at the far end") << 0 << -10800 << -11000 << -3000;
        QTest::newRow("at the left edge, just to the far end") << 0 << -10697 << -11000 << -3303;
        QTest::newRow("into the right zone") << 900 << -5000 << -4997 << -2997;
        QTest::newRow("at the right edge") << 999 << -5000 << -4700 << -2700;
        QTest::newRow("at the right edge, at the near end") << 999 << -100 << 0 << -3000;
        QTest::newRow("at the right edge, just to the near end") << 999 << -300 << 0 << -2700;
    }

    void dragging()
    {
        QFETCH(int, x);
        QFETCH(int, left);
        const StripDrag drag = dragged({500, -3000, left}, x, 1000, 9000, 20000, 15);
        QCOMPARE(drag.anchorX, 500);
        QTEST(drag.left, "leftAfter");
        QTEST(drag.anchorLeft, "anchorLeftAfter");
    }

    void aDragStopsAtTheFarEnd()
    {
        QCOMPARE(dragged({800, -3000, -3000}, 101, 1000, 9000, 13000, 15).left, -4000);
    }

    void aStripThatFitsStaysWhereItIs()
    {
        for (const int x : {0, 300, 480, 520, 700, 999})
            QCOMPARE(dragged({500, 0, 0}, x, 1000, 9000, 4000, 15).left, 0);
    }

    void values()
    {
        QCOMPARE(valueAtLeft(0), 0);
        QCOMPARE(valueAtLeft(-3000), 60);
        QCOMPARE(valueAtLeft(-3025), 60); // 60.5, to the even number
        QCOMPARE(valueAtLeft(-3026), 61);
    }

    void keys_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("key");
        QTest::newRow("empty") << 0 << "0";
        QTest::newRow("one") << 1 << "1<1>";
        QTest::newRow("two") << 2 << "2<1><2>";
        QTest::newRow("three") << 3 << "3<1><3>";
        QTest::newRow("four") << 4 << "4<1><4><2>";
        QTest::newRow("five: a half to the even number") << 5 << "5<1><5><2>";
        QTest::newRow("seven: a half to the even number") << 7 << "7<1><7><4>";
        QTest::newRow("nine: a half to the even number") << 9 << "9<1><9><4>";
        QTest::newRow("ten") << 10 << "10<1><10><5>";
    }

    void keys()
    {
        QFETCH(int, count);
        QTEST(listKey(files(count)), "key");
    }

    void aChangeBesideTheThreeNamesGoesUnnoticed()
    {
        QStringList changed = files(10);
        changed[6] = QStringLiteral("other");
        QCOMPARE(listKey(changed), listKey(files(10)));
        changed[4] = QStringLiteral("other");
        QVERIFY(listKey(changed) != listKey(files(10)));
    }
};

QTEST_GUILESS_MAIN(TestStripLayout)
#include "tst_striplayout.moc"
