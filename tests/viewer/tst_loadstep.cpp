// The load step of the main window.
#include "app/Colors.h"
#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "engine/ImageEngine.h"
#include "platform/ToolControl.h"
#include "support/FileContent.h"
#include "support/ScratchDesktop.h"
#include "viewer/LoadStep.h"
#include "viewer/Panes.h"
#include "viewer/PictureStage.h"

#include <QApplication>
#include <QFile>
#include <QScreen>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestLoadStep : public QObject, private test::PictureStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theLogTellsTheRoadWordForWord()
    {
        m_bench->load();
        QCOMPARE(m_bench->logTexts(),
                 (QStringList{"Init: Form_Load: frmImageView", "Start: Sizing", "End: Sizing",
                              "Start: First_CommandLineParsing", "End: First_CommandLineParsing",
                              "Start: TabLoading and Name", "End: TabLoading and Name",
                              "Start: frmImageViewPlaylist_Load", "End: frmImageViewPlaylist_Load",
                              "Finish: Form_Load: frmImageView"}));
        QVERIFY(m_bench->wentOn);
    }

    void chromeAndTitle()
    {
        frmImageView& window = m_bench->load();
        QCOMPARE(app::paneColor(window.pTop()), QColor(0, 121, 191));
        QCOMPARE(window.windowTitle(), QStringLiteral("Quorvia v1.0.0"));
        window.OpenX(in("pics/a.png"));
        QCOMPARE(window.windowTitle(), QStringLiteral("Quorvia v1.0.0")); // it does not follow the image
    }

    void whatTheLineOpens_data()
    {
        QTest::addColumn<QStringList>("arguments"); // "@" stands for the pictures' folder
        QTest::addColumn<int>("cLoad");
        QTest::addColumn<int>("imgAutoLoad");
        QTest::addColumn<QString>("remembered");
        QTest::addColumn<QString>("open"); // name in the pictures' folder
        const auto row = [](const char* name, const QStringList& arguments, int cLoad, int imgAutoLoad,
                            const char* remembered, const char* open) {
            QTest::newRow(name) << arguments << cLoad << imgAutoLoad << remembered << open;
        };
        row("a file", {"@/b.png"}, 1, 1, "", "b.png");
        row("a file in quotes", {"\"@/b.png\""}, 1, 1, "", "b.png");
        row("a file with blanks", {"@/two", "words.png"}, 1, 1, "", "two words.png");
        row("a folder in quotes is none", {"\"@\""}, 1, 1, "", "");
        row("a file in quotes with a command is none", {"\"@/b.png\"", "/miCmd"}, 1, 1, "", "");
        row("a relative file", {"pics/b.png"}, 1, 1, "", "b.png");
        row("a folder", {"@"}, 1, 1, "", "a.png");
        row("a folder without cLoad", {"@"}, 0, 1, "", "");
        row("a file and a command", {"@/b.png", "/miCmd"}, 1, 1, "", "b.png");
        row("a folder and a command", {"@", "/miNext"}, 1, 1, "", "b.png");
        row("commands in order", {"@", "/miNext", "/miNext", "/miPrevious"}, 1, 1, "", "b.png");
        row("an unknown command", {"@", "/noSuchTool"}, 1, 1, "", "a.png");
        row("neither file nor folder", {"@/gone.png"}, 1, 1, "pics", "a.png");
        row("a plain start, remembered folder", {}, 1, 1, "pics", "a.png");
        row("a plain start without imgAutoLoad", {}, 1, 0, "pics", "");
        row("a plain start without cLoad", {}, 0, 1, "pics", "");
        row("a plain start, nothing remembered", {}, 1, 1, "", "");
        row("a remembered folder that has gone", {}, 1, 1, "gone", "");
        row("only a command", {"/miCmd"}, 1, 1, "pics", "a.png");
        row("hidden still loads the first", {"/miHide"}, 1, 1, "pics", "a.png");
        row("hidden without imgAutoLoad", {"/miHide"}, 1, 0, "pics", "");
        row("install in other letters", {"/Install"}, 1, 1, "pics", "a.png");
    }

    void whatTheLineOpens()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, cLoad);
        QFETCH(int, imgAutoLoad);
        QFETCH(QString, remembered);
        QFETCH(QString, open);
        app::save(setting::cLoad, cLoad);
        app::save(setting::imgAutoLoad, imgAutoLoad);
        if (!remembered.isEmpty())
            app::save(setting::SelectedPath, m_bench->home.path(remembered));
        for (QString& argument : arguments)
            argument.replace(QLatin1Char('@'), in("pics"));
        frmImageView& window = m_bench->load(arguments);
        QCOMPARE(window.currentFile(), open.isEmpty() ? QString() : in("pics/") + open);
        QVERIFY(m_bench->boxes.empty());
        QVERIFY(m_bench->wentOn);
    }

    void showing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("shown");
        QTest::newRow("plain") << QStringList{} << true;
        QTest::newRow("hide") << QStringList{"/miHide"} << false;
        QTest::newRow("hide among others") << QStringList{"/miCmd", "/miHide"} << false;
        QTest::newRow("full screen, behind which it comes") << QStringList{"/miFullScreen"} << true;
        QTest::newRow("a longer name that holds it") << QStringList{"/miHideInterface"} << false;
        QTest::newRow("another case") << QStringList{"/mihide"} << true;
        QTest::newRow("shown by a command") << QStringList{"/miHide", "/miShow"} << true;
    }

    void showing()
    {
        QFETCH(QStringList, arguments);
        QTEST(m_bench->load(arguments).isVisible(), "shown");
    }

    void messagesOnTheLine()
    {
        m_bench->load({QStringLiteral("/miMsg_Done"), QStringLiteral("/miMsg_Again")});
        QCOMPARE(m_bench->boxes.size(), size_t(2));
        QCOMPARE(m_bench->boxes.at(0).text, QStringLiteral("Done"));
        QCOMPARE(m_bench->boxes.at(1).text, QStringLiteral("Again"));
    }

    void installPublishesAndEnds()
    {
        frmImageView& window = m_bench->load({QStringLiteral("/install")});
        QVERIFY(!m_bench->wentOn);
        QVERIFY(!window.isVisible());
        QCOMPARE(m_bench->logTexts(), QStringList{"Init: Form_Load: frmImageView"});
        QCOMPARE(app::GetCommonSetting(QStringLiteral("Common\\ProgramPaths"), QStringLiteral("Quorvia"),
                                       QString())
                     .toString(),
                 app::programPath());
    }

    void installTakesTheTypesOverWhenAsked()
    {
        test::leaveDesktop(m_bench->home);
        const QString list = in(".config/mimeapps.list");
        m_bench->load({QStringLiteral("/install")});
        QVERIFY(!QFile::exists(list));
        m_bench->close();
        QVERIFY(app::save(setting::Associate, 1));
        m_bench->load({QStringLiteral("/install")});
        QVERIFY(test::contentOf(list).contains("\nimage/png=quorvia.desktop\n"));
        QCOMPARE(app::read(setting::Associate), 0);
    }

    void theFit_data()
    {
        QTest::addColumn<int>("cView");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("fit");
        QTest::newRow("best fit") << 0 << QStringList{} << true;
        QTest::newRow("actual size ends in best fit on a plain start") << 1 << QStringList{} << true;
        QTest::newRow("actual size stays with a switch") << 1 << QStringList{"/miCmd"} << false;
        QTest::newRow("actual size stays with a bare file") << 1 << QStringList{"@/a.png"} << false;
        QTest::newRow("actual size ends in best fit with a folder") << 1 << QStringList{"@"} << true;
        QTest::newRow("another number is best fit") << 7 << QStringList{"/miCmd"} << true;
    }

    void theFit()
    {
        QFETCH(int, cView);
        QFETCH(QStringList, arguments);
        app::save(setting::cView, cView);
        for (QString& argument : arguments)
            argument.replace(QLatin1Char('@'), in("pics"));
        QTEST(m_bench->load(arguments).viewport()->FitToWindow(), "fit");
    }

    void theShowAtTheStart_data()
    {
        QTest::addColumn<int>("cSlide");
        QTest::addColumn<QStringList>("arguments"); // "@" stands for the pictures' folder
        QTest::addColumn<bool>("running");
        QTest::newRow("asked for") << 1 << QStringList{} << true;
        QTest::newRow("asked for, with a folder") << 1 << QStringList{"@"} << true;
        QTest::newRow("asked for, with a switch") << 1 << QStringList{"/miCmd"} << false;
        QTest::newRow("asked for, with a bare file") << 1 << QStringList{"@/a.png"} << false;
        QTest::newRow("not asked for") << 0 << QStringList{} << false;
        QTest::newRow("another number") << 2 << QStringList{} << false;
        QTest::newRow("by a command") << 0 << QStringList{"/miSlideShow"} << true;
    }

    void theShowAtTheStart()
    {
        QFETCH(int, cSlide);
        QFETCH(QStringList, arguments);
        app::save(setting::cSlide, cSlide);
        app::save(setting::slidemode, QStringLiteral("reverse"));
        app::save(setting::Interval, 3500);
        for (QString& argument : arguments)
            argument.replace(QLatin1Char('@'), in("pics"));
        const output::Slideshow& show = *m_bench->load(arguments).slideshow();
        QTEST(show.isRunning(), "running");
        QCOMPARE(show.slidemode(), QStringLiteral("reverse"));
        QCOMPARE(show.interval(), 3500);
    }

    void theListHasTheImageTypes()
    {
        for (const char* name : {"pics/notes.txt", "pics/list.qol", "pics/c.BMP"})
            m_bench->home.write(QLatin1String(name), "x");
        const collections::PictureList& list = *m_bench->load({in("pics")}).list();
        QCOMPARE(list.Pattern(), QLatin1String(app::ImageExtensionList));
        QStringList files;
        for (int i = 0; i < list.ListCount(); ++i)
            files.append(list.ListFile(i));
        QCOMPARE(files, (QStringList{in("pics/a.png"), in("pics/b.png"), in("pics/c.BMP"),
                                     in("pics/two words.png")}));
    }

    void backColour()
    {
        app::save(setting::MainBackColor, 0x0000ff);
        frmImageView& window = m_bench->load();
        QCOMPARE(app::paneColor(window.pContain()), QColor(Qt::red));
        QCOMPARE(window.ix1()->BackColor(), QColor(Qt::red));
    }

    void theInterfaceFlag_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("flag");
        QTest::newRow("absent") << QVariant() << true;
        QTest::newRow("cleared") << QVariant(0) << false;
        QTest::newRow("set") << QVariant(1) << true;
        QTest::newRow("any other number") << QVariant(7) << true;
        QTest::newRow("text 0") << QVariant(QStringLiteral("0")) << false;
    }

    void theInterfaceFlag()
    {
        QFETCH(QVariant, stored);
        QFETCH(bool, flag);
        if (stored.isValid())
            app::SaveAppSetting(QStringLiteral("Settings"), QStringLiteral("ToggleInterface"), stored);
        QCOMPARE(m_bench->load().panes()->interfaceFlag(), flag);
        m_bench->close();
        QCOMPARE(app::read(setting::ToggleInterface), flag ? 1 : 0);
    }

    void theFirstPlace()
    {
        frmImageView& window = m_bench->load();
        const QSize screen = window.screen()->size();
        QCOMPARE(window.pos(),
                 QPoint(screen.width() / 2 - window.width() / 2, screen.height() / 2 - window.height() / 2));
    }

    void theFirstPlaceGoesByTheStoredWidth()
    {
        app::save(setting::MainWidth, 100 * 15);
        app::save(setting::MainHeight, 20 * 15); // raised to 133 pixels, but centred as 20
        frmImageView& window = m_bench->load();
        QCOMPARE(window.size(), QSize(100, 133));
        QCOMPARE(window.y(), window.screen()->size().height() / 2 - 10);
    }

    void aPlaceOffTheDesktopIsNotTaken()
    {
        app::save(setting::MainLeft, -2000000000);
        app::save(setting::MainTop, 2147483647);
        frmImageView& window = m_bench->load();
        QVERIFY(window.screen()->geometry().contains(window.pos()));
    }

    void aSizeOfALargerDesktopDropsItsPlace()
    {
        app::save(setting::MainLeft, 300);
        app::save(setting::MainTop, 300);
        app::save(setting::MainWidth, 1000000);
        app::save(setting::MainHeight, 4500);
        frmImageView& window = m_bench->load();
        const QSize screen = window.screen()->size();
        QCOMPARE(window.size(), QSize(screen.width(), 300));
        QCOMPARE(window.pos(), QPoint(0, screen.height() / 2 - 150));
    }

    void geometry_data()
    {
        QTest::addColumn<QVariant>("width");
        QTest::addColumn<QVariant>("height");
        QTest::addColumn<QSize>("size"); // pixels; empty: the default
        QTest::newRow("nothing stored") << QVariant() << QVariant() << QSize();
        QTest::newRow("stored") << QVariant(6000) << QVariant(4500) << QSize(400, 300);
        QTest::newRow("stored as text") << QVariant("6000") << QVariant("4500") << QSize(400, 300);
        QTest::newRow("too small") << QVariant(100) << QVariant(100) << QSize(100, 133);
        QTest::newRow("empty text counts as absent") << QVariant("") << QVariant("") << QSize();
        QTest::newRow("no number") << QVariant("wide") << QVariant("high") << QSize();
        QTest::newRow("absurd") << QVariant(2000000000) << QVariant(2147483647)
                                << QApplication::primaryScreen()->virtualSize();
    }

    void geometry()
    {
        QFETCH(QVariant, width);
        QFETCH(QVariant, height);
        QFETCH(QSize, size);
        if (width.isValid()) {
            app::SaveAppSetting(QStringLiteral("Settings"), QStringLiteral("MainWidth"), width);
            app::SaveAppSetting(QStringLiteral("Settings"), QStringLiteral("MainHeight"), height);
        }
        if (size.isEmpty()) {
            const QSize screen = QApplication::primaryScreen()->geometry().size();
            size = {screen.width() - screen.width() / 8, screen.height() - screen.height() / 8};
        }
        QCOMPARE(m_bench->load().size(), size);
    }

    void placeIsDroppedWhenOthersRun()
    {
        app::save(setting::MainLeft, 3000);
        app::save(setting::MainTop, 1500);
        app::save(setting::MainWidth, 6000);
        app::save(setting::MainHeight, 4500);
        frmImageView& alone = m_bench->make();
        QVERIFY(viewer::runLoadStep(alone, false));
        QCOMPARE(alone.pos(), QPoint(200, 100));
        frmImageView& second = m_bench->make();
        const QPoint before = second.pos();
        QVERIFY(viewer::runLoadStep(second, true));
        QCOMPARE(second.size(), QSize(400, 300));
        QVERIFY(second.pos() != QPoint(200, 100) || before == QPoint(200, 100));
    }

    void theRecentListIsReadAfterTheFirstOpen()
    {
        app::save(setting::Recent, QStringLiteral(";/somewhere"));
        frmImageView& window = m_bench->load({in("pics/a.png")});
        QCOMPARE(window.opening()->recent(), (QStringList{QString(), "/somewhere"}));
        window.OpenX(in("pics/b.png"));
        QCOMPARE(window.opening()->recent(), (QStringList{QString(), "/somewhere", in("pics")}));
    }

    void theBareFileStandsBeforeTheProperOpen()
    {
        QString early;
        bool shown = false;
        int counted = -1;
        frmImageView& window = m_bench->make({in("pics/a.png")});
        QTimer::singleShot(0, &window, [&] { // runs while the first picture is waited for
            early = window.currentFile();
            shown = window.isVisible();
            counted = app::read(setting::ImageOpenCount);
        });
        QVERIFY(viewer::runLoadStep(window, false));
        QCOMPARE(early, in("pics/a.png"));
        QVERIFY(shown);
        QCOMPARE(counted, 0);
        QCOMPARE(app::read(setting::ImageOpenCount), 1);
    }

    /// Tabs and toolbar come to places that were kept for them.
    void thePictureIsNotPushedAbout()
    {
        frmImageView& window = m_bench->make({in("pics/a.png")});
        const QWidget& view = *window.pContain();
        const auto place = [&] { return QRect(view.mapTo(&window, QPoint()), view.size()); };
        QRect first;
        connect(window.ix1(), &engine::ImageEngine::FirstPainted, &window,
                [&] { first = first.isNull() ? place() : first; });
        QVERIFY(viewer::runLoadStep(window, false));
        QVERIFY(!first.isNull());
        QTRY_VERIFY(window.panes()->ab1()->isVisible());
        QCoreApplication::processEvents();
        QCOMPARE(place(), first);
    }

    void aBareFileOfAnotherTypeWaitsForTheProperOpen()
    {
        QVERIFY(QFile::copy(in("pics/a.png"), in("pics/a.xyzzy")));
        int counted = -1;
        frmImageView& window = m_bench->make({in("pics/a.xyzzy")});
        QTimer::singleShot(0, &window, [&] { counted = app::read(setting::ImageOpenCount); });
        QVERIFY(viewer::runLoadStep(window, false));
        QCOMPARE(window.currentFile(), in("pics/a.xyzzy"));
        QCOMPARE(counted, 1);
    }

    void theWindowHasTheProgramsIcon()
    {
        QGuiApplication::setWindowIcon(QIcon());
        frmImageView& window = m_bench->load({in("pics")});
        QVERIFY(!window.windowIcon().isNull());
    }

    void nothingRunsAfterTheEnd()
    {
        m_bench->load({QStringLiteral("/miExit"), QStringLiteral("/miMsg_late"), QStringLiteral("/miShow")});
        QVERIFY(!m_bench->wentOn);
        QVERIFY(m_bench->boxes.empty());
    }

    void aResizeHidesThePictureForAMoment()
    {
        frmImageView& window = m_bench->load({in("pics")});
        QVERIFY(!window.ix1()->isHidden());
        window.resize(window.size() - QSize(40, 30));
        QVERIFY(window.ix1()->isHidden());
        auto* const tUpdate = window.findChild<QTimer*>(QStringLiteral("tUpdate"));
        QCOMPARE(tUpdate->interval(), 50);
        tUpdate->start(10'000);
        window.resize(window.size() - QSize(40, 30)); // counts from the last one
        QCOMPARE(tUpdate->interval(), 50);
        const int kept = platform::ToolControl::usualHeight() + 1; // for the toolbar and its rule
        QCOMPARE(window.pTop()->size(), window.size() - QSize(0, kept));
        QCOMPARE(window.pContain()->geometry().bottomRight(), window.pTop()->rect().bottomRight());
        QTRY_VERIFY(!window.ix1()->isHidden());
    }
};

QTEST_MAIN(TestLoadStep)
#include "tst_loadstep.moc"
