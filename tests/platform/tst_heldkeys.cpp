// Which presses count while keys are held down.
#include "platform/HeldKeys.h"

#include <QKeyEvent>
#include <QTest>
#include <QWidget>

using namespace quorvia::platform;

namespace {

class Counted : public QWidget
{
  public:
    int presses = 0;

  protected:
    void keyPressEvent(QKeyEvent*) override { ++presses; }
};

void letGo(QWidget& widget, int key, ulong time)
{
    QKeyEvent event(QEvent::KeyRelease, key, Qt::NoModifier);
    event.setTimestamp(time);
    QCoreApplication::sendEvent(&widget, &event);
}

void press(QWidget& widget, int key, ulong time, bool repeats = false)
{
    for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress}) {
        QKeyEvent event(type, key, Qt::NoModifier, QString(), repeats);
        event.setTimestamp(time);
        event.ignore();
        QCoreApplication::sendEvent(&widget, &event);
    }
}

} // namespace

class TestHeldKeys : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void aHeldKeyCountsOnce()
    {
        HeldKeys held;
        held.watch();
        Counted first;
        Counted second;
        press(first, Qt::Key_Return, 1000);
        QCOMPARE(first.presses, 1);
        press(first, Qt::Key_Return, 1200, true);
        for (ulong time = 1250; time < 3000; time += 40)
            press(second, Qt::Key_Return, time); // told as first presses
        QCOMPARE(first.presses, 1);
        QCOMPARE(second.presses, 0);
        letGo(second, Qt::Key_Return, 3100);
        press(second, Qt::Key_Return, 3300);
        QCOMPARE(second.presses, 1);
    }

    void onlyTheDroppedKeyIsHeldBack()
    {
        HeldKeys held;
        held.observe();
        Counted first;
        Counted second;
        press(first, Qt::Key_Right, 500);
        press(first, Qt::Key_Right, 900, true);
        QCOMPARE(first.presses, 2); // as long as no window comes or goes
        press(first, Qt::Key_K, 1000);
        held.dropHeld();
        for (ulong time = 1500; time < 3000; time += 40)
            press(second, Qt::Key_K, time);
        QCOMPARE(second.presses, 0);
        letGo(second, Qt::Key_K, 3100);
        press(second, Qt::Key_K, 3600);
        press(second, Qt::Key_K, 4000, true);
        QCOMPARE(second.presses, 2); // pressed anew, it counts, and repeats
    }

    void anotherKeyEndsIt()
    {
        HeldKeys held;
        held.observe();
        Counted window;
        press(window, Qt::Key_K, 1000);
        held.dropHeld();
        press(window, Qt::Key_Right, 1100);
        press(window, Qt::Key_Right, 1500, true);
        press(window, Qt::Key_Right, 1540, true);
        QCOMPARE(window.presses, 4);
    }

    void theFirstRepeatMayBeLongInComing()
    {
        HeldKeys held;
        held.watch();
        Counted first;
        Counted second;
        press(first, Qt::Key_Return, 1000);
        press(second, Qt::Key_Return, 1660); // of the same press, to another window
        QCOMPARE(second.presses, 0);
        letGo(second, Qt::Key_Return, 2300); // as some displays tell of each repeat
        press(second, Qt::Key_Return, 2300);
        QCOMPARE(second.presses, 0);
        letGo(second, Qt::Key_Return, 2400);
        press(second, Qt::Key_Return, 2700);
        QCOMPARE(second.presses, 1);
        press(second, Qt::Key_Return, 9000); // let go where nobody of ours saw it
        QCOMPARE(second.presses, 2);
    }

    /// A question that comes up under a held key is not answered by it, and what closed it does nothing
    /// below.
    void modalWindowsDropTheHeldKey()
    {
        HeldKeys held;
        held.observe();
        Counted below;
        Counted question;
        question.setWindowModality(Qt::ApplicationModal);
        below.show();
        press(below, Qt::Key_Return, 1000);
        question.show();
        for (ulong time = 1660; time < 3000; time += 40)
            press(question, Qt::Key_Return, time);
        QCOMPARE(question.presses, 0);
        letGo(question, Qt::Key_Return, 3100);
        press(question, Qt::Key_Return, 3600); // the answer
        QCOMPARE(question.presses, 1);
        question.hide();
        for (ulong time = 4260; time < 5000; time += 40)
            press(below, Qt::Key_Return, time);
        QCOMPARE(below.presses, 1);
    }

    /// What the display says of a key that is let go, before or after the toolkit told of its press.
    void theDisplaysOwnWordCounts_data()
    {
        QTest::addColumn<ulong>("released"); // 0: nobody says so
        QTest::addColumn<ulong>("pressed");  // for the second time
        QTest::addColumn<bool>("repeat");
        QTest::newRow("let go") << 1012ul << 1660ul << false;
        QTest::newRow("let go, and soon pressed anew") << 1012ul << 1120ul << false;
        QTest::newRow("held") << 0ul << 1660ul << true;
        QTest::newRow("held, and soon repeated") << 0ul << 1030ul << true;
        QTest::newRow("let go for a repeat") << 1655ul << 1660ul << true;
        QTest::newRow("let go before") << 990ul << 1660ul << true;
    }

    void theDisplaysOwnWordCounts()
    {
        QFETCH(ulong, released);
        QFETCH(ulong, pressed);
        constexpr quint32 code = 36;
        for (const bool saidFirst : {true, false}) {
            KeyRepeats keys;
            const auto pressAt = [&keys](ulong time) {
                QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, code, 0, 0);
                event.setTimestamp(time);
                return keys.isRepeat(event);
            };
            if (saidFirst && released != 0)
                keys.noteRelease(code, released);
            QVERIFY(!pressAt(1000));
            if (!saidFirst && released != 0)
                keys.noteRelease(code, released);
            keys.noteRelease(code + 1, 1020); // another key
            QTEST(pressAt(pressed), "repeat");
        }
    }

    /// Of a display that tells of a press and a release for each repeat.
    void aRunOfRepeatsGoesOn()
    {
        HeldKeys held;
        held.watch();
        Counted widget;
        press(widget, Qt::Key_Return, 1000);
        letGo(widget, Qt::Key_Return, 1660);
        for (const ulong time : {1660, 1700, 1740}) {
            press(widget, Qt::Key_Return, time);
            letGo(widget, Qt::Key_Return, time);
        }
        QCOMPARE(widget.presses, 1);
        press(widget, Qt::Key_Return, 2100);
        letGo(widget, Qt::Key_Return, 2110);
        press(widget, Qt::Key_Return, 2230); // soon after, but pressed anew
        QCOMPARE(widget.presses, 3);
    }

    void otherWindowsDropNothing()
    {
        HeldKeys held;
        held.observe();
        Counted below;
        below.show();
        press(below, Qt::Key_Right, 1000);
        QWidget other;
        other.show();
        press(below, Qt::Key_Right, 1660, true);
        QCOMPARE(below.presses, 2);
    }

    void otherKeysCount()
    {
        HeldKeys held;
        held.watch();
        Counted widget;
        press(widget, Qt::Key_Y, 1000);
        press(widget, Qt::Key_N, 1050);
        press(widget, Qt::Key_Y, 1100);
        QCOMPARE(widget.presses, 3);
    }

    void aShortcutOfAHeldKeyDoesNotFire()
    {
        HeldKeys held;
        held.watch();
        Counted widget;
        QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_Y, Qt::NoModifier, QString(), true);
        event.ignore();
        QCoreApplication::sendEvent(&widget, &event);
        QVERIFY(event.isAccepted());
    }

    void withoutTimesOnlyRepeatsAreHeld()
    {
        HeldKeys held;
        held.watch();
        Counted widget;
        press(widget, Qt::Key_Y, 0);
        press(widget, Qt::Key_Y, 0);
        press(widget, Qt::Key_Y, 0, true);
        QCOMPARE(widget.presses, 2);
        held.rest();
        press(widget, Qt::Key_Y, 0, true);
        QCOMPARE(widget.presses, 3);
    }
};

QTEST_MAIN(TestHeldKeys)
#include "tst_heldkeys.moc"
