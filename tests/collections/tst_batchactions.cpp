// The selected entries sent by mail and deleted, over the list with its two faces.
#include "BatchBench.h"
#include "platform/Dialogs.h"
#include "platform/LongWork.h"

#include <QTimer>

#include <sys/stat.h>

#include <cstdio>

using namespace quorvia;

class TestBatchActions : public test::BatchTest
{
    Q_OBJECT

  private Q_SLOTS:
    void otherCommandsAreNotTaken()
    {
        selectRows({{0, 4}});
        for (const char* command : {"", "convertimage", "emailimages ", "clearselected"})
            QVERIFY2(!m_batch->RunTool(QLatin1String(command)), command);
        QVERIFY(m_batch->RunTool("EmailImages"));
        QVERIFY(!m_started.isEmpty());
        QVERIFY(m_batch->RunTool("DeleteSelectedFiles"));
        QCOMPARE(trashed().size(), 5);
    }

    void withoutASelectionNothingHappens()
    {
        m_bench->window.current = in("pics/a.jpg");
        m_batch->ConvertImage("png");
        m_batch->EmailImages();
        m_tool.clear();
        m_batch->EmailImages(); // and nothing is said of the tool
        m_batch->DeleteSelectedFiles();
        QCOMPARE(m_calls, QStringList());
        QCOMPARE(m_steps, QStringList());
        QCOMPARE(m_started, QStringList());
        QVERIFY(trashed().isEmpty());
        QVERIFY(m_list->IsReady());
    }

    void withoutAConversionNothingHappens()
    {
        selectRows({{0, 0}});
        m_batch->setServices({});
        m_batch->ConvertImage("png");
        QVERIFY(m_list->IsReady());
        QVERIFY(!m_batch->canEmail());
    }

    // --- mail

    void mailGetsTheFiles()
    {
        selectRows({{4, 4}, {0, 1}});
        QVERIFY(m_batch->canEmail());
        m_batch->EmailImages();
        QCOMPARE(m_started, QStringList({"/opt/tools/postrel", "/subject:Image", "/hiddenbody:",
                                         "/attachments:" + pathsOf({"a.jpg", "b.jpg", "e.jpg"}).join(';')}));
    }

    void withoutTheToolItSaysSo()
    {
        m_tool.clear();
        QVERIFY(!m_batch->canEmail());
        QStringList texts;
        const platform::MessageBoxAnswerer boxes([&](const platform::MessageBox& box) {
            texts << box.text;
            return platform::BoxAnswer::Ok;
        });
        selectRows({{0, 0}});
        m_batch->EmailImages();
        QCOMPARE(texts, QStringList("Error: E-Mail applicaion could not be found..."));
        QCOMPARE(m_started, QStringList());
    }

    void aNameWithTheMarkBetweenPaths()
    {
        m_bench->home.write("pics/a;b.jpg", "x");
        m_list->RefreshPlaylist();
        m_list->finishRebuild();
        const int odd = int(m_list->files().indexOf(in("pics/a;b.jpg")));
        QVERIFY(odd >= 0);
        selectRows({{odd, odd}});
        m_batch->EmailImages();
        QCOMPARE(m_started.last(), QString("/attachments:" + in("pics/a;b.jpg")));
    }

    void whatCannotBeToldIsLeftOut()
    {
        m_bench->home.write("pics;/a.jpg", "x");
        showPlaylist({"a.jpg", "../pics;/a.jpg"});
        const int row = int(m_list->files().indexOf(QRegularExpression(QStringLiteral(".*;/.*"))));
        QVERIFY(row >= 0);
        selectRows({{row, row}});
        m_batch->EmailImages();
        QCOMPARE(m_started, QStringList());
        QVERIFY(logged().contains(m_list->files().at(row)));
        selectRows({{0, 1}});
        m_batch->EmailImages();
        QCOMPARE(m_started.last(), QString("/attachments:" + in("pics/a.jpg")));
    }

    void aListThatIsTooLongIsNotSent()
    {
        showPlaylist({"a.jpg"});
        const int length = int(QFile::encodeName(in("pics/a.jpg")).size()) + 1; // with its ";"
        const int most = (128 * 1024 - 1 - int(qstrlen("/attachments:")) + 1) / length;
        playlist().AddPlaylistFiles(QStringList(most, in("pics/a.jpg")));
        m_list->finishRebuild();
        selectRows({{0, most}});
        m_batch->EmailImages();
        QCOMPARE(m_started, QStringList());
        QVERIFY(logged().contains(QString::number(most + 1) + " files"));
        selectRows({{1, most}});
        m_batch->EmailImages();
        QCOMPARE(m_started.size(), 4);
    }

    void aToolThatDoesNotStartIsLogged()
    {
        m_starts = false;
        selectRows({{0, 0}});
        m_batch->EmailImages();
        QVERIFY(logged().contains(m_tool));
    }

    // --- deletion

