// Every good file of one format through the whole table of codecs: tst_corpus FORMAT [Qt Test arguments].
// Where QUORVIA_CORPUS_DIR names a directory, the files are left there too: the fuzz targets start from them.
#include "CodecChecks.h"
#include "corpus/Corpus.h"
#include "engine/Codec.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestCorpus : public QObject
{
    Q_OBJECT

  public:
    explicit TestCorpus(const CorpusEntry& entry) : m_entry(entry), m_extension(fileExtension(entry)) {}

  private Q_SLOTS:
    void initTestCase();
    void hasTenFiles();
    void readsEveryPixel_data();
    void readsEveryPixel();
    void refusesPagesThatAreNotThere_data();
    void refusesPagesThatAreNotThere();
    void isReadWithoutItsName_data();
    void isReadWithoutItsName();

  private:
    void rows();
    const Fixture& fixture() const
    {
        QFETCH(int, index);
        return m_fixtures[size_t(index)];
    }

    const CorpusEntry& m_entry;
    const QString m_extension;
    std::vector<Fixture> m_fixtures;
};

void TestCorpus::initTestCase()
{
    m_fixtures = m_entry.make();
    const QString folder = qEnvironmentVariable("QUORVIA_CORPUS_DIR");
    for (size_t i = 0; !folder.isEmpty() && i < m_fixtures.size(); ++i) {
        QFile file(QStringLiteral("%1/%2.%3").arg(folder).arg(i).arg(m_extension));
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.write(m_fixtures[i].file) == m_fixtures[i].file.size());
    }
}

void TestCorpus::rows()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_fixtures.size(); ++i)
        QTest::newRow(qPrintable(m_fixtures[i].name)) << int(i);
}

void TestCorpus::hasTenFiles()
{
    QVERIFY(m_fixtures.size() >= 10);
    for (const Fixture& fixture : m_fixtures)
        QVERIFY2(!fixture.file.isEmpty(), qPrintable(fixture.name));
}

void TestCorpus::readsEveryPixel_data()
{
    rows();
}

void TestCorpus::readsEveryPixel()
{
    const Fixture& good = fixture();
    const auto decoder = openDecoder(ByteSource::fromBytes(good.file), m_extension);
    QVERIFY2(decoder, decoder ? "" : qPrintable(decoder.error().text));
    QVERIFY((*decoder)->pageCount() >= good.page);
    const auto header = (*decoder)->header(good.page);
    QVERIFY2(header, header ? "" : qPrintable(header.error().text));
    const CancelFlag goOn{false};
    const auto picture = (*decoder)->decode(good.page, QSize(), goOn);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QVERIFY(picture->isFull());
    QCOMPARE(picture->fullSize, header->size);
    QCOMPARE(picture->bitsPerPixel, header->bitsPerPixel);
    if (!good.expected.size.isEmpty())
        QCOMPARE(firstDifference(rgbaOf(picture->image), good.expected, good.tolerance), QString());
}

void TestCorpus::refusesPagesThatAreNotThere_data()
{
    rows();
}

void TestCorpus::refusesPagesThatAreNotThere()
{
    const auto decoder = openDecoder(ByteSource::fromBytes(fixture().file), m_extension);
    QVERIFY2(decoder, decoder ? "" : qPrintable(decoder.error().text));
    const CancelFlag goOn{false};
    for (const int page : {(*decoder)->pageCount() + 1, 0, -1}) {
        const auto header = (*decoder)->header(page);
        QVERIFY2(!header, qPrintable(QString::number(page)));
        QCOMPARE(header.error().kind, ErrorKind::Damaged);
        const auto picture = (*decoder)->decode(page, QSize(), goOn);
        QVERIFY2(!picture, qPrintable(QString::number(page)));
        QCOMPARE(picture.error().kind, ErrorKind::Damaged);
    }
    QVERIFY((*decoder)->header(1));
}

void TestCorpus::isReadWithoutItsName_data()
{
    rows();
}

/// Content decides: only files without a mark of their own need their name. The codec of the format takes
/// them, and no other.
void TestCorpus::isReadWithoutItsName()
{
    const QByteArray head = fixture().file.left(1024);
    const Codec* wanted = &m_entry.codec();
    QCOMPARE(takerOf(head, m_extension), wanted);
    QCOMPARE(takerOf(head, QStringLiteral("txt")), fixture().marked ? wanted : nullptr);
    QCOMPARE(bool(openDecoder(ByteSource::fromBytes(fixture().file), QStringLiteral("txt"))),
             fixture().marked);
}

int main(int argc, char** argv)
{
    return runForCorpus(argc, argv, [](const CorpusEntry& entry, int rest, char** arguments) {
        TestCorpus test(entry);
        return QTest::qExec(&test, rest, arguments);
    });
}

#include "tst_corpus.moc"
