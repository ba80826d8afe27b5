// Bands as pop-up menus: rows of each kind, sub-menus, what is told and in which order.
#include "platform/BandMenu.h"
#include "platform/RowGroups.h"
#include "platform/ToolBench.h"
#include "platform/ToolCombo.h"
#include "platform/ToolMenu.h"
#include "ToolMenuBench.h"

#include <QApplication>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

using namespace quorvia::platform;

class TestToolMenu : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void rowsOfEachKind();
    void nothingShowsOfWhatIsInvisible();
    void clickTellsAfterTheBandsHaveClosed();
    void keysChooseRows();
    void mnemonicsChooseRows();
    void subMenusOpenAndCloseInOrder();
    void rowsWithASubMenuOnlyOpenIt();
    void cancelledMenu();
    void cancelledSubMenu();
    void emptyBand();
    void unknownBands();
    void bandThatHoldsItself();
    void besideABox();
    void restOfAToolbar();
    void groupSizes_data();
    void groupSizes();
    void longBandsOpenInGroups();
    void toolTips();
};

void TestToolMenu::rowsOfEachKind()
{
    ToolMenuBench bench;
    bench.open();
    bench.plain->set(&ToolValues::checked, true);
    bench.plain->setPicture(0, text("#open"));
    bench.drop->set(&ToolValues::enabled, false);
    const BandMenu* const menu = bench.popUp("menu");
    QVERIFY(menu->isVisible());
    QCOMPARE(captions(menu), (QStringList{text("&Plain"), text("miParent"), text("-"), text("miDrop")}));
    QVERIFY(ToolMenuBench::row(menu, "miPlain")->isChecked());
    QVERIFY(!ToolMenuBench::row(menu, "miPlain")->icon().isNull());
    QVERIFY(!ToolMenuBench::row(menu, "miPlain")->menu());
    QVERIFY(!ToolMenuBench::row(menu, "miParent")->isCheckable());
    QVERIFY(ToolMenuBench::row(menu, "miParent")->icon().isNull());
    QVERIFY(ToolMenuBench::row(menu, "miParent")->menu());
    QVERIFY(!ToolMenuBench::row(menu, "miDrop")->isEnabled());
    QVERIFY(ToolMenuBench::row(menu, "miDrop")->menu());
    QVERIFY(captions(ToolMenuBench::subMenu(menu, "miDrop")).isEmpty()); // not before it opens
    QVERIFY(!menu->accessibleName().isEmpty());
    QCOMPARE(ToolMenuBench::subMenu(menu, "miParent")->accessibleName(), text("miParent"));
}

void TestToolMenu::nothingShowsOfWhatIsInvisible()
{
    ToolMenuBench bench;
    bench.open();
    bench.parent->set(&ToolValues::visible, false);
    bench.plain->set(&ToolValues::visible, false);
    const BandMenu* const menu = bench.popUp("menu");
    const QRect first = menu->actionGeometry(ToolMenuBench::row(menu, "miDrop"));
    QVERIFY(first.top() < 10); // the separator before it stands between nothing
    QVERIFY(menu->actionGeometry(ToolMenuBench::row(menu, "miPlain")).isEmpty());
}

void TestToolMenu::clickTellsAfterTheBandsHaveClosed()
{
    ToolMenuBench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QCOMPARE(bench.record.take(), text("open menu"));
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miPlain"));
    QCOMPARE(bench.record.take(), text("close menu; click miPlain"));
    QVERIFY(!bench.menus.menu());
}

void TestToolMenu::keysChooseRows()
{
    ToolMenuBench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miPlain"));
    bench.popUp("menu");
    QTest::keyClick(bench.menus.menu(), Qt::Key_Escape);
    QCOMPARE(bench.record.take(), text("open menu; close menu"));
}

void TestToolMenu::mnemonicsChooseRows()
{
    ToolMenuBench bench;
    bench.open();
    QTest::keyClick(bench.popUp("menu"), Qt::Key_P);
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miPlain"));
}

