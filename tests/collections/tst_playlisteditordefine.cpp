// The page of the playlist editor where the named playlists are made, renamed and deleted.
#include "NamesStage.h"

#include <QtTest>

using namespace quorvia;
using platform::TextQuestion;
using test::EditorBench;

class TestPlaylistEditorDefine : public QObject, private test::NamesStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void thePageIsShownAndLeft()
    {
        m_bench.show("one");
        addB();
        openDefinePage();
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QCOMPARE(page().geometry(), m_bench.editor->rect());
        QVERIFY(!m_bench.lPlaylist().isVisible());
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("one"));
        QStringList names;
        for (int row = 0; row < lPlaylistNames().count(); ++row)
            names += lPlaylistNames().item(row)->text();
        QCOMPARE(names, QStringList({"one", "Two"}));
        QVERIFY(lPlaylistNames().hasFocus());
        m_bench.tick();
        m_bench.editor->resize(800, 500);
        QCOMPARE(page().size(), QSize(800, 500));
        press("cmdClose");
        QVERIFY(page().isHidden());
        QVERIFY(m_bench.lPlaylist().isVisible());
        QVERIFY(m_bench.cPlaylist().hasFocus());
        QVERIFY(!m_bench.editor->leaveDefinePage());
    }

    void leavingThePageListsWhatHasComeMeanwhile()
    {
        m_bench.show("one");
        openDefinePage();
        m_bench.writeList("zoo", {"a.jpg"}); // by another program
        QCOMPARE(m_bench.cPlaylist().findText(QStringLiteral("zoo")), -1);
        press("cmdClose");
        QVERIFY(m_bench.cPlaylist().findText(QStringLiteral("zoo")) >= 0);
    }

    void theButtonsOfThePageAreNamed()
    {
        m_bench.show();
        const std::pair<const char*, QString> buttons[] = {{"cmdCreate", QStringLiteral("Create New")},
                                                           {"cmdRename", QStringLiteral("Rename")},
                                                           {"cmdDelete", QStringLiteral("Delete")},
                                                           {"cmdClose", QStringLiteral("Finished")}};
        for (const auto& [name, caption] : buttons) {
            QCOMPARE(m_bench.part<QAbstractButton>(name).text(), caption);
            QCOMPARE(m_bench.part<QAbstractButton>(name).accessibleName(), caption);
        }
    }

    void withoutASelectedNameNothingHappens()
    {
        const auto answer = answering(QStringLiteral("never"));
        m_bench.show("one");
        openDefinePage();
        press("cmdRename");
        press("cmdDelete");
        QVERIFY(m_asked.empty());
        QCOMPARE(lines(), withClosingLines({"one", "Two"}));
    }

    void aPlaylistIsCreatedOnThePage()
    {
        const auto answer = answering(QStringLiteral("third"));
        m_bench.show("one");
        openDefinePage();
        auto& create = m_bench.part<QAbstractButton>("cmdCreate");
        create.setFocus();
        QTest::keyClick(&create, Qt::Key_Return);
        QCOMPARE(m_bench.tag(), QStringLiteral("third"));
        QCOMPARE(lPlaylistNames().count(), 3);
        QVERIFY(page().isVisible());
        press("cmdClose");
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("third"));
    }

    void aPlaylistIsRenamed()
    {
        const auto answer = answering(QStringLiteral("Three"));
        m_bench.show("one");
        openDefinePage();
        selectName("Two");
        press("cmdRename");
        QCOMPARE(m_asked.size(), std::size_t(1));
        QCOMPARE(m_asked.at(0).title, QStringLiteral("Rename Playlist"));
        QCOMPARE(m_asked.at(0).text, QStringLiteral("Please enter a new name from this playlist."));
        QCOMPARE(m_asked.at(0).answer, QStringLiteral("Two"));
        QCOMPARE(lines(), withClosingLines({"one", "Three"}));
        QCOMPARE(lPlaylistNames().count(), 2);
        QVERIFY(lPlaylistNames().selectedItems().isEmpty());
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(EditorBench::stored("Three"), QStringList{"d.jpg"});
        QVERIFY(!QFile::exists(EditorBench::named("Two")));
    }

    void thePlaylistInHandIsRenamed()
    {
        const auto answer = answering(QStringLiteral("uno"));
        m_bench.show("one");
        openDefinePage();
        selectName("one");
        press("cmdRename");
        QCOMPARE(m_bench.tag(), QStringLiteral("uno"));
        press("cmdClose");
        QCOMPARE(m_bench.cPlaylist().currentText(), QStringLiteral("uno"));
        addB();
        m_bench.editor->SaveActivePlaylist();
        QCOMPARE(EditorBench::stored("uno"), QStringList({"a.jpg", "c.png", "B.jpg"}));
        QVERIFY(!QFile::exists(EditorBench::named("one")));
        QVERIFY(m_bench.trashed().isEmpty()); // it is the same list
    }

    void renamingReplacesNoOther_data()
    {
        QTest::addColumn<QString>("wanted");
        QTest::newRow("there already") << QStringLiteral("Two");
        QTest::newRow("its own name") << QStringLiteral("one");
    }

    void renamingReplacesNoOther()
    {
        QFETCH(QString, wanted);
        const auto answer = answering(wanted);
        m_bench.show("one");
        openDefinePage();
        selectName("one");
        press("cmdRename");
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(EditorBench::stored("one"), QStringList({"a.jpg", "c.png"}));
        QCOMPARE(EditorBench::stored("Two"), QStringList{"d.jpg"});
        QCOMPARE(m_bench.log().contains(QStringLiteral("Playlist not renamed: one")), wanted == u"Two");
    }

    void aPlaylistIsDeleted()
    {
        m_bench.show("one");
        openDefinePage();
        selectName("Two");
        press("cmdDelete");
        QVERIFY(!QFile::exists(EditorBench::named("Two")));
        QCOMPARE(m_bench.trashed(), QStringList{"Two.qol"});
        QCOMPARE(lines(), withClosingLines({"one"}));
        QCOMPARE(m_bench.tag(), QStringLiteral("one"));
        QCOMPARE(m_bench.entries().size(), 2);
        press("cmdDelete"); // nothing is selected any more
        QCOMPARE(lines(), withClosingLines({"one"}));
    }

    void thePlaylistInHandIsDeleted()
    {
        m_bench.show("one");
        openDefinePage();
        selectName("one");
        press("cmdDelete");
        QCOMPARE(m_bench.tag(), QString());
        QVERIFY(m_bench.entries().isEmpty());
        QCOMPARE(m_bench.cPlaylist().currentIndex(), -1);
        m_bench.editor->SaveActivePlaylist();
        press("cmdClose");
        m_bench.editor->closeDown();
        QVERIFY(!QFile::exists(EditorBench::named("one")));
        QCOMPARE(m_bench.trashed(), QStringList{"one.qol"});
    }

    void oneThatIsGoneAlreadyIsDeletedQuietly()
    {
        m_bench.show("one");
        openDefinePage();
        selectName("Two");
        QVERIFY(QFile::remove(EditorBench::named("Two")));
        press("cmdDelete");
        QCOMPARE(lines(), withClosingLines({"one"}));
        QVERIFY(m_bench.trashed().isEmpty());
        QVERIFY(!m_bench.log().contains(QStringLiteral("not deleted")));
    }

    void whereThereIsNoTrashItIsDeletedForGood()
    {
        m_bench.home.write(QStringLiteral(".local/share/Trash"), "no folder");
        m_bench.show();
        openDefinePage();
        selectName("Two");
        press("cmdDelete");
        QVERIFY(!QFile::exists(EditorBench::named("Two")));
        QVERIFY(m_bench.log().contains(QStringLiteral("Playlist deleted for good")));
    }
};

QTEST_MAIN(TestPlaylistEditorDefine)
#include "tst_playlisteditordefine.moc"
