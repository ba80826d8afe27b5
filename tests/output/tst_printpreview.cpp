// The preview of the print window: drags, clicks, wheels, keys and bars.
#include "app/SettingsHome.h"
#include "app/Twips.h"
#include "controls/ScrollBar.h"
#include "output/frmImagePrint.h"
#include "platform/Dialogs.h"
#include "platform/NextDialog.h"
#include "PrintBench.h"
#include "support/BenchStage.h"

#include <QApplication>
#include <QComboBox>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>

using namespace quorvia;
using namespace quorvia::test;

class TestPrintPreview : public QObject, private test::BenchStage<test::SettingsHome>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void drags_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::newRow("down right") << QPoint(600, 900) << QPoint(1800, 1500);
        QTest::newRow("up left") << QPoint(1800, 1500) << QPoint(600, 900);
        QTest::newRow("down left") << QPoint(1800, 900) << QPoint(600, 1500);
        QTest::newRow("up right") << QPoint(600, 1500) << QPoint(1800, 900);
    }

    void drags()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        const PrintBench bench;
        QString boxes;
        quint64 compositions = 0;
        QRgb inside = 0;
        QRgb outside = 0;
        bool isCustom = false;
        QVERIFY(bench.show([&] {
            const quint64 before = bench.composed();
            bench.drag(from, to);
            compositions = bench.composed() - before;
            boxes = bench.boxes();
            isCustom = bench.area(4).isChecked();
            const QImage& page = bench.window->page().page(); // 20 twips a pixel, at half the size
            inside = page.pixel(61, 91);
            outside = page.pixel(59, 91);
        }));
        QCOMPARE(boxes, QStringLiteral("80 120 160 80"));
        QCOMPARE(compositions, quint64(1));
        QVERIFY(isCustom);
        QCOMPARE(inside, red);
        QCOMPARE(outside, white);
    }

    void aSecondDragComposesOnceToo()
    {
        const PrintBench bench;
        quint64 compositions = 0;
        QVERIFY(bench.show([&] {
            bench.drag({600, 900}, {1800, 1500});
            const quint64 before = bench.composed();
            bench.drag({900, 600}, {2400, 2400});
            compositions = bench.composed() - before;
        }));
        QCOMPARE(compositions, quint64(1));
        QCOMPARE(bench.boxes(), QStringLiteral("120 80 200 240"));
    }

    void theFrameFollowsTheMouse()
    {
        const PrintBench bench;
        QStringList seen;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            QWidget& frame = bench.part("sDraw");
            const auto see = [&] {
                const QRect at = frame.geometry();
                seen << (frame.isVisible() ? QStringLiteral("%1 %2 %3 %4")
                                                 .arg(at.x())
                                                 .arg(at.y())
                                                 .arg(at.width())
                                                 .arg(at.height())
                                           : QStringLiteral("-"));
            };
            see();
            QTest::mousePress(&preview, Qt::LeftButton, {}, {40, 60});
            see();
            QTest::mouseMove(&preview, {20, 80});
            see();
            seen << (frame.grab().toImage().pixel(0, 0) == red ? "red" : "another colour");
            QTest::mouseRelease(&preview, Qt::LeftButton, {}, {20, 80});
            see();
        }));
        QCOMPARE(seen, (QStringList{"-", "40 60 1 1", "20 60 20 20", "red", "-"}));
    }

    void aDragBeyondThePage()
    {
        const PrintBench bench;
        QString boxes;
        QVERIFY(bench.show([&] { bench.drag({600, 900}, {-900, 1500}); }));
        boxes = bench.boxes();
        QCOMPARE(boxes, QStringLiteral("-120 120 200 80"));
    }

    void clicks_data()
    {
        QTest::addColumn<QPoint>("to");
        QTest::newRow("click") << QPoint(600, 900);
        QTest::newRow("thin drag") << QPoint(735, 1500);
    }

    void clicks()
    {
        QFETCH(QPoint, to);
        const PrintBench bench;
        QString boxes;
        QVERIFY(bench.show([&] { bench.drag({600, 900}, to); }));
        boxes = bench.boxes();
        QCOMPARE(boxes, QStringLiteral("80 120 400 300"));
        QVERIFY(bench.area(4).isChecked());
    }

    void thePreviewShowsThePage()
    {
        const PrintBench bench;
        QRgb middle = 0;
        QRgb corner = 0;
        QSize size;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            size = preview.size();
            const QImage looks = preview.grab().toImage();
            middle = looks.pixel(looks.width() / 2, looks.height() / 2);
            corner = looks.pixel(2, 2);
        }));
        QCOMPARE(size, QSize(361, 525)); // 10806 x 15738 twips, halved
        QCOMPARE(middle, red);
        QCOMPARE(corner, white);
    }

    void bars()
    {
        const PrintBench bench;
        QStringList seen;
        int left = 0;
        int top = 0;
        QPoint scrolled;
        QVERIFY(bench.show([&] {
            const auto see = [&] {
                seen << QStringLiteral("%1%2%3")
                            .arg(bench.bar("sWidth").isVisible())
                            .arg(bench.bar("sHeight").isVisible())
                            .arg(bench.part("pHold").isVisible());
            };
            bench.window->resize(900, 640); // whatever the screen
            see();
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6); // 300%
            see();
            QVERIFY2(bench.bar("sHeight").Vertical(), "upright");
            QVERIFY2(bench.bar("sHeight").Value() == 2, "starts at 2");
            // 32418 twips in the frame: its maximum is below 275.
            const int width = app::toTwips(bench.part("pBox").width());
            QCOMPARE(bench.bar("sWidth").Max(), qRound((32418 - width + 1100) / 100.0));
            QCOMPARE(bench.bar("sWidth").Value(), std::min(275, bench.bar("sWidth").Max()));
            bench.bar("sWidth").SetValue(20);
            bench.bar("sHeight").SetValue(30);
            left = bench.part("pPreview").x();
            top = bench.part("pPreview").y();
            bench.window->resize(bench.window->width() + 60, bench.window->height() + 60);
            scrolled = bench.part("pPreview").pos();
            bench.part<QComboBox>("cboZoom").setCurrentIndex(0);
            see();
        }));
        QCOMPARE(seen, (QStringList{"000", "111", "000"}));
        QCOMPARE(left, -97); // 550 - 2000 twips, towards the left
        QCOMPARE(top, -164);
        QCOMPARE(scrolled, QPoint(left, top));
    }

    void wheels_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<QPoint>("moves"); // signs
        QTest::newRow("down") << Qt::KeyboardModifiers() << QPoint(0, -1);
        QTest::newRow("sideways") << Qt::KeyboardModifiers(Qt::ShiftModifier) << QPoint(-1, 0);
        QTest::newRow("not at all") << Qt::KeyboardModifiers(Qt::ControlModifier) << QPoint(0, 0);
    }

    void wheels()
    {
        QFETCH(Qt::KeyboardModifiers, modifiers);
        const PrintBench bench;
        QPoint moved;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            bench.bar("sWidth").SetValue(10);
            QWidget& preview = bench.part("pPreview");
            const QPoint before = preview.pos();
            QWidget& frame = bench.part("pBox"); // where the toolkit brings it past the preview
            const QPointF at(100, 100);
            QWheelEvent turn(at, frame.mapToGlobal(at), {}, {0, -120}, Qt::NoButton, modifiers,
                             Qt::NoScrollPhase, false);
            QApplication::sendEvent(&frame, &turn);
            const QPoint way = preview.pos() - before;
            moved = {way.x() < 0 ? -1 : way.x() > 0, way.y() < 0 ? -1 : way.y() > 0};
        }));
        QTEST(moved, "moves");
    }

    void keysScroll()
    {
        const PrintBench bench;
        int moved = 0;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            QWidget& frame = bench.part("pBox");
            frame.setFocus();
            const int before = bench.part("pPreview").y();
            QTest::keyClick(&frame, Qt::Key_Down);
            moved = bench.part("pPreview").y() - before;
        }));
        QVERIFY(moved < 0);
    }

    void otherKeysGoOnToTheWindow_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("held");
        QTest::addColumn<bool>("closes");
        QTest::newRow("escape") << int(Qt::Key_Escape) << Qt::KeyboardModifiers() << true;
        QTest::newRow("letter") << int(Qt::Key_A) << Qt::KeyboardModifiers() << false;
        QTest::newRow("function key") << int(Qt::Key_F1) << Qt::KeyboardModifiers() << false;
        QTest::newRow("modifier") << int(Qt::Key_Control) << Qt::KeyboardModifiers() << false;
        QTest::newRow("Ctrl+P") << int(Qt::Key_P) << Qt::KeyboardModifiers(Qt::ControlModifier) << false;
        QTest::newRow("Enter") << int(Qt::Key_Return) << Qt::KeyboardModifiers() << false;
        QTest::newRow("Space") << int(Qt::Key_Space) << Qt::KeyboardModifiers() << false;
        QTest::newRow("an arrow with Ctrl")
            << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::ControlModifier) << false;
    }

    /// The bars show, the frame has the focus, and neither wants the key.
    void otherKeysGoOnToTheWindow()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, held);
        QFETCH(bool, closes);
        const PrintBench bench;
        bool isOpen = true;
        QVERIFY(bench.show([&] {
            bench.part<QComboBox>("cboZoom").setCurrentIndex(6);
            bench.part("pBox").setFocus();
            QTest::keyClick(&bench.part("pBox"), Qt::Key(key), held);
            isOpen = bench.window->isVisible();
        }));
        QCOMPARE(isOpen, !closes);
        QVERIFY(bench.printer->jobs.empty());
    }

    void escapeGivesUpARectangle()
    {
        const PrintBench bench;
        bool open = false;
        QVERIFY(bench.show([&] {
            QWidget& preview = bench.part("pPreview");
            QTest::mousePress(&preview, Qt::LeftButton, {}, QPoint(50, 50));
            QTest::mouseMove(&preview, QPoint(150, 150));
            QTest::keyClick(bench.window, Qt::Key_Escape);
            open = bench.window->isVisible();
            QTest::mouseRelease(&preview, Qt::LeftButton, {}, QPoint(150, 150));
        }));
        QVERIFY(open);
        QCOMPARE(bench.boxes(), QStringLiteral("0 0 400 300"));
        QVERIFY(bench.area(0).isChecked());
    }

    void fitsOnTheScreen()
    {
        const PrintBench bench;
        QVERIFY(bench.show([&] {}));
        const QSize room = bench.window->screen()->availableSize();
        const QSize least = bench.window->minimumSize();
        QVERIFY(bench.window->width() < std::max(room.width(), least.width() + 1));
        QVERIFY(bench.window->height() < std::max(room.height(), least.height() + 1));
    }
};

QTEST_MAIN(TestPrintPreview)
#include "tst_printpreview.moc"
