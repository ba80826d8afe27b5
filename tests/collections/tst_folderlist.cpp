#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/FolderList.h"
#include "support/ScratchHome.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using collections::FolderList;

class TestFolderList : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    QString m_current;

    std::unique_ptr<FolderList> list()
    {
        auto made = std::make_unique<FolderList>([this] { return m_current; });
        made->SetPattern(QStringLiteral("*.jpg;*.png"));
        made->finishRebuild();
        return made;
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        app::openSettings();
        m_current.clear();
        for (const char* name :
             {"pics/b.JPG", "pics/A.png", "pics/c.jpg", "pics/notes.txt", "pics/sub/d.jpg"})
            m_home->write(QLatin1String(name), "x");
    }

    void cleanup()
    {
        app::closeSettings();
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
        QSignalSpy changed(made.get(), &FolderList::ListChanged);
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->RefreshPlaylist();
        made->RefreshPlaylist();
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(made->ListCount(), 3);
    }

    void aFileMatchedTwiceIsListedTwice()
    {
        const QStringList files = collections::sortedFolderFiles(m_home->path(QStringLiteral("pics")),
                                                                 QStringLiteral("*.jpg;*.jp*"));
        QCOMPARE(files.size(), 4);
        QCOMPARE(files.at(0), files.at(1));
    }

    void aWildcardWithoutMatchStopsNothing()
    {
        QCOMPARE(collections::sortedFolderFiles(m_home->path(QStringLiteral("pics")),
                                                QStringLiteral("*.bmp;*.png"))
                     .size(),
                 1);
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
        next->restoreSelectedPath();
        QCOMPARE(next->path(), m_home->path(QStringLiteral("pics")));
    }

    void restoreNeedsTheSettingAndTheFolder()
    {
        app::save(app::setting::SelectedPath, m_home->path(QStringLiteral("gone")));
        auto made = list();
        made->restoreSelectedPath();
        QCOMPARE(made->path(), QString());

        app::save(app::setting::SelectedPath, m_home->path(QStringLiteral("pics")));
        app::save(app::setting::cLoad, 0);
        made->restoreSelectedPath();
        QCOMPARE(made->path(), QString());
    }

    void pickingOpensWhatIsNotOnShow()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &FolderList::OpenFile);
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
        QSignalSpy opened(made.get(), &FolderList::OpenFile);
        made->SetListIndex(index);
        QCOMPARE(made->ListIndex(), 0);
        QCOMPARE(opened.count(), 0);
    }

    void selectionByFileNameFindsNothing()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &FolderList::OpenFile);
        made->setListIndex(QStringLiteral("c.jpg"));
        QCOMPARE(made->ListIndex(), -1);
        QCOMPARE(opened.count(), 0);
        made->setListIndex(QStringLiteral("3. c (JPG)")); // the entry's own text does
        QCOMPARE(made->ListIndex(), 2);
        QCOMPARE(opened.count(), 1);
    }

    void aFolderThatIsNoneIsNotTaken()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("nowhere")));
        QCOMPARE(made->path(), QString());
        made->setPath(m_home->path(QStringLiteral("pics/c.jpg")));
        QCOMPARE(made->path(), QString());
        QVERIFY(made->IsReady());
    }

    void closingShutsEverythingOut()
    {
        const auto made = list();
        made->setPath(m_home->path(QStringLiteral("pics")));
        made->finishRebuild();
        QSignalSpy opened(made.get(), &FolderList::OpenFile);
        made->CloseDown();
        made->SetListIndex(0);
        made->RefreshPlaylist();
        QVERIFY(made->IsReady());
        QCOMPARE(opened.count(), 0);
        QCOMPARE(made->ListIndex(), -1);
    }
};

QTEST_GUILESS_MAIN(TestFolderList)
#include "tst_folderlist.moc"
