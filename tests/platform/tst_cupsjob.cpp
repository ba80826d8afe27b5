// Pages printed to a print server of the test's own, whose queues keep them.
#include "../support/FullDisk.h"
#include "PrintStage.h"

#include <optional>

using namespace quorvia::platform;
using quorvia::test::inside;
using quorvia::test::noise;
using quorvia::test::Print;
using quorvia::test::PrintStage;
using quorvia::test::quarters;

Q_DECLARE_METATYPE(quorvia::platform::PageOrientation)

namespace {

/// Whether two colours are the same but for the edges that a renderer smooths.
bool alike(QRgb one, QRgb other)
{
    constexpr int tolerance = 2;
    return qAbs(qRed(one) - qRed(other)) <= tolerance && qAbs(qGreen(one) - qGreen(other)) <= tolerance &&
           qAbs(qBlue(one) - qBlue(other)) <= tolerance;
}

} // namespace

class TestCupsJob : public QObject
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
        QVERIFY(m_stage->server().addQueue("Keeper", paper));
        const auto printer = systemPrinter();
        printer->setOrientation(orientation);
        printer->setCopies(copies);
        const QSize paperSize = printer->pageSize();
        const QRect target = inside(paperSize);
        const int before = m_stage->server().count();
        QString why = "untouched";
        QVERIFY2(printer->printPage(quarters(target.size() / 10), target, QStringLiteral("Ein Käfer"), &why),
                 qPrintable(why));
        QCOMPARE(why, QString("untouched"));

        const Print print = m_stage->server().wait(before);
        QCOMPARE(print.queue, QString("Keeper"));
        QCOMPARE(print.copies, copies);
        QCOMPARE(print.title, QStringLiteral("Ein Käfer"));
        QVERIFY2(print.options.contains("print-color-mode=color"), qPrintable(print.options.join(' ')));
        QVERIFY2(print.options.contains("print-scaling=none"), qPrintable(print.options.join(' ')));
        QVERIFY2(!print.options.contains("ColorModel=Gray"), qPrintable(print.options.join(' ')));
        const QString media = paper == "A4" ? "media=iso_a4_210x297mm" : "media=na_letter_8.5x11in";
        QVERIFY2(print.options.contains(media), qPrintable(print.options.join(' ')));
        assertShown(m_stage->server().page(print, 144), paperSize, target);
        QCOMPARE(m_stage->server().count(), before + 1);
    }

    void twoPagesOfOnePrinter()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        const QRect target = inside(printer->pageSize());
        for (const char* title : {"First", "Second"}) {
            const int before = m_stage->server().count();
            QVERIFY(printer->printPage(quarters({40, 60}), target, title, nullptr));
            QCOMPARE(m_stage->server().wait(before).title, QString(title));
        }
    }

    void aTitleOfAnyLength()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        const QString letter(QChar(0x5716));
        const int before = m_stage->server().count();
        QString why;
        QVERIFY2(printer->printPage(quarters({40, 60}), inside(printer->pageSize()), letter.repeated(32'767),
                                    &why),
                 qPrintable(why));
        QCOMPARE(m_stage->server().wait(before).title, letter.repeated(85));
    }

    void theOptionsOfTheUser_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<bool>("kept");
        for (const char* option :
             {"orientation-requested=4", "landscape=true", "number-up=4", "number-up-layout=btlr",
              "page-ranges=2", "page-set=even", "fit-to-page=true", "fitplot=true", "scaling=50",
              "natural-scaling=50", "ppi=10", "mirror=true", "position=top-left", "page-border=double",
              "page-left=72", "page-right=72", "page-top=72", "page-bottom=72"})
            QTest::newRow(option) << option << false;
        for (const char* option : {"sides=two-sided-long-edge", "InputSlot=Lower", "media-source=tray-2",
                                   "print-quality=5", "media-type=stationery"})
            QTest::newRow(option) << option << true;
    }
    void theOptionsOfTheUser()
    {
        QFETCH(QString, option);
        QFETCH(bool, kept);
        QVERIFY(m_stage->server().addQueue("Keeper"));
        m_stage->home().write(".cups/lpoptions",
                              "Default Keeper " + option.toLatin1() + " print-scaling=fill copies=2\n");
        const auto printer = systemPrinter();
        const int before = m_stage->server().count();
        QString why;
        QVERIFY2(printer->printPage(quarters({40, 60}), inside(printer->pageSize()), "T", &why),
                 qPrintable(why));
        const Print print = m_stage->server().wait(before);
        const QString said = print.options.join(' ');
        const QString name = option.section('=', 0, 0);
        const bool isSaid = !print.options.filter(QRegularExpression("^(no)?" + name + "(=|$)")).isEmpty();
        QVERIFY2(isSaid == kept, qPrintable(said));
        QVERIFY2(print.options.contains("print-scaling=none"), qPrintable(said));
        QCOMPARE(print.options.filter("print-scaling").size(), 1);
        QCOMPARE(print.copies, 2);
    }

    void aQueueThatRejects()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        QVERIFY(m_stage->server().run("cupsreject", {"Keeper"}));
        m_stage->assertRefused(*systemPrinter(), "not accepting");
    }

    void aQueueThatVanished()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        QVERIFY(m_stage->server().run("lpadmin", {"-x", "Keeper"}));
        m_stage->assertRefused(*printer, "does not exist");
    }

    void noSpaceForThePage()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        std::signal(SIGXFSZ, SIG_IGN); // as the program does
        const QImage picture = noise();
        const int before = m_stage->server().count();
        QString why;
        bool isPrinted = true;
        {
            const quorvia::test::FullDisk full(1000);
            isPrinted = printer->printPage(picture, inside(printer->pageSize()), "T", &why);
        }
        QVERIFY(!isPrinted);
        QVERIFY2(why.startsWith("the page cannot be written: "), qPrintable(why));
        QCOMPARE(m_stage->server().count(), before);
    }

    void noPlaceForThePage()
    {
        QVERIFY(m_stage->server().addQueue("Keeper"));
        const auto printer = systemPrinter();
        qputenv("TMPDIR", "/proc"); // where nobody may make a file
        QString why;
        QVERIFY(!printer->printPage(quarters({40, 60}), inside(printer->pageSize()), "T", &why));
        QVERIFY2(why.startsWith("no file for the page: "), qPrintable(why));
    }

  private:
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

    std::optional<PrintStage> m_stage;
};

QTEST_MAIN(TestCupsJob)
#include "tst_cupsjob.moc"
