#include "collections/StripPump.h"

#include <QTest>

#include <limits>

using namespace quorvia::collections;

namespace {

/// The images of a pass, each with the place that it is painted at: "index:column/row".
QStringList pass(StripPump pump, int count, int rows)
{
    QStringList cells;
    for (; !isDone(pump, count); pump = stepped(pump)) {
        const CellPlace place = placeOf(pump, rows);
        cells.append(QStringLiteral("%1:%2/%3").arg(pump.DrawIndex).arg(place.column).arg(place.row));
    }
    return cells;
}

} // namespace

class TestStripPump : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void passes_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("cells");
        QTest::newRow("empty") << 0 << 1 << "";
        QTest::newRow("one row") << 3 << 1 << "1:0/0 2:1/0 3:2/0";
        QTest::newRow("two rows") << 5 << 2 << "1:0/0 2:0/1 3:1/0 4:1/1 5:2/0";
        QTest::newRow("three rows") << 4 << 3 << "1:0/0 2:0/1 3:0/2 4:1/0";
    }

    void passes()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QTEST(pass(fromBeginning({}), count, rows).join(u' '), "cells");
    }

    void aWholeStripIsPaintedToItsEnd() { QCOMPARE(pass(fromBeginning({}), 200, 1).size(), 200); }

    void theFirstPassOfAWindowPaintsWhatIsAllowed()
    {
        const StripPump pump = fromBeginning({.DrawIndex = 9, .FirstIndex = 7, .MaxDraw = 8});
        QCOMPARE(pump, (StripPump{.MaxDraw = 8}));
        QCOMPARE(pass(pump, 300, 1).size(), 8);
    }

    void aScrolledWindowPaintsOneMore()
    {
        const StripPump pump = fromColumn({.MaxDraw = 8}, 5, 2);
        QCOMPARE(pump, (StripPump{.DrawIndex = 11, .FirstIndex = 11, .MaxDraw = 8}));
        const QStringList cells = pass(pump, 300, 2);
        QCOMPARE(cells.size(), 9);
        QCOMPARE(cells.first(), QStringLiteral("11:0/0"));
        QCOMPARE(cells.last(), QStringLiteral("19:4/0"));
    }

    void aWindowEndsWithTheList()
    {
        QCOMPARE(pass(fromColumn({.MaxDraw = 8}, 298, 1), 300, 1),
                 QStringList({QStringLiteral("299:0/0"), QStringLiteral("300:1/0")}));
    }

    void aWindowBehindAllNumbersIsDone()
    {
        constexpr int most = std::numeric_limits<int>::max();
        QVERIFY(isDone(fromColumn({.MaxDraw = most}, most, 200), most - 1));
        QVERIFY(!isDone({.DrawIndex = most - 1, .FirstIndex = most - 1, .MaxDraw = 8}, most));
    }

    void selections_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QString>("readBack");
        QTest::newRow("none") << "" << QStringList({"", ""}) << ";";
        QTest::newRow("one") << "7" << QStringList({"7", ""}) << "7;";
        QTest::newRow("two") << "2;5" << QStringList({"2", "5", ""}) << "2;5;";
        QTest::newRow("what was read back") << "2;5;" << QStringList({"2", "5", "", ""}) << "2;5;;";
    }

    void selections()
    {
        QFETCH(QString, text);
        QTEST(selectionOf(text), "selected");
        QTEST(selectionText(selectionOf(text)), "readBack");
    }

    void selectionEnds_data()
    {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<int>("painted"); // entries before the end
        QTest::newRow("at first") << QStringList({""}) << 0;
        QTest::newRow("cleared") << QStringList({"", ""}) << 0;
        QTest::newRow("one") << QStringList({"7", ""}) << 1;
        QTest::newRow("two") << QStringList({"2", "5", ""}) << 2;
        QTest::newRow("read back and set") << QStringList({"2", "5", "", ""}) << 2;
        QTest::newRow("an empty one between") << QStringList({"2", "", "5", ""}) << 1;
    }

    void selectionEnds()
    {
        QFETCH(QStringList, selected);
        int index = 0;
        while (!quorvia::collections::selectionEnds(selected, index))
            ++index;
        QTEST(index, "painted");
    }

    void selectedImages_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<int>("position"); // -1: none
        QTest::newRow("first") << "0" << 0;
        QTest::newRow("last") << "9" << 9;
        QTest::newRow("beyond") << "10" << -1;
        QTest::newRow("before") << "-1" << -1;
        QTest::newRow("no number") << "x" << -1;
        QTest::newRow("too large a number") << "99999999999" << -1;
        QTest::newRow("empty") << "" << -1;
    }

    void selectedImages()
    {
        QFETCH(QString, entry);
        QTEST(selectedImage(entry, 10).value_or(-1), "position");
    }
};

QTEST_GUILESS_MAIN(TestStripPump)
#include "tst_strippump.moc"
