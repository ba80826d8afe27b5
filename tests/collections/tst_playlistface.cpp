// The playlist's face of the panel: its parts, its tabs and the names of playlists.
#include "app/Settings.h"
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
#include "PlaylistFaceStage.h"

#include <QComboBox>
#include <QFile>
#include <QtTest>

using namespace quorvia;
using namespace quorvia::test;
using collections::Playlist;

class TestPlaylistFace : public QObject, private PlaylistFaceStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
};

QTEST_MAIN(TestPlaylistFace)
#include "tst_playlistface.moc"
