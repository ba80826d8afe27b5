// Bands as pop-up menus: rows of each kind, sub-menus, what is told and in which order, and what changes
// while a menu is open.
#include "platform/BandMenu.h"
#include "platform/RowGroups.h"
#include "platform/ToolBench.h"
#include "platform/ToolCombo.h"
#include "platform/ToolMenu.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>
#include <QWidgetAction>

using namespace quorvia::platform;

namespace {

QStringList captions(const QMenu* menu)
{
    QStringList rows;
    for (const QAction* row : menu->actions()) {
        if (row->isVisible())
            rows.append(row->isSeparator() ? QStringLiteral("-") : row->text());
    }
    return rows;
}

/// A window with the bands "menu" (a plain tool, a tool with the sub-band "sub", a separator, a drop-down
/// tool with "sub"), "sub" (a tool, one with "inner"), "inner" (a tool), "delay" (the combo alone).
class Bench : public QWidget
{
  public:
    Bench()
    {
        resize(600, 400);
        plain = addTool(model, "miPlain", ToolKind::Plain, "", "&Plain");
        parent = addTool(model, "miParent", ToolKind::Plain, "sub");
        drop = addTool(model, "miDrop", ToolKind::DropDown, "sub");
        ToolBand* const menuBand = model.addBand(text("menu"), BandKind::PopUp);
        menuBand->append(plain);
        menuBand->append(parent);
        menuBand->append(addTool(model, "sep", ToolKind::Separator));
        menuBand->append(drop);
        ToolBand* const sub = model.addBand(text("sub"), BandKind::PopUp);
        sub->append(addTool(model, "miSub"));
        sub->append(addTool(model, "miInnerParent", ToolKind::Plain, "inner"));
        model.addBand(text("inner"), BandKind::PopUp)->append(addTool(model, "miInner"));
        time = addTool(model, "tTime", ToolKind::Combo, "", "&Delay");
        time->set(&ToolValues::choices, {text("1"), text("2"), text("5"), text("60")});
        time->set(&ToolValues::text, text("2"));
        model.addBand(text("delay"), BandKind::PopUp)->append(time);
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }

    BandMenu* popUp(const char* band)
    {
        QCoreApplication::processEvents(); // the display here deactivates the program for a closed menu
        menus.popUp(text(band), mapToGlobal(QPoint(20, 20)));
        return static_cast<BandMenu*>(menus.menu());
    }

    /// Opens the sub-menu of the second row by keys.
    static QMenu* openSub(QMenu* menu)
    {
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Right);
        return subMenu(menu, "miParent");
    }

    static QAction* row(const QMenu* menu, const char* tool)
    {
        return menu->findChild<QAction*>(text(tool), Qt::FindDirectChildrenOnly);
    }
    static QMenu* subMenu(const QMenu* menu, const char* tool) { return row(menu, tool)->menu(); }
    /// Takes the pointer to a row, over another place: it may have been there before.
    static void hover(QMenu* menu, const char* tool)
    {
        QTest::mouseMove(menu, middleOf(menu, tool) - QPoint(12, 0));
        QTest::mouseMove(menu, middleOf(menu, tool));
    }
    static QPoint middleOf(const QMenu* menu, const char* tool)
    {
        return menu->actionGeometry(row(menu, tool)).center();
    }

    ToolModel model;
    ToolMenu menus{&model, this};
    ToolRecord record{model};
    Tool* plain;
    Tool* parent;
    Tool* drop;
    Tool* time;
};

} // namespace

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
    void bandsAreFilledWhenTheyOpen();
    void emptyBand();
    void unknownBands();
    void bandThatHoldsItself();
    void oneMenuAtATime();
    void anotherMenuInPlaceOfACancelledOne();
    void changesWhileOpen();
    void bandsTakenApartWhileOpen();
    void clickThatTakesTheBandApart();
    void clickThatLetsEventsRun();
    void besideABox();
    void restOfAToolbar();
    void groupSizes_data();
    void groupSizes();
    void longBandsOpenInGroups();
    void toolTips();
    void comboReportsEveryEdit();
    void comboReportsEnterAndCloses();
    void comboReportsChoices();
    void comboFollowsItsTool();
    void comboKeepsTheCursor();
    void comboIsReachedByKeys();
    void comboIsLeftByKeys();
    void comboGoesWithItsBand();
    void goesWithItsWindow();
};

