// Looking at many files between the events.
#include "collections/PresenceWalk.h"
#include "support/ScratchHome.h"

#include <QTest>

using namespace quorvia;
using collections::PresenceWalk;

class TestPresenceWalk : public QObject
{
    Q_OBJECT

  private:
    test::ScratchHome m_home;
    QString m_there;
    QString m_gone;

  private Q_SLOTS:
    void initTestCase()
    {
        m_there = m_home.write(QStringLiteral("a.jpg"), "x");
        m_gone = m_home.path(QStringLiteral("b.jpg"));
    }

    void aShortListIsLookedAtAtOnce()
    {
        PresenceWalk walk;
        QList<bool> seen;
        walk.begin({m_there, m_gone, m_home.path(QString()), m_there}, [&seen](int index, bool isThere) {
            seen.append(isThere);
            return index == seen.size() - 1;
        });
        QCOMPARE(seen, QList<bool>({true, false, false, true}));
        QVERIFY(!walk.isUnderWay());
        walk.begin({}, [](int, bool) { return true; });
        QVERIFY(!walk.isUnderWay());
    }

    void aLongOneLetsEventsRun()
    {
        QStringList files;
        for (int i = 0; i < 200000; ++i)
            files.append(i % 2 ? m_there : m_gone);
        PresenceWalk walk;
        int next = 0;
        bool inOrder = true;
        walk.begin(files, [&](int index, bool isThere) {
            inOrder = inOrder && index == next && isThere == (index % 2 == 1);
            ++next;
            return true;
        });
        QVERIFY(walk.isUnderWay());
        QVERIFY(next > 0 && next < 200000);
        int turns = 0;
        QTimer turn;
        connect(&turn, &QTimer::timeout, this, [&turns] { ++turns; });
        turn.start(0);
        QTRY_VERIFY_WITH_TIMEOUT(!walk.isUnderWay(), 60000);
        QCOMPARE(next, 200000);
        QVERIFY(inOrder);
        QVERIFY(turns > 2);
    }

    void theVisitorEndsIt()
    {
        PresenceWalk walk;
        int seen = 0;
        walk.begin({m_there, m_gone, m_there}, [&seen](int, bool isThere) {
            ++seen;
            return isThere;
        });
        QCOMPARE(seen, 2);
        QVERIFY(!walk.isUnderWay());
    }

    void anotherWalkEndsTheOneBefore()
    {
        PresenceWalk walk;
        int first = 0;
        walk.begin(QStringList(500000, m_there), [&first](int, bool) { return ++first > 0; });
        QVERIFY(walk.isUnderWay());
        const int before = first;
        int second = 0;
        walk.begin({m_gone}, [&second](int, bool) { return ++second > 0; });
        QVERIFY(!walk.isUnderWay());
        QCoreApplication::processEvents();
        QCOMPARE(first, before);
        QCOMPARE(second, 1);
        walk.begin(QStringList(500000, m_there), [&first](int, bool) { return ++first > 0; });
        walk.stop();
        QVERIFY(!walk.isUnderWay());
    }
};

QTEST_GUILESS_MAIN(TestPresenceWalk)
#include "tst_presencewalk.moc"
