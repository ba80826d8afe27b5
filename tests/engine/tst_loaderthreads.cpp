// Loads among threads: cancelling, dropping, the order of the work, calls when a picture stands.
#include "LoaderStage.h"

#include <QtTest>

#include <random>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_LoaderThreads : public QObject, protected LoaderStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void cancelForgetsTheNewest()
    {
        const auto load = m_loader->load(big, 1, box);
        QVERIFY(load->first());
        load->cancel();
        QCOMPARE(load->first().error().kind, ErrorKind::Cancelled);
        QCOMPARE(load->header().error().kind, ErrorKind::Cancelled);
        QCOMPARE(load->full().error().kind, ErrorKind::Cancelled);
        QVERIFY(load->fullIfReady().image.isNull());
        m_loader->load(big, 1, box)->first();
        QCOMPARE(m_pictures->order(), QStringList({big, big}));
    }

    void cancelLeavesOtherHoldsAlone()
    {
        (*m_pictures)[big].firstGate->close();
        const auto one = m_loader->load(big, 1, box);
        const auto two = m_loader->load(big, 1, box);
        QVERIFY((*m_pictures)[big].firstGate->sawArrivals(1));
        one->cancel();
        one->cancel(); // once more changes nothing
        QCOMPARE(one->first().error().kind, ErrorKind::Cancelled);
        (*m_pictures)[big].firstGate->open();
        QVERIFY(two->first());
    }

    void cancelEndsADecodeAndAWait()
    {
        (*m_pictures)[big].firstGate->close(); // never opened: only the flag ends the decode
        const auto load = m_loader->load(big, 1, box);
        auto first = std::async(std::launch::async, [&] { return load->first(); });
        QVERIFY((*m_pictures)[big].firstGate->sawArrivals(1));
        load->cancel();
        QVERIFY(ended(first));
        QCOMPARE(first.get().error().kind, ErrorKind::Cancelled);
        QTRY_COMPARE(m_pictures->openDecoders(), 0);
    }

    void droppingTheLastHoldEndsADecode()
    {
        (*m_pictures)[big].firstGate->close();
        auto load = m_loader->load(big, 1, box);
        QVERIFY((*m_pictures)[big].firstGate->sawArrivals(1));
        const auto next = m_loader->load(other, 1, box); // the first is not the newest any more
        load.reset();
        QTRY_VERIFY(m_pictures->openDecoders() <= 1);
        QVERIFY(next->first());
    }

    void aFirstPictureGoesAheadOfBackgroundFulls()
    {
        auto& file = (*m_pictures)[big];
        file.fullGate->close();
        const auto shown = m_loader->load(big, 1, box);
        QVERIFY(shown->first());
        shown->requestFull();
        QVERIFY(file.fullGate->sawArrivals(1));
        (*m_pictures)[other].firstGate->close();
        const auto next = m_loader->load(other, 1, box);
        QVERIFY((*m_pictures)[other].firstGate->sawArrivals(1));
        // the full decode was broken off and is not begun again while the first one is under way
        QCOMPARE(file.fullGate->arrivals(), 1);
        (*m_pictures)[other].firstGate->open();
        QVERIFY(next->first());
        QVERIFY(file.fullGate->sawArrivals(2)); // begun again
        file.fullGate->open();
        QCOMPARE(shown->full()->image, graded(1000, 500));
        QCOMPARE(m_pictures->order(), QStringList({big, big + '+', other, big + '+'}));
    }

    void aFullThatIsWaitedForIsNotBrokenOff()
    {
        auto& file = (*m_pictures)[big];
        file.fullGate->close();
        const auto shown = m_loader->load(big, 1, box);
        auto full = std::async(std::launch::async, [&] { return shown->full(); });
        QVERIFY(file.fullGate->sawArrivals(1));
        QVERIFY(m_loader->load(other, 1, box)->first()); // the other thread does it
        file.fullGate->open();
        QVERIFY(ended(full));
        QVERIFY(full.get());
        QCOMPARE(file.fullGate->arrivals(), 1);
    }

    void newestFirst()
    {
        // both threads are held at a header; what is asked meanwhile waits in the queue
        auto& one = (*m_pictures)[big];
        auto& two = (*m_pictures)[other];
        one.headerGate->close();
        two.headerGate->close();
        const auto a = m_loader->load(big, 1, box);
        const auto b = m_loader->load(other, 1, box);
        QVERIFY(one.headerGate->sawArrivals(1) && two.headerGate->sawArrivals(1));
        (*m_pictures)[third].firstGate->close(); // the thread that gets here stays
        const auto older = m_loader->load(third, 2, box);
        const auto newer = m_loader->load(third, 1, box);
        one.headerGate->open();
        QVERIFY((*m_pictures)[third].firstGate->sawArrivals(1));
        QVERIFY(newer->header()); // the newer one was taken
        (*m_pictures)[third].firstGate->open();
        two.headerGate->open();
        QVERIFY(older->first() && newer->first() && a->first() && b->first());
    }

    void theFullPictureIsReadyWhenItWasAskedFor()
    {
        const auto load = m_loader->load(big, 1, box);
        QVERIFY(load->first());
        QVERIFY(load->fullIfReady().image.isNull()); // nobody has asked for it
        QCOMPARE((*m_pictures)[big].fullGate->arrivals(), 0);
        load->requestFull();
        QTRY_COMPARE(load->fullIfReady().image.size(), QSize(1000, 500));
        QCOMPARE((*m_pictures)[big].fullGate->arrivals(), 1);
    }

    void nothingIsReadyOfAFailure()
    {
        (*m_pictures)[big].badPixels = true;
        const auto load = m_loader->load(big, 1, box);
        load->requestFull();
        QVERIFY(!load->full());
        QVERIFY(load->fullIfReady().image.isNull());
    }

    void nothingIsReadyAfterCancel()
    {
        (*m_pictures)[big].firstGate->close();
        const auto one = m_loader->load(big, 1, box);
        const auto two = m_loader->load(big, 1, box);
        one->cancel();
        (*m_pictures)[big].firstGate->open();
        QVERIFY(two->full());
        QVERIFY(one->fullIfReady().image.isNull());
        QCOMPARE(two->fullIfReady().image.size(), QSize(1000, 500));
    }

    void droppingTheLoaderEndsItsLoads()
    {
        (*m_pictures)[big].firstGate->close();
        const auto done = m_loader->load(other, 1, QSize());
        QVERIFY(done->first());
        const auto load = m_loader->load(big, 1, box);
        auto first = std::async(std::launch::async, [&] { return load->first(); });
        QVERIFY((*m_pictures)[big].firstGate->sawArrivals(1));
        m_loader.reset();
        QVERIFY(ended(first));
        QCOMPARE(first.get().error().kind, ErrorKind::Cancelled);
        QCOMPARE(load->full().error().kind, ErrorKind::Cancelled);
        QVERIFY(done->full()); // what stood stays
        load->requestFull();
        load->cancel();
    }

    // Several askers load, wait, cancel and drop at random; nobody hangs, and what arrives is right.
    void hammer()
    {
        constexpr int askers = 6;
        constexpr int rounds = 300;
        std::atomic<int> wrong = 0;
        std::atomic<int> arrived = 0;
        const std::vector<QString> names = {big, other, third, QStringLiteral("none")};
        const auto ask = [&](unsigned seed) {
            std::minstd_rand random(seed);
            std::vector<std::shared_ptr<ImageLoad>> held;
            for (int round = 0; round < rounds; ++round) {
                const QString& name = names[random() % names.size()];
                const int page = 1 + static_cast<int>(random() % 2);
                const QSize full = page == 1 ? QSize(1000, 500) : QSize(40, 30);
                auto load = m_loader->load(name, page, random() % 3 == 0 ? QSize() : box);
                switch (random() % 6) {
                case 0:
                    load->cancel();
                    wrong += load->full() ? 1 : 0;
                    break;
                case 1:
                    if (const auto answer = load->full()) {
                        wrong += answer->image.size() == full ? 0 : 1;
                        ++arrived;
                    }
                    break;
                case 2:
                    if (const auto answer = load->first()) {
                        wrong += answer->fullSize == full ? 0 : 1;
                        ++arrived;
                    }
                    break;
                case 3:
                    load->requestFull();
                    if (const Picture ready = load->fullIfReady(); !ready.image.isNull())
                        wrong += ready.image.size() == full ? 0 : 1;
                    break;
                case 4:
                    wrong += !load->header() && name != names.back() ? 1 : 0;
                    break;
                default:
                    break;
                }
                held.push_back(std::move(load));
                if (held.size() > 3)
                    held.erase(held.begin() + static_cast<std::ptrdiff_t>(random() % held.size()));
            }
        };
        std::vector<std::future<void>> running;
        for (unsigned i = 0; i < askers; ++i)
            running.push_back(std::async(std::launch::async, ask, i + 1));
        for (std::future<void>& one : running)
            QVERIFY(one.wait_for(std::chrono::seconds(120)) == std::future_status::ready);
        QCOMPARE(wrong.load(), 0);
        QVERIFY(arrived.load() > rounds);
    }

    // The loader goes while loads are under way and askers wait.
    void hammerTheEnd()
    {
        for (int round = 0; round < 100; ++round) {
            auto loader = std::make_unique<ImageLoader>(m_pictures->opener());
            std::vector<std::shared_ptr<ImageLoad>> loads;
            for (int i = 0; i < 8; ++i) {
                loads.push_back(loader->load(i % 2 ? big : other, 1, QSize(10 * i, 10 * i)));
                loads.back()->requestFull();
            }
            auto wait = std::async(std::launch::async, [&] { return loads[3]->full(); });
            loader.reset();
            QVERIFY(ended(wait));
            const auto answer = wait.get();
            QVERIFY(answer ? answer->isFull() : answer.error().kind == ErrorKind::Cancelled);
        }
    }
};

QTEST_GUILESS_MAIN(tst_LoaderThreads)
#include "tst_loaderthreads.moc"