void TestToolMenu::rowsOfEachKind()
{
    Bench bench;
    bench.open();
    bench.plain->set(&ToolValues::checked, true);
    bench.plain->setPicture(0, text("#open"));
    bench.drop->set(&ToolValues::enabled, false);
    const BandMenu* const menu = bench.popUp("menu");
    QVERIFY(menu->isVisible());
    QCOMPARE(captions(menu), (QStringList{text("&Plain"), text("miParent"), text("-"), text("miDrop")}));
    QVERIFY(Bench::row(menu, "miPlain")->isChecked());
    QVERIFY(!Bench::row(menu, "miPlain")->icon().isNull());
    QVERIFY(!Bench::row(menu, "miPlain")->menu());
    QVERIFY(!Bench::row(menu, "miParent")->isCheckable());
    QVERIFY(Bench::row(menu, "miParent")->icon().isNull());
    QVERIFY(Bench::row(menu, "miParent")->menu());
    QVERIFY(!Bench::row(menu, "miDrop")->isEnabled());
    QVERIFY(Bench::row(menu, "miDrop")->menu());
    QVERIFY(captions(Bench::subMenu(menu, "miDrop")).isEmpty()); // not before it opens
}

void TestToolMenu::nothingShowsOfWhatIsInvisible()
{
    Bench bench;
    bench.open();
    bench.parent->set(&ToolValues::visible, false);
    bench.plain->set(&ToolValues::visible, false);
    const BandMenu* const menu = bench.popUp("menu");
    const QRect first = menu->actionGeometry(Bench::row(menu, "miDrop"));
    QVERIFY(first.top() < 10); // the separator before it stands between nothing
    QVERIFY(menu->actionGeometry(Bench::row(menu, "miPlain")).isEmpty());
}

void TestToolMenu::clickTellsAfterTheBandsHaveClosed()
{
    Bench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QCOMPARE(bench.record.take(), text("open menu"));
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miPlain"));
    QCOMPARE(bench.record.take(), text("close menu; click miPlain"));
    QVERIFY(!bench.menus.menu());
}

void TestToolMenu::keysChooseRows()
{
    Bench bench;
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
    Bench bench;
    bench.open();
    QTest::keyClick(bench.popUp("menu"), Qt::Key_P);
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miPlain"));
}

void TestToolMenu::subMenusOpenAndCloseInOrder()
{
    Bench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QMenu* const sub = Bench::openSub(menu);
    QTRY_VERIFY(sub->isVisible());
    QCOMPARE(bench.record.take(), text("open menu; open sub"));
    QCOMPARE(captions(sub), (QStringList{text("miSub"), text("miInnerParent")}));
    QTest::keyClick(sub, Qt::Key_Down);
    QTest::keyClick(sub, Qt::Key_Right);
    QMenu* const inner = Bench::subMenu(sub, "miInnerParent");
    QTRY_VERIFY(inner->isVisible());
    QTest::keyClick(inner, Qt::Key_Left);
    QTRY_VERIFY(!inner->isVisible());
    QCOMPARE(bench.record.take(), text("open inner; close inner"));
    QTest::keyClick(sub, Qt::Key_Right);
    QTRY_VERIFY(inner->isVisible());
    QTest::keyClick(inner, Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open inner; close inner; close sub; close menu; click miInner"));

    QMenu* const again = bench.popUp("menu");
    Bench::hover(again, "miParent");
    QTRY_VERIFY(Bench::subMenu(again, "miParent")->isVisible());
    bench.menus.close();
    QCOMPARE(bench.record.take(), text("open menu; open sub; close sub; close menu"));
}

void TestToolMenu::rowsWithASubMenuOnlyOpenIt()
{
    Bench bench;
    bench.open();
    for (const char* tool : {"miParent", "miDrop"}) {
        BandMenu* menu = bench.popUp("menu");
        QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, tool));
        QTRY_VERIFY(Bench::subMenu(menu, tool)->isVisible());
        QCOMPARE(bench.record.take(), text("open menu; open sub"));
        bench.menus.close();
        bench.record.take();

        menu = bench.popUp("menu");
        while (menu->activeAction() != Bench::row(menu, tool))
            QTest::keyClick(menu, Qt::Key_Down);
        QTest::keyClick(menu, Qt::Key_Return);
        QTRY_VERIFY(Bench::subMenu(menu, tool)->isVisible());
        QCOMPARE(bench.record.take(), text("open menu; open sub"));
        bench.menus.close();
        bench.record.take();
    }
    bench.drop->set(&ToolValues::enabled, false);
    BandMenu* const menu = bench.popUp("menu");
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miDrop"));
    QCOMPARE(bench.record.take(), text("open menu"));
}

