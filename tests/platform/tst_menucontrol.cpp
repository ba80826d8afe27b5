// The menu control on the (offscreen) screen: bands shown, hidden and docked at every side, and what is read
// back of them.
#include "MenuControlBench.h"
#include "platform/MenuControl.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace quorvia::platform;

namespace {

void dragSplitter(QWidget* control, QPoint from, QPoint to)
{
    QTest::mouseMove(control, from);
    QTest::mousePress(control, Qt::LeftButton, {}, from);
    // The bench's own mouse move has no buttons; a splitter follows only a held one.
    const auto move = [&](QPoint at) {
        QMouseEvent event(QEvent::MouseMove, at, control->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(control, &event);
        QCoreApplication::processEvents();
    };
    move((from + to) / 2);
    move(to);
    QTest::mouseRelease(control, Qt::LeftButton, {}, to);
}

} // namespace

class TestMenuControl : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void isAWidgetAmongOthers();
    void bandsByName();
    void aWindowWithoutRoomWarnsOfNothing();
    void nothingIsMadeUntilShown();
    void placesBeforeTheWindowIsShown();
    void clients();
    void clientAreas();
    void visibility();
    void everySide_data();
    void everySide();
    void fromSideToSide();
    void unknownAreas_data();
    void unknownAreas();
    void sizesOfHiddenBands();
    void damagedStates_data();
    void damagedStates();
    void splitterDrags();
    void narrowWindows();
    void bandsOfOneSideShareItsWidth();
    void hiddenClientArea();
    void signalsTellOfChangesOnly();
    void bandsGoWithTheControl();
};

void TestMenuControl::isAWidgetAmongOthers()
{
    MenuControlBench bench;
    bench.open();
    QVERIFY(!bench.control->isWindow());
    QCOMPARE(bench.control->parentWidget(), &bench);
    const std::unique_ptr<QMenu> menu(bench.control->createPopupMenu());
    QVERIFY(!menu);
}

void TestMenuControl::aWindowWithoutRoomWarnsOfNothing()
{
    MenuControlBench bench;
    bench.info->setVisible(true);
    bench.open();
    QTest::failOnWarning(QRegularExpression(QStringLiteral("resizeDocks")));
    for (int side = 200; side >= 0; side -= 10) {
        bench.control->resize(side, side);
        bench.control->recalcLayout();
    }
    QVERIFY(bench.control->width() < 200);
}

void TestMenuControl::bandsByName()
{
    MenuControlBench bench;
    QCOMPARE(bench.control->band(QStringLiteral("bPlay")), bench.list);
    QCOMPARE(bench.control->band(QStringLiteral("bInfo")), bench.info);
    QVERIFY(!bench.control->band(QStringLiteral("bplay")));
    QVERIFY(!bench.control->band({}));
    QCOMPARE(bench.list->toolName(), QStringLiteral("fPlaylist"));
    QCOMPARE(bench.list->caption(), QStringLiteral("Picture List"));
    QCOMPARE(bench.list->dockingArea(), dockingArea::left);
    QCOMPARE(bench.info->dockingArea(), dockingArea::right);
    QVERIFY(!bench.list->visible());
    const Band* odd = bench.control->addBand(QStringLiteral("bOdd"), {}, {}, dockingArea::floating);
    QCOMPARE(odd->dockingArea(), dockingArea::left);
}

void TestMenuControl::nothingIsMadeUntilShown()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setDockingArea(dockingArea::bottom);
    bench.list->setWidth(300);
    bench.list->setVisible(false);
    QVERIFY(bench.control->findChildren<QDockWidget*>().isEmpty());
    QCOMPARE(bench.top->size(), bench.control->size());
    bench.list->setVisible(true);
    QCOMPARE(bench.control->findChildren<QDockWidget*>().size(), 1);
    QVERIFY(bench.dockOf(bench.list)->findChild<QWidget*>(QStringLiteral("fPlaylist")));
}

void TestMenuControl::placesBeforeTheWindowIsShown()
{
    MenuControlBench bench;
    bench.list->setWidth(300);
    bench.list->setVisible(true);
    bench.control->recalcLayout();
    const QRect before = bench.top->geometry();
    QVERIFY(before.left() > 300 && before.left() < 320);
    QCOMPARE(before.right(), 899);
    bench.open();
    QCOMPARE(bench.top->geometry(), before);
    QCOMPARE(bench.list->width(), 300);
}

void TestMenuControl::clients()
{
    MenuControlBench bench;
    bench.open();
    QVERIFY(!bench.listClient->isVisible());
    bench.list->setVisible(true);
    QVERIFY(bench.listClient->isVisible());
    QCOMPARE(bench.listClient->width(), bench.list->width());
    QVERIFY(bench.dockOf(bench.list)->isAncestorOf(bench.listClient));

    const std::unique_ptr<QWidget> former(bench.listClient);
    auto* window = new QWidget(nullptr, Qt::Window);
    bench.list->setClient(window);
    QVERIFY(!window->isWindow());
    QVERIFY(window->isVisible());
    QCOMPARE(bench.list->client(), window);
    QVERIFY(!former->isVisible());
    QVERIFY(!former->parentWidget());

    delete window;
    QVERIFY(!bench.list->client());
    bench.list->setClient(nullptr);

    auto* early = new QWidget;
    bench.info->setClient(early); // not shown yet
    bench.info->setClient(nullptr);
    QVERIFY(!early->parentWidget());
    delete early;
}

