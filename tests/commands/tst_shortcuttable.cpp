// The shortcut table: how entries are written, that none stands twice, and the fixed list.
#include "commands/ShortcutTable.h"

#include <QTest>

using namespace quorvia::commands;

class TestShortcutTable : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void startsEmptyWithAnUnusedFirst()
    {
        const ShortcutTable table;
        QCOMPARE(table.count(), 0);
        QCOMPARE(table.entry(0), QString());
        QCOMPARE(table.entry(1), QString());
        QCOMPARE(table.tools(0, 0), QStringList());
    }

    void keysAreWrittenAsCodes_data()
    {
        QTest::addColumn<QString>("modifier");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("entry");
        QTest::newRow("digit") << "2"
                               << "2"
                               << "2:50:miA";
        QTest::newRow("letter") << "0"
                                << "K"
                                << "0:75:miA";
        QTest::newRow("small letter") << "0"
                                      << "k"
                                      << "0:107:miA";
        QTest::newRow("code") << "2"
                              << "13"
                              << "2:13:miA";
        QTest::newRow("code of three digits") << "0"
                                              << "221"
                                              << "0:221:miA";
        QTest::newRow("code with a zero before it") << "0"
                                                    << "046"
                                                    << "0:046:miA";
        QTest::newRow("letter beyond the plain ones") << "0" << QStringLiteral("\u00e9") << "0:233:miA";
        QTest::newRow("words") << "Ctrl"
                               << "Enter"
                               << "Ctrl:Enter:miA";
        QTest::newRow("blank") << "4"
                               << " "
                               << "4:32:miA";
    }

    void keysAreWrittenAsCodes()
    {
        QFETCH(QString, modifier);
        QFETCH(QString, key);
        ShortcutTable table;
        table.AddShortcut(modifier, key, QStringLiteral("miA"));
        QCOMPARE(table.count(), 1);
        QTEST(table.entry(1), "entry");
        QCOMPARE(table.entry(0), QString());
        QCOMPARE(table.entry(2), QString());
        QCOMPARE(table.entry(-1), QString());
    }

    void withoutAKeyNothingIsAdded()
    {
        ShortcutTable table;
        table.AddShortcut(QStringLiteral("2"), QString(), QStringLiteral("miA"));
        QCOMPARE(table.count(), 0);
    }

    void equalEntriesStandOnce()
    {
        ShortcutTable table;
        table.AddShortcut(QStringLiteral("2"), QStringLiteral("2"), QStringLiteral("miA"));
        table.AddShortcut(QStringLiteral("2"), QStringLiteral("50"),
                          QStringLiteral("miA")); // the same, as a code
        QCOMPARE(table.count(), 1);
        table.AddShortcut(QStringLiteral("0"), QStringLiteral("2"), QStringLiteral("miA"));
        table.AddShortcut(QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("miA"));
        table.AddShortcut(QStringLiteral("2"), QStringLiteral("2"), QStringLiteral("mia"));
        QCOMPARE(table.count(), 4);
    }

    void everyMatchIsFoundInOrder()
    {
        ShortcutTable table;
        fillShortcuts(table, QStringLiteral("miB:2:A|miC:2:B|miA:2:65|miD:3:A|miE:0:A"));
        QCOMPARE(table.tools('A', 2), (QStringList{"miB", "miA"}));
        QCOMPARE(table.tools('A', 3), QStringList("miD"));
        QCOMPARE(table.tools('A', 1), QStringList());
        QCOMPARE(table.tools('a', 2), QStringList());
    }

    void whatSpellsNoNumberMatchesNoKey()
    {
        ShortcutTable table;
        table.AddShortcut(QStringLiteral("0"), QStringLiteral("Enter"), QStringLiteral("miA"));
        table.AddShortcut(QStringLiteral("Ctrl"), QStringLiteral("A"), QStringLiteral("miA"));
        QCOMPARE(table.count(), 2);
        QCOMPARE(table.tools(0, 0), QStringList());
        QCOMPARE(table.tools('A', 0), QStringList());
    }

    void incompleteEntriesOfAListAddNothing()
    {
        ShortcutTable table;
        fillShortcuts(table, QStringLiteral("|miA|miA:2|miA:2:|miB:2:B:more|"));
        QCOMPARE(table.count(), 1);
        QCOMPARE(table.entry(1), QStringLiteral("2:66:miB"));
    }

    void fixedList_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("entry");
        int index = 0;
        for (const char* entry :
             {"0:75:miEXIFView",  "0:70:miFileList",   "2:82:miRename",     "0:221:miNext",
              "0:219:miPrevious", "2:78:miNext",       "2:66:miPrevious",   "2:80:miPrint",
              "2:67:miCopy",      "2:86:miPaste",      "0:82:miRandom",     "2:87:miWallpaper",
              "2:50:miBestFit",   "2:49:miActualSize", "2:70:miFullScreen", "2:79:miOpen",
              "2:83:miSave",      "2:13:miFullScreen", "0:46:miDelete",     "0:81:miCloseImage"})
            QTest::newRow(entry) << ++index << QString::fromLatin1(entry);
    }

    void fixedList()
    {
        QFETCH(int, index);
        ShortcutTable table;
        fillShortcuts(table, fixedShortcuts());
        QCOMPARE(table.count(), 20);
        QTEST(table.entry(index), "entry");
        fillShortcuts(table, fixedShortcuts());
        QCOMPARE(table.count(), 20);
    }

    void theFixedListLeavesTheMailKeyAlone()
    {
        ShortcutTable table;
        fillShortcuts(table, fixedShortcuts());
        QCOMPARE(table.tools('E', 2), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestShortcutTable)
#include "tst_shortcuttable.moc"
