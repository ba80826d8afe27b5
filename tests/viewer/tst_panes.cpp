// The panes of the main window, driven by its commands: after each of them everything has its place.
#include "app/Colors.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/gnTab.h"
#include "controls/uLink.h"
#include "PaneStage.h"
#include "platform/MenuControl.h"
#include "viewer/ViewerBench.h"

#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using viewer::frmImageView;
namespace setting = app::setting;

class TestPanes : public QObject, private PaneStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void thePanesExistUnderTheirNames()
    {
        frmImageView& window = open();
        const std::pair<const char*, const char*> tree[] = {{"pMain", "frmImageView"},
                                                            {"ab1", "pMain"},
                                                            {"iButton", "pMain"},
                                                            {"Line1", "pMain"},
                                                            {"aP", "pMain"},
                                                            {"pMove", "pMain"},
                                                            {"pTop", "aP"},
                                                            {"pFilebar", "pTop"},
                                                            {"uLink", "pTop"},
                                                            {"gTab", "pTop"},
                                                            {"pContain", "pTop"},
                                                            {"pInformation", "pTop"},
                                                            {"pFilmStrip", "pTop"},
                                                            {"pSize", "pTop"},
                                                            {"pCapture", "pTop"},
                                                            {"ix1", "pContain"},
                                                            {"sb1", "pContain"},
                                                            {"sb2", "pContain"},
                                                            {"pWelcome", "pContain"},
                                                            {"pShowInfo", "pInformation"},
                                                            {"pInfoShow2", "pInformation"},
                                                            {"pFilm", "pFilmStrip"}};
        for (const auto& [name, inside] : tree) {
            const auto found = window.findChildren<QWidget*>(QLatin1String(name));
            QVERIFY2(found.size() == 1, name);
            QVERIFY2(found.first()->parentWidget()->objectName() == QLatin1String(inside), name);
        }
        QCOMPARE(window.panes()->bPlay()->caption(), QStringLiteral("Picture List"));
        QCOMPARE(window.panes()->bInfo()->caption(), QStringLiteral("Resource Panel"));
    }

    void thePanesHaveTheirPlacesBeforeTheWindowShows()
    {
        frmImageView& window = m_bench->make();
        window.resize(900, 700);
        window.layoutPanes();
        const QSize box = window.viewport()->loadBox(); // for which the first picture is read
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.size(), QSize(900, 700));
        QCOMPARE(window.viewport()->loadBox(), box);
        QCOMPARE(box, window.pContain()->size() * window.devicePixelRatioF());
    }

    void whileTheFlagIsSetTheViewportTakesAll()
    {
        frmImageView& window = open();
        QVERIFY(window.panes()->interfaceFlag());
        for (const char* key : {"Information", "Filmstrip", "Image"}) {
            window.panes()->gTab()->SetSelectedTab(QString::fromLatin1(key));
            QVERIFY(fills(window, {window.pContain()}));
            QCOMPARE(app::read(setting::ActiveTabWindow), QString::fromLatin1(key));
        }
    }

    void theTabsPlaceTheirPanes()
    {
        frmImageView& window = open();
        window.RunTool(QStringLiteral("miHideInterface"));
        viewer::Panes* const panes = window.panes();
        QVERIFY(!panes->interfaceFlag());
        panes->gTab()->SetSelectedTab(QStringLiteral("Information"));
        QVERIFY(fills(window, {window.pContain(), panes->pInformation()}));
        const auto* pShowInfo = window.findChild<QWidget*>(QStringLiteral("pShowInfo"));
        const QSize inside =
            app::toPixels(QRect({}, app::inTwips(panes->pInformation()->size()) - QSize(80, 80))).size();
        QCOMPARE(pShowInfo->size(), inside);
        QCOMPARE(app::toTwips(pShowInfo->x()) / 15, 40 / 15);
        panes->gTab()->SetSelectedTab(QStringLiteral("Filmstrip"));
        QVERIFY(panes->pInformation()->isHidden());
        QVERIFY(fills(window, {window.pContain(), handle(window, "pSize"), panes->pFilmStrip()}));
        panes->gTab()->SetSelectedTab(QStringLiteral("Image"));
        QVERIFY(panes->pFilmStrip()->isHidden() && handle(window, "pSize")->isHidden());
        QVERIFY(fills(window, {window.pContain()}));
        window.RunTool(QStringLiteral("miHideInterface"));
        QVERIFY(panes->interfaceFlag());
        panes->gTab()->SetSelectedTab(QStringLiteral("Filmstrip"));
        QVERIFY(fills(window, {window.pContain()})); // not beside the pane, in front of it
        QVERIFY(window.pTop()->children().indexOf(window.pContain()) >
                window.pTop()->children().indexOf(panes->pFilmStrip()));
    }

    void aChangeOfTabsClearsTheBusyMark()
    {
        frmImageView& window = open();
        window.panes()->gTab()->SetTag(QStringLiteral("busy"));
        window.panes()->gTab()->SetSelectedTab(QStringLiteral("Information"));
        QCOMPARE(window.panes()->gTab()->Tag(), QString());
    }

    void theViewCommandsClearTheFlagFirst_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("key");
        QTest::newRow("picture") << "miViewNormal"
                                 << "Image";
        QTest::newRow("information") << "miViewInformation"
                                     << "Information";
        QTest::newRow("information, by its other name") << "miInformation"
                                                        << "Information";
        QTest::newRow("filmstrip") << "miViewFilmstrip"
                                   << "Filmstrip";
    }

    void theViewCommandsClearTheFlagFirst()
    {
        QFETCH(QString, command);
        frmImageView& window = open();
        for (int i = 0; i < 2; ++i) { // the second time the flag is clear already
            window.RunTool(command);
            QVERIFY(!window.panes()->interfaceFlag());
            QTEST(window.panes()->gTab()->SelectedTabKey(), "key");
        }
    }

    void aNarrowWindowHasNoFilebar_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("shows");
        QTest::newRow("below 8000 twips") << 533 << false;
        QTest::newRow("from 8000 twips on") << 534 << true;
    }

    void aNarrowWindowHasNoFilebar()
    {
        QFETCH(int, width);
        frmImageView& window = open();
        window.resize(width, 500);
        QTEST(!window.findChild<QWidget*>(QStringLiteral("pFilebar"))->isHidden(), "shows");
        window.panes()->bPlay()->setDockingArea(platform::dockingArea::top);
        window.panes()->bPlay()->setVisible(true);
        QTEST(!window.findChild<QWidget*>(QStringLiteral("pFilebar"))->isHidden(), "shows");
    }

    void aStripStoredForAHigherWindowLeavesThePicture()
    {
        app::save(setting::FilmStripHeight, 2147483647);
        app::save(setting::ToggleInterface, 0);
        app::save(setting::ActiveTabWindow, QStringLiteral("Filmstrip"));
        frmImageView& window = open();
        QVERIFY(window.pContain()->height() >= 100 / 15);
        QVERIFY(fills(window, {window.pContain(), handle(window, "pSize"), window.panes()->pFilmStrip()}));
    }

    void aTabOfNoNameGivesWayToThePicture()
    {
        app::save(setting::ActiveTabWindow, QStringLiteral("no tab"));
        QCOMPARE(open().panes()->gTab()->SelectedTabKey(), QStringLiteral("Image"));
    }

    void theClearFlagPutsTheViewportBehind()
    {
        app::save(setting::ToggleInterface, 0);
        frmImageView& window = open();
        const auto isBehind = [&window](const QWidget* pane) {
            const QObjectList& order = window.pTop()->children();
            return order.indexOf(window.pContain()) < order.indexOf(const_cast<QWidget*>(pane));
        };
        QVERIFY(isBehind(window.panes()->pFilmStrip()));
        window.RunTool(QStringLiteral("miHideInterface"));
        QVERIFY(!isBehind(window.panes()->pFilmStrip()));
        window.RunTool(QStringLiteral("miHideInterface"));
        QVERIFY(isBehind(window.panes()->pFilmStrip()));
    }

    void theLinkStandsAtTheRight()
    {
        frmImageView& window = open();
        QWidget* const uLink = window.panes()->uLink();
        uLink->show();
        window.layoutPanes();
        const int right = app::toTwips(window.pTop()->width() - uLink->width()) - 100;
        QCOMPARE(uLink->x(), app::toPixels(right));
    }

    void theWelcomeIsStretchedOverTheViewport()
    {
        frmImageView& window = open();
        window.panes()->pWelcome()->show();
        window.resize(800, 600);
        QCOMPARE(window.panes()->pWelcome()->geometry(), window.pContain()->rect());
    }

    void theToolbarBelongsToTheChrome()
    {
        const frmImageView& window = open();
        for (const char* name : {"pTop", "pFilebar", "pFilmStrip", "pInformation", "ab1"})
            QCOMPARE(app::paneColor(window.findChild<QWidget*>(QLatin1String(name))), QColor(0, 121, 191));
        QCOMPARE(window.panes()->gTab()->BackColor(), quint32(app::toColorNumber(QColor(0, 121, 191))));
        QCOMPARE(window.panes()->gTab()->TabTextColor(), quint32(app::toColorNumber(Qt::white)));
    }

    void theWindowFitsThePictureAt100Percent()
    {
        m_bench->picture(QStringLiteral("large.png"), Qt::red, QSize(600, 300));
        frmImageView& window = m_bench->load({m_bench->in("large.png")});
        QWidget* const ab1 = window.panes()->ab1();
        sizeToolbar(window, {300, 40});
        ab1->show();
        window.RunTool(QStringLiteral("miZoomIn")); // which does not count
        window.showMaximized();
        QVERIFY(window.isMaximized());
        window.FitWindowToImage();
        QVERIFY(!window.isMaximized());
        const double twips = app::twipsPerPixel / window.devicePixelRatioF();
        QCOMPARE(window.size(), QSize(app::toPixels(int(600 * twips) + 200),
                                      app::toPixels(int(300 * twips) + 40 * 15 + 700)));
    }

    void theWindowFitsThePicture()
    {
        m_bench->picture(QStringLiteral("large.png"), Qt::red, QSize(640, 480));
        frmImageView& window = m_bench->load({m_bench->in("large.png")});
        const QPoint corner = window.pos();
        window.FitWindowToImage();
        const double twips = app::twipsPerPixel / window.devicePixelRatioF(); // a pixel of the picture
        QCOMPARE(window.size(),
                 QSize(app::toPixels(int(640 * twips) + 200), app::toPixels(int(480 * twips) + 700)));
        QCOMPARE(window.pos(), corner);
        window.RunTool(QStringLiteral("miCloseImage"));
        window.resize(700, 500);
        window.FitWindowToImage(); // nothing to fit to
        QCOMPARE(window.size(), QSize(700, 500));
    }

    void theBandOfTheLastRunComesBackOnlyToABareStart_data()
    {
        QTest::addColumn<int>("cLayout");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("comes");
        QTest::newRow("as it was left") << 1 << QString() << true;
        QTest::newRow("not wanted") << 0 << QString() << false;
        QTest::newRow("a switch alone") << 1 << QStringLiteral("/miActualSize") << false;
    }

    void theBandOfTheLastRunComesBackOnlyToABareStart()
    {
        QFETCH(int, cLayout);
        QFETCH(QString, line);
        app::save(setting::cLayout, cLayout);
        app::save(setting::cLayoutFiles, -1);
        app::save(setting::cLayoutFilesAlign, platform::dockingArea::right);
        app::save(setting::cLayoutFilesWidth, 3000);
        const frmImageView& window = m_bench->load(line.isEmpty() ? QStringList() : QStringList{line});
        QTEST(window.panes()->bPlay()->visible(), "comes");
        QTEST(window.panes()->bPlay()->dockingArea() == platform::dockingArea::right, "comes");
        QTEST(window.panes()->bPlay()->wantedState().width == 200, "comes");
        const int designed = app::toTwips(window.panes()->bPlay()->width());
        m_bench->close(); // which stores what there was
        QFETCH(bool, comes);
        QCOMPARE(app::read(setting::cLayoutFiles), comes ? -1 : 0);
        QCOMPARE(app::read(setting::cLayoutFilesWidth, 0), comes ? 3000 : designed);
    }

    void zoomCommandsLeaveTheFitFirst()
    {
        frmImageView& window = open();
        QVERIFY(window.viewport()->FitToWindow());
        window.RunTool(QStringLiteral("miZoomIn"));
        QVERIFY(!window.viewport()->FitToWindow());
        QCOMPARE(window.ix1()->ZoomFactor(), 1.2);
        window.RunTool(QStringLiteral("miZoomOut"));
        window.RunTool(QStringLiteral("miZoomOut"));
        QCOMPARE(window.ix1()->ZoomFactor(), 0.8);
        QCOMPARE(window.lastTool(), QStringLiteral("miZoomOut"));
        window.RunTool(QStringLiteral("miBestFit"));
        QVERIFY(window.viewport()->FitToWindow());
        QCOMPARE(window.ix1()->ZoomFactor(), 1.0);
        window.RunTool(QStringLiteral("miZoomOut"));
        QVERIFY(!window.viewport()->FitToWindow());
        QCOMPARE(window.ix1()->ZoomFactor(), 0.8);
    }

    void aFileOnTheLineGetsTheBandAsDesigned()
    {
        app::save(setting::cLayoutFiles, -1);
        m_bench->load({m_bench->in("pics/a.png")});
        QVERIFY(!m_bench->load({m_bench->in("pics/a.png")}).panes()->bPlay()->visible());
        m_bench->close();
        QCOMPARE(app::read(setting::cLayoutFiles), 0);
        app::save(setting::cLayoutFiles, -1);
        QVERIFY(m_bench->load().panes()->bPlay()->visible());
    }
};

QTEST_MAIN(TestPanes)
#include "tst_panes.moc"
