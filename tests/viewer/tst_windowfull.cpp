// The full-screen window as the main window has it: what opens it, what it follows, how pictures are read for
// it, what ends with it.
#include "app/Settings.h"
#include "output/frmImageViewFull.h"
#include "viewer/PictureStage.h"

#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using output::frmImageViewFull;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowFull : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    static void run(frmImageView& window, const char* command) { window.RunTool(QLatin1String(command)); }
    static frmImageViewFull* fullOf(frmImageView& window) { return window.findChild<frmImageViewFull*>(); }
    static QColor middleOf(frmImageViewFull& full)
    {
        const QImage shot = full.grab().toImage();
        return shot.pixelColor(shot.width() / 2, shot.height() / 2);
    }
    static void tick(frmImageView& window)
    {
        Q_EMIT window.findChild<QTimer*>(QStringLiteral("tSlide"))->timeout({});
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void showsWhatIsOpenAndFollowsIt()
    {
        frmImageView& window = m_bench->load({in("pics")});
        QVERIFY(!window.full().FullViewInUse());
        run(window, "miFullScreen");
        frmImageViewFull* const full = fullOf(window);
        QVERIFY(full && full->isVisible());
        QVERIFY(window.full().FullViewInUse());
        QCOMPARE(middleOf(*full), QColor(Qt::red));
        run(window, "miNext");
        QCOMPARE(middleOf(*full), QColor(Qt::green));
        full->close();
        QVERIFY(!window.full().isVisible());
        QVERIFY(window.full().FullViewInUse());
        QVERIFY(window.isVisible());
        // A closed one is not composed; it is the same one that shows again.
        run(window, "miNext");
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        run(window, "miFullScreen");
        QCOMPARE(fullOf(window), full);
        QCOMPARE(middleOf(*full), QColor(Qt::blue));
    }

    void theMainWindowShowsTheNewestAfterwards()
    {
        frmImageView& window = m_bench->load({in("pics")});
        run(window, "miFullScreen");
        run(window, "miNext");
        run(window, "miNext");
        fullOf(window)->close();
        QTRY_COMPARE(m_bench->middle(), QColor(Qt::blue));
    }

    /// While it shows, pictures are read for it, and for its mode.
    void picturesAreReadForIt()
    {
        frmImageView& window = m_bench->load({in("pics")});
        const QSize before = window.viewport()->loadBox();
        QSignalSpy laidOut(window.viewport(), &viewer::Viewport::laidOut);
        run(window, "miFullScreen");
        frmImageViewFull* const full = fullOf(window);
        QVERIFY(!laidOut.isEmpty());
        QCOMPARE(window.viewport()->loadBox(), full->loadBox());
        QCOMPARE(full->loadBox(), QSize(65535, full->height()));
        laidOut.clear();
        QTest::keyClick(full, Qt::Key_S);
        QVERIFY(!laidOut.isEmpty());
        QCOMPARE(app::read(setting::cFView), 1);
        const int side = std::max(full->width(), full->height());
        QCOMPARE(window.viewport()->loadBox(), QSize(side, side));
        laidOut.clear();
        full->close();
        QVERIFY(!laidOut.isEmpty());
        QCOMPARE(window.viewport()->loadBox(), before);
    }

    void escapeEndsTheProgram()
    {
        frmImageView& window = m_bench->load({in("pics")});
        run(window, "miFullScreen");
        QTest::keyClick(fullOf(window), Qt::Key_Escape);
        QVERIFY(!fullOf(window)->isVisible());
        QVERIFY(window.isUnloaded());
    }

    void theEndOfTheProgramEndsIt()
    {
        frmImageView& window = m_bench->load({in("pics")});
        run(window, "miFullScreen");
        m_bench->close();
        QVERIFY(!window.full().isVisible());
    }

    void aShowAlone()
    {
        frmImageView& window = m_bench->load({in("pics")});
        run(window, "xSlideShow");
        QVERIFY(window.slideshow()->SlideShowOnly());
        QVERIFY(window.slideshow()->isRunning());
        frmImageViewFull* const full = fullOf(window);
        QVERIFY(full->isVisible());
        QVERIFY(window.isVisible()); // behind it
        tick(window);
        QCOMPARE(middleOf(*full), QColor(Qt::green));
        QTest::keyClick(full, Qt::Key_Right); // any key
        QVERIFY(!full->isVisible());
        QVERIFY(!window.isUnloaded()); // until the next tick
        tick(window);
        QVERIFY(window.isUnloaded());
        QVERIFY(!window.slideshow()->isRunning());
    }

    void aShowAloneOfTheLineEndsAtOnce()
    {
        frmImageView& window = m_bench->load({in("pics"), QStringLiteral("/xSlideShow")});
        frmImageViewFull* const full = fullOf(window);
        QVERIFY(full && full->isVisible());
        QTest::mousePress(full, Qt::MiddleButton);
        QVERIFY(window.isUnloaded());
    }

    void theMainWindowStaysHiddenWhenTheLineSaysSo_data()
    {
        QTest::addColumn<QStringList>("commands");
        QTest::addColumn<bool>("mainShows");
        QTest::newRow("full screen") << QStringList{QStringLiteral("/miFullScreen")} << true;
        QTest::newRow("full screen, hidden")
            << QStringList{QStringLiteral("/miHide"), QStringLiteral("/miFullScreen")} << false;
        QTest::newRow("a show alone, hidden")
            << QStringList{QStringLiteral("/miHide"), QStringLiteral("/xSlideShow")} << false;
    }

    void theMainWindowStaysHiddenWhenTheLineSaysSo()
    {
        QFETCH(QStringList, commands);
        QFETCH(bool, mainShows);
        frmImageView& window = m_bench->load(QStringList{in("pics")} + commands);
        QVERIFY(fullOf(window) && fullOf(window)->isVisible());
        QCOMPARE(window.isVisible(), mainShows);
        QCOMPARE(middleOf(*fullOf(window)), QColor(Qt::red));
        // What follows the first paint of a picture follows without the main window too.
        QSignalSpy painted(window.ix1(), &engine::ImageEngine::FirstPainted);
        run(window, "miNext");
        QTRY_COMPARE(painted.size(), 1);
    }

    void withoutAnImageThereIsTheBackground()
    {
        app::save(setting::FullBackColor, 0x00ff00);
        app::save(setting::imgAutoLoad, 0);
        frmImageView& window = m_bench->load();
        run(window, "miFullScreen");
        QCOMPARE(middleOf(*fullOf(window)), QColor(Qt::green));
        QCOMPARE(fullOf(window)->findChild<QLabel*>(QStringLiteral("lImage"))->text(), QString());
    }

    void atStartByThePreference_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("shows");
        QTest::newRow("a folder") << QStringList{QStringLiteral("pics")} << true;
        QTest::newRow("a folder and a command")
            << QStringList{QStringLiteral("pics"), QStringLiteral("/miZoomIn")} << false;
        QTest::newRow("a folder without pictures") << QStringList{QStringLiteral(".")} << false;
    }

    void atStartByThePreference()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, shows);
        app::save(setting::cFull, 1);
        arguments[0] = m_bench->in(qPrintable(arguments[0]));
        frmImageView& window = m_bench->load(arguments);
        QCOMPARE(window.full().isVisible(), shows);
    }
};

QTEST_MAIN(TestWindowFull)
#include "tst_windowfull.moc"
