// The handle between two panes: what it tells of a drag, and when a drag ends.
#include "viewer/DragHandle.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

using quorvia::viewer::DragHandle;

class TestDragHandle : public QObject
{
    Q_OBJECT

  private:
    static void move(DragHandle& handle, QPoint to, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QMouseEvent event(QEvent::MouseMove, to, handle.mapToGlobal(to), Qt::NoButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&handle, &event);
    }

  private Q_SLOTS:
    void tellsHowFarItWasDragged_data()
    {
        QTest::addColumn<Qt::Orientation>("axis");
        QTest::addColumn<int>("offset");
        QTest::newRow("up and down") << Qt::Vertical << 7;
        QTest::newRow("across") << Qt::Horizontal << -4;
    }

    void tellsHowFarItWasDragged()
    {
        QFETCH(Qt::Orientation, axis);
        QFETCH(int, offset);
        DragHandle handle(axis, QStringLiteral("h"), nullptr);
        handle.resize(50, 50);
        handle.show();
        QSignalSpy dragged(&handle, &DragHandle::dragged);
        QSignalSpy released(&handle, &DragHandle::released);
        move(handle, {30, 30}); // nothing is held yet
        QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(20, 20));
        QVERIFY(handle.isDragged());
        move(handle, {20, 20});
        QCOMPARE(dragged.count(), 0);
        move(handle, {16, 27});
        QCOMPARE(dragged.count(), 1);
        QCOMPARE(dragged.last().first().toInt(), offset);
        QTest::mouseRelease(&handle, Qt::LeftButton, {}, QPoint(16, 27));
        QCOMPARE(released.count(), 1);
        QVERIFY(!handle.isDragged());
        move(handle, {0, 0});
        QCOMPARE(dragged.count(), 1);
    }

    void otherButtonsDoNotDrag()
    {
        DragHandle handle(Qt::Vertical, QStringLiteral("h"), nullptr);
        QSignalSpy released(&handle, &DragHandle::released);
        QTest::mousePress(&handle, Qt::RightButton);
        QVERIFY(!handle.isDragged());
        QTest::mouseRelease(&handle, Qt::LeftButton);
        QCOMPARE(released.count(), 0);
    }

    void aHiddenHandleIsNotHeld()
    {
        DragHandle handle(Qt::Vertical, QStringLiteral("h"), nullptr);
        handle.resize(50, 50);
        handle.show();
        QSignalSpy released(&handle, &DragHandle::released);
        QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(20, 20));
        handle.hide();
        QVERIFY(!handle.isDragged());
        QCOMPARE(released.count(), 0);
    }

    void aReleaseThatWentElsewhereEndsTheDrag()
    {
        DragHandle handle(Qt::Vertical, QStringLiteral("h"), nullptr);
        handle.resize(50, 50);
        handle.show();
        QSignalSpy dragged(&handle, &DragHandle::dragged);
        QTest::mousePress(&handle, Qt::LeftButton, {}, QPoint(20, 20));
        move(handle, {20, 40}, Qt::NoButton);
        QVERIFY(!handle.isDragged());
        QCOMPARE(dragged.count(), 0);
    }
};

QTEST_MAIN(TestDragHandle)
#include "tst_draghandle.moc"
