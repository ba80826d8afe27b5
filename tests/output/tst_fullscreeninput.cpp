// What keys, mouse and the bar of the full-screen window do.
#include "app/Settings.h"
#include "FullScreenBench.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"
#include "support/BenchStage.h"
#include "support/SaverBus.h"

#include <QKeyEvent>
#include <QLabel>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using output::frmImageViewFull;
namespace setting = app::setting;

class TestFullScreenInput : public QObject, private BenchStage<FullScreenBench>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void keys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("tool");
        QTest::newRow("Space") << int(Qt::Key_Space) << "miRandom";
        QTest::newRow("Right") << int(Qt::Key_Right) << "miNext";
        QTest::newRow("Left") << int(Qt::Key_Left) << "miPrevious";
        QTest::newRow("Down") << int(Qt::Key_Down) << "miNext";
        QTest::newRow("Up") << int(Qt::Key_Up) << "miPrevious";
        QTest::newRow("P") << int(Qt::Key_P) << "miSlideShow";
    }

    void keys()
    {
        QFETCH(int, key);
        QFETCH(QString, tool);
        frmImageViewFull& window = bench().show();
        const QString pictureBefore = bench().part("iPlay")->picture();
        for (const Qt::KeyboardModifiers held :
             {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ShiftModifier),
              Qt::KeyboardModifiers(Qt::ControlModifier), Qt::KeyboardModifiers(Qt::AltModifier)}) {
            bench().press(key, held);
            QCOMPARE(bench().calls, QStringList{tool});
            bench().calls.clear();
        }
        QVERIFY(window.isVisible());
        QCOMPARE(bench().tag(), QStringLiteral("stopped"));
        QCOMPARE(bench().part("iPlay")->picture(), pictureBefore);
    }

    void arrowsPressTheirButton()
    {
        bench().show();
        bench().moveMouse({400, 10});
        QVERIFY(bench().part("Image2")->isVisible());
        QStringList visible;
        bench().onTool = [&](const QString&) {
            visible.append(bench().part("Image1")->isVisible() ? QStringLiteral("1") : QString());
            visible.append(bench().part("Image2")->isVisible() ? QStringLiteral("2") : QString());
        };
        bench().press(Qt::Key_Right);
        QCOMPARE(visible, (QStringList{QStringLiteral("1"), QString()}));
        visible.clear();
        bench().press(Qt::Key_Left);
        QCOMPARE(visible, (QStringList{QString(), QStringLiteral("2")}));
        visible.clear();
        bench().press(Qt::Key_Down);
        QCOMPARE(visible, (QStringList{QStringLiteral("1"), QStringLiteral("2")}));
        QVERIFY(bench().part("Image1")->isVisible() && bench().part("Image2")->isVisible());
    }

    void escLeavesTheProgram()
    {
        frmImageViewFull& window = bench().show();
        bool visibleThen = true;
        bench().onTool = [&](const QString&) { visibleThen = window.isVisible(); };
        bench().press(Qt::Key_Escape, Qt::ControlModifier);
        QCOMPARE(bench().calls, QStringList{QStringLiteral("miExit")});
        QVERIFY(!visibleThen);
    }

    void modeCycle()
    {
        frmImageViewFull& window = bench().show(plain({20, 40}));
        QCOMPARE(bench().part("iSize")->picture(), QStringLiteral("actualsize"));
        const QStringList pictures = {QStringLiteral("bestfit"), QStringLiteral("stretch"),
                                      QStringLiteral("actualsize")};
        const QList<int> modes = {1, 2, 0};
        QImage before = bench().seen();
        for (qsizetype turn = 0; turn < modes.size(); ++turn) {
            bench().press(Qt::Key_S);
            QCOMPARE(app::read(setting::cFView), modes[turn]);
            QCOMPARE(bench().part("iSize")->picture(), pictures[turn]);
            QVERIFY(bench().seen() != before);
            before = bench().seen();
        }
        app::save(setting::cFView, 44);
        bench().part("iSize")->click();
        QCOMPARE(app::read(setting::cFView), 1);
        QVERIFY(window.isVisible());
    }

    void otherKeys()
    {
        frmImageViewFull& window = bench().show();
        for (const int key : {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Meta, Qt::Key_CapsLock,
                              Qt::Key_VolumeUp}) {
            bench().press(key);
            QVERIFY(window.isVisible());
        }
        bench().press(Qt::Key_A, Qt::AltModifier);
        bench().press(Qt::Key_F4, Qt::ControlModifier);
        bench().press(Qt::Key_Return, Qt::ShiftModifier);
        QVERIFY(window.isVisible());
        bench().press(Qt::Key_A, {}, true); // still held since before it opened
        QVERIFY(window.isVisible());
        for (const int key : {Qt::Key_A, Qt::Key_Return, Qt::Key_F11, Qt::Key_Tab, Qt::Key_Backspace}) {
            bench().show();
            bench().press(key);
            QVERIFY(!window.isVisible());
        }
        QCOMPARE(bench().calls, QStringList());
    }

    void everyKeyClosesTheShow()
    {
        frmImageViewFull& window = bench().make();
        for (const int key : {Qt::Key_Space, Qt::Key_Escape, Qt::Key_Right, Qt::Key_T, Qt::Key_A,
                              Qt::Key_Shift, Qt::Key_VolumeUp}) {
            bench().slideShowOnly = false;
            bench().show();
            bench().slideShowOnly = true;
            bench().press(key, Qt::AltModifier);
            QVERIFY(!window.isVisible());
        }
        QCOMPARE(bench().calls, QStringList());
        QVERIFY(!window.ShowCaption());
    }

    /// A key that repeats while a step runs waits behind it, and is dropped.
    void heldKeysDoNotQueue()
    {
        bench().show();
        bench().onTool = [this](const QString&) {
            if (bench().calls.size() > 1)
                return;
            for (int repeat = 0; repeat < 5; ++repeat)
                QCoreApplication::postEvent(
                    bench().window.get(),
                    new QKeyEvent(QEvent::KeyPress, Qt::Key_Right, {}, QString(), true));
        };
        bench().press(Qt::Key_Right);
        QCoreApplication::processEvents();
        QCOMPARE(bench().calls.size(), 1);
        bench().press(Qt::Key_Down); // a press of its own, behind a quick step
        QCOMPARE(bench().calls.size(), 2);
        const auto counts = [this] { // a repeat, once nothing waits any more
            bench().press(Qt::Key_Right, {}, true);
            return bench().calls.size() == 3;
        };
        QTRY_VERIFY(counts());
    }

    void pressesBehindASlowStepCount()
    {
        frmImageViewFull& window = bench().show();
        bench().onTool = [this](const QString&) { QTest::qSleep(120); };
        bench().press(Qt::Key_Right);
        bench().press(Qt::Key_Left);
        bench().press(Qt::Key_Left, {}, true); // but its repeats do not
        bench().press(Qt::Key_Escape);
        QCOMPARE(bench().calls, (QStringList{QStringLiteral("miNext"), QStringLiteral("miPrevious"),
                                             QStringLiteral("miExit")}));
        QVERIFY(!window.isVisible());
    }

    void stepsDoNotNest()
    {
        frmImageViewFull& window = bench().show();
        bench().onTool = [this](const QString&) {
            bench().press(Qt::Key_Left);
            bench().press(Qt::Key_T);
            bench().part("Image1")->click();
            bench().part("iPlay")->click();
        };
        bench().press(Qt::Key_Right);
        QCOMPARE(bench().calls, QStringList{QStringLiteral("miNext")});
        QVERIFY(!window.ShowCaption());
        bench().onTool = [this](const QString&) { bench().press(Qt::Key_A); };
        bench().press(Qt::Key_Down);
        QVERIFY(!window.isVisible()); // closing does
    }

    void aStepMayEndTheWindow()
    {
        for (const int key : {Qt::Key_Right, Qt::Key_Down, Qt::Key_Escape}) {
            bench().show();
            bench().onTool = [this](const QString&) {
                const auto sinksOutliveTheCall = bench().onTool;
                bench().window.reset();
            };
            bench().press(key);
            QVERIFY(!bench().window);
        }
        bench().show();
        bench().part("iPlay")->click();
        QVERIFY(!bench().window);
    }

    void doubleClickCloses()
    {
        frmImageViewFull& window = bench().show();
        QTest::mouseDClick(&window, Qt::LeftButton, {}, QPoint(300, 300));
        QVERIFY(!window.isVisible());
        QCOMPARE(bench().calls, QStringList());
    }

    void mouseSteps()
    {
        frmImageViewFull& window = bench().show();
        const QPoint at(300, 300);
        QTest::mouseClick(&window, Qt::LeftButton, {}, at);
        QTest::mouseClick(&window, Qt::MiddleButton, {}, at);
        QTest::mouseClick(&window, Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier, at);
        QCOMPARE(bench().calls, QStringList());
        QTest::mousePress(&window, Qt::RightButton, {}, at);
        QCOMPARE(bench().calls, QStringList());
        QTest::mouseRelease(&window, Qt::RightButton, {}, at);
        QCOMPARE(bench().calls, QStringList{QStringLiteral("miNext")});
        QTest::mouseClick(&window, Qt::LeftButton, Qt::ShiftModifier, at);
        QCOMPARE(bench().calls, (QStringList{QStringLiteral("miNext"), QStringLiteral("miPrevious")}));
        QVERIFY(window.isVisible());
    }

    void aButtonClosesTheShow()
    {
        bench().slideShowOnly = true;
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            frmImageViewFull& window = bench().show();
            QTest::mousePress(&window, button, {}, QPoint(300, 300));
            QVERIFY(!window.isVisible());
            QTest::mouseRelease(&window, button, {}, QPoint(300, 300));
        }
        QCOMPARE(bench().calls, QStringList());
    }

    void theBarComesAndGoes()
    {
        frmImageViewFull& window = bench().show();
        QVERIFY(!bench().bar()->isVisible());
        bench().moveMouse({300, 54});
        QVERIFY(bench().bar()->isVisible());
        bench().moveMouse({300, 55});
        QVERIFY(!bench().bar()->isVisible());
        bench().moveMouse({300, 0});
        QVERIFY(bench().bar()->isVisible());
        window.close();
        bench().show();
        QVERIFY(!bench().bar()->isVisible());
    }

    void aMoveEndsTheShow()
    {
        bench().slideShowOnly = true;
        frmImageViewFull& window = bench().show();
        bench().moveMouse({0, 10});
        QCOMPARE(window.ExitMouseX(), 0);
        QVERIFY(!bench().bar()->isVisible());
        bench().moveMouse({100, 10});
        QCOMPARE(window.ExitMouseX(), 1500);
        bench().moveMouse({100, 500});
        bench().moveMouse({106, 500});
        QVERIFY(window.isVisible());
        bench().moveMouse({107, 500});
        QVERIFY(!window.isVisible());
        bench().show();
        QCOMPARE(window.ExitMouseX(), 0);
    }

    void buttonsOfTheBar()
    {
        frmImageViewFull& window = bench().show();
        bench().moveMouse({400, 10});
        QTest::mouseClick(bench().part("Image1"), Qt::LeftButton);
        QTest::mouseClick(bench().part("Image2"), Qt::LeftButton);
        QCOMPARE(bench().calls, (QStringList{QStringLiteral("miPrevious"), QStringLiteral("miNext")}));
        QTest::mouseClick(bench().part("iClose"), Qt::LeftButton);
        QVERIFY(!window.isVisible());
    }

    void thePlayButton()
    {
        bench().show();
        QStringList then;
        bench().onTool = [&](const QString& name) { then.append(name + bench().tag()); };
        bench().part("iPlay")->click();
        QCOMPARE(bench().tag(), QStringLiteral("playing"));
        QCOMPARE(bench().part("iPlay")->picture(), QStringLiteral("slidestop"));
        bench().part("iPlay")->click();
        QCOMPARE(bench().tag(), QStringLiteral("stopped"));
        QCOMPARE(bench().part("iPlay")->picture(), QStringLiteral("slideshow"));
        QCOMPARE(then,
                 (QStringList{QStringLiteral("miSlideShowplaying"), QStringLiteral("miSlideShowstopped")}));
    }

    void zonesOfTheBar()
    {
        frmImageViewFull& window = bench().show();
        bench().moveMouse({400, 10});
        QTest::mouseClick(bench().bar(), Qt::LeftButton, {}, QPoint(30, 39));
        QTest::mouseClick(bench().bar(), Qt::RightButton, {}, QPoint(40, 39));
        QCOMPARE(bench().calls, (QStringList{QStringLiteral("miPrevious"), QStringLiteral("miNext")}));
        QTest::mouseClick(bench().bar(), Qt::LeftButton, {}, QPoint(60, 39));
        QVERIFY(window.ShowCaption());
        QTest::mouseClick(bench().bar(), Qt::LeftButton, {}, QPoint(80, 39));
        QCOMPARE(app::read(setting::cFView), 1);
        QTest::mouseClick(bench().bar(), Qt::LeftButton, {}, QPoint(20, 39));
        QVERIFY(window.isVisible());
        QTest::mouseClick(bench().bar(), Qt::LeftButton, {}, QPoint(10, 39));
        QVERIFY(!window.isVisible());
    }

    /// By way of the native window, as from the desktop.
    void theBarKeepsTheMouseToItself()
    {
        bench().main->move(QGuiApplication::primaryScreen()->geometry().width() + 1, 50);
        frmImageViewFull& window = bench().show();
        window.setFixedSize(900, 500);
        bench().moveMouse({600, 10});
        for (const QPoint at : {QPoint(10, 10), QPoint(450, 5), QPoint(600, 20)}) {
            QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, at);
            QTest::mouseDClick(window.windowHandle(), Qt::RightButton, {}, at);
        }
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(600, 20));
        QVERIFY(window.isVisible());
        QCOMPARE(bench().calls, QStringList());
        QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, QPoint(600, 300));
        QCOMPARE(bench().calls, QStringList{QStringLiteral("miNext")});
    }

    void theNameCanBeRead()
    {
        bench().show(plain({20, 20}));
        bench().moveMouse({400, 10});
        auto* const label = bench().part<QLabel>("lImage");
        QCOMPARE(label->palette().color(QPalette::WindowText), QColor(Qt::white));
        QVERIFY(label->font().bold());
        QCOMPARE(label->font().pointSizeF(), 9.75);
        const QImage bar = bench().bar()->grab().toImage();
        const QPointF corner = QPointF(label->geometry().topLeft() + QPoint(1, 1)) * bench().ratio();
        QVERIFY(bar.pixelColor(corner.toPoint()).lightness() < 60);
    }
};

QTEST_MAIN(TestFullScreenInput)
#include "tst_fullscreeninput.moc"
