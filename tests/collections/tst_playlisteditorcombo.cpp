// The box of the playlist editor in which a playlist is chosen, and the files that dialogs name.
#include "NamesStage.h"
#include "support/FullDisk.h"
#include "support/QolPaths.h"

#include <QtTest>

using namespace quorvia;
using platform::TextQuestion;
using test::EditorBench;

class TestPlaylistEditorCombo : public QObject, private test::NamesStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    // --- the box

    void showsTheNamedPlaylists()
    {
        m_bench.home.write(QStringLiteral("root/Playlist/deeper/x.qol"), "");
        m_bench.home.write(QStringLiteral("root/Playlist/my.qol list.qol"), "");
        m_bench.home.write(QStringLiteral("root/Playlist/text.txt"), "");
        m_bench.show("one");
        QCOMPARE(lines(), withClosingLines({"my list", "one", "Two"}));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("one"));
        QVERIFY(!m_bench.cPlaylist().isEditable());
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "c.png"}));
        QVERIFY(m_bench.cPlaylist().isEnabled());
    }

    void withoutPlaylistsThereAreThreeLines()
    {
        QVERIFY(QDir(collections::playlistFolder()).removeRecursively());
        m_bench.show();
        QCOMPARE(lines(), withClosingLines({}));
        QCOMPARE(m_bench.cPlaylist().currentIndex(), -1);
        m_bench.choose(0);
        m_bench.tick();
        QCOMPARE(m_bench.tag(), QString());
        m_bench.editor->SaveActivePlaylist(); // nothing is in hand
        QVERIFY(!QDir(collections::playlistFolder()).exists());
    }

    void pickingAPlaylistSavesTheOtherFirst()
    {
        m_bench.show("one");
        addB();
        m_bench.choose(1);
        QCOMPARE(m_bench.entries(), QStringList{"d.jpg"});
        QCOMPARE(m_bench.tag(), QStringLiteral("Two"));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("Two"));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QCOMPARE(EditorBench::stored("Two"), QStringList{"d.jpg"});
        QVERIFY(m_bench.trashed().isEmpty());
    }

    void theBoxIsOffUntilTheNextTick()
    {
        m_bench.show("one");
        m_bench.cPlaylist().setFocus();
        QTest::keyClick(&m_bench.cPlaylist(), Qt::Key_Down);
        QCOMPARE(m_bench.tag(), QStringLiteral("Two"));
        QVERIFY(!m_bench.cPlaylist().isEnabled());
        QTest::keyClick(&m_bench.cPlaylist(), Qt::Key_Up);
        QCOMPARE(m_bench.tag(), QStringLiteral("Two"));
        QTRY_VERIFY(m_bench.cPlaylist().isEnabled());
        QVERIFY(m_bench.cPlaylist().hasFocus()); // as before
        QTest::keyClick(&m_bench.cPlaylist(), Qt::Key_Up);
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        m_bench.lPlaylist().setFocus(); // the user goes elsewhere meanwhile
        m_bench.tick();
        QVERIFY(m_bench.cPlaylist().isEnabled());
        QVERIFY(m_bench.lPlaylist().hasFocus());
    }

    void theOnePickedAgainIsSavedFirst()
    {
        m_bench.show("one");
        addB();
        m_bench.choose(0);
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"}));
    }

    void whatCannotBeSavedStaysInHand()
    {
        m_bench.show("one");
        for (int i = 0; i < 3000; ++i)
            addB();
        const auto answerer = answering(QStringLiteral("three"));
        {
            const test::FullDisk disk(64 * 1024); // has room for what else is written
            QVERIFY(disk.isFull());
            m_bench.choose(1); // two
            QCOMPARE(m_bench.tag(), QStringLiteral("one"));
            QCOMPARE(m_bench.entries().size(), 3002);
            m_bench.choose(m_bench.cPlaylist().count() - 1); // a new one
            QCOMPARE(m_bench.tag(), QStringLiteral("one"));
            QCOMPARE(m_bench.entries().size(), 3002);
        }
        m_bench.choose(1);
        QCOMPARE(m_bench.tag(), QStringLiteral("Two"));
        QCOMPARE(EditorBench::stored("one").size(), 3002);
    }

    void lookingAtPlaylistsLeavesThemAsTheyAre()
    {
        const QByteArray foreign =
            "# mine\nInfo: x\n" + m_bench.in("pics/a.jpg").toUtf8() + "\n/stick/b.jpg\n";
        m_bench.home.write(QStringLiteral("root/Playlist/one.qol"), foreign);
        m_bench.show("one");
        m_bench.choose(1);
        m_bench.choose(0);
        QVERIFY(m_bench.editor->closeDown());
        QCOMPARE(EditorBench::bytesAt(EditorBench::named("one")), foreign);
        QCOMPARE(m_bench.trashed(), QStringList());
    }

    void theWheelChoosesNothing()
    {
        m_bench.show("one");
        QWheelEvent notch(QPointF(5, 5), m_bench.cPlaylist().mapToGlobal(QPoint(5, 5)), QPoint(),
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&m_bench.cPlaylist(), &notch);
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("one"));
    }

    void whatIsAddedToNoPlaylistAsksForOne_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("entries");
        QTest::newRow("named") << "new" << QStringList{"a.jpg", "B.jpg", "c.png", "d.jpg", "e.jpg"};
        QTest::newRow("cancelled") << "" << QStringList();
        QTest::newRow("no name of a file") << "a/b" << QStringList();
    }

    void whatIsAddedToNoPlaylistAsksForOne()
    {
        QFETCH(QString, answer);
        m_bench.show();
        const auto answerer = answering(answer);
        m_bench.press(4);
        QCOMPARE(m_asked.size(), std::size_t(1));
        QTEST(m_bench.entries(), "entries");
        QCOMPARE(m_bench.tag(), m_bench.entries().isEmpty() ? QString() : answer);
        if (!m_bench.tag().isEmpty())
            m_bench.press(4); // asks no more
        QCOMPARE(m_asked.size(), std::size_t(1));
    }

    void theEmptyLineDoesNothing()
    {
        const auto never = answering(QStringLiteral("never"));
        m_bench.show("one");
        addB();
        m_bench.choose(-3);
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("one"));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png"}));
        QVERIFY(page().isHidden() && m_asked.empty());
        QVERIFY(!m_bench.cPlaylist().isEnabled());
        m_bench.tick();
        QVERIFY(m_bench.cPlaylist().isEnabled());
    }

    void aPlaylistWithoutAFileIsEmpty()
    {
        m_bench.show("nowhere");
        QCOMPARE(m_bench.tag(), QStringLiteral("nowhere"));
        QCOMPARE(m_bench.cPlaylist().currentIndex(), -1);
        QVERIFY(m_bench.entries().isEmpty());
        QVERIFY(!QFile::exists(EditorBench::named("nowhere")));
        m_bench.choose(1); // which saves it
        QVERIFY(lines().contains(QStringLiteral("nowhere")));
        QVERIFY(EditorBench::bytesAt(EditorBench::named("nowhere")).endsWith(" Files: 0\r\n"));
    }

    void aPlaylistThatVanishesUnderTheBoxIsEmpty()
    {
        m_bench.show("one");
        QVERIFY(QFile::remove(EditorBench::named("Two")));
        m_bench.choose(1);
        QCOMPARE(m_bench.tag(), QStringLiteral("Two"));
        QVERIFY(m_bench.entries().isEmpty());
    }

    void whatAnotherProgramHasWrittenStays()
    {
        m_bench.show("one");
        m_bench.writeList("one", {"e.jpg"});
        m_bench.editor->SaveActivePlaylist();
        QCOMPARE(EditorBench::stored("one"), QStringList{"e.jpg"});
        QCOMPARE(m_bench.entries(), QStringList{"e.jpg"});
        addB();
        m_bench.writeList("one", {"d.jpg"});
        m_bench.editor->SaveActivePlaylist(); // here something has changed as well
        QCOMPARE(EditorBench::stored("one"), QStringList({"e.jpg", "B.jpg"}));
        QCOMPARE(m_bench.trashed().size(), 1);
    }

    // --- a new playlist

    void aPlaylistIsCreated()
    {
        const auto answer = answering(QStringLiteral("New one"));
        m_bench.show("one");
        addB();
        m_bench.choose(-1);
        QCOMPARE(m_asked.size(), std::size_t(1));
        QCOMPARE(m_asked.at(0).title, QStringLiteral("Create New Playlist"));
        QCOMPARE(m_asked.at(0).text, QStringLiteral("Please enter the name for the new playlist."));
        QCOMPARE(m_asked.at(0).answer, QString());
        QVERIFY(m_bench.entries().isEmpty());
        QCOMPARE(m_bench.tag(), QStringLiteral("New one"));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("New one"));
        QCOMPARE(lines(), withClosingLines({"New one", "one", "Two"}));
        QVERIFY(EditorBench::bytesAt(EditorBench::named("New one")).endsWith(" Files: 0\r\n"));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"})); // saved before
        QVERIFY(m_bench.tFilm().isActive());
        m_bench.tick();
        QVERIFY(m_bench.cPlaylist().isEnabled());
    }

    void aNewPlaylistReplacesOneOfItsName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("another") << QStringLiteral("Two");
        QTest::newRow("the one in hand") << QStringLiteral("one");
    }

    void aNewPlaylistReplacesOneOfItsName()
    {
        QFETCH(QString, name);
        const auto answer = answering(name);
        m_bench.show("one");
        m_bench.choose(-1);
        QVERIFY(m_bench.entries().isEmpty());
        QCOMPARE(m_bench.tag(), name);
        QVERIFY(EditorBench::bytesAt(collections::namedPlaylistPath(name)).endsWith(" Files: 0\r\n"));
        QCOMPARE(m_bench.trashed(), QStringList{name + QStringLiteral(" (replaced).qol")});
        QCOMPARE(lines(), withClosingLines({"one", "Two"}));
    }

    void aNameThatNoFileCanHaveIsNone_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isLogged");
        QTest::newRow("no answer") << QString() << false;
        QTest::newRow("a path") << QStringLiteral("../one") << true;
        QTest::newRow("too long") << QString(300, u'x') << true;
    }

    void aNameThatNoFileCanHaveIsNone()
    {
        QFETCH(QString, name);
        QFETCH(bool, isLogged);
        const auto answer = answering(name);
        m_bench.show("one");
        addB();
        m_bench.choose(-1);
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("one"));
        QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QCOMPARE(m_bench.log().contains(QStringLiteral("No name for a playlist")), isLogged);
        openDefinePage();
        selectName("Two");
        press("cmdRename");
        QCOMPARE(lines(), withClosingLines({"one", "Two"}));
    }

    void aNameIsShownAsItsFileIsCalled()
    {
        const auto answer = answering(QStringLiteral("my.qol list"));
        m_bench.show();
        m_bench.choose(-1);
        QCOMPARE(m_bench.tag(), QStringLiteral("my list"));
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("my list"));
        QVERIFY(QFile::exists(EditorBench::named("my.qol list")));
    }

    void aNameOfTwoLinesIsOneLine()
    {
        m_bench.writeList("t\nt", {"e.jpg"});
        m_bench.show();
        QCOMPARE(lines().at(1), QStringLiteral("t t"));
        m_bench.choose(1);
        QCOMPARE(m_bench.tag(), QStringLiteral("t\nt"));
        QCOMPARE(m_bench.entries(), QStringList{"e.jpg"});
        QCOMPARE(m_bench.cPlaylist().currentIndex(), 1);
    }

    // --- files elsewhere, by the dialogs

    void aFileIsChosen()
    {
        const QString list =
            m_bench.home.write(QStringLiteral("other/elsewhere.qol"),
                               collections::qolText(m_bench.pathsOf({"e.jpg"}), QDate(2001, 1, 1)));
        m_bench.show("one");
        EditorBench::click(m_bench.lPlaylist(), 0);
        {
            const platform::FileChooserAnswerer none([](const auto&) { return QString(); });
            m_bench.editor->LoadQOLPlaylist(QString());
            QCOMPARE(m_bench.entries(), QStringList({"a.jpg", "c.png"}));
            QVERIFY(EditorBench::selected(m_bench.lPlaylist()).isEmpty()); // refreshed
            QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        }
        platform::FileChooser asked;
        const platform::FileChooserAnswerer chosen([&](const platform::FileChooser& chooser) {
            asked = chooser;
            return list;
        });
        m_bench.editor->LoadQOLPlaylist(QString());
        QCOMPARE(asked.filters, QStringLiteral("Quorvia Playlist|*.qol"));
        QCOMPARE(m_bench.entries(), QStringList{"e.jpg"});
        QCOMPARE(m_bench.tag(), QStringLiteral("elsewhere"));
    }

    void aFileIsNamed()
    {
        m_bench.show();
        platform::SaveChooser asked;
        QString answer;
        const platform::SaveChooserAnswerer named([&](const platform::SaveChooser& chooser) {
            asked = chooser;
            return answer;
        });
        m_bench.editor->SaveQOLPlaylist(QString());
        QVERIFY(asked.filters.isEmpty()); // an empty list is not asked about
        addB();
        m_bench.editor->SaveQOLPlaylist(QString());
        QCOMPARE(asked.filters, QStringLiteral("Quorvia Playlist|*.qol"));
        QCOMPARE(asked.extension, QStringLiteral("qol"));
        QCOMPARE(m_bench.tag(), QString());
        answer = m_bench.in("other.qol");
        m_bench.editor->SaveQOLPlaylist(QString());
        QCOMPARE(m_bench.tag(), QStringLiteral("other"));
        QCOMPARE(test::qolPaths(EditorBench::bytesAt(answer)), m_bench.pathsOf({"B.jpg"}));
    }

    void anEditorThatGoesWhileItAsksComesToNoHarm_data()
    {
        QTest::addColumn<int>("line");
        QTest::newRow("create") << -1;
        QTest::newRow("rename") << -2;
    }

    void anEditorThatGoesWhileItAsksComesToNoHarm()
    {
        QFETCH(int, line);
        m_bench.show("one");
        int asked = 0;
        const platform::TextQuestionAnswerer answer([&](const TextQuestion&) {
            ++asked;
            m_bench.editor.reset();
            return QStringLiteral("new");
        });
        if (line == -2) {
            openDefinePage();
            selectName("Two");
            QMetaObject::invokeMethod(&m_bench.part<QObject>("cmdRename"), "click");
        } else {
            m_bench.choose(line);
        }
        QCOMPARE(asked, 1);
        QVERIFY(!QFile::exists(EditorBench::named("new")));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png"}));
    }
};

QTEST_MAIN(TestPlaylistEditorCombo)
#include "tst_playlisteditorcombo.moc"
