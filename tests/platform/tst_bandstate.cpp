#include "platform/BandState.h"

#include <QTest>

#include <functional>
#include <limits>

using namespace quorvia::platform;

Q_DECLARE_METATYPE(quorvia::platform::BandState)

namespace {

constexpr int largestInt = std::numeric_limits<int>::max();
constexpr int lowestInt = std::numeric_limits<int>::min();

/// A small screen at the left and a large one at its right.
const QList<QRect> twoScreens = {{0, 0, 1000, 800}, {1000, 0, 1920, 1080}};

const BandState usual = {.visible = true,
                         .area = dockingArea::right,
                         .width = 300,
                         .height = 200,
                         .floatingPosition = QPoint(50, 60),
                         .floatingSize = {320, 240}};

BandState with(const std::function<void(BandState&)>& change)
{
    BandState state = usual;
    change(state);
    return state;
}

} // namespace

class TestBandState : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void areas_data();
    void areas();
    void rectangles_data();
    void rectangles();
    void usableStates_data();
    void usableStates();
    void extents_data();
    void extents();
};

void TestBandState::areas_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("known");
    QTest::addColumn<bool>("upright");
    QTest::newRow("left") << 0 << true << true;
    QTest::newRow("right") << 1 << true << true;
    QTest::newRow("top") << 2 << true << false;
    QTest::newRow("bottom") << 3 << true << false;
    QTest::newRow("floating") << 4 << true << false;
    QTest::newRow("beyond") << 5 << false << false;
    QTest::newRow("negative") << -1 << false << false;
}

void TestBandState::areas()
{
    QFETCH(int, number);
    QTEST(isDockingArea(number), "known");
    QTEST(isUpright(number), "upright");
}

void TestBandState::rectangles_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("expected");
    const QSize size(300, 200);
    const auto row = [&](const char* name, QPoint position, QRect expected) {
        QTest::newRow(name) << position << size << twoScreens << expected;
    };
    row("within the first", {50, 60}, {50, 60, 300, 200});
    row("within the second", {1500, 60}, {1500, 60, 300, 200});
    row("over both", {900, 60}, {900, 60, 300, 200});
    row("partly below the screen stays", {50, 700}, {50, 700, 300, 200});
    row("partly at its left stays", {-250, 60}, {-250, 60, 300, 200});
    row("just enough to grip at the left", {-252, 60}, {-252, 60, 300, 200});
    row("too little to grip at the left", {-253, 60}, {0, 60, 300, 200});
    row("just enough to grip at the right", {2872, 60}, {2872, 60, 300, 200});
    row("too little to grip at the right", {2873, 60}, {2620, 60, 300, 200});
    row("just enough to grip at the bottom", {50, 784}, {50, 784, 300, 200});
    row("too little to grip at the bottom", {50, 785}, {50, 600, 300, 200});
    row("title bar above the screen", {50, -1}, {50, 0, 300, 200});
    row("far left", {-5000, 60}, {0, 60, 300, 200});
    row("far right", {5000, 60}, {2620, 60, 300, 200});
    row("below the second", {1500, 3000}, {1500, 880, 300, 200});
    row("below the first, where the second goes on", {400, 900}, {400, 600, 300, 200});
    row("largest numbers", {largestInt, largestInt}, {2620, 880, 300, 200});
    row("lowest numbers", {lowestInt, lowestInt}, {0, 0, 300, 200});

    QTest::newRow("as large as its screen at most")
        << QPoint(100, 100) << QSize(5000, 5000) << QList<QRect>{{0, 0, 1000, 800}}
        << QRect(100, 100, 1000, 800);
    QTest::newRow("the screen where it lies counts")
        << QPoint(100, 100) << QSize(1500, 900) << twoScreens << QRect(100, 100, 1000, 800);
    QTest::newRow("largest size") << QPoint(1000, 0) << QSize(largestInt, largestInt) << twoScreens
                                  << QRect(1000, 0, 1920, 1080);
    QTest::newRow("no size") << QPoint(50, 60) << QSize(0, 0) << twoScreens << QRect(50, 60, 60, 60);
    QTest::newRow("invalid size") << QPoint(50, 60) << QSize(-1, -7) << twoScreens << QRect(50, 60, 60, 60);
    QTest::newRow("screen that does not begin at 0")
        << QPoint(0, 0) << size << QList<QRect>{{-1920, 40, 1920, 1040}} << QRect(-300, 40, 300, 200);
    QTest::newRow("screen smaller than the least band")
        << QPoint(0, 0) << size << QList<QRect>{{0, 0, 40, 40}} << QRect(0, 0, 40, 40);
    QTest::newRow("no screens") << QPoint(-5000, 60) << size << QList<QRect>{} << QRect(-5000, 60, 300, 200);
}

