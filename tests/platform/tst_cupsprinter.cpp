// The system printer, against a print server of the test's own whose queues keep what they print.
#include "../support/FullDisk.h"
#include "../support/PrintServer.h"
#include "../support/ScratchHome.h"
#include "FailingServer.h"
#include "platform/CupsPrinter.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QtTest>

#include <csignal>
#include <optional>

using namespace quorvia::platform;
using quorvia::test::Failing;
using quorvia::test::FailingServer;
using quorvia::test::Print;

Q_DECLARE_METATYPE(quorvia::test::Failing)
Q_DECLARE_METATYPE(quorvia::platform::PageOrientation)

namespace {

constexpr int margin = 550;      // twips
constexpr qint64 bound = 10'000; // milliseconds that a server may cost that does not answer

/// Four colours, so that each turn and mirror image would show.
QImage quarters(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const QSize half = size / 2;
    painter.fillRect(image.rect(), Qt::yellow);
    painter.fillRect(QRect(QPoint(), half), Qt::red);
    painter.fillRect(half.width(), 0, size.width(), half.height(), Qt::blue);
    painter.fillRect(0, half.height(), half.width(), size.height(), Qt::green);
    return image;
}

/// Nothing that could be compressed.
QImage noise()
{
    QImage image(400, 600, QImage::Format_RGB32);
    quint32 value = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            value = value * 1664525U + 1013904223U;
            image.setPixel(x, y, value >> 8U);
        }
    }
    return image;
}

QRect inside(const QSize& page)
{
    return QRect(QPoint(), page).adjusted(margin, margin, -margin, -margin);
}

/// Whether two colours are the same but for the edges that a renderer smooths.
bool alike(QRgb one, QRgb other)
{
    constexpr int tolerance = 2;
    return qAbs(qRed(one) - qRed(other)) <= tolerance && qAbs(qGreen(one) - qGreen(other)) <= tolerance &&
           qAbs(qBlue(one) - qBlue(other)) <= tolerance;
}

} // namespace

