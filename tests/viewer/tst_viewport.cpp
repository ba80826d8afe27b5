// The viewport with its bars: what shows, where the picture stands, and that scrolling only moves it.
#include "viewer/ViewStage.h"

#include <QTest>

using namespace quorvia;
using test::ViewStage;

class TestViewport : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void fitsWithoutBars()
    {
        ViewStage stage(QSize(2000, 1500), true);
        QVERIFY(stage.viewport.sb1()->isHidden() && stage.viewport.sb2()->isHidden());
        QCOMPARE(stage.ix1.geometry(), QRect(0, 0, 800, 600));
        QCOMPARE(stage.ix1.ScaleMode(), 4);
    }

    void theFitWritesItsScaleOption()
    {
        ViewStage stage(QSize(2000, 500), true);
        stage.ix1.SetScaleOption(1); // which would fill the panel both ways
        stage.viewport.layout();
        const QImage shown = stage.ix1.grab().toImage();
        QCOMPARE(shown.pixelColor(400, 300), QColor(Qt::darkGreen));
        QVERIFY(shown.pixelColor(400, 20) != QColor(Qt::darkGreen));
    }

    void theFitHidesTheBars()
    {
        ViewStage stage(QSize(2000, 1500));
        QVERIFY(!stage.viewport.sb1()->isHidden() && !stage.viewport.sb2()->isHidden());
        stage.viewport.flipFit();
        QVERIFY(stage.viewport.sb1()->isHidden() && stage.viewport.sb2()->isHidden());
    }

    void aHiddenBarMovesNothing()
    {
        ViewStage stage(QSize(300, 200));
        const QPoint corner = stage.ix1.pos();
        for (controls::ScrollBar* const bar : {stage.viewport.sb1(), stage.viewport.sb2()}) {
            bar->SetMax(100);
            bar->SetValue(50);
        }
        QCOMPARE(stage.ix1.pos(), corner);
    }

    void showsTheBarsThatAreNeeded_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::addColumn<bool>("vertical");
        QTest::addColumn<bool>("horizontal");
        QTest::newRow("smaller") << QSize(799, 599) << false << false;
        QTest::newRow("exactly as large") << QSize(800, 600) << false << false;
        QTest::newRow("higher") << QSize(100, 601) << true << false;
        QTest::newRow("wider") << QSize(801, 100) << false << true;
        QTest::newRow("larger") << QSize(2000, 1500) << true << true;
    }

    void showsTheBarsThatAreNeeded()
    {
        QFETCH(QSize, image);
        ViewStage stage(image);
        QTEST(!stage.viewport.sb1()->isHidden(), "vertical");
        QTEST(!stage.viewport.sb2()->isHidden(), "horizontal");
        QCOMPARE(stage.ix1.size(), image);
    }

    void barsMoveThePicture()
    {
        ViewStage stage(QSize(2000, 1500));
        stage.viewport.sb1()->SetValue(70);
        stage.viewport.sb2()->SetValue(310);
        QCOMPARE(stage.ix1.pos(), QPoint(-310, -70));
        stage.viewport.sb1()->SetValue(1 << 20);
        QCOMPARE(stage.viewport.sb1()->Value(), stage.viewport.sb1()->Max());
        // At its end the picture's last row stands above the other bar.
        const int bar = stage.viewport.sb2()->height();
        QCOMPARE(stage.ix1.geometry().bottom(), 600 - bar - 1);
    }

    void theCornerStaysFree()
    {
        ViewStage stage(QSize(2000, 1500));
        const QRect down = stage.viewport.sb1()->geometry();
        const QRect across = stage.viewport.sb2()->geometry();
        QCOMPARE(down.right(), 799);
        QCOMPARE(across.bottom(), 599);
        QVERIFY(!down.intersects(across) || down.intersected(across).isEmpty());
        QCOMPARE(down.bottom() + 1, across.top());
    }

    void resizingKeepsTheRelativePosition()
    {
        ViewStage stage(QSize(2000, 3000));
        controls::ScrollBar* const sb1 = stage.viewport.sb1();
        sb1->SetValue(sb1->Max() / 2);
        const double before = double(sb1->Value()) / sb1->Max();
        stage.pContain.resize(700, 350);
        stage.viewport.layout();
        QVERIFY(qAbs(double(sb1->Value()) / sb1->Max() - before) < 0.001);
        QCOMPARE(stage.ix1.y(), -sb1->Value());
    }

    void flippingTheFitTwiceLeadsBack()
    {
        ViewStage stage(QSize(2000, 1500), true);
        stage.viewport.flipFit();
        QVERIFY(!stage.viewport.FitToWindow());
        QCOMPARE(stage.ix1.size(), QSize(2000, 1500));
        stage.viewport.zoomTo(0.4);
        QCOMPARE(stage.ix1.size(), QSize(800, 600));
        QVERIFY(!stage.viewport.canScroll());
        stage.viewport.flipFit();
        QVERIFY(stage.viewport.FitToWindow());
        QCOMPARE(stage.ix1.ZoomFactor(), 1.0);
    }

    void zoomsOntoARectangle()
    {
        ViewStage stage(QSize(2000, 1500));
        QVERIFY(stage.viewport.zoomOnto(QPoint(1000, 500), QPoint(1100, 700)));
        const QSizeF clear(800 - stage.viewport.sb1()->width(), 600 - stage.viewport.sb2()->height());
        const double zoom = clear.height() / 200;
        QCOMPARE(stage.ix1.ZoomFactor(), zoom);
        // The rectangle's upper edge is the panel's, and it stands in its middle across.
        QVERIFY(qAbs(stage.ix1.y() + 500 * zoom) <= 1);
        QVERIFY(qAbs(stage.ix1.x() + 1050 * zoom - clear.width() / 2) <= 1);
        QVERIFY(!stage.viewport.zoomOnto(QPoint(10, 10), QPoint(10, 90)));
        QCOMPARE(stage.ix1.ZoomFactor(), zoom);
    }

    void aRectangleInTheCornerIsClamped()
    {
        ViewStage stage(QSize(2000, 1500));
        QVERIFY(stage.viewport.zoomOnto(QPoint(0, 0), QPoint(10, 300)));
        QCOMPARE(stage.viewport.sb2()->Value(), 0);
        QCOMPARE(stage.ix1.x(), 0);
    }

    void aRectangleInTheFarCornerIsClamped()
    {
        ViewStage stage(QSize(2000, 1500));
        QVERIFY(stage.viewport.zoomOnto(QPoint(1990, 1200), QPoint(1999, 1499)));
        QCOMPARE(stage.viewport.sb2()->Value(), stage.viewport.sb2()->Max());
        QVERIFY(stage.viewport.zoomOnto(QPoint(1500, 1490), QPoint(1999, 1499)));
        QCOMPARE(stage.viewport.sb1()->Value(), stage.viewport.sb1()->Max());
    }

    void aScrollMovesThePictureAsItIs()
    {
        ViewStage stage(QSize(6000, 4000));
        QVERIFY(QTest::qWaitForWindowExposed(&stage.pContain));
        QCoreApplication::processEvents();
        stage.ix1.DrawRubberBand(1010, 1010, 1050, 1050, Qt::red, true);
        const QPixmap before = stage.ix1.grab(QRect(1000, 1000, 60, 60));
        QCoreApplication::processEvents();
        stage.viewport.scrollBy(37, 21);
        QCoreApplication::processEvents();
        QCOMPARE(stage.ix1.pos(), QPoint(-37, -21));
        QCOMPARE(stage.ix1.ScaleMode(), 0);
        QCOMPARE(stage.ix1.size(), QSize(6000, 4000));
        QCOMPARE(stage.ix1.grab(QRect(1000, 1000, 60, 60)).toImage(), before.toImage());
    }
};

QTEST_MAIN(TestViewport)
#include "tst_viewport.moc"
