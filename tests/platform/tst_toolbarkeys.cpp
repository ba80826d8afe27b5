// The toolbar under keys: the way along its row, what they run and open, and the tools that stand behind its
// extension.
#include "platform/ToolBench.h"
#include "platform/ToolButton.h"
#include "platform/ToolCombo.h"
#include "platform/ToolControl.h"
#include "platform/ToolLook.h"
#include "platform/ToolMenu.h"
#include "ToolbarBench.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

using namespace quorvia::platform;

class TestToolbarKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void keysWalkTheRow();
    void keysRunAndOpen();
    void keysOfOthersPass();
    void focusMovesOnFromWhatIsDisabled();
    void clickLeavesTheFocus();
    void extensionOpensTheRest();
    void extensionByKeys();
    void comboOnTheBar();
};

void TestToolbarKeys::keysWalkTheRow()
{
    ToolbarBench bench;
    bench.showAll();
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QVERIFY(bench.button("miOpen")->hasFocus());
    const QImage ringed = bench.button("miOpen")->grab().toImage();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QVERIFY(bench.button("miSave")->hasFocus());
    QVERIFY(bench.button("miOpen")->grab().toImage() != ringed);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QVERIFY(bench.button("miText")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QVERIFY(bench.button("miText")->hasFocus());
    bench.fit->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miFit")->isEnabled());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QVERIFY(bench.button("miSave")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab); // one stop for the whole row
    QVERIFY(bench.other->hasFocus());
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QVERIFY(bench.button("miSave")->hasFocus()); // and back to where it was
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
    QVERIFY(bench.button("miOpen")->hasFocus());
}

void TestToolbarKeys::keysRunAndOpen()
{
    ToolbarBench bench;
    bench.showAll();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(bench.button("miSave"), key);
    QTest::keyClick(bench.button("miOpen"), Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("click miSave; click miSave; click miSave; click miOpen"));
    QTest::keyClick(bench.button("miOpen"), Qt::Key_Down);
    QMenu* const menu = bench.bar->menus()->menu();
    QVERIFY(menu);
    QVERIFY(menu->activeAction());
    QCOMPARE(menu->activeAction()->objectName(), text("tRecent"));
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(bench.record.take(), text("open bOpen; close bOpen; click tRecent"));
}

void TestToolbarKeys::keysOfOthersPass()
{
    class Listener : public QObject
    {
      public:
        QList<int> keys;
        bool eventFilter(QObject*, QEvent* event) override
        {
            const int key =
                event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : Qt::Key_Control;
            if (key != Qt::Key_Control) // the bench presses it by itself
                keys.append(key);
            return false;
        }
    };
    ToolbarBench bench;
    bench.showAll();
    Listener listener;
    bench.installEventFilter(&listener);
    bench.button("miSave")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(bench.button("miSave"), Qt::Key_Down); // nothing opens from it
    QTest::keyClick(bench.button("miSave"), Qt::Key_Escape);
    QTest::keyClick(bench.button("miSave"), Qt::Key_N, Qt::ControlModifier);
    QTest::keyClick(bench.button("miSave"), Qt::Key_Right, Qt::ControlModifier);
    QCOMPARE(listener.keys, (QList<int>{Qt::Key_Down, Qt::Key_Escape, Qt::Key_N, Qt::Key_Right}));
}

void TestToolbarKeys::focusMovesOnFromWhatIsDisabled()
{
    ToolbarBench bench;
    bench.showAll();
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    bench.fit->set(&ToolValues::enabled, false);
    QTRY_VERIFY(!bench.button("miFit")->isEnabled());
    bench.save->set(&ToolValues::enabled, false);
    bench.fit->set(&ToolValues::enabled, true); // in the same go
    QTRY_VERIFY(bench.button("miFit")->hasFocus());
    bench.fit->set(&ToolValues::visible, false);
    QTRY_VERIFY(bench.button("miText")->hasFocus());
    bench.words->set(&ToolValues::enabled, false);
    QTRY_VERIFY(bench.button("miOpen")->hasFocus());
}

void TestToolbarKeys::clickLeavesTheFocus()
{
    ToolbarBench bench;
    bench.showAll();
    for (const char* name : {"miOpen", "miSave"})
        QTest::mouseClick(bench.button(name), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(bench.other->hasFocus());
}

void TestToolbarKeys::extensionOpensTheRest()
{
    ToolbarBench bench;
    bench.showAll();
    bench.bar->fitInto(120);
    QVERIFY(bench.button("miOpen"));
    QVERIFY(!bench.button("miText"));
    ToolButton* const extension = bench.button("extension");
    QVERIFY(extension);
    QCOMPARE(extension->accessibleName(), text("More tools"));
    QTest::mousePress(extension, Qt::LeftButton, {}, extension->rect().center());
    QMenu* const menu = bench.bar->menus()->menu();
    QVERIFY(menu);
    QStringList rows;
    for (const QAction* row : menu->actions()) {
        if (row->isVisible())
            rows.append(row->isSeparator() ? text("-") : row->text());
    }
    QVERIFY(!bench.button("miFit"));
    QVERIFY(rows.endsWith(text("&Text")));
    QVERIFY(rows.contains(text("miFit")));
    QVERIFY(!rows.contains(text("&Open...")));
    QCOMPARE(rows.contains(text("miSave")), !bench.button("miSave"));
    for (QAction* row : menu->actions()) {
        if (row->text() == text("&Text"))
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(row).center());
    }
    QCOMPARE(bench.record.take(), text("click miText"));
    bench.bar->fitInto(2000);
    QVERIFY(!bench.button("extension"));
    QVERIFY(bench.button("miText"));
    bench.bar->fitInto(0);
    QVERIFY(!bench.button("miOpen"));
}

void TestToolbarKeys::extensionByKeys()
{
    ToolbarBench bench;
    bench.showAll();
    bench.bar->fitInto(120);
    QTest::keyClick(bench.other, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
    QVERIFY(bench.button("extension")->hasFocus());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Space}) {
        QTest::keyClick(bench.button("extension"), key);
        QVERIFY(bench.bar->menus()->menu());
        QVERIFY(bench.bar->menus()->menu()->activeAction());
        QTest::keyClick(bench.bar->menus()->menu(), Qt::Key_Escape);
        QVERIFY(!bench.bar->menus()->menu());
    }
    bench.bar->fitInto(2000); // the focus does not go with the button
    QVERIFY(!bench.button("extension"));
    QTRY_VERIFY(QApplication::focusWidget());
    QVERIFY(QApplication::focusWidget()->isVisible());
}

void TestToolbarKeys::comboOnTheBar()
{
    ToolbarBench bench;
    Tool* const time = addTool(*bench.bar->model(), "tTime", ToolKind::Combo);
    time->set(&ToolValues::choices, {text("1"), text("2")});
    time->set(&ToolValues::text, text("2"));
    bench.band->append(time);
    bench.settle();
    bench.showAll();
    ToolCombo* const combo = bench.bar->findChild<ToolCombo*>();
    QVERIFY(combo && combo->isVisible());
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo->lineEdit(), text("3"));
    QTest::keyClick(combo->lineEdit(), Qt::Key_Return);
    QTest::keyClick(combo, Qt::Key_Down);
    QCOMPARE(bench.record.take(), text("text tTime=3; end tTime=3; end tTime=1"));
}

QTEST_MAIN(TestToolbarKeys)
#include "tst_toolbarkeys.moc"
