// Bars, keys and wheel of the clipboard preview.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "ClipboardBench.h"
#include "controls/ScrollBar.h"
#include "output/ClipboardLayout.h"
#include "output/frmClipboard.h"
#include "support/BenchStage.h"

#include <QGuiApplication>
#include <QTest>
#include <QWheelEvent>

using namespace quorvia;
using namespace quorvia::test;
using output::frmClipboard;

namespace {

/// The toolkit brings what comes from the mouse to the window itself, past the parts that do not want it.
void turnWheel(QWidget* target, QPoint angle, Qt::KeyboardModifiers held = {})
{
    const QPointF middle = QRectF(target->rect()).center();
    QWheelEvent event(middle, target->mapToGlobal(middle), QPoint(), angle, Qt::NoButton, held,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(target, &event);
}

} // namespace

class TestClipboardScrolling : public QObject, private BenchStage<ClipboardBench>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void fromAspectResizeToScrollBars()
    {
        bench().image = large;
        bench().show();
        bench().item("mnuScrollbars")->trigger();
        QVERIFY(bench().bar("sbH")->isVisible() && bench().bar("sbV")->isVisible());
        QVERIFY(bench().part("pClip")->isVisible());
        QCOMPARE(bench().seen(0.99, 0.5),
                 QColor(Qt::red)); // the copy is gone: only the left half is in sight
        QCOMPARE(bench().reads, 1);
        const QSize area = app::inTwips(bench().part("picBG")->size());
        const QSize clip = output::clipSize(large.size(), bench().window->devicePixelRatioF());
        QCOMPARE(bench().bar("sbH")->Max(), clip.width() - area.width() + 200);
        QCOMPARE(bench().bar("sbV")->Max(), clip.height() - area.height() + 200);
        bench().item("mnuScrollbars")->trigger();
        QVERIFY(!bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        QCOMPARE(bench().seen(0.99, 0.5), QColor(Qt::blue));
    }

    void barsMoveThePicture()
    {
        bench().image = large;
        bench().show();
        bench().item("mnuScrollbars")->trigger();
        bench().bar("sbH")->SetValue(1500);
        bench().bar("sbV")->SetValue(300);
        QCOMPARE(bench().part("pClip")->pos(), QPoint(-100, -20));
        bench().bar("sbH")->SetValue(bench().bar("sbH")->Max());
        QCOMPARE(bench().seen(0.5, 0.5), QColor(Qt::blue));
        bench().button("cmdFinish")->click();
        QCOMPARE(*bench().pasted, large);
    }

    void oneBarAlone()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = halves(3000, 40);
        bench().show();
        QVERIFY(bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        const QWidget* const area = bench().part("picBG");
        QCOMPARE(area->width(), area->parentWidget()->width());
        QCOMPARE(area->height() + bench().bar("sbH")->height(), area->parentWidget()->height());
    }

    void aWindowMadeLargerTakesItsBarsBack()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        const double ratio = QGuiApplication::primaryScreen()->devicePixelRatio();
        bench().image = halves(int(700 * ratio), int(500 * ratio));
        bench().show();
        QVERIFY(bench().bar("sbH")->isVisible());
        bench().bar("sbH")->SetValue(600);
        QCOMPARE(bench().part("pClip")->x(), -40);
        bench().window->resize(1000, 900);
        QVERIFY(!bench().bar("sbH")->isVisible() && !bench().bar("sbV")->isVisible());
        QCOMPARE(bench().part("pClip")->pos(), QPoint(0, 0));
    }

    void keysScroll_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QPoint>("direction");
        QTest::newRow("Right") << int(Qt::Key_Right) << QPoint(1, 0);
        QTest::newRow("Left") << int(Qt::Key_Left) << QPoint(-1, 0);
        QTest::newRow("Down") << int(Qt::Key_Down) << QPoint(0, 1);
        QTest::newRow("Up") << int(Qt::Key_Up) << QPoint(0, -1);
        QTest::newRow("Page Down") << int(Qt::Key_PageDown) << QPoint(0, 1);
        QTest::newRow("Page Up") << int(Qt::Key_PageUp) << QPoint(0, -1);
        QTest::newRow("Home") << int(Qt::Key_Home) << QPoint(0, -1);
        QTest::newRow("End") << int(Qt::Key_End) << QPoint(0, 1);
    }

    void keysScroll()
    {
        QFETCH(int, key);
        QFETCH(QPoint, direction);
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = large;
        frmClipboard& window = bench().show();
        bench().bar("sbH")->SetValue(3000);
        bench().bar("sbV")->SetValue(3000);
        QTest::keyClick(window.focusWidget(), Qt::Key(key));
        const auto sign = [](int number) { return (number > 0) - (number < 0); };
        QCOMPARE(sign(bench().bar("sbH")->Value() - 3000), direction.x());
        QCOMPARE(sign(bench().bar("sbV")->Value() - 3000), direction.y());
        QCOMPARE(window.focusWidget(), bench().button("cmdFinish"));
    }

    void withoutBarsArrowsWalkTheButtons()
    {
        frmClipboard& window = bench().show();
        QTest::keyClick(window.focusWidget(), Qt::Key_Left);
        QCOMPARE(window.focusWidget(), bench().button("lblCancel"));
    }

    void theWheelScrolls_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QPoint>("angle");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<bool>("across"); // else down
        QTest::newRow("down") << QSize(3000, 2000) << QPoint(0, -120) << false << false;
        QTest::newRow("with Shift") << QSize(3000, 2000) << QPoint(0, -120) << true << true;
        QTest::newRow("tilted") << QSize(3000, 2000) << QPoint(-120, 0) << false << true;
        QTest::newRow("only a lying bar") << QSize(3000, 20) << QPoint(0, -120) << false << true;
        QTest::newRow("only an upright bar") << QSize(20, 2000) << QPoint(0, -120) << true << false;
    }

    void theWheelScrolls()
    {
        QFETCH(QSize, picture);
        QFETCH(QPoint, angle);
        QFETCH(bool, shift);
        QFETCH(bool, across);
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = halves(picture.width(), picture.height());
        bench().show();
        turnWheel(bench().window.get(), angle, shift ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(bench().bar("sbH")->Value() > 0, across);
        QCOMPARE(bench().bar("sbV")->Value() > 0, !across);
    }

    void theWheelWithCtrlIsNotTheBars()
    {
        app::save(app::setting::ClipboardView, QStringLiteral("False"));
        bench().image = large;
        bench().show();
        turnWheel(bench().window.get(), QPoint(0, -120), Qt::ControlModifier);
        QCOMPARE(bench().bar("sbV")->Value(), 0);
    }
};

QTEST_MAIN(TestClipboardScrolling)
#include "tst_clipboardscrolling.moc"
