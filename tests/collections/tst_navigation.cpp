#include "collections/Navigation.h"

#include <QTest>

using namespace quorvia::collections;

class TestNavigation : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void next_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("list"); // one character an entry, "-" for a file that has gone
        QTest::addColumn<int>("next");
        QTest::newRow("forward") << 0 << "xxx" << 1;
        QTest::newRow("wraps") << 2 << "xxx" << 0;
        QTest::newRow("nothing chosen yet") << -1 << "xxx" << 0;
        QTest::newRow("skips a gone file") << 0 << "x-x" << 2;
        QTest::newRow("skips several") << 0 << "x---x" << 4;
        QTest::newRow("skips at the end and wraps") << 1 << "xx-" << 0;
        QTest::newRow("wraps onto a gone file and on") << 2 << "-xx" << 1;
        QTest::newRow("wraps onto several gone files") << 4 << "---xx" << 3;
        QTest::newRow("none behind, the first gone") << 2 << "-xx-" << 1;
        QTest::newRow("only itself") << 1 << "-x-" << 1;
        QTest::newRow("only itself, at the end") << 2 << "--x" << 2;
        QTest::newRow("one entry") << 0 << "x" << 0;
        QTest::newRow("one entry, gone") << 0 << "-" << 2;
        QTest::newRow("one entry, not chosen") << -1 << "x" << 0;
        QTest::newRow("one entry, not chosen and gone") << -1 << "-" << 1;
        QTest::newRow("all gone, at the first") << 0 << "---" << 2;
        QTest::newRow("all gone, at the last but one") << 1 << "---" << 3;
        QTest::newRow("all gone, at the last") << 2 << "---" << 4;
        QTest::newRow("all gone, none chosen") << -1 << "---" << 1;
        QTest::newRow("first gone, none chosen") << -1 << "-x" << 1;
        QTest::newRow("two gone, none chosen: looked for no further") << -1 << "--x" << 1;
        QTest::newRow("beyond the list") << 5 << "-xx" << 1;
        QTest::newRow("empty") << -1 << "" << 1;
    }

    void next()
    {
        QFETCH(int, index);
        QFETCH(QString, list);
        const auto exists = [&](int i) {
            [&] { QVERIFY(i >= 0 && i < list.size()); }(); // nothing beyond the list is asked about
            return list.at(i) == QLatin1Char('x');
        };
        QTEST(nextIndex(index, int(list.size()), exists), "next");
    }

    void previous_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("previous");
        QTest::newRow("back") << 2 << 5 << 1;
        QTest::newRow("back to the first") << 1 << 5 << 0;
        QTest::newRow("wraps to the last, gone or not") << 0 << 5 << 4;
        QTest::newRow("none chosen") << -1 << 5 << 4;
        QTest::newRow("one entry") << 0 << 1 << 0;
        QTest::newRow("no entry") << -1 << 0 << -1;
    }

    void previous()
    {
        QFETCH(int, index);
        QFETCH(int, count);
        QTEST(previousIndex(index, count), "previous");
    }

    void random_data()
    {
        QTest::addColumn<double>("unit");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("index");
        QTest::newRow("lowest") << 0.0 << 5 << 0;
        QTest::newRow("whole part") << 0.39 << 5 << 1;
        QTest::newRow("highest") << 0.999999 << 5 << 4;
        QTest::newRow("one entry") << 0.7 << 1 << 0;
        QTest::newRow("no entry") << 0.7 << 0 << 0;
    }

    void random()
    {
        QFETCH(double, unit);
        QFETCH(int, count);
        QTEST(randomIndex(unit, count), "index");
    }

    void seconds_data()
    {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<float>("seconds");
        QTest::newRow("midnight") << QTime(0, 0) << 0.0F;
        QTest::newRow("a part of a second") << QTime(0, 0, 1, 250) << 1.25F;
        QTest::newRow("noon") << QTime(12, 0) << 43200.0F;
        QTest::newRow("the last millisecond") << QTime(23, 59, 59, 999) << 86399.999F;
    }

    void seconds()
    {
        QFETCH(QTime, time);
        QTEST(secondsSinceMidnight(time), "seconds");
    }

    void theClockDecidesTheRandomStep()
    {
        const auto at = [](QTime time) { return randomUnit(secondsSinceMidnight(time)); };
        const QTime evening(20, 15, 30, 500);
        QCOMPARE(at(evening), at(evening));
        // Single precision cannot tell apart what lies within one tick of the clock.
        QCOMPARE(at(evening.addMSecs(1)), at(evening));
        QVERIFY(at(evening.addMSecs(100)) != at(evening));
    }

    void randomStepsReachEveryEntry()
    {
        constexpr int count = 10;
        QList<int> seen(count, 0);
        for (int second = 0; second < 1000; ++second) {
            const float clock = secondsSinceMidnight(QTime(9, 0).addSecs(2 * second));
            const int index = randomIndex(randomUnit(clock), count);
            QVERIFY(index >= 0 && index < count);
            ++seen[index];
        }
        for (const int times : seen)
            QVERIFY2(times > 50 && times < 150, qPrintable(QString::number(times)));
    }
};

QTEST_GUILESS_MAIN(TestNavigation)
#include "tst_navigation.moc"
