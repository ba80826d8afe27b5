// What the mouse does on the picture.
#include "viewer/ViewStage.h"

#include <QTest>

using namespace quorvia;
using test::ViewStage;

class TestViewportGestures : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void aDragPans()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({400, 300});
        QCOMPARE(stage.ix1.MousePointer(), 25);
        stage.drag({390, 295});
        QCOMPARE(stage.ix1.pos(), QPoint(-10, -5));
        stage.drag({300, 200});
        QCOMPARE(stage.ix1.pos(), QPoint(-100, -100)); // the picture follows the pointer
        stage.drag({900, 900});
        QCOMPARE(stage.ix1.pos(), QPoint(0, 0));
        stage.release({900, 900});
        QCOMPARE(stage.ix1.MousePointer(), 0);
        QVERIFY(stage.tools.isEmpty());
    }

    void withOneBarThePanGoesOneWay()
    {
        ViewStage stage(QSize(700, 1500));
        stage.press({400, 300});
        stage.drag({350, 200});
        QCOMPARE(stage.ix1.y(), -100);
        QCOMPARE(stage.ix1.x(), 50);
        stage.release({350, 200});
    }

    void withoutBarsThereIsNothingToPan()
    {
        ViewStage stage(QSize(300, 200));
        stage.press({400, 300});
        QCOMPARE(stage.ix1.MousePointer(), 0);
        stage.release({400, 300});
    }

    void inAFitThereAreNoGestures()
    {
        ViewStage stage(QSize(2000, 1500), true);
        stage.press({400, 300});
        QCOMPARE(stage.ix1.MousePointer(), 0);
        stage.press({400, 300}, Qt::AltModifier);
        QCOMPARE(stage.ix1.MousePointer(), 0);
        stage.drag({500, 400}, Qt::AltModifier);
        stage.release({500, 400}, Qt::AltModifier);
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
        QVERIFY(stage.viewport.FitToWindow());
    }

    void modifiersZoomOntoARectangle_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::newRow("Alt") << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("Ctrl, where the desktop keeps Alt") << Qt::KeyboardModifiers(Qt::ControlModifier);
    }

    void modifiersZoomOntoARectangle()
    {
        QFETCH(Qt::KeyboardModifiers, keys);
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, keys);
        QCOMPARE(stage.ix1.MousePointer(), 30);
        stage.drag({250, 200}, keys);
        const QImage framed = stage.ix1.grab(QRect(0, 0, 400, 300)).toImage();
        QCOMPARE(framed.pixelColor(100, 150), QColor(Qt::red));
        QCOMPARE(framed.pixelColor(250, 150), QColor(Qt::red));
        QCOMPARE(framed.pixelColor(175, 200), QColor(Qt::red));
        QVERIFY(framed.pixelColor(175, 150) != QColor(Qt::red));
        stage.drag({300, 200}, keys);
        QVERIFY(stage.ix1.grab(QRect(0, 0, 400, 300)).toImage().pixelColor(250, 150) != QColor(Qt::red));
        stage.release({300, 200}, keys);
        QCOMPARE(stage.ix1.MousePointer(), 0);
        const double across = (800.0 - stage.viewport.sb1()->width()) / 200;
        QCOMPARE(stage.ix1.ZoomFactor(), across);
        QVERIFY(qAbs(stage.ix1.x() + 100 * across) <= 1);
    }

    void aRectangleFromTheOtherCorner()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({300, 200}, Qt::AltModifier);
        stage.drag({100, 100}, Qt::AltModifier);
        stage.release({100, 100}, Qt::AltModifier);
        QVERIFY(stage.ix1.ZoomFactor() > 3);
    }

    void theSelectionEndsAtThePicture()
    {
        ViewStage stage(QSize(500, 400));
        const QPoint corner = stage.ix1.pos();
        stage.press(corner + QPoint(400, 300), Qt::AltModifier);
        stage.drag({799, 599}, Qt::AltModifier);
        stage.release({799, 599}, Qt::AltModifier);
        // 400, 300 to 499, 399: 99 pixels each way.
        const double down = (600.0 - stage.viewport.sb2()->height()) / 99;
        QCOMPARE(stage.ix1.ZoomFactor(), down);
    }

    void aRectangleWithoutAreaIsDropped()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, Qt::AltModifier);
        stage.drag({100, 180}, Qt::AltModifier);
        stage.release({100, 180}, Qt::AltModifier);
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
        // The frame stays until the next gesture.
        QCOMPARE(stage.ix1.grab(QRect(90, 90, 40, 100)).toImage().pixelColor(10, 50), QColor(Qt::red));
        stage.press({200, 200}, Qt::AltModifier);
        QVERIFY(stage.ix1.grab(QRect(90, 90, 40, 100)).toImage().pixelColor(10, 50) != QColor(Qt::red));
    }

    void onePixelZoomsTenTimes()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, Qt::AltModifier);
        stage.drag({101, 101}, Qt::AltModifier);
        stage.release({101, 101}, Qt::AltModifier);
        QCOMPARE(stage.ix1.ZoomFactor(), 10.0);
    }

    void modifierAndRightZoomOut()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, Qt::AltModifier, Qt::RightButton);
        stage.release({100, 100}, Qt::AltModifier, Qt::RightButton);
        QCOMPARE(stage.tools, QStringList{QStringLiteral("miZoomOut")});
        QCOMPARE(stage.menus, 0);
    }

    void inAFitNoButtonZoomsOrPans()
    {
        ViewStage stage(QSize(2000, 1500), true);
        const QRect place = stage.ix1.geometry();
        for (const Qt::KeyboardModifiers keys : {Qt::NoModifier, Qt::AltModifier, Qt::ControlModifier}) {
            stage.press({100, 100}, keys);
            stage.drag({300, 300}, keys);
            stage.release({300, 300}, keys);
        }
        for (const Qt::KeyboardModifiers keys : {Qt::AltModifier, Qt::ControlModifier}) {
            stage.press({100, 100}, keys, Qt::RightButton);
            stage.release({100, 100}, keys, Qt::RightButton);
        }
        QCOMPARE(stage.ix1.geometry(), place);
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
        QVERIFY(stage.tools.isEmpty());
    }

    void rightOpensTheMenu_data()
    {
        QTest::addColumn<bool>("fit");
        QTest::newRow("fit") << true;
        QTest::newRow("actual size") << false;
    }

    void rightOpensTheMenu()
    {
        QFETCH(bool, fit);
        ViewStage stage(QSize(2000, 1500), fit);
        stage.press({100, 100}, {}, Qt::RightButton);
        QCOMPARE(stage.menus, 0);
        stage.release({100, 100}, {}, Qt::RightButton);
        QCOMPARE(stage.menus, 1);
        stage.release({100, 100}, Qt::ShiftModifier, Qt::RightButton);
        QCOMPARE(stage.menus, 1);
    }

    void aClickOnAZoomedPictureLeadsBack()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.viewport.zoomTo(3);
        stage.press({400, 300});
        stage.release({400, 300});
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
        QCOMPARE(stage.ix1.size(), QSize(2000, 1500));
    }

    void aClickThatEndsAPanDoesNot()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.viewport.zoomTo(3);
        stage.press({400, 300});
        stage.drag({380, 290});
        stage.release({380, 290});
        QCOMPARE(stage.ix1.ZoomFactor(), 3.0);
        stage.press({400, 300}); // the next one does again
        stage.release({400, 300});
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
    }

    void aDoubleClickShowsItInFull()
    {
        for (const bool fit : {true, false}) {
            ViewStage stage(QSize(2000, 1500), fit);
            const auto send = [&stage](QEvent::Type type, quint64 milliseconds) {
                QMouseEvent event(type, QPointF(50, 50), QPointF(50, 50), Qt::LeftButton, Qt::LeftButton, {});
                event.setTimestamp(milliseconds);
                QCoreApplication::sendEvent(&stage.ix1, &event);
            };
            send(QEvent::MouseButtonPress, 1000);
            send(QEvent::MouseButtonRelease, 1050);
            send(QEvent::MouseButtonDblClick, 1100);
            QCOMPARE(stage.tools, QStringList{QStringLiteral("miFullScreen")});
            // The second click of two, the first of which closed a window in front.
            send(QEvent::MouseButtonDblClick, 1200);
            send(QEvent::MouseButtonPress, 2000);
            send(QEvent::MouseButtonRelease, 2050);
            send(QEvent::MouseButtonDblClick, 9000);
            QCOMPARE(stage.tools.size(), 1);
        }
    }

    void theWheelScrolls_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::addColumn<QPoint>("angle");
        QTest::addColumn<QPoint>("corner");
        const Qt::KeyboardModifiers none;
        const QSize large(2000, 1500);
        QTest::newRow("down") << large << none << QPoint(0, -120) << QPoint(0, -60);
        QTest::newRow("up at the top") << large << none << QPoint(0, 120) << QPoint(0, 0);
        QTest::newRow("half a step") << large << none << QPoint(0, -60) << QPoint(0, -30);
        QTest::newRow("Shift: across")
            << large << Qt::KeyboardModifiers(Qt::ShiftModifier) << QPoint(0, -120) << QPoint(-60, 0);
        QTest::newRow("sideways") << large << none << QPoint(-120, 0) << QPoint(-60, 0);
        QTest::newRow("both ways at once") << large << none << QPoint(-30, -60) << QPoint(-15, -30);
        QTest::newRow("only across shows") << QSize(2000, 600) << none << QPoint(0, -120) << QPoint(-60, 0);
    }

    void theWheelScrolls()
    {
        QFETCH(QSize, image);
        QFETCH(Qt::KeyboardModifiers, keys);
        QFETCH(QPoint, angle);
        ViewStage stage(image);
        stage.wheel({400, 300}, angle, keys);
        QTEST(stage.ix1.pos(), "corner");
    }

    void smallTurnsOfTheWheelAddUp()
    {
        ViewStage stage(QSize(2000, 1500));
        for (int i = 0; i < 120; ++i)
            stage.wheel({400, 300}, {0, -1});
        QCOMPARE(stage.ix1.pos(), QPoint(0, -60));
        stage.wheel({400, 300}, {0, 60}, Qt::ControlModifier);
        stage.wheel({400, 300}, {0, -120}, Qt::ControlModifier); // the half step before counts no more
        QCOMPARE(stage.tools, QStringList{QStringLiteral("miZoomOut")});
    }

    void theWheelZoomsAroundThePointerOutOfAFit_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<QPoint>("pointer"); // over the picture
        QTest::newRow("wide") << QSize(4000, 1600) << QPoint(200, 260);
        QTest::newRow("high") << QSize(1600, 4000) << QPoint(330, 500);
        QTest::newRow("a little smaller than the panel") << QSize(780, 590) << QPoint(500, 200);
    }

    void theWheelZoomsAroundThePointerOutOfAFit()
    {
        QFETCH(QSize, image);
        QFETCH(QPoint, pointer);
        ViewStage stage(image, true);
        const QPointF before = stage.viewport.shareAt(pointer);
        stage.wheel(pointer, {0, 120}, Qt::ControlModifier);
        QCOMPARE(stage.ix1.ZoomFactor(), 1.2);
        const QPointF off = stage.viewport.shareAt(pointer) - before;
        QVERIFY2(qAbs(off.x() * image.width()) <= 2 && qAbs(off.y() * image.height()) <= 2,
                 qPrintable(QStringLiteral("off by %1, %2").arg(off.x()).arg(off.y())));
    }

    void otherButtonsDoNotClickTwice_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<Qt::KeyboardModifiers>("keys");
        QTest::newRow("right, to zoom out") << Qt::RightButton << Qt::KeyboardModifiers(Qt::AltModifier);
        QTest::newRow("middle") << Qt::MiddleButton << Qt::KeyboardModifiers();
        QTest::newRow("side") << Qt::BackButton << Qt::KeyboardModifiers();
    }

    void otherButtonsDoNotClickTwice()
    {
        QFETCH(Qt::MouseButton, button);
        QFETCH(Qt::KeyboardModifiers, keys);
        ViewStage stage(QSize(2000, 1500));
        stage.press({50, 50}, keys, button);
        stage.release({50, 50}, keys, button);
        QTest::mouseDClick(&stage.ix1, button, keys, QPoint(50, 50));
        stage.release({50, 50}, keys, button);
        QVERIFY(!stage.tools.contains(QStringLiteral("miFullScreen")));
        QCOMPARE(stage.tools.size(), button == Qt::RightButton ? 2 : 0);
    }

    void anyReleaseEndsTheModeOfTheMouse()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({400, 300});
        QCOMPARE(stage.ix1.MousePointer(), 25);
        stage.release({400, 300}, Qt::ShiftModifier, Qt::RightButton);
        QCOMPARE(stage.ix1.MousePointer(), 0);
    }

    void aModifierLetGoBeforeTheButtonLeadsBack()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.viewport.zoomTo(3);
        stage.press({100, 100}, Qt::AltModifier);
        stage.drag({200, 200}, Qt::AltModifier);
        stage.release({200, 200});
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
    }

    void aStepOfTheMouseKeepsOthersOut()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({400, 300});
        const QPoint at = stage.inControl({100, 100}); // waits while the step lets events run
        QCoreApplication::postEvent(&stage.ix1,
                                    new QMouseEvent(QEvent::MouseMove, at, stage.ix1.mapToGlobal(at),
                                                    Qt::NoButton, Qt::LeftButton, Qt::NoModifier));
        stage.drag({390, 295});
        QCOMPARE(stage.ix1.pos(), QPoint(-10, -5));
    }

    void aDroppedFrameGoesInAFitToo()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, Qt::ControlModifier);
        stage.drag({100, 180}, Qt::ControlModifier);
        stage.release({100, 180}, Qt::ControlModifier);
        stage.viewport.flipFit();
        stage.press({400, 300});
        const QImage shown = stage.ix1.grab().toImage();
        for (int x = 0; x < shown.width(); ++x)
            QVERIFY(shown.pixelColor(x, shown.height() / 10) != QColor(Qt::red));
    }

    void aReleaseThatWentElsewhereEndsThePan()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({400, 300});
        stage.drag({350, 250});
        stage.drag({300, 200}, {}, Qt::RightButton);
        QCOMPARE(stage.ix1.pos(), QPoint(-50, -50));
        QCOMPARE(stage.ix1.MousePointer(), 0);
        stage.viewport.zoomTo(3);
        stage.release({300, 200}); // of a click
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
    }

    void aDroppedFrameGoesWithTheNextGesture()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.press({100, 100}, Qt::ControlModifier);
        stage.drag({100, 180}, Qt::ControlModifier);
        stage.release({100, 180}, Qt::ControlModifier);
        const auto lineColor = [&stage] {
            return stage.ix1.grab(QRect(90, 90, 40, 100)).toImage().pixelColor(10, 50);
        };
        QCOMPARE(lineColor(), QColor(Qt::red));
        stage.press({400, 300}); // a pan
        QVERIFY(lineColor() != QColor(Qt::red));
    }

    void theWheelZoomsAroundThePointer()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.viewport.scrollBy(500, 400);
        const QPointF before = QPointF(stage.ix1.mapFromParent(QPoint(200, 150)));
        stage.wheel({200, 150}, {0, 60}, Qt::ControlModifier); // half a step is not one yet
        QVERIFY(stage.tools.isEmpty());
        stage.wheel({200, 150}, {0, 60}, Qt::ControlModifier);
        QCOMPARE(stage.tools, QStringList{QStringLiteral("miZoomIn")});
        QCOMPARE(stage.ix1.ZoomFactor(), 1.2);
        const QPointF after = QPointF(stage.ix1.mapFromParent(QPoint(200, 150))) / 1.2;
        QVERIFY2((after - before).manhattanLength() <= 2, qPrintable(QStringLiteral("from %1, %2 to %3, %4")
                                                                         .arg(before.x())
                                                                         .arg(before.y())
                                                                         .arg(after.x())
                                                                         .arg(after.y())));
        stage.wheel({200, 150}, {0, -240}, Qt::ControlModifier);
        QCOMPARE(stage.tools.mid(1), (QStringList{QStringLiteral("miZoomOut"), QStringLiteral("miZoomOut")}));
    }
};

QTEST_MAIN(TestViewportGestures)
#include "tst_viewportgestures.moc"
