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
        QTest::newRow("skips at the end and wraps") << 1 << "xx-" << 0;
        QTest::newRow("skips at the start") << 2 << "-xx" << 1;
        QTest::newRow("only itself") << 1 << "-x-" << 1;
        QTest::newRow("one entry") << 0 << "x" << 0;
        QTest::newRow("all gone") << 1 << "---" << -1;
        QTest::newRow("first gone, none chosen") << -1 << "-x" << 1;
        QTest::newRow("empty") << -1 << "" << -1;
    }

    void next()
    {
        QFETCH(int, index);
        QFETCH(QString, list);
        const auto exists = [&](int i) { return list.at(i) == QLatin1Char('x'); };
        QTEST(nextIndex(index, int(list.size()), exists), "next");
    }

    void previous_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("previous");
        QTest::newRow("back") << 2 << 1;
        QTest::newRow("wraps to the last, gone or not") << 0 << 4;
        QTest::newRow("none chosen gives no position") << -1 << -2;
    }

    void previous()
    {
        QFETCH(int, index);
        QTEST(previousIndex(index, 5), "previous");
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
};

QTEST_GUILESS_MAIN(TestNavigation)
#include "tst_navigation.moc"