void TestMenuControl::clientAreas()
{
    MenuControlBench bench;
    bench.open();
    QCOMPARE(bench.control->centralWidget(), bench.top);
    auto* other = new QWidget;
    bench.control->setClientArea(other);
    QCOMPARE(bench.control->centralWidget(), other);
    QCOMPARE(bench.placeOf(other), bench.control->rect());
    QVERIFY(other->isVisible());
    QVERIFY(!bench.top->isVisible());
    bench.control->setClientArea(bench.top); // hidden by the change: it stays so
    QVERIFY(!bench.top->isVisible());
    delete other;
}

void TestMenuControl::visibility()
{
    MenuControlBench bench;
    bench.open();
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    bench.list->setVisible(true);
    QVERIFY(bench.dockOf(bench.list)->isVisible());
    QVERIFY(bench.top->width() < 900);
    bench.list->setVisible(false);
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.top->width(), 900); // at once, without waiting for events
    QCOMPARE(shown.size(), 2);
    QCOMPARE(shown[0][0].toBool(), true);
    QCOMPARE(shown[1][0].toBool(), false);

    bench.list->setVisible(true);
    bench.hide();
    QVERIFY(bench.list->visible()); // the main window's doing does not count
    QCOMPARE(shown.size(), 3);
}

void TestMenuControl::everySide_data()
{
    QTest::addColumn<int>("area");
    QTest::newRow("left") << dockingArea::left;
    QTest::newRow("right") << dockingArea::right;
    QTest::newRow("top") << dockingArea::top;
    QTest::newRow("bottom") << dockingArea::bottom;
}

void TestMenuControl::everySide()
{
    QFETCH(int, area);
    MenuControlBench bench;
    bench.open();
    BandState state = bench.list->state();
    state.visible = true;
    state.area = area;
    state.width = 333;
    state.height = 155;
    bench.list->apply(state);

    QCOMPARE(bench.list->dockingArea(), area);
    QCOMPARE(bench.list->state(), state);
    const QRect place = bench.placeOf(bench.list);
    const QRect client = bench.placeOf(bench.top);
    if (isUpright(area))
        QCOMPARE(place.size(), QSize(333, 600));
    else
        QCOMPARE(place.size(), QSize(900, 155));
    const bool first = area == dockingArea::left || area == dockingArea::top;
    QCOMPARE(place.topLeft() == QPoint(0, 0), first);
    QVERIFY(!place.intersects(client));
    QVERIFY(isUpright(area) ? client.width() > 550 && client.height() == 600
                            : client.height() > 430 && client.width() == 900);
    bench.list->toggleFloating();
    bench.list->toggleFloating();
    QCOMPARE(bench.list->dockingArea(), area); // the side is kept
}

void TestMenuControl::fromSideToSide()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setWidth(333);
    bench.setHeight(bench.list, 155);
    bench.list->setVisible(true);
    const QSignalSpy moved(bench.list, &Band::areaChanged);
    int changes = 0;
    for (const int area : {2, 1, 3, 0, 3, 1, 2, 0, 1, 0}) {
        bench.list->setDockingArea(area);
        ++changes;
        QCOMPARE(bench.list->dockingArea(), area);
        QCOMPARE(moved.size(), changes);
        QCOMPARE(moved.last()[0].toInt(), area);
        QCOMPARE(bench.placeOf(bench.list).size(), isUpright(area) ? QSize(333, 600) : QSize(900, 155));
        QCOMPARE(bench.list->width(), 333);
        QCOMPARE(bench.list->height(), 155);
    }
}

void TestMenuControl::unknownAreas_data()
{
    QTest::addColumn<int>("area");
    for (const int area : {-1, 5, 1 << 30})
        QTest::addRow("%d", area) << area;
}

void TestMenuControl::unknownAreas()
{
    QFETCH(int, area);
    MenuControlBench bench;
    bench.open();
    bench.info->setVisible(true);
    bench.info->setDockingArea(area);
    QCOMPARE(bench.info->dockingArea(), dockingArea::right);
}

void TestMenuControl::sizesOfHiddenBands()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setWidth(310);
    bench.list->setVisible(false);
    QCOMPARE(bench.list->width(), 310);
    bench.list->setWidth(350);
    bench.setHeight(bench.list, 144);
    QCOMPARE(bench.list->width(), 350);
    bench.list->setVisible(true);
    QCOMPARE(bench.placeOf(bench.list).width(), 350);
    bench.list->setVisible(false);
    bench.list->setDockingArea(dockingArea::top);
    QCOMPARE(bench.list->dockingArea(), dockingArea::top);
    bench.list->setVisible(true);
    QCOMPARE(bench.placeOf(bench.list), QRect(0, 0, 900, 144));
}

