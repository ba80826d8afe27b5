// The combo in a pop-up menu: what it tells of edits and choices, and how keys reach and leave it.
#include "platform/BandMenu.h"
#include "platform/ToolBench.h"
#include "platform/ToolCombo.h"
#include "platform/ToolMenu.h"
#include "ToolMenuBench.h"

#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace quorvia::platform;

class TestMenuCombo : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void comboReportsEveryEdit();
    void comboReportsEnterAndCloses();
    void comboReportsChoices();
    void comboFollowsItsTool();
    void comboKeepsTheCursor();
    void comboIsReachedByKeys();
    void comboIsLeftByKeys();
    void comboGoesWithItsBand();
};

void TestMenuCombo::comboReportsEveryEdit()
{
    ToolMenuBench bench;
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

void TestMenuCombo::comboReportsEnterAndCloses()
{
    ToolMenuBench bench;
    bench.open();
    const BandMenu* const menu = bench.popUp("delay");
    QLineEdit* const field = menu->findChild<QLineEdit*>();
    field->selectAll();
    QTest::keyClicks(field, text("7"));
    QTest::keyClick(field, Qt::Key_Enter);
    QCOMPARE(bench.record.take(), text("open delay; text tTime=7; end tTime=7; close delay"));
    QVERIFY(!bench.menus.menu());
}

void TestMenuCombo::comboReportsChoices()
{
    ToolMenuBench bench;
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

void TestMenuCombo::comboFollowsItsTool()
{
    ToolMenuBench bench;
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

void TestMenuCombo::comboKeepsTheCursor()
{
    ToolMenuBench bench;
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

void TestMenuCombo::comboIsReachedByKeys()
{
    ToolMenuBench bench;
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

void TestMenuCombo::comboIsLeftByKeys()
{
    ToolMenuBench bench;
    bench.open();
    bench.model.band(text("delay"))->append(bench.plain);
    BandMenu* const menu = bench.popUp("delay");
    QTest::keyClick(menu, Qt::Key_Down);
    ToolCombo* const combo = menu->findChild<ToolCombo*>();
    QTRY_VERIFY(combo->hasFocus());
    QTest::keyClick(combo, Qt::Key_Tab);
    QTRY_COMPARE(menu->activeAction(), ToolMenuBench::row(menu, "miPlain"));
    QTest::keyClick(menu, Qt::Key_Backtab);
    QTRY_VERIFY(combo->hasFocus());
    QTest::keyClick(combo, Qt::Key_Escape);
    QTRY_VERIFY(!bench.menus.menu());
    QCOMPARE(bench.record.take(), text("open delay; close delay"));
}

void TestMenuCombo::comboGoesWithItsBand()
{
    ToolMenuBench bench;
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

QTEST_MAIN(TestMenuCombo)
#include "tst_menucombo.moc"
