// The window driven by named commands: which there are, and what those of window, menus and shell do.
#include "app/mWindowsAPI.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "commands/CommandCatalog.h"
#include "commands/CommandNames.h"
#include "controls/gnTab.h"
#include "platform/MenuControl.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "viewer/CommandTable.h"
#include "viewer/PictureStage.h"

#include <QFile>
#include <QMenu>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowCommands : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    static platform::ToolModel& model(frmImageView& window) { return *window.panes()->ab1()->model(); }
    static platform::ToolValues values(frmImageView& window, const char* tool)
    {
        return model(window).tool(QLatin1String(tool))->values();
    }
    /// A window with its menus and toolbar.
    frmImageView& built(const QStringList& arguments = {})
    {
        frmImageView& window = m_bench->load(arguments);
        window.OpenMenuX(true);
        return window;
    }
    static void run(frmImageView& window, const char* command) { window.RunTool(QLatin1String(command)); }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void everyCommandHasOneHandler()
    {
        QStringList names;
        for (const commands::Tool& tool : viewer::commandTable(m_bench->make())) {
            QVERIFY2(tool.run, tool.name);
            names.append(QLatin1String(tool.name));
        }
        QStringList expected;
        for (const test::CommandRow& row : test::commandNames)
            expected.append(QLatin1String(row.name));
        for (const QString& name : names) // such names would never reach their row
            QVERIFY(!name.startsWith(QLatin1String("tRecen")) && !name.startsWith(QLatin1String("FileX")));
        names.sort();
        expected.sort();
        QCOMPARE(names, expected);
    }

    void theCatalogHasWordsForEachCommand()
    {
        QStringList described;
        for (const commands::CommandText& command : commands::commandCatalog()) {
            QVERIFY2(command.text[0] != '\0', command.name);
            described.append(QLatin1String(command.name));
        }
        QStringList names;
        for (const commands::Tool& tool : viewer::commandTable(m_bench->make()))
            names.append(QLatin1String(tool.name));
        described.sort();
        names.sort();
        QCOMPARE(described, names);
    }

    void quickHide()
    {
        frmImageView& window = built({in("pics")});
        const QString caption = window.windowTitle();
        QVERIFY(caption.startsWith(app::GetAppDisplayName()));
        run(window, "miFileList");
        QVERIFY(window.panes()->bPlay()->visible());
        run(window, "miQuickHide");
        QVERIFY(window.pTop()->isHidden());
        QVERIFY(window.panes()->ab1()->isHidden());
        QVERIFY(!window.panes()->bPlay()->visible());
        QCOMPARE(window.windowTitle(), QStringLiteral("Unknown"));
        run(window, "miQuickHide");
        QVERIFY(!window.pTop()->isHidden());
        QVERIFY(!window.panes()->ab1()->isHidden());
        QVERIFY(!window.panes()->bPlay()->visible()); // the list stays away
        QCOMPARE(window.windowTitle(), caption);
        run(window, "miEXIFView");
        window.resize(700, 500);
        QVERIFY(QFile::remove(in("pics/a.png")));
        run(window, "miQuickHide"); // a list that does not show is left alone
        QVERIFY(!window.panes()->bPlay()->visible());
        QVERIFY(!window.panes()->bInfo()->visible());
        window.resize(800, 600);
        run(window, "miQuickHide");
        QVERIFY(!values(window, "miZoomIn").enabled); // what has changed meanwhile is seen
        QCOMPARE(window.pTop()->width(), 800);
        QVERIFY(!window.panes()->bInfo()->visible());
    }

    void openAsksForAFile()
    {
        frmImageView& window = built();
        platform::FileChooser asked;
        QString answer = in("pics/b.png");
        const platform::FileChooserAnswerer chooser([&](const platform::FileChooser& shown) {
            asked = shown;
            return answer;
        });
        for (const char* command : {"miOpen", "miOpenMenu", "tOpenx"}) {
            window.ix1()->SetFileName(QString());
            asked = {};
            run(window, command);
            QVERIFY(asked.filters.startsWith(
                QLatin1String("All Supported Image Types|*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.tif;*.tiff;*.wmf;"
                              "*.ico;*.dcx;*.jif;*.ljp;*.pbm;*.pcx;*.pgm;*.pic;*.png;*.ppm;*.rle;*.tga;"
                              "*.wpg")));
            QCOMPARE(window.currentFile(), in("pics/b.png"));
            QCOMPARE(window.list()->path(), in("pics"));
        }
        answer =
            in("pics/none.png"); // neither a file that is not there nor a dialog left by Esc opens anything
        run(window, "miOpen");
        answer.clear();
        run(window, "miOpen");
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QVERIFY(m_bench->boxes.empty());
    }

    void recentDirectoriesOpen()
    {
        frmImageView& window = built();
        m_bench->picture(QStringLiteral("more/x.png"), Qt::yellow);
        window.OpenDirX(in("pics"));
        window.OpenDirX(in("more"));
        QVERIFY(window.panes()->ab1()->menus()->popUp(QStringLiteral("bRecent"), QPoint(10, 10)));
        window.panes()->ab1()->menus()->close();
        QCOMPARE(window.interfaceTools()->recentDirectory(QStringLiteral("tRecent1")), in("pics"));
        QCOMPARE(window.interfaceTools()->recentDirectory(QStringLiteral("tRecent2")), in("more"));
        run(window, "tRecent1");
        QCOMPARE(window.list()->path(), in("pics"));
        run(window, "tRecent"); // no such tool: nothing is opened
        QCOMPARE(window.list()->path(), in("pics"));
    }

    void filesOfTheListOpen()
    {
        frmImageView& window = built({in("pics")});
        QVERIFY(window.panes()->ab1()->menus()->popUp(QStringLiteral("bFiles"), QPoint(10, 10)));
        QMenu* const menu = window.panes()->ab1()->menus()->menu();
        QStringList rows;
        for (const QAction* row : menu->actions())
            rows.append(row->text());
        QCOMPARE(rows, (QStringList{"a (PNG)", "b (PNG)", "two words (PNG)"}));
        menu->actions().at(2)->trigger(); // by the menu, and from there by name
        QTRY_COMPARE(window.currentFile(), in("pics/two words.png"));
        run(window, "FileX2");
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        run(window, "FileX9");
        QCOMPARE(window.currentFile(), in("pics/b.png"));
    }

    void messages()
    {
        frmImageView& window = m_bench->load();
        run(window, "miMsg_Not available");
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
        QCOMPARE(m_bench->boxes[0].text, QStringLiteral("Not available"));
        run(window, "miCustomizeToolbar");
        QCOMPARE(m_bench->boxes.back().text, QStringLiteral("Feature not complete"));
        for (const char* name : {"", "mi", "minext", "miCmd_x", "miNextx"})
            run(window, name);
        QCOMPARE(m_bench->boxes.size(), std::size_t(2));
        run(window, "miMsg");
        QCOMPARE(m_bench->boxes.back().text, QString());
        run(window, "miMsg_a_b");
        QCOMPARE(m_bench->boxes.back().text, QStringLiteral("a"));
    }

    void zoomSteps_data()
    {
        QTest::addColumn<double>("before");
        QTest::addColumn<double>("in");
        QTest::addColumn<double>("out");
        QTest::newRow("at two they do not mirror") << 2.0 << 4.0 << 1.8;
        QTest::newRow("above two") << 4.0 << 6.0 << 2.0;
        QTest::newRow("small") << 0.4 << 0.6 << 0.2;
        QTest::newRow("half") << 0.5 << 0.7 << 0.3;
        QTest::newRow("the floor") << 0.2 << 0.4 << 0.2;
    }

    void zoomSteps()
    {
        QFETCH(double, before);
        frmImageView& window = m_bench->load({in("pics")});
        run(window, "miActualSize");
        window.viewport()->zoomTo(before);
        run(window, "miZoomIn");
        QTEST(window.ix1()->ZoomFactor(), "in");
        window.viewport()->zoomTo(before);
        run(window, "miZoomOut");
        QTEST(window.ix1()->ZoomFactor(), "out");
    }

    void refreshReadsImageAndList()
    {
        frmImageView& window = built({in("pics")});
        m_bench->picture(QStringLiteral("pics/c.png"), Qt::yellow);
        m_bench->picture(QStringLiteral("pics/a.png"), Qt::cyan);
        run(window, "miRefresh");
        window.list()->finishRebuild();
        QCOMPARE(window.list()->ListCount(), 4);
        QCOMPARE(m_bench->middle(), QColor(Qt::cyan));
        const int opened = app::read(setting::ImageOpenCount);
        QVERIFY(QFile::remove(in("pics/a.png")));
        run(window, "miRefresh"); // of a picture whose file has gone the list alone
        window.list()->finishRebuild();
        QCOMPARE(window.list()->ListCount(), 3);
        QCOMPARE(app::read(setting::ImageOpenCount), opened);
        QVERIFY(!values(window, "miZoomIn").enabled);
        QVERIFY(m_bench->boxes.empty());
    }

    void viewMarks()
    {
        frmImageView& window = built({in("pics")});
        QVERIFY(!values(window, "miInterfaceTabs").checked); // the picture has all of the window
        QVERIFY(!values(window, "miViewNormal").checked);
        run(window, "miInterfaceTabs");
        QVERIFY(values(window, "miInterfaceTabs").checked);
        QVERIFY(values(window, "miViewNormal").checked);
        run(window, "miViewInformation");
        QVERIFY(!values(window, "miViewNormal").checked);
        QVERIFY(values(window, "miViewInformation").checked);
    }

    void toolsFollowTheFacts()
    {
        frmImageView& window = built();
        QVERIFY(!values(window, "miZoomIn").enabled);
        QVERIFY(!values(window, "miNext").enabled);
        QVERIFY(values(window, "miOpenMenu").enabled);
        QVERIFY(!window.panes()->pWelcome()->isHidden());
        window.OpenDirX(in("pics"));
        QVERIFY(values(window, "miZoomIn").enabled);
        QVERIFY(values(window, "miNext").enabled);
        QVERIFY(values(window, "miBestFit").checked);
        QVERIFY(!values(window, "miActualSize").checked);
        QVERIFY(window.panes()->pWelcome()->isHidden());
        run(window, "miCloseImage");
        QVERIFY(!values(window, "miZoomIn").enabled);
        QVERIFY(!window.panes()->pWelcome()->isHidden());
        window.OpenX(in("pics/a.png"));
        run(window, "miBestFit");
        QVERIFY(!values(window, "miBestFit").checked);
        QVERIFY(values(window, "miActualSize").checked);
    }

    void anEmptyListWithAPicture()
    {
        frmImageView& window = built();
        window.list()->findChild<QTimer*>(QStringLiteral("tFolder"))->setInterval(60'000);
        window.OpenX(in("pics/a.png")); // its folder is read a moment later
        QCOMPARE(window.list()->ListCount(), 0);
        QVERIFY(values(window, "miZoomIn").enabled);
        for (const char* tool : {"miNext", "miPrevious", "miSlideShow"})
            QVERIFY(!values(window, tool).enabled);
        window.list()->finishRebuild(); // and the tools follow the list by themselves
        for (const char* tool : {"miNext", "miPrevious", "miSlideShow"})
            QVERIFY(values(window, tool).enabled);
    }

    void aListWithoutAPicture()
    {
        frmImageView& window = built({in("pics")});
        run(window, "miBestFit");
        run(window, "miCloseImage");
        QVERIFY(values(window, "miNext").enabled);
        QVERIFY(!values(window, "miBestFit").enabled);
        QVERIFY(!values(window, "miBestFit").checked);
        run(window, "miBestFit");
        QVERIFY(!values(window, "miBestFit").checked); // the mark stays as it was
    }

    void aTabThatShowsNoPicture()
    {
        frmImageView& window = built({in("pics")});
        QVERIFY(window.panes()->gTab()->AddTab(QStringLiteral("Other"), QStringLiteral("Other")));
        window.panes()->gTab()->SetSelectedTab(QStringLiteral("Other"));
        QVERIFY(!values(window, "miZoomIn").enabled);
        window.panes()->gTab()->SetSelectedTab(QStringLiteral("Filmstrip"));
        QVERIFY(values(window, "miZoomIn").enabled);
    }

    void theListThatShowsIsMarkedAndLooksMoreOften()
    {
        frmImageView& window = built({in("pics")});
        const auto* const tAutoUpdate = window.findChild<QTimer*>(QStringLiteral("tAutoUpdate"));
        QVERIFY(tAutoUpdate);
        QCOMPARE(tAutoUpdate->interval(), 12000);
        run(window, "miFilelistMenu");
        QVERIFY(values(window, "miFileList").checked);
        QCOMPARE(tAutoUpdate->interval(), 3000);
        run(window, "miFileList");
        QVERIFY(!values(window, "miFileList").checked);
        QCOMPARE(tAutoUpdate->interval(), 12000);
    }

    void theRowsOfTheFilmstripAreMarked()
    {
        app::save(setting::FilmStripRows, 2);
        frmImageView& window = built();
        QVERIFY(!values(window, "miFilm1").checked);
        QVERIFY(values(window, "miFilm2").checked);
    }

    void aPictureWhoseFileHasGone()
    {
        frmImageView& window = built({in("pics")});
        QVERIFY(values(window, "miZoomIn").enabled);
        QVERIFY(QFile::remove(in("pics/a.png")));
        window.UpdateToolbar();
        QVERIFY(!values(window, "miZoomIn").enabled);
        QVERIFY(values(window, "miNext").enabled);
        QVERIFY(!window.panes()->pWelcome()->isHidden());
        QCOMPARE(window.currentFile(), in("pics/a.png")); // it is still what is open
    }

    void theSlideshowMarksItsTools()
    {
        frmImageView& window = built({in("pics")});
        run(window, "tSldReverse");
        QVERIFY(window.slideshow()->isRunning());
        QVERIFY(values(window, "miSlideShow").checked);
        QCOMPARE(app::read(setting::slidemode), QStringLiteral("reverse"));
        QVERIFY(values(window, "tSldReverse").checked);
        run(window, "tSldRandom"); // does not stop a running one
        QVERIFY(window.slideshow()->isRunning());
        const platform::ToolBand* const orders = model(window).band(QStringLiteral("bSlide"));
        QVERIFY(orders->tool(QStringLiteral("tSldRandom"))->values().checked);
        QVERIFY(!orders->tool(QStringLiteral("tSldReverse"))->values().checked);
        run(window, "miSlideShow");
        QVERIFY(!window.slideshow()->isRunning());
        QVERIFY(!values(window, "miSlideShow").checked);
    }

    void menusPauseTheSlideshow()
    {
        frmImageView& window = built({in("pics"), QStringLiteral("/miSlideShow")});
        QVERIFY(window.slideshow()->isRunning());
        const QString caption = window.windowTitle();
        window.OpenMenuX(false);
        QVERIFY(!window.slideshow()->isRunning());
        QCOMPARE(window.windowTitle(), caption + QLatin1String(" (Slideshow Paused) "));
        window.panes()->ab1()->menus()->close();
        QVERIFY(window.slideshow()->isRunning());
        QCOMPARE(window.windowTitle(), caption);
    }

    void theDelayToolSaysAndSetsTheInterval()
    {
        frmImageView& window = built({in("pics")});
        platform::ToolMenu* const menus = window.panes()->ab1()->menus();
        QVERIFY(menus->popUp(QStringLiteral("bCustom"), QPoint(10, 10)));
        QCOMPARE(values(window, "tTime").text, QStringLiteral("2"));
        platform::Tool* const tool = model(window).tool(QStringLiteral("tTime"));
        Q_EMIT model(window).TextChange((tool->set(&platform::ToolValues::text, QString()), tool));
        QCOMPARE(window.slideshow()->interval(), 2000); // so that another one can be typed
        tool->set(&platform::ToolValues::text, QStringLiteral("61"));
        Q_EMIT model(window).TextChange(tool);
        QCOMPARE(values(window, "tTime").text, QStringLiteral("60"));
        QCOMPARE(window.slideshow()->interval(), 60000);
        QCOMPARE(app::read(setting::Interval), 60000);
        tool->set(&platform::ToolValues::text, QString());
        Q_EMIT model(window).SelectionChange(tool);
        QCOMPARE(values(window, "tTime").text, QStringLiteral("1"));
        QCOMPARE(window.slideshow()->interval(), 1000);
    }

    void theContextMenuTakesThePlaceOfTheToolbarsOwn()
    {
        frmImageView& window = built();
        platform::ToolMenu* const menus = window.panes()->ab1()->menus();
        QVERIFY(!menus->popUpAtMouse(QStringLiteral("SysCustomize")));
        QVERIFY(menus->menu());
        QCOMPARE(menus->menu()->objectName(), QStringLiteral("NewImage"));
    }

    void rightClicksOpenTheContextMenu_data()
    {
        QTest::addColumn<QString>("pane");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("opens");
        const auto row = [](const char* pane, int modifiers, bool opens) {
            QTest::addRow("%s %x", pane, modifiers) << QString::fromLatin1(pane) << modifiers << opens;
        };
        row("ix1", Qt::NoModifier, true);
        row("pContain", Qt::NoModifier, true);
        row("aP", Qt::NoModifier, true);
        row("pMain", Qt::NoModifier, true);
        row("pMain", Qt::ControlModifier, false);
        row("pWelcome", Qt::NoModifier, true);
    }

    void rightClicksOpenTheContextMenu()
    {
        QFETCH(QString, pane);
        QFETCH(int, modifiers);
        frmImageView& window = built({in("pics")});
        auto* const widget = window.findChild<QWidget*>(pane);
        QVERIFY(widget);
        platform::ToolMenu* const menus = window.panes()->ab1()->menus();
        QTest::mousePress(widget, Qt::RightButton, Qt::KeyboardModifiers(modifiers));
        QVERIFY(!menus->menu()); // only when the button is let go
        QTest::mouseRelease(widget, Qt::RightButton, Qt::KeyboardModifiers(modifiers));
        QTEST(menus->menu() != nullptr, "opens");
    }

    void theToolbarStandsAsItsBandWantsIt()
    {
        frmImageView& window = built();
        platform::ToolControl* const ab1 = window.panes()->ab1();
        QVERIFY(!ab1->isHidden());
        const platform::ToolBand* const toolbar = model(window).band(QStringLiteral("Toolbar"));
        QCOMPARE(app::toTwips(ab1->height()), toolbar->size().height());
        QVERIFY(toolbar->size().width() > 2 * toolbar->size().height());
        QCOMPARE(app::toTwips(ab1->width()), std::min(toolbar->size().width(), window.width() * 15));
        const platform::ToolBand* const menu = model(window).band(QStringLiteral("NewImage"));
        QCOMPARE(menu->tool(QStringLiteral("miSlideShowMenu"))->values().kind, platform::ToolKind::DropDown);
    }

    void theMailCommandNeedsItsTool_data()
    {
        QTest::addColumn<bool>("installed");
        QTest::newRow("installed") << true;
        QTest::newRow("absent") << false;
    }

    void theMailCommandNeedsItsTool()
    {
        QFETCH(bool, installed);
        if (installed)
            QVERIFY(app::RegWriteValue(
                app::Root::LocalMachine, QStringLiteral("Software\\Halvexa\\Common\\ProgramPaths"),
                QStringLiteral("postrel"), m_bench->home.write(QStringLiteral("postrel"), "#!")));
        frmImageView& window = built();
        const platform::ToolBand* const toolbar = model(window).band(QStringLiteral("Toolbar"));
        QCOMPARE(toolbar->tool(QStringLiteral("miEmailImage")) != nullptr, installed);
        QCOMPARE(model(window).tool(QStringLiteral("miEmailImage")) != nullptr, installed);
        QCOMPARE(window.interfaceTools()->shortcuts().tools('E', 2),
                 installed ? QStringList{"miEmailImage"} : QStringList());
    }

    void theBuildComesByItself()
    {
        frmImageView& window = m_bench->load();
        QVERIFY(!window.interfaceTools()->isBuilt());
        window.buildInterfaceSoon();
        QTRY_VERIFY(window.interfaceTools()->isBuilt());
        QVERIFY(!window.panes()->ab1()->menus()->menu());
    }

    void theFirstRightClickBuildsAndShowsNothing()
    {
        frmImageView& window = m_bench->load();
        QVERIFY(!window.interfaceTools()->isBuilt());
        window.OpenMenuX(false);
        QVERIFY(window.interfaceTools()->isBuilt());
        QVERIFY(!window.panes()->ab1()->menus()->menu());
        window.OpenMenuX(false);
        QVERIFY(window.panes()->ab1()->menus()->menu());
    }
};

QTEST_MAIN(TestWindowCommands)
#include "tst_windowcommands.moc"
