// What the full-screen window paints in each mode, its caption, and how the main window's control rests
// meanwhile.
#include "app/Product.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"
#include "FullScreenBench.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"
#include "support/BenchStage.h"
#include "support/SaverBus.h"
#include "support/ScratchHome.h"

#include <QLabel>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using output::frmImageViewFull;
namespace setting = app::setting;

class TestFullScreenPicture : public QObject, private BenchStage<FullScreenBench>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void actualSize()
    {
        bench().show(edged(100, 60));
        const QSize device = bench().device();
        const QRect lies((device.width() - 100) / 2, (device.height() - 60) / 2, 100, 60);
        QImage expected = bench().expected(lies);
        QPainter(&expected).fillRect(QRect(lies.topLeft(), QSize(1, 60)), QColor(blue));
        QCOMPARE(bench().seen(), expected);
    }

    /// The centred branch; at fractional ratios too, where the toolkit has rounded the size of the screen.
    void actualSizeAsHighAsTheWindow()
    {
        bench().show();
        const QSize device = bench().device();
        QImage rows(60, device.height(), QImage::Format_RGB32);
        for (int y = 0; y < rows.height(); ++y)
            for (int x = 0; x < rows.width(); ++x)
                rows.setPixel(x, y, (x + y) % 2 == 0 ? red : blue);
        bench().show(rows);
        const QImage seen = bench().seen();
        QCOMPARE(seen.copy((device.width() - 60) / 2, 0, 60, device.height()), rows);
    }

    void actualSizeOfAWidePicture()
    {
        bench().make().resize(10, 10);
        const QSize screen = QGuiApplication::primaryScreen()->geometry().size();
        const int width = int(screen.width() * bench().ratio());
        bench().show(plain({2 * width, 20}));
        const QSize device = bench().device();
        QCOMPARE(bench().seen(), bench().expected({0, (device.height() - 20) / 2, device.width(), 20}));
    }

    void actualSizeOfAHighPicture()
    {
        app::save(setting::cFView, 9); // means none, and counts as this one
        bench().show();
        const int height = bench().device().height();
        bench().show(plain({height, 2 * height}));
        const QSize device = bench().device();
        QCOMPARE(bench().seen(),
                 bench().expected({(device.width() - height / 2) / 2, 0, height / 2, height}));
    }

    void bestFit_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSizeF>("share"); // of the window's side; it is square
        QTest::newRow("landscape") << QSize(80, 40) << QSizeF(1, 0.5);
        QTest::newRow("portrait") << QSize(40, 80) << QSizeF(0.5, 1);
        QTest::newRow("square") << QSize(40, 40) << QSizeF(1, 1);
    }

    void bestFit()
    {
        QFETCH(QSize, picture);
        QFETCH(QSizeF, share);
        app::save(setting::cFView, 1);
        bench().show(plain(picture));
        const QSize device = bench().device();
        QCOMPARE(device.width(), device.height()); // the screen of these tests
        QRect lies(QPoint(),
                   QSize(int(device.width() * share.width()), int(device.height() * share.height())));
        lies.moveCenter(QRect(QPoint(), device).center());
        QCOMPARE(bench().seen(), bench().expected(lies));
    }

    void stretched()
    {
        app::save(setting::cFView, 2);
        bench().show(plain({30, 90}));
        QCOMPARE(bench().seen(), bench().expected(QRect(QPoint(), bench().device())));
    }

    void aPortraitBesideTheScreen()
    {
        app::save(setting::cFView, 1);
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        bench().main->move(screen.width() + 1, 50);
        bench().show(plain({40, 80}));
        const QSize device = bench().device();
        const QImage seen = bench().seen();
        QCOMPARE(seen.pixel(device.width() / 2, device.height() - 1), red); // overruns it
        QCOMPARE(seen.pixel(device.width() / 2 - device.height() / 4 - 2, 100), green);
        QCOMPARE(seen.pixel(device.width() / 2 - device.height() / 4 + 2, 100), red);
    }

    void transparencyLetsTheBackgroundThrough()
    {
        QImage clear(50, 50, QImage::Format_ARGB32);
        clear.fill(Qt::transparent);
        bench().show(clear);
        QCOMPARE(bench().seen(), bench().expected({}));
    }

    void theSurfaceIsRetained()
    {
        frmImageViewFull& window = bench().show(plain({100, 60}));
        const QImage before = bench().seen();
        bench().ix1->SetFileName(QString()); // what is held goes, what is shown stays
        window.update();
        QCoreApplication::processEvents();
        QCOMPARE(bench().seen(), before);
        window.GenImage(bench().ix1);
        QCOMPARE(bench().seen(), bench().expected({}));
    }

    void paintsBeforeItReturns()
    {
        frmImageViewFull& window = bench().show(plain({100, 60}));
        const Paints paints(&window);
        window.GenImage(bench().ix1);
        QCOMPARE(paints.count, 1);
    }

    void countsAsPainted()
    {
        bench().make();
        const QSignalSpy painted(bench().ix1, &engine::ImageEngine::FirstPainted);
        bench().main->hide(); // it paints nothing itself
        bench().startedHidden = true;
        bench().make();
        bench().show(plain({100, 60}));
        QTRY_COMPARE(painted.count(), 1);
    }

    void anotherSizeComposesAnew()
    {
        app::save(setting::cFView, 2);
        bench().main->move(QGuiApplication::primaryScreen()->geometry().width() + 1, 50);
        frmImageViewFull& window = bench().show(plain({30, 90}));
        const QSignalSpy told(&window, &frmImageViewFull::composingChanged);
        window.setFixedSize(500, 400);
        QTRY_COMPARE(bench().seen(), bench().expected(QRect(QPoint(), bench().device())));
        QVERIFY(told.count() >= 1);
        QCOMPARE(bench().bar()->width(), 500);
        QCOMPARE(bench().part("iClose")->x(), 500 - 97);
    }

    void anotherNameShows()
    {
        frmImageViewFull& window = bench().show(plain({100, 60}));
        QCOMPARE(window.windowTitle(), app::GetAppDisplayName() + QStringLiteral(" - one.png"));
        bench().open(QStringLiteral("two.png"), plain({64, 32}));
        window.GenImage(bench().ix1);
        QVERIFY(window.windowTitle().endsWith(QStringLiteral(" - two.png")));
        QVERIFY(bench().label().startsWith(QStringLiteral("two.png")));
        QVERIFY(
            bench().part<QLabel>("lImage")->toolTip().contains(bench().home.path(QStringLiteral("two.png"))));
    }

    void longNamesHaveNoSize()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        bench().main->move(screen.width() + 1, 50);
        frmImageViewFull& window = bench().show();
        window.setFixedSize(1000, 500);
        bench().open(QStringLiteral("a.png"), plain({100, 60}));
        window.GenImage(bench().ix1);
        QCOMPARE(bench().label(), QStringLiteral("a.png (100x60)"));
        const QString longName = QString(100, u'w') + QStringLiteral(".png");
        bench().open(longName, plain({100, 60}));
        window.GenImage(bench().ix1);
        QCOMPARE(bench().label(), longName);
    }

    void namesAreNoMarkUp()
    {
        const QString name = QStringLiteral("<b>x.png");
        bench().show();
        bench().open(name, plain({10, 10}));
        bench().window->GenImage(bench().ix1);
        QCOMPARE(bench().part<QLabel>("lImage")->textFormat(), Qt::PlainText);
        QVERIFY(bench().label().startsWith(name));
        QVERIFY(bench().part<QLabel>("lImage")->toolTip().contains(QStringLiteral("&lt;b&gt;x.png")));
    }

    void theCaption()
    {
        frmImageViewFull& window = bench().show(plain({20, 20}));
        QVERIFY(!window.ShowCaption());
        const QImage without = bench().seen();
        bench().press(Qt::Key_T);
        QVERIFY(window.ShowCaption());
        const QImage with = bench().seen();
        QRect changed;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                if (with.pixel(x, y) != without.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        const double ratio = bench().ratio();
        QVERIFY2(changed.left() <= 4 * ratio && changed.top() <= 12 * ratio, "not in the corner");
        QVERIFY(changed.width() > 40 * ratio && changed.height() > 8 * ratio);
        QVERIFY(changed.bottom() < 30 * ratio);
        bool hasWhite = false;
        for (int x = changed.left(); x <= changed.right(); ++x)
            hasWhite |= with.pixel(x, changed.center().y()) == qRgb(255, 255, 255);
        QVERIFY(hasWhite);
        window.close();
        bench().show();
        QVERIFY(window.ShowCaption());
        bench().press(Qt::Key_T);
        QCOMPARE(bench().seen(), without);
    }

    void theCaptionStaysBelowTheBar()
    {
        bench().show(plain({20, 20}));
        bench().moveMouse({400, 10});
        const QImage bar = bench().bar()->grab().toImage();
        bench().press(Qt::Key_T);
        QCOMPARE(bench().seen().copy(0, 0, 10, 10), [&] {
            QImage corner = bar.convertToFormat(QImage::Format_RGB32).copy(0, 0, 10, 10);
            corner.setDevicePixelRatio(1);
            return corner;
        }());
    }

    void theControlRests()
    {
        frmImageViewFull& window = bench().show(plain({20, 20}));
        const Paints paints(bench().ix1);
        QCoreApplication::processEvents();
        const QImage before = bench().ix1->grab().toImage();
        bench().open(QStringLiteral("other.png"), edged(300, 200));
        QCOMPARE(bench().ix1->grab().toImage(), before); // holds what it showed
        window.close();
        QTRY_VERIFY(bench().ix1->grab().toImage() != before);
    }

    void theControlPaintsAgainWhereTheMainWindowComesToBeSeen_data()
    {
        QTest::addColumn<int>("what");
        QTest::newRow("moved beside the screen") << 0;
        QTest::newRow("brought to the front") << 1;
        QTest::newRow("full screen minimised") << 2;
    }

    void theControlPaintsAgainWhereTheMainWindowComesToBeSeen()
    {
        QFETCH(int, what);
        frmImageViewFull& window = bench().show(plain({20, 20}));
        const QImage before = bench().ix1->grab().toImage();
        if (what == 0) {
            bench().main->move(-5000, 0);
        } else if (what == 1) {
            bench().main->activateWindow();
        } else {
            window.setWindowState(window.windowState() | Qt::WindowMinimized);
        }
        QImage other(20, 20, QImage::Format_RGB32);
        other.fill(blue);
        bench().open(QStringLiteral("two.png"), other);
        QTRY_VERIFY(bench().ix1->grab().toImage() != before);
        bench().show(); // again in front of all
        QVERIFY(!window.isMinimized());
        QVERIFY(window.isFullScreen());
    }

    void theControlPaintsWhereItIsSeen()
    {
        bench().main->resize(bench().main->width(), 5000);
        frmImageViewFull& window = bench().show(plain({20, 20}));
        QVERIFY(window.isVisible());
        const QImage before = bench().ix1->grab().toImage();
        bench().open(QStringLiteral("other.png"), edged(300, 200));
        QVERIFY(bench().ix1->grab().toImage() != before);
    }
};

QTEST_MAIN(TestFullScreenPicture)
#include "tst_fullscreenpicture.moc"
