#include "collections/TabAnimation.h"

#include <QTest>

using quorvia::collections::TabAnimation;
using Step = TabAnimation::Step;

namespace {

/// What a number of ticks leads to.
struct Run
{
    int ticks = 0;
    int lowest = 0;
    int exchangedAfter = -1; ///< ticks
    int exchanges = 0;
};

/// Lets the animation go to its end, at most a thousand ticks.
Run runToEnd(TabAnimation& animation, int tab1Width)
{
    Run run{.lowest = animation.left};
    Step step = Step::Moved;
    while (step != Step::Ended && run.ticks < 1000) {
        step = animation.step(tab1Width);
        ++run.ticks;
        run.lowest = std::min(run.lowest, animation.left);
        if (step == Step::Exchanged) {
            ++run.exchanges;
            run.exchangedAfter = run.ticks;
        }
    }
    return run;
}

} // namespace

class TestTabAnimation : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void steps_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<bool>("second");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("leftAfter");
        QTest::addColumn<bool>("secondAfter");
        QTest::addColumn<int>("step");
        const auto row = [](const char* name, TabAnimation before, int width, TabAnimation after, Step step) {
            QTest::newRow(name) << before.left << before.secondStage << width << after.left
                                << after.secondStage << int(step);
        };
        row("begins to the left", {1520, false}, 1500, {1480, false}, Step::Moved);
        row("almost there", {101, false}, 1500, {61, false}, Step::Moved);
        row("20 is there", {60, false}, 1500, {20, true}, Step::Exchanged);
        row("one more is not", {61, false}, 1500, {21, false}, Step::Moved);
        row("beyond", {59, false}, 1500, {19, true}, Step::Exchanged);
        row("is there already", {20, false}, 1500, {20, true}, Step::Exchanged);
        row("out to the right", {20, true}, 1500, {60, true}, Step::Moved);
        row("one before the end", {1439, true}, 1500, {1479, true}, Step::Moved);
        row("the width is reached", {1440, true}, 1500, {1520, false}, Step::Ended);
        row("the tab in front became narrow", {1440, true}, 300, {320, false}, Step::Ended);
        row("no room", {20, true}, 0, {20, false}, Step::Ended);
    }

    void steps()
    {
        QFETCH(int, width);
        QFETCH(int, left);
        QFETCH(bool, second);
        TabAnimation animation{left, second};
        const Step step = animation.step(width);
        QTEST(animation.left, "leftAfter");
        QTEST(animation.secondStage, "secondAfter");
        QTEST(int(step), "step");
    }

    void theWholeWay()
    {
        TabAnimation animation{.left = 1520};
        const Run run = runToEnd(animation, 1500);
        QCOMPARE(run.exchanges, 1);
        QCOMPARE(run.exchangedAfter, 38); // 1500 twips in strides of 40
        QCOMPARE(run.lowest, 0);          // the last stride starts at 40
        QCOMPARE(run.ticks, 38 + 37);
        QCOMPARE(animation, (TabAnimation{.left = 1520}));
    }

    void aClickGoesOnFromThePlaceReached()
    {
        TabAnimation animation{.left = 1520};
        for (int tick = 0; tick < 50; ++tick)
            animation.step(1500);
        QVERIFY(animation.secondStage);
        const int reached = animation.left;
        QCOMPARE(reached, 12 * 40);
        animation.restart();
        QCOMPARE(animation, (TabAnimation{.left = reached}));
        const Run run = runToEnd(animation, 1500);
        QCOMPARE(run.exchanges, 1);
        QCOMPARE(run.exchangedAfter, 12);
        QCOMPARE(animation.left, 1520);
    }
};

QTEST_GUILESS_MAIN(TestTabAnimation)
#include "tst_tabanimation.moc"
