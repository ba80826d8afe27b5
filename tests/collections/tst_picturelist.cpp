#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace quorvia;
using collections::PictureList;
using collections::PlaylistKeeper;

class TestPictureList : public QObject
{
    Q_OBJECT

  private:
    const QString m_startedIn = QDir::currentPath();
    std::unique_ptr<test::ScratchHome> m_home;
    QString m_current;

    std::unique_ptr<PictureList> list()
    {
        auto made = std::make_unique<PictureList>([this] { return m_current; });
        made->startUp();
        made->SetPattern(QStringLiteral("*.jpg;*.png"));
        made->finishRebuild();
        return made;
    }

    /// The same with the folder "pics" in it: A.png, b.JPG, c.jpg.
    std::unique_ptr<PictureList> pics()
    {
        auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        return made;
    }

    QString in(const char* name) const { return m_home->path(QLatin1String(name)); }
    /// `path` with its "@" replaced by the home directory.
    QString full(QString path) const { return path.replace(QLatin1Char('@'), in("")); }

    static QTimer* timer(const PictureList& list, const char* name)
    {
        return list.findChild<QTimer*>(QLatin1String(name));
    }
    /// What a tick of tAutoUpdate does.
    static void look(const PictureList& list) { Q_EMIT timer(list, "tAutoUpdate")->timeout({}); }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        QVERIFY(QDir::setCurrent(in(""))); // as a desktop starts its programs
        app::openSettings();
        m_current.clear();
        for (const char* name :
             {"pics/b.JPG", "pics/A.png", "pics/c.jpg", "pics/notes.txt", "pics/sub/d.jpg"})
            m_home->write(QLatin1String(name), "x");
    }

    void cleanup()
    {
        app::closeSettings();
        QDir::setCurrent(m_startedIn);
        m_home.reset();
    }

    void listsSortedWithoutCase()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics/")));
        QVERIFY(!made->IsReady());
        made->finishRebuild();
        QVERIFY(made->IsReady());
        QCOMPARE(made->ListCount(), 3);
        QCOMPARE(made->List(0), QStringLiteral("1. A (PNG)"));
        QCOMPARE(made->List(1), QStringLiteral("2. b (JPG)"));
        QCOMPARE(made->ListFile(2), m_home->path(QStringLiteral("pics/c.jpg")));
        QCOMPARE(made->ListIndex(), -1);
        QCOMPARE(made->path(), m_home->path(QStringLiteral("pics")));
        QCOMPARE(made->List(3), QString());
        QCOMPARE(made->ListFile(-1), QString());
    }

    void rebuildFollowsItsTimer()
    {
        const auto made = list();
        QSignalSpy changed(made.get(), &PictureList::ListChanged);
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->RefreshPlaylist();
        made->RefreshPlaylist();
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(made->ListCount(), 3);
    }

    void theSelectedFolderIsRemembered()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QCOMPARE(app::read(app::setting::SelectedPath, QString()), m_home->path(QStringLiteral("pics")));

        m_home->write(QStringLiteral("empty/readme.txt"), "x");
        made->setPath(m_home->path(QStringLiteral("empty")));
        made->finishRebuild();
        QCOMPARE(made->ListCount(), 0);
        QCOMPARE(app::read(app::setting::SelectedPath, QString()), m_home->path(QStringLiteral("pics")));

        const auto next = list();
        QCOMPARE(next->path(), m_home->path(QStringLiteral("pics")));
    }

    void startUpTakesTheFolderOfTheLastRun_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("cLoad");
        QTest::addColumn<bool>("taken");
        QTest::newRow("asked for") << "@/pics" << 1 << true;
        QTest::newRow("not asked for") << "@/pics" << 0 << false;
        QTest::newRow("some other number") << "@/pics" << 2 << false;
        QTest::newRow("gone") << "@/gone" << 1 << false;
        QTest::newRow("a file") << "@/pics/c.jpg" << 1 << false;
        QTest::newRow("relative, exists") << "pics" << 1 << false;
    }

    void startUpTakesTheFolderOfTheLastRun()
    {
        QFETCH(QString, stored);
        QFETCH(int, cLoad);
        QFETCH(bool, taken);
        app::save(app::setting::SelectedPath, full(stored));
        app::save(app::setting::cLoad, cLoad);
        const auto made = list();
        QCOMPARE(made->path(), taken ? full(stored) : QString());
        QCOMPARE(made->ListCount(), taken ? 3 : 0);
        QCOMPARE(app::read(app::setting::SelectedPath, QString()), full(stored));
    }

    void startUpRunsInOrder()
    {
        app::save(app::setting::SelectedPath, in("pics"));
        PictureList made([this] { return m_current; });
        QVERIFY(made.Initialising());
        QVERIFY(!made.Starting());
        QVERIFY(made.FolderMode());
        made.setPath(in("pics/sub")); // a change of folder asks for nothing yet
        QVERIFY(made.IsReady());
        QVERIFY(!timer(made, "tAutoUpdate")->isActive());
        bool ran = false;
        connect(made.playlist(), &PlaylistKeeper::namesChanged, this, [&] {
            if (std::exchange(ran, true)) // once more when the first playlist has been made
                return;
            QVERIFY(made.Starting());
            QVERIFY(made.Initialising());
            QCOMPARE(made.path(), in("pics"));
            QVERIFY(made.IsReady());
        });
        made.startUp();
        QVERIFY(ran);
        QVERIFY(!made.Starting());
        QVERIFY(!made.Initialising());
        QVERIFY(!made.IsReady());
        QCOMPARE(timer(made, "tFolder")->interval(), 10);
        QCOMPARE(timer(made, "tAutoUpdate")->interval(), 3000);
        QVERIFY(timer(made, "tAutoUpdate")->isActive());
    }

    void whileStartingNothingIsSelectedByText()
    {
        PictureList made([this] { return m_current; });
        made.SetPattern(QStringLiteral("*.jpg"));
        made.setPath(in("pics"));
        made.finishRebuild();
        connect(made.playlist(), &PlaylistKeeper::namesChanged, this, [&] {
            if (!made.Starting())
                return;
            made.setListIndex(QStringLiteral("1. b (JPG)"));
            QCOMPARE(made.ListIndex(), -1);
        });
        made.startUp();
        made.setListIndex(QStringLiteral("1. b (JPG)"));
        QCOMPARE(made.ListIndex(), 0);
    }

    void pickingOpensWhatIsNotOnShow()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        made->SetListIndex(1);
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened.at(0).at(0).toString(), m_home->path(QStringLiteral("pics/b.JPG")));
        made->SetListIndex(1);
        QCOMPARE(opened.count(), 1); // the same entry is no change
        m_current = m_home->path(QStringLiteral("pics/c.jpg"));
        made->SetListIndex(2);
        QCOMPARE(opened.count(), 1); // it is on show already
        QCOMPARE(made->ListIndex(), 2);
    }

    void positionsBeyondTheListDoNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("before none") << -2;
        QTest::newRow("past the end") << 3;
    }

    void positionsBeyondTheListDoNothing()
    {
        QFETCH(int, index);
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        made->SetListIndex(0);
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        made->SetListIndex(index);
        QCOMPARE(made->ListIndex(), 0);
        QCOMPARE(opened.count(), 0);
    }

    void selectionByFileNameFindsNothing()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        made->setListIndex(QStringLiteral("c.jpg"));
        QCOMPARE(made->ListIndex(), -1);
        QCOMPARE(opened.count(), 0);
        made->setListIndex(QStringLiteral("3. c (JPG)")); // the entry's own text does
        QCOMPARE(made->ListIndex(), 2);
        QCOMPARE(opened.count(), 1);
    }

    void textsAreLookedFor_data()
    {
        QTest::addColumn<int>("given"); // the entry that is given a text first
        QTest::addColumn<QString>("givenText");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("index");
        const auto row = [](const char* name, int given, const char* givenText, const char* text, int index) {
            QTest::newRow(name) << given << QString::fromLatin1(givenText) << QString::fromLatin1(text)
                                << index;
        };
        constexpr int none = -1;
        row("an entry's own", none, "", "3. c (JPG)", 2);
        row("that of a later one too", 0, "3. c (JPG)", "3. c (JPG)", 0);
        row("that of an earlier one too", 2, "1. A (PNG)", "1. A (PNG)", 0);
        row("given without a number", 1, "other", "other", 1);
        row("given with blanks around", 1, "  other ", "other", 1);
        row("given and empty", 1, "", "", 1);
        row("replaced by a given one", 1, "other", "2. b (JPG)", none);
        row("of another case", none, "", "3. C (JPG)", none);
        row("a number beyond the list", none, "", "4. c (JPG)", none);
        row("nought", none, "", "0. A (PNG)", none);
        row("a number of another entry", none, "", "1. c (JPG)", none);
        row("a leading nought", none, "", "03. c (JPG)", none);
        row("a leading blank", none, "", " 3. c (JPG)", none);
        row("a number no integer holds", none, "", "99999999999. c (JPG)", none);
        row("no number", none, "", "c (JPG)", none);
        row("a number alone", none, "", "3", none);
        row("nothing", none, "", "", none);
    }

    void textsAreLookedFor()
    {
        QFETCH(int, given);
        QFETCH(QString, givenText);
        QFETCH(QString, text);
        const auto made = pics();
        made->SetList(given, givenText);
        made->setListIndex(text);
        QTEST(made->ListIndex(), "index");
    }

    void aListenerMayRebuild()
    {
        const auto made = pics();
        QString after;
        connect(made.get(), &PictureList::OpenFile, this, [&](const QString& file) {
            QVERIFY(QDir(in("pics")).removeRecursively());
            made->RefreshPlaylist();
            made->finishRebuild();
            after = file;
        });
        made->SetListIndex(1);
        QCOMPARE(made->ListCount(), 0);
        QCOMPARE(after, in("pics/b.JPG"));
    }

    void aFolderThatIsNoneIsNotTaken_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("gone") << "@/nowhere";
        QTest::newRow("a file") << "@/pics/c.jpg";
        QTest::newRow("relative, exists") << "pics";
        QTest::newRow("the working directory") << ".";
        QTest::newRow("nothing") << "";
    }

    void aFolderThatIsNoneIsNotTaken()
    {
        QFETCH(QString, folder);
        const auto made = list();
        made->setPath(full(folder));
        QCOMPARE(made->path(), QString());
        QVERIFY(made->IsReady());
    }

    void pathsHaveTheIndexNought()
    {
        const auto made = list();
        made->setPath(1, in("pics"));
        QCOMPARE(made->path(), QString());
        made->setPath(0, in("pics"));
        QCOMPARE(made->path(0), in("pics"));
        QCOMPARE(made->path(1), QString());
        QCOMPARE(made->path(-1), QString());
    }

    void theOtherFaceHasNoPath()
    {
        const auto made = pics();
        QCOMPARE(made->GetSelectedTab(), 0);
        made->changeTab();
        QCOMPARE(made->GetSelectedTab(), 1);
        QCOMPARE(made->path(), QString());
        made->setPath(in("pics/sub"));
        made->changeTab();
        QCOMPARE(made->path(), in("pics"));
    }

    void theSameFolderAsksForNoRebuild()
    {
        const auto made = pics();
        QSignalSpy told(made.get(), &PictureList::pathChanged);
        made->setPath(in("pics/"));
        made->setPath(in("pics/sub/.."));
        QVERIFY(made->IsReady());
        QCOMPARE(told.count(), 0);
        made->setPath(in("pics/sub"));
        QVERIFY(!made->IsReady());
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toString(), in("pics/sub"));
    }

    void loadedComesBeforeChanged()
    {
        const auto made = list();
        QStringList order;
        connect(made.get(), &PictureList::ListLoaded, this, [&] {
            order << QStringLiteral("loaded");
            QCOMPARE(made->ListCount(), 3);
            QVERIFY(!made->IsReady());
        });
        connect(made.get(), &PictureList::ListChanged, this, [&] {
            order << QStringLiteral("changed");
            QVERIFY(!made->IsReady());
        });
        made->setPath(in("pics"));
        made->finishRebuild();
        QCOMPARE(order, QStringList({"loaded", "changed"}));
        QVERIFY(made->IsReady());
    }

    void aRequestDuringARebuildIsNotLost()
    {
        const auto made = list();
        int changes = 0;
        connect(made.get(), &PictureList::ListChanged, this, [&] {
            if (++changes == 1)
                made->RefreshPlaylist();
        });
        made->RefreshPlaylist();
        QTRY_COMPARE(changes, 2);
        QTRY_VERIFY(made->IsReady());
    }

    void aFolderThatVanishedGivesAnEmptyList()
    {
        const auto made = pics();
        QVERIFY(QDir(in("pics")).removeRecursively());
        QSignalSpy changed(made.get(), &PictureList::ListChanged);
        made->RefreshPlaylist();
        made->finishRebuild();
        QCOMPARE(made->ListCount(), 0);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(app::read(app::setting::SelectedPath, QString()), in("pics"));
        QCOMPARE(made->path(), in("pics"));
    }

    void aRebuildForgetsIndexSelectionAndTexts()
    {
        const auto made = pics();
        made->SetListIndex(1);
        made->SetList(0, QStringLiteral("other"));
        QCOMPARE(made->GetSelectedFiles(), in("pics/b.JPG;"));
        made->RefreshPlaylist();
        made->finishRebuild();
        QCOMPARE(made->ListIndex(), -1);
        QCOMPARE(made->GetSelectedFiles(), QString());
        QCOMPARE(made->List(0), QStringLiteral("1. A (PNG)"));
    }

    void vanishedFilesAreNoticed()
    {
        const auto made = pics();
        made->SetUpdateInterval(1);
        QCOMPARE(timer(*made, "tAutoUpdate")->interval(), 1);
        QSignalSpy changed(made.get(), &PictureList::ListChanged);
        QVERIFY(QFile::remove(in("pics/c.jpg")));
        QTRY_COMPARE(made->ListCount(), 2);
        QCOMPARE(changed.count(), 1);
        QVERIFY(QDir(in("pics")).removeRecursively());
        QTRY_COMPARE(made->ListCount(), 0);
        QCOMPARE(changed.count(), 2);
    }

    void newFilesAreNotNoticed()
    {
        const auto made = pics();
        QSignalSpy changed(made.get(), &PictureList::ListChanged);
        m_home->write(QStringLiteral("pics/new.jpg"), "x");
        made->SetUpdateInterval(1);
        QSignalSpy ticks(timer(*made, "tAutoUpdate"), &QTimer::timeout);
        QTRY_VERIFY(ticks.count() > 3);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(made->ListCount(), 3);
        made->RefreshPlaylist();
        made->finishRebuild();
        QCOMPARE(made->ListCount(), 4);
    }

    void anEntryListedTwiceHasNotVanished()
    {
        const auto made = pics();
        made->SetPattern(QStringLiteral("*.jpg;b*"));
        made->finishRebuild();
        QCOMPARE(made->ListCount(), 3);
        QCOMPARE(made->List(0), QStringLiteral("1. b (JPG)"));
        QCOMPARE(made->List(1), QStringLiteral("2. b (JPG)"));
        QCOMPARE(made->List(2), QStringLiteral("3. c (JPG)"));
        look(*made);
        QVERIFY(made->IsReady());
    }

    void nothingIsLookedForBeforeOrDuringARebuild()
    {
        const auto made = pics();
        QVERIFY(QFile::remove(in("pics/c.jpg")));
        made->RefreshPlaylist();
        const int request = timer(*made, "tFolder")->timerId();
        look(*made);
        QCOMPARE(timer(*made, "tFolder")->timerId(), request); // not put off
        connect(made.get(), &PictureList::ListChanged, this, [&] {
            QVERIFY(QFile::remove(in("pics/b.JPG")));
            look(*made);
        });
        made->finishRebuild();
        QVERIFY(made->IsReady());
        look(*made);
        QVERIFY(!made->IsReady());
    }

    void thePictureListedIsLookedAtNotTheOneChosen()
    {
        const auto made = pics();
        connect(made.get(), &PictureList::ListLoaded, this, [&] { made->setPath(in("pics/sub")); });
        made->RefreshPlaylist();
        made->finishRebuild(); // meanwhile another folder is chosen
        QCOMPARE(made->ListCount(), 3);
        timer(*made, "tFolder")->stop();
        look(*made);
        QVERIFY(made->IsReady());
    }

    void aFolderWithoutPermissionGivesAnEmptyList()
    {
        const auto made = pics();
        QVERIFY(test::openToEveryone(QFile::encodeName(in("")).constData()));
        QVERIFY(QFile::rename(in("pics/sub"), in("closed")));
        QCOMPARE(::chmod(QFile::encodeName(in("closed")).constData(), 0), 0);
        QVERIFY(test::holdsUnprivileged([&] {
            QSignalSpy changed(made.get(), &PictureList::ListChanged);
            made->setPath(in("closed"));
            made->finishRebuild();
            return made->path() == in("closed") && made->ListCount() == 0 && changed.count() == 1 &&
                   app::read(app::setting::SelectedPath, QString()) == in("pics");
        }));
        QCOMPARE(::chmod(QFile::encodeName(in("closed")).constData(), 0700), 0);
    }

    void intervalsThatAreNoneChangeNothing()
    {
        const auto made = pics();
        made->SetUpdateInterval(12000);
        made->SetUpdateInterval(0);
        made->SetUpdateInterval(-5);
        QCOMPARE(timer(*made, "tAutoUpdate")->interval(), 12000);
        QVERIFY(timer(*made, "tAutoUpdate")->isActive());
    }

    void entriesTakeOtherTexts()
    {
        const auto made = pics();
        QSignalSpy told(made.get(), &PictureList::textChanged);
        made->SetList(1, QStringLiteral("  other  "));
        QCOMPARE(told.count(), 1);
        QCOMPARE(told.at(0).at(0).toInt(), 1);
        QCOMPARE(made->List(1), QStringLiteral("other"));
        QCOMPARE(made->text(1), QStringLiteral("  other  "));
        QCOMPARE(made->ListFile(1), in("pics/b.JPG"));
        made->SetList(3, QStringLiteral("beyond"));
        made->SetList(-1, QStringLiteral("before"));
        QCOMPARE(told.count(), 1);
        QCOMPARE(made->List(3), QString());
    }

    void anEntryWithoutATextOpensNothing()
    {
        const auto made = pics();
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        made->SetList(1, QString());
        made->pick(1);
        QCOMPARE(opened.count(), 0);
        QCOMPARE(made->ListIndex(), 1);
    }

    void aPressTakesTheStarsOutOfTheTextAlone()
    {
        m_home->write(QStringLiteral("pics/a * b.jpg"), "x");
        const auto made = pics();
        QCOMPARE(made->List(0), QStringLiteral("1. a * b (JPG)"));
        QSignalSpy told(made.get(), &PictureList::textChanged);
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        made->notePress(0);
        made->notePress(1); // has none
        made->notePress(9);
        QCOMPARE(told.count(), 1);
        QCOMPARE(made->List(0), QStringLiteral("1. a - b (JPG)"));
        made->pick(0);
        QCOMPARE(opened.at(0).at(0).toString(), in("pics/a * b.jpg"));
    }

    void aPickOpensAgainWhatIsNotOnShow()
    {
        const auto made = pics();
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        QSignalSpy moved(made.get(), &PictureList::indexChanged);
        made->setSelection({{0, 2}});
        made->pick(1);
        made->pick(1); // the image on show is another one still
        QCOMPARE(opened.count(), 2);
        m_current = in("pics/b.JPG");
        made->pick(1);
        QCOMPARE(opened.count(), 2);
        made->pick(-1);
        made->pick(3);
        QCOMPARE(opened.count(), 2);
        QCOMPARE(made->ListIndex(), 1);
        QCOMPARE(moved.count(), 0);
        QCOMPARE(made->selection(), std::vector<collections::RowRange>({{0, 2}})); // a pick selects nothing
    }

    void selectedFilesAreJoinedInOrder()
    {
        const auto made = pics();
        QCOMPARE(made->GetSelectedFiles(), QString());
        made->setSelection({{2, 7}, {0, 0}});
        QCOMPARE(made->GetSelectedFiles(), in("pics/A.png;") + in("pics/c.jpg;"));
        made->SetListIndex(1);
        QCOMPARE(made->GetSelectedFiles(), in("pics/b.JPG;"));
        made->SetListIndex(-1);
        QCOMPARE(made->GetSelectedFiles(), QString());
    }

    void twentyThousandEntries()
    {
        QVERIFY(QDir().mkpath(in("many")));
        for (int i = 0; i < 20000; ++i) {
            QFile file(in("many/") + QString::number(i * 7919 % 20000).rightJustified(5, u'0') +
                       (i % 2 ? QStringLiteral(".jpg") : QStringLiteral(".JPG")));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        const auto made = list();
        made->setPath(in("many"));
        made->finishRebuild();
        QCOMPARE(made->ListCount(), 20000);
        for (int i = 0; i < 20000; ++i)
            QCOMPARE(made->ListFile(i).mid(in("many/").size(), 5),
                     QString::number(i).rightJustified(5, u'0'));
        QCOMPARE(made->List(19999).section(u' ', 0, 1), QStringLiteral("20000. 19999"));
        made->setSelection({{0, 19999}});
        QCOMPARE(made->GetSelectedFiles().count(u';'), 20000);
    }

    void closingShutsEverythingOut()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &PictureList::OpenFile);
        QSignalSpy changed(made.get(), &PictureList::ListChanged);
        made->CloseDown();
        made->SetListIndex(0);
        made->pick(0);
        made->setListIndex(QStringLiteral("1. A (PNG)"));
        made->RefreshPlaylist();
        made->SetPattern(QStringLiteral("*.txt"));
        made->setPath(in("pics/sub"));
        made->SetList(0, QStringLiteral("other"));
        made->setSelection({{0, 2}});
        made->SetUpdateInterval(1);
        made->startUp();
        made->finishRebuild();
        made->CloseDown();
        QVERIFY(made->IsReady());
        QVERIFY(!timer(*made, "tAutoUpdate")->isActive());
        QCOMPARE(opened.count(), 0);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(made->ListIndex(), -1);
        QCOMPARE(made->ListCount(), 3);
        QCOMPARE(made->List(0), QStringLiteral("1. A (PNG)"));
        QCOMPARE(made->Pattern(), QStringLiteral("*.jpg;*.png"));
        QCOMPARE(made->path(), in("pics"));
        QCOMPARE(made->GetSelectedFiles(), QString());
    }

    void closingLetsPendingEventsRunFirst()
    {
        const auto made = pics();
        bool ran = false;
        QMetaObject::invokeMethod(
            made.get(),
            [&] {
                ran = true;
                made->SetListIndex(1);
            },
            Qt::QueuedConnection);
        made->CloseDown();
        QVERIFY(ran);
        QCOMPARE(made->ListIndex(), 1);
    }
};

QTEST_GUILESS_MAIN(TestPictureList)
#include "tst_picturelist.moc"
