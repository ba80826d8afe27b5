// The tab strip under the mouse: selecting, hovering, tool tips and its scroll buttons.
#include "controls/gnTab.h"
#include "controls/PaintCount.h"
#include "controls/TabBench.h"
#include "controls/TabMetrics.h"

#include <QHelpEvent>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

using namespace quorvia::controls;
using namespace quorvia::test;

class TestGnTabMouse : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void selectsByMouse_data();
    void selectsByMouse();
    void dragsAwayWithoutSelecting();
    void theButtonUpAloneSelects();
    void forwardsMouseMovement();
    void hovers();
    void endsAHoverWithItsTab_data();
    void endsAHoverWithItsTab();
    void endsAHoverByTheTimer();
    void firesAFewTimesASecond();
    void showsToolTips();
    void takesAnotherTipWhileHovered();
    void scrolls();
    void itsButtonsTakeNoFocus();
    void hearsNoMouseWithoutTabs();
};

void TestGnTabMouse::selectsByMouse_data()
{
    QTest::addColumn<int>("x"); // from the second tab's left edge
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("selected");
    QTest::addColumn<int>("signalled");
    QTest::newRow("tab") << 10 << Qt::LeftButton << 2 << 1;
    QTest::newRow("first pixel") << 0 << Qt::LeftButton << 2 << 1;
    QTest::newRow("gap") << -1 << Qt::LeftButton << 1 << 0;
    QTest::newRow("gap's begin") << -3 << Qt::LeftButton << 1 << 0;
    QTest::newRow("the selected tab") << -4 << Qt::LeftButton << 1 << 1;
    QTest::newRow("right button") << 10 << Qt::RightButton << 1 << 0;
    QTest::newRow("middle button") << 10 << Qt::MiddleButton << 1 << 0;
}

void TestGnTabMouse::selectsByMouse()
{
    QFETCH(int, x);
    QFETCH(Qt::MouseButton, button);
    TabBench bench;
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    bench.click({bench.tab.tabs().at(2).Left + x, 10}, button);
    QTEST(bench.tab.SelectedTab(), "selected");
    QTEST(int(spy.count()), "signalled");
}

void TestGnTabMouse::dragsAwayWithoutSelecting()
{
    TabBench bench;
    QTest::mousePress(bench.surface(), Qt::LeftButton, {}, bench.middleOf(2));
    QTest::mouseRelease(bench.surface(), Qt::LeftButton, {}, bench.middleOf(2) + QPoint(0, 100));
    QCOMPARE(bench.tab.SelectedTab(), 1);
}

void TestGnTabMouse::theButtonUpAloneSelects()
{
    TabBench bench;
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    QTest::mousePress(bench.surface(), Qt::LeftButton, {}, bench.middleOf(2));
    QCOMPARE(bench.tab.SelectedTab(), 1);
    QTest::mouseRelease(bench.surface(), Qt::LeftButton, {}, bench.middleOf(3));
    QCOMPARE(bench.tab.SelectedTab(), 3);
    QCOMPARE(spy.count(), 1);
}

void TestGnTabMouse::forwardsMouseMovement()
{
    TabBench bench;
    QSignalSpy spy(&bench.tab, &gnTab::TabMouseMove);
    QMouseEvent move(QEvent::MouseMove, QPointF(33, 7), bench.surface()->mapToGlobal(QPointF(33, 7)),
                     Qt::NoButton, Qt::LeftButton | Qt::MiddleButton,
                     Qt::ControlModifier | Qt::ShiftModifier);
    // What is hovered is not known yet when the movement is told.
    int hoveredThen = -1;
    connect(&bench.tab, &gnTab::TabMouseMove, this, [&] { hoveredThen = bench.tab.tabs().hovered(); });
    QCoreApplication::sendEvent(bench.surface(), &move);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0), (QVariantList{5, 3, 33, 7}));
    QCOMPARE(hoveredThen, 0);
    QCOMPARE(bench.tab.tabs().hovered(), 1);
}

