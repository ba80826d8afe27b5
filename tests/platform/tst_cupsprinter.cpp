// The system printer: which queue it is and what it tells, against a print server of the test's own.
#include "PrintStage.h"

#include <QElapsedTimer>

#include <optional>

using namespace quorvia::platform;
using quorvia::test::inside;
using quorvia::test::Print;
using quorvia::test::PrintStage;
using quorvia::test::quarters;

class TestCupsPrinter : public QObject
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

    void withoutAQueue() { m_stage->assertNone(*systemPrinter()); }

    void facts_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<QSize>("size");
        QTest::newRow("A4") << "A4" << QSize(11906, 16838);
        QTest::newRow("Letter") << "Letter" << QSize(12240, 15840);
    }
    void facts()
    {
        QFETCH(QString, paper);
        QFETCH(QSize, size);
        QVERIFY(m_stage->server().addQueue("Keeper", paper));
        const auto printer = systemPrinter();
        QCOMPARE(printer->deviceName(), QString("Keeper"));
        QCOMPARE(printer->pageSize(), size);
        QCOMPARE(printer->resolution(), 200); // of 150, 200 and 600
        QVERIFY(isUsablePrinter(*printer));
        QCOMPARE(printer->orientation(), PageOrientation::Portrait);
        printer->setOrientation(PageOrientation::Landscape);
        QCOMPARE(printer->orientation(), PageOrientation::Landscape);
        QCOMPARE(printer->pageSize(), size.transposed());
        printer->setOrientation(PageOrientation::Portrait);
        QCOMPARE(printer->pageSize(), size);
    }

    void copiesWithoutAQueue()
    {
        const auto printer = systemPrinter();
        QCOMPARE(printer->copies(), 1);
        printer->setCopies(7);
        printer->setCopies(0);
        printer->setCopies(-3);
        QCOMPARE(printer->copies(), 7);
    }

    void firstCopies_data()
    {
        QTest::addColumn<QByteArray>("options");
        QTest::addColumn<int>("copies");
        QTest::newRow("none") << QByteArray() << 1;
        QTest::newRow("four") << QByteArray("copies=4") << 4;
        QTest::newRow("no number") << QByteArray("copies=many") << 1;
    }
    void firstCopies()
    {
        QFETCH(QByteArray, options);
        QFETCH(int, copies);
        QVERIFY(m_stage->server().addQueue("Keeper"));
        m_stage->home().write(".cups/lpoptions", "Default Keeper " + options + '\n');
        const auto printer = systemPrinter();
        QCOMPARE(printer->copies(), copies);
        printer->setCopies(7);
        QCOMPARE(printer->copies(), 7);
    }

    void theFirstQueueWithoutADefault()
    {
        QVERIFY(m_stage->server().addQueue("Omega") && m_stage->server().addQueue("Alpha", "Letter"));
        const auto printer = systemPrinter();
        QCOMPARE(printer->deviceName(), QString("Alpha"));
        QCOMPARE(printer->pageSize(), QSize(12240, 15840));
    }

    void defaults_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::newRow("of the server") << QByteArray();
        QTest::newRow("PRINTER") << QByteArray("PRINTER");
        QTest::newRow("LPDEST") << QByteArray("LPDEST");
        QTest::newRow("of the user") << QByteArray("HOME");
    }
    void defaults()
    {
        QFETCH(QByteArray, variable);
        QVERIFY(m_stage->server().addQueue("Omega", "Letter") && m_stage->server().addQueue("Alpha"));
        if (variable.isEmpty())
            QVERIFY(m_stage->server().run("lpadmin", {"-d", "Omega"}));
        else if (variable == "HOME")
            m_stage->home().write(".cups/lpoptions", "Default Omega sides=two-sided-long-edge\n");
        else
            qputenv(variable.constData(), "Omega");
        const auto printer = systemPrinter();
        QCOMPARE(printer->deviceName(), QString("Omega"));
        QCOMPARE(printer->pageSize(), QSize(12240, 15840));
        const int before = m_stage->server().count();
        QVERIFY(printer->printPage(quarters({40, 60}), inside(printer->pageSize()), "T", nullptr));
        const Print print = m_stage->server().wait(before);
        QCOMPARE(print.queue, QString("Omega"));
        QCOMPARE(print.options.contains("sides=two-sided-long-edge"), variable == "HOME");
    }

    void thePaperThatTheUserChose_data()
    {
        QTest::addColumn<QByteArray>("choice");
        QTest::addColumn<QSize>("size");
        QTest::newRow("an old name") << QByteArray("media=Letter") << QSize(12240, 15840);
        QTest::newRow("with a tray") << QByteArray("media=Letter,Lower") << QSize(12240, 15840);
        QTest::newRow("a new name") << QByteArray("media=iso_a5_148x210mm") << QSize(8391, 11906);
        QTest::newRow("a driver's name") << QByteArray("PageSize=Letter") << QSize(12240, 15840);
    }
    void thePaperThatTheUserChose()
    {
        QFETCH(QByteArray, choice);
        QFETCH(QSize, size);
        QVERIFY(m_stage->server().addQueue("Keeper", "A4"));
        m_stage->home().write(".cups/lpoptions", "Default Keeper " + choice + '\n');
        const auto printer = systemPrinter();
        QCOMPARE(printer->pageSize(), size);
        const int before = m_stage->server().count();
        QVERIFY(printer->printPage(quarters({40, 60}), inside(size), "T", nullptr));
        const Print print = m_stage->server().wait(before);
        QVERIFY2(print.options.contains(QString::fromLatin1(choice)), qPrintable(print.options.join(' ')));
    }

    void aDefaultThatIsNotThere()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        qputenv("PRINTER", "Gone");
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(systemPrinter()->deviceName(), QString("Keeper"));
        QVERIFY(clock.elapsed() < 5000);
    }

  private:
    std::optional<PrintStage> m_stage;
};

QTEST_MAIN(TestCupsPrinter)
#include "tst_cupsprinter.moc"
