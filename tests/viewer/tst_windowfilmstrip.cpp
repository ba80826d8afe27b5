// The filmstrip in the main window: when it is filled, what it selects, and what clicks on it do.
#include "app/Settings.h"
#include "collections/Filmstrip.h"
#include "collections/ThumbnailCache.h"
#include "controls/gnTab.h"
#include "controls/ScrollBar.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "viewer/DragHandle.h"
#include "viewer/PictureStage.h"

#include <QDir>
#include <QFile>
#include <QMenu>
#include <QTest>
#include <QTimer>

#include <limits>

using namespace quorvia;
using collections::Filmstrip;
using viewer::frmImageView;
namespace setting = app::setting;

namespace {

constexpr int leftButton = 1;
constexpr int rightButton = 2;
constexpr int middleButton = 4;

} // namespace

class TestWindowFilmstrip : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    frmImageView* m_window = nullptr;

    QStringList pictures() const { return {in("pics/a.png"), in("pics/b.png"), in("pics/two words.png")}; }

    Filmstrip& strip() const { return *m_window->filmstrip()->Filmstrip1(); }
    QTimer& tDraw() const { return *strip().findChild<QTimer*>(QStringLiteral("tDraw")); }
    QTimer& tSelection() const { return *strip().findChild<QTimer*>(QStringLiteral("tSelectionChange")); }
    controls::ScrollBar& sBar() const
    {
        return *strip().findChild<controls::ScrollBar*>(QStringLiteral("sBar"));
    }
    /// 40 more pictures in the folder, each with its name as it counts.
    void manyPictures() const
    {
        for (int i = 0; i < 40; ++i)
            m_bench->picture(QStringLiteral("pics/n%1.png").arg(i, 2, 10, QLatin1Char('0')), Qt::gray);
    }
    QStringList thumbnails() const
    {
        return QDir(collections::thumbnailDirectory()).entryList({QStringLiteral("*.thb")}, QDir::Files);
    }
    void run(const char* command) const { m_window->RunTool(QLatin1String(command)); }
    void click(int index, int button) const { Q_EMIT strip().ImageClicked(index, button, 0); }
    /// Waits until everything is painted and the selection taken over.
    bool settles() const
    {
        const auto* const tResize = strip().findChild<QTimer*>(QStringLiteral("tResize"));
        return QTest::qWaitFor(
            [&] { return !tResize->isActive() && !tDraw().isActive() && !tSelection().isActive(); }, 10000);
    }

    /// A window with menus, on the folder of three pictures.
    frmImageView& open()
    {
        m_window = &m_bench->load({in("pics")});
        m_window->resize(900, 700);
        m_window->OpenMenuX(true);
        return *m_window;
    }
    /// The same with the strip shown and painted.
    frmImageView& openWithStrip()
    {
        open();
        run("miViewFilmstrip");
        settles();
        return *m_window;
    }
    platform::ToolValues copy(const char* tool) const
    {
        return m_window->panes()
            ->ab1()
            ->model()
            ->band(QStringLiteral("bFilmStrip"))
            ->tool(QLatin1String(tool))
            ->values();
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void nothingIsReadWhileItIsHidden()
    {
        open();
        run("FileListUpdated");
        QVERIFY(strip().Images().isEmpty());
        QVERIFY(!tDraw().isActive());
    }

    void itIsFilledWhenItsTabComes()
    {
        openWithStrip();
        QCOMPARE(strip().Images(), pictures());
        QCOMPARE(strip().SelectedImages(), QStringLiteral("0;"));
        const QRect pane = m_window->panes()->pFilm()->rect();
        QCOMPARE(strip().geometry(), pane);
        QVERIFY(pane.height() > 100);
    }

    void notBehindTheViewport()
    {
        openWithStrip();
        run("miHideInterface"); // the viewport takes all
        m_bench->picture(QStringLiteral("pics/c.png"), Qt::yellow);
        m_window->list()->RefreshPlaylist();
        m_window->list()->finishRebuild();
        QCOMPARE(strip().Images(), pictures());
        run("miHideInterface");
        QCOMPARE(strip().Images().size(), 4);
        QVERIFY(strip().height() > 100);
    }

    void atTheStartWhenItsTabIsStored()
    {
        app::save(setting::ToggleInterface, 0);
        app::save(setting::ActiveTabWindow, QStringLiteral("Filmstrip"));
        app::save(setting::FilmStripRows, 2);
        open();
        m_window->list()->finishRebuild();
        QCOMPARE(strip().Images(), pictures());
        QCOMPARE(strip().NumberOfRows(), 2);
        QVERIFY(settles());
        QVERIFY(strip().findChild<QWidget*>(QStringLiteral("pImages"))->width() > 100); // it is laid out
        QCOMPARE(strip().SelectedImages(), QStringLiteral("0;"));
    }

    void itFollowsTheList()
    {
        openWithStrip();
        m_bench->picture(QStringLiteral("pics/c.png"), Qt::yellow);
        m_window->list()->RefreshPlaylist();
        m_window->list()->finishRebuild();
        QCOMPARE(strip().Images().size(), 4);
        QVERIFY(tDraw().isActive());
        QVERIFY(settles());
        QVERIFY(QFile::remove(in("pics/b.png")));
        m_window->list()->RefreshPlaylist();
        m_window->list()->finishRebuild();
        QCOMPARE(strip().Images(),
                 (QStringList{in("pics/a.png"), in("pics/c.png"), in("pics/two words.png")}));
    }

    void anUnchangedListPaintsNothingAgain()
    {
        openWithStrip();
        m_window->list()->RefreshPlaylist();
        m_window->list()->finishRebuild();
        QVERIFY(!tDraw().isActive());
        strip().add(in("pics/more.png"));
        run("FileListUpdated"); // another fingerprint
        QVERIFY(tDraw().isActive());
        QCOMPARE(strip().Images(), pictures());
    }

    void anUnchangedListLeavesTheStripWhereItIs()
    {
        manyPictures();
        openWithStrip();
        sBar().SetValue(sBar().Max());
        const int there = sBar().Value();
        QVERIFY(there > 0);
        m_window->list()->RefreshPlaylist();
        m_window->list()->finishRebuild();
        QVERIFY(!tSelection().isActive());
        QVERIFY(!tDraw().isActive());
        QCOMPARE(sBar().Value(), there);
        run("miViewNormal");
        run("miViewFilmstrip"); // where the current image is looked for
        QVERIFY(tSelection().isActive());
        QCOMPARE(sBar().Value(), 0);
    }

    void theSelectionFollowsTheImage()
    {
        openWithStrip();
        for (const char* selection : {"1;", "2;", "0;"}) {
            run("miNext");
            QVERIFY(settles());
            QCOMPARE(strip().SelectedImages(), QLatin1String(selection));
        }
        m_window->OpenX(m_bench->picture(QStringLiteral("other/x.png"), Qt::cyan)); // not in the strip
        m_window->list()->finishRebuild(); // of the folder that it lies in
        QCOMPARE(strip().Images().size(), 1);
        QVERIFY(settles());
        QCOMPARE(strip().SelectedImages(), QStringLiteral("0;"));
        run("miViewNormal");
        m_window->list()->finishRebuild();
        m_window->OpenX(in("pics/b.png"));
        m_window->list()->finishRebuild();
        run("miViewFilmstrip"); // what came while it was hidden
        QVERIFY(settles());
        QCOMPARE(strip().SelectedImages(), QStringLiteral("1;"));
    }

    void aClosedImageIsNotSelected()
    {
        openWithStrip();
        run("miCloseImage");
        run("miViewNormal");
        run("miViewFilmstrip");
        QVERIFY(settles());
        QCOMPARE(strip().SelectedImages(), QStringLiteral(";"));
    }

    void theImageIsBroughtIntoView()
    {
        manyPictures();
        openWithStrip();
        QCOMPARE(sBar().Value(), 0);
        m_window->OpenX(in("pics/n30.png"));
        QVERIFY(settles());
        QVERIFY(sBar().Value() > 0);
    }

    void aClickOpens_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("left") << leftButton;
        QTest::newRow("middle") << middleButton;
    }

    void aClickOpens()
    {
        QFETCH(int, button);
        openWithStrip();
        click(1, button);
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
        QCOMPARE(m_window->list()->ListIndex(), 1);
        QCOMPARE(m_window->panes()->gTab()->SelectedTabKey(), QStringLiteral("Filmstrip"));
    }

    void aClickOnTheListsOwnEntryOpensIt_data()
    {
        QTest::addColumn<bool>("isClosed");
        QTest::newRow("another image is on show") << false;
        QTest::newRow("no image is on show") << true;
    }

    void aClickOnTheListsOwnEntryOpensIt()
    {
        QFETCH(bool, isClosed);
        openWithStrip();
        if (isClosed)
            run("miCloseImage");
        else
            m_window->OpenX(in("pics/b.png"));
        QCOMPARE(m_window->list()->ListIndex(), 0);
        click(0, leftButton);
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
    }

    void aStripOutOfSightStandsStill_data()
    {
        QTest::addColumn<QByteArray>("away");
        QTest::addColumn<QByteArray>("back");
        QTest::addColumn<bool>("asksForRows");
        for (const bool rows : {false, true}) {
            const char* const then = rows ? ", asked for rows" : "";
            QTest::addRow("another tab%s", then)
                << QByteArray("miViewNormal") << QByteArray("miViewFilmstrip") << rows;
            QTest::addRow("behind the viewport%s", then)
                << QByteArray("miHideInterface") << QByteArray("miHideInterface") << rows;
        }
    }

    void aStripOutOfSightStandsStill()
    {
        QFETCH(QByteArray, away);
        QFETCH(QByteArray, back);
        QFETCH(bool, asksForRows);
        manyPictures();
        QVERIFY(QDir().mkpath(in("cache")));
        app::save(app::common::ThumbnailPath, in("cache/"));
        open();
        run("miViewFilmstrip");
        QTRY_VERIFY(thumbnails().size() > 2);
        QVERIFY(tDraw().isActive());
        run(away.constData());
        if (asksForRows)
            run("miFilm2");
        for (const auto* const timer : strip().findChildren<QTimer*>())
            QVERIFY2(!timer->isActive() || timer->objectName() == QLatin1String("tResize"),
                     qPrintable(timer->objectName()));
        run("miNext"); // what is opened out of sight asks for nothing
        QVERIFY(!tSelection().isActive());
        QVERIFY(thumbnails().size() < 40);
        run(back.constData());
        QVERIFY(tDraw().isActive());
        QCOMPARE(tDraw().interval() == 100, asksForRows); // else it goes on where it stood
        QVERIFY(settles());
        QCOMPARE(thumbnails().size(), 43);
        QCOMPARE(strip().NumberOfRows(), asksForRows ? 2 : 1);
        QCOMPARE(strip().SelectedImages(), QStringLiteral("1;"));
    }

    void aRightClickOpensTheMenuOfTheImage()
    {
        const QString file = m_bench->picture(QStringLiteral("pics/b & c.png"), Qt::cyan);
        openWithStrip();
        click(1, rightButton);
        platform::ToolMenu* const menus = m_window->panes()->ab1()->menus();
        QVERIFY(menus->menu());
        QCOMPARE(menus->menu()->objectName(), QStringLiteral("bFilmStrip"));
        QCOMPARE(copy("miThumbDelete").caption, QStringLiteral("Delete 'b & c.png'"));
        QStringList rows;
        for (const QAction* row : menus->menu()->actions())
            rows.append(row->text());
        QCOMPARE(rows, (QStringList{"Show Full-Screen", "Delete 'b && c.png'", "", "Display '1' Row",
                                    "Display '2' Rows", "", "File Information"}));
        menus->close();
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
        run("miThumbFull");
        QCOMPARE(m_window->currentFile(), file);
    }

    void itsMenuPausesTheSlideshow()
    {
        openWithStrip();
        run("miSlideShow");
        click(1, rightButton);
        QVERIFY(!m_window->slideshow()->isRunning());
        m_window->panes()->ab1()->menus()->close();
        QVERIFY(m_window->slideshow()->isRunning());
    }

    void rows_data()
    {
        QTest::addColumn<int>("rows");
        for (const int rows : {1, 2, 3})
            QTest::addRow("%d", rows) << rows;
    }

    void rows()
    {
        QFETCH(int, rows);
        app::save(setting::FilmStripRows, rows == 1 ? 2 : 1);
        openWithStrip();
        m_window->RunTool(QStringLiteral("miFilm%1").arg(rows));
        QCOMPARE(strip().NumberOfRows(), rows);
        QCOMPARE(app::read(setting::FilmStripRows), rows);
        const auto* const model = m_window->panes()->ab1()->model();
        for (int each = 1; each <= 3; ++each)
            QCOMPARE(model->tool(QStringLiteral("miFilm%1").arg(each))->values().checked, each == rows);
        QCOMPARE(copy("miFilm1").checked, rows == 1);
        QCOMPARE(copy("miFilm2").checked, rows == 2);
    }

    void otherRowsOfASetting_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("rows");
        QTest::newRow("0") << 0 << 1;
        QTest::newRow("-7") << -7 << 1;
        QTest::newRow("5") << 5 << 5;
        QTest::newRow("a million") << 1'000'000 << 200;
        QTest::newRow("the largest number") << std::numeric_limits<int>::max() << 200;
    }

    void otherRowsOfASetting()
    {
        QFETCH(int, stored);
        QFETCH(int, rows);
        app::save(setting::FilmStripRows, stored);
        openWithStrip();
        QCOMPARE(strip().Images(), pictures());
        QCOMPARE(strip().NumberOfRows(), rows);
        for (const int each : {1, 2, 3}) {
            const auto* const tool =
                m_window->panes()->ab1()->model()->tool(QStringLiteral("miFilm%1").arg(each));
            QCOMPARE(tool->values().checked, each == rows);
        }
    }

    void anotherHeightPaintsItAnew()
    {
        openWithStrip();
        const auto* const pImages = strip().findChild<QWidget*>(QStringLiteral("pImages"));
        const int before = pImages->width();
        auto* const pSize = m_window->findChild<viewer::DragHandle*>(QStringLiteral("pSize"));
        const QPoint middle = pSize->rect().center();
        QTest::mousePress(pSize, Qt::LeftButton, {}, middle);
        QTest::mouseMove(pSize, middle - QPoint(0, 60));
        QTest::mouseRelease(pSize, Qt::LeftButton, {}, middle);
        QVERIFY(settles());
        QVERIFY(pImages->width() > before + 100);
        QCOMPARE(strip().SelectedImages(), QStringLiteral("0;"));
    }
};

QTEST_MAIN(TestWindowFilmstrip)
#include "tst_windowfilmstrip.moc"
