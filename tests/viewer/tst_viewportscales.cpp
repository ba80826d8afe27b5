// What must hold of the viewport at every device pixel ratio: positions here are device-independent pixels,
// the picture's pixels are the screen's.
#include "viewer/ViewStage.h"

#include <QTest>

#include <cmath>

using namespace quorvia;
using test::ViewStage;

class TestViewportScales : public QObject
{
    Q_OBJECT

  private:
    static double ratio() { return qGuiApp->devicePixelRatio(); }
    /// `length` device-independent pixels in the screen's pixels.
    static double device(double length) { return length * ratio(); }

  private Q_SLOTS:
    void initTestCase()
    {
        const double asked = qEnvironmentVariable("QT_SCALE_FACTOR", QStringLiteral("1")).toDouble();
        QCOMPARE(ratio(), asked);
    }

    void aPixelOfThePictureIsOneOfTheScreen()
    {
        ViewStage stage(QSize(2400, 1800));
        QVERIFY(std::abs(device(stage.ix1.width()) - 2400) <= ratio());
        QVERIFY(std::abs(device(stage.ix1.height()) - 1800) <= ratio());
        const controls::ScrollBar& down = *stage.viewport.sb1();
        QVERIFY(!down.isHidden());
        QVERIFY(std::abs(down.Max() - (1800 - device(600 - stage.viewport.sb2()->height()))) <= 2);
        stage.viewport.sb1()->SetValue(down.Max()); // the last row is above the bar then
        QVERIFY(std::abs(device(stage.ix1.geometry().bottom() + 1 -
                                (600 - stage.viewport.sb2()->height()))) <= 2 * ratio());
    }

    void thePictureFollowsThePointerToThePixel()
    {
        ViewStage stage(QSize(3000, 2400));
        QPoint pointer(500, 400);
        stage.press(pointer);
        const QPoint grasped = stage.viewport.imagePixelAt(stage.inControl(pointer));
        for (int step = 0; step < 40; ++step) { // odd steps, whose fractions must not add up
            pointer -= QPoint(7, step % 3);
            stage.drag(pointer);
            const QPoint held = stage.viewport.imagePixelAt(stage.inControl(pointer));
            QVERIFY2((held - grasped).manhattanLength() <= 2 * std::ceil(ratio()),
                     qPrintable(QString::number(step)));
        }
        QCOMPARE(stage.viewport.sb2()->Value(), int(std::lround(device(280))));
        QCOMPARE(stage.viewport.sb1()->Value(), int(std::lround(device(39))));
        stage.release(pointer);
    }

    void aRectangleFillsThePanel()
    {
        ViewStage stage(QSize(2400, 1800));
        const QPoint from(100, 100);
        const QPoint to(300, 200);
        const QPoint first = stage.viewport.imagePixelAt(stage.inControl(from));
        QCOMPARE(first, QPoint(int(device(100)), int(device(100))));
        stage.press(from, Qt::AltModifier);
        stage.drag(to, Qt::AltModifier);
        stage.release(to, Qt::AltModifier);
        // 200 pixels across, the panel has 800 but for the bar.
        const double across = (800.0 - stage.viewport.sb1()->width()) / 200;
        QVERIFY(std::abs(stage.ix1.ZoomFactor() - across) < 0.02 * across);
        QVERIFY(std::abs(stage.viewport.imagePixelAt(stage.inControl({0, 0})).x() - first.x()) <= 1);
    }

    void theWheelMovesAsFarOnEveryScreen()
    {
        ViewStage stage(QSize(2400, 1800));
        stage.wheel({400, 300}, {0, -120});
        QVERIFY(std::abs(stage.ix1.y() + 60) <= 1);
    }

    void theBoxOfAFitIsThePanelInTheScreensPixels()
    {
        ViewStage stage(QSize(2400, 1800), true);
        QCOMPARE(stage.viewport.loadBox(), QSize(800, 600) * ratio());
        QCOMPARE(stage.ix1.size(), QSize(800, 600));
    }
};

QTEST_MAIN(TestViewportScales)
#include "tst_viewportscales.moc"
