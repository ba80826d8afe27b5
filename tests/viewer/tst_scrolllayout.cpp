#include "viewer/ScrollLayout.h"

#include <QTest>

using namespace quorvia::viewer;

namespace {

constexpr QSize panel(12000, 9000);
constexpr int cross = 270;

ScrollState stateOf(QSize control, bool fit = false)
{
    ScrollState state;
    state.panel = panel;
    state.control = control;
    state.fitToWindow = fit;
    state.verticalWidth = cross;
    state.horizontalHeight = cross;
    state.twipsPerPixel = QSizeF(15, 15);
    return state;
}

} // namespace

class TestScrollLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void shows_data();
    void shows();
    void keepsTheRelativePosition_data();
    void keepsTheRelativePosition();
    void leavesTheCornerFree();
    void countsDevicePixels();
    void edges_data();
    void edges();
};

void TestScrollLayout::shows_data()
{
    QTest::addColumn<QSize>("control");
    QTest::addColumn<bool>("fit");
    QTest::addColumn<int>("vertical"); // the maximum; -1: hidden
    QTest::addColumn<int>("horizontal");
    QTest::newRow("smaller") << QSize(11985, 8985) << false << -1 << -1;
    QTest::newRow("exactly as large") << panel << false << -1 << -1;
    QTest::newRow("a pixel higher") << QSize(12000, 9015) << false << (15 + cross) / 15 << -1;
    QTest::newRow("a pixel wider") << QSize(12015, 9000) << false << -1 << (15 + cross) / 15;
    QTest::newRow("both") << QSize(24000, 18000) << false << (9000 + cross) / 15 << (12000 + cross) / 15;
    QTest::newRow("larger, but fitted") << QSize(24000, 18000) << true << -1 << -1;
}

void TestScrollLayout::shows()
{
    QFETCH(QSize, control);
    QFETCH(bool, fit);
    const ScrollLayout layout = layoutScrollBars(stateOf(control, fit));
    QTEST(layout.vertical.visible ? layout.vertical.maximum : -1, "vertical");
    QTEST(layout.horizontal.visible ? layout.horizontal.maximum : -1, "horizontal");
}

void TestScrollLayout::keepsTheRelativePosition_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("after"); // of 618
    QTest::newRow("begin") << 0 << 309 << 0;
    QTest::newRow("middle") << 103 << 309 << 206;
    QTest::newRow("end") << 309 << 309 << 618;
    QTest::newRow("never sized") << 0 << 0 << 0;
    QTest::newRow("beyond its maximum") << 400 << 309 << 618;
    QTest::newRow("rounded") << 1 << 1000 << 1;
}

void TestScrollLayout::keepsTheRelativePosition()
{
    QFETCH(int, value);
    QFETCH(int, maximum);
    ScrollState state = stateOf(QSize(12000, 18000));
    state.vertical = {value, maximum, true};
    state.horizontal = {7, 9, true};
    const ScrollLayout layout = layoutScrollBars(state);
    QCOMPARE(layout.vertical.maximum, 618);
    QTEST(layout.vertical.value, "after");
    // A bar that goes keeps what it said.
    QCOMPARE(layout.horizontal, (BarState{7, 9, false}));
}

void TestScrollLayout::leavesTheCornerFree()
{
    const ScrollLayout both = layoutScrollBars(stateOf(QSize(24000, 18000)));
    QCOMPARE(both.verticalPlace, QRect(12000 - cross, 0, cross, 9000 - cross));
    QCOMPARE(both.horizontalPlace, QRect(0, 9000 - cross, 12000, cross));
    const ScrollLayout one = layoutScrollBars(stateOf(QSize(100, 18000)));
    QCOMPARE(one.verticalPlace, QRect(12000 - cross, 0, cross, 9000));
}

void TestScrollLayout::countsDevicePixels()
{
    ScrollState state = stateOf(QSize(24000, 18000));
    state.twipsPerPixel = QSizeF(7.5, 7.5); // a screen with two device pixels to each of its own
    const ScrollLayout layout = layoutScrollBars(state);
    QCOMPARE(layout.vertical.maximum, int((9000 + cross) / 7.5));
    QCOMPARE(layout.horizontal.maximum, int((12000 + cross) / 7.5));
}

void TestScrollLayout::edges_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<double>("twips");
    QTest::addColumn<int>("edge");
    QTest::newRow("begin") << 0 << 15.0 << 0;
    QTest::newRow("ten pixels") << 10 << 15.0 << -150;
    QTest::newRow("fine screen") << 10 << 7.5 << -75;
    QTest::newRow("rounded") << 1 << 7.5 << -8;
}

void TestScrollLayout::edges()
{
    QFETCH(int, value);
    QFETCH(double, twips);
    QTEST(scrolledEdge(value, twips), "edge");
}

QTEST_APPLESS_MAIN(TestScrollLayout)
#include "tst_scrolllayout.moc"
