// What the list of pictures notices of its folder: files that vanish or come, a folder that goes.
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "PictureListStage.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace quorvia;
using namespace quorvia::test;
using collections::PictureList;

class TestPictureChanges : public QObject, private PictureListStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
};

QTEST_GUILESS_MAIN(TestPictureChanges)
#include "tst_picturechanges.moc"