void TestToolMenu::subMenusOpenAndCloseInOrder()
{
    ToolMenuBench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QMenu* const sub = ToolMenuBench::openSub(menu);
    QTRY_VERIFY(sub->isVisible());
    QCOMPARE(bench.record.take(), text("open menu; open sub"));
    QCOMPARE(captions(sub), (QStringList{text("miSub"), text("miInnerParent")}));
    QTest::keyClick(sub, Qt::Key_Down);
    QTest::keyClick(sub, Qt::Key_Right);
    QMenu* const inner = ToolMenuBench::subMenu(sub, "miInnerParent");
    QTRY_VERIFY(inner->isVisible());
    QTest::keyClick(inner, Qt::Key_Left);
    QTRY_VERIFY(!inner->isVisible());
    QCOMPARE(bench.record.take(), text("open inner; close inner"));
    QTest::keyClick(sub, Qt::Key_Right);
    QTRY_VERIFY(inner->isVisible());
    QTest::keyClick(inner, Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open inner; close inner; close sub; close menu; click miInner"));

    QMenu* const again = bench.popUp("menu");
    ToolMenuBench::hover(again, "miParent");
    QTRY_VERIFY(ToolMenuBench::subMenu(again, "miParent")->isVisible());
    bench.menus.close();
    QCOMPARE(bench.record.take(), text("open menu; open sub; close sub; close menu"));
}

void TestToolMenu::rowsWithASubMenuOnlyOpenIt()
{
    ToolMenuBench bench;
    bench.open();
    for (const char* tool : {"miParent", "miDrop"}) {
        BandMenu* menu = bench.popUp("menu");
        QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, tool));
        QTRY_VERIFY(ToolMenuBench::subMenu(menu, tool)->isVisible());
        QCOMPARE(bench.record.take(), text("open menu; open sub"));
        bench.menus.close();
        bench.record.take();

        menu = bench.popUp("menu");
        while (menu->activeAction() != ToolMenuBench::row(menu, tool))
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QTRY_VERIFY(ToolMenuBench::subMenu(menu, tool)->isVisible());
        QCOMPARE(bench.record.take(), text("open menu; open sub"));
        bench.menus.close();
        bench.record.take();
    }
    bench.drop->set(&ToolValues::enabled, false);
    BandMenu* const menu = bench.popUp("menu");
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miDrop"));
    QCOMPARE(bench.record.take(), text("open menu"));
}

void TestToolMenu::cancelledMenu()
{
    ToolMenuBench bench;
    bench.open();
    bench.record.cancelled = QStringList{text("menu")};
    QVERIFY(!bench.menus.popUp(text("menu"), QPoint(10, 10)));
    QVERIFY(!bench.menus.menu());
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bench.record.take(), text("open menu")); // what was not opened does not close
}

