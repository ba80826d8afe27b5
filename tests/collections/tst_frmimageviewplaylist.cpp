// The window of the list: what it hands on, and that it costs no panel before it is shown.
#include "app/Settings.h"
#include "collections/EntryView.h"
#include "collections/frmImageViewPlaylist.h"
#include "collections/Playlist.h"
#include "ListBench.h"
#include "platform/FolderTree.h"
#include "support/KeyRows.h"

#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using collections::frmImageViewPlaylist;

class TestHost : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ListBench> m_bench;
    std::unique_ptr<frmImageViewPlaylist> m_host;

    QString in(const char* name) const { return m_bench->in(name); }
    test::RecordingWindow& window() { return m_bench->window; }
    void listPics()
    {
        m_host->startUp();
        m_host->SetPattern(QStringLiteral("*.jpg"));
        m_host->setPath(0, in("pics"));
        m_host->list()->finishRebuild();
    }
    QWidget* part(const char* name) const { return m_host->findChild<QWidget*>(QLatin1String(name)); }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<test::ListBench>();
        m_host = std::make_unique<frmImageViewPlaylist>(m_bench->window);
        m_host->resize(240, 500);
    }

    void cleanup()
    {
        m_host.reset();
        m_bench.reset();
    }

    void listsWithoutAPanel()
    {
        listPics();
        QVERIFY(!m_host->panel());
        QVERIFY(m_host->findChildren<QWidget*>().isEmpty());
        QCOMPARE(m_host->ListCount(), 5);
        QCOMPARE(window().tools, QStringList{"FileListUpdated"});
        m_host->SetListIndex(1);
        QCOMPARE(window().opened, QStringList{in("pics/b.jpg")});
        m_host->CloseDown();
        m_host->show();
        m_host->RunTool(QStringLiteral("selectdirectory"));
        QVERIFY(!m_host->panel()); // and none is made for the end
    }

    void thePanelIsMadeWhenItIsFirstShown()
    {
        listPics();
        m_host->SetListIndex(1);
        m_host->show();
        auto* const panel = m_host->panel();
        QVERIFY(panel);
        QVERIFY(panel->isVisible());
        QCOMPARE(panel->geometry(), m_host->rect());
        QCOMPARE(m_host->findChild<collections::EntryView*>()->currentIndex().row(), 1);
        m_host->resize(400, 300);
        QCOMPARE(panel->geometry(), QRect(0, 0, 400, 300));
        m_host->hide();
        m_host->show();
        QCOMPARE(m_host->panel(), panel);
        QCOMPARE(window().opened.size(), 1);
    }

    void aPanelMadeBeforeTheStartShowsTheFolderOfTheLastRun()
    {
        app::save(app::setting::cLoad, 1);
        app::save(app::setting::SelectedPath, in("pics"));
        m_host->show();
        auto* const tree = m_host->findChild<platform::FolderTree*>();
        QCOMPARE(tree->selectedFolder(), QString());
        m_host->startUp();
        QCOMPARE(tree->selectedFolder(), in("pics"));
        QVERIFY(tree->showsSelected());
    }

    void handsTheListsOperationsOn()
    {
        listPics();
        QCOMPARE(m_host->path(), in("pics"));
        QCOMPARE(m_host->path(0), in("pics"));
        QCOMPARE(m_host->path(1), QString());
        QCOMPARE(m_host->Pattern(), QStringLiteral("*.jpg"));
        QCOMPARE(m_host->List(4), QStringLiteral("5. e (JPG)"));
        QCOMPARE(m_host->ListFile(4), in("pics/e.jpg"));
        QCOMPARE(m_host->ListIndex(), -1);
        m_host->setListIndex(QStringLiteral("c.jpg"));
        QCOMPARE(m_host->ListIndex(), -1);
        m_host->setListIndex(QStringLiteral("3. c (JPG)"));
        QCOMPARE(m_host->ListIndex(), 2);
        QCOMPARE(m_host->GetSelectedFiles(), in("pics/c.jpg;"));
        m_host->SetList(2, QStringLiteral("other"));
        QCOMPARE(m_host->List(2), QStringLiteral("other"));
        QCOMPARE(m_host->GetSelectedTab(), 0);
        QVERIFY(m_host->IsReady());
        m_host->RefreshPlaylist();
        QVERIFY(!m_host->IsReady());
        m_host->SetUpdateInterval(12000);
        QCOMPARE(m_host->findChild<QTimer*>(QStringLiteral("tAutoUpdate"))->interval(), 12000);
        m_host->SetTag(QStringLiteral("tag"));
        QCOMPARE(m_host->Tag(), QStringLiteral("tag"));
    }

    void tellsOfEveryRebuild()
    {
        listPics();
        m_host->RefreshPlaylist();
        m_host->RefreshPlaylist();
        QTRY_COMPARE(window().tools, QStringList({"FileListUpdated", "FileListUpdated"}));
    }

    void keysGoToTheMainWindow_data()
    {
        test::addKeyColumns();
        const auto row = &test::addKeyRow;
        row("Right in the window", "", Qt::Key_Right, {}, {"39:0"});
        row("R in the window", "", Qt::Key_R, {}, {"82:0"});
        row("Ctrl+N in the window", "", Qt::Key_N, Qt::ControlModifier, {"78:2"});
        row("Down in the list", "lPlaylist", Qt::Key_Down, {}, {"40:0"});
        row("Right in the list", "lPlaylist", Qt::Key_Right, {}, {"39:0"});
        row("1 in the list", "lPlaylist", Qt::Key_1, {}, {"49:0"});
        row("Escape in the list", "lPlaylist", Qt::Key_Escape, {}, {"27:0"});
        row("Shift+Right in the list", "lPlaylist", Qt::Key_Right, Qt::ShiftModifier, {"39:1"});
        row("End in the list is its own", "lPlaylist", Qt::Key_End, {}, {});
        row("R in the tree", "ftv", Qt::Key_R, {}, {"82:0"});
        row("] in the tree", "ftv", Qt::Key_BracketRight, {}, {"221:0"});
        row("Down in the tree is its own", "ftv", Qt::Key_Down, {}, {});
        row("Left on the button", "cmdDir", Qt::Key_Left, {}, {"37:0"});
        row("a key that has no code", "", Qt::Key_MediaPlay, {}, {});
    }

    void keysGoToTheMainWindow()
    {
        QFETCH(QString, widget);
        QFETCH(int, key);
        QWidget parent; // what the window leaves alone would come here
        m_host->setParent(&parent);
        const auto takeBack = qScopeGuard([this] { m_host->setParent(nullptr); });
        listPics();
        m_host->SetListIndex(2);
        parent.show();
        m_host->show();
        QWidget* const target =
            widget.isEmpty() ? static_cast<QWidget*>(m_host.get()) : part(qPrintable(widget));
        QVERIFY(target);
        test::pressKeyOfRow(target);
        QTEST(window().keys, "keys");
        QCOMPARE(m_host->ListIndex(), key == Qt::Key_End ? 4 : 2);
    }

    void aClickOnTheTreeLeavesTheKeysToTheWindow()
    {
        listPics();
        m_host->show();
        m_host->activateWindow();
        QTRY_VERIFY(m_host->isActiveWindow());
        QTRY_VERIFY(m_host->hasFocus());
        auto* const tree = m_host->findChild<platform::FolderTree*>();
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, QPoint(60, tree->viewport()->height() - 2));
        QVERIFY(!tree->hasFocus());
        QVERIFY(m_host->hasFocus());
    }

    void theMenuOpensThroughTheHost()
    {
        listPics();
        m_host->GenPopupMenu(); // of no panel yet
        QVERIFY(!m_host->panel());
        m_host->RunTool(QStringLiteral("ShowContextMenu"));
        QVERIFY(m_host->panel());
        QWidget* const menu = QApplication::activePopupWidget();
        QVERIFY(menu);
        QCOMPARE(menu->objectName(), QStringLiteral("bFiles"));
        QCOMPARE(menu->accessibleName(), QStringLiteral("Files"));
        menu->close();
    }

    void theEditorIsWantedThroughTheHost()
    {
        listPics();
        m_host->SelectTab(1);
        m_host->show();
        window().tools.clear();
        QTest::mouseClick(part("iPlaylistEditor"), Qt::LeftButton);
        QCOMPARE(window().tools, QStringList{"miPlaylistEditor"});
        QTest::mouseClick(part("lPlaylistEditor"), Qt::LeftButton);
        QCOMPARE(window().tools.size(), 2);
    }

    void keysOnThePlaylistFace_data()
    {
        test::addKeyColumns();
        const auto row = &test::addKeyRow;
        row("Right on a button", "iAddToPlaylist", Qt::Key_Right, {}, {"39:0"});
        row("R on the name", "pPlaylistBox", Qt::Key_R, {}, {"82:0"});
        row("Up on the name", "pPlaylistBox", Qt::Key_Up, {}, {"38:0"});
        row("Down on the name is its own", "pPlaylistBox", Qt::Key_Down, {}, {});
        row("Delete in the list", "lPlaylist", Qt::Key_Delete, {}, {"46:0"});
        row("Left on the tab", "tab2", Qt::Key_Left, {}, {"37:0"});
    }

    void keysOnThePlaylistFace()
    {
        QFETCH(QString, widget);
        listPics();
        m_host->SelectTab(1);
        m_host->show();
        test::pressKeyOfRow(part(qPrintable(widget)));
        QTEST(window().keys, "keys");
        QCOMPARE(m_host->GetSelectedTab(), 1);
    }

    void closingShutsAll()
    {
        listPics();
        m_host->show();
        m_host->CloseDown();
        QVERIFY(part("ftv")->isHidden());
        m_host->SetListIndex(2);
        m_host->RefreshPlaylist();
        QVERIFY(m_host->IsReady());
        QVERIFY(window().opened.isEmpty());
        QCOMPARE(window().tools.size(), 1);
    }
};

QTEST_MAIN(TestHost)
#include "tst_frmimageviewplaylist.moc"