class TestCupsPrinter : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_server.emplace();
        QVERIFY(m_server->isRunning());
    }
    void cleanupTestCase() { m_server.reset(); }

    void cleanup()
    {
        ::kill(pid_t(m_server->processId()), SIGCONT);
        toServer(m_server->socket());
        qunsetenv("PRINTER");
        qunsetenv("LPDEST");
        qunsetenv("TMPDIR");
        QFile::remove(m_home.path(".cups/lpoptions"));
        for (const char* queue : {"Alpha", "Keeper", "Omega"})
            m_server->run("lpadmin", {"-x", queue});
    }

    void withoutAServer()
    {
        toServer(m_home.path("nothing"));
        QElapsedTimer clock;
        clock.start();
        const auto printer = systemPrinter();
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        assertNone(*printer);
    }

    void withoutAQueue() { assertNone(*systemPrinter()); }

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
        QVERIFY(m_server->addQueue("Keeper", paper));
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

    void copiesAreCounted()
    {
        const auto printer = systemPrinter();
        QCOMPARE(printer->copies(), 1);
        printer->setCopies(7);
        printer->setCopies(0);
        printer->setCopies(-3);
        QCOMPARE(printer->copies(), 7);
    }

    void prints_data()
    {
        QTest::addColumn<QString>("paper");
        QTest::addColumn<PageOrientation>("orientation");
        QTest::addColumn<int>("copies");
        QTest::newRow("A4 portrait") << "A4" << PageOrientation::Portrait << 1;
        QTest::newRow("A4 landscape") << "A4" << PageOrientation::Landscape << 1;
        QTest::newRow("Letter portrait, three copies") << "Letter" << PageOrientation::Portrait << 3;
    }
    void prints()
    {
        QFETCH(QString, paper);
        QFETCH(PageOrientation, orientation);
        QFETCH(int, copies);
        QVERIFY(m_server->addQueue("Keeper", paper));
        const auto printer = systemPrinter();
        printer->setOrientation(orientation);
        printer->setCopies(copies);
        const QSize paperSize = printer->pageSize();
        const QRect target = inside(paperSize);
        const int before = m_server->count();
        QString why = "untouched";
        QVERIFY2(printer->printPage(quarters(target.size() / 10), target, QStringLiteral("Ein Käfer"), &why),
                 qPrintable(why));
        QCOMPARE(why, QString("untouched"));

        const Print print = m_server->wait(before);
        QCOMPARE(print.queue, QString("Keeper"));
        QCOMPARE(print.copies, copies);
        QCOMPARE(print.title, QStringLiteral("Ein Käfer"));
        QVERIFY2(print.options.contains("print-color-mode=color"), qPrintable(print.options.join(' ')));
        QVERIFY2(!print.options.contains("ColorModel=Gray"), qPrintable(print.options.join(' ')));
        const QString media = paper == "A4" ? "media=iso_a4_210x297mm" : "media=na_letter_8.5x11in";
        QVERIFY2(print.options.contains(media), qPrintable(print.options.join(' ')));
        assertShown(m_server->page(print, 144), paperSize, target);
        QCOMPARE(m_server->count(), before + 1);
    }

    void twoPagesOfOnePrinter()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        const QRect target = inside(printer->pageSize());
        for (const char* title : {"First", "Second"}) {
            const int before = m_server->count();
            QVERIFY(printer->printPage(quarters({40, 60}), target, title, nullptr));
            QCOMPARE(m_server->wait(before).title, QString(title));
        }
    }

    void theFirstQueueWithoutADefault()
    {
        QVERIFY(m_server->addQueue("Omega") && m_server->addQueue("Alpha", "Letter"));
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
        QVERIFY(m_server->addQueue("Omega", "Letter") && m_server->addQueue("Alpha"));
        if (variable.isEmpty())
            QVERIFY(m_server->run("lpadmin", {"-d", "Omega"}));
        else if (variable == "HOME")
            m_home.write(".cups/lpoptions", "Default Omega sides=two-sided-long-edge\n");
        else
            qputenv(variable.constData(), "Omega");
        const auto printer = systemPrinter();
        QCOMPARE(printer->deviceName(), QString("Omega"));
        QCOMPARE(printer->pageSize(), QSize(12240, 15840));
        const int before = m_server->count();
        QVERIFY(printer->printPage(quarters({40, 60}), inside(printer->pageSize()), "T", nullptr));
        const Print print = m_server->wait(before);
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
        QVERIFY(m_server->addQueue("Keeper", "A4"));
        m_home.write(".cups/lpoptions", "Default Keeper " + choice + '\n');
        const auto printer = systemPrinter();
        QCOMPARE(printer->pageSize(), size);
        const int before = m_server->count();
        QVERIFY(printer->printPage(quarters({40, 60}), inside(size), "T", nullptr));
        const Print print = m_server->wait(before);
        QVERIFY2(print.options.contains(QString::fromLatin1(choice)), qPrintable(print.options.join(' ')));
    }

    void aDefaultThatIsNotThere()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        qputenv("PRINTER", "Gone");
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(systemPrinter()->deviceName(), QString("Keeper"));
        QVERIFY(clock.elapsed() < bound);
    }

    void aQueueThatRejects()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        QVERIFY(m_server->run("cupsreject", {"Keeper"}));
        assertRefused(*systemPrinter(), "not accepting");
    }

    void aQueueThatVanished()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        QVERIFY(m_server->run("lpadmin", {"-x", "Keeper"}));
        assertRefused(*printer, "does not exist");
    }

    void aServerThatWentAway()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        toServer(m_home.path("nothing"));
        assertRefused(*printer, "cannot be reached");
    }

    void aStoppedServer()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        qputenv("PRINTER", "Keeper");
        const auto printer = systemPrinter();
        QCOMPARE(::kill(pid_t(m_server->processId()), SIGSTOP), 0);
        QElapsedTimer clock;
        clock.start();
        assertRefused(*printer, "");
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
        clock.start();
        assertNone(*systemPrinter());
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
        qunsetenv("PRINTER");
        clock.start();
        assertNone(*systemPrinter());
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
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
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        const QString socket = m_home.path("failing");
        QFile::remove(socket);
        const FailingServer failing(socket.toLocal8Bit(), m_server->socket().toLocal8Bit(), how, limit);
        QVERIFY(failing.isListening());
        toServer(socket);
        QElapsedTimer clock;
        clock.start();
        QString why;
        QVERIFY(!printer->printPage(noise(), inside(printer->pageSize()), "T", &why));
        QVERIFY2(clock.elapsed() < bound, qPrintable(QString::number(clock.elapsed())));
        QVERIFY(failing.hasFailed());
        QVERIFY2(why.startsWith("Keeper: ") && why.size() > 12, qPrintable(why));
    }

    void noSpaceForThePage()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        std::signal(SIGXFSZ, SIG_IGN); // as the program does
        const QImage picture = noise();
        const int before = m_server->count();
        QString why;
        bool isPrinted = true;
        {
            const quorvia::test::FullDisk full(1000);
            isPrinted = printer->printPage(picture, inside(printer->pageSize()), "T", &why);
        }
        QVERIFY(!isPrinted);
        QVERIFY2(why.startsWith("the page cannot be written: "), qPrintable(why));
        QCOMPARE(m_server->count(), before);
    }

    void noPlaceForThePage()
    {
        QVERIFY(m_server->addQueue("Keeper"));
        const auto printer = systemPrinter();
        qputenv("TMPDIR", "/proc"); // where nobody may make a file
        QString why;
        QVERIFY(!printer->printPage(quarters({40, 60}), inside(printer->pageSize()), "T", &why));
        QVERIFY2(why.startsWith("no file for the page: "), qPrintable(why));
    }

  private:
    static void toServer(const QString& socket)
    {
        qputenv("CUPS_SERVER", socket.toLocal8Bit());
        cupsSetServer(nullptr); // or it goes on with the one it knows
    }

    static void assertNone(Printer& printer)
    {
        QCOMPARE(printer.deviceName(), QString());
        QVERIFY(!printer.pageSize().isValid() || printer.pageSize().isEmpty());
        QVERIFY(printer.resolution() > 0);
        QVERIFY(!isUsablePrinter(printer));
        QString why;
        QVERIFY(!printer.printPage(quarters({40, 60}), {0, 0, 1000, 1000}, "T", &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!printer.printPage(quarters({40, 60}), {0, 0, 1000, 1000}, "T", nullptr));
    }

    /// Printing fails, with a line that begins with the queue's name and holds `reason`.
    void assertRefused(Printer& printer, const QString& reason)
    {
        const int before = m_server->count();
        QString why;
        QVERIFY(!printer.printPage(quarters({40, 60}), inside(printer.pageSize()), "T", &why));
        QVERIFY2(why.startsWith("Keeper: ") && why.size() > 12 && !why.contains('\n'), qPrintable(why));
        QVERIFY2(why.contains(reason), qPrintable(why));
        QCOMPARE(m_server->count(), before);
    }

    static void assertShown(const QImage& page, const QSize& paper, const QRect& target)
    {
        const double scale = 144 / 1440.0;
        QVERIFY2(qAbs(page.width() - paper.width() * scale) < 2 &&
                     qAbs(page.height() - paper.height() * scale) < 2,
                 qPrintable(QString("%1 x %2").arg(page.width()).arg(page.height())));
        const QRect shown(qRound(target.x() * scale), qRound(target.y() * scale),
                          qRound(target.width() * scale), qRound(target.height() * scale));
        const QImage wanted = quarters(shown.size());
        constexpr int edge = 2;
        int compared = 0;
        for (int y = 0; y < page.height(); ++y) {
            for (int x = 0; x < page.width(); ++x) {
                const QPoint at = QPoint(x, y) - shown.topLeft();
                const bool nearEdge = qMin(qAbs(at.x()), qAbs(at.x() - shown.width())) <= edge ||
                                      qMin(qAbs(at.y()), qAbs(at.y() - shown.height())) <= edge ||
                                      qAbs(at.x() - shown.width() / 2) <= edge ||
                                      qAbs(at.y() - shown.height() / 2) <= edge;
                if (nearEdge)
                    continue;
                const QRgb colour = wanted.valid(at) ? wanted.pixel(at) : qRgb(255, 255, 255);
                QVERIFY2(alike(page.pixel(x, y), colour),
                         qPrintable(QString("%1, %2: %3").arg(x).arg(y).arg(page.pixel(x, y), 0, 16)));
                ++compared;
            }
        }
        QVERIFY(compared > page.width() * page.height() * 9 / 10);
    }

    quorvia::test::ScratchHome m_home;
    std::optional<quorvia::test::PrintServer> m_server;
};

QTEST_MAIN(TestCupsPrinter)
#include "tst_cupsprinter.moc"
