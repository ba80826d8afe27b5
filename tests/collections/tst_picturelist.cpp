// The list of pictures that navigation walks: its folder, its rebuilds, its start and its end.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "PictureListStage.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using collections::PictureList;
using collections::PlaylistKeeper;

class TestPictureList : public QObject, private PictureListStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
