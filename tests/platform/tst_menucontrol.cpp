// The menu control on the (offscreen) screen: bands shown, hidden, docked at every side, floating, and what
// is read back of them.
#include "platform/MenuControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using namespace quorvia::platform;

namespace {

/// A main window as the viewer has one: the control fills it.
class Bench : public QWidget
{
  public:
    Bench()
    {
        resize(900, 600);
        top->setObjectName(QStringLiteral("pTop"));
        control->setClientArea(top);
        list = control->addBand(QStringLiteral("bPlay"), QStringLiteral("fPlaylist"),
                                QStringLiteral("Picture List"));
        info = control->addBand(QStringLiteral("bInfo"), QStringLiteral("fBar"),
                                QStringLiteral("Resource Panel"), dockingArea::right);
        listClient = new QWidget;
        list->setClient(listClient);
        control->setGeometry(rect());
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    QDockWidget* dockOf(const Band* band) const { return control->findChild<QDockWidget*>(band->name()); }
    QAbstractButton* button(const Band* band, const char* name) const
    {
        return dockOf(band)->findChild<QAbstractButton*>(QLatin1String(name));
    }
    /// Where the widget stands within the control.
    QRect placeOf(const QWidget* widget) const { return {widget->mapTo(control, QPoint()), widget->size()}; }
    QRect placeOf(const Band* band) const { return placeOf(dockOf(band)); }

    MenuControl* control = new MenuControl(this);
    QWidget* top = new QWidget;
    Band* list;
    Band* info;
    QPointer<QWidget> listClient;

  protected:
    void resizeEvent(QResizeEvent*) override { control->setGeometry(rect()); }
};

/// Writes down the keys that reach a widget, and takes them or lets them go up.
class KeyRecorder : public QObject
{
  public:
    KeyRecorder(const QString& name, bool takes) : m_name(name), m_takes(takes) {}

    QStringList seen;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        seen << m_name;
        event->setAccepted(m_takes);
        return true;
    }

  private:
    QString m_name;
    bool m_takes;
};

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
    void floats();
    void floatsOffTheScreen();
    void floatComesBackWhereItWas();
    void docksWhereItWas();
    void docksAtTheSideWhereItWas();
    void stateWhileFloating();
    void closedByItsButton();
    void closedByTheWindowManager();
    void closedWithTheMainWindow();
    void closedJustBeforeTheMainWindow();
    void hiddenWithTheMainWindow();
    void floatingBeforeTheWindowIsShown();
    void doubleClicks();
    void titleBarForKeysAndReaders();
    void keysOnTheTitleBar_data();
    void keysOnTheTitleBar();
    void titleBarIsPainted();
    void signalsTellOfChangesOnly();
    void bandsGoWithTheControl();
};

void TestMenuControl::isAWidgetAmongOthers()
{
    Bench bench;
    bench.open();
    QVERIFY(!bench.control->isWindow());
    QCOMPARE(bench.control->parentWidget(), &bench);
    const std::unique_ptr<QMenu> menu(bench.control->createPopupMenu());
    QVERIFY(!menu);
}

void TestMenuControl::bandsByName()
{
    Bench bench;
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
    Bench bench;
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
    Bench bench;
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
    Bench bench;
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
    Bench bench;
    bench.open();
    QCOMPARE(bench.control->clientArea(), bench.top);
    auto* other = new QWidget;
    bench.control->setClientArea(other);
    QCOMPARE(bench.control->clientArea(), other);
    QCOMPARE(bench.placeOf(other), bench.control->rect());
    QVERIFY(other->isVisible());
    QVERIFY(!bench.top->isVisible());
    bench.control->setClientArea(bench.top); // hidden by the change: it stays so
    QVERIFY(!bench.top->isVisible());
    delete other;
}

void TestMenuControl::visibility()
{
    Bench bench;
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
    Bench bench;
    bench.open();
    BandState state = bench.list->state();
    state.visible = true;
    state.area = area;
    state.width = 333;
    state.height = 155;
    bench.list->apply(state);

    QCOMPARE(bench.list->dockingArea(), area);
    QCOMPARE(bench.list->dockedArea(), area);
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
}

void TestMenuControl::fromSideToSide()
{
    Bench bench;
    bench.open();
    bench.list->setWidth(333);
    bench.list->setHeight(155);
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
    Bench bench;
    bench.open();
    bench.info->setVisible(true);
    bench.info->setDockingArea(area);
    QCOMPARE(bench.info->dockingArea(), dockingArea::right);
}

