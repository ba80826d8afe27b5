// The panes of the main window, driven by its commands and handles: after each of them everything has its
// place.
#include "app/Colors.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/gnTab.h"
#include "controls/uLink.h"
#include "platform/MenuControl.h"
#include "platform/ToolControl.h"
#include "viewer/DragHandle.h"
#include "viewer/ViewerBench.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;
namespace setting = app::setting;

class TestPanes : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

    frmImageView& open()
    {
        frmImageView& window = m_bench->load({m_bench->in("pics")});
        window.resize(900, 700);
        QCoreApplication::processEvents();
        return window;
    }

    static QRect place(const QWidget* pane, const frmImageView& window)
    {
        return {pane->mapTo(&window, QPoint()), pane->size()};
    }

    /// True when the panes fill pTop from top to bottom without a hole; twips rounded up to pixels may
    /// overlap by one.
    static bool fills(const frmImageView& window, const QList<const QWidget*>& panes)
    {
        int y = window.panes()->gTab()->geometry().bottom() + 1;
        for (const QWidget* pane : panes) {
            if (pane->isHidden() || pane->y() > y || pane->y() < y - 1 ||
                pane->width() != window.pTop()->width())
                return false;
            y = pane->geometry().bottom() + 1;
        }
        return y == window.pTop()->height() || y == window.pTop()->height() + 1;
    }

    static void sizeToolbar(const frmImageView& window, QSize pixels)
    {
        window.panes()->ab1()->setWidthInTwips(app::toTwips(pixels.width()));
        window.panes()->ab1()->setHeightInTwips(app::toTwips(pixels.height()));
    }

    static viewer::DragHandle* handle(const frmImageView& window, const char* name)
    {
        return window.findChild<viewer::DragHandle*>(QLatin1String(name));
    }

    static void drag(viewer::DragHandle* handle, QPoint by)
    {
        const QPoint middle = handle->rect().center();
        QTest::mousePress(handle, Qt::LeftButton, {}, middle);
        QTest::mouseMove(handle, middle + by);
        QTest::mouseRelease(handle, Qt::LeftButton, {}, handle->rect().center());
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<ViewerBench>();
        m_bench->threePictures();
    }
    void cleanup() { m_bench.reset(); }

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

    void theListBandMakesRoomAndGivesItBack()
    {
        frmImageView& window = open();
        const QRect alone = place(window.pContain(), window);
        QVERIFY(!window.findChild<QWidget*>(QStringLiteral("pFilebar"))->isHidden());
        window.RunTool(QStringLiteral("miFileList"));
        QVERIFY(window.panes()->bPlay()->visible());
        QVERIFY(window.findChild<QWidget*>(QStringLiteral("pFilebar"))->isHidden());
        QVERIFY(!handle(window, "pMove")->isHidden());
        const QRect beside = place(window.pContain(), window);
        QVERIFY(beside.left() >= window.panes()->bPlay()->width());
        QCOMPARE(beside.right(), alone.right());
        window.RunTool(QStringLiteral("miFilelistMenu"));
        QVERIFY(!window.panes()->bPlay()->visible());
        QVERIFY(handle(window, "pMove")->isHidden());
        QCOMPARE(place(window.pContain(), window), alone);
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

    void theSplitterStopsAtItsLimits_data()
    {
        QTest::addColumn<int>("by");
        QTest::newRow("far down") << 600;
        QTest::newRow("far up") << -600;
    }

    void theSplitterStopsAtItsLimits()
    {
        QFETCH(int, by);
        frmImageView& window = open();
        window.RunTool(QStringLiteral("miViewFilmstrip"));
        drag(handle(window, "pSize"), {0, by});
        const int inside = app::toTwips(window.pTop()->height());
        const int top = by > 0 ? inside - 1000 : app::toTwips(window.pContain()->y()) + 100;
        const int height = inside - top - app::toTwips(handle(window, "pSize")->height());
        QCOMPARE(app::read(setting::FilmStripHeight, 0), height);
        QVERIFY(window.ix1()->isHidden()); // for a moment, as while the window changes its size
        QTRY_VERIFY(!window.ix1()->isHidden());
        m_bench->close();
        frmImageView& again = m_bench->load({m_bench->in("pics")});
        QCOMPARE(again.panes()->filmStripHeight(), height);
    }

    void theSplitterStandsAtItsLimitWhileItIsDragged()
    {
        frmImageView& window = open();
        window.RunTool(QStringLiteral("miViewFilmstrip"));
        viewer::DragHandle* const pSize = handle(window, "pSize");
        const QPoint middle = pSize->rect().center();
        QTest::mousePress(pSize, Qt::LeftButton, {}, middle);
        QTest::mouseMove(pSize, middle + QPoint(0, 2000));
        QCOMPARE(app::toTwips(pSize->y()), app::toTwips(window.pTop()->height()) - 1000 - 1000 % 15 + 10 - 5);
        QCOMPARE(window.findChild<QTimer*>(QStringLiteral("tUpdate"))->interval(), 100);
        QTest::mouseRelease(pSize, Qt::LeftButton, {}, middle);
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

    void theListsHandleStopsAtTheWindow_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<int>("by");
        for (const int by : {-5000, 5000}) {
            QTest::addRow("on the left, by %d", by) << platform::dockingArea::left << by;
            QTest::addRow("on the right, by %d", by) << platform::dockingArea::right << by;
        }
    }

    void theListsHandleStopsAtTheWindow()
    {
        QFETCH(int, area);
        QFETCH(int, by);
        frmImageView& window = open();
        platform::Band* const bPlay = window.panes()->bPlay();
        bPlay->setDockingArea(area);
        bPlay->setVisible(true);
        window.layoutPanes();
        drag(handle(window, "pMove"), {by, 0});
        QVERIFY(bPlay->visible());
        QVERIFY(bPlay->width() > 0 && bPlay->width() < window.width());
        QVERIFY(window.rect().contains(place(handle(window, "pMove"), window)));
        QVERIFY(window.rect().contains(place(window.pTop(), window)));
        drag(handle(window, "pMove"), {-by / 20, 0}); // it can be taken again
        QVERIFY(bPlay->width() > 0 && bPlay->width() < window.width());
    }

    void theListsHandleMovesAloneWhileItIsDragged()
    {
        frmImageView& window = open();
        window.RunTool(QStringLiteral("miFileList"));
        viewer::DragHandle* const pMove = handle(window, "pMove");
        const QRect view = place(window.pTop(), window);
        const int before = pMove->x();
        const QPoint middle = pMove->rect().center();
        QTest::mousePress(pMove, Qt::LeftButton, {}, middle);
        QTest::mouseMove(pMove, middle + QPoint(40, 0));
        QCOMPARE(pMove->x(), before + 40);
        QCOMPARE(place(window.pTop(), window), view);
        QTest::mouseRelease(pMove, Qt::LeftButton, {}, middle);
        QCOMPARE(place(window.pTop(), window).left(), view.left() + 40);
    }

    void theListsHandleStandsOnlyBesideAnUprightBand_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<bool>("shows");
        QTest::newRow("left") << platform::dockingArea::left << true;
        QTest::newRow("right") << platform::dockingArea::right << true;
        QTest::newRow("top") << platform::dockingArea::top << false;
        QTest::newRow("bottom") << platform::dockingArea::bottom << false;
        QTest::newRow("floating") << platform::dockingArea::floating << false;
    }

    void theListsHandleStandsOnlyBesideAnUprightBand()
    {
        QFETCH(int, area);
        frmImageView& window = open();
        window.panes()->bPlay()->setDockingArea(area);
        window.RunTool(QStringLiteral("miFileList"));
        QTEST(!handle(window, "pMove")->isHidden(), "shows");
    }

    void theListIsSizedByItsHandle_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<int>("by");
        QTest::addColumn<int>("change");
        QTest::newRow("on the left, outwards") << platform::dockingArea::left << 60 << 60;
        QTest::newRow("on the left, back") << platform::dockingArea::left << -60 << -60;
        QTest::newRow("on the right, outwards") << platform::dockingArea::right << -60 << 60;
    }

    void theListIsSizedByItsHandle()
    {
        QFETCH(int, area);
        QFETCH(int, by);
        QFETCH(int, change);
        frmImageView& window = open();
        platform::Band* const bPlay = window.panes()->bPlay();
        bPlay->setDockingArea(area);
        bPlay->setVisible(true);
        window.layoutPanes();
        const int before = bPlay->width();
        drag(handle(window, "pMove"), {by, 0});
        QCOMPARE(bPlay->width(), before + change);
        const QRect grip = place(handle(window, "pMove"), window);
        const QRect view = place(window.pTop(), window);
        QCOMPARE(area == platform::dockingArea::left ? grip.right() + 1 : grip.left() - 1,
                 area == platform::dockingArea::left ? view.left() : view.right());
    }

    void theButtonStandsBesideTheToolbarWhileThePanesAreOut()
    {
        frmImageView& window = open();
        auto* iButton = window.findChild<QAbstractButton*>(QStringLiteral("iButton"));
        QVERIFY(iButton->isHidden());
        QWidget* const ab1 = window.panes()->ab1();
        sizeToolbar(window, {300, 40});
        ab1->show();
        window.layoutPanes();
        QVERIFY(iButton->isHidden());
        window.RunTool(QStringLiteral("miHideInterface"));
        QVERIFY(!iButton->isHidden());
        QCOMPARE(ab1->geometry(), QRect(300, 660, 300, 40));
        QCOMPARE(iButton->y(), 660 + 40 / 15);
        const auto* Line1 = window.findChild<QWidget*>(QStringLiteral("Line1"));
        QCOMPARE(Line1->geometry(), QRect(0, (660 * 15 - 10) / 15, 900, 1));
        QCOMPARE(window.panes()->aP()->geometry().height(), (660 * 15 - 10 - 10 + 14) / 15);
        window.RunTool(QStringLiteral("miQuickHide"));
        QVERIFY(iButton->isHidden() && Line1->isHidden());
        ab1->show(); // the bench's own toolbar has no tools
        window.RunTool(QStringLiteral("miQuickHide"));
        ab1->show();
        window.layoutPanes();
        sizeToolbar(window, {880, 40});
        window.layoutPanes();
        QVERIFY(iButton->isHidden()); // for want of room
        sizeToolbar(window, {300, 40});
        window.layoutPanes();
        iButton->click();
        QVERIFY(window.panes()->interfaceFlag());
        QVERIFY(iButton->isHidden());
    }

    void aClickOnTheFilebarShowsTheList()
    {
        frmImageView& window = open();
        window.RunTool(QStringLiteral("miHideInterface"));
        auto* const label = window.findChild<QPushButton*>(QStringLiteral("lFilebar"));
        QVERIFY(label->isVisible());
        QTest::mouseClick(label, Qt::LeftButton);
        QVERIFY(window.panes()->bPlay()->visible());
        QCOMPARE(window.lastTool(), QStringLiteral("miFileList"));
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
