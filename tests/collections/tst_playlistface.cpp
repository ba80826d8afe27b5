// The playlist's face of the panel, driven by mouse and keys.
#include "app/Settings.h"
#include "collections/BatchActions.h"
#include "collections/EntryView.h"
#include "collections/PanelTabs.h"
#include "collections/PictureList.h"
#include "collections/Playlist.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistHead.h"
#include "collections/PlaylistKeeper.h"
#include "collections/QolText.h"
#include "ListBench.h"
#include "platform/Dialogs.h"
#include "platform/FolderTree.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia;
using collections::PictureList;
using collections::Playlist;

namespace {

/// A window around the panel that takes drops itself, as the main window does.
class DropWindow : public QWidget
{
  public:
    DropWindow() { setAcceptDrops(true); }
};

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

class TestPlaylistFace : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ListBench> m_bench;
    std::unique_ptr<PictureList> m_list;
    std::unique_ptr<collections::PlaylistCommands> m_commands;
    std::unique_ptr<collections::BatchActions> m_batch;
    std::unique_ptr<DropWindow> m_around;
    Playlist* m_panel = nullptr;

    QString in(const char* name) const { return m_bench->in(name); }
    collections::PlaylistKeeper& playlist() const { return *m_list->playlist(); }
    QWidget* part(const char* name) const { return m_panel->findChild<QWidget*>(QLatin1String(name)); }
    collections::EntryView& lPlaylist() const { return *m_panel->findChild<collections::EntryView*>(); }
    collections::PlaylistHead& head() const { return *m_panel->findChild<collections::PlaylistHead*>(); }
    QString text(const char* label) const
    {
        return m_panel->findChild<QLabel*>(QLatin1String(label))->text();
    }
    QTimer& tAni() const { return *m_panel->findChild<QTimer*>(QStringLiteral("tAni")); }
    QStringList stored(const char* name) const
    {
        QFile file(collections::namedPlaylistPath(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? collections::qolPaths(file.readAll()) : QStringList("(none)");
    }
    void makePlaylist(const char* name, const QStringList& files)
    {
        playlist().ClearPlaylist();
        playlist().AddPlaylistFiles(files);
        playlist().SaveQOLPlaylist(collections::namedPlaylistPath(QLatin1String(name)));
        playlist().fillNames();
    }
    void click(const char* name) { QTest::mouseClick(part(name), Qt::LeftButton); }
    static QMenu* menu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QString menuName() { return menu() ? menu()->objectName() : QString(); }
    static QAction* row(const char* tool)
    {
        return menu() ? menu()->findChild<QAction*>(QLatin1String(tool)) : nullptr;
    }
    static QStringList rows()
    {
        QStringList names;
        for (const QAction* const action : menu()->actions()) {
            if (action->isVisible())
                names << (action->isSeparator() ? QStringLiteral("-") : action->objectName());
        }
        return names;
    }
    /// Opens the menu of the list and chooses a tool of it.
    void choose(const char* tool)
    {
        m_panel->RunTool(QStringLiteral("showcontextmenu"));
        QVERIFY2(row(tool), tool);
        row(tool)->trigger();
        menu()->close();
    }
    void tick() const
    {
        QTimerEvent event(tAni().timerId());
        QCoreApplication::sendEvent(&tAni(), &event);
    }
    /// Does at once what is left of the tabs' way.
    void endAnimation() const
    {
        for (int ticks = 0; ticks < 200 && tAni().isActive(); ++ticks)
            tick();
        QVERIFY(!tAni().isActive());
    }
    void showPlaylist()
    {
        m_list->SelectTab(1);
        m_list->finishRebuild();
        endAnimation();
    }

    void show()
    {
        m_around = std::make_unique<DropWindow>();
        m_panel = new Playlist(m_list.get(), *m_commands, *m_batch, m_bench->window, m_around.get());
        m_around->resize(260, 600);
        m_panel->resize(260, 600);
        m_around->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_around.get()));
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<test::ListBench>();
        m_list = std::make_unique<PictureList>([this] { return m_bench->window.current; });
        m_commands = std::make_unique<collections::PlaylistCommands>(m_list.get());
        m_batch = std::make_unique<collections::BatchActions>(m_list.get());
        m_list->SetPattern(QStringLiteral("*.jpg"));
        m_list->startUp();
        m_list->setPath(in("pics"));
        m_list->finishRebuild();
    }
    void cleanup()
    {
        if (QWidget* const open = QApplication::activePopupWidget())
            open->close();
        m_around.reset();
        m_panel = nullptr;
        m_batch.reset();
        m_commands.reset();
        m_list.reset();
        m_bench.reset();
    }

