// The arithmetic and the tables of the full-screen window.
#include "output/FullScreenLayout.h"

#include <QTest>

using namespace quorvia::output;
using Action = FullScreenAction;

Q_DECLARE_METATYPE(quorvia::output::FullScreenAction)
Q_DECLARE_METATYPE(quorvia::output::FitMode)

namespace {

QSizeF twips(double width, double height)
{
    return QSizeF(width, height) * 15;
}

} // namespace

class TestFullScreenLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void modes()
    {
        QCOMPARE(fitModeOf(0), FitMode::Actual);
        QCOMPARE(fitModeOf(1), FitMode::BestFit);
        QCOMPARE(fitModeOf(2), FitMode::Stretch);
        for (const int unknown : {-1, 3, 99})
            QCOMPARE(fitModeOf(unknown), FitMode::Actual);
        QCOMPARE(nextFitMode(1), 2);
        QCOMPARE(nextFitMode(2), 0);
        for (const int other : {0, -1, 3, 99})
            QCOMPARE(nextFitMode(other), 1);
    }

    /// In pixels of 15 twips; the expected rectangle in twips.
    void composes_data()
    {
        QTest::addColumn<FitMode>("mode");
        QTest::addColumn<QSizeF>("window");
        QTest::addColumn<QSizeF>("image");
        QTest::addColumn<QSizeF>("screen");
        QTest::addColumn<QRectF>("expected");
        const QSizeF screen = twips(1920, 1080);
        const auto row = [&](const char* name, FitMode mode, QSizeF image, QRectF expected) {
            QTest::newRow(name) << mode << screen << image << screen << expected;
        };
        const QRectF whole(0, 0, 28800, 16200);
        row("stretch", FitMode::Stretch, twips(10, 700), whole);
        row("actual, smaller", FitMode::Actual, twips(100, 50), {13650, 7725, 1500, 750});
        row("actual, odd", FitMode::Actual, twips(101, 51), {13642.5, 7717.5, 1515, 765});
        row("actual, as high as the window", FitMode::Actual, twips(100, 1080), {13650, 0, 1500, 16200});
        row("actual, higher", FitMode::Actual, twips(1000, 2160), {10650, 0, 7500, 16200});
        row("actual, higher by a pixel", FitMode::Actual, twips(1081, 1081), {6300, 0, 16200, 16200});
        row("actual, wider", FitMode::Actual, twips(3000, 100), {-8100, 7350, 45000, 1500});
        row("actual, wider and higher", FitMode::Actual, twips(8000, 2160), {-15600, 0, 60000, 16200});
        row("best fit, portrait", FitMode::BestFit, twips(500, 1000), {10350, 0, 8100, 16200});
        row("best fit, small portrait", FitMode::BestFit, twips(1, 2), {10350, 0, 8100, 16200});
        row("best fit, landscape", FitMode::BestFit, twips(1920, 540), {0, 4050, 28800, 8100});
        row("best fit, square", FitMode::BestFit, twips(100, 100), {0, -6300, 28800, 28800});
        row("best fit, whole height", FitMode::BestFit, twips(700, 300), {0, 1929, 28800, 12342});
        row("nothing", FitMode::BestFit, QSizeF(0, 0), {});
        QTest::newRow("best fit, cut above and below")
            << FitMode::BestFit << twips(1024, 768) << twips(1000, 900) << twips(1024, 768)
            << QRectF(0, 5760 - 13824 / 2., 15360, 13824);
        QTest::newRow("portrait on a second monitor")
            << FitMode::BestFit << twips(1024, 768) << twips(500, 1000) << screen
            << QRectF(7680 - 2880, 0, 5760, 16200);
        QTest::newRow("portrait, a screen that is no whole number of twips high")
            << FitMode::BestFit << twips(1024, 768) << twips(500, 1000) << QSizeF(28800, 16200.7)
            << QRectF(4800, 0, 5760, 16200);
        QTest::newRow("actual, higher than a second monitor")
            << FitMode::Actual << twips(1024, 768) << twips(400, 800) << screen
            << QRectF(7680 - 4050, 0, 8100, 11520);
        QTest::newRow("no window") << FitMode::Stretch << QSizeF(0, 0) << twips(9, 9) << screen << QRectF();
    }
    void composes()
    {
        QFETCH(FitMode, mode);
        QFETCH(QSizeF, window);
        QFETCH(QSizeF, image);
        QFETCH(QSizeF, screen);
        QTEST(composedRect(mode, {.window = window, .image = image, .screen = screen}), "expected");
    }

    /// One pixel of the picture is one of the screen, whatever the ratio.
    void actualSizeKeepsPixels_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0})
            QTest::newRow(QByteArray::number(ratio).constData()) << ratio;
    }
    void actualSizeKeepsPixels()
    {
        QFETCH(double, ratio);
        const double pixel = twipsPerDevicePixel(ratio);
        const QSizeF window = twips(1537, 865);
        for (const int side : {1, 2, 99, 100, 101, 333, 640, 801}) {
            const QSizeF image = QSizeF(side + 3, side) * pixel;
            const QRectF lies =
                composedRect(FitMode::Actual, {.window = window, .image = image, .screen = window});
            QCOMPARE(inDevicePixels(lies, pixel).size(), QSize(side + 3, side));
        }
    }

    void devicePixels_data()
    {
        QTest::addColumn<QRectF>("lengths");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("1") << QRectF(15, 30, 150, 300) << 1.0 << QRect(1, 2, 10, 20);
        QTest::newRow("2") << QRectF(15, 30, 150, 300) << 2.0 << QRect(2, 4, 20, 40);
        QTest::newRow("1.25") << QRectF(-12, 12, 120, 1200) << 1.25 << QRect(-1, 1, 10, 100);
        QTest::newRow("each by itself") << QRectF(8, 8, 15, 15) << 1.0 << QRect(1, 1, 1, 1);
        QTest::newRow("at least a pixel") << QRectF(0, 0, 1, 1500) << 1.0 << QRect(0, 0, 1, 100);
        QTest::newRow("nothing") << QRectF() << 1.0 << QRect();
    }
    void devicePixels()
    {
        QFETCH(QRectF, lengths);
        QFETCH(double, ratio);
        QTEST(inDevicePixels(lengths, twipsPerDevicePixel(ratio)), "expected");
    }

    void loadBoxes_data()
    {
        QTest::addColumn<FitMode>("mode");
        QTest::addColumn<QSize>("window");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("actual") << FitMode::Actual << QSize(1920, 1080) << QSize(65535, 1080);
        QTest::newRow("best fit") << FitMode::BestFit << QSize(1920, 1080) << QSize(1920, 1920);
        QTest::newRow("best fit, upright") << FitMode::BestFit << QSize(1080, 1920) << QSize(1920, 1920);
        QTest::newRow("stretch") << FitMode::Stretch << QSize(1920, 1080) << QSize(1920, 1920);
    }
    void loadBoxes()
    {
        QFETCH(FitMode, mode);
        QFETCH(QSize, window);
        QTEST(fullScreenLoadBox(mode, window), "expected");
    }

    void places_data()
    {
        QTest::addColumn<int>("mainLeft");
        QTest::addColumn<QRect>("primary");
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QRect>("expected");
        QTest::addColumn<bool>("isSecond");
        const QRect primary(0, 0, 1920, 1080);
        QTest::newRow("primary") << 300 << primary << 1.0 << primary << false;
        QTest::newRow("left of it") << -900 << primary << 1.0 << primary << false;
        QTest::newRow("at its right edge") << 1920 << primary << 1.0 << primary << false;
        QTest::newRow("second") << 1921 << primary << 1.0 << QRect(1920, 0, 1024, 768) << true;
        QTest::newRow("second, fine") << 2500 << primary << 2.0 << QRect(1920, 0, 512, 384) << true;
        const QRect moved(1280, 200, 1920, 1080);
        QTest::newRow("a primary one elsewhere") << 3000 << moved << 1.0 << moved << false;
        QTest::newRow("right of that") << 3201 << moved << 1.0 << QRect(3200, 200, 1024, 768) << true;
    }
    void places()
    {
        QFETCH(int, mainLeft);
        QFETCH(QRect, primary);
        QFETCH(double, ratio);
        const FullScreenPlace placed = fullScreenPlace(mainLeft, primary, ratio);
        QTEST(placed.geometry, "expected");
        QTEST(placed.isSecond, "isSecond");
    }

    void barLayout()
    {
        const FullScreenBarLayout usual{28800 - 1455, QRect(5825, 120, 28800 - 7330, 255)};
        QCOMPARE(fullScreenBarLayout(28800), usual);
        QCOMPARE(fullScreenBarLayout(7330).name.width(), 0);
        QCOMPARE(fullScreenBarLayout(1000).name.width(), 0);
        QCOMPARE(fullScreenBarLayout(1000).closeLeft, -455);
    }

    void nearTheBar()
    {
        QVERIFY(isNearBar(0));
        QVERIFY(isNearBar(814.9));
        QVERIFY(!isNearBar(815));
        QVERIFY(!isNearBar(9000));
    }

    void labels()
    {
        const QString name = QStringLiteral("a.png");
        const QString longText = longNameLabel(name, QSize(640, 480));
        QCOMPARE(longText, QStringLiteral("a.png (640x480)"));
        QCOMPARE(nameLabel(name, longText, 99.5, 100), longText);
        QCOMPARE(nameLabel(name, longText, 100, 100), name);
        QCOMPARE(nameLabel(name, longText, 101, 100), name);
    }

    void keys_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<Action>("action");
        QTest::newRow("Space") << 32 << Action::Random;
        QTest::newRow("Esc") << 27 << Action::Exit;
        QTest::newRow("Right") << 39 << Action::PressNext;
        QTest::newRow("Left") << 37 << Action::PressPrevious;
        QTest::newRow("Down") << 40 << Action::Next;
        QTest::newRow("Up") << 38 << Action::Previous;
        QTest::newRow("T") << 84 << Action::Caption;
        QTest::newRow("S") << 83 << Action::Mode;
        QTest::newRow("P") << 80 << Action::SlideShow;
    }
    void keys()
    {
        QFETCH(int, code);
        for (int shift = 0; shift < 8; ++shift) {
            QTEST(keyAction(code, shift, false), "action");
            QCOMPARE(keyAction(code, shift, true), Action::Close);
        }
    }

    void otherKeys()
    {
        for (const int code : {13, 65, 112, 122, 219}) {
            QCOMPARE(keyAction(code, 0, false), Action::Close);
            for (int shift = 1; shift < 8; ++shift)
                QCOMPARE(keyAction(code, shift, false), Action::None);
            QCOMPARE(keyAction(code, 4, true), Action::Close);
        }
        QCOMPARE(keyAction(0, 0, false), Action::None);
        QCOMPARE(keyAction(0, 1, false), Action::None);
        QCOMPARE(keyAction(0, 0, true), Action::Close);
    }

    void mouseButtons()
    {
        QCOMPARE(mouseUpAction(Qt::LeftButton, 0, false), Action::None);
        QCOMPARE(mouseUpAction(Qt::LeftButton, 1, false), Action::PressPrevious);
        for (int shift = 2; shift < 8; ++shift)
            QCOMPARE(mouseUpAction(Qt::LeftButton, shift, false), Action::None);
        for (int shift = 0; shift < 8; ++shift)
            QCOMPARE(mouseUpAction(Qt::RightButton, shift, false), Action::PressNext);
        QCOMPARE(mouseUpAction(Qt::MiddleButton, 1, false), Action::None);
        QCOMPARE(mouseUpAction(Qt::RightButton, 0, true), Action::Close);
    }

    void zones_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<Action>("action");
        QTest::newRow("close") << 3 << 15 << Action::Close;
        QTest::newRow("previous") << 23 << 35 << Action::PressPrevious;
        QTest::newRow("next") << 38 << 50 << Action::PressNext;
        QTest::newRow("caption") << 59 << 69 << Action::Caption;
        QTest::newRow("mode") << 73 << 84 << Action::Mode;
    }
    void zones()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QCOMPARE(barZoneAction(from), Action::None);
        QTEST(barZoneAction(from + 1), "action");
        QTEST(barZoneAction(to - 1), "action");
        QCOMPARE(barZoneAction(to), Action::None);
    }

    void betweenZones()
    {
        for (const double x : {-5, 0, 20, 55, 71, 85, 400})
            QCOMPARE(barZoneAction(x), Action::None);
    }

    void whatCloses()
    {
        QVERIFY(closes(Action::Close) && closes(Action::Exit));
        for (const Action other : {Action::None, Action::Random, Action::Next, Action::Caption})
            QVERIFY(!closes(other));
    }

    void leavingByMouse()
    {
        int first = 0;
        QVERIFY(!leavesByMouse(first, 1500.4));
        QCOMPARE(first, 1500);
        QVERIFY(!leavesByMouse(first, 1600));
        QVERIFY(!leavesByMouse(first, 1400));
        QVERIFY(leavesByMouse(first, 1601));
        QVERIFY(leavesByMouse(first, 1399));
        QCOMPARE(first, 1500);
        first = 0;
        QVERIFY(!leavesByMouse(first, 0)); // still not known
        QCOMPARE(first, 0);
        QVERIFY(!leavesByMouse(first, 900));
        QCOMPARE(first, 900);
    }
};

QTEST_GUILESS_MAIN(TestFullScreenLayout)
#include "tst_fullscreenlayout.moc"
