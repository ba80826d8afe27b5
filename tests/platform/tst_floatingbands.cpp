// Bands that float beside the main window: how they come and go, and their title bar for mouse, keys and
// readers.
#include "MenuControlBench.h"
#include "platform/MenuControl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::platform;

namespace {

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

} // namespace

class TestFloatingBands : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
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
};

void TestFloatingBands::floats()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setVisible(true);
    QVERIFY(bench.floatingRect(bench.list).isNull());
    const QSignalSpy moved(bench.list, &Band::areaChanged);
    bench.list->setDockingArea(dockingArea::floating);
    QCOMPARE(moved.size(), 1);
    QCOMPARE(moved[0][0].toInt(), 4);
    const QDockWidget* dock = bench.dockOf(bench.list);
    QVERIFY(dock->isWindow());
    QVERIFY(dock->isVisible());
    QCOMPARE(bench.top->width(), 900);
    QCOMPARE(dock->geometry(), bench.floatingRect(bench.list));
    // The first time it comes up beside where it was docked.
    QCOMPARE(dock->geometry().topLeft(), bench.control->mapToGlobal(QPoint(24, 24)));
    QVERIFY(!dock->testAttribute(Qt::WA_QuitOnClose));

    // Around the client there is a rim by which to resize it.
    const QWidget* client = bench.listClient;
    QTRY_VERIFY(client->mapTo(dock, QPoint()).x() >= 3);
    QTRY_VERIFY(client->mapTo(dock, QPoint(client->width(), 0)).x() <= dock->width() - 3);
    QTRY_VERIFY(client->mapTo(dock, QPoint(0, client->height())).y() <= dock->height() - 3);

    bench.setFloatingRect(bench.list, {300, 200, 320, 240});
    QCOMPARE(dock->geometry(), QRect(300, 200, 320, 240));
    QCOMPARE(bench.floatingRect(bench.list), QRect(300, 200, 320, 240));
}

void TestFloatingBands::floatsOffTheScreen()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setVisible(true);
    bench.setFloatingRect(bench.list, {90000, -90000, 320, 240});
    bench.list->setDockingArea(dockingArea::floating);
    const QRect screen = bench.screen()->availableGeometry();
    QVERIFY(screen.contains(bench.dockOf(bench.list)->geometry()));
}

void TestFloatingBands::floatComesBackWhereItWas()
{
    MenuControlBench bench;
    bench.open();
    bench.setFloatingRect(bench.list, {300, 200, 320, 240});
    bench.list->setDockingArea(dockingArea::floating);
    bench.list->setVisible(true);
    QDockWidget* dock = bench.dockOf(bench.list);
    dock->setGeometry(350, 220, 280, 300); // the user has moved it
    bench.list->setVisible(false);
    QCOMPARE(bench.floatingRect(bench.list), QRect(350, 220, 280, 300));
    bench.list->setVisible(true);
    QVERIFY(dock->isVisible() && dock->isWindow());
    QCOMPARE(dock->geometry(), QRect(350, 220, 280, 300));

    bench.list->setDockingArea(dockingArea::bottom);
    QCOMPARE(bench.floatingRect(bench.list), QRect(350, 220, 280, 300));
    bench.list->setDockingArea(dockingArea::floating);
    QCOMPARE(dock->geometry(), QRect(350, 220, 280, 300));
}