    void theFirstPlaylistShowsItsName()
    {
        show();
        showPlaylist();
        QCOMPARE(head().name(), QStringLiteral("Auto Playlist"));
        QCOMPARE(text("lPlaylistName"), QStringLiteral("Playlist: Auto Playlist"));
        QCOMPARE(stored("Auto Playlist"), QStringList());
    }

    void eachFaceHasItsParts()
    {
        show();
        const auto visible = [this] {
            QStringList names;
            for (const char* name : {"ftv", "pFilelist", "cmdDir", "cmdPlaylist", "pInternalPlaylist",
                                     "ptPlaylist", "iAddToPlaylist", "lPlaylistEditor", "lPlaylist"}) {
                if (part(name)->isVisible())
                    names << QLatin1String(name);
            }
            return names.join(u' ');
        };
        const QString folders = QStringLiteral("ftv pFilelist cmdDir cmdPlaylist lPlaylist");
        QCOMPARE(visible(), folders);
        m_list->SelectTab(1);
        QCOMPARE(visible(),
                 QStringLiteral("pInternalPlaylist ptPlaylist iAddToPlaylist lPlaylistEditor lPlaylist"));
        QCOMPARE(text("ltab1"), QStringLiteral("Folders")); // which the animation exchanges
        QCOMPARE(lPlaylist().model()->rowCount(), 0);       // until the rebuild
        endAnimation();
        QCOMPARE(text("ltab1"), QStringLiteral("Playlist"));
        m_list->SelectTab(0);
        QCOMPARE(visible(), folders);
        endAnimation();
        QCOMPARE(text("ltab1"), QStringLiteral("Folders"));
        QTRY_COMPARE(lPlaylist().model()->rowCount(), 5);
    }

    void toolTipsAndNames_data()
    {
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("accessible");
        QTest::newRow("iAddToPlaylist") << "Add Images to Playlist"
                                        << "Add Images to Playlist";
        QTest::newRow("iRemovePlaylist") << "Remove Images from Playlist"
                                         << "Remove Images from Playlist";
        QTest::newRow("iImportPlaylist") << "Import Playlist from File"
                                         << "Import Playlist from File";
        QTest::newRow("iExportPlaylist") << "Export Playlist to File"
                                         << "Export Playlist to File";
        QTest::newRow("iPlaylistEditor") << "Save Playlist As..."
                                         << "Playlist Editor";
        QTest::newRow("lPlaylistEditor") << "Save Playlist As..."
                                         << "";
    }

    void toolTipsAndNames()
    {
        show();
        const QWidget* const shown = part(QTest::currentDataTag());
        QTEST(shown->toolTip(), "toolTip");
        QTEST(shown->accessibleName(), "accessible");
        QCOMPARE(text("lPlaylistEditor"), QStringLiteral("Playlist Editor"));
    }

    void partsHaveTheirPlaces()
    {
        show();
        showPlaylist();
        for (const QSize size : {QSize(260, 600), QSize(180, 400), QSize(120, 300)}) {
            m_panel->resize(size);
            const QRect name = part("pInternalPlaylist")->geometry();
            const QRect list = lPlaylist().geometry();
            const QRect buttons = part("ptPlaylist")->geometry();
            const QRect info = part("lPlaylistInfo")->geometry();
            QCOMPARE(list.x(), 1);
            QVERIFY(name.y() >= part("tab1")->height());
            QVERIFY(list.y() >= name.bottom());
            QVERIFY(buttons.y() >= list.bottom());
            QVERIFY(info.y() >= buttons.bottom());
            QVERIFY(info.bottom() <= size.height());
            QVERIFY(list.height() > size.height() / 2);
            for (const char* each : {"iAddToPlaylist", "iRemovePlaylist", "iImportPlaylist",
                                     "iExportPlaylist", "iPlaylistEditor", "lPlaylistEditor"}) {
                const QWidget* const shown = part(each);
                const QRect place(shown->mapTo(m_panel, QPoint()), shown->size());
                QVERIFY2(buttons.contains(place), each); // nothing is cut off
                QVERIFY2(shown->width() >= shown->sizeHint().width(), each);
            }
        }
    }

    void theTabBehindChangesTheFace()
    {
        show();
        click("tab2");
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QCOMPARE(app::read(app::setting::PlaylistTab), 1);
        endAnimation();
        QTest::keyClick(part("tab2"), Qt::Key_Space);
        QCOMPARE(m_list->GetSelectedTab(), 0);
        endAnimation();
        QTest::keyClick(part("tab2"), Qt::Key_Return);
        QCOMPARE(m_list->GetSelectedTab(), 1);
    }

