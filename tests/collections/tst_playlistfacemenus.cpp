// Menus, buttons and drops of the playlist's face of the panel.
#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistHead.h"
#include "collections/PlaylistKeeper.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "PlaylistFaceStage.h"

#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using namespace quorvia::test;
using collections::Playlist;

namespace {

QMimeData* urlsOf(const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(path.contains(QLatin1String("://")) ? QUrl(path) : QUrl::fromLocalFile(path));
    auto* const data = new QMimeData;
    data->setUrls(urls);
    return data;
}

} // namespace

class TestPlaylistFaceMenus : public QObject, private PlaylistFaceStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void buttonsSendTheirCommands()
    {
        show();
        showPlaylist();
        QStringList asked;
        const platform::FileChooserAnswerer opens([&](const platform::FileChooser& chooser) {
            asked << chooser.title;
            return QString();
        });
        const platform::SaveChooserAnswerer saves([&](const platform::SaveChooser& chooser) {
            asked << chooser.title;
            return QString();
        });
        playlist().AddPlaylistFile(in("pics/a.jpg"));
        click("iImportPlaylist");
        click("iExportPlaylist");
        QTest::keyClick(part("iExportPlaylist"), Qt::Key_Space);
        QCOMPARE(asked, QStringList({"Import Playlist from File", "Export Playlist to File",
                                     "Export Playlist to File"}));
    }

    void allIsMovedByTheButton()
    {
        show();
        click("cmdPlaylist");
        QCOMPARE(playlist().PlaylistFiles().size(), 5);
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QCOMPARE(stored("Auto Playlist").size(), 5);
    }

    void menusOpenBesideTheirButtons_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QString>("command");
        QTest::newRow("iAddToPlaylist") << "bAdd"
                                        << "AddMenu";
        QTest::newRow("iRemovePlaylist") << "bRemove"
                                         << "RemoveMenu";
    }

    void menusOpenBesideTheirButtons()
    {
        QFETCH(QString, command);
        show();
        showPlaylist();
        const QWidget* const button = part(QTest::currentDataTag());
        click(QTest::currentDataTag());
        QTEST(menuName(), "menu");
        const QRect box(button->mapToGlobal(QPoint()), button->size());
        QVERIFY(!menu()->geometry().intersects(box));
        QCOMPARE(menu()->x(), box.x());
        menu()->close();
        QCursor::setPos(m_panel->mapToGlobal(QPoint(50, 60)));
        m_panel->RunTool(command);
        QTEST(menuName(), "menu");
        QCOMPARE(menu()->pos(), QCursor::pos());
    }

    void theMenuOfEachFace()
    {
        show();
        m_panel->RunTool(QStringLiteral("showcontextmenu"));
        QCOMPARE(rows().join(u' '),
                 QStringLiteral("miDelete - tConvert - tMoveSelPlaylist tMovePlaylist - miRecent"));
        QVERIFY(!row("tMoveSelPlaylist")->isEnabled());
        QVERIFY(row("tMovePlaylist")->isEnabled());
        menu()->close();
        lPlaylist().selectAll();
        m_panel->RunTool(QStringLiteral("showcontextmenu"));
        QVERIFY(row("tMoveSelPlaylist")->isEnabled());
        QMenu* const recent = row("miRecent")->menu();
        m_bench->window.recent = QStringList{in("pics"), in("gone"), in("")};
        recent->popup({0, 0});
        QCOMPARE(recent->actions().at(0)->objectName(), QStringLiteral("tRecent0"));
        QCOMPARE(recent->actions().at(1)->objectName(), QStringLiteral("tRecent2"));
        recent->actions().at(0)->trigger();
        QCOMPARE(m_bench->window.openedDirectories, QStringList{in("pics")});
        recent->actions().constLast()->trigger();
        QCOMPARE(m_bench->window.tools, QStringList{"miRecentClear"});
        recent->close();
        if (menu())
            menu()->close();
        showPlaylist();
        m_panel->RunTool(QStringLiteral("showcontextmenu"));
        QCOMPARE(rows().join(u' '), QStringLiteral("miDelete - tConvert - tDelete tClear - miAdd"));
    }

    void toolsOfTheMenuAct()
    {
        show();
        lPlaylist().selectionModel()->select(lPlaylist().model()->index(1, 0), QItemSelectionModel::Select);
        choose("tMoveSelPlaylist");
        QCOMPARE(playlist().PlaylistFiles(), QStringList{in("pics/b.jpg")});
        QCOMPARE(m_list->GetSelectedTab(), 1);
        playlist().AddPlaylistFile(in("pics/c.jpg"));
        m_list->finishRebuild();
        lPlaylist().selectionModel()->select(lPlaylist().model()->index(0, 0), QItemSelectionModel::Select);
        choose("tDelete");
        QCOMPARE(playlist().PlaylistFiles(), QStringList{in("pics/c.jpg")});
        QCOMPARE(stored("Auto Playlist"), QStringList{in("pics/c.jpg")});
        choose("tClear");
        QCOMPARE(playlist().PlaylistFiles(), QStringList());
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("Auto Playlist"));
        QTRY_COMPARE(stored("Auto Playlist"), QStringList());
        QTRY_COMPARE(text("lPlaylistInfo"), QStringLiteral("0 Images"));
    }

    void toolsWithoutACommandDoNothing()
    {
        show();
        showPlaylist();
        playlist().AddPlaylistFile(in("pics/c.jpg"));
        int asked = 0;
        const platform::SaveChooserAnswerer saves([&](const platform::SaveChooser&) {
            ++asked;
            return QString();
        });
        m_panel->RunTool(QStringLiteral("saveplaylistinternal"));
        QCOMPARE(asked, 0);
        QCOMPARE(stored("Auto Playlist"), QStringList());
        QVERIFY(m_bench->window.tools.isEmpty());
        QTRY_COMPARE(stored("Auto Playlist"), QStringList{in("pics/c.jpg")}); // the list saves itself
    }

    void theEditorIsWanted()
    {
        show();
        showPlaylist();
        QSignalSpy wanted(m_panel, &Playlist::editorWanted);
        click("iPlaylistEditor");
        click("lPlaylistEditor");
        for (const int key : {Qt::Key_Return, Qt::Key_Space}) // which no button of the toolkit has both
            QTest::keyClick(part("iPlaylistEditor"), Qt::Key(key));
        QCOMPARE(wanted.count(), 4);
        QTest::mousePress(part("lPlaylistEditor"), Qt::LeftButton);
        QTest::mouseRelease(part("lPlaylistEditor"), Qt::LeftButton, {}, QPoint(-20, -20));
        QCOMPARE(wanted.count(), 4);
    }

    void filesAreDroppedOnThePlaylist()
    {
        show();
        showPlaylist();
        m_bench->home.write(QStringLiteral("more/x.jpg"), "x");
        m_bench->home.write(QStringLiteral("note.txt"), "x");
        const std::unique_ptr<QMimeData> data(urlsOf(
            {in("pics/b.jpg"), QStringLiteral("https://example.org/z.jpg"), in("note.txt"), in("more")}));
        QWidget* const target = lPlaylist().viewport();
        QVERIFY(target->acceptDrops());
        QDragEnterEvent enter({10, 10}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        enter.ignore();
        QCoreApplication::sendEvent(target, &enter);
        QVERIFY(enter.isAccepted());
        QDragMoveEvent move({10, 10}, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        move.ignore();
        QCoreApplication::sendEvent(target, &move);
        QVERIFY(move.isAccepted());
        QDropEvent drop(QPointF(10, 10), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
        drop.setDropAction(Qt::MoveAction); // as its source would like it
        drop.ignore();
        QCoreApplication::sendEvent(target, &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(drop.dropAction(), Qt::CopyAction);
        QVERIFY(playlist().PlaylistFiles().isEmpty()); // the drag's source goes on first
        QTRY_COMPARE(playlist().PlaylistFiles(), QStringList({in("pics/b.jpg"), in("more/x.jpg")}));
        QTRY_COMPARE(stored("Auto Playlist").size(), 2);
    }

    void whatIsNoFileIsNotTaken()
    {
        show();
        showPlaylist();
        QMimeData text;
        text.setText(QStringLiteral("words"));
        const std::unique_ptr<QMimeData> web(urlsOf({QStringLiteral("https://example.org/z.jpg")}));
        for (QMimeData* const data : {&text, web.get()}) {
            QDragEnterEvent enter({10, 10}, Qt::CopyAction, data, Qt::LeftButton, {});
            enter.accept();
            QCoreApplication::sendEvent(lPlaylist().viewport(), &enter);
            QVERIFY(!enter.isAccepted());
        }
    }

    void theFoldersFaceLeavesDropsToTheWindow()
    {
        show();
        showPlaylist();
        m_list->SelectTab(0);
        endAnimation();
        // A drop goes to the first window around the pointer that takes drops.
        for (const char* name : {"lPlaylist", "ftv", "cmdDir"}) {
            const QWidget* taker = m_around->childAt(part(name)->mapTo(m_around.get(), QPoint(5, 5)));
            QVERIFY2(taker, name);
            while (taker && !taker->acceptDrops())
                taker = taker->parentWidget();
            QVERIFY2(taker == m_around.get(), name);
        }
    }

    void endingDuringADialogCostsNothing()
    {
        show();
        showPlaylist();
        const platform::FileChooserAnswerer opens([this](const platform::FileChooser&) {
            delete std::exchange(m_panel, nullptr);
            return QString();
        });
        m_panel->RunTool(QStringLiteral("openplaylist"));
        QVERIFY(!m_panel);
    }
};

QTEST_MAIN(TestPlaylistFaceMenus)
#include "tst_playlistfacemenus.moc"