void TestMenuControl::sizesOfHiddenBands()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setWidth(310);
    bench.list->setVisible(false);
    QCOMPARE(bench.list->width(), 310);
    bench.list->setWidth(350);
    bench.list->setHeight(144);
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
        Bench bench;
        bench.open();
        bench.list->apply({true, area, width, height, position, {width, height}});
        QVERIFY(bench.dockOf(bench.list)->isVisible());
        QVERIFY(isDockingArea(bench.list->dockingArea()));
        const QSize size = bench.dockOf(bench.list)->size();
        QVERIFY(size.width() >= smallestBand && size.height() >= smallestBand);
        QVERIFY(bench.top->width() >= 60 && bench.top->height() >= 60);
        if (bench.list->dockingArea() == dockingArea::floating) {
            QVERIFY(bench.screen()->availableGeometry().intersects(bench.list->floatingRect()));
            QTRY_COMPARE(bench.dockOf(bench.list)->geometry(), bench.list->floatingRect());
        }
    }
}

void TestMenuControl::splitterDrags()
{
    Bench bench;
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
    bench.list->setHeight(200);
    dragSplitter(bench.control, {300, 398}, {300, 358});
    QCOMPARE(bench.list->height(), 240);
    QCOMPARE(bench.list->width(), 350);
}

void TestMenuControl::narrowWindows()
{
    Bench bench;
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
    Bench bench;
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
    Bench bench;
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

void TestMenuControl::floats()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    QVERIFY(bench.list->floatingRect().isNull());
    const QSignalSpy moved(bench.list, &Band::areaChanged);
    bench.list->setDockingArea(dockingArea::floating);
    QCOMPARE(moved.size(), 1);
    QCOMPARE(moved[0][0].toInt(), 4);
    const QDockWidget* dock = bench.dockOf(bench.list);
    QVERIFY(dock->isWindow());
    QVERIFY(dock->isVisible());
    QCOMPARE(bench.top->width(), 900);
    QCOMPARE(dock->geometry(), bench.list->floatingRect());
    // The first time it comes up beside where it was docked.
    QCOMPARE(dock->geometry().topLeft(), bench.control->mapToGlobal(QPoint(24, 24)));
    QVERIFY(!dock->testAttribute(Qt::WA_QuitOnClose));

    // Around the client there is a rim by which to resize it.
    const QWidget* client = bench.listClient;
    QTRY_VERIFY(client->mapTo(dock, QPoint()).x() >= 3);
    QTRY_VERIFY(client->mapTo(dock, QPoint(client->width(), 0)).x() <= dock->width() - 3);
    QTRY_VERIFY(client->mapTo(dock, QPoint(0, client->height())).y() <= dock->height() - 3);

    bench.list->setFloatingRect({300, 200, 320, 240});
    QCOMPARE(dock->geometry(), QRect(300, 200, 320, 240));
    QCOMPARE(bench.list->floatingRect(), QRect(300, 200, 320, 240));
}

void TestMenuControl::floatsOffTheScreen()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setFloatingRect({90000, -90000, 320, 240});
    bench.list->setDockingArea(dockingArea::floating);
    const QRect screen = bench.screen()->availableGeometry();
    QVERIFY(screen.contains(bench.dockOf(bench.list)->geometry()));
}

void TestMenuControl::floatComesBackWhereItWas()
{
    Bench bench;
    bench.open();
    bench.list->setFloatingRect({300, 200, 320, 240});
    bench.list->setDockingArea(dockingArea::floating);
    bench.list->setVisible(true);
    QDockWidget* dock = bench.dockOf(bench.list);
    dock->setGeometry(350, 220, 280, 300); // the user has moved it
    bench.list->setVisible(false);
    QCOMPARE(bench.list->floatingRect(), QRect(350, 220, 280, 300));
    bench.list->setVisible(true);
    QVERIFY(dock->isVisible() && dock->isWindow());
    QCOMPARE(dock->geometry(), QRect(350, 220, 280, 300));

    bench.list->setDockingArea(dockingArea::bottom);
    QCOMPARE(bench.list->floatingRect(), QRect(350, 220, 280, 300));
    bench.list->setDockingArea(dockingArea::floating);
    QCOMPARE(dock->geometry(), QRect(350, 220, 280, 300));
}

void TestMenuControl::docksWhereItWas()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.info->setDockingArea(dockingArea::left);
    bench.info->setVisible(true);
    const QRect listPlace = bench.placeOf(bench.list);
    const QRect infoPlace = bench.placeOf(bench.info);
    QVERIFY(listPlace.top() < infoPlace.top());
    bench.list->toggleFloating();
    QCOMPARE(bench.list->dockingArea(), dockingArea::floating);
    bench.list->toggleFloating();
    QCOMPARE(bench.list->dockingArea(), dockingArea::left);
    QCOMPARE(bench.placeOf(bench.list), listPlace); // above the other one again
    QCOMPARE(bench.placeOf(bench.info), infoPlace);
}

