#include "controls/ScrollMetrics.h"

#include <QTest>

using namespace quorvia::controls;

class TestScrollMetrics : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void thumbs_data();
    void thumbs();
    void valuesComeBack_data();
    void valuesComeBack();
    void positions_data();
    void positions();
    void steps_data();
    void steps();
    void clamps_data();
    void clamps();
    void parts_data();
    void parts();
};

void TestScrollMetrics::thumbs_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("thumb");
    // Arrows of 270 and 285 twips; the track is what lies between.
    QTest::newRow("20 twips a unit, at 0") << 5555 << 50 << 0 << 270 << 2000;
    QTest::newRow("20 twips a unit, at 7") << 5555 << 50 << 7 << 410 << 2000;
    QTest::newRow("20 twips a unit, at its end") << 5555 << 50 << 50 << 1270 << 2000;
    QTest::newRow("maximum 1") << 5555 << 1 << 1 << 290 << 2490;
    QTest::newRow("maximum 0 counts as 1") << 5555 << 0 << 1 << 290 << 2490;
    QTest::newRow("just long enough for that") << 5555 << 230 << 100 << 2270 << 200;
    QTest::newRow("one unit more") << 5555 << 231 << 0 << 270 << 200;
    QTest::newRow("short thumb, half way") << 5555 << 1000 << 500 << 270 + 2300 << 200;
    QTest::newRow("short thumb, stops short of the end") << 5555 << 1000 << 1000 << 270 + 4600 << 200;
    QTest::newRow("a thumb of a half is rounded") << 5556 << 50 << 0 << 270 << 2001;
    QTest::newRow("very short control") << 600 << 10 << 10 << 270 << 200;
    QTest::newRow("shorter than its arrows") << 100 << 10 << 5 << 270 << 200;
    QTest::newRow("largest maximum") << 5555 << 2147483647 << 2147483647 << 270 + 4600 << 200;
}

void TestScrollMetrics::thumbs()
{
    QFETCH(int, length);
    QFETCH(int, maximum);
    QFETCH(int, value);
    QFETCH(int, start);
    QFETCH(int, thumb);
    QCOMPARE(thumbAt({length, 270, 285, maximum}, value), (ScrollThumb{start, thumb}));
}

void TestScrollMetrics::valuesComeBack_data()
{
    QTest::addColumn<int>("maximum");
    for (const int maximum : {1, 7, 50, 150, 151, 230, 231, 999, 4600})
        QTest::addRow("%d", maximum) << maximum;
}

void TestScrollMetrics::valuesComeBack()
{
    QFETCH(int, maximum);
    const ScrollTrack track{5555, 270, 285, maximum};
    for (int value = 0; value <= maximum; ++value)
        QCOMPARE(valueAt(track, thumbAt(track, value).start), std::optional(value));
}

void TestScrollMetrics::positions_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("position");
    QTest::addColumn<std::optional<int>>("value");
    const auto row = [](const char* name, int length, int maximum, int position, std::optional<int> value) {
        QTest::newRow(name) << length << maximum << position << value;
    };
    row("track's begin", 5555, 50, 270, 0);
    row("20 twips on", 5555, 50, 290, 1);
    row("rounded down", 5555, 50, 299, 1);
    row("rounded up", 5555, 50, 301, 2);
    row("above the track", 5555, 50, 200, -4);
    row("beyond the maximum", 5555, 50, 2270, 100);
    row("short thumb", 5555, 1000, 270 + 2300, 500);
    row("short thumb, beyond", 5555, 1000, 270 + 5000, 1087);
    row("one twip to go", 270 + 285 + 401, 10, 271, 10);
    row("no way to go", 270 + 285 + 400, 10, 300, std::nullopt);
    row("less than that", 600, 10, 400, std::nullopt);
    row("shorter than its arrows", 100, 10, 50, std::nullopt);
    row("no overflow", 1000, 2147483647, 2147483647, 1 << 30);
}

void TestScrollMetrics::positions()
{
    QFETCH(int, length);
    QFETCH(int, maximum);
    QFETCH(int, position);
    QFETCH(std::optional<int>, value);
    QCOMPARE(valueAt({length, 270, 285, maximum}, position), value);
}

void TestScrollMetrics::steps_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("step");
    QTest::newRow("0") << 0 << 1;
    QTest::newRow("1") << 1 << 1;
    QTest::newRow("150") << 150 << 1;
    QTest::newRow("151") << 151 << 2;
    QTest::newRow("249") << 249 << 2;
    QTest::newRow("250, a half to the even number") << 250 << 2;
    QTest::newRow("251") << 251 << 3;
    QTest::newRow("350, the same upwards") << 350 << 4;
    QTest::newRow("450") << 450 << 4;
    QTest::newRow("10000") << 10000 << 100;
}

void TestScrollMetrics::steps()
{
    QFETCH(int, maximum);
    QTEST(scrollStep(maximum), "step");
}

void TestScrollMetrics::clamps_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("clamped");
    QTest::newRow("within") << 5 << 9 << 5;
    QTest::newRow("below") << -1 << 9 << 0;
    QTest::newRow("above") << 10 << 9 << 9;
    QTest::newRow("maximum 0 counts as 1") << 5 << 0 << 1;
}

void TestScrollMetrics::clamps()
{
    QFETCH(int, value);
    QFETCH(int, maximum);
    QTEST(clampedValue(value, maximum), "clamped");
}

void TestScrollMetrics::parts_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("part");
    QTest::newRow("first") << 0 << int(ScrollPart::NearArrow);
    QTest::newRow("last of the near arrow") << 269 << int(ScrollPart::NearArrow);
    QTest::newRow("track") << 270 << int(ScrollPart::Track);
    QTest::newRow("last of the track") << 5269 << int(ScrollPart::Track);
    QTest::newRow("far arrow") << 5270 << int(ScrollPart::FarArrow);
}

void TestScrollMetrics::parts()
{
    QFETCH(int, position);
    QFETCH(int, part);
    QCOMPARE(int(partAt({5555, 270, 285, 50}, position)), part);
}

QTEST_APPLESS_MAIN(TestScrollMetrics)
#include "tst_scrollmetrics.moc"