void TestGnTabMouse::hovers()
{
    TabBench bench;
    QVERIFY(!bench.timer()->isActive());
    bench.moveTo(bench.middleOf(2));
    QCOMPARE(bench.tab.tabs().hovered(), 2);
    QCOMPARE(bench.surface()->toolTip(), QStringLiteral("About Information"));
    QVERIFY(bench.timer()->isActive());
    bench.moveTo(bench.middleOf(3));
    QCOMPARE(bench.tab.tabs().hovered(), 3);
    bench.moveTo({bench.tab.tabs().at(2).Left - 2, 10});
    QCOMPARE(bench.tab.tabs().hovered(), 0);
    QCOMPARE(bench.surface()->toolTip(), QString());
    QVERIFY(!bench.timer()->isActive());
    bench.moveTo(bench.middleOf(1));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(bench.surface(), &leave);
    QCOMPARE(bench.tab.tabs().hovered(), 0);
    QVERIFY(!bench.timer()->isActive());
}

void TestGnTabMouse::endsAHoverWithItsTab_data()
{
    QTest::addColumn<bool>("all");
    QTest::newRow("one") << false;
    QTest::newRow("all") << true;
}

void TestGnTabMouse::endsAHoverWithItsTab()
{
    QFETCH(bool, all);
    TabBench bench;
    bench.moveTo(bench.middleOf(3));
    QVERIFY(bench.timer()->isActive());
    if (all)
        bench.tab.RemoveAllTabs();
    else
        bench.tab.RemoveTab(3);
    QCOMPARE(bench.tab.tabs().hovered(), 0);
    QVERIFY(!bench.timer()->isActive());
    QCOMPARE(bench.surface()->toolTip(), QString());
}

void TestGnTabMouse::endsAHoverByTheTimer()
{
    TabBench bench;
    bench.moveTo(bench.middleOf(2));
    QTRY_COMPARE(QCursor::pos(), bench.surface()->mapToGlobal(bench.middleOf(2)));
    QSignalSpy fired(bench.timer(), &QTimer::timeout);
    QVERIFY(fired.wait());
    QCOMPARE(bench.tab.tabs().hovered(), 2); // the pointer is still there
    // Another window comes to lie under the pointer, and nobody tells the strip that it was left.
    QWidget other;
    other.setGeometry(QRect(QCursor::pos() - QPoint(50, 50), QSize(100, 100)));
    bench.surface()->blockSignals(true);
    other.show();
    QVERIFY(QTest::qWaitForWindowExposed(&other));
    QCoreApplication::processEvents();
    PaintCount count(bench.surface());
    QTRY_COMPARE(bench.tab.tabs().hovered(), 0);
    QVERIFY(!bench.timer()->isActive());
    QTRY_VERIFY(count.paints > 0);
}

void TestGnTabMouse::firesAFewTimesASecond()
{
    TabBench bench;
    QVERIFY(bench.timer()->interval() >= 200);
    QVERIFY(bench.timer()->interval() <= 500);
}

void TestGnTabMouse::takesAnotherTipWhileHovered()
{
    TabBench bench;
    bench.moveTo(bench.middleOf(2));
    bench.tab.SetTabToolTip(2, QStringLiteral("changed"));
    QCOMPARE(bench.surface()->toolTip(), QStringLiteral("changed"));
    bench.tab.SetTabToolTip(3, QStringLiteral("of another tab"));
    bench.tab.SetTabToolTip(9, QStringLiteral("of none"));
    QCOMPARE(bench.surface()->toolTip(), QStringLiteral("changed"));
    bench.moveTo(bench.middleOf(3));
    QCOMPARE(bench.surface()->toolTip(), QStringLiteral("of another tab"));
    bench.moveTo({bench.tab.tabs().at(2).Left - 2, 10});
    bench.tab.SetTabToolTip(2, QStringLiteral("unseen"));
    QCOMPARE(bench.surface()->toolTip(), QString());
}

