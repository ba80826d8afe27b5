// The full-screen window: where it opens and with what parts, and what closing it does.
#include "app/Settings.h"
#include "FullScreenBench.h"
#include "output/frmImageViewFull.h"
#include "output/FullScreenBar.h"
#include "support/BenchStage.h"
#include "support/SaverBus.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using namespace quorvia::test;
using output::frmImageViewFull;
using output::PictureButton;
namespace setting = app::setting;

class TestFrmImageViewFull : public QObject, private BenchStage<FullScreenBench>
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
