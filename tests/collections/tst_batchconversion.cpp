// The selected entries converted, over the list with its two faces.
#include "BatchBench.h"
#include "platform/LongWork.h"

using namespace quorvia;

class TestBatchConversion : public test::BatchTest
{
    Q_OBJECT

  private Q_SLOTS:
    void convertedName_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("ext");
        QTest::addColumn<QString>("converted");
        QTest::newRow("plain") << "/p/a.jpg"
                               << "gif"
                               << "/p/a.gif";
        QTest::newRow("upper case asked for") << "/p/a.jpg"
                                              << "PNG"
                                              << "/p/a.png";
        QTest::newRow("folder of that name") << "/jpg/a.jpg"
                                             << "gif"
                                             << "/gif/a.gif";
        QTest::newRow("within names") << "/myjpgs/jpg-jpg.jpg"
                                      << "tif"
                                      << "/mytifs/tif-tif.tif";
        QTest::newRow("other case elsewhere") << "/JPG/a.jpg"
                                              << "gif"
                                              << "/JPG/a.gif";
        QTest::newRow("differs in case alone") << "/p/a.JPG"
                                               << "jpg"
                                               << "/p/a.jpg";
        QTest::newRow("the same") << "/p/a.jpg"
                                  << "jpg"
                                  << "/p/a.jpg";
        QTest::newRow("no extension") << "/p.q/a"
                                      << "jpg"
                                      << "/p.q/a";
        QTest::newRow("empty extension") << "/p/a."
                                         << "jpg"
                                         << "/p/a.";
        QTest::newRow("two points") << "/p/a.b.jpg"
                                    << "png"
                                    << "/p/a.b.png";
        QTest::newRow("grows") << "/p/a.j"
                               << "jpg"
                               << "/p/a.jpg";
        QTest::newRow("to nothing") << "/p/a.jpg"
                                    << ""
                                    << "/p/a.";
        QTest::newRow("nothing") << ""
                                 << "jpg"
                                 << "";
    }
    void convertedName()
    {
        QFETCH(QString, file);
        QFETCH(QString, ext);
        QTEST(collections::convertedName(file, ext), "converted");
    }

    void theFolderGetsTheNewFiles()
    {
        listFolder("*.jpg;*.png");
        selectRows({{0, 0}, {2, 3}});
        m_batch->ConvertImage("PNG");
        QCOMPARE(m_calls, QStringList({"a.jpg > a.png", "c.jpg > c.png", "d.jpg > d.png"}));
        QCOMPARE(m_steps, QStringList({"hidden", "shown"})); // nothing was on show
        QVERIFY(!m_list->IsReady());
        m_list->finishRebuild();
        QCOMPARE(m_list->files(), pathsOf({"a.jpg", "a.png", "b.jpg", "c.jpg", "c.png", "d.jpg", "d.png",
                                           "e.jpg"})); // the sources stay
    }

    void theImageOnShowComesBack_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("shown");
        QTest::newRow("converted") << "b.jpg"
                                   << "Yes"
                                   << "b.png";
        QTest::newRow("another case") << "B.JPG"
                                      << "Yes"
                                      << "b.png";
        QTest::newRow("not converted") << "b.jpg"
                                       << "No"
                                       << "b.jpg";
        QTest::newRow("cancelled") << "b.jpg"
                                   << "Cancel"
                                   << "b.jpg";
        QTest::newRow("another one") << "e.jpg"
                                     << "Yes to all"
                                     << "e.jpg";
    }
    void theImageOnShowComesBack()
    {
        QFETCH(QString, current);
        QFETCH(QString, answer);
        QFETCH(QString, shown);
        m_bench->window.current = in("pics/" + current);
        m_answers = QStringList(answer);
        selectRows({{1, 2}});
        m_batch->ConvertImage("png");
        QCOMPARE(m_steps, QStringList({"hidden", "released", "open " + shown, "shown"}));
    }

    void cancelKeepsWhatWasDone()
    {
        m_bench->window.current = in("pics/a.jpg");
        showPlaylist({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
        selectRows({{0, 3}});
        m_answers = QStringList({"Yes", "No", "Cancel", "Yes"});
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 3);
        const QStringList now = pathsOf({"a.png", "b.jpg", "c.jpg", "d.jpg"});
        QCOMPARE(playlist().PlaylistFiles(), now);
        QCOMPARE(stored(), now);
        QCOMPARE(m_steps.last(), QString("shown"));
        QVERIFY(m_steps.contains("open a.png"));
        m_list->finishRebuild(); // which was asked for
        QCOMPARE(m_list->files(), now);
        QCOMPARE(m_list->List(0), QString("1. a (PNG)"));
    }

    void yesToAllAsksNoMore()
    {
        selectRows({{0, 3}});
        m_answers = QStringList({"No", "Yes to all"});
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls,
                 QStringList({"a.jpg > a.png", "b.jpg > b.png", "c.jpg > c.png!", "d.jpg > d.png!"}));
    }

    void theNextOneIsNamedWhenNothingIsAsked()
    {
        selectRows({{0, 3}});
        m_answers = QStringList({"No", "Yes to all"});
        m_batch->ConvertImage("png");
        QCOMPARE(m_expected, QStringList({"", "", "d.jpg", ""}));
        QCOMPARE(m_batches, QStringList({"begun", "ended"}));
    }

    void aNoInBetweenKeepsYesToAll()
    {
        selectRows({{0, 3}});
        m_answers = QStringList({"Yes to all", "No", "Yes"});
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 4);
        QVERIFY(m_calls.at(3).endsWith('!'));
    }

    void yesToAllCanBeBrokenOff()
    {
        showPlaylist({"a.jpg", "b.jpg", "c.jpg", "d.jpg"});
        m_bench->window.current = in("pics/e.jpg");
        selectRows({{0, 3}});
        m_answers = QStringList("Yes to all");
        m_during = [this] {
            if (m_calls.size() == 2)
                platform::LongWork::cancelAll();
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 2);
        QCOMPARE(stored(), pathsOf({"a.png", "b.png", "c.jpg", "d.jpg"}));
        QCOMPARE(m_steps, QStringList({"hidden", "released", "open e.jpg", "shown"}));
        QVERIFY(!m_list->IsReady());
    }

    void theEntryIsNamedUntilTheRebuild()
    {
        showPlaylist({"a.jpg", "b.jpg"});
        selectRows({{0, 1}});
        QString text;
        QString file;
        m_during = [&] {
            text = m_list->List(0);
            file = m_list->ListFile(0);
        };
        m_batch->ConvertImage("tif");
        QCOMPARE(text, QString("a.tif"));
        QCOMPARE(file, in("pics/a.tif"));
    }

    void whatWroteNothingIsNotDone()
    {
        m_bench->window.current = in("pics/png/x.jpg");
        m_bench->home.write("pics/jpg/x.jpg", "x");
        showPlaylist({"jpg/x.jpg"});
        m_bench->window.current = in("pics/jpg/x.jpg");
        selectRows({{0, 0}});
        m_batch->ConvertImage("png"); // into a folder that does not exist
        QCOMPARE(m_calls, QStringList("jpg/x.jpg > png/x.png"));
        QCOMPARE(stored(), pathsOf({"jpg/x.jpg"}));
        QVERIFY(m_steps.contains("open jpg/x.jpg"));
        m_list->finishRebuild();
        selectRows({{0, 0}});
        QVERIFY(QDir().mkpath(in("pics/png")));
        m_batch->ConvertImage("png");
        QCOMPARE(stored(), pathsOf({"png/x.png"}));
    }

    void aTargetFolderThatVanishes()
    {
        m_bench->home.write("pics/jpg/x.jpg", "x");
        m_bench->home.write("pics/png/old.png", "x");
        showPlaylist({"jpg/x.jpg", "a.jpg"});
        selectRows({{0, 1}});
        m_during = [this] { QDir(in("pics/png")).removeRecursively(); };
        m_batch->ConvertImage("png");
        QCOMPARE(stored(), pathsOf({"jpg/x.jpg", "a.png"})); // and the next one is done
    }

    void namesOfAllKinds_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("quotes") << "a \"b\" 'c'";
        QTest::newRow("newline") << "two\nlines";
        QTest::newRow("percent") << "100%20%1%s";
        QTest::newRow("dash first") << "-rf";
        QTest::newRow("wildcards") << "*[a]?";
        QTest::newRow("umlauts") << "Äpfel – größer";
        QTest::newRow("blanks") << " a  b ";
    }
    void namesOfAllKinds()
    {
        QFETCH(QString, name);
        m_bench->home.write("odd/" + name + ".jpg", "x");
        m_list->setPath(in("odd"));
        m_list->finishRebuild();
        QCOMPARE(m_list->files(), QStringList(in("odd/" + name + ".jpg")));
        selectRows({{0, 0}});
        m_batch->ConvertImage("png");
        QVERIFY(QFile::exists(in("odd/" + name + ".png")));
        m_list->finishRebuild();
        selectRows({{0, 0}});
        m_batch->EmailImages();
        QCOMPARE(m_started.last(), "/attachments:" + in("odd/" + name + ".jpg"));
        m_batch->DeleteSelectedFiles();
        QCOMPARE(trashed(), QStringList(name + ".jpg"));
        QVERIFY(QFile::exists(in("odd/" + name + ".png")));
    }

    void aNameThatDiffersInCaseAlone()
    {
        m_bench->home.write("pics/UP.JPG", "x");
        showPlaylist({"UP.JPG"});
        selectRows({{0, 0}});
        m_batch->ConvertImage("jpg");
        QCOMPARE(m_calls, QStringList("UP.JPG > UP.jpg"));
        QCOMPARE(stored(), pathsOf({"UP.jpg"}));
    }

    void aFileThatStandsTwiceIsConvertedOnce()
    {
        showPlaylist({"a.jpg", "b.jpg", "a.jpg"});
        selectRows({{0, 2}});
        m_answers = QStringList("Yes");
        m_during = [this] { // as the box for it would have it
            if (m_calls.size() == 2)
                QFile::remove(in("pics/a.jpg"));
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls, QStringList({"a.jpg > a.png", "b.jpg > b.png"}));
        QCOMPARE(stored(), pathsOf({"a.png", "b.png", "a.png"}));
    }

    void aFileThatHasGoneIsLeftOut()
    {
        showPlaylist({"a.jpg", "b.jpg"});
        QVERIFY(QFile::remove(in("pics/a.jpg")));
        selectRows({{0, 1}});
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls, QStringList("b.jpg > b.png"));
        QCOMPARE(stored(), pathsOf({"a.jpg", "b.png"}));
        QVERIFY(logged().contains(in("pics/a.jpg")));
    }

    void theListMayBeRebuiltMeanwhile()
    {
        showPlaylist({"a.jpg", "b.jpg", "c.jpg"});
        selectRows({{0, 2}});
        m_during = [this] {
            m_list->RefreshPlaylist();
            m_list->finishRebuild(); // which takes the selection away
            m_list->setSelection({{2, 2}});
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 3);
        QCOMPARE(stored(), pathsOf({"a.png", "b.png", "c.png"}));
    }

    void onlyEntriesThatAreStillThatFileChange()
    {
        showPlaylist({"a.jpg", "b.jpg", "c.jpg"});
        selectRows({{1, 2}});
        m_during = [this] {
            if (m_calls.size() == 1)
                playlist().removeFiles({{0, 0}}); // b stands at a's place now
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 2);
        QCOMPARE(stored(), pathsOf({"b.jpg", "c.jpg"}));
        QVERIFY(QFile::exists(in("pics/b.png")));
    }

    void anotherPlaylistStaysAsItIs()
    {
        showPlaylist({"a.jpg", "b.jpg"});
        const QString other = collections::namedPlaylistPath("other");
        m_bench->home.write(QDir(in("")).relativeFilePath(other),
                            collections::qolText(pathsOf({"a.jpg", "b.jpg"}), QDate(2001, 1, 1)));
        selectRows({{0, 1}});
        m_during = [&] {
            if (m_calls.size() == 2)
                playlist().LoadQOLPlaylist(other);
        };
        m_batch->ConvertImage("png");
        QCOMPARE(playlist().ActivePlaylist(), QString("other"));
        QCOMPARE(stored(), pathsOf({"a.jpg", "b.jpg"}));
    }

    void theFaceMayChangeMeanwhile()
    {
        showPlaylist({"e.jpg", "a.jpg"});
        selectRows({{0, 1}});
        m_during = [this] {
            if (m_calls.size() == 1) {
                m_list->SelectTab(0);
                m_list->finishRebuild();
            }
        };
        m_batch->ConvertImage("png");
        QCOMPARE(stored(), pathsOf({"e.png", "a.png"}));
        QCOMPARE(m_list->text(0), QString("1. a (JPG)")); // which is another entry of that number
    }

    void oneAtATime()
    {
        selectRows({{0, 1}});
        m_during = [this] {
            m_list->setSelection({{3, 4}});
            m_batch->ConvertImage("tga");
            m_batch->DeleteSelectedFiles();
            m_batch->EmailImages();
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls, QStringList({"a.jpg > a.png", "b.jpg > b.png"}));
        QVERIFY(trashed().isEmpty());
        QCOMPARE(m_started, QStringList());
        QCOMPARE(m_steps, QStringList({"hidden", "shown"}));
        m_during = {};
        m_batch->ConvertImage("tga"); // and then the next one
        QCOMPARE(m_calls.last(), QString("e.jpg > e.tga"));
    }

    void aCloseInTheMiddleEndsIt_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::newRow("asking") << "Yes";
        QTest::newRow("without questions") << "Yes to all";
    }
    void aCloseInTheMiddleEndsIt()
    {
        QFETCH(QString, answer);
        showPlaylist({"a.jpg", "b.jpg", "c.jpg"});
        m_bench->window.current = in("pics/c.jpg");
        selectRows({{0, 2}});
        m_answers = QStringList(answer);
        m_during = [this] {
            if (m_calls.size() == 2)
                m_list->CloseDown();
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 2);
        QCOMPARE(stored(), pathsOf({"a.png", "b.jpg", "c.jpg"})); // as it was when it was closed
        QCOMPARE(m_steps, QStringList({"hidden", "released", "shown"}));
        QVERIFY(m_list->IsReady());
        selectRows({{0, 0}});
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 2);
    }

    void anEndInTheMiddleIsSurvived_data() { aCloseInTheMiddleEndsIt_data(); }
    void anEndInTheMiddleIsSurvived()
    {
        QFETCH(QString, answer);
        showPlaylist({"a.jpg", "b.jpg", "c.jpg"});
        m_bench->window.current = in("pics/c.jpg");
        selectRows({{0, 2}});
        m_answers = QStringList(answer);
        m_during = [this] {
            if (m_calls.size() == 2) {
                m_batch.reset();
                m_list.reset();
            }
        };
        m_batch->ConvertImage("png");
        QCOMPARE(m_calls.size(), 2);
        QCOMPARE(m_steps, QStringList({"hidden", "released"})); // there is nobody to be told
    }
};

QTEST_GUILESS_MAIN(TestBatchConversion)
#include "tst_batchconversion.moc"
