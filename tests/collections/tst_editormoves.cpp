#include "collections/EditorMoves.h"

#include <QTest>

using namespace quorvia::collections;

using Ranges = std::vector<RowRange>;
Q_DECLARE_METATYPE(Ranges)

namespace {

QStringList letters(const QString& text)
{
    return text.split(QString(), Qt::SkipEmptyParts);
}

Ranges reversed(Ranges ranges)
{
    std::reverse(ranges.begin(), ranges.end());
    return ranges;
}

} // namespace

class TestEditorMoves : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void moves_data()
    {
        QTest::addColumn<QString>("list");
        QTest::addColumn<Ranges>("selected");
        QTest::addColumn<QString>("up");
        QTest::addColumn<Ranges>("selectedUp");
        QTest::addColumn<QString>("down");
        QTest::addColumn<Ranges>("selectedDown");
        const auto row = [](const char* name, const char* list, const Ranges& selected, const char* up,
                            const Ranges& selectedUp, const char* down, const Ranges& selectedDown) {
            QTest::newRow(name) << QString::fromLatin1(list) << selected << QString::fromLatin1(up)
                                << selectedUp << QString::fromLatin1(down) << selectedDown;
        };
        row("none", "abcde", {}, "abcde", {}, "abcde", {});
        row("an empty list", "", {}, "", {}, "", {});
        row("rows of an empty list", "", {{0, 3}}, "", {}, "", {});
        row("the only entry", "a", {{0, 0}}, "a", {{0, 0}}, "a", {{0, 0}});
        row("one", "abcde", {{2, 2}}, "acbde", {{1, 1}}, "abdce", {{3, 3}});
        row("the first", "abcde", {{0, 0}}, "abcde", {{0, 0}}, "bacde", {{1, 1}});
        row("the last", "abcde", {{4, 4}}, "abced", {{3, 3}}, "abcde", {{4, 4}});
        row("a block", "abcde", {{1, 3}}, "bcdae", {{0, 2}}, "aebcd", {{2, 4}});
        row("a block at the top", "abcde", {{0, 2}}, "abcde", {{0, 2}}, "dabce", {{1, 3}});
        row("a block at the bottom", "abcde", {{2, 4}}, "acdeb", {{1, 3}}, "abcde", {{2, 4}});
        row("all", "abcde", {{0, 4}}, "abcde", {{0, 4}}, "abcde", {{0, 4}});
        row("all, in parts", "abcde", {{0, 1}, {2, 4}}, "abcde", {{0, 4}}, "abcde", {{0, 4}});
        row("two of two", "ab", {{1, 1}}, "ba", {{0, 0}}, "ab", {{1, 1}});
        row("one between two", "abcde", {{1, 1}, {3, 3}}, "badce", {{0, 0}, {2, 2}}, "acbed",
            {{2, 2}, {4, 4}});
        row("the first stays, the next closes up", "abcde", {{0, 0}, {2, 2}}, "acbde", {{0, 1}}, "badce",
            {{1, 1}, {3, 3}});
        row("the last stays, the one before closes up", "abcde", {{2, 2}, {4, 4}}, "acbed", {{1, 1}, {3, 3}},
            "abdce", {{3, 4}});
        row("blocks", "abcdefgh", {{1, 2}, {5, 6}}, "bcadfgeh", {{0, 1}, {4, 5}}, "adbcehfg",
            {{2, 3}, {6, 7}});
        row("adjoining ranges are one block", "abcde", {{1, 1}, {2, 2}}, "bcade", {{0, 1}}, "adbce",
            {{2, 3}});
        row("overlapping ranges", "abcde", {{1, 2}, {2, 3}}, "bcdae", {{0, 2}}, "aebcd", {{2, 4}});
        row("beyond the list", "abc", {{1, 9}}, "bca", {{0, 1}}, "abc", {{1, 2}});
        row("wholly beyond", "abc", {{3, 9}}, "abc", {}, "abc", {});
        row("before the list", "abc", {{-4, -1}}, "abc", {}, "abc", {});
    }

    void moves()
    {
        QFETCH(QString, list);
        QFETCH(Ranges, selected);
        for (const Ranges& given : {selected, reversed(selected)}) {
            for (const Direction direction : {Direction::Up, Direction::Down}) {
                const bool up = direction == Direction::Up;
                QStringList entries = letters(list);
                const RowMove move = plannedMove(given, int(entries.size()), direction);
                apply(move, entries);
                QTEST(entries.join(QString()), up ? "up" : "down");
                QTEST(move.selected, up ? "selectedUp" : "selectedDown");
            }
        }
    }

    void everyEntryIsFoundAgain_data() { moves_data(); }

    void everyEntryIsFoundAgain()
    {
        QFETCH(QString, list);
        QFETCH(Ranges, selected);
        for (const Direction direction : {Direction::Up, Direction::Down}) {
            const QStringList before = letters(list);
            QStringList after = before;
            const RowMove move = plannedMove(selected, int(before.size()), direction);
            apply(move, after);
            for (int row = 0; row < int(before.size()); ++row)
                QCOMPARE(after.at(rowAfter(move, row)), before.at(row));
            QCOMPARE(rowAfter(move, -1), -1);
            QCOMPARE(rowAfter(move, int(before.size())), int(before.size()));
        }
    }

    void thereAndBackAgain()
    {
        QStringList list = letters(QStringLiteral("abcdefg"));
        const RowMove up = plannedMove({{2, 3}, {5, 5}}, 7, Direction::Up);
        apply(up, list);
        QCOMPARE(list.join(QString()), QStringLiteral("acdbfeg"));
        apply(plannedMove(up.selected, 7, Direction::Down), list);
        QCOMPARE(list.join(QString()), QStringLiteral("abcdefg"));
    }

    void manyEntriesMoveAtOnce()
    {
        constexpr int count = 50000;
        QStringList list;
        Ranges everySecond;
        for (int i = 0; i < count; ++i) {
            list += QString::number(i);
            if (i % 2 == 1)
                everySecond.push_back({i, i});
        }
        apply(plannedMove(everySecond, count, Direction::Up), list);
        QCOMPARE(list.mid(0, 4), QStringList({"1", "0", "3", "2"}));
        apply(plannedMove({{1, count - 1}}, count, Direction::Up), list);
        QCOMPARE(list.constLast(), QStringLiteral("1"));
        QCOMPARE(list.constFirst(), QStringLiteral("0"));
    }

    void rowsByTheirPlace_data()
    {
        QTest::addColumn<Ranges>("rows");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("row");
        QTest::newRow("of none") << Ranges{} << 0 << -1;
        QTest::newRow("first") << Ranges{{2, 4}} << 0 << 2;
        QTest::newRow("last of a range") << Ranges{{2, 4}} << 2 << 4;
        QTest::newRow("beyond") << Ranges{{2, 4}} << 3 << -1;
        QTest::newRow("in the next range") << Ranges{{2, 4}, {7, 7}, {9, 11}} << 3 << 7;
        QTest::newRow("in the last range") << Ranges{{2, 4}, {7, 7}, {9, 11}} << 6 << 11;
        QTest::newRow("before") << Ranges{{2, 4}} << -1 << -1;
    }

    void rowsByTheirPlace()
    {
        QFETCH(Ranges, rows);
        QFETCH(int, position);
        QTEST(rowAt(rows, position), "row");
    }
};

QTEST_GUILESS_MAIN(TestEditorMoves)
#include "tst_editormoves.moc"
