#include "collections/RowRanges.h"

#include <QTest>

using namespace quorvia::collections;

using Ranges = std::vector<RowRange>;
Q_DECLARE_METATYPE(Ranges)

class TestRowRanges : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ranges_data()
    {
        QTest::addColumn<Ranges>("given");
        QTest::addColumn<int>("count");
        QTest::addColumn<Ranges>("result");
        const auto row = [](const char* name, const Ranges& given, int count, const Ranges& result) {
            QTest::newRow(name) << given << count << result;
        };
        row("none", {}, 5, {});
        row("one", {{1, 3}}, 5, {{1, 3}});
        row("sorted", {{4, 4}, {0, 1}}, 5, {{0, 1}, {4, 4}});
        row("overlapping", {{0, 2}, {1, 3}}, 5, {{0, 3}});
        row("one in the other", {{0, 4}, {1, 2}}, 5, {{0, 4}});
        row("adjoining", {{2, 3}, {0, 1}}, 5, {{0, 3}});
        row("twice", {{2, 2}, {2, 2}}, 5, {{2, 2}});
        row("beyond the end", {{3, 9}}, 5, {{3, 4}});
        row("wholly beyond", {{5, 9}}, 5, {});
        row("before the begin", {{-3, 0}}, 5, {{0, 0}});
        row("no row", {{-1, -1}}, 5, {});
        row("the wrong way", {{3, 1}}, 5, {});
        row("an empty list", {{0, 0}}, 0, {});
    }

    void ranges()
    {
        QFETCH(Ranges, given);
        QFETCH(int, count);
        QTEST(normalised(given, count), "result");
    }

    void counts()
    {
        QCOMPARE(rowCount({}), 0);
        QCOMPARE(rowCount({{3, 3}}), 1);
        QCOMPARE(rowCount({{0, 1}, {5, 9}}), 7);
    }

    void leftOut_data()
    {
        QTest::addColumn<Ranges>("rows");
        QTest::addColumn<QStringList>("left");
        QTest::newRow("none") << Ranges{} << QStringList{"a", "b", "c", "d"};
        QTest::newRow("first and last") << Ranges{{3, 3}, {0, 0}} << QStringList{"b", "c"};
        QTest::newRow("a block") << Ranges{{1, 2}} << QStringList{"a", "d"};
        QTest::newRow("all") << Ranges{{0, 3}} << QStringList{};
        QTest::newRow("beyond") << Ranges{{2, 9}, {-1, -1}} << QStringList{"a", "b"};
    }

    void leftOut()
    {
        QFETCH(Ranges, rows);
        QTEST(withoutRows({"a", "b", "c", "d"}, rows), "left");
    }
};

QTEST_GUILESS_MAIN(TestRowRanges)
#include "tst_rowranges.moc"