void TestBandState::rectangles()
{
    QFETCH(QPoint, position);
    QFETCH(QSize, size);
    QFETCH(QList<QRect>, screens);
    QTEST(onScreen(position, size, screens), "expected");
}

void TestBandState::usableStates_data()
{
    QTest::addColumn<BandState>("wanted");
    QTest::addColumn<BandState>("expected");
    const auto row = [](const char* name, const std::function<void(BandState&)>& wanted,
                        const std::function<void(BandState&)>& expected) {
        QTest::newRow(name) << with(wanted) << with(expected);
    };
    const auto unchanged = [](BandState&) {};
    row("usable", unchanged, unchanged);
    for (int area = dockingArea::left; area <= dockingArea::floating; ++area) {
        const auto moved = [area](BandState& state) { state.area = area; };
        row(qPrintable(QStringLiteral("area %1").arg(area)), moved, moved);
    }
    row(
        "hidden", [](BandState& s) { s.visible = false; }, [](BandState& s) { s.visible = false; });
    row(
        "area -1", [](BandState& s) { s.area = -1; }, unchanged);
    row(
        "area 5", [](BandState& s) { s.area = 5; }, unchanged);
    row(
        "area of the largest number", [](BandState& s) { s.area = largestInt; }, unchanged);
    row(
        "width 0", [](BandState& s) { s.width = 0; }, unchanged);
    row(
        "negative width", [](BandState& s) { s.width = -300; }, unchanged);
    row(
        "lowest width", [](BandState& s) { s.width = lowestInt; }, unchanged);
    row(
        "width 1", [](BandState& s) { s.width = 1; }, [](BandState& s) { s.width = 60; });
    row(
        "width 10^9", [](BandState& s) { s.width = 1000000000; }, [](BandState& s) { s.width = 1920; });
    row(
        "height 0", [](BandState& s) { s.height = 0; }, unchanged);
    row(
        "negative height", [](BandState& s) { s.height = -1; }, unchanged);
    row(
        "height 59", [](BandState& s) { s.height = 59; }, [](BandState& s) { s.height = 60; });
    row(
        "height 10^9", [](BandState& s) { s.height = 1000000000; }, [](BandState& s) { s.height = 1080; });
    row(
        "floating, no size",
        [](BandState& s) {
            s.floatingSize = {0, 0};
        },
        unchanged);
    row(
        "floating, no height",
        [](BandState& s) {
            s.floatingSize = {400, 0};
        },
        [](BandState& s) {
            s.floatingSize = {400, 240};
        });
    row(
        "floating, size 10^9",
        [](BandState& s) {
            s.floatingSize = {1000000000, 1000000000};
        },
        [](BandState& s) {
            s.floatingSize = {1920, 1080};
        });
    row(
        "floating, off all screens",
        [](BandState& s) {
            s.floatingPosition = {9000, 9000};
        },
        [](BandState& s) {
            s.floatingPosition = {2600, 840};
        });
    row(
        "never floated", [](BandState& s) { s.floatingPosition = {}; },
        [](BandState& s) { s.floatingPosition = {}; });
    row(
        "never floated, damaged size",
        [](BandState& s) {
            s.floatingPosition = {};
            s.floatingSize = {-1, 1000000000};
        },
        [](BandState& s) {
            s.floatingPosition = {};
            s.floatingSize = {320, 1080};
        });
}

void TestBandState::usableStates()
{
    QFETCH(BandState, wanted);
    QFETCH(BandState, expected);
    const BandState state = usableState(wanted, usual, twoScreens);
    QCOMPARE(state.visible, expected.visible);
    QCOMPARE(state.area, expected.area);
    QCOMPARE(state.width, expected.width);
    QCOMPARE(state.height, expected.height);
    QCOMPARE(state.floatingPosition, expected.floatingPosition);
    QCOMPARE(state.floatingSize, expected.floatingSize);
    QCOMPARE(usableState(state, usual, twoScreens), state); // nothing left to put right
}

void TestBandState::extents_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("available");
    QTest::addColumn<int>("extent");
    QTest::newRow("room enough") << 300 << 1000 << 300;
    QTest::newRow("just enough") << 300 << 380 << 300;
    QTest::newRow("some is kept for the client area") << 300 << 379 << 299;
    QTest::newRow("far too large") << 1000000000 << 1000 << 920;
    QTest::newRow("the least band") << 300 << 140 << 60;
    QTest::newRow("the least band goes before the client area") << 300 << 100 << 60;
    QTest::newRow("less than the least band") << 300 << 40 << 40;
    QTest::newRow("no room") << 300 << 0 << 0;
    QTest::newRow("less than none") << 300 << -20 << 0;
}

void TestBandState::extents()
{
    QFETCH(int, wanted);
    QFETCH(int, available);
    QTEST(dockedExtent(wanted, available), "extent");
}

QTEST_APPLESS_MAIN(TestBandState)
#include "tst_bandstate.moc"