    void aNameThatIsNoTextIsNotListed()
    {
        QFile::remove(in("pics/a.jpg"));
        const QByteArray raw = QFile::encodeName(in("pics/")) + "caf\xe9.jpg";
        FILE* const file = std::fopen(raw.constData(), "w");
        QVERIFY(file);
        std::fclose(file);
        m_list->RefreshPlaylist();
        m_list->finishRebuild();
        QCOMPARE(m_list->ListCount(), 4);
        selectRows({{0, 3}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(m_list->ListCount(), 0);
        struct stat status = {};
        QCOMPARE(::stat(raw.constData(), &status), 0);
        QCOMPARE(std::remove(raw.constData()), 0); // the home could not
    }

    void theSelectedFilesAreInTheTrash()
    {
        m_list->SetListIndex(1);
        selectRows({{1, 2}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed(), QStringList({"b.jpg", "c.jpg"}));
        QCOMPARE(m_list->files(), pathsOf({"a.jpg", "d.jpg", "e.jpg"}));
        QCOMPARE(m_list->ListIndex(), 1);
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/d.jpg;"));
        QCOMPARE(m_bench->window.opened, pathsOf({"b.jpg", "d.jpg"}));
    }

    void deletingTheLastEntrySelectsTheOneBefore()
    {
        m_list->SetListIndex(4);
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed(), QStringList("e.jpg"));
        QCOMPARE(m_list->ListIndex(), 3);
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/d.jpg;"));
    }

    void deletingAllLeavesNone()
    {
        m_list->SetListIndex(2);
        selectRows({{0, 4}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(m_list->ListCount(), 0);
        QCOMPARE(m_list->ListIndex(), -1);
        QCOMPARE(trashed().size(), 5);
    }

    void withoutACurrentEntryNoneBecomesIt()
    {
        selectRows({{0, 0}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(m_list->ListCount(), 4);
        QCOMPARE(m_list->ListIndex(), -1);
        QCOMPARE(m_bench->window.opened, QStringList());
    }

    void aReadOnlyFileStays()
    {
        QVERIFY(QFile::setPermissions(in("pics/b.jpg"), QFileDevice::ReadOwner));
        selectRows({{0, 2}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed(), QStringList({"a.jpg", "c.jpg"}));
        QCOMPARE(m_list->files(), pathsOf({"b.jpg", "d.jpg", "e.jpg"}));
        QVERIFY(logged().contains(in("pics/b.jpg")));
    }

    void inThePlaylistTheyStayListed()
    {
        showPlaylist({"a.jpg", "b.jpg", "a.jpg", "c.jpg"});
        m_list->SetListIndex(2);
        m_bench->window.current = in("pics/e.jpg");
        m_bench->window.opened.clear();
        selectRows({{0, 2}});
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed(), QStringList({"a.jpg", "b.jpg"}));
        QCOMPARE(logged().count("Not deleted"), 0); // the one that stands twice went once
        QCOMPARE(m_list->ListCount(), 4);
        QTRY_COMPARE(m_list->List(0), QString("File Not Found: 1. a (JPG)"));
        QTRY_COMPARE(m_list->List(1), QString("File Not Found: 2. b (JPG)"));
        QCOMPARE(m_list->List(3), QString("4. c (JPG)"));
        QCOMPARE(m_list->ListIndex(), 2);
        QCOMPARE(m_list->GetSelectedFiles(), in("pics/a.jpg;"));
        QCOMPARE(m_bench->window.opened, QStringList()); // of a file that has gone nothing opens
        QTRY_COMPARE(stored(), pathsOf({"a.jpg", "b.jpg", "a.jpg", "c.jpg"}));
    }

    void aDeletionCanBeBrokenOff()
    {
        for (int i = 0; i < 3000; ++i)
            m_bench->home.write(QString("many/%1.jpg").arg(i, 4, 10, QChar('0')), "x");
        m_list->setPath(in("many"));
        m_list->finishRebuild();
        m_list->select(7);
        selectRows({{0, 2999}});
        QTimer::singleShot(0, [] { platform::LongWork::cancelAll(); });
        m_batch->DeleteSelectedFiles();
        const int gone = int(trashed().size());
        QVERIFY2(gone > 0 && gone < 3000, qPrintable(QString::number(gone)));
        QCOMPARE(m_list->ListCount(), 3000 - gone);
        QCOMPARE(m_list->ListIndex(), 7);
    }

    void anotherFolderMeanwhileIsLeftAlone()
    {
        for (int i = 0; i < 1000; ++i)
            m_bench->home.write(QString("many/%1.jpg").arg(i), "x");
        m_list->setPath(in("many"));
        m_list->finishRebuild();
        m_list->select(3);
        selectRows({{0, 999}});
        QTimer::singleShot(0, [this] { m_list->setPath(in("pics")); });
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed().size(), 1000);
        QCOMPARE(m_list->ListCount(), 5);
        QCOMPARE(m_list->ListIndex(), -1);
    }

    void anEndWhileDeletingIsSurvived_data()
    {
        QTest::addColumn<bool>("destroyed");
        QTest::newRow("closed") << false;
        QTest::newRow("destroyed") << true;
    }
    void anEndWhileDeletingIsSurvived()
    {
        QFETCH(bool, destroyed);
        for (int i = 0; i < 3000; ++i)
            m_bench->home.write(QString("many/%1.jpg").arg(i), "x");
        m_list->setPath(in("many"));
        m_list->finishRebuild();
        m_list->select(3);
        selectRows({{0, 2999}});
        QTimer::singleShot(0, [&] {
            m_list->CloseDown();
            if (destroyed) {
                m_batch.reset();
                m_list.reset();
            }
        });
        m_batch->DeleteSelectedFiles();
        QVERIFY(trashed().size() < 3000);
        QCOMPARE(m_bench->window.opened, QStringList());
    }
};

QTEST_GUILESS_MAIN(TestBatchActions)
#include "tst_batchactions.moc"
