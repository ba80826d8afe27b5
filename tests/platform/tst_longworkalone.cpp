// Long work in a program without windows.
#include "platform/LongWork.h"

#include <QTimer>
#include <QtTest>

using namespace quorvia::platform;

class TestLongWorkAlone : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void eventsRunAndNoBoxIsMade()
    {
        qint64 now = 0;
        LongWork work(nullptr, "Working", [&now] { return now; });
        int seconds = 0;
        for (; seconds < 10; ++seconds, now += 1000) {
            bool ran = false;
            QTimer::singleShot(0, this, [&ran] { ran = true; });
            QVERIFY(work.goOn(seconds, 10));
            QCOMPARE(ran, seconds > 0);
        }
        QCOMPARE(seconds, 10);
    }
};

QTEST_GUILESS_MAIN(TestLongWorkAlone)
#include "tst_longworkalone.moc"
