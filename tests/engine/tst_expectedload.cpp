// The page that is expected to be asked for next: decoded beside the wanted one, and shared by its load.
#include "engine/ImageLoader.h"
#include "FakePictures.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace quorvia::engine;
using quorvia::test::FakeFile;
using quorvia::test::FakePictures;
using quorvia::test::graded;

namespace {

constexpr QSize box(100, 100);

} // namespace

class tst_ExpectedLoad : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        m_pictures = std::make_unique<FakePictures>();
        for (const auto& [path, name] : {std::pair(&m_a, 'a'), std::pair(&m_b, 'b'), std::pair(&m_c, 'c')}) {
            *path = m_directory->filePath(QChar::fromLatin1(name));
            QFile content(*path);
            QVERIFY(content.open(QIODevice::WriteOnly) && content.write("content") > 0);
            file(*path).pages = {graded(1000, 500)};
        }
        m_loader = std::make_unique<ImageLoader>(m_pictures->opener(), 2);
    }

    void cleanup()
    {
        m_loader.reset();
        QCOMPARE(m_pictures->openDecoders(), 0);
    }

    void isDecodedBesideTheWantedOneAndOnlyOnce()
    {
        file(m_a).firstGate->close();
        const auto wanted = m_loader->load(m_a, 1, box);
        QVERIFY(file(m_a).firstGate->sawArrivals(1));
        m_loader->expect(m_b, box);
        m_loader->expect(m_b, box);
        QTRY_COMPARE(m_pictures->order(), QStringList({m_a, m_b}));
        const auto next = m_loader->load(m_b, 1, box);
        QCOMPARE(next->first()->image.size(), QSize(100, 50));
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_b}));
        file(m_a).firstGate->open();
    }

    void comesAfterWhatIsWanted()
    {
        file(m_a).firstGate->close();
        file(m_b).firstGate->close();
        const auto first = m_loader->load(m_a, 1, box);
        const auto second = m_loader->load(m_b, 1, box);
        QVERIFY(file(m_a).firstGate->sawArrivals(1) &&
                file(m_b).firstGate->sawArrivals(1)); // no thread is left
        file(m_c).firstGate->close();
        const auto third = m_loader->load(m_c, 1, box);
        m_loader->expect(m_a + "none", box); // a file that is not there
        const QString d = m_directory->filePath(QStringLiteral("d"));
        QVERIFY(QFile::copy(m_a, d));
        file(d).pages = {graded(1000, 500)};
        m_loader->expect(d, box);
        file(m_a).firstGate->open();
        QVERIFY(file(m_c).firstGate->sawArrivals(1));
        QCOMPARE(file(d).firstGate->arrivals(), 0);
        file(m_b).firstGate->open();
        QVERIFY(file(d).firstGate->sawArrivals(1));
        file(m_c).firstGate->open();
    }

    void goesAheadOfFullDecodesThatNobodyWaitsFor()
    {
        const auto shown = m_loader->load(m_a, 1, box);
        QVERIFY(shown->first());
        file(m_a).fullGate->close();
        shown->requestFull();
        QVERIFY(file(m_a).fullGate->sawArrivals(1));
        file(m_b).firstGate->close();
        m_loader->expect(m_b, box); // breaks it off
        QVERIFY(file(m_b).firstGate->sawArrivals(1));
        file(m_a).fullGate->open();
        QCOMPARE(file(m_a).fullGate->arrivals(), 1);
        file(m_b).firstGate->open();
        QTRY_VERIFY(!shown->fullIfReady().image.isNull()); // and is taken up again
        QCOMPARE(m_pictures->order(), QStringList({m_a, m_a + '+', m_b, m_a + '+'}));
    }

    void isLetGo_data()
    {
        QTest::addColumn<QString>("by");
        QTest::newRow("by a load of another") << "load";
        QTest::newRow("by another expected") << "other";
        QTest::newRow("by none expected") << "none";
    }

    void isLetGo()
    {
        QFETCH(QString, by);
        file(m_b).firstGate->close();
        m_loader->expect(m_b, box);
        QVERIFY(file(m_b).firstGate->sawArrivals(1));
        std::shared_ptr<ImageLoad> other;
        if (by == QLatin1String("load"))
            other = m_loader->load(m_c, 1, box);
        else
            m_loader->expect(by == QLatin1String("other") ? m_c : QString(), box);
        const int others = by == QLatin1String("none") ? 0 : 1;
        QTRY_COMPARE(m_pictures->order().count(m_c), others);
        QTRY_COMPARE(m_pictures->openDecoders(), others);
        file(m_b).firstGate->open();
        const auto load = m_loader->load(m_b, 1, box);
        QVERIFY(load->first());
        QCOMPARE(m_pictures->order().count(m_b), 2);
    }

    void whatStandsIsNotDecodedAgain()
    {
        m_loader->setNeighbours({m_a}, box);
        QTRY_VERIFY(m_loader->readAheadBytes() > 0);
        const auto held = m_loader->load(m_b, 1, box);
        QVERIFY(held->full());
        m_loader->expect(m_a, box);
        m_loader->expect(m_b, box);
        QVERIFY(m_loader->load(m_c, 1, box)->full());
        QCOMPARE(m_pictures->order().count(m_a), 1);
        QCOMPARE(m_pictures->order().count(m_b) + m_pictures->order().count(m_b + '+'), 2);
    }

    void oneProcessorExpectsNothing()
    {
        m_loader = std::make_unique<ImageLoader>(m_pictures->opener(), 1);
        const auto wanted = m_loader->load(m_a, 1, box);
        m_loader->expect(m_b, box);
        QVERIFY(wanted->full()); // an expected page would have been begun before that
        m_loader.reset();
        QCOMPARE(m_pictures->order().count(m_b), 0);
    }

    void endsWithItsLoader()
    {
        file(m_b).firstGate->close();
        m_loader->expect(m_b, box);
        QVERIFY(file(m_b).firstGate->sawArrivals(1));
        m_loader.reset();
        QCOMPARE(m_pictures->openDecoders(), 0);
    }

  private:
    FakeFile& file(const QString& path) { return (*m_pictures)[path]; }

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<FakePictures> m_pictures;
    std::unique_ptr<ImageLoader> m_loader;
    QString m_a;
    QString m_b;
    QString m_c;
};

QTEST_GUILESS_MAIN(tst_ExpectedLoad)
#include "tst_expectedload.moc"
