#include "controls/gnTab.h"
#include "controls/TabBench.h"
#include "controls/TabMetrics.h"
#include "controls/TabPainter.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia::controls;
using namespace quorvia::test;

class TestGnTab : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void selectsTheFirstTabWithoutASignal();
    void refusesAKeyTwice();
    void raisesNothingForAnUnknownTab();
    void signalsEverySelection();
    void signalsARemovalOfTheSelectedTab();
    void measuresInBold();
    void scrollsToTheSelectedTab();
    void returnsWhenAllFit();
    void selectsByKey_data();
    void selectsByKey();
    void leavesOtherKeysAlone();
    void takesTheFocusByTabOnly();
    void keepsProperties();
    void followsTheFontAround();
    void keepsWhatTheHostGives();
    void isAListOfTabsToAScreenReader();
    void worksWithoutTabs();
    void survivesAChangeFromItsOwnSignal();
};

void TestGnTab::selectsTheFirstTabWithoutASignal()
{
    gnTab tab;
    QSignalSpy spy(&tab, &gnTab::TabSelected);
    QCOMPARE(tab.SelectedTab(), 0);
    QCOMPARE(tab.SelectedTabKey(), QString());
    QVERIFY(tab.AddTab(QStringLiteral("A"), QStringLiteral("a")));
    QVERIFY(tab.AddTab(QStringLiteral("B"), QStringLiteral("b"), {}, QStringLiteral("a")));
    QCOMPARE(tab.SelectedTab(), 2);
    QCOMPARE(tab.SelectedTabKey(), QStringLiteral("a"));
    QCOMPARE(spy.count(), 0);
}

void TestGnTab::refusesAKeyTwice()
{
    TabBench bench;
    const ControlStatus status = bench.tab.AddTab(QStringLiteral("again"), QStringLiteral("Image"));
    QVERIFY(!status);
    QCOMPARE(status.error().Number, 8601);
    QCOMPARE(bench.tab.tabs().count(), 3);
}

void TestGnTab::raisesNothingForAnUnknownTab()
{
    TabBench bench;
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    const QString unknown = QStringLiteral("Editor");
    bench.tab.RemoveTab(unknown);
    bench.tab.RemoveTab(4);
    bench.tab.SetTabCaption(unknown, unknown);
    bench.tab.SetTabToolTip(0, unknown);
    QCOMPARE(bench.tab.tabs().count(), 3);
    QCOMPARE(bench.tab.SelectedTabKey(), QStringLiteral("Image"));
    bench.tab.SetSelectedTab(unknown);
    QCOMPARE(bench.tab.SelectedTab(), 0);
    QCOMPARE(spy.count(), 0);
}

void TestGnTab::signalsEverySelection()
{
    TabBench bench;
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    bench.tab.SetSelectedTab(QStringLiteral("Filmstrip"));
    bench.tab.SetSelectedTab(3);
    const QVariantList expected{QStringLiteral("Filmstrip"), QStringLiteral("Filmstrip pane"), 3};
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0), expected);
    QCOMPARE(spy.at(1), expected);
}

void TestGnTab::signalsARemovalOfTheSelectedTab()
{
    TabBench bench;
    bench.tab.SetSelectedTab(3);
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    bench.tab.RemoveTab(QStringLiteral("Image"));
    QCOMPARE(spy.count(), 0);
    bench.tab.RemoveTab(QStringLiteral("Filmstrip"));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("Information"));
    bench.tab.RemoveTab(1);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(bench.tab.SelectedTab(), 0);
}

void TestGnTab::measuresInBold()
{
    TabBench bench;
    QFont bold = plainFont();
    bold.setBold(true);
    const std::vector<TabSpan> before = bench.tab.tabs().spans();
    QCOMPARE(before[0].Left, 5);
    QCOMPARE(before[0].Width, qCeil(QFontMetricsF(bold).horizontalAdvance(QStringLiteral("Image pane"))) + 4);
    QCOMPARE(before[1].Left, before[0].Left + before[0].Width + 3);
    QCOMPARE(bench.surface()->width(), tabEnd(before[2]));
    bench.tab.SetSelectedTab(2);
    QCOMPARE(bench.tab.tabs().spans(), before);
    bench.tab.SetTabCaption(1, QStringLiteral("Loading..."));
    QVERIFY(bench.tab.tabs().at(1).Width != before[0].Width);
    // An ampersand is a letter like others.
    QVERIFY(captionWidth(QStringLiteral("a&b"), bold) > captionWidth(QStringLiteral("ab"), bold));
}

