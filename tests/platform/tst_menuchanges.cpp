// What changes while a band is open as a menu: its tools, the band itself, another band in its place.
#include "platform/BandMenu.h"
#include "platform/ToolBench.h"
#include "platform/ToolCombo.h"
#include "platform/ToolMenu.h"
#include "ToolMenuBench.h"

#include <QApplication>
#include <QTest>

using namespace quorvia::platform;

class TestMenuChanges : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void bandsAreFilledWhenTheyOpen();
    void oneMenuAtATime();
    void anotherMenuInPlaceOfACancelledOne();
    void changesWhileOpen();
    void bandsTakenApartWhileOpen();
    void clickThatTakesTheBandApart();
    void clickThatLetsEventsRun();
    void goesWithItsWindow();
};

void TestMenuChanges::bandsAreFilledWhenTheyOpen()
{
    ToolMenuBench bench;
    bench.open();
    int opened = 0;
    connect(&bench.model, &ToolModel::BandOpen, &bench, [&](ToolBand* band) {
        band->clear();
        ++opened;
        Tool* const tool = band->append(1, QStringLiteral("File%1").arg(opened));
        tool->set(&ToolValues::caption, QStringLiteral("now %1").arg(opened));
    });
    bench.popUp("inner");
    QCOMPARE(captions(bench.menus.menu()), QStringList(text("now 1")));
    bench.popUp("inner");
    QCOMPARE(captions(bench.menus.menu()), QStringList(text("now 2")));
    QCOMPARE(bench.record.take(), text("open inner; close inner; open inner"));
}

void TestMenuChanges::oneMenuAtATime()
{
    ToolMenuBench bench;
    bench.open();
    const QPointer<QMenu> first = bench.popUp("menu");
    bench.popUp("inner");
    QCOMPARE(bench.record.take(), text("open menu; close menu; open inner"));
    QTRY_VERIFY(first.isNull()); // nothing is kept of a closed menu
    bench.menus.close();
    bench.menus.close();
    QCOMPARE(bench.record.take(), text("close inner"));
}

void TestMenuChanges::anotherMenuInPlaceOfACancelledOne()
{
    ToolMenuBench bench;
    bench.open();
    bench.record.cancelled = QStringList{text("sub")};
    connect(&bench.model, &ToolModel::BandOpen, &bench, [&](ToolBand* band) {
        if (band->name() == text("sub"))
            bench.menus.popUp(text("inner"), QPoint(30, 30));
    });
    QVERIFY(!bench.menus.popUp(text("sub"), QPoint(10, 10)));
    QVERIFY(bench.menus.menu());
    QCOMPARE(bench.menus.menu()->objectName(), text("inner"));
    QVERIFY(bench.menus.menu()->isVisible());
    QCOMPARE(bench.record.take(), text("open sub; open inner"));

    BandMenu* const menu = bench.popUp("menu"); // the same from a sub-menu
    ToolMenuBench::hover(menu, "miParent");
    QTRY_COMPARE(bench.menus.menu()->objectName(), text("inner"));
    QCOMPARE(bench.record.take(), text("close inner; open menu; open sub; close menu; open inner"));
}

void TestMenuChanges::changesWhileOpen()
{
    ToolMenuBench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("menu");
    const int height = menu->height();
    QAction* const row = ToolMenuBench::row(menu, "miPlain");
    bench.plain->set(&ToolValues::checked, true);
    bench.plain->set(&ToolValues::caption, text("Other"));
    bench.plain->setPicture(0, text("save"));
    QVERIFY(row->isChecked());
    QCOMPARE(row->text(), text("Other"));
    QVERIFY(!row->icon().isNull());
    bench.plain->set(&ToolValues::checked, false);
    QVERIFY(!row->isChecked());
    bench.plain->set(&ToolValues::enabled, false);
    QVERIFY(!row->isEnabled());
    bench.plain->set(&ToolValues::visible, false);
    QVERIFY(!row->isVisible());
    QTRY_VERIFY(menu->height() < height);
    bench.plain->set(&ToolValues::visible, true);
    bench.plain->set(&ToolValues::subBand, text("inner"));
    QTRY_VERIFY(ToolMenuBench::row(menu, "miPlain")->menu());
    bench.plain->set(&ToolValues::kind, ToolKind::Separator);
    QTRY_VERIFY(ToolMenuBench::row(menu, "miPlain")->isSeparator());
}

void TestMenuChanges::bandsTakenApartWhileOpen()
{
    ToolMenuBench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    ToolMenuBench::hover(menu, "miParent");
    QMenu* const opened = ToolMenuBench::subMenu(menu, "miParent");
    const QPointer<QMenu> sub(opened);
    QTRY_VERIFY(opened->isVisible());
    bench.record.take();
    ToolBand* const band = bench.model.band(text("menu"));
    band->clear();
    for (const char* name : {"miOne", "miTwo"})
        band->append(addTool(bench.model, name));
    QTRY_COMPARE(captions(menu), (QStringList{text("miOne"), text("miTwo")}));
    QTRY_VERIFY(sub.isNull());
    QVERIFY(menu->isVisible());
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miTwo"));
    QCOMPARE(bench.record.take(), text("close sub; close menu; click miTwo"));
}

void TestMenuChanges::clickThatTakesTheBandApart()
{
    ToolMenuBench bench;
    bench.open();
    connect(&bench.model, &ToolModel::ToolClick, &bench, [&] { bench.model.band(text("menu"))->clear(); });
    BandMenu* const menu = bench.popUp("menu");
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miPlain"));
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miPlain"));
    bench.popUp("menu");
    QCOMPARE(captions(bench.menus.menu()), QStringList(text("(none)")));
}

void TestMenuChanges::clickThatLetsEventsRun()
{
    ToolMenuBench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QMenu* const sub = ToolMenuBench::openSub(menu);
    QTRY_VERIFY(sub->isVisible());
    const QPointer<QMenu> menuLives(menu);
    const QPointer<QMenu> subLives(sub);
    bool lived = false;
    connect(&bench.model, &ToolModel::ToolClick, &bench, [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        lived = menuLives && subLives;
    });
    QTest::keyClick(sub, Qt::Key_Return);
    QVERIFY(lived);
    QTRY_VERIFY(!menuLives);
}

void TestMenuChanges::goesWithItsWindow()
{
    ToolModel model;
    model.addBand(text("menu"), BandKind::PopUp)->append(addTool(model, "miOne"));
    ToolRecord record(model);
    {
        QWidget window;
        window.show();
        ToolMenu menus(&model, &window);
        QVERIFY(menus.popUp(text("menu"), QPoint(5, 5)));
    }
    QCOMPARE(record.take(), text("open menu; close menu"));
    QVERIFY(!QApplication::activePopupWidget());
}

QTEST_MAIN(TestMenuChanges)
#include "tst_menuchanges.moc"
