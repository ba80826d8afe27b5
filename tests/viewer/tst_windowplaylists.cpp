// Playlists in the main window: opened, walked, left and found again.
#include "app/Settings.h"
#include "collections/frmImageViewPlaylistEditor.h"
#include "collections/PlaylistEditor.h"
#include "collections/PlaylistFolder.h"
#include "collections/QolText.h"
#include "support/QolPaths.h"
#include "viewer/ViewerBench.h"

#include <QDir>
#include <QFile>
#include <QPointer>
#include <QTest>

using namespace quorvia;
using collections::frmImageViewPlaylistEditor;
using test::ViewerBench;
using viewer::frmImageView;

class TestWindowPlaylists : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

    QString in(const char* name) const { return m_bench->in(name); }
    /// Writes a playlist of pictures of the bench, and gives its path.
    QString writeList(const QString& path, const QList<const char*>& names) const
    {
        QStringList files;
        for (const char* name : names)
            files += in(name);
        return m_bench->home.write(QDir(in("")).relativeFilePath(path),
                                   collections::qolText(files, QDate(2001, 1, 1)));
    }
    static frmImageViewPlaylistEditor& openEditor(frmImageView& window)
    {
        run(window, "miPlaylistEditor");
        const auto editors = window.findChildren<frmImageViewPlaylistEditor*>();
        if (editors.size() != 1)
            qFatal("the editor has not opened");
        return *editors.constFirst();
    }
    static void run(frmImageView& window, const char* command) { window.RunTool(QLatin1String(command)); }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<ViewerBench>();
        m_bench->threePictures();
        m_bench->picture(QStringLiteral("other/d.png"), Qt::white);
    }
    void cleanup() { m_bench.reset(); }

    void onTheCommandLineItShowsItsFirstImage()
    {
        const QString list = writeList(in("my list.qol"), {"pics/b.png", "other/d.png"});
        frmImageView& window = m_bench->load({list});
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QCOMPARE(window.list()->GetSelectedTab(), 1);
        QCOMPARE(window.playlist()->ActivePlaylist(), QStringLiteral("my list"));
        run(window, "miNext");
        QCOMPARE(window.currentFile(), in("other/d.png"));
        run(window, "miNext"); // and around
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QVERIFY(m_bench->boxes.empty());
    }

    void openedLaterItFillsTheListOnly()
    {
        const QString list = writeList(in("x.qol"), {"other/d.png"});
        frmImageView& window = m_bench->load({in("pics/a.png")});
        window.OpenX(list);
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        QCOMPARE(window.list()->ListFile(0), in("other/d.png"));
        QCOMPARE(window.list()->ListCount(), 1);
        run(window, "miNext"); // from none
        QCOMPARE(window.currentFile(), in("other/d.png"));
        QCOMPARE(window.list()->ListCount(), 1); // the list stays when its image is shown
    }

    void aFolderBringsTheFoldersToTheFront()
    {
        frmImageView& window = m_bench->load({writeList(in("x.qol"), {"other/d.png"})});
        QCOMPARE(window.list()->GetSelectedTab(), 1);
        window.OpenDirX(in("pics"));
        QCOMPARE(window.list()->GetSelectedTab(), 0);
        QCOMPARE(window.list()->path(), in("pics"));
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        QCOMPARE(app::read(app::setting::PlaylistTab), 0);
    }

    void theNextRunFindsItAsItWasLeft()
    {
        const QString path =
            writeList(collections::namedPlaylistPath(QStringLiteral("Holiday")), {"pics/b.png"});
        {
            frmImageView& window = m_bench->load({in("pics")});
            window.OpenX(path);
            QVERIFY(window.playlist()->AddPlaylistFile(in("other/d.png")));
            m_bench->close();
        }
        QCOMPARE(app::read(app::setting::ActivePlaylist), path);
        frmImageView& window = m_bench->load();
        QCOMPARE(window.playlist()->ActivePlaylist(), QStringLiteral("Holiday"));
        QCOMPARE(window.list()->GetSelectedTab(), 1);
        QCOMPARE(window.list()->ListCount(), 2);
        QCOMPARE(window.list()->ListFile(1), in("other/d.png"));
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        m_bench->close();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(),
                 collections::qolText({in("pics/b.png"), in("other/d.png")}, QDate::currentDate()));
    }

    void renamedFilesAreFollowed()
    {
        frmImageView& window = m_bench->load({writeList(in("x.qol"), {"pics/b.png", "pics/b.png"})});
        QVERIFY(QFile::rename(in("pics/b.png"), in("pics/z.png")));
        window.playlist()->RenamePlaylist(in("pics/b.png"), in("pics/z.png"));
        window.list()->finishRebuild();
        QCOMPARE(window.list()->files(), QStringList({in("pics/z.png"), in("pics/z.png")}));
        QCOMPARE(window.list()->List(1), QStringLiteral("2. z (PNG)"));
    }

    void theEditorTakesTheOpenPlaylistInHand()
    {
        const QString path =
            writeList(collections::namedPlaylistPath(QStringLiteral("x")), {"pics/b.png", "other/d.png"});
        frmImageView& window = m_bench->load({path});
        QVERIFY(window.playlist()->AddPlaylistFile(in("pics/a.png"))); // its save is still to come
        frmImageViewPlaylistEditor& editor = openEditor(window);
        QVERIFY(editor.isVisible());
        QCOMPARE(editor.windowModality(), Qt::ApplicationModal);
        QCOMPARE(editor.editor()->ActivePlaylist(), QStringLiteral("x"));
        run(window, "miPlaylistEditor"); // there is no second one
        QCOMPARE(window.findChildren<frmImageViewPlaylistEditor*>().size(), 1);
        editor.editor()->AddPlaylistFile(in("pics/b.png"));
        QCOMPARE(window.playlist()->list()->playlist()->PlaylistFiles().size(), 3);
        editor.close();
        QCOMPARE(window.playlist()->list()->playlist()->PlaylistFiles(),
                 QStringList({in("pics/b.png"), in("other/d.png"), in("pics/a.png"), in("pics/b.png")}));
        QTRY_VERIFY(!window.findChild<frmImageViewPlaylistEditor*>());
    }

    void whatTheEditorDeletedIsNotMadeAgain()
    {
        const QString path = writeList(collections::namedPlaylistPath(QStringLiteral("x")), {"pics/b.png"});
        frmImageView& window = m_bench->load({path});
        frmImageViewPlaylistEditor& editor = openEditor(window);
        QVERIFY(QFile::remove(path));
        editor.editor()->SetActivePlaylist(QStringLiteral("y"));
        editor.close();
        QVERIFY(!QFile::exists(path));
        QCOMPARE(window.playlist()->ActivePlaylist(), QStringLiteral("y"));
        QVERIFY(!window.playlist()->list()->playlist()->names().contains(QStringLiteral("x")));
    }

    void theEndDoesNotBringBackWhatTheEditorDeleted()
    {
        const QString path = writeList(collections::namedPlaylistPath(QStringLiteral("x")), {"pics/b.png"});
        frmImageView& window = m_bench->load({path});
        openEditor(window).editor()->SetActivePlaylist(QStringLiteral("y"));
        QVERIFY(QFile::remove(path));
        m_bench->close();
        QVERIFY(!QFile::exists(path));
        QCOMPARE(app::read(app::setting::ActivePlaylist),
                 collections::namedPlaylistPath(QStringLiteral("y")));
    }

    void anEndWithoutASaveEndsAllTheSame()
    {
        const QString path = writeList(collections::namedPlaylistPath(QStringLiteral("x")), {"pics/b.png"});
        frmImageView& window = m_bench->load({path});
        frmImageViewPlaylistEditor& shown = openEditor(window);
        const QPointer<frmImageViewPlaylistEditor> editor = &shown;
        shown.editor()->AddPlaylistFile(in("other/d.png"));
        QVERIFY(QFile::remove(path));
        QVERIFY(QDir().mkpath(path)); // what can be no list
        m_bench->close();
        const QWidget* const left = editor.data();
        QVERIFY(!left || left->isHidden());
    }

    void theEndSavesWhatIsInHand()
    {
        const QString path = writeList(collections::namedPlaylistPath(QStringLiteral("x")), {"pics/b.png"});
        frmImageView& window = m_bench->load({path});
        openEditor(window).editor()->AddPlaylistFile(in("other/d.png"));
        m_bench->close();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(test::qolPaths(file.readAll()), QStringList({in("pics/b.png"), in("other/d.png")}));
    }
};

QTEST_MAIN(TestWindowPlaylists)
#include "tst_windowplaylists.moc"