void TestGnTab::scrollsToTheSelectedTab()
{
    TabBench bench(200);
    bench.tab.SetSelectedTab(3);
    QVERIFY(bench.surface()->geometry().right() < bench.button(0)->x());
    const int first = bench.tab.FirstVisibleTab();
    QVERIFY(first > 1);
    bench.tab.SetSelectedTab(1);
    QCOMPARE(bench.tab.FirstVisibleTab(), 1);
    // By the mouse too: of the second tab only a part is in sight.
    const TabRecord& second = bench.tab.tabs().at(2);
    QVERIFY(second.Left + second.Width > 164);
    bench.click({second.Left + 2, 10});
    QCOMPARE(bench.tab.SelectedTab(), 2);
    QCOMPARE(bench.tab.FirstVisibleTab(), 2);
}

void TestGnTab::returnsWhenAllFit()
{
    TabBench bench(200);
    bench.tab.SetSelectedTab(3);
    QVERIFY(bench.tab.FirstVisibleTab() > 1);
    bench.tab.resize(500, 29);
    QCOMPARE(bench.tab.FirstVisibleTab(), 1);
    QVERIFY(!bench.button(0)->isVisible());
    QCOMPARE(bench.tab.SelectedTab(), 3);
    bench.tab.resize(200, 29);
    QVERIFY(bench.button(0)->isVisible());
    QCOMPARE(bench.tab.SelectedTab(), 3);
    bench.tab.RemoveTab(2);
    bench.tab.RemoveTab(1);
    QCOMPARE(bench.tab.FirstVisibleTab(), 1);
    QVERIFY(!bench.button(1)->isVisible());
}

void TestGnTab::selectsByKey_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("selected");
    QTest::newRow("right") << 1 << int(Qt::Key_Right) << 2;
    QTest::newRow("right at the end") << 3 << int(Qt::Key_Right) << 3;
    QTest::newRow("left") << 3 << int(Qt::Key_Left) << 2;
    QTest::newRow("left at the begin") << 1 << int(Qt::Key_Left) << 1;
    QTest::newRow("home") << 3 << int(Qt::Key_Home) << 1;
    QTest::newRow("end") << 1 << int(Qt::Key_End) << 3;
    QTest::newRow("right, none selected") << 0 << int(Qt::Key_Right) << 1;
    QTest::newRow("left, none selected") << 0 << int(Qt::Key_Left) << 1;
}

void TestGnTab::selectsByKey()
{
    QFETCH(int, from);
    QFETCH(int, key);
    QFETCH(int, selected);
    TabBench bench;
    bench.tab.SetSelectedTab(from);
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    QTest::keyClick(bench.surface(), Qt::Key(key));
    QCOMPARE(bench.tab.SelectedTab(), selected);
    QCOMPARE(int(spy.count()), from == selected ? 0 : 1);
}

void TestGnTab::leavesOtherKeysAlone()
{
    TabBench bench;
    for (const auto& [key, modifiers] :
         {std::pair(Qt::Key_Up, Qt::NoModifier), std::pair(Qt::Key_Right, Qt::ControlModifier),
          std::pair(Qt::Key_Escape, Qt::NoModifier)}) {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        press.accept();
        QCoreApplication::sendEvent(bench.surface(), &press);
        QCOMPARE(bench.tab.SelectedTab(), 1);
        QVERIFY(!press.isAccepted());
    }
}

void TestGnTab::takesTheFocusByTabOnly()
{
    TabBench bench;
    QLineEdit edit(&bench.window);
    edit.move(0, 100);
    edit.show();
    QWidget::setTabOrder(&edit, bench.surface());
    bench.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&bench.window));
    edit.setFocus();
    QTRY_VERIFY(edit.hasFocus());
    bench.click(bench.middleOf(1));
    QVERIFY(edit.hasFocus());
    const QImage without = bench.painted();
    QTest::keyClick(&edit, Qt::Key_Tab);
    QVERIFY(bench.surface()->hasFocus());
    QVERIFY(bench.painted() != without); // the focus is shown
    QTest::keyClick(bench.surface(), Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(!bench.surface()->hasFocus());
    QCOMPARE(bench.painted(), without);
    // Given by the program it is not shown until a key is used.
    bench.tab.setFocus();
    QVERIFY(bench.surface()->hasFocus());
    QCOMPARE(bench.painted(), without);
    QTest::keyClick(bench.surface(), Qt::Key_Left);
    QVERIFY(bench.painted() != without);
}

void TestGnTab::keepsProperties()
{
    gnTab tab;
    QVERIFY(tab.properties() == TabProperties::whenNew());
    tab.ReadProperties({});
    QVERIFY(tab.properties() == TabProperties());
    tab.SetHoverColour(0x123456);
    tab.SetTabBorderType(3);
    const QVariantMap bag = tab.WriteProperties();
    QCOMPARE(bag.value(QStringLiteral("HoverColour")).toUInt(), 0x123456u);
    QCOMPARE(bag.value(QStringLiteral("BorderType")).toInt(), 3);
    gnTab other;
    other.ReadProperties(bag);
    QVERIFY(other.properties() == tab.properties());
    QCOMPARE(other.TabBorderType(), 3);
}

