#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "PcxMaker.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::pcx;

class TestPcxHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = pcxCodec();
    const Codec& m_book = dcxCodec();
    std::vector<Fixture> m_corpus;
    std::vector<Fixture> m_bookCorpus;
};

void TestPcxHostile::initTestCase()
{
    m_corpus = pcxCorpus();
    m_bookCorpus = dcxCorpus();
    QVERIFY(m_corpus.size() >= 10 && m_bookCorpus.size() >= 10);
}

void TestPcxHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const int damaged = int(ErrorKind::Damaged);
    QTest::newRow("half a header") << header({3, 3}, 8, 3, 4).left(100) << damaged;
    QTest::newRow("no pixel") << header({3, 3}, 8, 3, 4) << damaged;
    QTest::newRow("no whole pixel") << header({3, 3}, 8, 3, 4) + "abcdefgh" << damaged;
    QTest::newRow("rows of no bytes") << header({3, 3}, 8, 3, 0) + "abc" << damaged;
    QTest::newRow("2 planes of 8 bits") << header({3, 3}, 8, 2, 4) + "abc" << int(ErrorKind::Unsupported);
    QTest::newRow("4 planes of 4 bits") << header({3, 3}, 4, 4, 4) + "abc" << int(ErrorKind::Unsupported);
    QTest::newRow("too wide") << header({65536, 1}, 8, 1, 4) + "abc" << int(ErrorKind::TooLarge);
}

void TestPcxHostile::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestPcxHostile::showsWhatACutFileHolds()
{
    const auto pcx = [](const char* command, const QByteArray& map) { return piped(command, map); };
    const QByteArray deep = pcx("ppmtopcx -quiet -24bit", sampleMap({19, 30}));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("24 bits"), deep, {}}), QString());
    const QByteArray planes = pcx("ppmtopcx -quiet", fewColors({33, 30}, 16));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("4 planes"), planes, {}}), QString());
    // The palette stands at the end: without it the colours are greys, so only the faults count here.
    const QByteArray indexed = pcx("ppmtopcx -quiet", fewColors({33, 30}, 200));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("8 bits"), indexed, {}}, false), QString());
    const auto part = decoded(m_codec, indexed.left(128 + 500));
    QVERIFY(part && !part->complete);
    QCOMPARE(part->image.format(), QImage::Format_Grayscale8);
    const Fixture& book = m_bookCorpus.front();
    const auto page = decoded(m_book, book.file.left(4100 + 900), 1);
    QVERIFY(page && !page->complete);
    QCOMPARE(cutFault(m_book, {QStringLiteral("pages"), book.file, {}}, false), QString());
}

void TestPcxHostile::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(m_codec, m_corpus[1].file), QString());
    QCOMPARE(cancelFault(m_book, m_bookCorpus[0].file), QString());
}

void TestPcxHostile::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 300), QString());
    QCOMPARE(mutantFault(m_book, m_bookCorpus, 300), QString());
}

QTEST_GUILESS_MAIN(TestPcxHostile)
#include "tst_pcxhostile.moc"
