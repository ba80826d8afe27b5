// The debounces of the keyboard: which keys are lost because they came too soon or while a step ran.
#include "KeyboardBench.h"

#include <QDialog>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using namespace quorvia::commands;

class TestKeyDebounces : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void aKeyTooSoonIsLost();
    void twoWindowsDoNotDoubleTheRate();
    void theTimersHaveTheirNamesAndIntervals();
    void theDebounceEndsByItself();
    void theDebounceOutlastsABox();
    void keysPressedInALongStepAreLost_data();
    void keysPressedInALongStepAreLost();
    void aLongStepEndsTheDebounces();
    void aShortStepLeavesTheDebouncesToTheirTicks();
    void escInALongStepIsKept_data();
    void escInALongStepIsKept();
};

void TestKeyDebounces::aKeyTooSoonIsLost()
{
    KeyboardBench bench;
    QCOMPARE(bench.press('R', 0), QStringList{"miRandom"});
    QCOMPARE(bench.press('R', 0), QStringList());
    bench.timer("tKey")->stop();
    QCOMPARE(bench.press('R', 0), QStringList()); // the first stage alone holds it back
    QVERIFY(!bench.timer("tKey")->isActive());
    bench.timer("tWait")->stop();
    QCOMPARE(bench.press('R', 0), QStringList{"miRandom"});
    bench.timer("tWait")->stop();
    QCOMPARE(bench.press('R', 0), QStringList()); // and so does the second
    QVERIFY(bench.timer("tWait")->isActive());    // for which the first has begun to wait anew
}

void TestKeyDebounces::twoWindowsDoNotDoubleTheRate()
{
    KeyboardBench bench;
    QCOMPARE(bench.pressElsewhere(39, 0), QStringList{"miNext"});
    QCOMPARE(bench.press(39, 0), QStringList());
    QCOMPARE(bench.pressElsewhere(39, 0), QStringList());
}

void TestKeyDebounces::theTimersHaveTheirNamesAndIntervals()
{
    const KeyboardBench bench;
    for (const char* name : {"tWait", "tKey"}) {
        QVERIFY(bench.timer(name));
        QCOMPARE(bench.timer(name)->interval(), 100);
        QCOMPARE(bench.timer(name)->timerType(), Qt::PreciseTimer);
        QVERIFY(!bench.timer(name)->isActive());
    }
}

void TestKeyDebounces::theDebounceEndsByItself()
{
    KeyboardBench bench;
    bench.press('R', 0);
    QVERIFY(bench.timer("tWait")->isActive());
    QVERIFY(bench.timer("tKey")->isActive());
    QTRY_VERIFY(!bench.timer("tWait")->isActive());
    QTRY_VERIFY(!bench.timer("tKey")->isActive());
    QCOMPARE(bench.press('R', 0), QStringList{"miRandom"});
}

void TestKeyDebounces::theDebounceOutlastsABox()
{
    KeyboardBench bench;
    int ticks = 0;
    bool waited = false;
    bench.whenRun = [&](const QString&) {
        QDialog box;
        QTimer::singleShot(10000, &box, &QDialog::reject); // should the ticks end too early
        connect(bench.timer("tKey"), &QTimer::timeout, &box, [&] {
            if (++ticks < 2)
                return;
            waited = bench.timer("tWait")->isActive() && bench.timer("tKey")->isActive();
            box.accept();
        });
        box.exec();
    };
    QCOMPARE(bench.press('R', 0), QStringList{"miRandom"});
    QCOMPARE(ticks, 2);
    QVERIFY(waited);
    QCOMPARE(bench.press('R', 0), QStringList());
    QTRY_VERIFY(!bench.timer("tWait")->isActive());
    QTRY_VERIFY(!bench.timer("tKey")->isActive());
}

void TestKeyDebounces::keysPressedInALongStepAreLost_data()
{
    QTest::addColumn<bool>("inWindow");
    QTest::addColumn<bool>("thenInWindow");
    QTest::newRow("in the window") << true << true;
    QTest::newRow("in another") << false << false;
    QTest::newRow("in another, then in the window") << false << true;
    QTest::newRow("in the window, then in another") << true << false;
}

void TestKeyDebounces::keysPressedInALongStepAreLost()
{
    QFETCH(bool, inWindow);
    QFETCH(bool, thenInWindow);
    KeyboardBench bench;
    bench.makeStepsLong();
    QCOMPARE(inWindow ? bench.press(39, 0) : bench.pressElsewhere(39, 0), QStringList{"miNext"});
    // Those that were queued come first of all when the step has returned.
    for (int queued = 0; queued < 3; ++queued)
        QCOMPARE(thenInWindow ? bench.press(39, 0) : bench.pressElsewhere(39, 0), QStringList());
    QTRY_VERIFY(bench.isResting());
    QCOMPARE(thenInWindow ? bench.press(39, 0) : bench.pressElsewhere(39, 0), QStringList{"miNext"});
}

void TestKeyDebounces::aLongStepEndsTheDebounces()
{
    KeyboardBench bench;
    bench.makeStepsLong();
    bench.press(39, 0);
    QVERIFY(!bench.isResting());
    for (const char* name : {"tWait", "tKey"})
        bench.timer(name)->start(1000 * 1000); // no tick is needed
    QTRY_VERIFY(bench.isResting());
}

void TestKeyDebounces::aShortStepLeavesTheDebouncesToTheirTicks()
{
    KeyboardBench bench;
    for (const char* name : {"tWait", "tKey"})
        bench.timer(name)->setInterval(1000 * 1000); // longer than any step
    bench.press(39, 0);
    for (int turn = 0; turn < 10; ++turn)
        QCoreApplication::processEvents();
    QVERIFY(bench.timer("tWait")->isActive());
    QVERIFY(bench.timer("tKey")->isActive());
    QCOMPARE(bench.press(escape, 0), QStringList());
}

void TestKeyDebounces::escInALongStepIsKept_data()
{
    QTest::addColumn<bool>("inWindow");
    QTest::addColumn<int>("shift");
    QTest::addColumn<bool>("withBox");
    QTest::addColumn<QStringList>("done");
    QTest::newRow("in the window") << true << 0 << false << QStringList{"events", "miExit"};
    QTest::newRow("in another") << false << 0 << false << QStringList{"events", "miExit"};
    QTest::newRow("with Ctrl") << true << 2 << false << QStringList();
    QTest::newRow("after a box") << true << 0 << true << QStringList();
    QTest::newRow("after a box, in another") << false << 0 << true << QStringList();
}

void TestKeyDebounces::escInALongStepIsKept()
{
    QFETCH(bool, inWindow);
    QFETCH(int, shift);
    QFETCH(bool, withBox);
    KeyboardBench bench;
    bench.makeStepsLong();
    if (withBox) {
        bench.whenRun = [&bench](const QString&) {
            QDialog box;
            QTimer::singleShot(2 * bench.timer("tKey")->interval(), &box, &QDialog::accept);
            box.exec();
        };
    }
    bench.press('R', 0);
    bench.press('R', 0);
    QTEST(inWindow ? bench.press(escape, shift) : bench.pressElsewhere(escape, shift), "done");
}

QTEST_MAIN(TestKeyDebounces)
#include "tst_keydebounces.moc"
