// The full-screen window: what it shows in each mode, what keys, mouse and bar do, and what closing it does.
#include "app/mWindowsAPI.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"
#include "support/SaverBus.h"
#include "support/ScratchHome.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <memory>

using namespace quorvia;
using output::frmImageViewFull;
using output::PictureButton;
namespace setting = app::setting;

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb green = qRgb(0, 128, 0);

/// Red with a blue left edge of one pixel.
QImage edged(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(red);
    for (int y = 0; y < height; ++y)
        image.setPixel(0, y, blue);
    return image;
}

class Bench
{
  public:
    Bench()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // no desktop of the one who runs the test
        qunsetenv("XDG_RUNTIME_DIR");
        app::openSettings();
        app::save(setting::FullBackColor, 128 << 8);
        main = std::make_unique<QWidget>();
        main->setGeometry(50, 50, 300, 200);
        ix1 = new engine::ImageEngine(std::make_shared<engine::ImageLoader>(), main.get());
        ix1->resize(300, 200);
        main->show();
    }
    ~Bench()
    {
        window.reset();
        main.reset();
        app::closeSettings();
    }
    Q_DISABLE_COPY_MOVE(Bench)

    frmImageViewFull& make()
    {
        frmImageViewFull::Sinks sinks;
        sinks.runTool = [this](const QString& name) {
            calls.append(name);
            if (onTool)
                onTool(name);
        };
        sinks.isSlideRunning = [this] { return slideRunning; };
        sinks.isSlideShowOnly = [this] { return slideShowOnly; };
        sinks.showMain = [this] {
            calls.append(QStringLiteral("showMain"));
            main->show();
        };
        sinks.closeMain = [this] { calls.append(QStringLiteral("closeMain")); };
        sinks.startedHidden = startedHidden;
        sinks.startedForShow = startedForShow;
        window = std::make_unique<frmImageViewFull>(sinks);
        return *window;
    }

    /// The window with `picture` of the file "one.png"; without a picture there is no image.
    frmImageViewFull& show(const QImage& picture = {})
    {
        if (!window)
            make();
        if (!picture.isNull())
            open(QStringLiteral("one.png"), picture);
        window->LoadX(ix1, main.get());
        calls.removeAll(QStringLiteral("showMain"));
        return *window;
    }

    void open(const QString& name, const QImage& picture)
    {
        if (!picture.save(home.path(name)))
            qFatal("picture not written");
        ix1->SetFileName(home.path(name));
    }

    template <class Kind = PictureButton>
    Kind* part(const char* name) const
    {
        return window->findChild<Kind*>(QLatin1String(name));
    }
    QWidget* bar() const { return part<QWidget>("iFull"); }
    QString label() const { return part<QLabel>("lImage")->text(); }
    QString tag() const { return part("iPlay")->property("tag").toString(); }

    double ratio() const { return window->devicePixelRatioF(); }
    QSize device() const { return (QSizeF(window->size()) * ratio()).toSize(); }
    /// What stands in the window, one pixel a device pixel.
    QImage seen() const
    {
        QImage image = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }
    /// The background with `color` in `part` (device pixels) of it.
    QImage expected(const QRect& part, QRgb color = red) const
    {
        QImage image(device(), QImage::Format_RGB32);
        image.fill(green);
        QPainter(&image).fillRect(part, QColor(color));
        return image;
    }
    void moveMouse(QPointF at)
    {
        QMouseEvent move(QEvent::MouseMove, at, window->mapToGlobal(at), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(window.get(), &move);
    }
    void press(int key, Qt::KeyboardModifiers held = {}, bool repeat = false)
    {
        QKeyEvent event(QEvent::KeyPress, key, held, QString(), repeat);
        QCoreApplication::sendEvent(window.get(), &event);
    }

    test::ScratchHome home;
    std::unique_ptr<QWidget> main;
    engine::ImageEngine* ix1;
    QStringList calls;
    std::function<void(const QString& name)> onTool;
    bool slideRunning = false;
    bool slideShowOnly = false;
    bool startedHidden = false;
    bool startedForShow = false;
    std::unique_ptr<frmImageViewFull> window;
};

QImage plain(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(red);
    return image;
}

