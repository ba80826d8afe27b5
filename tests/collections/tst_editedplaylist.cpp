// The playlist that the editor has in hand: what a user who breaks off, and a disk that refuses, leave of it.
#include "collections/EditedPlaylist.h"
#include "collections/EditorMoves.h"
#include "EditorBench.h"
#include "platform/LongWork.h"

#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using collections::EditedPlaylist;
using test::EditorBench;

namespace {

/// Long work around all of a test's, which the user has broken off.
class BrokenOff
{
  public:
    BrokenOff() : m_work(nullptr, QStringLiteral("Work"), [this] { return m_now += 2000; })
    {
        QTimer::singleShot(0, &m_here, [] {
            if (auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                box->reject();
        });
        for (int i = 0; i < 10 && !isOver(); ++i)
            m_over = !m_work.goOn();
    }
    bool isOver() const { return m_over; }

  private:
    qint64 m_now = 0;
    QObject m_here;
    bool m_over = false;
    platform::LongWork m_work;
};

} // namespace

class TestEditedPlaylist : public QObject
{
    Q_OBJECT

  private:
    EditorBench m_bench;
    std::unique_ptr<EditedPlaylist> m_list;

    QStringList names() const { return EditorBench::namesOf(m_list->files()->paths()); }

  private Q_SLOTS:
    void init()
    {
        m_bench.begin();
        m_bench.writeList("one", {"a.jpg", "c.png"});
        m_bench.writeList("two", {"d.jpg"});
        m_list = std::make_unique<EditedPlaylist>();
        QVERIFY(m_list->load(EditorBench::named("one"), nullptr));
    }
    void cleanup()
    {
        m_list.reset();
        m_bench.end();
    }

    void aLoadThatIsBrokenOffChangesNothing()
    {
        QSignalSpy renamed(m_list.get(), &EditedPlaylist::nameChanged);
        {
            const BrokenOff work;
            QVERIFY(work.isOver());
            QVERIFY(!m_list->load(EditorBench::named("two"), nullptr));
        }
        QCOMPARE(names(), QStringList({"a.jpg", "c.png"}));
        QCOMPARE(m_list->name(), QStringLiteral("one"));
        QCOMPARE(renamed.count(), 0);
        m_list->add(m_bench.in("pics/B.jpg"));
        m_list->save(EditorBench::named("one"), nullptr);
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QVERIFY(m_bench.trashed().isEmpty()); // it still knows the file as its own
    }

    void filesWhoseAddingIsBrokenOffAreNotAdded()
    {
        {
            const BrokenOff work;
            QVERIFY(work.isOver());
            m_list->add(m_bench.pathsOf({"B.jpg", "d.jpg"}), nullptr);
        }
        QCOMPARE(names(), QStringList({"a.jpg", "c.png"}));
        m_list->add(m_bench.pathsOf({"B.jpg", "gone.jpg", "d.jpg"}), nullptr);
        QCOMPARE(names(), QStringList({"a.jpg", "c.png", "B.jpg", "d.jpg"}));
    }

    void everyChangeCountsAsOne_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<QStringList>("saved");
        QTest::newRow("none: what is there stays") << 0 << QStringList{"e.jpg"};
        QTest::newRow("one added") << 1 << QStringList({"a.jpg", "c.png", "B.jpg"});
        QTest::newRow("several added") << 2 << QStringList({"a.jpg", "c.png", "B.jpg"});
        QTest::newRow("one removed") << 3 << QStringList{"c.png"};
        QTest::newRow("moved") << 4 << QStringList({"c.png", "a.jpg"});
        QTest::newRow("cleared") << 5 << QStringList();
        QTest::newRow("moved where it was") << 6 << QStringList{"e.jpg"};
        QTest::newRow("none removed") << 7 << QStringList{"e.jpg"};
        QTest::newRow("none added") << 8 << QStringList{"e.jpg"};
    }

    void everyChangeCountsAsOne()
    {
        QFETCH(int, change);
        m_bench.writeList("one", {"e.jpg"}); // another program's
        const auto moved = [](int row) {
            return collections::plannedMove({{row, row}}, 2, collections::Direction::Up);
        };
        const std::function<void()> changes[] = {
            [] {},
            [this] { m_list->add(m_bench.in("pics/B.jpg")); },
            [this] { m_list->add(m_bench.pathsOf({"B.jpg"}), nullptr); },
            [this] {
                m_list->remove({{0, 0}});
            },
            [this, moved] { m_list->move(moved(1)); },
            [this] { m_list->clear(); },
            [this, moved] { m_list->move(moved(0)); },
            [this] { m_list->remove({}); },
            [this] { m_list->add(m_bench.pathsOf({"z.jpg"}), nullptr); }};
        changes[change]();
        m_list->save(EditorBench::named("one"), nullptr);
        QTEST(EditorBench::stored("one"), "saved");
        QCOMPARE(names(), EditorBench::stored("one"));
    }

    void aDiskThatRefusesLeavesTheListInHand()
    {
        m_bench.home.write(QStringLiteral("other"), "a file where the folder would be");
        m_list->add(m_bench.in("pics/B.jpg"));
        m_list->save(m_bench.in("other/x.qol"), nullptr);
        QCOMPARE(m_list->name(), QStringLiteral("x")); // shown all the same
        QCOMPARE(names(), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QVERIFY(m_bench.log().contains(QStringLiteral("Playlist not saved")));
        QVERIFY(QFile::remove(m_bench.in("other")));
    }

    void aLoadedListIsUnchanged()
    {
        m_bench.writeList("two", {"d.jpg"});
        EditedPlaylist playlist;
        playlist.add(m_bench.in("pics/a.jpg")); // changed, and never saved
        QVERIFY(playlist.load(EditorBench::named("two"), nullptr));
        m_bench.writeList("two", {"e.jpg"}); // by another program
        QVERIFY(playlist.save(EditorBench::named("two"), nullptr));
        QCOMPARE(EditorBench::stored("two"), QStringList("e.jpg"));
        QCOMPARE(playlist.files()->paths(), m_bench.pathsOf({"e.jpg"}));
    }

    void whatCannotBeReadIsEmptyAndNotReplaced()
    {
        QVERIFY(QDir().mkpath(EditorBench::named("folder")));
        QVERIFY(m_list->load(EditorBench::named("folder"), nullptr));
        QVERIFY(names().isEmpty());
        QCOMPARE(m_list->name(), QStringLiteral("folder"));
        m_list->add(m_bench.in("pics/B.jpg"));
        m_list->save(EditorBench::named("folder"), nullptr);
        QVERIFY(QDir(EditorBench::named("folder")).exists());
    }

    void closedDownItTakesNothing()
    {
        m_list->closeDown();
        m_list->add(m_bench.in("pics/B.jpg"));
        m_list->add(m_bench.pathsOf({"B.jpg"}), nullptr);
        m_list->remove({{0, 0}});
        m_list->move(collections::plannedMove({{1, 1}}, 2, collections::Direction::Up));
        m_list->clear();
        QVERIFY(!m_list->load(EditorBench::named("two"), nullptr));
        QCOMPARE(names(), QStringList({"a.jpg", "c.png"}));
        m_list->save(EditorBench::named("two"), nullptr);
        QCOMPARE(EditorBench::stored("two"), QStringList{"d.jpg"});
    }
};

QTEST_MAIN(TestEditedPlaylist)
#include "tst_editedplaylist.moc"
