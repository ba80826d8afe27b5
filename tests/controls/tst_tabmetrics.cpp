#include "controls/TabMetrics.h"

#include <QTest>

using namespace quorvia::controls;

using Widths = std::vector<int>;
Q_DECLARE_METATYPE(Widths)

namespace {

/// Five tabs 50 wide: they begin at 5, 58, 111, 164 and 217 and end at 267.
const std::vector<TabSpan> five = placeTabs({46, 46, 46, 46, 46});
constexpr int buttons = 36;

} // namespace

class TestTabMetrics : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void places_data();
    void places();
    void hits_data();
    void hits();
    void rooms_data();
    void rooms();
    void offsets_data();
    void offsets();
    void scrolling_data();
    void scrolling();
    void usable_data();
    void usable();
    void reveals_data();
    void reveals();
    void separators_data();
    void separators();
    void heights_data();
    void heights();
};

void TestTabMetrics::places_data()
{
    QTest::addColumn<Widths>("captions");
    QTest::addColumn<Widths>("lefts");
    QTest::addColumn<Widths>("widths");
    QTest::addColumn<int>("surface");
    QTest::newRow("no tabs") << Widths{} << Widths{} << Widths{} << 1;
    QTest::newRow("one") << Widths{40} << Widths{5} << Widths{44} << 49;
    QTest::newRow("an empty caption") << Widths{0} << Widths{5} << Widths{4} << 9;
    QTest::newRow("three") << Widths{40, 10, 0} << Widths{5, 52, 69} << Widths{44, 14, 4} << 73;
}

void TestTabMetrics::places()
{
    QFETCH(Widths, captions);
    QFETCH(Widths, lefts);
    QFETCH(Widths, widths);
    const std::vector<TabSpan> tabs = placeTabs(captions);
    Widths placedLefts;
    Widths placedWidths;
    for (const TabSpan& tab : tabs) {
        placedLefts.push_back(tab.Left);
        placedWidths.push_back(tab.Width);
    }
    QCOMPARE(placedLefts, lefts);
    QCOMPARE(placedWidths, widths);
    QTEST(surfaceWidth(tabs), "surface");
}

void TestTabMetrics::hits_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("tab");
    QTest::newRow("outside") << -1 << 0;
    QTest::newRow("before the first") << 4 << 0;
    QTest::newRow("begin of the first") << 5 << 1;
    QTest::newRow("last of the first") << 54 << 1;
    QTest::newRow("gap, first pixel") << 55 << 0;
    QTest::newRow("gap, last pixel") << 57 << 0;
    QTest::newRow("second") << 58 << 2;
    QTest::newRow("last of all") << 266 << 5;
    QTest::newRow("behind all") << 267 << 0;
}

void TestTabMetrics::hits()
{
    QFETCH(int, x);
    QTEST(tabAt(five, x), "tab");
    QCOMPARE(tabAt({}, x), 0);
}

void TestTabMetrics::rooms_data()
{
    QTest::addColumn<int>("strip");
    QTest::addColumn<bool>("wanted");
    QTest::addColumn<int>("visible");
    QTest::newRow("wide") << 500 << false << 500;
    QTest::newRow("just fits") << 267 << false << 267;
    QTest::newRow("one pixel short") << 266 << true << 230;
    QTest::newRow("no wider than the buttons") << 36 << true << 0;
    QTest::newRow("narrower than the buttons") << 10 << true << 0;
    QTest::newRow("no width") << 0 << true << 0;
}

void TestTabMetrics::rooms()
{
    QFETCH(int, strip);
    QTEST(needsButtons(five, strip), "wanted");
    QTEST(visibleWidth(five, {strip, buttons}), "visible");
    QVERIFY(!needsButtons({}, strip));
}

void TestTabMetrics::offsets_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("offset");
    QTest::newRow("first") << 1 << 0;
    QTest::newRow("second") << 2 << 56;
    QTest::newRow("last") << 5 << 215;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("beyond") << 6 << 0;
}

void TestTabMetrics::offsets()
{
    QFETCH(int, first);
    QTEST(drawingOffset(five, first), "offset");
}

