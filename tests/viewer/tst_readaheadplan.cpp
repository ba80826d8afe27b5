// Which images are read ahead, as numbers and through the main window.
#include "app/mFile.h"
#include "engine/ImageLoader.h"
#include "viewer/OpenedFiles.h"
#include "viewer/ReadAheadPlan.h"
#include "viewer/ViewerBench.h"

#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

class TestReadAheadPlan : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void neighbours_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("lastStep");
        QTest::addColumn<QList<int>>("neighbours");
        const auto row = [](const char* name, int count, int index, int lastStep, QList<int> neighbours) {
            QTest::newRow(name) << count << index << lastStep << neighbours;
        };
        row("forwards", 10, 4, 1, {5, 3, 6});
        row("not moved yet", 10, 4, 0, {5, 3, 6});
        row("backwards", 10, 4, -1, {3, 5, 2});
        row("at the first", 10, 0, 1, {1, 9, 2});
        row("at the first, backwards", 10, 0, -1, {9, 1, 8});
        row("at the last", 10, 9, 1, {0, 8, 1});
        row("at the last but one", 10, 8, 1, {9, 7, 0});
        row("at the second, backwards", 10, 1, -1, {0, 2, 9});
        row("no current entry", 10, -1, 1, {0, 9, 1});
        row("no current entry, backwards", 10, -1, -1, {9, 0, 8});
        row("none", 0, -1, 1, {});
        row("one", 1, 0, 1, {});
        row("one, not current", 1, -1, 1, {0});
        row("two", 2, 0, 1, {1});
        row("two, at the last", 2, 1, -1, {0});
        row("three", 3, 1, 1, {2, 0});
    }

    void neighbours()
    {
        QFETCH(int, count);
        QFETCH(int, index);
        QFETCH(int, lastStep);
        const std::vector<int> found = viewer::neighboursOf(count, index, lastStep);
        QTEST(QList<int>(found.begin(), found.end()), "neighbours");
    }

    void steps_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("step");
        QTest::newRow("next") << 3 << 4 << 10 << 1;
        QTest::newRow("previous") << 4 << 3 << 10 << -1;
        QTest::newRow("last to first") << 9 << 0 << 10 << 1;
        QTest::newRow("first to last") << 0 << 9 << 10 << -1;
        QTest::newRow("a jump") << 2 << 5 << 10 << 0;
        QTest::newRow("the same") << 2 << 2 << 10 << 0;
        QTest::newRow("from none") << -1 << 0 << 10 << 0;
        QTest::newRow("to none") << 0 << -1 << 10 << 0;
        QTest::newRow("two, forwards") << 0 << 1 << 2 << 1;
        QTest::newRow("two, round") << 1 << 0 << 2 << 1;
    }

    void steps()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(int, count);
        QTEST(viewer::stepBetween(from, to, count), "step");
    }

    void hurriedWalks_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("before"); // the step before, and how long after its predecessor was seen
        QTest::addColumn<int>("sinceBefore");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("since");
        QTest::addColumn<int>("next");
        QTest::newRow("forwards") << 4 << 1 << 30 << 1 << 30 << 5;
        QTest::newRow("backwards") << 4 << -1 << 30 << -1 << 30 << 3;
        QTest::newRow("not even seen") << 4 << 1 << -1 << 1 << -1 << 5;
        QTest::newRow("just hurried") << 4 << 1 << 250 << 1 << 250 << 5;
        QTest::newRow("no more hurried") << 4 << 1 << 30 << 1 << 251 << -1;
        QTest::newRow("the first hurried one") << 4 << 1 << 251 << 1 << 30 << -1;
        QTest::newRow("turned round") << 4 << 1 << 30 << -1 << 30 << -1;
        QTest::newRow("a jump") << 4 << 1 << 30 << 0 << 30 << -1;
        QTest::newRow("after a jump") << 4 << 0 << 30 << 1 << 30 << -1;
        QTest::newRow("at the end") << 9 << 1 << 30 << 1 << 30 << 0;
        QTest::newRow("at the begin, backwards") << 0 << -1 << 30 << -1 << 30 << 9;
    }

    void hurriedWalks()
    {
        QFETCH(int, index);
        QFETCH(int, before);
        QFETCH(int, sinceBefore);
        QFETCH(int, step);
        QFETCH(int, since);
        viewer::HurriedWalk walk;
        QCOMPARE(walk.step(0, 10, before, sinceBefore), -1);
        QTEST(walk.step(index, 10, step, since), "next");
        viewer::HurriedWalk alone;
        alone.step(0, 1, before, sinceBefore);
        QCOMPARE(alone.step(0, 1, step, since), -1);
    }

    /// Two steps in a hurry: the third picture is loaded before anybody asks. Behind a jump nothing has been
    /// painted yet, so that the steps are hurried however slow the machine is.
    void inAHurryTheNextIsLoadedBesideTheWanted()
    {
        test::OpenedFiles opened;
        ViewerBench bench(opened.loader());
        for (int i = 0; i < 9; ++i)
            bench.picture(QStringLiteral("pics/%1.png").arg(i), Qt::red);
        bench.loader().setReadAheadCap(0);
        frmImageView& window = bench.load({bench.in("pics")});
        QCOMPARE(opened.names(), QStringList("0"));
        window.RunTool(QStringLiteral("miLoadFirst"));
        window.RunTool(QStringLiteral("miNext"));
        window.RunTool(QStringLiteral("miNext"));
        QTRY_COMPARE(opened.names(), (QStringList{"0", "1", "2", "3"}));
        window.RunTool(QStringLiteral("miLoadFirst")); // a jump: nothing is sure after it
        QCOMPARE(window.currentFile(), bench.in("pics/0.png"));
        window.RunTool(QStringLiteral("miPrevious"));
        window.RunTool(QStringLiteral("miPrevious"));
        QTRY_COMPARE(opened.names(), (QStringList{"0", "1", "2", "3", "0", "8", "7", "6"}));
    }

    /// Of five pictures, each larger than the one before, the loader ends up with just the neighbours' bytes.
    void theWindowReadsItsNeighboursAhead()
    {
        ViewerBench bench;
        for (int i = 0; i < 5; ++i)
            bench.picture(QStringLiteral("pics/%1.png").arg(i), Qt::red, {10 << i, 1});
        const auto bytes = [](int i) { return qint64(10 << i) * 4; };
        frmImageView& window = bench.load({bench.in("pics")});
        window.list()->finishRebuild();
        const engine::ImageLoader& loader = bench.loader();
        window.list()->SetListIndex(0);
        QTRY_COMPARE(loader.readAheadBytes(), bytes(1) + bytes(4) + bytes(2));
        window.RunTool(QStringLiteral("miNext"));
        QTRY_COMPARE(loader.readAheadBytes(), bytes(1) + bytes(4) + bytes(2) + bytes(0) + bytes(3));
    }

    void backwardsTheSecondPreviousIsReadToo()
    {
        ViewerBench bench;
        for (int i = 0; i < 6; ++i)
            bench.picture(QStringLiteral("pics/%1.png").arg(i), Qt::red, {10 << i, 1});
        const auto bytes = [](int i) { return qint64(10 << i) * 4; };
        frmImageView& window = bench.load({bench.in("pics")});
        window.list()->finishRebuild();
        window.list()->SetListIndex(0);
        QTRY_COMPARE(bench.loader().readAheadBytes(), bytes(1) + bytes(5) + bytes(2));
        window.RunTool(QStringLiteral("miPrevious"));
        QTRY_COMPARE(bench.loader().readAheadBytes(),
                     bytes(1) + bytes(5) + bytes(2) + bytes(4) + bytes(0) + bytes(3));
    }

    void anotherViewportReadsForItsSize()
    {
        ViewerBench bench;
        bench.picture(QStringLiteral("pics/a.png"), Qt::red);
        bench.picture(QStringLiteral("pics/b.png"), Qt::red, {4000, 10});
        frmImageView& window = bench.load({bench.in("pics")});
        window.resize(500, 400);
        window.list()->finishRebuild();
        window.list()->SetListIndex(0);
        const auto fitted = [&window] {
            const QSize size = engine::fittedSize({4000, 10}, window.viewport()->loadBox());
            return qint64(size.width()) * size.height() * 4;
        };
        const qint64 full = qint64(4000) * 10 * 4;
        QTRY_COMPARE(bench.loader().readAheadBytes(), fitted() + full);
        window.resize(700, 400);
        window.RunTool(QStringLiteral("miBestFit")); // every pixel from here on, and those stand already
        QCOMPARE(window.viewport()->loadBox(), QSize());
        window.RunTool(QStringLiteral("miBestFit"));
        QTRY_COMPARE(bench.loader().readAheadBytes(), fitted() + full);
    }
};

QTEST_MAIN(TestReadAheadPlan)
#include "tst_readaheadplan.moc"
