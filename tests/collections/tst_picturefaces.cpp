// The two faces of the list: which is in front, the playlist's entries, and what a start brings back.
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistKeeper.h"
#include "collections/QolText.h"
#include "ListBench.h"
#include "platform/LongWork.h"
#include "support/QolPaths.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using collections::namedPlaylistPath;
using collections::PictureList;
using collections::PlaylistKeeper;

class TestPictureFaces : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ListBench> m_bench;
    std::unique_ptr<PictureList> m_list;

    QString in(const char* name) const { return m_bench->in(name); }
    QStringList pathsOf(const QList<const char*>& names) const
    {
        QStringList paths;
        for (const char* name : names)
            paths += in("pics/") + QLatin1String(name);
        return paths;
    }
    /// Writes a named playlist of pictures of the bench, and gives its path.
    QString writeList(const char* name, const QList<const char*>& files) const
    {
        const QString path = namedPlaylistPath(QLatin1String(name));
        return m_bench->home.write(QDir(in("")).relativeFilePath(path),
                                   collections::qolText(pathsOf(files), QDate(2001, 1, 1)));
    }
    PlaylistKeeper& playlist() const { return *m_list->playlist(); }
    PictureList& makeList()
    {
        m_list = std::make_unique<PictureList>([this] { return m_bench->window.current; });
        return *m_list;
    }
    /// A list as after a start, with the folder of the bench chosen.
    PictureList& started()
    {
        PictureList& list = makeList();
        list.startUp();
        list.SetPattern(QStringLiteral("*.jpg"));
        list.setPath(in("pics"));
        list.finishRebuild();
        return list;
    }
    QStringList texts() const
    {
        QStringList all;
        for (int i = 0; i < m_list->ListCount(); ++i)
            all += m_list->List(i);
        return all;
    }
    /// What a tick of tAutoUpdate does.
    void look() const { Q_EMIT m_list->findChild<QTimer*>(QStringLiteral("tAutoUpdate"))->timeout({}); }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<test::ListBench>(); }
    void cleanup()
    {
        m_list.reset();
        m_bench.reset();
    }

    void aTabChangeEmptiesTheListUntilItsRebuild()
    {
        PictureList& list = started();
        playlist().AddPlaylistFile(in("pics/b.jpg"));
        list.finishRebuild();
        list.SetListIndex(2);
        QSignalSpy tab(&list, &PictureList::tabChanged);
        QSignalSpy emptied(&list, &PictureList::listEmptied);
        list.changeTab();
        QCOMPARE(list.GetSelectedTab(), 1);
        QVERIFY(!list.FolderMode());
        QCOMPARE(app::read(app::setting::PlaylistTab), 1);
        QCOMPARE(list.ListCount(), 0);
        QCOMPARE(list.ListIndex(), -1);
        QCOMPARE(emptied.count(), 1);
        QCOMPARE(tab.count(), 1);
        QCOMPARE(tab.at(0).at(0).toBool(), true);
        QVERIFY(!list.IsReady());
        list.finishRebuild();
        QCOMPARE(texts(), QStringList("1. b (JPG)"));
        QCOMPARE(list.ListFile(0), in("pics/b.jpg"));
        list.changeTab();
        QCOMPARE(app::read(app::setting::PlaylistTab), 0);
        list.finishRebuild();
        QCOMPARE(list.ListCount(), 5);
    }

    void tabsAreSelected_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("asked");
        QTest::addColumn<int>("after");
        QTest::newRow("the folders again") << 0 << 0 << 0;
        QTest::newRow("the playlist") << 0 << 1 << 1;
        QTest::newRow("the playlist again") << 1 << 1 << 1;
        QTest::newRow("the folders") << 1 << 0 << 0;
        QTest::newRow("none such") << 1 << 2 << 1;
        QTest::newRow("none such either") << 0 << -1 << 0;
    }

    void tabsAreSelected()
    {
        QFETCH(int, before);
        QFETCH(int, asked);
        QFETCH(int, after);
        PictureList& list = started();
        list.SelectTab(before);
        QSignalSpy tab(&list, &PictureList::tabChanged);
        list.SelectTab(asked);
        QCOMPARE(list.GetSelectedTab(), after);
        QCOMPARE(tab.count(), before == after ? 0 : 1);
    }

    void tabsAreHidden_data()
    {
        QTest::addColumn<bool>("visible");
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<int>("after");
        QTest::newRow("that in front, hidden, is left first") << true << 0 << 0 << false << 1;
        QTest::newRow("that behind") << true << 0 << 1 << false << 0;
        QTest::newRow("the playlist's, in front") << true << 1 << 1 << false << 0;
        QTest::newRow("any other number counts as 0") << true << 0 << 7 << false << 1;
        QTest::newRow("shown while both are") << true << 0 << 0 << true << 0;
        QTest::newRow("shown again") << false << 0 << 1 << true << 0;
        QTest::newRow("hidden while hidden") << false << 0 << 0 << false << 1;
    }

    void tabsAreHidden()
    {
        QFETCH(bool, visible);
        QFETCH(int, before);
        QFETCH(int, tab);
        QFETCH(bool, enabled);
        QFETCH(int, after);
        PictureList& list = started();
        list.SelectTab(before);
        if (!visible)
            list.TabEnabled(1 - before, false);
        QCOMPARE(list.isTab2Visible(), visible);
        QCOMPARE(list.GetSelectedTab(), before);
        list.TabEnabled(tab, enabled);
        QCOMPARE(list.GetSelectedTab(), after);
        QCOMPARE(list.isTab2Visible(), enabled);
        list.SelectTab(5); // shows both, whatever the number
        QVERIFY(list.isTab2Visible());
    }

    void aLoadBringsThePlaylistToTheFront()
    {
        PictureList& list = started();
        QSignalSpy changed(&list, &PictureList::ListChanged);
        playlist().LoadQOLPlaylist(writeList("x", {"c.jpg", "a.jpg"}));
        QCOMPARE(list.GetSelectedTab(), 1);
        QCOMPARE(changed.count(), 1);
        list.finishRebuild();
        QCOMPARE(changed.count(), 2);
        QCOMPARE(texts(), QStringList({"1. c (JPG)", "2. a (JPG)"}));
    }

    void vanishedFilesStayAndComeBack()
    {
        PictureList& list = started();
        const QString path = writeList("x", {"c.jpg", "a.jpg", "b.jpg"});
        playlist().LoadQOLPlaylist(path);
        list.finishRebuild();
        look();
        QVERIFY(list.IsReady()); // all as it was
        QVERIFY(QFile::rename(in("pics/a.jpg"), in("pics/away")));
        QCOMPARE(list.List(1), QStringLiteral("2. a (JPG)"));
        look();
        QVERIFY(!list.IsReady());
        list.finishRebuild();
        QCOMPARE(texts(), QStringList({"1. c (JPG)", "File Not Found: 2. a (JPG)", "3. b (JPG)"}));
        QCOMPARE(list.ListFile(1), in("pics/a.jpg"));
        QVERIFY(list.isMissing(1));
        look();
        QVERIFY(list.IsReady()); // it is known
        list.setListIndex(QStringLiteral("File Not Found: 2. a (JPG)"));
        QCOMPARE(list.ListIndex(), 1);

        playlist().saveOpen(); // the entry stays in the file
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(test::qolPaths(file.readAll()), pathsOf({"c.jpg", "a.jpg", "b.jpg"}));

        QVERIFY(QFile::rename(in("pics/away"), in("pics/a.jpg")));
        look();
        QVERIFY(!list.IsReady());
        list.finishRebuild();
        QCOMPARE(list.List(1), QStringLiteral("2. a (JPG)"));

        QVERIFY(QFile::remove(in("pics/a.jpg")));
        playlist().LoadQOLPlaylist(path);
        list.finishRebuild();
        QCOMPARE(texts(), QStringList({"1. c (JPG)", "2. b (JPG)"})); // a load leaves it out
    }

    void aRebuildLooksAtTheFiles()
    {
        PictureList& list = started();
        playlist().LoadQOLPlaylist(writeList("x", {"a.jpg"}));
        list.finishRebuild();
        QVERIFY(QFile::remove(in("pics/a.jpg")));
        list.RefreshPlaylist();
        list.finishRebuild();
        QCOMPARE(texts(), QStringList("File Not Found: 1. a (JPG)"));
    }

    void aRebuildSavesTheOpenPlaylist()
    {
        PictureList& list = started();
        playlist().LoadQOLPlaylist(writeList("x", {}));
        playlist().AddPlaylistFile(in("pics/d.jpg"));
        QTRY_VERIFY([&] {
            QFile file(namedPlaylistPath(QStringLiteral("x")));
            return file.open(QIODevice::ReadOnly) &&
                   file.readAll() == collections::qolText(pathsOf({"d.jpg"}), QDate::currentDate());
        }());
        QCOMPARE(list.ListCount(), 1);
    }

    void manyFilesAreLookedAtBetweenTheEvents()
    {
        PictureList& list = started();
        QStringList many(200000, in("pics/a.jpg"));
        many.append(in("pics/b.jpg"));
        playlist().AddPlaylistFiles(many);
        list.SelectTab(1);
        list.finishRebuild();
        QCOMPARE(list.ListCount(), 200001);
        QVERIFY(QFile::remove(in("pics/b.jpg")));
        QSignalSpy told(&list, &PictureList::textChanged);
        list.RefreshPlaylist();
        list.finishRebuild();
        QVERIFY(!list.isMissing(200000)); // not yet looked at
        QTRY_VERIFY_WITH_TIMEOUT(list.isMissing(200000), 60000);
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toInt(), 200000);
        QVERIFY(list.List(200000).startsWith(QStringLiteral("File Not Found: 200001. ")));
        list.RefreshPlaylist();
        list.finishRebuild();
        QVERIFY(list.isMissing(200000)); // known from before: nothing flickers
    }

    void aTabChangeEndsTheLookAtTheFiles()
    {
        PictureList& list = started();
        QStringList many(400000, in("pics/a.jpg"));
        playlist().AddPlaylistFiles(many);
        list.SelectTab(1);
        list.finishRebuild();
        QVERIFY(QFile::remove(in("pics/a.jpg")));
        list.RefreshPlaylist();
        list.finishRebuild();
        QSignalSpy told(&list, &PictureList::textChanged);
        list.changeTab();
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
        QCOMPARE(told.count(), 0);
    }

    void theEndDoesNotWaitForALoad()
    {
        PictureList& list = started();
        const QString path = m_bench->home.write(
            QStringLiteral("long.qol"),
            collections::qolText(QStringList(3000000, in("pics/a.jpg")), QDate(2001, 1, 1)));
        QTimer::singleShot(0, &list, [&list] { list.CloseDown(); });
        int done = 0;
        {
            platform::LongWork work(nullptr, QStringLiteral("test"));
            playlist().LoadQOLPlaylist(path);
            while (done < 1000 && work.goOn())
                ++done;
        }
        QCOMPARE(done, 0); // all that was under way is over
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("Auto Playlist"));
    }

    void aStart_data()
    {
        QTest::addColumn<int>("cLoad");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("open");
        QTest::addColumn<int>("selectedTab");
        QTest::newRow("with all") << 1 << 1 << "x" << 1;
        QTest::newRow("the folders in front") << 1 << 0 << "x" << 0;
        QTest::newRow("without what was open") << 0 << 1 << "" << 1;
        QTest::newRow("some number") << 1 << -3 << "x" << 1;
    }

    void aStart()
    {
        QFETCH(int, cLoad);
        QFETCH(int, tab);
        QFETCH(QString, open);
        app::save(app::setting::ActivePlaylist, writeList("x", {"c.jpg"}));
        app::save(app::setting::cLoad, cLoad);
        app::save(app::setting::PlaylistTab, tab);
        PictureList& list = makeList();
        QSignalSpy changes(&list, &PictureList::tabChanged);
        list.startUp();
        QTEST(list.GetSelectedTab(), "selectedTab");
        for (const QList<QVariant>& change : changes)
            QCOMPARE(change.at(0).toBool(), false); // without animation
        QCOMPARE(changes.count(), list.GetSelectedTab());
        QCOMPARE(app::read(app::setting::PlaylistTab), tab);
        QCOMPARE(playlist().ActivePlaylist(), open);
        QCOMPARE(playlist().names(), QStringList("x"));
        list.finishRebuild();
        QCOMPARE(list.ListCount(), tab != 0 && !open.isEmpty() ? 1 : 0);
    }

    void aFirstStartMakesThePlaylist()
    {
        makeList().startUp();
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("Auto Playlist"));
        QCOMPARE(playlist().names(), QStringList("Auto Playlist"));
        QVERIFY(QFile::exists(in("root/Playlist/Auto Playlist.qol")));
        QCOMPARE(m_list->GetSelectedTab(), 0);
    }

    void aStartWithAnotherPlaylistMakesNone()
    {
        app::save(app::setting::ActivePlaylist,
                  m_bench->home.write(QStringLiteral("else/y.qol"), in("pics/a.jpg").toUtf8()));
        makeList().startUp(); // there is none among the named ones, but one is open
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("y"));
        QVERIFY(!QFile::exists(in("root/Playlist/Auto Playlist.qol")));
    }

    void theEndIsFoundAtTheNextStart()
    {
        PictureList& list = started();
        playlist().LoadQOLPlaylist(writeList("x", {"c.jpg"}));
        playlist().AddPlaylistFile(in("pics/d.jpg"));
        list.CloseDown();
        list.changeTab(); // closed
        list.TabEnabled(0, false);
        list.SelectTab(0);
        QCOMPARE(list.GetSelectedTab(), 1);
        QVERIFY(list.isTab2Visible());

        makeList().startUp();
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("x"));
        m_list->finishRebuild();
        QCOMPARE(texts(), QStringList({"1. c (JPG)", "2. d (JPG)"}));
    }
};

QTEST_GUILESS_MAIN(TestPictureFaces)
#include "tst_picturefaces.moc"