void TestToolMenu::cancelledMenu()
{
    Bench bench;
    bench.open();
    bench.record.cancelled = QStringList{text("menu")};
    QVERIFY(!bench.menus.popUp(text("menu"), QPoint(10, 10)));
    QVERIFY(!bench.menus.menu());
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bench.record.take(), text("open menu")); // what was not opened does not close
}

void TestToolMenu::cancelledSubMenu()
{
    Bench bench;
    bench.open();
    bench.record.cancelled = QStringList{text("sub")};
    BandMenu* const menu = bench.popUp("menu");
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_COMPARE(bench.record.lines(), (QStringList{text("open menu"), text("open sub")}));
    bench.record.take();
    QVERIFY(!Bench::subMenu(menu, "miParent")->isVisible());
    QVERIFY(menu->isVisible());
    bench.record.cancelled.clear(); // and the next time it opens
    QTest::keyClick(menu, Qt::Key_Right);
    QTRY_VERIFY(Bench::subMenu(menu, "miParent")->isVisible());
    QTest::keyClick(Bench::subMenu(menu, "miParent"), Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open sub; close sub; close menu; click miSub"));
}

void TestToolMenu::bandsAreFilledWhenTheyOpen()
{
    Bench bench;
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

void TestToolMenu::emptyBand()
{
    Bench bench;
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
    Bench bench;
    bench.open();
    bench.parent->set(&ToolValues::subBand, text("nowhere"));
    QVERIFY(!bench.menus.popUp(text("nowhere"), QPoint()));
    QVERIFY(!bench.menus.popUpAtMouse(QString()));
    BandMenu* const menu = bench.popUp("menu");
    QVERIFY(!Bench::row(menu, "miParent")->menu());
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miParent"));
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miParent"));
}

void TestToolMenu::bandThatHoldsItself()
{
    Bench bench;
    bench.open();
    bench.model.tool(text("miInnerParent"))->set(&ToolValues::subBand, text("menu"));
    BandMenu* const menu = bench.popUp("menu");
    Bench::hover(menu, "miParent");
    QMenu* const sub = Bench::subMenu(menu, "miParent");
    QTRY_VERIFY(sub->isVisible());
    QVERIFY(!Bench::row(sub, "miInnerParent")->menu());
}

void TestToolMenu::oneMenuAtATime()
{
    Bench bench;
    bench.open();
    const QPointer<QMenu> first = bench.popUp("menu");
    bench.popUp("inner");
    QCOMPARE(bench.record.take(), text("open menu; close menu; open inner"));
    QTRY_VERIFY(first.isNull()); // nothing is kept of a closed menu
    bench.menus.close();
    bench.menus.close();
    QCOMPARE(bench.record.take(), text("close inner"));
}

void TestToolMenu::anotherMenuInPlaceOfACancelledOne()
{
    Bench bench;
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
    Bench::hover(menu, "miParent");
    QTRY_COMPARE(bench.menus.menu()->objectName(), text("inner"));
    QCOMPARE(bench.record.take(), text("close inner; open menu; open sub; close menu; open inner"));
}

void TestToolMenu::changesWhileOpen()
{
    Bench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("menu");
    const int height = menu->height();
    QAction* const row = Bench::row(menu, "miPlain");
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
    QTRY_VERIFY(Bench::row(menu, "miPlain")->menu());
    bench.plain->set(&ToolValues::kind, ToolKind::Separator);
    QTRY_VERIFY(Bench::row(menu, "miPlain")->isSeparator());
}

void TestToolMenu::bandsTakenApartWhileOpen()
{
    Bench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    Bench::hover(menu, "miParent");
    QMenu* const opened = Bench::subMenu(menu, "miParent");
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
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miTwo"));
    QCOMPARE(bench.record.take(), text("close sub; close menu; click miTwo"));
}

void TestToolMenu::clickThatTakesTheBandApart()
{
    Bench bench;
    bench.open();
    connect(&bench.model, &ToolModel::ToolClick, &bench, [&] { bench.model.band(text("menu"))->clear(); });
    BandMenu* const menu = bench.popUp("menu");
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miPlain"));
    QCOMPARE(bench.record.take(), text("open menu; close menu; click miPlain"));
    bench.popUp("menu");
    QCOMPARE(captions(bench.menus.menu()), QStringList(text("(none)")));
}

void TestToolMenu::clickThatLetsEventsRun()
{
    Bench bench;
    bench.open();
    BandMenu* const menu = bench.popUp("menu");
    QMenu* const sub = Bench::openSub(menu);
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

void TestToolMenu::besideABox()
{
    Bench bench;
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
    Bench bench;
    bench.open();
    ToolBand* const bar = bench.model.addBand(text("Toolbar"), BandKind::Toolbar);
    for (Tool* tool : {bench.plain, bench.parent, bench.drop})
        bar->append(tool);
    bench.menus.popUpRest(bar, 1, QRect(20, 20, 20, 32));
    QMenu* const menu = bench.menus.menu();
    QCOMPARE(captions(menu), (QStringList{text("miParent"), text("miDrop")}));
    QVERIFY(!Bench::row(menu, "miParent")->menu()); // as on the toolbar: no drop-down part, no band
    QVERIFY(Bench::row(menu, "miDrop")->menu());
    QTest::mouseClick(menu, Qt::LeftButton, {}, Bench::middleOf(menu, "miParent"));
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
    Bench bench;
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
    Bench bench;
    bench.open();
    bench.plain->set(&ToolValues::toolTip, text("Does <b>it</b>"));
    bench.drop->set(&ToolValues::toolTip, text("miDrop"));
    BandMenu* const menu = bench.popUp("menu");
    const auto ask = [menu](const char* tool) {
        QHelpEvent event(QEvent::ToolTip, Bench::middleOf(menu, tool),
                         menu->mapToGlobal(Bench::middleOf(menu, tool)));
        QApplication::sendEvent(menu, &event);
    };
    ask("miPlain");
    QVERIFY(QToolTip::isVisible());
    QVERIFY(QToolTip::text().contains(text("&lt;b&gt;"))); // what it says, not what it would do
    ask("miDrop");                                         // says no more than the row
    QTRY_VERIFY(!QToolTip::isVisible());
}

void TestToolMenu::comboReportsEveryEdit()
{
    Bench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("delay");
    QLineEdit* const field = menu->findChild<QLineEdit*>();
    QCOMPARE(field->text(), text("2"));
    QCOMPARE(menu->findChild<QLabel*>()->text(), text("&Delay"));
    QCOMPARE(menu->findChild<ToolCombo*>()->accessibleName(), text("Delay"));
    field->selectAll();
    QTest::keyClicks(field, text("15"));
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClick(field, Qt::Key_Backspace);
    QCOMPARE(bench.record.take(), text("open delay; text tTime=1; text tTime=15; text tTime=1; text tTime="));
    bench.menus.close(); // no end of an edit
    QCOMPARE(bench.record.take(), text("close delay"));
}

void TestToolMenu::comboReportsEnterAndCloses()
{
    Bench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("delay");
    QLineEdit* const field = menu->findChild<QLineEdit*>();
    field->selectAll();
    QTest::keyClicks(field, text("7"));
    QTest::keyClick(field, Qt::Key_Enter);
    QCOMPARE(bench.record.take(), text("open delay; text tTime=7; end tTime=7; close delay"));
    QVERIFY(!bench.menus.menu());
}

void TestToolMenu::comboReportsChoices()
{
    Bench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("delay");
    ToolCombo* const combo = menu->findChild<ToolCombo*>();
    QTest::keyClick(combo, Qt::Key_Down); // from 2 on
    QCOMPARE(bench.record.take(), text("open delay; end tTime=5"));
    QTest::keyClick(combo, Qt::Key_Up);
    QTest::keyClick(combo, Qt::Key_Up);
    QCOMPARE(bench.record.take(), text("end tTime=2; end tTime=1"));
    QVERIFY(menu->isVisible());
    QCOMPARE(combo->lineEdit()->text(), text("1"));
}

void TestToolMenu::comboFollowsItsTool()
{
    Bench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("delay");
    ToolCombo* const combo = menu->findChild<ToolCombo*>();
    bench.time->set(&ToolValues::text, text("2.5"));
    QCOMPARE(combo->currentText(), text("2.5"));
    bench.time->set(&ToolValues::choices, {text("3"), text("4")});
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentText(), text("2.5"));
    bench.time->set(&ToolValues::enabled, false);
    QVERIFY(!combo->isEnabled());
    bench.time->set(&ToolValues::enabled, true);
    bench.time->set(&ToolValues::caption, text("Wait"));
    QCOMPARE(menu->findChild<QLabel*>()->text(), text("Wait"));
    QCOMPARE(bench.record.take(), text("open delay")); // what the program sets is no edit

    connect(&bench.model, &ToolModel::TextChange, &bench, [](Tool* tool) {
        if (tool->values().text.toInt() > 60)
            tool->set(&ToolValues::text, text("60"));
    });
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), text("99"));
    QCOMPARE(combo->currentText(), text("60"));
}