void TestMenuControl::damagedStates_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QPoint>("position");
    for (const int length : {0, -1, -1000000000, 1, 1000000000, 2147483647})
        QTest::addRow("%d", length) << length << length << QPoint(length, length);
}

void TestMenuControl::damagedStates()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QPoint, position);
    for (int area = -1; area <= 5; ++area) {
        MenuControlBench bench;
        bench.open();
        bench.list->apply({true, area, width, height, position, {width, height}});
        QVERIFY(bench.dockOf(bench.list)->isVisible());
        QVERIFY(isDockingArea(bench.list->dockingArea()));
        const QSize size = bench.dockOf(bench.list)->size();
        QVERIFY(size.width() >= smallestBand && size.height() >= smallestBand);
        QVERIFY(bench.top->width() >= 60 && bench.top->height() >= 60);
        if (bench.list->dockingArea() == dockingArea::floating) {
            QVERIFY(bench.screen()->availableGeometry().intersects(bench.floatingRect(bench.list)));
            QTRY_COMPARE(bench.dockOf(bench.list)->geometry(), bench.floatingRect(bench.list));
        }
    }
}

void TestMenuControl::splitterDrags()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setWidth(300);
    bench.list->setVisible(true);
    const QSignalSpy changed(bench.list, &Band::geometryChanged);
    const QPoint splitter(301, 300);
    dragSplitter(bench.control, splitter, splitter + QPoint(50, 0));
    QVERIFY(changed.size() > 0);
    QCOMPARE(bench.list->width(), 350);
    QCOMPARE(bench.placeOf(bench.list).width(), 350);
    bench.control->recalcLayout(); // does not undo the user's work
    QCOMPARE(bench.list->width(), 350);
    bench.resize(1000, 600);
    QCOMPARE(bench.list->width(), 350);
    bench.list->setVisible(false);
    bench.list->setVisible(true);
    QCOMPARE(bench.list->width(), 350);

    bench.list->setDockingArea(dockingArea::bottom);
    bench.setHeight(bench.list, 200);
    dragSplitter(bench.control, {300, 398}, {300, 358});
    QCOMPARE(bench.list->height(), 240);
    QCOMPARE(bench.list->width(), 350);
}

void TestMenuControl::narrowWindows()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setWidth(300);
    bench.list->setVisible(true);
    bench.info->setWidth(250);
    bench.info->setVisible(true);
    bench.resize(400, 300);
    QVERIFY(bench.list->width() < 300);
    QVERIFY(bench.info->width() >= smallestBand);
    QVERIFY(bench.top->width() >= 60);
    QVERIFY(bench.top->x() > 0);
    bench.resize(100, 100);
    bench.resize(900, 600);
    QCOMPARE(bench.list->width(), 300);
    QCOMPARE(bench.info->width(), 250);
}

void TestMenuControl::bandsOfOneSideShareItsWidth()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setWidth(300);
    bench.list->setVisible(true);
    bench.info->setWidth(220);
    bench.info->setDockingArea(dockingArea::left);
    bench.info->setVisible(true);
    QCOMPARE(bench.list->width(), 220);
    QCOMPARE(bench.info->width(), 220);
    bench.list->setWidth(280);
    QCOMPARE(bench.info->width(), 280);
    dragSplitter(bench.control, {281, 100}, {331, 100});
    QCOMPARE(bench.list->width(), 330);
    QCOMPARE(bench.info->width(), 330);
}

void TestMenuControl::hiddenClientArea()
{
    MenuControlBench bench;
    bench.open();
    bench.info->setWidth(220);
    bench.info->setVisible(true);
    bench.top->hide();
    bench.control->recalcLayout();
    QCOMPARE(bench.info->width(), 220); // though it has the whole control for now
    bench.top->show();
    bench.control->recalcLayout();
    QCOMPARE(bench.placeOf(bench.info).width(), 220);
}

void TestMenuControl::signalsTellOfChangesOnly()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setVisible(true);
    const BandState state = bench.list->state();
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    const QSignalSpy moved(bench.list, &Band::areaChanged);
    const QSignalSpy changed(bench.list, &Band::geometryChanged);
    bench.list->apply(state);
    bench.list->setVisible(true);
    bench.list->setDockingArea(state.area);
    bench.list->setWidth(state.width);
    QVERIFY(shown.isEmpty() && moved.isEmpty() && changed.isEmpty());
    bench.list->setWidth(state.width + 10);
    QCOMPARE(changed.size(), 1);
    QVERIFY(shown.isEmpty() && moved.isEmpty());
}

void TestMenuControl::bandsGoWithTheControl()
{
    QPointer<QWidget> client;
    QPointer<QWidget> floatingDock;
    {
        MenuControlBench bench;
        bench.openFloating();
        bench.info->setVisible(true);
        client = bench.listClient;
        floatingDock = bench.dockOf(bench.list);
        QVERIFY(floatingDock);
    }
    QVERIFY(!client);
    QVERIFY(!floatingDock);
}

QTEST_MAIN(TestMenuControl)
#include "tst_menucontrol.moc"
