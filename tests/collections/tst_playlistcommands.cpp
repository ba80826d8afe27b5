// The commands about the open playlist that need no panel, over the list with its two faces.
#include "app/ImageTypes.h"
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistKeeper.h"
#include "collections/QolText.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "platform/LongWork.h"
#include "support/QolPaths.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using collections::PictureList;
using collections::PlaylistCommands;

class TestPlaylistCommands : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ListBench> m_bench;
    std::unique_ptr<PictureList> m_list;
    std::unique_ptr<PlaylistCommands> m_commands;

    QString in(const char* name) const { return m_bench->in(name); }
    QStringList pathsOf(const QList<const char*>& names) const
    {
        QStringList paths;
        for (const char* name : names)
            paths += in(name);
        return paths;
    }
    collections::PlaylistKeeper& playlist() const { return *m_list->playlist(); }
    void run(const char* command) const { QVERIFY(m_commands->RunTool(QLatin1String(command))); }
    /// The files that stand in the file of the open playlist.
    QStringList stored() const
    {
        QFile file(collections::namedPlaylistPath(playlist().ActivePlaylist()));
        return file.open(QIODevice::ReadOnly) ? test::qolPaths(file.readAll()) : QStringList("(none)");
    }
    /// The playlist's face with these files.
    void showPlaylist(const QList<const char*>& names) const
    {
        playlist().AddPlaylistFiles(pathsOf(names));
        m_list->SelectTab(1);
        m_list->finishRebuild();
        QCOMPARE(m_list->ListCount(), int(names.size()));
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<test::ListBench>();
        for (const char* name : {"pics/sub/z.png", "pics/sub/deep/y.png", "pics/notes.txt"})
            m_bench->home.write(QLatin1String(name), "x");
        m_list = std::make_unique<PictureList>([] { return QString(); });
        m_list->startUp();
        m_list->SetPattern(QLatin1String(app::ImageExtensionList));
        m_list->setPath(in("pics"));
        m_list->finishRebuild();
        QCOMPARE(m_list->ListCount(), 5);
        m_commands = std::make_unique<PlaylistCommands>(m_list.get());
    }
    void cleanup()
    {
        m_commands.reset();
        m_list.reset();
        m_bench.reset();
    }

    void otherCommandsAreNotTaken_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : {"", "saveplaylistinternal", "selectdirectory", "miNext", "openplaylist "})
            QTest::newRow(command) << QString::fromLatin1(command);
    }
    void otherCommandsAreNotTaken()
    {
        QFETCH(QString, command);
        QVERIFY(!m_commands->RunTool(command));
    }

    void moveAll()
    {
        QVERIFY(m_commands->RunTool(QStringLiteral("MoveFileListToPlaylist")));
        QCOMPARE(m_list->GetSelectedTab(), 1);
        const QStringList all =
            pathsOf({"pics/a.jpg", "pics/b.jpg", "pics/c.jpg", "pics/d.jpg", "pics/e.jpg"});
        QCOMPARE(stored(), all); // in the order of the folder
        m_list->finishRebuild();
        QCOMPARE(m_list->files(), all);
        QVERIFY(QFile::remove(collections::namedPlaylistPath(playlist().ActivePlaylist())));
        run("movefilelisttoplaylist"); // from its own face it only saves
        QCOMPARE(stored(), all);
        QCOMPARE(m_list->GetSelectedTab(), 1);
    }

    void movingKeepsTheOrderOfTheList()
    {
        for (const char* name : {"mixed/b.jpg", "mixed/C.png", "mixed/A.png", "mixed/d.jpg", "mixed/10.jpg"})
            m_bench->home.write(QLatin1String(name), "x");
        m_list->SetPattern(QStringLiteral("*.png;*.jpg"));
        m_list->setPath(in("mixed"));
        run("movefilelisttoplaylist");
        QCOMPARE(stored(),
                 pathsOf({"mixed/10.jpg", "mixed/A.png", "mixed/b.jpg", "mixed/C.png", "mixed/d.jpg"}));
    }

    void enqueuedFilesStandByWildcard()
    {
        for (const char* name : {"mixed/b.jpg", "mixed/c.png", "mixed/a.jpg"})
            m_bench->home.write(QLatin1String(name), "x");
        m_list->SetPattern(QStringLiteral("*.png;*.gif;*.jpg;c.*"));
        const platform::FolderBrowserAnswerer answerer(
            [&](const platform::FolderBrowser&) { return in("mixed"); });
        run("enqueuedir");
        QStringList added = stored();
        QCOMPARE(added.value(0), in("mixed/c.png"));
        QCOMPARE(added.value(3), in("mixed/c.png")); // of two wildcards it stands twice
        added.sort();
        QCOMPARE(added, pathsOf({"mixed/a.jpg", "mixed/b.jpg", "mixed/c.png", "mixed/c.png"}));
    }

    void aMoveOfNothingStillOpensThePlaylist()
    {
        m_list->setPath(in("pics/sub/deep"));
        QVERIFY(QFile::remove(in("pics/sub/deep/y.png")));
        run("movefilelisttoplaylist");
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QCOMPARE(stored(), QStringList());
        run("moveselectedtoplaylist"); // which the playlist's face does not have
        QCOMPARE(stored(), QStringList());
    }

    void moveAllOfAFolderThatWasJustChosen()
    {
        m_list->setPath(in("pics/sub"));
        run("movefilelisttoplaylist");
        QCOMPARE(stored(), pathsOf({"pics/sub/z.png"}));
    }

    void moveSelected()
    {
        m_list->setSelection({{3, 4}, {0, 0}});
        run("moveselectedtoplaylist");
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QCOMPARE(stored(), pathsOf({"pics/a.jpg", "pics/d.jpg", "pics/e.jpg"}));
        m_list->finishRebuild();
        m_list->setSelection({{0, 0}});
        run("moveselectedtoplaylist"); // an entry of the playlist itself
        QCOMPARE(playlist().PlaylistFiles().size(), 3);
    }

    void clearSelected()
    {
        showPlaylist({"pics/a.jpg", "pics/b.jpg", "pics/a.jpg", "pics/c.jpg"});
        run("clearselected");
        QCOMPARE(playlist().PlaylistFiles().size(), 4);
        m_list->setSelection({{0, 0}, {3, 3}});
        run("clearselected");
        QCOMPARE(playlist().PlaylistFiles(), pathsOf({"pics/b.jpg", "pics/a.jpg"}));
        QCOMPARE(stored(), pathsOf({"pics/b.jpg", "pics/a.jpg"}));
        m_list->finishRebuild();
        QCOMPARE(m_list->ListCount(), 2);
    }

    void clearSelectedLeavesTheFolderAlone()
    {
        playlist().AddPlaylistFiles(pathsOf({"pics/a.jpg"}));
        m_list->setSelection({{0, 0}});
        run("clearselected");
        QCOMPARE(playlist().PlaylistFiles(), pathsOf({"pics/a.jpg"}));
    }

    void clearAll()
    {
        showPlaylist({"pics/a.jpg", "pics/b.jpg"});
        playlist().saveOpen();
        QCOMPARE(stored().size(), 2);
        run("clearplaylist");
        QTRY_COMPARE(stored(), QStringList());
        QCOMPARE(m_list->ListCount(), 0);
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("Auto Playlist"));
        QFile file(in("root/Playlist/Auto Playlist.qol"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), collections::qolText({}, QDate::currentDate()));
    }

    void addFiles()
    {
        platform::FileChooser asked;
        QStringList answer;
        const platform::FilesChooserAnswerer answerer([&](const platform::FileChooser& chooser) {
            asked = chooser;
            return answer;
        });
        run("addfilestoplaylist");
        QCOMPARE(asked.filters, app::imageFilters());
        QCOMPARE(asked.start, in("pics"));
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        answer = pathsOf({"pics/c.jpg", "pics/gone.jpg", "pics/a.jpg"});
        run("addfilestoplaylist");
        QCOMPARE(stored(), pathsOf({"pics/c.jpg", "pics/a.jpg"}));
    }

    void enqueue_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QStringList>("files"); // sorted
        const QStringList folder{"pics/a.jpg", "pics/b.jpg", "pics/c.jpg", "pics/d.jpg", "pics/e.jpg"};
        QTest::newRow("a folder") << "enqueuedir" << folder;
        QTest::newRow("with its folders")
            << "enqueuedirall" << folder + QStringList{"pics/sub/deep/y.png", "pics/sub/z.png"};
    }

    void enqueue()
    {
        QFETCH(QString, command);
        QFETCH(QStringList, files);
        QString title;
        QString answer;
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser& browser) {
            title = browser.title;
            return answer;
        });
        QVERIFY(m_commands->RunTool(command));
        QCOMPARE(title, QStringLiteral("Enqueue Directory"));
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        answer = in("pics");
        QVERIFY(m_commands->RunTool(command));
        QStringList added = stored();
        if (added.size() > 5) { // those of a folder stand before those of the folders in it
            QCOMPARE(added.at(5), in("pics/sub/z.png"));
            QCOMPARE(added.at(6), in("pics/sub/deep/y.png"));
        }
        added.sort();
        for (QString& file : files)
            file = in(file.toUtf8().constData());
        QCOMPARE(added, files);
    }

    void dropping()
    {
        const QStringList dropped =
            pathsOf({"pics/notes.txt", "pics/b.jpg", "pics/sub", "pics/gone.jpg", "pics/a.jpg"});
        m_commands->drop(dropped); // on the folder's face
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        m_list->SelectTab(1);
        m_commands->drop(dropped);
        QCOMPARE(stored(), pathsOf({"pics/b.jpg", "pics/sub/z.png", "pics/sub/deep/y.png", "pics/a.jpg"}));
        m_bench->home.write(QStringLiteral("pics/UPPER.JPG"), "x");
        m_commands->drop(pathsOf({"pics/UPPER.JPG"}));
        QCOMPARE(playlist().PlaylistFiles().size(), 5);
    }

    void aDropThatIsBrokenOffAddsNothing()
    {
        m_list->SelectTab(1);
        QStringList dropped = pathsOf({"pics/a.jpg", "pics/sub"});
        dropped += QStringList(400000, in("pics/b.jpg"));
        dropped += in("pics/sub");
        QTimer::singleShot(0, [] { platform::LongWork::cancelAll(); });
        m_commands->drop(dropped);
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        QCOMPARE(stored(), QStringList());
    }

    void dialogsBeginAtTheFolderOfTheTree()
    {
        m_list->SelectTab(1); // whose face has no folder
        QString start;
        const platform::FolderBrowserAnswerer answerer([&](const platform::FolderBrowser& browser) {
            start = browser.start;
            return QString();
        });
        run("enqueuedir");
        QCOMPARE(start, in("pics"));
    }

    void theSelectionIsTakenUpBeforeTheQuestion()
    {
        QVERIFY(QFile::remove(in("root/Playlist/Auto Playlist.qol")));
        playlist().reloadOpen();
        m_list->finishRebuild();
        m_list->setSelection({{1, 1}});
        const platform::MessageBoxAnswerer boxes([&](const platform::MessageBox&) {
            m_list->RefreshPlaylist();
            m_list->finishRebuild();
            return platform::BoxAnswer::Yes;
        });
        run("moveselectedtoplaylist");
        QCOMPARE(stored(), pathsOf({"pics/b.jpg"}));
    }

    void withoutAPlaylistTheyAsk_data()
    {
        QTest::addColumn<QString>("command");
        for (const char* command : {"addfilestoplaylist", "enqueuedir", "enqueuedirall",
                                    "movefilelisttoplaylist", "moveselectedtoplaylist"})
            QTest::newRow(command) << QString::fromLatin1(command);
    }

    void withoutAPlaylistTheyAsk()
    {
        QFETCH(QString, command);
        QVERIFY(QFile::remove(in("root/Playlist/Auto Playlist.qol")));
        playlist().reloadOpen();
        QCOMPARE(playlist().ActivePlaylist(), QString());
        const QString chosen = in("pics/a.jpg");
        const platform::FilesChooserAnswerer files(
            [&](const platform::FileChooser&) { return QStringList(chosen); });
        const platform::FolderBrowserAnswerer folders(
            [&](const platform::FolderBrowser&) { return in("pics"); });
        m_list->finishRebuild();
        m_list->setSelection({{0, 0}});
        auto answer = platform::BoxAnswer::No;
        int asked = 0;
        const platform::MessageBoxAnswerer boxes([&](const platform::MessageBox&) {
            ++asked;
            return answer;
        });
        QVERIFY(m_commands->RunTool(command));
        QCOMPARE(asked, 1);
        QCOMPARE(m_list->GetSelectedTab(), 0);
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        QVERIFY(!QFile::exists(in("root/Playlist/Auto Playlist.qol")));
        answer = platform::BoxAnswer::Yes;
        QVERIFY(m_commands->RunTool(command));
        QCOMPARE(asked, 2);
        QVERIFY(stored().contains(chosen));
    }

    void aFolderFromOutsideAsksToo()
    {
        QVERIFY(QFile::remove(in("root/Playlist/Auto Playlist.qol")));
        playlist().reloadOpen();
        int asked = 0;
        const platform::MessageBoxAnswerer boxes([&](const platform::MessageBox&) {
            ++asked;
            return platform::BoxAnswer::No;
        });
        m_commands->EnqueueAll(in("pics"));
        QCOMPARE(asked, 1);
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestPlaylistCommands)
#include "tst_playlistcommands.moc"