void TestToolMenu::comboKeepsTheCursor()
{
    Bench bench;
    bench.open();
    QLineEdit* const field = bench.popUp("delay")->findChild<QLineEdit*>();
    field->setText(text("5"));
    QTest::keyClicks(field, text("0"));
    field->setCursorPosition(0);
    QTest::keyClicks(field, text("12")); // 150 is no choice, 1250 neither, 60 would be
    QCOMPARE(field->text(), text("1250"));
    QCOMPARE(field->cursorPosition(), 2);
    field->setText(text("0"));
    field->setCursorPosition(0);
    QTest::keyClicks(field, text("6")); // 60 is one: the list's choice follows, the cursor stays
    QCOMPARE(field->cursorPosition(), 1);
}

void TestToolMenu::comboIsReachedByKeys()
{
    Bench bench;
    bench.open();
    BandMenu* menu = bench.popUp("delay");
    QTest::keyClick(menu, Qt::Key_Down);
    QTRY_VERIFY(menu->findChild<ToolCombo*>()->hasFocus());
    bench.menus.close();
    bench.record.take();
    menu = bench.popUp("delay"); // and typing goes into the only row there is
    QTest::keyClick(menu, Qt::Key_4);
    QCOMPARE(bench.record.take(), text("open delay; text tTime=4"));
    QCOMPARE(menu->findChild<QLineEdit*>()->text(), text("4"));
}

