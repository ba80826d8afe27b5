#include "controls/ScrollBar.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia::controls;

namespace {

bool turnWheel(ScrollBar& bar, QPoint angle, Qt::KeyboardModifiers modifiers = {})
{
    const QPointF middle = bar.rect().center();
    QWheelEvent event(middle, bar.mapToGlobal(middle), {}, angle, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&bar, &event);
    return event.isAccepted();
}

} // namespace

/// What reaches a bar by keys, by the wheel and by a screen reader.
class TestScrollBarKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void keys_data();
    void keys();
    void keysOfOthers_data();
    void keysOfOthers();
    void wheel_data();
    void wheel();
    void wheelAddsUp();
    void wheelOfOthers();
    void tellsReaders();
    void keepsAnotherName();
};

void TestScrollBarKeys::keys_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("value");
    QTest::newRow("down") << 1 << Qt::Key_Down << 51;
    QTest::newRow("up") << 1 << Qt::Key_Up << 49;
    QTest::newRow("right") << 2 << Qt::Key_Right << 51;
    QTest::newRow("left") << 2 << Qt::Key_Left << 49;
    for (const int alight : {1, 2}) {
        QTest::addRow("page down, %d", alight) << alight << Qt::Key_PageDown << 60;
        QTest::addRow("page up, %d", alight) << alight << Qt::Key_PageUp << 40;
        QTest::addRow("home, %d", alight) << alight << Qt::Key_Home << 0;
        QTest::addRow("end, %d", alight) << alight << Qt::Key_End << 100;
    }
}

void TestScrollBarKeys::keys()
{
    QFETCH(int, alight);
    QFETCH(Qt::Key, key);
    ScrollBar bar;
    bar.SetAlight(alight);
    bar.SetMax(100);
    bar.SetValue(50);
    QTest::keyClick(&bar, key);
    QTEST(bar.Value(), "value");
    bar.SetValue(50);
    QTest::keyClick(&bar, key, Qt::KeypadModifier);
    QTEST(bar.Value(), "value");
}

void TestScrollBarKeys::keysOfOthers_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("across, upright") << 1 << Qt::Key_Left << Qt::KeyboardModifiers();
    QTest::newRow("across, lying") << 2 << Qt::Key_Down << Qt::KeyboardModifiers();
    QTest::newRow("a letter") << 1 << Qt::Key_A << Qt::KeyboardModifiers();
    QTest::newRow("ctrl") << 1 << Qt::Key_Down << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("alt") << 1 << Qt::Key_Home << Qt::KeyboardModifiers(Qt::AltModifier);
    QTest::newRow("shift") << 2 << Qt::Key_Right << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void TestScrollBarKeys::keysOfOthers()
{
    QFETCH(int, alight);
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    ScrollBar bar;
    bar.SetAlight(alight);
    bar.SetMax(100);
    bar.SetValue(50);
    QKeyEvent event(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(&bar, &event);
    QVERIFY(!event.isAccepted());
    QCOMPARE(bar.Value(), 50);
}

void TestScrollBarKeys::wheel_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<QPoint>("angle");
    QTest::addColumn<int>("value");
    QTest::newRow("towards the user") << 1 << QPoint(0, -120) << 53;
    QTest::newRow("away from the user") << 1 << QPoint(0, 120) << 47;
    QTest::newRow("two notches") << 1 << QPoint(0, -240) << 56;
    QTest::newRow("lying, the same wheel") << 2 << QPoint(0, -120) << 53;
    QTest::newRow("lying, sideways") << 2 << QPoint(120, 0) << 47;
}

void TestScrollBarKeys::wheel()
{
    QFETCH(int, alight);
    QFETCH(QPoint, angle);
    ScrollBar bar;
    bar.SetAlight(alight);
    bar.SetMax(100);
    bar.SetValue(50);
    QVERIFY(turnWheel(bar, angle));
    QTEST(bar.Value(), "value");
}

void TestScrollBarKeys::wheelAddsUp()
{
    ScrollBar bar;
    bar.SetMax(100);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    for (int i = 0; i < 3; ++i)
        turnWheel(bar, {0, -30});
    QVERIFY(changes.isEmpty());
    turnWheel(bar, {0, -30});
    QCOMPARE(changes, QList<QVariantList>{{3}});
}

void TestScrollBarKeys::wheelOfOthers()
{
    ScrollBar bar;
    bar.SetMax(100);
    QVERIFY(!turnWheel(bar, {0, -120}, Qt::ControlModifier));
    QCOMPARE(bar.Value(), 0);
}

void TestScrollBarKeys::tellsReaders()
{
    ScrollBar bar;
    bar.SetMax(40);
    bar.SetValue(12);
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&bar);
    QVERIFY(access);
    QCOMPARE(access->role(), QAccessible::ScrollBar);
    QCOMPARE(access->text(QAccessible::Name), QStringLiteral("Horizontal scroll bar"));
    QCOMPARE(access->text(QAccessible::Value), QStringLiteral("12"));
    QCOMPARE(access->childCount(), 0);
    QCOMPARE(access->child(0), nullptr);
    QCOMPARE(access->childAt(0, 0), nullptr);
    QAccessibleValueInterface* const value = access->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->currentValue().toInt(), 12);
    QCOMPARE(value->minimumValue().toInt(), 0);
    QCOMPARE(value->maximumValue().toInt(), 40);
    QCOMPARE(value->minimumStepSize().toInt(), 1);
    value->setCurrentValue(50);
    QCOMPARE(bar.Value(), 40);
    bar.SetAlight(1);
    QCOMPARE(bar.accessibleName(), QStringLiteral("Vertical scroll bar"));
}

void TestScrollBarKeys::keepsAnotherName()
{
    ScrollBar bar;
    bar.setAccessibleName(QStringLiteral("Position in the strip"));
    bar.SetAlight(1);
    QCOMPARE(bar.accessibleName(), QStringLiteral("Position in the strip"));
}

QTEST_MAIN(TestScrollBarKeys)
#include "tst_scrollbarkeys.moc"
