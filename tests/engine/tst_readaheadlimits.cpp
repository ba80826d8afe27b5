// What reading ahead leaves alone: pages beyond the cap, pages that cannot be broken off, files that fail,
// files that change.
#include "engine/ImageLoader.h"
#include "FakePictures.h"
#include "ReadAheadStage.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestReadAheadLimits : public QObject, private ReadAheadStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void failedOnesAreLeftUntilTheListChanges()
    {
        file(m_a).badPixels = true;
        const QString none = m_directory->filePath(QStringLiteral("none"));
        m_loader->setNeighbours({m_a, none, m_b}, box);
        QVERIFY(stands(1));
        m_loader->setNeighbours({m_a, none, m_b}, box);
        QVERIFY(m_loader->load(m_c, 1, box)->full());
        QCOMPARE(m_pictures->order().count(m_a), 1);
        m_loader->setNeighbours({m_a, m_b, m_d}, box);
        QVERIFY(stands(2));
        QCOMPARE(m_pictures->order().count(m_a), 2);
        QCOMPARE(m_pictures->order().count(m_b), 1);
        QVERIFY(!m_loader->load(m_a, 1, box)->first());
    }

    void aChangedFileIsNotServed()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        write(m_a, "other content");
        const auto load = m_loader->load(m_a, 1, box);
        QVERIFY(load->first());
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a}));
        QCOMPARE(m_loader->readAheadBytes(), 0);
    }

    /// The page was read ahead, and the file is another one by the time every pixel is asked for.
    void aFileThatChangedSinceGivesNoOtherPage()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        const auto load = m_loader->load(m_a, 1, box);
        file(m_a).pages[0] = graded(30, 20);
        const auto full = load->full();
        QVERIFY(!full);
        QCOMPARE(int(full.error().kind), int(ErrorKind::Unreadable));
        QCOMPARE(load->first()->image.size(), QSize(100, 50));
    }

    void aFileThatWasWrittenAgainGivesNoOtherPage()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        const auto load = m_loader->load(m_a, 1, box);
        write(m_a, "longer content"); // of the same size in pixels
        const auto full = load->full();
        QVERIFY(!full);
        QCOMPARE(int(full.error().kind), int(ErrorKind::Unreadable));
        QVERIFY(m_loader->load(m_a, 1, box)->full()); // another load is of the new file
    }

    void theCapHolds()
    {
        const qint64 one = qint64(100) * 50 * 4;
        m_loader->setReadAheadCap(2 * one);
        m_loader->setNeighbours({m_a, m_b, m_c}, box); // no room for the third: the nearer ones stay
        QVERIFY(stands(2));
        QTRY_COMPARE(m_pictures->order().count(m_c), 1);
        QTRY_COMPARE(m_pictures->openDecoders(), 0); // broken off, it would be tried again
        QVERIFY(m_loader->load(m_d, 1, box)->full());
        QCOMPARE(m_loader->readAheadBytes(), 2 * one);
        m_loader->setNeighbours({m_c, m_b}, box); // now the one that is no neighbour goes
        QTRY_COMPARE(m_pictures->order().count(m_c), 2);
        QTRY_COMPARE(m_pictures->openDecoders(), 0);
        QCOMPARE(m_loader->readAheadBytes(), 2 * one);
        QVERIFY(m_loader->load(m_b, 1, box)->first());
        QVERIFY(m_loader->load(m_c, 1, box)->first());
        QCOMPARE(m_pictures->order().count(m_b), 1);
        QCOMPARE(m_pictures->order().count(m_c), 2);
        m_loader->setReadAheadCap(0);
        QCOMPARE(m_loader->readAheadBytes(), 0);
    }

    void aPageBeyondTheCapIsNotDecoded()
    {
        m_loader->setReadAheadCap(qint64(100) * 50 * 4 - 1);
        m_loader->setNeighbours({m_a, m_b}, box);
        file(m_c).pages = {graded(10, 10)};
        m_loader->setNeighbours({m_a, m_b, m_c}, box);
        QVERIFY(stands(1, 10 * 10 * 4));
        QCOMPARE(m_pictures->order(), QStringList(m_c));
        QVERIFY(m_loader->load(m_a, 1, box)->first());
    }

    void aPageThatIsDecodedBeyondTheCapIsNotBegun()
    {
        file(m_a).scales = false; // so that all of its 1000 x 500 pixels come
        m_loader->setReadAheadCap(qint64(1000) * 500 * 4 - 1);
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(stands(1));
        QCOMPARE(m_pictures->order(), QStringList(m_b));
        m_loader->setReadAheadCap(qint64(1000) * 500 * 4);
        m_loader->setNeighbours({m_a}, box);
        QTRY_COMPARE(m_pictures->order(), QStringList({m_b, m_a}));
    }

    /// Whoever ends the program would have to wait for it.
    void aLargePageThatCannotBeBrokenOffIsNotBegun_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("breaksOff");
        QTest::addColumn<bool>("begun");
        QTest::newRow("large") << QSize(4000, 2001) << false << false;
        QTest::newRow("not so large") << QSize(4000, 2000) << false << true;
        QTest::newRow("large, of another kind") << QSize(4000, 2001) << true << true;
    }

    void aLargePageThatCannotBeBrokenOffIsNotBegun()
    {
        QFETCH(QSize, size);
        QFETCH(bool, breaksOff);
        QFETCH(bool, begun);
        file(m_a).pages = {plain(size.width(), size.height(), Qt::red)};
        file(m_a).breaksOff = breaksOff;
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(stands(begun ? 2 : 1));
        QCOMPARE(m_pictures->order(), begun ? QStringList({m_a, m_b}) : QStringList(m_b));
        QCOMPARE(m_loader->load(m_a, 1, box)->first()->fullSize, size);
        QTRY_COMPARE(m_pictures->order().count(m_a), 1);
    }

    void whatCouldNotBeReadIsTriedAgain()
    {
        file(m_a).readError = true;
        m_loader->setNeighbours({m_a}, box);
        QTRY_COMPARE(m_pictures->order(), QStringList(m_a));
        QTRY_COMPARE(m_pictures->openDecoders(), 0);
        QCOMPARE(m_loader->readAheadBytes(), 0); // not kept
        const auto load = m_loader->load(m_a, 1, box);
        QVERIFY(load->first()->readError); // but shown
        file(m_a).readError = false;
        QVERIFY(!m_loader->load(m_a, 1, box)->first()->readError);
    }

    void withoutRoomNoFileIsOpened()
    {
        m_loader->setReadAheadCap(0);
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(m_loader->load(m_c, 1, box)->full());
        QCOMPARE(file(m_a).headerGate->arrivals(), 0);
        m_loader->setReadAheadCap(1 << 20); // from now on there is
        QVERIFY(stands(2));
        QCOMPARE(file(m_a).headerGate->arrivals(), 1);
    }

    void onlyWhoDoesNotEndIsMadeLast_data()
    {
        QTest::addColumn<bool>("breaksOff");
        QTest::addColumn<int>("level");
        QTest::newRow("ends soon") << true << 5;
        QTest::newRow("goes on") << false << 19;
    }

    void onlyWhoDoesNotEndIsMadeLast()
    {
        QFETCH(bool, breaksOff);
        QFETCH(int, level);
        FakeFile& ahead = file(m_a);
        ahead.breaksOff = breaksOff;
        ahead.isDeaf = true;
        ahead.firstGate->close();
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(ahead.firstGate->sawArrivals(1));
        QVERIFY(m_loader->load(m_b, 1, box)->first()); // breaks it off
        m_loader->setNeighbours({}, box);              // nor is it begun again
        ahead.firstGate->open();
        QTRY_COMPARE(ahead.level->load(), std::max(level, getpriority(PRIO_PROCESS, 0)));
    }
};

QTEST_GUILESS_MAIN(TestReadAheadLimits)
#include "tst_readaheadlimits.moc"