void TestToolMenu::comboIsLeftByKeys()
{
    Bench bench;
    bench.open();
    bench.model.band(text("delay"))->append(bench.plain);
    BandMenu* const menu = bench.popUp("delay");
    QTest::keyClick(menu, Qt::Key_Down);
    ToolCombo* const combo = menu->findChild<ToolCombo*>();
    QTRY_VERIFY(combo->hasFocus());
    QTest::keyClick(combo, Qt::Key_Tab);
    QTRY_COMPARE(menu->activeAction(), Bench::row(menu, "miPlain"));
    QTest::keyClick(menu, Qt::Key_Backtab);
    QTRY_VERIFY(combo->hasFocus());
    QTest::keyClick(combo, Qt::Key_Escape);
    QTRY_VERIFY(!bench.menus.menu());
    QCOMPARE(bench.record.take(), text("open delay; close delay"));
}

void TestToolMenu::comboGoesWithItsBand()
{
    Bench bench;
    bench.open();
    connect(&bench.model, &ToolModel::SelectionChange, &bench,
            [&] { bench.model.band(text("delay"))->clear(); });
    const BandMenu* menu = bench.popUp("delay");
    QTest::keyClick(menu->findChild<QLineEdit*>(), Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open delay; end tTime=2; close delay"));

    bench.model.band(text("delay"))->append(bench.time);
    menu = bench.popUp("delay");
    QTest::keyClick(menu->findChild<ToolCombo*>(), Qt::Key_Down);
    QTRY_COMPARE(captions(menu), QStringList(text("(none)")));
}

void TestToolMenu::goesWithItsWindow()
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

QTEST_MAIN(TestToolMenu)
#include "tst_toolmenu.moc"