void TestGnTabMouse::showsToolTips()
{
    TabBench bench;
    const auto ask = [&](QPoint position) {
        QHelpEvent help(QEvent::ToolTip, position, bench.surface()->mapToGlobal(position));
        QCoreApplication::sendEvent(bench.surface(), &help);
    };
    ask(bench.middleOf(3));
    QTRY_COMPARE(QToolTip::text(), QStringLiteral("About Filmstrip"));
    bench.tab.SetTabToolTip(2, QStringLiteral("changed"));
    ask(bench.middleOf(2));
    QTRY_COMPARE(QToolTip::text(), QStringLiteral("changed"));
    ask({1, 5});
    QTRY_VERIFY(!QToolTip::isVisible());
}

void TestGnTabMouse::scrolls()
{
    TabBench bench(200);
    QAbstractButton* const left = bench.button(0);
    QAbstractButton* const right = bench.button(1);
    QVERIFY(left->isVisible());
    QVERIFY(right->isVisible());
    QCOMPARE(right->geometry().right(), bench.tab.width() - 1);
    QCOMPARE(bench.tab.FirstVisibleTab(), 1);
    QVERIFY(!left->isEnabled());
    QTest::mouseClick(right, Qt::LeftButton);
    QCOMPARE(bench.tab.FirstVisibleTab(), 2);
    // The first visible tab stands at the left end, and nothing of the one before it is seen.
    QCOMPARE(bench.surface()->x() + bench.tab.tabs().at(2).Left, 2);
    QVERIFY(bench.surface()->x() + tabEnd(bench.tab.tabs().spans()[0]) < 0);
    while (right->isEnabled())
        QTest::mouseClick(right, Qt::LeftButton);
    const int farthest = bench.tab.FirstVisibleTab();
    QVERIFY(bench.surface()->geometry().right() < left->x());
    right->click();
    QCOMPARE(bench.tab.FirstVisibleTab(), farthest);
    while (left->isEnabled())
        QTest::mouseClick(left, Qt::LeftButton);
    QCOMPARE(bench.tab.FirstVisibleTab(), 1);
    QCOMPARE(bench.surface()->x(), 0);
    QCOMPARE(bench.tab.SelectedTab(), 1);
}

void TestGnTabMouse::itsButtonsTakeNoFocus()
{
    TabBench bench(200);
    bench.window.setFocusPolicy(Qt::StrongFocus);
    bench.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&bench.window));
    bench.tab.setFocus();
    for (const int index : {1, 0}) {
        QTest::mouseClick(bench.window.windowHandle(), Qt::LeftButton, {},
                          bench.button(index)->mapTo(&bench.window, QPoint(5, 5)));
        QCOMPARE(bench.tab.FirstVisibleTab(), index + 1);
        QVERIFY(bench.surface()->hasFocus());
        QCOMPARE(bench.button(index)->focusPolicy(), Qt::NoFocus);
    }
}

void TestGnTabMouse::hearsNoMouseWithoutTabs()
{
    TabBench bench;
    bench.tab.RemoveAllTabs();
    bench.tab.resize(500, 29);
    QCoreApplication::processEvents();
    QSignalSpy moved(&bench.tab, &gnTab::TabMouseMove);
    QSignalSpy selected(&bench.tab, &gnTab::TabSelected);
    PaintCount count(bench.surface());
    bench.moveTo({0, 5});
    QTest::mousePress(bench.surface(), Qt::LeftButton, {}, {0, 5});
    bench.moveTo({0, 8});
    QTest::mouseRelease(bench.surface(), Qt::LeftButton, {}, {0, 8});
    bench.click({0, 5}, Qt::RightButton);
    QCoreApplication::processEvents();
    QVERIFY(moved.isEmpty());
    QVERIFY(selected.isEmpty());
    QCOMPARE(count.paints, 0);
    QVERIFY(bench.tab.AddTab(QStringLiteral("A long caption")));
    bench.moveTo(bench.middleOf(1));
    QCOMPARE(moved.count(), 1);
}

QTEST_MAIN(TestGnTabMouse)
#include "tst_gntabmouse.moc"
