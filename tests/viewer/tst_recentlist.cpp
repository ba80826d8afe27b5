#include "viewer/RecentList.h"

#include <QTest>

using namespace quorvia::viewer;

class TestRecentList : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void additions_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QString>("after");
        QTest::newRow("the empty list") << ";;"
                                        << "/pics"
                                        << ";/pics";
        QTest::newRow("nothing stored") << ""
                                        << "/pics"
                                        << ";/pics";
        QTest::newRow("a new one goes to the end") << ";/a;/b"
                                                   << "/c"
                                                   << ";/a;/b;/c";
        QTest::newRow("one that is there keeps its place") << ";/a;/b"
                                                           << "/a"
                                                           << ";/a;/b";
        QTest::newRow("the last one again") << ";/a;/b"
                                            << "/b"
                                            << ";/a;/b";
        QTest::newRow("the beginning of another counts as there") << ";/a/long"
                                                                  << "/a"
                                                                  << ";/a/long";
        QTest::newRow("a longer one is new") << ";/a"
                                             << "/a/long"
                                             << ";/a;/a/long";
        QTest::newRow("case counts") << ";/a"
                                     << "/A"
                                     << ";/a;/A";
        QTest::newRow("empty entries in the middle go") << "/a;;/b"
                                                        << "/c"
                                                        << "/a/b;/c";
    }

    void additions()
    {
        QFETCH(QString, stored);
        QFETCH(QString, directory);
        QTEST(recentToText(withRecent(recentFromText(stored), directory)), "after");
    }

    void theListHasNoLimit()
    {
        QStringList recent = recentFromText(QStringLiteral(";;"));
        for (int i = 0; i < 300; ++i)
            recent = withRecent(recent, QStringLiteral("/folder-%1/").arg(i));
        QCOMPARE(recent.size(), 301);
        QCOMPARE(recent.last(), QStringLiteral("/folder-299/"));
    }

    void textAndBack()
    {
        QCOMPARE(recentFromText(QStringLiteral(";;")), (QStringList{"", "", ""}));
        QCOMPARE(recentToText({"", "/a", "/b"}), QStringLiteral(";/a;/b"));
    }
};

QTEST_GUILESS_MAIN(TestRecentList)
#include "tst_recentlist.moc"