/// Counts the paints of a widget.
class Paints : public QObject
{
  public:
    explicit Paints(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

  protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

} // namespace

class TestFrmImageViewFull : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<Bench> m_bench;
    Bench& bench() { return *m_bench; }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<Bench>(); }
    void cleanup() { m_bench.reset(); }

    // --- showing

    void coversThePrimaryScreen()
    {
        frmImageViewFull& window = bench().show();
        QVERIFY(window.isVisible());
        QCOMPARE(window.geometry(), QGuiApplication::primaryScreen()->geometry());
        QVERIFY(window.windowState() & Qt::WindowFullScreen);
        QVERIFY(window.windowFlags() & Qt::FramelessWindowHint);
        QVERIFY(!window.isModal());
        QCOMPARE(window.windowHandle()->transientParent(), bench().main->windowHandle());
    }

    void besideThePrimaryScreen()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        bench().main->move(screen.width() + 1, 50);
        frmImageViewFull& window = bench().show();
        QCOMPARE(window.pos(), QPoint(screen.width(), 0));
        QCOMPARE(window.size(), (QSizeF(1024, 768) / bench().ratio()).toSize());
        QCOMPARE(window.minimumSize(), window.maximumSize());
        QVERIFY(!(window.windowState() & Qt::WindowFullScreen));
        window.close();
        bench().main->move(50, 50);
        bench().show();
        QCOMPARE(window.geometry(), screen);
        QVERIFY(window.windowState() & Qt::WindowFullScreen);
    }

    void showsTheMainWindow()
    {
        bench().main->hide();
        bench().make();
        bench().window->LoadX(bench().ix1, bench().main.get());
        QCOMPARE(bench().calls, QStringList{QStringLiteral("showMain")});
    }

    void leavesItHidden()
    {
        bench().startedHidden = true;
        bench().main->hide();
        bench().make();
        bench().window->LoadX(bench().ix1, bench().main.get());
        QCOMPARE(bench().calls, QStringList());
        QVERIFY(!bench().main->isVisible());
    }

    void tagsOfTheShow()
    {
        frmImageViewFull& window = bench().show();
        QCOMPARE(bench().tag(), QStringLiteral("stopped"));
        QCOMPARE(bench().part("iPlay")->picture(), QStringLiteral("slideshow"));
        window.close();
        bench().slideRunning = true;
        bench().show();
        QCOMPARE(bench().tag(), QStringLiteral("playing"));
        QCOMPARE(bench().part("iPlay")->picture(), QStringLiteral("slidestop"));
        window.close();
        bench().slideRunning = false;
        bench().show(); // it keeps what it was
        QCOMPARE(bench().tag(), QStringLiteral("playing"));
    }

    void withoutAnImage()
    {
        bench().show();
        QCOMPARE(bench().seen(), bench().expected({}));
        QCOMPARE(bench().label(), QString());
        bench().window->GenImage(nullptr);
        QCOMPARE(bench().seen(), bench().expected({}));
    }

    void tellsOfComposing()
    {
        frmImageViewFull& window = bench().make();
        const QSignalSpy told(&window, &frmImageViewFull::composingChanged);
        bench().show();
        QVERIFY(told.count() >= 1);
        const auto opened = told.count();
        bench().press(Qt::Key_S);
        QCOMPARE(told.count(), opened + 1);
        bool visibleThen = true;
        connect(&window, &frmImageViewFull::composingChanged, &window,
                [&] { visibleThen = window.isVisible(); });
        window.close();
        QCOMPARE(told.count(), opened + 2);
        QVERIFY(!visibleThen);
    }

    void loadBoxes()
    {
        frmImageViewFull& window = bench().show();
        const QSize device = bench().device();
        const int side = std::max(device.width(), device.height());
        QCOMPARE(window.loadBox(), QSize(65535, device.height()));
        bench().press(Qt::Key_S);
        QCOMPARE(window.loadBox(), QSize(side, side));
        bench().press(Qt::Key_S);
        QCOMPARE(window.loadBox(), QSize(side, side));
        app::save(setting::cFView, 17);
        QCOMPARE(window.loadBox(), QSize(65535, device.height()));
    }

    void parts()
    {
        bench().show();
        const QSize picture(97, 38);
        struct Row
        {
            const char* name;
            const char* tip;
            int left;
        };
        const int right = bench().window->width() - picture.width();
        for (const Row& row : {Row{"Image1", "View Previous Image", 0}, Row{"Image2", "View Next Image", 96},
                               Row{"iPlay", "Toggle Slideshow Setting", 192},
                               Row{"iSize", "Change Display Types (Actual, Best Fit, Stretch)", 288},
                               Row{"iClose", "Close Fullscreen", right}}) {
            const PictureButton* const button = bench().part(row.name);
            QVERIFY2(button, row.name);
            QCOMPARE(button->toolTip(), QLatin1String(row.tip));
            QCOMPARE(button->accessibleName(), QLatin1String(row.tip));
            QCOMPARE(button->geometry(), QRect(QPoint(row.left, 0), picture));
            QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        }
        QCOMPARE(bench().bar()->geometry(), QRect(0, 0, bench().window->width(), 41));
        QVERIFY(!bench().bar()->isVisible());
        QVERIFY(!bench().bar()->accessibleName().isEmpty());
        QCOMPARE(bench().part<QLabel>("lImage")->geometry().topLeft(), QPoint(5825 / 15, 8));
        QVERIFY(!bench().part<QLabel>("lImage")->accessibleName().isEmpty());
    }

    // --- composing

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

    // --- the control in the main window

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

    // --- keys

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

    // --- mouse

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

    // --- the bar

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

    // --- closing

    void closingInEveryWay_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"close", "hide", "key", "esc", "double-click", "button", "delete"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void closingInEveryWay()
    {
        QFETCH(QString, way);
        const test::SessionBus bus;
        test::ScreenSaver saver(bus.address(), true);
        bench().startedForShow = true;
        frmImageViewFull& window = bench().show(plain({20, 20}));
        QTRY_COMPARE(saver.calls().size(), 1);
        QVERIFY(saver.calls().constFirst().startsWith(QStringLiteral("Inhibit Quorvia ")));
        const QHash<QString, std::function<void()>> ways = {
            {QStringLiteral("close"), [&] { window.close(); }},
            {QStringLiteral("hide"), [&] { window.hide(); }},
            {QStringLiteral("key"), [&] { bench().press(Qt::Key_A); }},
            {QStringLiteral("esc"), [&] { bench().press(Qt::Key_Escape); }},
            {QStringLiteral("double-click"), [&] { QTest::mouseDClick(&window, Qt::LeftButton); }},
            {QStringLiteral("button"), [&] { bench().part("iClose")->click(); }},
            {QStringLiteral("delete"), [&] { bench().window.reset(); }},
        };
        ways[way]();
        QTRY_VERIFY(saver.calls().contains(QStringLiteral("UnInhibit 7")));
        bench().open(QStringLiteral("other.png"), edged(300, 200));
        QCOMPARE(bench().ix1->grab().toImage().convertToFormat(QImage::Format_RGB32).pixel(0, 5), blue);
        if (way == QStringLiteral("delete"))
            return;
        QCOMPARE(bench().calls.count(QStringLiteral("closeMain")), 1);
        window.close();
        QCOMPARE(bench().calls.count(QStringLiteral("closeMain")), 1);
    }

    void closingLeavesTheMainWindow()
    {
        bench().show().close();
        QCOMPARE(bench().calls, QStringList());
        QVERIFY(bench().main->isVisible());
    }

    void closingWhileItOpens()
    {
        const test::SessionBus bus;
        test::ScreenSaver saver(bus.address(), true);
        frmImageViewFull& window = bench().make();
        QTimer::singleShot(0, &window, [&window] { window.close(); });
        window.LoadX(bench().ix1, bench().main.get());
        QVERIFY(!window.isVisible());
        QCOMPARE(bench().calls, QStringList()); // nothing went on
        bench().window.reset();
        const QStringList calls = saver.calls();
        QCOMPARE(calls.filter(QStringLiteral("UnInhibit")).size() * 2,
                 calls.filter(QStringLiteral("nhibit")).size());
    }

    void shownAgainWhileItShows()
    {
        frmImageViewFull& window = bench().show(plain({20, 20}));
        bench().show();
        QVERIFY(window.isVisible());
        window.close();
        QVERIFY(!window.isVisible());
        QCOMPARE(bench().calls, QStringList());
    }
};

QTEST_MAIN(TestFrmImageViewFull)
#include "tst_frmimageviewfull.moc"