void TestMenuControl::docksAtTheSideWhereItWas()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    for (const int area : {dockingArea::bottom, dockingArea::right, dockingArea::top, dockingArea::left}) {
        bench.list->setDockingArea(area);
        const QRect place = bench.placeOf(bench.list);
        bench.list->toggleFloating();
        QCOMPARE(bench.list->dockedArea(), area);
        bench.list->toggleFloating();
        QCOMPARE(bench.list->dockingArea(), area);
        QCOMPARE(bench.placeOf(bench.list), place);
    }
}

void TestMenuControl::stateWhileFloating()
{
    BandState saved;
    {
        Bench bench;
        bench.open();
        bench.list->setWidth(310);
        bench.list->setHeight(150);
        bench.list->setVisible(true);
        bench.list->setDockingArea(dockingArea::floating);
        bench.dockOf(bench.list)->setGeometry(400, 100, 200, 333);
        saved = bench.list->state();
        QCOMPARE(saved, (BandState{true, dockingArea::floating, 310, 150, QPoint(400, 100), {200, 333}}));
    }
    Bench next;
    next.list->apply(saved);
    next.open();
    QTRY_VERIFY(next.dockOf(next.list));
    QTRY_VERIFY(next.dockOf(next.list)->isVisible());
    QCOMPARE(next.dockOf(next.list)->geometry(), QRect(400, 100, 200, 333));
    QCOMPARE(next.list->state(), saved);
    next.list->toggleFloating();
    QCOMPARE(next.list->dockingArea(), dockingArea::left); // where the band began
    QCOMPARE(next.list->width(), 310);
}

void TestMenuControl::closedByItsButton()
{
    for (const int area : {dockingArea::left, dockingArea::floating}) {
        Bench bench;
        bench.open();
        bench.list->setDockingArea(area);
        bench.list->setVisible(true);
        const QSignalSpy shown(bench.list, &Band::visibilityChanged);
        const BandState before = bench.list->state();
        QTest::mouseClick(bench.button(bench.list, "closeButton"), Qt::LeftButton);
        QCOMPARE(shown.size(), 1);
        QVERIFY(!bench.list->visible());
        QVERIFY(!bench.dockOf(bench.list)->isVisible());
        BandState expected = before;
        expected.visible = false;
        QCOMPARE(bench.list->state(), expected);
        bench.list->setVisible(true);
        QCOMPARE(bench.list->state(), before);
    }
}

void TestMenuControl::closedByTheWindowManager()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setDockingArea(dockingArea::floating);
    const QRect place = bench.list->floatingRect();
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    bench.dockOf(bench.list)->close();
    QTRY_VERIFY(!bench.list->visible());
    QCOMPARE(shown.size(), 1);
    QVERIFY(bench.isVisible());
    bench.list->setVisible(true);
    QVERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.dockOf(bench.list)->geometry(), place);
}

void TestMenuControl::closedWithTheMainWindow()
{
    class ClosingBench : public Bench
    {
      public:
        BandState saved;

      protected:
        /// As the viewer does: closes all other windows, lets events run, saves.
        void closeEvent(QCloseEvent*) override
        {
            const QWidgetList windows = QApplication::topLevelWidgets();
            for (QWidget* window : windows) {
                if (window != this && window->isVisible())
                    window->close();
            }
            QCoreApplication::processEvents();
            saved = list->state();
        }
    };
    ClosingBench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setDockingArea(dockingArea::floating);
    const BandState before = bench.list->state();
    bench.close();
    QCOMPARE(bench.saved, before);
    QCoreApplication::processEvents();
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(bench.list->visible());
}

void TestMenuControl::closedJustBeforeTheMainWindow()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setDockingArea(dockingArea::floating);
    bench.dockOf(bench.list)->close(); // a session that ends closes windows in any order
    bench.close();
    QCoreApplication::processEvents();
    QVERIFY(bench.list->visible());
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
}

void TestMenuControl::hiddenWithTheMainWindow()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.list->setDockingArea(dockingArea::floating);
    bench.list->setFloatingRect({300, 200, 320, 240});
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    bench.dockOf(bench.list)->move(310, 210);
    bench.hide();
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(bench.list->visible());
    QCOMPARE(bench.list->floatingRect(), QRect(310, 210, 320, 240));
    bench.show();
    QTRY_VERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.dockOf(bench.list)->geometry(), QRect(310, 210, 320, 240));
    QVERIFY(shown.isEmpty());
}

void TestMenuControl::floatingBeforeTheWindowIsShown()
{
    Bench bench;
    bench.list->setVisible(true); // docked, and then
    bench.list->setDockingArea(dockingArea::floating);
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(!bench.dockOf(bench.list)->isWindow()); // nothing comes up before the main window
    bench.open();
    QTRY_VERIFY(bench.dockOf(bench.list)->isWindow());
    QTRY_VERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.top->width(), 900);
}