void TestTabMetrics::scrolling_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("strip");
    QTest::addColumn<int>("first");
    QTest::addColumn<bool>("left");
    QTest::addColumn<bool>("right");
    QTest::newRow("no tabs") << 0 << 10 << 1 << false << false;
    QTest::newRow("one tab too wide") << 1 << 10 << 1 << false << false;
    QTest::newRow("all fit") << 5 << 267 << 1 << false << false;
    QTest::newRow("begin") << 5 << 200 << 1 << false << true;
    QTest::newRow("middle") << 5 << 200 << 2 << true << true;
    // From the third on, the last ends at 267 - 109 = 158 of the 164 visible pixels.
    QTest::newRow("end seen") << 5 << 200 << 3 << true << false;
    QTest::newRow("end just seen") << 5 << 194 << 3 << true << false;
    QTest::newRow("end one pixel beyond") << 5 << 193 << 3 << true << true;
    QTest::newRow("no room, last tab") << 5 << 10 << 5 << true << false;
}

void TestTabMetrics::scrolling()
{
    QFETCH(int, count);
    QFETCH(int, strip);
    QFETCH(int, first);
    const std::vector<TabSpan> tabs(five.begin(), five.begin() + count);
    QTEST(canScrollLeft(tabs, first), "left");
    QTEST(canScrollRight(tabs, first, {strip, buttons}), "right");
}

void TestTabMetrics::usable_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("strip");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("usable");
    QTest::newRow("no tabs") << 0 << 100 << 3 << 1;
    QTest::newRow("no tabs, no width") << 0 << 0 << 3 << 1;
    QTest::newRow("all fit") << 5 << 267 << 4 << 1;
    QTest::newRow("kept") << 5 << 200 << 2 << 2;
    QTest::newRow("room for one more") << 5 << 200 << 4 << 3;
    QTest::newRow("room for more than that") << 5 << 260 << 5 << 2;
    QTest::newRow("beyond the last") << 5 << 90 << 9 << 5;
    QTest::newRow("below the first") << 5 << 90 << 0 << 1;
}

void TestTabMetrics::usable()
{
    QFETCH(int, count);
    QFETCH(int, strip);
    QFETCH(int, first);
    const std::vector<TabSpan> tabs(five.begin(), five.begin() + count);
    QTEST(usableFirst(tabs, first, {strip, buttons}), "usable");
}

void TestTabMetrics::reveals_data()
{
    QTest::addColumn<int>("strip");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("revealed");
    QTest::newRow("all fit") << 267 << 1 << 5 << 1;
    QTest::newRow("before the first visible") << 200 << 3 << 2 << 2;
    QTest::newRow("the first visible") << 200 << 3 << 3 << 3;
    QTest::newRow("in sight") << 200 << 1 << 3 << 1;
    QTest::newRow("one step on") << 200 << 1 << 4 << 2;
    QTest::newRow("two steps on") << 200 << 1 << 5 << 3;
    QTest::newRow("wider than the strip") << 60 << 1 << 4 << 4;
    QTest::newRow("none") << 200 << 2 << 0 << 2;
    QTest::newRow("no such tab") << 200 << 2 << 6 << 2;
}

void TestTabMetrics::reveals()
{
    QFETCH(int, strip);
    QFETCH(int, first);
    QFETCH(int, index);
    QTEST(firstToReveal(five, first, index, {strip, buttons}), "revealed");
}

void TestTabMetrics::separators_data()
{
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("separators"); // of tabs 1 to 4
    QTest::newRow("none selected") << 0 << "1234";
    QTest::newRow("first selected") << 1 << "34";
    QTest::newRow("second selected") << 2 << "4";
    QTest::newRow("third selected") << 3 << "1";
    QTest::newRow("last selected") << 4 << "12";
}

void TestTabMetrics::separators()
{
    QFETCH(int, selected);
    QString separators;
    for (int index = 1; index <= 4; ++index) {
        if (hasSeparator(index, selected))
            separators += QString::number(index);
    }
    QTEST(separators, "separators");
}

void TestTabMetrics::heights_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("height");
    QTest::newRow("small font") << 12 << 23;
    QTest::newRow("font that just fits") << 16 << 23;
    QTest::newRow("large font") << 30 << 37;
}

void TestTabMetrics::heights()
{
    QFETCH(int, line);
    QTEST(preferredSurfaceHeight(line), "height");
}

QTEST_APPLESS_MAIN(TestTabMetrics)
#include "tst_tabmetrics.moc"
