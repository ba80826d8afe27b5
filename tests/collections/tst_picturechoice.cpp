// What the list of pictures opens: by position, by file name, by a text that is looked for, by a pick.
#include "app/mWindowsAPI.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "PictureListStage.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using namespace quorvia::test;
using collections::PictureList;
using collections::PlaylistKeeper;

class TestPictureChoice : public QObject, private PictureListStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
};

QTEST_GUILESS_MAIN(TestPictureChoice)
#include "tst_picturechoice.moc"
