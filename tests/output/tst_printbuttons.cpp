// The buttons of the print window and what follows them: copies, fonts, effects and the print itself.
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "PrintBench.h"
#include "support/BenchStage.h"
#include "support/FakePrinter.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QRadioButton>
#include <QTest>

#include <algorithm>
#include <optional>

using namespace quorvia;
using namespace quorvia::test;
namespace setting = app::setting;

class TestPrintButtons : public QObject, private test::BenchStage<test::SettingsHome>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void copies_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("copies");
        QTest::addColumn<bool>("logs");
        QTest::newRow("empty") << "" << 2 << false;
        QTest::newRow("three") << "3" << 3 << false;
        QTest::newRow("none") << "0" << 2 << false;
        QTest::newRow("below") << "-2" << 2 << false;
        QTest::newRow("letters") << "abc" << 2 << true;
        QTest::newRow("too many") << "99999999999" << 2 << false;
    }

    void copies()
    {
        QFETCH(QString, typed);
        QFETCH(int, copies);
        PrintBench bench;
        bench.printer->count = 2;
        platform::TextQuestion asked;
        const platform::TextQuestionAnswerer answerer([&](const platform::TextQuestion& question) {
            asked = question;
            return typed;
        });
        QString said;
        QVERIFY(bench.show([&] {
            bench.button("lSelectPrinter").click();
            said = bench.device();
        }));
        QCOMPARE(asked.title, QStringLiteral("Printer Copies"));
        QCOMPARE(asked.text, QStringLiteral("Enter number of copies:"));
        QCOMPARE(asked.answer, QStringLiteral("2"));
        QCOMPARE(bench.printer->count, copies);
        // It was made while there was one copy, and an empty answer leaves everything.
        QCOMPARE(said, QStringLiteral("  Office   Copies: %1").arg(typed.isEmpty() ? 1 : copies));
        QTEST(logText().contains("Not a number of copies: abc"), "logs");
    }

    void fonts_data()
    {
        QTest::addColumn<bool>("accepts");
        QTest::newRow("accepted") << true;
        QTest::newRow("cancelled") << false;
    }

    void fonts()
    {
        QFETCH(bool, accepts);
        const PrintBench bench;
        platform::FontQuestion asked;
        const platform::FontAnswerer answerer([&](const platform::FontQuestion& question) {
            asked = question;
            QFont font(QStringLiteral("DejaVu Serif"), 30, QFont::Bold, true);
            font.setUnderline(true);
            return accepts ? std::optional<platform::ColoredFont>({font, Qt::blue}) : std::nullopt;
        });
        quint64 compositions = 0;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            bench.button("lFont").click();
            compositions = bench.composed() - before;
        }));
        QCOMPARE(asked.start.font.pointSize(), 12);
        QCOMPARE(compositions, quint64(accepts ? 1 : 0));
        QCOMPARE(app::read(setting::PrintFontName, QString()), accepts ? "DejaVu Serif" : "Verdana");
        QCOMPARE(app::read(setting::PrintFontSize, QString()), QString::number(accepts ? 30 : 12));
        QCOMPARE(app::read(setting::PrintFontBold, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontItalic, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontUnderline, 9), int(accepts));
        QCOMPARE(app::read(setting::PrintFontStrike, 9), 0);
        QCOMPARE(app::read(setting::PrintFontColor, 9), accepts ? 0xff0000 : 0);
    }

    void printing_data()
    {
        QTest::addColumn<bool>("landscape");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QRect>("target");
        QTest::addColumn<QString>("job");
        QTest::newRow("upright") << false << "" << QRect(550, 550, 10806, 15738) << "dune.jpg";
        QTest::newRow("lying, with a title") << true << "Sand" << QRect(550, 550, 15738, 10806) << "Sand";
    }

    void printing()
    {
        QFETCH(bool, landscape);
        QFETCH(QString, title);
        PrintBench bench;
        bench.printer->count = 4;
        bool waits = false;
        bench.printer->meanwhile = [&] {
            waits =
                QApplication::overrideCursor() && QApplication::overrideCursor()->shape() == Qt::WaitCursor;
            bench.button("lAccept").click(); // once more
            QTest::keyClick(bench.window, Qt::Key_Escape);
        };
        bool isOpen = true;
        QVERIFY(bench.show([&] {
            if (landscape)
                bench.part<QRadioButton>("oLayout1").click();
            bench.box("txtTitle").setText(title);
            bench.button("lAccept").click();
            isOpen = bench.window->isVisible();
        }));
        QVERIFY(!isOpen && waits && !QApplication::overrideCursor());
        QCOMPARE(bench.printer->jobs.size(), size_t(1));
        const test::FakePrinter::Job& job = bench.printer->jobs.front();
        QTEST(job.target, "target");
        QTEST(job.title, "job");
        QCOMPARE(job.copies, 4);
        QCOMPARE(job.picture, bench.window->page().page());
        QCOMPARE(bench.window->result(), int(QDialog::Accepted));
        QVERIFY(!logText().contains("Not printed"));
    }

    void aTitleThatWasTypedJustNowIsPrinted()
    {
        const PrintBench bench;
        bool wasWaiting = false;
        QVERIFY(bench.show([&] {
            bench.part<QRadioButton>("oA2").click(); // at the top, below the title
            bench.box("txtTitle").setText(QStringLiteral("HHHH"));
            wasWaiting = bench.part<QTimer>("tUpdate").isActive();
            bench.button("lAccept").click();
        }));
        QVERIFY(wasWaiting);
        const QImage page = bench.printer->jobs.at(0).picture;
        QCOMPARE(page.pixel(0, 5), white); // the picture has moved down
        bool isInked = false;
        for (int x = 0; x < page.width(); ++x)
            isInked = isInked || qRed(page.pixel(x, 12)) < 100;
        QVERIFY(isInked);
        QVERIFY(!bench.part<QTimer>("tUpdate").isActive());
    }

    void aFailureIsLoggedAndTheWindowCloses()
    {
        PrintBench bench;
        bench.printer->failure = QStringLiteral("no paper");
        QVERIFY(bench.show([&] { bench.button("lAccept").click(); }));
        QVERIFY(!bench.window->isVisible());
        QVERIFY(logText().contains("Not printed: no paper"));
        QCOMPARE(logText().count(u'\n'), 1);
    }

    void aPrinterWithoutPaper()
    {
        PrintBench bench;
        bench.printer->paper = {};
        QVERIFY(bench.show([&] { bench.button("lAccept").click(); }));
        QVERIFY(bench.printer->jobs.empty());
        QVERIFY(logText().contains("Not printed: there is no page"));
    }

    void enterInABoxDoesNotPrint()
    {
        const PrintBench bench;
        bool isOpen = false;
        QVERIFY(bench.show([&] {
            for (const char* name : {"txtTitle", "txtLeft"}) {
                bench.box(name).setFocus();
                QTest::keyClick(&bench.box(name), Qt::Key_Return);
            }
            isOpen = bench.window->isVisible();
        }));
        QVERIFY(isOpen && bench.printer->jobs.empty());
    }

    void theKeyboardReachesTheButtons_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("enter") << int(Qt::Key_Return);
        QTest::newRow("blank") << int(Qt::Key_Space);
    }

    void theKeyboardReachesTheButtons()
    {
        QFETCH(int, key);
        const PrintBench bench;
        bool reached = false;
        QVERIFY(bench.show([&] {
            QWidget* const accept = &bench.button("lAccept");
            for (int i = 0; i < 40 && !accept->hasFocus(); ++i) {
                if (QWidget* const focus = QApplication::focusWidget())
                    QTest::keyClick(focus, Qt::Key_Tab);
            }
            reached = accept->hasFocus();
            QTest::keyClick(accept, Qt::Key(key));
        }));
        QVERIFY(reached);
        QCOMPARE(bench.printer->jobs.size(), size_t(1));
    }

    void theEffectsAreAMenu()
    {
        const PrintBench bench;
        bool isShown = false;
        bool isChecked = false;
        QRgb shadow = 0;
        QVERIFY(bench.show([&] {
            bench.button("FXButton").click();
            QMenu& menu = bench.part<QMenu>("FXFeatures");
            isShown = menu.isVisible();
            QTest::mouseClick(&menu, Qt::LeftButton, {},
                              menu.actionGeometry(&bench.part<QAction>("mnuShadow")).center());
            isChecked = bench.part<QAction>("mnuShadow").isChecked();
            bench.area(2).click();
            shadow = bench.window->page().page().pixel(303, 227); // just outside of 300 x 225
        }));
        QVERIFY(isShown && isChecked);
        QCOMPARE(shadow, qRgb(0x40, 0x40, 0x40));
    }
};

QTEST_MAIN(TestPrintButtons)
#include "tst_printbuttons.moc"
