// The handles and the splitter between the panes, and the places of list and button beside them.
#include "app/Colors.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "controls/uLink.h"
#include "PaneStage.h"
#include "platform/MenuControl.h"
#include "viewer/DragHandle.h"
#include "viewer/ViewerBench.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using namespace quorvia::test;
using viewer::frmImageView;
namespace setting = app::setting;

class TestPaneHandles : public QObject, private PaneStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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

    void theButtonBesideTheToolbarIsReachedByTab()
    {
        frmImageView& window = open();
        sizeToolbar(window, {300, 40});
        window.panes()->ab1()->show();
        window.RunTool(QStringLiteral("miHideInterface"));
        auto* const iButton = window.findChild<QAbstractButton*>(QStringLiteral("iButton"));
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        window.setFocus();
        constexpr int mostStops = 20;
        for (int i = 0; i < mostStops && !iButton->hasFocus(); ++i)
            QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
        QVERIFY(iButton->hasFocus());
        QTRY_VERIFY(!window.findChild<QTimer*>(QStringLiteral("tWait"))->isActive());
        QTest::keyClick(window.windowHandle(), Qt::Key_Right);
        QCOMPARE(window.lastTool(), QStringLiteral("miNext"));
        QVERIFY(iButton->hasFocus());
        QTest::keyClick(window.windowHandle(), Qt::Key_Space);
        QVERIFY(iButton->isHidden());
        QVERIFY(window.hasFocus());
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
};

QTEST_MAIN(TestPaneHandles)
#include "tst_panehandles.moc"
