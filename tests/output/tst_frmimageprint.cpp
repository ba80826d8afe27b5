// The print window, driven as a user does.
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "controls/ScrollBar.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "PrintBench.h"
#include "support/BenchStage.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QRadioButton>
#include <QTest>

#include <algorithm>

using namespace quorvia;
using namespace quorvia::test;
using controls::ScrollBar;
using platform::PageOrientation;
namespace setting = app::setting;

class TestFrmImagePrint : public QObject, private test::BenchStage<test::SettingsHome>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void whatItShowsFirst()
    {
        const PrintBench bench;
        QStringList texts;
        QVERIFY(bench.show([&] {
            texts << bench.window->windowTitle() << bench.boxes()
                  << bench.part<QComboBox>("cboTitle").currentText()
                  << bench.part<QComboBox>("cboZoom").currentText() << bench.part<QLabel>("lPage").text()
                  << bench.device();
            for (int line = 0; line < 6; ++line)
                texts << bench.area(line).text();
            for (const char* name : {"lAccept", "lClose", "lFont", "lSelectPrinter", "FXButton"})
                texts << bench.button(name).text();
            for (const QAction* item : bench.part<QMenu>("FXFeatures").actions())
                texts << item->text();
        }));
        QCOMPARE(texts, (QStringList{"Print Image",
                                     "0 0 400 300",
                                     "Center",
                                     "50%",
                                     bench.pageSaid(10806, 15738),
                                     "  Office   Copies: 1",
                                     "Center Image and Resize",
                                     "Align Top-Center and Resize",
                                     "Align Top-Left and Resize",
                                     "Align Top-Left (Without Rezize)",
                                     "Custom Alignment",
                                     "Center Image (Without Resize)",
                                     "Print",
                                     "Close",
                                     "Font...",
                                     "Copies...",
                                     "FX Features >",
                                     "Shadow",
                                     "Light Frame",
                                     "Normal Frame",
                                     "Circle Corners",
                                     "Square Corners",
                                     "Tile Image",
                                     "Image Trail"}));
        QVERIFY(bench.printer->jobs.empty());
    }

    void everyControlHasANameThatCanBeSaid()
    {
        const PrintBench bench;
        QStringList silent;
        QVERIFY(bench.show([&] {
            for (const QWidget* part : bench.window->findChildren<QWidget*>()) {
                const bool isOwn = !part->objectName().isEmpty() && !part->objectName().startsWith("qt_");
                const bool isInside = qobject_cast<const ScrollBar*>(part->parentWidget()) ||
                                      part->parentWidget()->objectName() == "pScroll";
                const bool isOfTheToolkit = qobject_cast<QComboBox*>(part->parentWidget());
                if (isOwn && !isInside && !isOfTheToolkit && part->accessibleName().isEmpty())
                    silent << part->objectName();
            }
        }));
        QCOMPARE(silent, QStringList());
    }

    void oneCompositionAtTheStart()
    {
        const PrintBench bench;
        QCOMPARE(bench.composed(), quint64(0));
        quint64 composed = 0;
        QVERIFY(bench.show([&] { composed = bench.composed(); }));
        QCOMPARE(composed, quint64(1));
    }

    void everyControlComposes_data()
    {
        using Act = std::function<void(const PrintBench&)>;
        QTest::addColumn<Act>("act");
        QTest::addColumn<int>("compositions");
        const auto row = [](const char* name, const Act& act, int compositions = 1) {
            QTest::newRow(name) << act << compositions;
        };
        row("title's place", [](const PrintBench& b) { b.part<QComboBox>("cboTitle").setCurrentIndex(2); });
        row("file name", [](const PrintBench& b) { b.part<QCheckBox>("chkFilename").click(); });
        row("path", [](const PrintBench& b) { b.part<QCheckBox>("chkPath").click(); });
        row("landscape", [](const PrintBench& b) { b.part<QRadioButton>("oLayout1").click(); });
        row(
            "landscape and back",
            [](const PrintBench& b) {
                b.part<QRadioButton>("oLayout1").click();
                b.part<QRadioButton>("oLayout0").click();
            },
            2);
        for (int line = 1; line < 6; ++line) {
            const QByteArray name = "area " + QByteArray::number(line);
            row(name.constData(), [line](const PrintBench& b) { b.area(line).click(); });
        }
        row(
            "the same area", [](const PrintBench& b) { b.area(0).click(); }, 0);
        for (const char* name :
             {"mnuShadow", "mnuLFrame", "mnuFrame", "mnuCircle", "mnuSquare", "mnuTile", "mnuTrail"})
            row(name, [name](const PrintBench& b) { b.part<QAction>(name).trigger(); });
        row(
            "zoom", [](const PrintBench& b) { b.part<QComboBox>("cboZoom").setCurrentIndex(0); }, 0);
        row(
            "a box that is not used", [](const PrintBench& b) { b.box("txtLeft").setText("20"); }, 0);
        row(
            "no change", [](const PrintBench& b) { b.window->UpdatePage(); }, 0);
        const auto custom = [](const char* name, const char* text) {
            return [name, text](const PrintBench& b) {
                b.area(4).click();
                b.box(name).setText(QLatin1String(text));
            };
        };
        row("left", custom("txtLeft", "20"), 2);
        row("top", custom("txtTop", "20"), 2);
        row("width", custom("txtWidth", "20"), 2);
        row("height", custom("txtHeight", "20"), 2);
        row("letters", custom("txtWidth", "abc"), 2); // 0: nothing is painted
        row("too low", custom("txtTop", "-1000"), 1);
        row("an emptied box", custom("txtWidth", ""), 1);
        row(
            "closing and opening the window", [](const PrintBench& b) { b.window->resize(1000, 700); }, 0);
    }

    void everyControlComposes()
    {
        QFETCH(std::function<void(const PrintBench&)>, act);
        const PrintBench bench;
        int compositions = -1;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            act(bench);
            compositions = int(bench.composed() - before);
        }));
        QTEST(compositions, "compositions");
    }

    void lettersInABoxPaintNothing()
    {
        const PrintBench bench;
        QRgb usual = 0;
        QRgb lettered = 0;
        QString boxes;
        QVERIFY(bench.show([&] {
            bench.area(4).click();
            usual = bench.window->page().page().pixel(20, 20);
            type(bench.box("txtWidth"), "abc");
            lettered = bench.window->page().page().pixel(20, 20);
            bench.box("txtHeight").clear();
            bench.area(0).click();
            boxes = bench.boxes();
        }));
        QCOMPARE(usual, red);
        QCOMPARE(lettered, white);
        QCOMPARE(boxes, QStringLiteral("0 0 abc 300")); // the emptied one is filled at the next composition
    }

    void aTitleWaitsForTheTimer()
    {
        const PrintBench bench;
        quint64 before = 0;
        quint64 typed = 0;
        bool composedOnce = false;
        QVERIFY(bench.show([&] {
            before = bench.composed();
            type(bench.box("txtTitle"), "Dune");
            typed = bench.composed();
            composedOnce = QTest::qWaitFor([&] { return bench.composed() == before + 1; }, 3000) &&
                           !bench.part<QTimer>("tUpdate").isActive();
        }));
        QCOMPARE(typed, before);
        QVERIFY(composedOnce);
        QCOMPARE(bench.part<QTimer>("tUpdate").interval(), 500);
    }

    void captions()
    {
        const PrintBench bench;
        QStringList captions;
        QVERIFY(bench.show([&] {
            bench.part<QCheckBox>("chkPath").click();
            captions << bench.window->windowTitle();
            bench.part<QCheckBox>("chkPath").click();
            captions << bench.window->windowTitle();
        }));
        QCOMPARE(captions, (QStringList{"Print Image: dune.jpg", "Print Image: dune.jpg"}));
    }

    void orientations()
    {
        const PrintBench bench;
        QStringList seen;
        QVERIFY(bench.show([&] {
            const auto see = [&] {
                const QSize page = bench.window->page().page().size();
                const QSize preview = bench.part("pPreview").size();
                seen << QStringLiteral("%1 %2 %3")
                            .arg(int(bench.printer->turned))
                            .arg(page.width() > page.height())
                            .arg(preview.width() > preview.height());
            };
            see();
            bench.part<QRadioButton>("oLayout1").click();
            see();
            seen << bench.part<QLabel>("lPage").text();
            bench.part<QRadioButton>("oLayout0").click();
            see();
        }));
        QCOMPARE(seen, (QStringList{"1 0 0", "2 1 1", bench.pageSaid(15738, 10806), "1 0 0"}));
    }

    void settingsAreReadAndWritten_data()
    {
        QTest::addColumn<std::function<void(const PrintBench&)>>("close");
        using Act = std::function<void(const PrintBench&)>;
        QTest::newRow("button") << Act([](const PrintBench& b) { b.button("lClose").click(); });
        QTest::newRow("escape") << Act(
            [](const PrintBench& b) { QTest::keyClick(b.window, Qt::Key_Escape); });
        QTest::newRow("window") << Act([](const PrintBench& b) { b.window->close(); });
        QTest::newRow("print") << Act([](const PrintBench& b) { b.button("lAccept").click(); });
    }

    void settingsAreReadAndWritten()
    {
        QFETCH(std::function<void(const PrintBench&)>, close);
        app::save(setting::PrintFontName, QStringLiteral("DejaVu Serif"));
        app::save(setting::PrintFontSize, QStringLiteral("20"));
        for (const app::OpenNumberKey& style : {setting::PrintFontBold, setting::PrintFontItalic,
                                                setting::PrintFontStrike, setting::PrintFontUnderline})
            app::save(style, 1);
        app::save(setting::PrintFontColor, 0x0000ff);
        app::save(setting::PrintLayout, 1);
        app::save(setting::PrintArea, 5);
        app::save(setting::PrintTitleA, 2);
        app::save(setting::PrintZoom, 1);
        app::save(setting::PrintFilename, 1);
        app::save(setting::PrintPath, 1);
        const PrintBench bench;
        QCOMPARE(bench.printer->turned, PageOrientation::Landscape);
        QStringList shown;
        QVERIFY(bench.show([&] {
            shown << bench.part<QComboBox>("cboTitle").currentText()
                  << bench.part<QComboBox>("cboZoom").currentText();
            if (bench.part<QRadioButton>("oLayout1").isChecked() && bench.area(5).isChecked() &&
                bench.part<QCheckBox>("chkFilename").isChecked() &&
                bench.part<QCheckBox>("chkPath").isChecked())
                shown << "all";
            bench.part<QRadioButton>("oLayout0").click();
            bench.area(2).click();
            bench.part<QComboBox>("cboTitle").setCurrentIndex(0);
            bench.part<QComboBox>("cboZoom").setCurrentIndex(4);
            bench.part<QCheckBox>("chkFilename").click();
            bench.part<QCheckBox>("chkPath").click();
            close(bench);
        }));
        QCOMPARE(shown, (QStringList{"Right", "25%", "all"}));
        QVERIFY(!bench.window->isVisible());
        QCOMPARE(app::read(setting::PrintFontName, QString()), QStringLiteral("DejaVu Serif"));
        QCOMPARE(app::read(setting::PrintFontSize, QString()), QStringLiteral("20"));
        for (const app::OpenNumberKey& style : {setting::PrintFontBold, setting::PrintFontItalic,
                                                setting::PrintFontStrike, setting::PrintFontUnderline})
            QCOMPARE(app::read(style, 0), 1);
        QCOMPARE(app::read(setting::PrintFontColor, 0), 0x0000ff);
        QCOMPARE(app::read(setting::PrintLayout), 0);
        QCOMPARE(app::read(setting::PrintArea), 2);
        QCOMPARE(app::read(setting::PrintTitleA), 0);
        QCOMPARE(app::read(setting::PrintZoom), 4);
        QCOMPARE(app::read(setting::PrintFilename), 0);
        QCOMPARE(app::read(setting::PrintPath), 0);
    }

    void anOwnerThatGoesTakesTheWindowAlong()
    {
        auto* const owner = new QWidget;
        const PrintBench bench(owner);
        QVERIFY(bench.show([&] {
            bench.area(3).click();
            delete owner;
        }));
        QVERIFY(bench.alive.isNull());
        QCOMPARE(app::read(setting::PrintArea), 3);
    }
};

QTEST_MAIN(TestFrmImagePrint)
#include "tst_frmimageprint.moc"