void TestGnTab::followsTheFontAround()
{
    QWidget window;
    window.setFont(plainFont());
    gnTab tab(&window);
    QVERIFY(tab.AddTab(QStringLiteral("Information")));
    QCOMPARE(tab.Font().pixelSize(), 13);
    const int width = tab.tabs().at(1).Width;
    QFont larger = plainFont();
    larger.setPixelSize(26);
    window.setFont(larger);
    QVERIFY(tab.tabs().at(1).Width > width);
    QVERIFY(tab.sizeHint().height() > 29);
    tab.SetBackColor(blue);
    QCOMPARE(tab.Font().pixelSize(), 26);
    tab.SetFont(plainFont());
    QCOMPARE(tab.tabs().at(1).Width, width);
    QCOMPARE(tab.sizeHint().height(), 29);
    tab.ReadProperties({});
    QCOMPARE(tab.Font().pixelSize(), 26);
}

void TestGnTab::keepsWhatTheHostGives()
{
    TabBench bench;
    bench.tab.SetTag(QStringLiteral("busy"));
    QCOMPARE(bench.tab.Tag(), QStringLiteral("busy"));
    QVERIFY(bench.tab.hWnd() != 0);
    bench.tab.SetMousePointer(Qt::PointingHandCursor);
    QCOMPARE(bench.surface()->cursor().shape(), Qt::PointingHandCursor);
    QPixmap icon(16, 16);
    icon.fill(Qt::red);
    bench.tab.SetMouseIcon(icon);
    QCOMPARE(bench.surface()->cursor().shape(), Qt::PointingHandCursor);
    bench.tab.SetMousePointer(Qt::BitmapCursor);
    QCOMPARE(bench.surface()->cursor().shape(), Qt::BitmapCursor);
    QCOMPARE(bench.tab.MouseIcon().size(), icon.size());
    bench.tab.SetMouseIcon({});
    QCOMPARE(bench.surface()->cursor().shape(), Qt::ArrowCursor);
}

void TestGnTab::isAListOfTabsToAScreenReader()
{
    TabBench bench;
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(bench.surface());
    QVERIFY(list);
    QCOMPARE(list->role(), QAccessible::PageTabList);
    QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Tabs"));
    QCOMPARE(list->childCount(), 3);
    QAccessibleInterface* const second = list->child(1);
    QCOMPARE(second->role(), QAccessible::PageTab);
    QCOMPARE(second->text(QAccessible::Name), QStringLiteral("Information pane"));
    QCOMPARE(second->text(QAccessible::Description), QStringLiteral("About Information"));
    QCOMPARE(second->parent(), list);
    QCOMPARE(list->indexOfChild(second), 1);
    QVERIFY(!second->state().selected);
    QVERIFY(second->state().selectable);
    QCOMPARE(list->childAt(second->rect().center().x(), second->rect().center().y()), second);
    QVERIFY(!list->child(3));
    second->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(bench.tab.SelectedTab(), 2);
    QVERIFY(second->state().selected);
    QAccessibleInterface* const third = list->child(2);
    bench.tab.RemoveTab(3);
    QVERIFY(!third->isValid());
    QVERIFY(third->state().invalid);
    QCOMPARE(third->text(QAccessible::Name), QString());
}

void TestGnTab::worksWithoutTabs()
{
    TabBench bench;
    bench.tab.RemoveAllTabs();
    QSignalSpy spy(&bench.tab, &gnTab::TabSelected);
    QCOMPARE(bench.surface()->width(), 1);
    QVERIFY(!bench.button(0)->isVisible());
    QCOMPARE(bench.surface()->focusPolicy(), Qt::NoFocus);
    bench.moveTo({0, 5});
    bench.click({0, 5});
    QTest::keyClick(bench.surface(), Qt::Key_Right);
    QCOMPARE(spy.count(), 0);
    QVERIFY(!bench.timer()->isActive());
    bench.tab.resize(0, 0);
    bench.tab.resize(20, 3);
    QVERIFY(bench.tab.AddTab(QStringLiteral("A")));
    QCOMPARE(bench.tab.SelectedTab(), 1);
}

void TestGnTab::survivesAChangeFromItsOwnSignal()
{
    TabBench bench;
    connect(&bench.tab, &gnTab::TabSelected, this, [&] { bench.tab.RemoveAllTabs(); });
    bench.click(bench.middleOf(2));
    QCOMPARE(bench.tab.SelectedTab(), 0);
    QCOMPARE(bench.tab.tabs().count(), 0);
}

QTEST_MAIN(TestGnTab)
#include "tst_gntab.moc"