void TestMenuControl::doubleClicks()
{
    Bench bench;
    bench.open();
    bench.list->setDockingArea(dockingArea::top);
    bench.list->setVisible(true);
    QWidget* title = bench.dockOf(bench.list)->titleBarWidget();
    QTest::mouseDClick(title, Qt::RightButton, {}, QPoint(40, 10));
    QCOMPARE(bench.list->dockingArea(), dockingArea::top);
    QTest::mouseDClick(title, Qt::LeftButton, {}, QPoint(40, 10));
    QCOMPARE(bench.list->dockingArea(), dockingArea::floating);
    QTest::mouseDClick(title, Qt::LeftButton, {}, QPoint(40, 10));
    QCOMPARE(bench.list->dockingArea(), dockingArea::top);
}

void TestMenuControl::titleBarForKeysAndReaders()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    QAbstractButton* floatButton = bench.button(bench.list, "floatButton");
    QAbstractButton* closeButton = bench.button(bench.list, "closeButton");
    QCOMPARE(bench.dockOf(bench.list)->accessibleName(), QStringLiteral("Picture List"));
    QCOMPARE(floatButton->accessibleName(), QStringLiteral("Float Picture List"));
    QCOMPARE(closeButton->accessibleName(), QStringLiteral("Close Picture List"));
    QVERIFY(floatButton->focusPolicy() & Qt::TabFocus);
    QVERIFY(!(floatButton->focusPolicy() & Qt::ClickFocus)); // a click leaves the keys with the picture
    QTest::keyClick(floatButton, Qt::Key_Space);
    QCOMPARE(bench.list->dockingArea(), dockingArea::floating);
    QCOMPARE(floatButton->accessibleName(), QStringLiteral("Dock Picture List"));
    QTest::keyClick(floatButton, Qt::Key_Return);
    QCOMPARE(bench.list->dockingArea(), dockingArea::left);
    QCOMPARE(floatButton->accessibleName(), QStringLiteral("Float Picture List"));
    QTest::keyClick(closeButton, Qt::Key_Right);
    QVERIFY(bench.list->visible());
    QTest::keyClick(closeButton, Qt::Key_Enter);
    QVERIFY(!bench.list->visible());
}

void TestMenuControl::keysOnTheTitleBar_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("floating");
    QTest::addColumn<bool>("clientTakes");
    QTest::addColumn<QStringList>("seenBy");
    for (const char* button : {"floatButton", "closeButton"}) {
        QTest::addRow("%s, docked", button) << button << false << true << QStringList{"window"};
        QTest::addRow("%s, floating", button) << button << true << true << QStringList{"client"};
        QTest::addRow("%s, floating, of no use", button) << button << true << false << QStringList{"client"};
    }
}

void TestMenuControl::keysOnTheTitleBar()
{
    QFETCH(QString, button);
    QFETCH(bool, floating);
    QFETCH(bool, clientTakes);
    Bench bench;
    bench.open();
    KeyRecorder client(QStringLiteral("client"), clientTakes);
    bench.listClient->installEventFilter(&client);
    KeyRecorder window(QStringLiteral("window"), true);
    bench.installEventFilter(&window);
    bench.list->setVisible(true);
    bench.list->setDockingArea(floating ? dockingArea::floating : dockingArea::left);
    QTest::keyClick(bench.button(bench.list, qPrintable(button)), Qt::Key_BracketRight);
    QTEST(client.seen + window.seen, "seenBy");
}

void TestMenuControl::titleBarIsPainted()
{
    Bench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.info->setVisible(true);
    const auto grabbed = [&](const Band* band) {
        return bench.dockOf(band)->titleBarWidget()->grab(QRect(0, 0, 120, 24)).toImage();
    };
    QVERIFY(grabbed(bench.list) != grabbed(bench.info)); // the captions differ
    for (const char* name : {"floatButton", "closeButton"}) {
        QAbstractButton* button = bench.button(bench.list, name);
        QVERIFY(button->isVisible());
        QImage blank(button->size(), QImage::Format_ARGB32_Premultiplied);
        blank.fill(Qt::transparent);
        QImage image = blank;
        button->render(&image, {}, {}, {});
        QVERIFY(image != blank);
        QVERIFY(image.pixelColor(0, 0).alpha() == 0); // at rest, no face
    }
}

void TestMenuControl::signalsTellOfChangesOnly()
{
    Bench bench;
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
        Bench bench;
        bench.open();
        bench.list->setVisible(true);
        bench.list->setDockingArea(dockingArea::floating);
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
