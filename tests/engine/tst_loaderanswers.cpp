// What a load gives: header, first and full picture, errors, and which loads share one decode.
#include "LoaderStage.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_LoaderAnswers : public QObject, protected LoaderStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

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
};

QTEST_GUILESS_MAIN(tst_LoaderAnswers)
#include "tst_loaderanswers.moc"
