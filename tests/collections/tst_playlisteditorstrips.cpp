// The strips of the playlist editor: they show what is selected, and a click takes an image out of that.
#include "EditorBench.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QtTest>

using namespace quorvia;
using test::EditorBench;

class TestPlaylistEditorStrips : public QObject
{
    Q_OBJECT

  private:
    EditorBench m_bench;

    collections::EntryView& fFiles() const { return m_bench.fFiles(); }
    collections::EntryView& lPlaylist() const { return m_bench.lPlaylist(); }

  private Q_SLOTS:
    void init() { m_bench.begin(); }
    void cleanup() { m_bench.end(); }

    void aBurstOfClicksBecomesOnePass()
    {
        m_bench.showAll();
        EditorBench::click(fFiles(), 0);
        EditorBench::click(fFiles(), 2, Qt::ControlModifier);
        EditorBench::click(lPlaylist(), 3);
        QVERIFY(m_bench.tFilm().isActive());
        QVERIFY(m_bench.filmstrip().Images().isEmpty());
        QTRY_COMPARE(m_bench.filmstrip().Images(), m_bench.pathsOf({"a.jpg", "c.png"}));
        QCOMPARE(m_bench.filmstrip2().Images(), m_bench.pathsOf({"d.jpg"}));
        QVERIFY(!m_bench.tFilm().isActive());
        EditorBench::click(fFiles(), 4);
        m_bench.tick();
        QCOMPARE(m_bench.filmstrip().Images(), m_bench.pathsOf({"e.jpg"}));
    }

    void keysThatSelectShowInTheStrip()
    {
        m_bench.showAll();
        lPlaylist().setFocus();
        lPlaylist().setCurrentIndex(lPlaylist().model()->index(0, 0));
        m_bench.tick();
        QTest::keyClick(&lPlaylist(), Qt::Key_Down, Qt::ShiftModifier);
        m_bench.tick();
        QCOMPARE(m_bench.filmstrip2().Images(), m_bench.pathsOf({"a.jpg", "B.jpg"}));
    }

    void aClickInAStripUnselects()
    {
        m_bench.showAll();
        for (collections::EntryView* list : {&fFiles(), &lPlaylist()}) {
            EditorBench::click(*list, 0);
            EditorBench::click(*list, 2, Qt::ControlModifier);
            EditorBench::click(*list, 3, Qt::ControlModifier);
        }
        m_bench.tick();
        Q_EMIT m_bench.filmstrip().ImageHoverOver(1);
        QCOMPARE(m_bench.help(), QStringLiteral("Click to un-select image: c.png"));
        Q_EMIT m_bench.filmstrip().ImageClicked(1, 2, 0); // the right button
        QCOMPARE(EditorBench::selected(fFiles()), QList<int>({0, 2, 3}));
        Q_EMIT m_bench.filmstrip().ImageClicked(1, 1, 0);
        QCOMPARE(EditorBench::selected(fFiles()), QList<int>({0, 3}));
        Q_EMIT m_bench.filmstrip2().ImageHoverOver(2);
        QCOMPARE(m_bench.help(), QStringLiteral("Click to un-select image: d.jpg"));
        Q_EMIT m_bench.filmstrip2().ImageClicked(2, 1, 0);
        QCOMPARE(EditorBench::selected(lPlaylist()), QList<int>({0, 2}));
        m_bench.tick();
        QCOMPARE(m_bench.filmstrip().Images(), m_bench.pathsOf({"a.jpg", "d.jpg"}));
        QCOMPARE(m_bench.filmstrip2().Images(), m_bench.pathsOf({"a.jpg", "c.png"}));
    }

    void aRealClickInAStripUnselects()
    {
        m_bench.show("list");
        EditorBench::click(fFiles(), 0);
        EditorBench::click(fFiles(), 1, Qt::ControlModifier);
        QWidget& surface = *m_bench.filmstrip().findChild<QWidget*>(QStringLiteral("pImages"));
        QTRY_VERIFY(surface.width() > 2 * surface.height()); // two cells are laid out
        QTest::mouseClick(&surface, Qt::LeftButton, {}, QPoint(20, 20));
        QCOMPARE(EditorBench::selected(fFiles()), QList<int>{1});
        QTRY_COMPARE(m_bench.filmstrip().Images(), m_bench.pathsOf({"B.jpg"}));
    }

    void aStripOfBeforeUnselectsNothingElse()
    {
        m_bench.showAll();
        EditorBench::click(lPlaylist(), 1);
        m_bench.tick();
        EditorBench::click(lPlaylist(), 3); // the strip shows it 200 ms later
        Q_EMIT m_bench.filmstrip2().ImageClicked(0, 1, 0);
        QCOMPARE(EditorBench::selected(lPlaylist()), QList<int>{3});
        Q_EMIT m_bench.filmstrip2().ImageClicked(7, 1, 0);
        QCOMPARE(EditorBench::selected(lPlaylist()), QList<int>{3});
        m_bench.tick();
        QCOMPARE(m_bench.filmstrip2().Images(), m_bench.pathsOf({"d.jpg"}));
    }

    void afterAMoveTheStripKeepsItsOrder()
    {
        m_bench.showAll();
        EditorBench::click(lPlaylist(), 1);
        EditorBench::click(lPlaylist(), 3, Qt::ControlModifier);
        m_bench.tick();
        QTest::keyClick(&lPlaylist(), Qt::Key_Up, Qt::ControlModifier);
        QVERIFY(!m_bench.tFilm().isActive());
        Q_EMIT m_bench.filmstrip2().ImageClicked(1, 1, 0); // d, now in row 2
        QCOMPARE(EditorBench::selected(lPlaylist()), QList<int>{0});
    }

    void theMenuSetsTheRowsOfBothStrips()
    {
        m_bench.show("list");
        auto& menu = m_bench.part<QMenu>("mnuPopup");
        Q_EMIT m_bench.filmstrip().MouseUp(1, 0, 5, 5);
        QVERIFY(!menu.isVisible());
        for (collections::Filmstrip* strip : {&m_bench.filmstrip(), &m_bench.filmstrip2()}) {
            Q_EMIT strip->MouseUp(2, 0, 5, 5);
            QVERIFY(menu.isVisible());
            menu.close();
        }
        const QStringList names{QStringLiteral("mnu1Row"), QStringLiteral("mnu2Row"),
                                QStringLiteral("mnu3row")};
        const QStringList captions{QStringLiteral("Display '1' Row"), QStringLiteral("Display '2' Rows"),
                                   QStringLiteral("Display '3' Rows")};
        for (const int rows : {2, 3, 1}) {
            auto* const entry = m_bench.editor->findChild<QAction*>(names.at(rows - 1));
            QVERIFY(entry);
            QCOMPARE(entry->text(), captions.at(rows - 1));
            entry->trigger();
            QCOMPARE(m_bench.filmstrip().NumberOfRows(), rows);
            QCOMPARE(m_bench.filmstrip2().NumberOfRows(), rows);
        }
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(5, 5), QPoint(5, 5), Qt::NoModifier);
        QCoreApplication::sendEvent(&m_bench.filmstrip2(), &byKey);
        QVERIFY(menu.isVisible());
        menu.close();
    }
};

QTEST_MAIN(TestPlaylistEditorStrips)
#include "tst_playlisteditorstrips.moc"
