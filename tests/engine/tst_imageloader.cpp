#include "engine/ImageLoader.h"
#include "FakePictures.h"

#include <QtTest>

#include <future>
#include <random>

using namespace quorvia::engine;
using quorvia::test::FakePictures;
using quorvia::test::Gate;
using quorvia::test::graded;
using quorvia::test::plain;

namespace {

constexpr QSize box(100, 100);
const QString big = QStringLiteral("big");
const QString other = QStringLiteral("other");
const QString third = QStringLiteral("third");

/// The answer of a wait that another thread is in; fails the test instead of hanging it.
template <class Value>
bool ended(std::future<Value>& wait)
{
    return wait.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
}

} // namespace

class tst_ImageLoader : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_pictures = std::make_unique<FakePictures>();
        for (const QString& name : {big, other, third})
            (*m_pictures)[name].pages = {graded(1000, 500), graded(40, 30)};
        m_loader = std::make_unique<ImageLoader>(m_pictures->opener());
    }

    void cleanup()
    {
        for (const QString& name : {big, other, third})
            (*m_pictures)[name].headerGate->open(); // no flag ends that wait
        m_loader.reset();
        QCOMPARE(m_pictures->openDecoders(), 0);
        m_pictures.reset();
    }

    void headerFirstFull()
    {
        const auto load = m_loader->load(big, 1, box);
        QCOMPARE(load->key().path, big);
        QCOMPARE(load->key().page, 1);
        const auto header = load->header();
        QVERIFY(header);
        QCOMPARE(header->size, QSize(1000, 500));
        QCOMPARE(header->bitsPerPixel, 24);
        const auto first = load->first();
        QVERIFY(first);
        QCOMPARE(first->image.size(), QSize(100, 50));
        QCOMPARE(first->fullSize, QSize(1000, 500));
        QVERIFY(load->fullIfReady().image.isNull());
        const auto full = load->full();
        QVERIFY(full);
        QCOMPARE(full->image, graded(1000, 500));
        QCOMPARE(load->fullIfReady().image, full->image);
        QCOMPARE(load->first()->image.size(), QSize(1000, 500)); // the small one has given way
        QCOMPARE(m_pictures->order(), QStringList({big, big + '+'}));
        QCOMPARE(m_pictures->openDecoders(), 0); // the file is closed when nothing is left to read
    }

    void aFullFirstServesAsTheFullOne()
    {
        const auto load = m_loader->load(big, 2, box); // smaller than the box
        QCOMPARE(load->first()->image.size(), QSize(40, 30));
        QCOMPARE(load->fullIfReady().image, graded(40, 30));
        QCOMPARE(load->full()->image, graded(40, 30));
        QCOMPARE(m_pictures->order(), QStringList(big));
    }

    void emptyBoxAsksForAll()
    {
        const auto load = m_loader->load(big, 1, QSize());
        QCOMPARE(load->first()->image.size(), QSize(1000, 500));
        QCOMPARE(m_pictures->order(), QStringList(big + '+'));
    }

    void headerDoesNotWaitForPixels()
    {
        (*m_pictures)[big].firstGate->close();
        const auto load = m_loader->load(big, 1, box);
        QVERIFY(load->header());
        auto first = std::async(std::launch::async, [&] { return load->first(); });
        QVERIFY((*m_pictures)[big].firstGate->sawArrivals(1));
        (*m_pictures)[big].firstGate->open();
        QVERIFY(ended(first));
        QVERIFY(first.get());
    }

    void headerFailure_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("kind");
        QTest::newRow("no file") << QStringLiteral("none") << 1 << int(ErrorKind::NotFound);
        QTest::newRow("no page") << big << 3 << int(ErrorKind::Damaged);
        QTest::newRow("page 0") << big << 0 << int(ErrorKind::Damaged);
    }

    void headerFailure()
    {
        QFETCH(QString, name);
        QFETCH(int, page);
        QFETCH(int, kind);
        const auto load = m_loader->load(name, page, box);
        QVERIFY(!load->header());
        QCOMPARE(int(load->header().error().kind), kind);
        QCOMPARE(int(load->first().error().kind), kind);
        QCOMPARE(int(load->full().error().kind), kind);
        QVERIFY(load->fullIfReady().image.isNull());
    }

    void pixelFailure()
    {
        (*m_pictures)[big].badPixels = true;
        const auto load = m_loader->load(big, 1, box);
        QVERIFY(load->header());
        QCOMPARE(load->first().error().kind, ErrorKind::Damaged);
        QCOMPARE(load->full().error().kind, ErrorKind::Damaged);
    }

    void fullFailureKeepsTheFirst()
    {
        (*m_pictures)[big].badFull = true;
        const auto load = m_loader->load(big, 1, box);
        QCOMPARE(load->full().error().kind, ErrorKind::Damaged);
        QCOMPARE(load->first()->image.size(), QSize(100, 50));
    }

    void failuresAreNotShared()
    {
        (*m_pictures)[big].badPixels = true;
        const auto load = m_loader->load(big, 1, box);
        QVERIFY(!load->first());
        (*m_pictures)[big].badPixels = false;
        QVERIFY(m_loader->load(big, 1, box)->first());
    }

    void anExceptionIsAFailure()
    {
        ImageLoader loader(
            [](const QString&) -> Result<std::unique_ptr<Decoder>> { throw std::bad_alloc(); });
        const auto load = loader.load(big, 1, box);
        QCOMPARE(load->header().error().kind, ErrorKind::TooLarge);
        QCOMPARE(load->full().error().kind, ErrorKind::TooLarge);
    }

    void sharing_data()
    {
        QTest::addColumn<QSize>("firstBox");
        QTest::addColumn<QSize>("secondBox");
        QTest::addColumn<bool>("shared");
        QTest::newRow("same box") << box << box << true;
        QTest::newRow("smaller box") << box << QSize(50, 50) << true;
        QTest::newRow("other shape, covered") << box << QSize(100, 3000) << true;
        QTest::newRow("larger box") << box << QSize(200, 200) << false;
        QTest::newRow("full wanted") << box << QSize() << false;
        QTest::newRow("full there") << QSize() << box << true;
        QTest::newRow("full there, full wanted") << QSize() << QSize() << true;
        QTest::newRow("both boxes larger than the page") << QSize(2000, 2000) << QSize(3000, 3000) << true;
    }

    void sharing()
    {
        QFETCH(QSize, firstBox);
        QFETCH(QSize, secondBox);
        QFETCH(bool, shared);
        const auto one = m_loader->load(big, 1, firstBox);
        QVERIFY(one->first());
        const auto two = m_loader->load(big, 1, secondBox);
        QVERIFY(two->first());
        QCOMPARE(m_pictures->order().size(), shared ? 1 : 2);
        const QSize wanted = fittedSize(QSize(1000, 500), secondBox);
        QVERIFY(two->first()->image.width() >= wanted.width());
    }

    void otherPageIsNotShared()
    {
        const auto one = m_loader->load(big, 1, box);
        const auto two = m_loader->load(big, 2, box);
        QCOMPARE(one->header()->size, QSize(1000, 500));
        QCOMPARE(two->header()->size, QSize(40, 30));
    }

    void theNewestIsKeptWithoutAHold()
    {
        m_loader->load(big, 1, box)->first(); // the hold is dropped at once
        QVERIFY(m_loader->load(big, 1, box)->first());
        QCOMPARE(m_pictures->order(), QStringList(big));
    }

    void olderOnesAreForgotten()
    {
        m_loader->load(big, 1, box)->first();
        m_loader->load(other, 1, box)->first();
        m_loader->load(big, 1, box)->first();
        QCOMPARE(m_pictures->order(), QStringList({big, other, big}));
    }

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

    void whenFullCallsOnce()
    {
        std::atomic<int> calls = 0;
        const auto load = m_loader->load(big, 1, box);
        load->whenFull([&] { ++calls; });
        QVERIFY(load->first());
        QCOMPARE(calls.load(), 0); // it does not start the decode
        load->requestFull();
        QTRY_COMPARE(calls.load(), 1);
        const auto here = std::this_thread::get_id();
        std::thread::id where;
        load->whenFull([&] { where = std::this_thread::get_id(); }); // it stands already
        QVERIFY(where == here);
        QCOMPARE(calls.load(), 1);
    }

    void whenFullTellsOfFailureToo()
    {
        (*m_pictures)[big].badPixels = true;
        std::atomic<int> calls = 0;
        (*m_pictures)[big].firstGate->close();
        const auto load = m_loader->load(big, 1, box);
        load->whenFull([&] { ++calls; });
        (*m_pictures)[big].firstGate->open();
        QTRY_COMPARE(calls.load(), 1);
    }

    void whenFullMayAskTheLoader()
    {
        const auto load = m_loader->load(big, 1, box);
        std::promise<QSize> size;
        load->whenFull([&] { size.set_value(load->full()->image.size()); });
        load->requestFull();
        auto answer = size.get_future();
        QVERIFY(ended(answer));
        QCOMPARE(answer.get(), QSize(1000, 500));
    }

    void noCallAfterCancel()
    {
        (*m_pictures)[big].firstGate->close();
        std::atomic<int> calls = 0;
        const auto one = m_loader->load(big, 1, box);
        const auto two = m_loader->load(big, 1, box);
        one->whenFull([&] { ++calls; });
        one->cancel();
        (*m_pictures)[big].firstGate->open();
        QVERIFY(two->full());
        m_loader.reset(); // joins: nothing runs any more
        QCOMPARE(calls.load(), 0);
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

    void keyFollowsTheFile()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a"));
        QCOMPARE(PageKey::of(path, 1).size, qint64(-1));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("12345") == 5);
        file.close();
        const PageKey before = PageKey::of(path, 1);
        QCOMPARE(before.size, qint64(5));
        QVERIFY(before.modified > 0);
        QVERIFY(before == PageKey::of(path, 1));
        QVERIFY(!(before == PageKey::of(path, 2)));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(5), QFile::FileModificationTime));
        file.close();
        QVERIFY(!(before == PageKey::of(path, 1)));
    }

    void aChangedFileIsLoadedAgain()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a"));
        (*m_pictures)[path].pages = {graded(10, 10)};
        const auto write = [&path](const QByteArray& bytes) {
            QFile file(path);
            return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
        };
        QVERIFY(write("one"));
        const auto one = m_loader->load(path, 1, box);
        QVERIFY(one->first());
        QVERIFY(m_loader->load(path, 1, box)->first());
        QCOMPARE(m_pictures->order().size(), 1);
        QVERIFY(write("longer"));
        QVERIFY(m_loader->load(path, 1, box)->first());
        QCOMPARE(m_pictures->order().size(), 2);
    }

    void realFiles()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a.png"));
        QVERIFY(graded(30, 20).save(path));
        ImageLoader loader;
        QCOMPARE(loader.load(path, 1, QSize())->full()->image, graded(30, 20));
        QCOMPARE(ImageLoader::pageCount(path), 1);
        QCOMPARE(ImageLoader::pageCount(directory.filePath(QStringLiteral("none.png"))), 0);
        QCOMPARE(ImageLoader::pageCount(directory.path()), 0);
        const auto none = loader.load(directory.filePath(QStringLiteral("none.png")), 1, QSize());
        QCOMPARE(none->header().error().kind, ErrorKind::NotFound);
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
                    load->whenFull([&arrived] { ++arrived; });
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

  private:
    std::unique_ptr<FakePictures> m_pictures;
    std::unique_ptr<ImageLoader> m_loader;
};

QTEST_GUILESS_MAIN(tst_ImageLoader)
#include "tst_imageloader.moc"
