// Print servers that are missing, stopped or broken: a line for the log, and soon.
#include "FailingServer.h"
#include "PrintStage.h"

#include <QElapsedTimer>

#include <csignal>
#include <optional>

using namespace quorvia::platform;
using quorvia::test::Failing;
using quorvia::test::FailingServer;
using quorvia::test::inside;
using quorvia::test::noise;
using quorvia::test::PrintStage;

Q_DECLARE_METATYPE(quorvia::test::Failing)

namespace {

constexpr CupsPatience patience{1000, 1.0};
constexpr qint64 bound = 4000; // milliseconds that a server may cost that does not answer

} // namespace

class TestCupsDown : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_stage.emplace();
        QVERIFY(m_stage->server().isRunning());
    }
    void cleanupTestCase() { m_stage.reset(); }
    void cleanup() { m_stage->reset(); }

    void withoutAServer()
    {
        m_stage->toServer(m_stage->home().path("nothing"));
        QElapsedTimer clock;
        clock.start();
        CupsPrinter printer({60'000, 60.0}); // so that a wait would be told from a slow machine
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
        m_stage->assertNone(printer);
    }

    void aServerThatWentAway()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        m_stage->toServer(m_stage->home().path("nothing"));
        m_stage->assertRefused(*printer, "cannot be reached");
    }

    void aStoppedServer()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        qputenv("PRINTER", "Keeper");
        CupsPrinter printer(patience);
        QCOMPARE(::kill(pid_t(m_stage->server().processId()), SIGSTOP), 0);
        QElapsedTimer clock;
        clock.start();
        m_stage->assertRefused(printer, "Keeper: the print server did not answer");
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
        for (const bool isNamed : {true, false}) {
            if (!isNamed)
                qunsetenv("PRINTER");
            clock.start();
            CupsPrinter none(patience);
            QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
            m_stage->assertNone(none);
        }
    }

    void aServerThatFails_data()
    {
        QTest::addColumn<Failing>("how");
        QTest::addColumn<qint64>("limit"); // the document has 700 KB
        QTest::newRow("stalls at the document") << Failing::Stalls << qint64(100'000);
        QTest::newRow("cuts at the document") << Failing::Cuts << qint64(100'000);
        QTest::newRow("never answers") << Failing::IsMute << qint64(100'000);
        QTest::newRow("stalls at the job") << Failing::Stalls << qint64(0);
        QTest::newRow("cuts at the job") << Failing::Cuts << qint64(0);
    }
    void aServerThatFails()
    {
        QFETCH(Failing, how);
        QFETCH(qint64, limit);
        QVERIFY(m_stage->server().addQueue("Keeper"));
        CupsPrinter printer(patience);
        const QString socket = m_stage->home().path("failing");
        QFile::remove(socket);
        const FailingServer failing(socket.toLocal8Bit(), m_stage->server().socket().toLocal8Bit(), how,
                                    limit);
        QVERIFY(failing.isListening());
        m_stage->toServer(socket);
        QElapsedTimer clock;
        clock.start();
        QString why;
        QVERIFY(!printer.printPage(noise(), inside(printer.pageSize()), "T", &why));
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(failing.hasFailed());
        QCOMPARE(why, QString("Keeper: the print server did not answer"));
    }

  private:
    std::optional<PrintStage> m_stage;
};

QTEST_MAIN(TestCupsDown)
#include "tst_cupsdown.moc"