    void clicksDuringTheAnimationEndInOnePlace()
    {
        show();
        tAni().setInterval(100000);
        for (const int ticks : {5, 60, 30, 20, 3}) {
            QTest::mouseClick(part("tab2"), Qt::LeftButton, {}, {part("tab2")->width() - 2, 8});
            for (int i = 0; i < ticks; ++i)
                tick();
            QVERIFY(tAni().isActive());
        }
        endAnimation();
        const bool folders = m_list->FolderMode();
        QCOMPARE(text("ltab1"), folders ? QStringLiteral("Folders") : QStringLiteral("Playlist"));
        QCOMPARE(part("ftv")->isVisible(), folders);
        QCOMPARE(part("ptPlaylist")->isVisible(), !folders);
    }

    void aTabCanBeTakenAway()
    {
        show();
        m_list->TabEnabled(0, false); // the folders' face is left first
        QVERIFY(part("tab2")->isHidden());
        QCOMPARE(m_list->GetSelectedTab(), 1);
        QVERIFY(part("ptPlaylist")->isVisible());
        m_list->SelectTab(0);
        QVERIFY(part("tab2")->isVisible());
    }

    void aPanelMadeOnThePlaylistShowsIt()
    {
        m_list->SelectTab(1);
        m_list->finishRebuild();
        show();
        QCOMPARE(text("ltab1"), QStringLiteral("Playlist"));
        QVERIFY(!part("ftv")->isVisible());
        QVERIFY(!tAni().isActive());
        m_list->SelectTab(0);
        auto* const tree = m_panel->findChild<platform::FolderTree*>();
        QCOMPARE(tree->selectedFolder(), in("pics"));
    }

    void tabLeadsThroughTheParts()
    {
        show();
        showPlaylist();
        m_around->activateWindow();
        QTRY_VERIFY(m_around->isActiveWindow());
        part("tab2")->setFocus(Qt::TabFocusReason);
        for (const char* next : {"pPlaylistBox", "lPlaylist", "iAddToPlaylist", "iRemovePlaylist",
                                 "iImportPlaylist", "iExportPlaylist", "iPlaylistEditor", "tab2"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1String(next));
        }
    }

    void aNameIsLoaded()
    {
        makePlaylist("one", {in("pics/a.jpg")});
        makePlaylist("two", {in("pics/b.jpg"), in("pics/c.jpg")});
        show();
        showPlaylist();
        QCOMPARE(text("lPlaylistName"), QStringLiteral("Playlist: two"));
        QCOMPARE(m_list->ListCount(), 2);
        Q_EMIT head().chosen(QStringLiteral("one"));
        QCOMPARE(text("lPlaylistName"), QStringLiteral("Playlist: one"));
        QTRY_COMPARE(m_list->files(), QStringList{in("pics/a.jpg")});
        QVERIFY(QFile::remove(collections::namedPlaylistPath(QStringLiteral("two"))));
        Q_EMIT head().chosen(QStringLiteral("two")); // which has gone
        QCOMPARE(playlist().ActivePlaylist(), QStringLiteral("one"));
        QVERIFY(m_list->IsReady());
    }

    void theNamesFollow()
    {
        show();
        showPlaylist();
        auto* const combo = m_panel->findChild<QComboBox*>(QStringLiteral("cboPlaylist"));
        QCOMPARE(combo->count(), 1);
        makePlaylist("zoo", {});
        QCOMPARE(combo->count(), 2);
        QTest::keyClick(part("pPlaylistBox"), Qt::Key_Space);
        QVERIFY(combo->isVisible());
        QCOMPARE(combo->currentText(), QStringLiteral("zoo"));
        head().hideList();
    }

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

    void aMissingFileIsShownInTheDisabledColour()
    {
        show();
        showPlaylist();
        playlist().AddPlaylistFiles({in("pics/a.jpg"), in("pics/b.jpg")});
        m_list->finishRebuild();
        const auto entry = [this](int row, int role) {
            return lPlaylist().model()->index(row, 0).data(role);
        };
        QVERIFY(!entry(0, Qt::ForegroundRole).isValid());
        QVERIFY(QFile::remove(in("pics/a.jpg")));
        m_list->RefreshPlaylist();
        QTRY_COMPARE(entry(0, Qt::DisplayRole).toString(), QStringLiteral("File Not Found: 1. a (JPG)"));
        const QColor disabled = QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
        QCOMPARE(entry(0, Qt::ForegroundRole).value<QColor>(), disabled);
        QVERIFY(!entry(1, Qt::ForegroundRole).isValid());
        m_bench->home.write(QStringLiteral("pics/a.jpg"), "x");
        m_list->SetUpdateInterval(5);
        QTRY_COMPARE(entry(0, Qt::DisplayRole).toString(), QStringLiteral("1. a (JPG)"));
        QVERIFY(!entry(0, Qt::ForegroundRole).isValid());
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

QTEST_MAIN(TestPlaylistFace)
#include "tst_playlistface.moc"
