#include "app/WaitingInput.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using quorvia::app::WaitingInput;

class TestWaitingInput : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tellsOnce()
    {
        WaitingInput waiting;
        const QSignalSpy delivered(&waiting, &WaitingInput::delivered);
        QVERIFY(!waiting.isPassing());
        waiting.letPass();
        QVERIFY(waiting.isPassing());
        QCOMPARE(delivered.count(), 0);
        QTRY_COMPARE(delivered.count(), 1);
        QVERIFY(!waiting.isPassing());
        for (int turn = 0; turn < 10; ++turn)
            QCoreApplication::processEvents();
        QCOMPARE(delivered.count(), 1);
    }

    /// What needs a second turn to arrive, after the timers of each, has arrived.
    void tellsAfterWhatIsQueued()
    {
        WaitingInput waiting;
        bool arrived = false;
        bool arrivedFirst = false;
        connect(&waiting, &WaitingInput::delivered, this, [&] { arrivedFirst = arrived; });
        waiting.letPass();
        QTimer second;
        QTimer first;
        second.setSingleShot(true);
        first.setSingleShot(true);
        connect(&first, &QTimer::timeout, &second, [&second] { second.start(0); });
        connect(&second, &QTimer::timeout, this, [&] {
            QMetaObject::invokeMethod(
                this, [&] { arrived = true; }, Qt::QueuedConnection);
        });
        first.start(0);
        QTRY_VERIFY(!waiting.isPassing());
        QVERIFY(arrivedFirst);
    }

    void beginsAnew()
    {
        WaitingInput waiting;
        waiting.letPass();
        for (int again = 0; again < 10; ++again) {
            QCoreApplication::processEvents();
            waiting.letPass();
        }
        const QSignalSpy delivered(&waiting, &WaitingInput::delivered);
        QTRY_COMPARE(delivered.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestWaitingInput)
#include "tst_waitinginput.moc"
