// The loader's reading ahead: when it runs, what it gives way to, what a load gets of it.
#include "engine/ImageLoader.h"
#include "engine/Resample.h"
#include "FakePictures.h"
#include "ReadAheadStage.h"

#include <QtTest>

#include <future>
#include <random>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_ReadAheadLoads : public QObject, private ReadAheadStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void neighboursComeInTheirOrder()
    {
        m_loader->setNeighbours({m_b, m_a, m_c}, box);
        QVERIFY(stands(3));
        QCOMPARE(m_pictures->order(), QStringList({m_b, m_a, m_c}));
        QTRY_COMPARE(m_pictures->openDecoders(), 0);
    }

    void aReadyPageAnswersAtOnce()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        file(m_a).headerGate->close(); // whoever opens the file now, waits
        file(m_a).firstGate->close();
        const auto load = m_loader->load(m_a, 1, box);
        QCOMPARE(load->header()->size, QSize(1000, 500));
        QCOMPARE(load->header()->bitsPerPixel, 24);
        QCOMPARE(load->first()->image.size(), QSize(100, 50));
        QCOMPARE(load->first()->fullSize, QSize(1000, 500));
        QVERIFY(load->fullIfReady().image.isNull());
        file(m_a).headerGate->open();
        QCOMPARE(load->full()->image, graded(1000, 500));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a + '+'}));
    }

    void aReadyPageAnswersAgain()
    {
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(stands(2));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(m_loader->load(m_a, 1, box)->first());
            QVERIFY(m_loader->load(m_b, 1, box)->first());
        }
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_b}));
    }

    void whatWasWrittenAnswersNoLoad()
    {
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(stands(2));
        const auto before = m_loader->load(m_c, 1, box);
        QCOMPARE(before->first()->fullSize, QSize(1000, 500));
        for (const QString& path : {m_a, m_c}) {
            file(path).pages = {graded(60, 30)}; // size and time of the file stay
            m_loader->forget(path);
        }
        QCOMPARE(m_loader->load(m_a, 1, box)->first()->fullSize, QSize(60, 30));
        QCOMPARE(m_loader->load(m_c, 1, box)->first()->fullSize, QSize(60, 30));
        QCOMPARE(before->first()->fullSize, QSize(1000, 500)); // who holds it keeps it
        QCOMPARE(m_loader->load(m_b, 1, box)->first()->fullSize, QSize(1000, 500));
        QCOMPARE(m_pictures->order().count(m_b), 1);
    }

    void aReadAheadThatIsOvertakenByAWriteBeginsAgain()
    {
        file(m_a).firstGate->close();
        m_loader->setNeighbours({m_a}, box);
        QTRY_VERIFY(m_pictures->order().contains(m_a));
        m_loader->forget(m_a);
        file(m_a).firstGate->open();
        QVERIFY(stands(1));
        QVERIFY(m_loader->load(m_a, 1, box)->first());
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a}));
    }

    void pagesOtherThanTheFirstAreNotRead()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        QCOMPARE(m_loader->load(m_a, 2, box)->first()->image.size(), QSize(40, 30));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a}));
    }

    /// A decoder that cannot scale gives the full picture; both are kept, the full one serves full().
    void whatDecodingGaveAnywayIsKept()
    {
        file(m_a).scales = false;
        m_loader->setNeighbours({m_a}, box);
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(100 * 50 + 1000 * 500) * 4);
        const auto load = m_loader->load(m_a, 1, box);
        const QSize size(100, 50);
        QCOMPARE(load->first()->image,
                 resampled(graded(1000, 500), size, QRect(QPoint(), size), Filter::Area, Filter::Area));
        QCOMPARE(load->fullIfReady().image, graded(1000, 500));
        QCOMPARE(load->full()->image, graded(1000, 500));
        QCOMPARE(m_pictures->order(), QStringList(m_a));
    }

    void aSmallPageIsKeptFull()
    {
        file(m_a).pages = {graded(40, 30)};
        m_loader->setNeighbours({m_a}, box);
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(40 * 30 * 4));
        const auto load = m_loader->load(m_a, 1, QSize());
        QCOMPARE(load->fullIfReady().image, graded(40, 30));
        QCOMPARE(m_pictures->order(), QStringList(m_a));
    }

    void anEmptyBoxKeepsEveryPixel()
    {
        m_loader->setNeighbours({m_a}, QSize());
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(1000 * 500 * 4));
        QCOMPARE(m_loader->load(m_a, 1, box)->fullIfReady().image, graded(1000, 500));
        QCOMPARE(m_pictures->order(), QStringList(m_a + '+'));
    }

    void anotherBoxIsReadAnew()
    {
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(stands(1));
        m_loader->setNeighbours({m_a}, QSize(200, 200));
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(200 * 100 * 4));
        m_loader->setNeighbours({m_a}, QSize(50, 50));
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(50 * 25 * 4));
        m_loader->setNeighbours({m_a, m_b}, QSize(50, 50));
        QTRY_COMPARE(m_loader->readAheadBytes(), qint64(2 * 50 * 25 * 4));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a, m_a, m_b}));
    }

    void waitsForTheFullPictureOfTheOneOnShow()
    {
        file(m_a).fullGate->close();
        const auto load = m_loader->load(m_a, 1, box);
        m_loader->setNeighbours({m_b}, box);
        QVERIFY(load->first());
        load->requestFull();
        QVERIFY(file(m_a).fullGate->sawArrivals(1));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a + '+'}));
        file(m_a).fullGate->open();
        QVERIFY(stands(1));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a + '+', m_b}));
    }

    void waitsUntilTheOneOnShowIsDropped()
    {
        const auto load = m_loader->load(m_a, 1, box);
        QVERIFY(load->first()); // and nobody asks for every pixel
        m_loader->setNeighbours({m_b}, box);
        load->cancel();
        QVERIFY(stands(1));
    }

    void aWantedPageIsNotKeptWaiting_data()
    {
        QTest::addColumn<int>("gate");
        QTest::newRow("in the pixels") << 0;
        QTest::newRow("in the header") << 1;
    }

    /// What is read ahead is broken off, leaves nothing behind and is taken up again afterwards.
    void aWantedPageIsNotKeptWaiting()
    {
        QFETCH(int, gate);
        const auto& held = gate == 0 ? file(m_b).firstGate : file(m_b).headerGate;
        held->close();
        m_loader->setNeighbours({m_b}, box);
        QVERIFY(held->sawArrivals(1));
        const auto load = m_loader->load(m_a, 1, box);
        QCOMPARE(load->full()->image.size(), QSize(1000, 500));
        QCOMPARE(m_loader->readAheadBytes(), 0);
        held->open();
        QVERIFY(stands(1));
        QCOMPARE(m_pictures->order().count(m_b), gate == 0 ? 2 : 1);
    }

    void aWaitForEveryPixelBreaksOff()
    {
        file(m_b).firstGate->close();
        const auto load = m_loader->load(m_a, 1, QSize(10, 10));
        QVERIFY(load->full());
        m_loader->setNeighbours({m_b, m_a}, box);
        QVERIFY(file(m_b).firstGate->sawArrivals(1));
        const auto ready = m_loader->load(m_a, 1, box); // shared: nothing is to decode, nothing broken off
        QVERIFY(ready->full());
        QCOMPARE(file(m_b).firstGate->arrivals(), 1);
        const auto page = m_loader->load(m_a, 2, box);
        QVERIFY(page->full());
        QVERIFY(file(m_b).firstGate->sawArrivals(2)); // begun again
        file(m_b).firstGate->open();
        QVERIFY(stands(1));
    }

    /// A page that is being read ahead becomes the load; it is not decoded twice.
    void whatIsUnderWayBecomesTheLoad_data()
    {
        QTest::addColumn<bool>("inHeader");
        QTest::newRow("in the pixels") << false;
        QTest::newRow("in the header") << true;
    }

    void whatIsUnderWayBecomesTheLoad()
    {
        QFETCH(bool, inHeader);
        const auto& held = inHeader ? file(m_b).headerGate : file(m_b).firstGate;
        held->close();
        m_loader->setNeighbours({m_b, m_c}, box);
        QVERIFY(held->sawArrivals(1));
        const auto load = m_loader->load(m_b, 1, box);
        m_loader->setNeighbours({m_c}, box); // no longer a neighbour, and not broken off for it
        auto first = std::async(std::launch::async, [&] { return load->first(); });
        held->open();
        QCOMPARE(first.get()->image.size(), QSize(100, 50));
        QCOMPARE(load->full()->image, graded(1000, 500));
        QVERIFY(stands(1));
        QCOMPARE(m_pictures->order(), QStringList({m_b, m_b + '+', m_c}));
        QTRY_COMPARE(m_pictures->openDecoders(), 0);
    }

    void aLargerBoxIsAnotherLoad()
    {
        file(m_b).firstGate->close();
        m_loader->setNeighbours({m_b}, box);
        QVERIFY(file(m_b).firstGate->sawArrivals(1));
        const auto load = m_loader->load(m_b, 1, QSize(400, 400));
        QVERIFY(file(m_b).firstGate->sawArrivals(2));
        file(m_b).firstGate->open();
        QCOMPARE(load->first()->image.size(), QSize(400, 200));
    }

    void whoeverIsNoNeighbourAnyMoreIsBrokenOff()
    {
        file(m_a).firstGate->close();
        m_loader->setNeighbours({m_a}, box);
        QVERIFY(file(m_a).firstGate->sawArrivals(1));
        m_loader->setNeighbours({m_b}, box);
        QVERIFY(stands(1));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_b}));
        QCOMPARE(m_loader->load(m_b, 1, box)->first()->image.size(), QSize(100, 50));
    }

    void endsWhileReading()
    {
        file(m_a).firstGate->close();
        m_loader->setNeighbours({m_a, m_b}, box);
        QVERIFY(file(m_a).firstGate->sawArrivals(1));
        m_loader.reset();
        QCOMPARE(m_pictures->openDecoders(), 0);
    }

    /// A walk at random over everything at once. What comes out must be what was asked for, whatever raced.
    void manyAtOnce()
    {
        m_loader->setReadAheadCap(qint64(100) * 50 * 4 * 3);
        file(m_b).scales = false;
        const QStringList all = {m_a, m_b, m_c, m_d};
        std::minstd_rand random(7);
        std::vector<std::shared_ptr<ImageLoad>> held;
        for (int i = 0; i < 400; ++i) {
            const auto at = static_cast<qsizetype>(random() % 4);
            const auto load = m_loader->load(all[at], 1, box);
            held.push_back(load);
            if (random() % 3 == 0)
                load->requestFull();
            if (random() % 2 == 0) {
                const auto first = load->first();
                QVERIFY(first);
                QVERIFY(first->image.size() == QSize(100, 50) || first->isFull());
            }
            if (random() % 5 == 0)
                QCOMPARE(load->full()->image, graded(1000, 500));
            if (random() % 4 == 0)
                load->cancel();
            m_loader->setNeighbours({all[(at + 1) % 4], all[(at + 3) % 4], all[(at + 2) % 4]}, box);
            QVERIFY(m_loader->readAheadBytes() <= qint64(100) * 50 * 4 * 3);
            if (held.size() > 3 || random() % 3 == 0)
                held.erase(held.begin());
        }
    }
};

QTEST_GUILESS_MAIN(tst_ReadAheadLoads)
#include "tst_readaheadloads.moc"
