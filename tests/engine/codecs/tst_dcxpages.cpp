#include "corpus/Corpus.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "PcxMaker.h"

#include <QtEndian>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::pcx;

class TestDcxPages : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void readsBrokenTables_data();
    void readsBrokenTables();
    void countsPagesWithoutReadingThem();
    void readsRealSamples();

  private:
    const Codec& m_book = dcxCodec();
    std::vector<Fixture> m_bookCorpus;
};

void TestDcxPages::initTestCase()
{
    m_bookCorpus = dcxCorpus();
    QVERIFY(m_bookCorpus.size() >= 10);
}

void TestDcxPages::readsBrokenTables_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<int>>("widths"); // of the pages, 0 for one that cannot be read
    const auto page = [](int width) {
        return header({width, 1}, 8, 3, width) + QByteArray(3 * width, '\x11');
    };
    const QByteArray one = page(5);
    const QByteArray two = page(9);
    const quint32 first = 4 + 4 * 4;
    const quint32 second = first + quint32(one.size());
    const quint32 past = second + quint32(two.size());
    QTest::newRow("in order") << book({first, second, 0, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("not in order") << book({second, first, 0, 0}, one + two) << QList<int>{9, 5};
    QTest::newRow("twice the same") << book({first, first, second, 0}, one + two) << QList<int>{5, 5, 9};
    QTest::newRow("one past the end") << book({first, past, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("one far past the end")
        << book({first, 0xFFFFFFFF, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("one in the mark") << book({first, 2, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("no end mark") << book({first, second}, QByteArray(8, '\xFF') + one + two)
                                 << QList<int>{5, 9};
    QTest::newRow("a page that is none")
        << book({first, second, 0, 0}, QByteArray(one.size(), 'x') + two) << QList<int>{0, 9};
    QTest::newRow("no page") << book({0, first, second, 0}, one + two) << QList<int>();
    QTest::newRow("all past the end") << book({past, past + 9, 0, 0}, one + two) << QList<int>();
    QTest::newRow("no table") << book({}, {}) << QList<int>();
}

void TestDcxPages::readsBrokenTables()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<int>, widths);
    const auto decoder = m_book.open(ByteSource::fromBytes(file));
    QCOMPARE(bool(decoder), !widths.isEmpty());
    if (!decoder) {
        QCOMPARE(decoder.error().kind, ErrorKind::Damaged);
        return;
    }
    QCOMPARE((*decoder)->pageCount(), int(widths.size()));
    const CancelFlag go = false;
    for (int i = 0; i < widths.size(); ++i) {
        const auto facts = (*decoder)->header(i + 1);
        const auto picture = (*decoder)->decode(i + 1, QSize(), go);
        QCOMPARE(bool(facts), widths[i] != 0);
        QCOMPARE(bool(picture), widths[i] != 0);
        if (picture)
            QCOMPARE(picture->image.width(), widths[i]);
    }
    QVERIFY(!(*decoder)->header(0));
    QVERIFY(!(*decoder)->decode(int(widths.size()) + 1, QSize(), go));
}

void TestDcxPages::countsPagesWithoutReadingThem()
{
    const QByteArray& file = m_bookCorpus.front().file;
    const auto source = std::make_shared<WatchedSource>(file);
    const auto decoder = m_book.open(source);
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 6);
    QVERIFY(source->reached() <= 4 + 4 * 1024);
}

void TestDcxPages::readsRealSamples()
{
    const auto folder = sampleFolder(QStringLiteral("dcx"));
    const QFileInfoList files = folder ? folder->entryInfoList(QDir::Files) : QFileInfoList();
    if (files.isEmpty())
        QSKIP("QUORVIA_SAMPLES names no folder with samples: they are not looked at");
    for (const QFileInfo& info : files) {
        const auto source = ByteSource::open(info.filePath());
        QVERIFY(source);
        const auto decoder = m_book.open(*source);
        QVERIFY2(decoder, qPrintable(info.fileName()));
        const CancelFlag go = false;
        const QByteArray bytes = (*source)->bytes(0, (*source)->size());
        for (int page = 1; page <= (*decoder)->pageCount(); ++page) {
            const auto picture = (*decoder)->decode(page, QSize(), go);
            QVERIFY2(picture && picture->complete, qPrintable(info.fileName()));
            // Each page on its own is a PCX for another reader.
            const qint64 start = qFromLittleEndian<quint32>(bytes.constData() + 4 * page);
            const qint64 next = qFromLittleEndian<quint32>(bytes.constData() + 4 * page + 4);
            const QByteArray own = next > start ? bytes.mid(start, next - start) : bytes.mid(start);
            QCOMPARE(firstDifference(rgbaOf(picture->image), fromPnm(piped("gm convert pcx:- ppm:-", own))),
                     QString());
        }
    }
}

QTEST_GUILESS_MAIN(TestDcxPages)
#include "tst_dcxpages.moc"