void TestToolMenu::cancelledSubMenu()
{
    ToolMenuBench bench;
    bench.open();
    bench.record.cancelled = QStringList{text("sub")};
    BandMenu* const menu = bench.popUp("menu");
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_COMPARE(bench.record.lines(), (QStringList{text("open menu"), text("open sub")}));
    bench.record.take();
    QVERIFY(!ToolMenuBench::subMenu(menu, "miParent")->isVisible());
    QVERIFY(menu->isVisible());
    bench.record.cancelled.clear(); // and the next time it opens
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_VERIFY(ToolMenuBench::subMenu(menu, "miParent")->isVisible());
    QTest::keyClick(ToolMenuBench::subMenu(menu, "miParent"), Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open sub; close sub; close menu; click miSub"));
}

void TestToolMenu::emptyBand()
{
    ToolMenuBench bench;
    bench.open();
    bench.model.addBand(text("bPlugins"), BandKind::PopUp);
    const BandMenu* const menu = bench.popUp("bPlugins");
    QCOMPARE(captions(menu), QStringList(text("(none)")));
    QVERIFY(!menu->actions().constFirst()->isEnabled());
    bench.menus.close();
    QCOMPARE(bench.record.take(), text("open bPlugins; close bPlugins"));
}

void TestToolMenu::unknownBands()
{
    ToolMenuBench bench;
    bench.open();
    bench.parent->set(&ToolValues::subBand, text("nowhere"));
    QVERIFY(!bench.menus.popUp(text("nowhere"), QPoint()));
    QVERIFY(!bench.menus.popUpAtMouse(QString()));
    BandMenu* const menu = bench.popUp("menu");
    QVERIFY(!ToolMenuBench::row(menu, "miParent")->menu());
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miParent"));
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miParent"));
}

void TestToolMenu::bandThatHoldsItself()
{
    ToolMenuBench bench;
    bench.open();
    bench.model.tool(text("miInnerParent"))->set(&ToolValues::subBand, text("menu"));
    BandMenu* const menu = bench.popUp("menu");
    ToolMenuBench::hover(menu, "miParent");
    QMenu* const sub = ToolMenuBench::subMenu(menu, "miParent");
    QTRY_VERIFY(sub->isVisible());
    QVERIFY(!ToolMenuBench::row(sub, "miInnerParent")->menu());
}

void TestToolMenu::besideABox()
{
    ToolMenuBench bench;
    bench.open();
    const QRect screen = bench.screen()->availableGeometry();
    const QRect high(screen.left() + 40, screen.top() + 10, 46, 32);
    QVERIFY(bench.menus.popUpBeside(text("menu"), high));
    QCOMPARE(bench.menus.menu()->geometry().topLeft(), QPoint(high.left(), high.bottom() + 1));
    const QRect low(screen.left() + 40, screen.bottom() - 36, 46, 32);
    QVERIFY(bench.menus.popUpBeside(text("menu"), low));
    QCOMPARE(bench.menus.menu()->geometry().bottom() + 1, low.top());
    QCOMPARE(bench.menus.menu()->geometry().left(), low.left());
    QVERIFY(!bench.menus.popUpBeside(text("nowhere"), low));
}

void TestToolMenu::restOfAToolbar()
{
    ToolMenuBench bench;
    bench.open();
    ToolBand* const bar = bench.model.addBand(text("Toolbar"), BandKind::Toolbar);
    for (Tool* tool : {bench.plain, bench.parent, bench.drop})
        bar->append(tool);
    bench.menus.popUpRest(bar, 1, QRect(20, 20, 20, 32));
    QMenu* const menu = bench.menus.menu();
    QCOMPARE(captions(menu), (QStringList{text("miParent"), text("miDrop")}));
    QVERIFY(!ToolMenuBench::row(menu, "miParent")->menu()); // as on the toolbar: no drop-down part, no band
    QVERIFY(ToolMenuBench::row(menu, "miDrop")->menu());
    QTest::mouseClick(menu, Qt::LeftButton, {}, ToolMenuBench::middleOf(menu, "miParent"));
    QCOMPARE(bench.record.take(), text("click miParent")); // it is no band that opened
}

void TestToolMenu::groupSizes_data()
{
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("size");
    const auto row = [](int rows, int size) { QTest::addRow("%d", rows) << rows << size; };
    row(0, 1);
    row(1, 1);
    row(100, 1);
    row(101, 40);
    row(2400, 40);
    row(2401, 1600);
    row(20000, 1600);
    row(96000, 1600);
    row(96001, 64000);
    row(1000000, 64000);
}

void TestToolMenu::groupSizes()
{
    QFETCH(int, rows);
    QTEST(groupSize(rows), "size");
}

void TestToolMenu::longBandsOpenInGroups()
{
    ToolMenuBench bench;
    bench.open();
    ToolBand* const files = bench.model.addBand(text("bFiles"), BandKind::PopUp);
    for (int index = 0; index < 20000; ++index)
        files->append(index + 1, QStringLiteral("FileX%1").arg(index))
            ->set(&ToolValues::caption, QStringLiteral("a && b %1.jpg").arg(index));
    BandMenu* const menu = bench.popUp("bFiles");
    QCOMPARE(menu->actions().size(), 13);
    QAction* const last = menu->actions().constLast();
    QCOMPARE(last->text(), text("a && b 19200.jpg to a && b 19999.jpg"));
    menu->setActiveAction(last);
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_VERIFY(last->menu<QMenu*>()->isVisible());
    QMenu* const group = last->menu<QMenu*>();
    QCOMPARE(group->actions().size(), 20);
    QAction* const first = group->actions().constFirst();
    group->setActiveAction(first);
    QTest::keyClick(group, Qt::Key_Right);
    QTRY_VERIFY(first->menu<QMenu*>()->isVisible());
    QMenu* const rows = first->menu<QMenu*>();
    QCOMPARE(rows->actions().size(), 40);
    QCOMPARE(rows->actions().constFirst()->text(), text("a && b 19200.jpg"));
    QTest::mouseClick(rows, Qt::LeftButton, {}, rows->actionGeometry(rows->actions().at(2)).center());
    QCOMPARE(bench.record.take(), text("open bFiles; close bFiles; click FileX19202")); // one band, once
}

void TestToolMenu::toolTips()
{
    ToolMenuBench bench;
    bench.open();
    bench.plain->set(&ToolValues::toolTip, text("Does <b>it</b>"));
    bench.drop->set(&ToolValues::toolTip, text("miDrop"));
    BandMenu* const menu = bench.popUp("menu");
    const auto ask = [menu](const char* tool) {
        QHelpEvent event(QEvent::ToolTip, ToolMenuBench::middleOf(menu, tool),
                         menu->mapToGlobal(ToolMenuBench::middleOf(menu, tool)));
        QApplication::sendEvent(menu, &event);
    };
    ask("miPlain");
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains(text("&lt;b&gt;"))); // what it says, not what it would do
    ask("miDrop");                                         // says no more than the row
    QTRY_VERIFY(!QToolTip::isVisible());
}

QTEST_MAIN(TestToolMenu)
#include "tst_toolmenu.moc"
