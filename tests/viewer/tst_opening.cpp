// Opening files, folders, playlists and pages through the main window.
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/PlaylistSource.h"
#include "controls/gnTab.h"
#include "controls/ScrollBar.h"
#include "viewer/Opening.h"
#include "viewer/PageNavigator.h"
#include "viewer/ViewerBench.h"

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace quorvia;
using test::ViewerBench;
using viewer::frmImageView;

namespace {

class RecordingPlaylists final : public collections::PlaylistSource
{
  public:
    QString GetPlaylistFormats() const override { return QStringLiteral(".qol"); }
    void OpenPlaylist(const QString& file) override { opened.append(file); }
    int ListCount() const override { return entries; }

    QStringList opened;
    int entries = 0;
};

} // namespace

class TestOpening : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

    static int openCount() { return app::read(app::setting::ImageOpenCount); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<ViewerBench>(); }
    void cleanup() { m_bench.reset(); }

    void anImageBecomesCurrent()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        QSignalSpy changed(window.opening(), &viewer::Opening::ImageFileChanged);
        window.OpenX(red);
        QCOMPARE(window.currentFile(), red);
        QCOMPARE(window.list()->path(), m_bench->home.path(QStringLiteral("pics")));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(openCount(), 1);
        QVERIFY(window.ix1()->PaintEnabled());
        QCOMPARE(m_bench->middle(), QColor(Qt::red));
        QVERIFY(m_bench->boxes.empty());
    }

    void paintingIsHeldBackWhileAnImageComes()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        bool heldBack = false;
        connect(window.opening(), &viewer::Opening::ImageFileChanged, &window,
                [&] { heldBack = !window.ix1()->PaintEnabled(); });
        window.OpenX(red);
        QVERIFY(heldBack);
        QVERIFY(window.ix1()->PaintEnabled());
    }

    void theControlIsPlacedForEachImage()
    {
        const QString small = m_bench->picture(QStringLiteral("pics/small.png"), Qt::red, {40, 30});
        const QString wide = m_bench->picture(QStringLiteral("pics/wide.png"), Qt::red, {4000, 30});
        frmImageView& window = m_bench->load();
        const QSize panel = window.pContain()->size();
        window.OpenX(small);
        QCOMPARE(window.ix1()->ScaleMode(), 0);
        QCOMPARE(window.ix1()->pos(), QPoint(panel.width() / 2 - 20, panel.height() / 2 - 15));
        QCOMPARE(window.ix1()->size(), panel);
        window.OpenX(wide);
        QCOMPARE(window.ix1()->ScaleMode(), 4);
        QCOMPARE(window.ix1()->geometry(), QRect(QPoint(0, 0), panel));
        window.RunTool(QStringLiteral("miActualSize"));
        QCOMPARE(window.ix1()->ScaleMode(), 0);
        QCOMPARE(window.ix1()->geometry(), QRect(0, panel.height() / 2 - 15, 4000, 30));
        const QImage shot = window.pContain()->grab().toImage();
        QCOMPARE(shot.pixelColor(0, panel.height() / 2), QColor(Qt::red));
        QCOMPARE(shot.pixelColor(0, panel.height() / 2 - 16), QColor(48, 48, 48));
    }

    void anotherImageBeginsAtItsCorner()
    {
        const QString first = m_bench->picture(QStringLiteral("pics/first.png"), Qt::red, {3000, 3000});
        const QString second = m_bench->picture(QStringLiteral("pics/second.png"), Qt::red, {4000, 3000});
        frmImageView& window = m_bench->load({first});
        window.RunTool(QStringLiteral("miActualSize"));
        window.viewport()->scrollBy(500, 400);
        QCOMPARE(window.ix1()->pos() * window.devicePixelRatioF(), QPoint(-500, -400));
        window.OpenX(second);
        QCOMPARE(window.ix1()->pos(), QPoint(0, 0));
        QCOMPARE(window.viewport()->sb1()->Value(), 0);
    }

    void aClickOnATabKeepsImagesOut()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.panes()->gTab()->SetTag(QStringLiteral("busy"));
        window.OpenX(red);
        QCOMPARE(window.currentFile(), QString());
        QCOMPARE(openCount(), 0);
    }

    void anImageLeavesOnlyItsOwnTabs_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        for (const char* key : {"Information", "Filmstrip", "Image"})
            QTest::newRow(key) << key << key;
        QTest::newRow("none") << "no tab"
                              << "Image";
    }

    void anImageLeavesOnlyItsOwnTabs()
    {
        QFETCH(QString, before);
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.panes()->gTab()->SetSelectedTab(before);
        window.OpenX(red);
        QTEST(window.panes()->gTab()->SelectedTabKey(), "after");
    }

    void theFirstTabNamesTheImage()
    {
        const QString name = QStringLiteral("pics/a name that is far too long for a tab.of.png");
        const QString path = m_bench->picture(name, Qt::red, {41, 30});
        frmImageView& window = m_bench->load();
        const controls::gnTab& gTab = *window.panes()->gTab();
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("Active Image"));
        window.OpenX(path);
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("a name that is ...png"));
        window.RunTool(QStringLiteral("miCloseImage"));
        QCOMPARE(gTab.tabs().at(1).Caption, QStringLiteral("Unknown"));
    }

    void theCountEndsWhereItsNumberDoes()
    {
        app::save(app::setting::ImageOpenCount, 2147483647);
        frmImageView& window = m_bench->load();
        window.OpenX(m_bench->picture(QStringLiteral("a.png"), Qt::red));
        QCOMPARE(openCount(), 2147483647);
    }

    void theSameFileReloadsAndCountsAgain()
    {
        const QString path = m_bench->picture(QStringLiteral("pics/a.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        m_bench->picture(QStringLiteral("pics/a.png"), Qt::blue, {41, 30});
        window.OpenX(path);
        QCOMPARE(openCount(), 2);
        QCOMPARE(window.ix1()->ImagePixelWidth(), 41);
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
    }

    void theEmptyPathDoesNothingButGoToPageOne()
    {
        frmImageView& window = m_bench->load();
        window.ix1()->SetPageNumber(3);
        window.OpenX(QString());
        QCOMPARE(window.ix1()->PageNumber(), 1);
        QCOMPARE(openCount(), 0);
        QVERIFY(m_bench->boxes.empty());
    }

    void recentFolders()
    {
        const QString a1 = m_bench->picture(QStringLiteral("a/1.png"), Qt::red);
        const QString a2 = m_bench->picture(QStringLiteral("a/2.png"), Qt::red);
        const QString b1 = m_bench->picture(QStringLiteral("b/1.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.OpenX(a1);
        window.OpenX(b1);
        window.OpenX(a2);
        const QStringList expected = {QString(), m_bench->home.path(QStringLiteral("a")),
                                      m_bench->home.path(QStringLiteral("b"))};
        QCOMPARE(window.opening()->recent(), expected);
        m_bench->close();
        QCOMPARE(app::read(app::setting::Recent), expected.join(QLatin1Char(';')));
    }

    void aMissingFileIsNamed()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.OpenX(red);
        const QString missing = m_bench->home.path(QStringLiteral("pics/gone.png"));
        window.OpenX(missing);
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        const platform::MessageBox& box = m_bench->boxes.front();
        QCOMPARE(box.kind, platform::BoxKind::Information);
        QCOMPARE(box.title, QStringLiteral("File Opening Error"));
        QCOMPARE(box.text, QStringLiteral("Error Opening File: File Not Found\n\n") + missing +
                               QStringLiteral("\n\nThis file may have been moved or deleted..."));
        QVERIFY(!window.list()->IsReady());
        QCOMPARE(window.currentFile(), red);
        QCOMPARE(openCount(), 1);
    }

    void aMissingPlaylistReportsLikeAnImage()
    {
        RecordingPlaylists playlists;
        frmImageView& window = m_bench->load();
        window.opening()->setPlaylists(&playlists);
        window.OpenX(m_bench->home.path(QStringLiteral("gone.qol")));
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QVERIFY(playlists.opened.isEmpty());
    }

    void aCurrentFileThatHasGoneIsClearedWithTheMessage()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.OpenX(red);
        QVERIFY(QFile::remove(red));
        window.OpenX(red);
        QCOMPARE(m_bench->boxes.size(), size_t(1));
        QCOMPARE(window.currentFile(), QString());
        QCOMPARE(window.ix1()->ImagePixelWidth(), 0);
    }

    void anUnknownTypeGoesToTheEngineAllTheSame()
    {
        const QString path = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        const QString odd = m_bench->home.path(QStringLiteral("pics/red.xyzzy"));
        QVERIFY(QFile::copy(path, odd));
        frmImageView& window = m_bench->load();
        window.OpenX(odd);
        QCOMPARE(window.currentFile(), odd);
    }

    void aFileThatIsNoImageKeepsThePictureAndIsLogged()
    {
        const QString red = m_bench->picture(QStringLiteral("pics/red.png"), Qt::red);
        const QString text = m_bench->home.write(QStringLiteral("pics/text.jpg"), "no picture at all");
        frmImageView& window = m_bench->load();
        window.OpenX(red);
        window.OpenX(text);
        QVERIFY(m_bench->boxes.empty());
        QCOMPARE(window.currentFile(), red);
        QCOMPARE(m_bench->middle(), QColor(Qt::red));
        QCOMPARE(openCount(), 2); // every open counts
        QCOMPARE(m_bench->logTexts().filter(text).size(), 1);
        QVERIFY(window.ix1()->PaintEnabled());
    }

    void playlists_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isPlaylist");
        QTest::newRow("playlist") << "a.qol" << true;
        QTest::newRow("upper case") << "a.QOL" << true;
        QTest::newRow("a piece of the extension") << "a.ol" << true;
        QTest::newRow("image") << "a.png" << false;
        QTest::newRow("no extension counts as image") << "a" << false;
        QTest::newRow("other") << "a.txt" << false;
    }

    void playlists()
    {
        QFETCH(QString, name);
        QFETCH(bool, isPlaylist);
        const QString path = m_bench->home.write(name, "list");
        RecordingPlaylists playlistSource;
        playlistSource.entries = 3;
        frmImageView& window = m_bench->load();
        window.opening()->setPlaylists(&playlistSource);
        QCOMPARE(window.opening()->OpenFileList(path), isPlaylist);
        QCOMPARE(playlistSource.opened, isPlaylist ? QStringList{path} : QStringList{});
        window.OpenX(path);
        QCOMPARE(openCount(), isPlaylist ? 0 : 1);
    }

    void withoutPlaylistsNothingIsOne()
    {
        const QString path = m_bench->home.write(QStringLiteral("a.qol"), "list");
        frmImageView& window = m_bench->load();
        window.opening()->setPlaylists(nullptr);
        QVERIFY(!window.opening()->OpenFileList(path));
    }

    void aPlaylistOfTheCommandLineStartsToShow_data()
    {
        QTest::addColumn<QStringList>("line");
        QTest::addColumn<int>("entries");
        QTest::addColumn<QStringList>("ran");
        QTest::newRow("named at start") << QStringList{"A.QOL"} << 2 << QStringList{"miNext"};
        QTest::newRow("opened later") << QStringList{"other.png"} << 2 << QStringList{};
        QTest::newRow("a plain start") << QStringList{} << 2 << QStringList{};
        QTest::newRow("empty playlist") << QStringList{"a.qol"} << 0 << QStringList{};
    }

    void aPlaylistOfTheCommandLineStartsToShow()
    {
        QFETCH(QStringList, line);
        QFETCH(int, entries);
        const QString path = m_bench->home.write(QStringLiteral("a.qol"), "list");
        RecordingPlaylists source;
        source.entries = entries;
        frmImageView& window = m_bench->make();
        QStringList ran;
        viewer::Opening opening({.owner = &window,
                                 .ix1 = window.ix1(),
                                 .viewport = window.viewport(),
                                 .list = window.list(),
                                 .pTiff = [] { return nullptr; },
                                 .gTab = window.panes()->gTab(),
                                 .runTool = [&](const QString& tool) { ran.append(tool); },
                                 .showFull = [] { return false; },
                                 .updateStatus = [] {},
                                 .showInFilmstrip = [] {},
                                 .updateToolbar = [] {},
                                 .commandLine = line.join(QLatin1Char(' '))});
        opening.setPlaylists(&source);
        opening.OpenX(path);
        QTEST(ran, "ran");
    }

    void folders_data()
    {
        QTest::addColumn<int>("load");
        QTest::addColumn<QString>("open");
        QTest::newRow("with its first image") << 1 << "pics/a.png";
        QTest::newRow("list only") << 0 << "";
        QTest::newRow("any other number is list only") << 2 << "";
    }

    void folders()
    {
        QFETCH(int, load);
        QFETCH(QString, open);
        m_bench->picture(QStringLiteral("pics/b.png"), Qt::blue);
        m_bench->picture(QStringLiteral("pics/a.png"), Qt::red);
        frmImageView& window = m_bench->load();
        window.opening()->OpenDirX(m_bench->home.path(QStringLiteral("pics")), load);
        QCOMPARE(window.currentFile(), open.isEmpty() ? QString() : m_bench->home.path(open));
        QTRY_COMPARE(window.list()->ListCount(), 2);
    }

    void aFolderThatIsNoneIsPassedOver()
    {
        frmImageView& window = m_bench->load();
        window.opening()->OpenDirX(m_bench->home.path(QStringLiteral("nowhere")), 1);
        window.opening()->OpenDirX(QString(), 1);
        QCOMPARE(window.list()->path(), QString());
        QVERIFY(m_bench->boxes.empty());
    }

    void theNavigatorShowsForSeveralPages_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("pages");
        QTest::addColumn<bool>("shown");
        QTest::newRow("three pages") << "a.tif" << 3 << true;
        QTest::newRow("long extension") << "a.tiff" << 2 << true;
        QTest::newRow("one page") << "a.tif" << 1 << false;
    }

    void theNavigatorShowsForSeveralPages()
    {
        QFETCH(QString, name);
        QFETCH(int, pages);
        QFETCH(bool, shown);
        const QString path = m_bench->document(name, std::vector<QColor>(size_t(pages), Qt::red));
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        const auto* navigator = window.findChild<viewer::PageNavigator*>();
        QCOMPARE(navigator && navigator->isVisible(), shown);
        if (shown)
            QCOMPARE(navigator->total(), pages);
    }

    void aTiffWithoutAPointIsATiff()
    {
        const QString path = m_bench->document(QStringLiteral("a.tif"), {Qt::red, Qt::blue});
        const QString odd = m_bench->home.path(QStringLiteral("motif"));
        QVERIFY(QFile::copy(path, odd));
        frmImageView& window = m_bench->load();
        window.OpenX(odd);
        QVERIFY(window.findChild<viewer::PageNavigator*>()->isVisible());
    }

    void pagesTurnAndReload()
    {
        const QString path = m_bench->document(QStringLiteral("a.tif"), {Qt::red, Qt::green, Qt::blue});
        const QString other = m_bench->picture(QStringLiteral("b.png"), Qt::white);
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        auto* navigator = window.findChild<viewer::PageNavigator*>();
        auto* next = navigator->findChild<QToolButton*>(QStringLiteral("lTiffNext"));
        auto* previous = navigator->findChild<QToolButton*>(QStringLiteral("lTiffPrevious"));
        const auto* label = navigator->findChild<QLabel*>(QStringLiteral("lTiffImg"));
        const auto step = [&](QToolButton* button, int page, const QColor& color) {
            QTest::mouseClick(button, Qt::LeftButton);
            QCOMPARE(window.ix1()->PageNumber(), page);
            QCOMPARE(label->text(), QStringLiteral("%1 of 3").arg(page));
            QCOMPARE(m_bench->middle(), color);
        };
        step(previous, 1, Qt::red);
        step(next, 2, Qt::green);
        step(next, 3, Qt::blue);
        step(next, 3, Qt::blue);
        step(previous, 2, Qt::green);
        QCOMPARE(openCount(), 1); // turning a page is no open

        window.OpenX(other);
        QVERIFY(navigator->isHidden());
        window.OpenX(path);
        QCOMPARE(window.ix1()->PageNumber(), 1);
        QCOMPARE(label->text(), QStringLiteral("1 of 3"));
    }

    void aClickAtTheEndStillReloads()
    {
        const QString path = m_bench->document(QStringLiteral("a.tif"), {Qt::red, Qt::green});
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        m_bench->document(QStringLiteral("a.tif"), {Qt::blue, Qt::green, Qt::red});
        auto* navigator = window.findChild<viewer::PageNavigator*>();
        QTest::mouseClick(navigator->findChild<QToolButton*>(QStringLiteral("lTiffPrevious")),
                          Qt::LeftButton);
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        QCOMPARE(navigator->total(), 3);
    }

    void theNavigatorGoesWithItsImage()
    {
        const QString path = m_bench->document(QStringLiteral("a.tif"), {Qt::red, Qt::green});
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        auto* const navigator = window.findChild<viewer::PageNavigator*>();
        QVERIFY(!navigator->isHidden());
        window.RunTool(QStringLiteral("miCloseImage"));
        QVERIFY(navigator->isHidden());
        window.OpenX(path);
        QVERIFY(!navigator->isHidden());
        QVERIFY(QFile::remove(path));
        window.OpenX(path); // tells that it has gone, and closes it
        QCOMPARE(window.currentFile(), QString());
        QVERIFY(navigator->isHidden());
    }

    void aPageTurnKeepsZoomAndPlace()
    {
        const QString path = m_bench->document(QStringLiteral("a.tif"), {Qt::red, Qt::green});
        frmImageView& window = m_bench->load();
        window.OpenX(path);
        window.ix1()->Zoom(2.0);
        window.viewport()->layout();
        const QRect place = window.ix1()->geometry();
        auto* navigator = window.findChild<viewer::PageNavigator*>();
        QTest::mouseClick(navigator->findChild<QToolButton*>(QStringLiteral("lTiffNext")), Qt::LeftButton);
        QCOMPARE(window.ix1()->ZoomFactor(), 2.0);
        QCOMPARE(window.ix1()->geometry(), place);
    }

    void hidingForAResizeComesBack()
    {
        frmImageView& window = m_bench->load();
        window.SetUpdate(false, 1);
        QVERIFY(window.ix1()->isHidden());
        QTRY_VERIFY(!window.ix1()->isHidden());
        window.SetUpdate(false, 0);
        QVERIFY(window.ix1()->isHidden());
        window.SetUpdate(true, 0);
        QVERIFY(!window.ix1()->isHidden());
    }
};

QTEST_MAIN(TestOpening)
#include "tst_opening.moc"
