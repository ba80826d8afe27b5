// Five hundred broken children of one format's good files: tst_brokencorpus FORMAT. Each must come to an
// end in bounded time and memory, with a picture or an error. A watchdog ends the program when one does not,
// and names the child: the same seed makes it again.
#include "corpus/Corpus.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "Mutator.h"
#include "Watchdog.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

constexpr int childCount = 500;
constexpr qint64 pictureBudget = qint64(64) << 20; // bytes of one decoded picture
constexpr qint64 memoryCap = qint64(512) << 20;    // bytes of growth for one child, whatever it promises

} // namespace

class TestBrokenCorpus : public QObject
{
    Q_OBJECT

  public:
    explicit TestBrokenCorpus(const CorpusEntry& entry) : m_entry(entry), m_extension(fileExtension(entry)) {}

  private Q_SLOTS:
    void initTestCase() { m_fixtures = m_entry.make(); }
    void childrenAreHarmless();

  private:
    const CorpusEntry& m_entry;
    const QString m_extension;
    std::vector<Fixture> m_fixtures;
};

void TestBrokenCorpus::childrenAreHarmless()
{
    QVERIFY(!m_fixtures.empty());
    Limits::setMachineBytes(pictureBudget);
    Watchdog watchdog;
    int shown = 0; // children that gave a picture
    for (int child = 0; child < childCount; ++child) {
        const QByteArray& parent = m_fixtures[size_t(child) % m_fixtures.size()].file;
        const QByteArray bytes = Mutator(parent, quint32(child)).next();
        watchdog.begin(QStringLiteral("the child of seed %1").arg(child));
        QString fault;
        int pictures = 0;
        const qint64 grown = peakGrowth([&] { fault = misbehaviour(m_extension, bytes, &pictures); });
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(child).arg(fault)));
        QVERIFY2(grown >= 0, "the system does not tell the memory in use");
        QVERIFY2(grown < memoryCap, qPrintable(QStringLiteral("seed %1: %2 bytes").arg(child).arg(grown)));
        shown += pictures > 0 ? 1 : 0;
    }
    // Were all refused at the door, nothing behind it would have been tried.
    // The library for JPEG XL gives nothing at all for most of them.
    const int least = m_extension == QLatin1String("jxl") ? childCount / 50 : childCount / 10;
    QVERIFY2(shown > least, qPrintable(QString::number(shown)));
}

int main(int argc, char** argv)
{
    return runForCorpus(argc, argv, [](const CorpusEntry& entry, int rest, char** arguments) {
        TestBrokenCorpus test(entry);
        return QTest::qExec(&test, rest, arguments);
    });
}

#include "tst_brokencorpus.moc"
