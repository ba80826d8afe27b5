// A main window on two screens: the primary one, which is not the one at the left, and one with finer pixels.
#include "app/Settings.h"
#include "app/Twips.h"
#include "app/WindowPlacement.h"
#include "controls/ScrollBar.h"
#include "viewer/ViewerBench.h"
#include "viewer/Viewport.h"

#include <QScreen>
#include <QTest>
#include <QWindow>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

class TestScreens : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

    static QScreen* fine() { return QGuiApplication::screens().at(1); }
    static QRect primary() { return QGuiApplication::primaryScreen()->geometry(); }

  private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QCOMPARE(primary(), QRect(1280, 200, 1920, 1080));
        QCOMPARE(fine()->geometry().topLeft(), QPoint(0, 0));
        QCOMPARE(fine()->devicePixelRatio(), 2.0);
    }
    void init() { m_bench = std::make_unique<ViewerBench>(); }
    void cleanup() { m_bench.reset(); }

    void opensInTheMiddleOfThePrimaryScreen()
    {
        const frmImageView& window = m_bench->load();
        QCOMPARE(window.size(), primary().size() * 7 / 8);
        const QPoint corner = primary().topLeft() + QPoint(1920 / 16, 1080 / 16);
        QVERIFY((window.pos() - corner).manhattanLength() <= 2);
    }

    void theOtherScreenHasFinerPixels()
    {
        const QString path = m_bench->picture(QStringLiteral("large.png"), Qt::red, QSize(3000, 2400));
        frmImageView& window = m_bench->load({path});
        window.RunTool(QStringLiteral("miActualSize"));
        const viewer::Viewport& viewport = *window.viewport();
        const QSize panel = viewport.pContain()->size();
        QCOMPARE(viewport.ix1()->size(), QSize(3000, 2400));
        QCOMPARE(viewport.sb1()->Max(), 2400 - panel.height() + viewport.sb2()->height());
        viewport.sb1()->SetValue(viewport.sb1()->Max() / 2);
        window.windowHandle()->setScreen(fine());
        QTRY_COMPARE(viewport.ix1()->size(),
                     QSize(1500, 1200)); // a pixel of the picture on one of the screen
        const QSize now = viewport.pContain()->size();
        QCOMPARE(viewport.sb1()->Max(), 2 * (1200 - now.height() + viewport.sb2()->height()));
        QVERIFY(std::abs(viewport.sb1()->Value() - viewport.sb1()->Max() / 2) <= 1);
        QVERIFY(std::abs(2 * viewport.ix1()->y() + viewport.sb1()->Value()) <= 1);
        window.windowHandle()->setScreen(QGuiApplication::primaryScreen());
        QTRY_COMPARE(viewport.ix1()->size(), QSize(3000, 2400));
    }

    void secondaryWindowsComeBackOntoTheirScreen_data()
    {
        QTest::addColumn<QPoint>("stored");
        QTest::addColumn<bool>("kept");
        QTest::newRow("on the primary screen") << QPoint(1500, 300) << true;
        QTest::newRow("on the other") << QPoint(100, 100) << true;
        QTest::newRow("above the primary one") << QPoint(2000, 50) << false;
        QTest::newRow("below the other") << QPoint(100, 900) << false;
        QTest::newRow("below the primary one") << QPoint(2000, 1300) << false;
    }

    void secondaryWindowsComeBackOntoTheirScreen()
    {
        QFETCH(QPoint, stored);
        QFETCH(bool, kept);
        m_bench->load();
        const QString stem = QStringLiteral("Preferences");
        app::savePlacement(stem, app::Placement::Left, app::toTwips(stored.x()));
        app::savePlacement(stem, app::Placement::Top, app::toTwips(stored.y()));
        QWidget secondary;
        secondary.resize(200, 100);
        app::LoadWindowPlacement(stem, &secondary, false);
        const QPoint middle = primary().center() - QPoint(100, 50);
        const QPoint expected = kept ? stored : middle;
        QVERIFY((secondary.pos() - expected).manhattanLength() <= 2);
    }
};

QTEST_MAIN(TestScreens)
#include "tst_screens.moc"