void TestFloatingBands::docksWhereItWas()
{
    MenuControlBench bench;
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

void TestFloatingBands::docksAtTheSideWhereItWas()
{
    MenuControlBench bench;
    bench.open();
    bench.list->setVisible(true);
    for (const int area : {dockingArea::bottom, dockingArea::right, dockingArea::top, dockingArea::left}) {
        bench.list->setDockingArea(area);
        const QRect place = bench.placeOf(bench.list);
        bench.list->toggleFloating();
        QCOMPARE(bench.list->dockingArea(), dockingArea::floating);
        bench.list->toggleFloating();
        QCOMPARE(bench.list->dockingArea(), area);
        QCOMPARE(bench.placeOf(bench.list), place);
    }
}

void TestFloatingBands::stateWhileFloating()
{
    BandState saved;
    {
        MenuControlBench bench;
        bench.open();
        bench.list->setWidth(310);
        bench.setHeight(bench.list, 150);
        bench.list->setVisible(true);
        bench.list->setDockingArea(dockingArea::floating);
        bench.dockOf(bench.list)->setGeometry(400, 100, 200, 333);
        saved = bench.list->state();
        QCOMPARE(saved, (BandState{true, dockingArea::floating, 310, 150, QPoint(400, 100), {200, 333}}));
    }
    MenuControlBench next;
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

void TestFloatingBands::closedByItsButton()
{
    for (const int area : {dockingArea::left, dockingArea::floating}) {
        MenuControlBench bench;
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

void TestFloatingBands::closedByTheWindowManager()
{
    MenuControlBench bench;
    bench.openFloating();
    const QRect place = bench.floatingRect(bench.list);
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    bench.dockOf(bench.list)->close();
    QTRY_VERIFY(!bench.list->visible());
    QCOMPARE(shown.size(), 1);
    QVERIFY(bench.isVisible());
    bench.list->setVisible(true);
    QVERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.dockOf(bench.list)->geometry(), place);
}

void TestFloatingBands::closedWithTheMainWindow()
{
    class ClosingBench : public MenuControlBench
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
    bench.openFloating();
    const BandState before = bench.list->state();
    bench.close();
    QCOMPARE(bench.saved, before);
    QCoreApplication::processEvents();
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(bench.list->visible());
}

void TestFloatingBands::closedJustBeforeTheMainWindow()
{
    MenuControlBench bench;
    bench.openFloating();
    bench.dockOf(bench.list)->close(); // a session that ends closes windows in any order
    bench.close();
    QCoreApplication::processEvents();
    QVERIFY(bench.list->visible());
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
}

void TestFloatingBands::hiddenWithTheMainWindow()
{
    MenuControlBench bench;
    bench.openFloating();
    bench.setFloatingRect(bench.list, {300, 200, 320, 240});
    const QSignalSpy shown(bench.list, &Band::visibilityChanged);
    bench.dockOf(bench.list)->move(310, 210);
    bench.hide();
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(bench.list->visible());
    QCOMPARE(bench.floatingRect(bench.list), QRect(310, 210, 320, 240));
    bench.show();
    QTRY_VERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.dockOf(bench.list)->geometry(), QRect(310, 210, 320, 240));
    QVERIFY(shown.isEmpty());
}

void TestFloatingBands::floatingBeforeTheWindowIsShown()
{
    MenuControlBench bench;
    bench.list->setVisible(true); // docked, and then
    bench.list->setDockingArea(dockingArea::floating);
    QVERIFY(!bench.dockOf(bench.list)->isVisible());
    QVERIFY(!bench.dockOf(bench.list)->isWindow()); // nothing comes up before the main window
    bench.open();
    QTRY_VERIFY(bench.dockOf(bench.list)->isWindow());
    QTRY_VERIFY(bench.dockOf(bench.list)->isVisible());
    QCOMPARE(bench.top->width(), 900);
}

void TestFloatingBands::doubleClicks()
{
    MenuControlBench bench;
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

void TestFloatingBands::titleBarForKeysAndReaders()
{
    MenuControlBench bench;
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

void TestFloatingBands::keysOnTheTitleBar_data()
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

void TestFloatingBands::keysOnTheTitleBar()
{
    QFETCH(QString, button);
    QFETCH(bool, floating);
    QFETCH(bool, clientTakes);
    MenuControlBench bench;
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

void TestFloatingBands::titleBarIsPainted()
{
    MenuControlBench bench;
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

QTEST_MAIN(TestFloatingBands)
#include "tst_floatingbands.moc"
