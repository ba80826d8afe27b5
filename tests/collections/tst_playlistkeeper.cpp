// The open playlist: opened, changed, saved by itself.
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/PlaylistFolder.h"
#include "collections/PlaylistKeeper.h"
#include "collections/QolText.h"
#include "platform/Dialogs.h"
#include "platform/LongWork.h"
#include "support/FullDisk.h"
#include "support/QolPaths.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace quorvia;
using collections::namedPlaylistPath;
using collections::PlaylistKeeper;

class TestPlaylistKeeper : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    std::unique_ptr<PlaylistKeeper> m_keeper;

    QString in(const char* name) const { return m_home->path(QString::fromUtf8(name)); }
    QStringList pathsOf(const QList<const char*>& names) const
    {
        QStringList paths;
        for (const char* name : names)
            paths += in(name);
        return paths;
    }
    static QString named(const char* name) { return namedPlaylistPath(QLatin1String(name)); }
    /// Writes a playlist of pictures of the home.
    void writeList(const QString& path, const QList<const char*>& names) const
    {
        m_home->write(QDir(in("")).relativeFilePath(path),
                      collections::qolText(pathsOf(names), QDate(2001, 1, 1)));
    }
    static QByteArray bytesAt(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    /// The files that stand in a playlist file.
    static QStringList stored(const QString& path) { return test::qolPaths(bytesAt(path)); }
    QTimer& tPlaylistSave() const { return *m_keeper->findChild<QTimer*>(QStringLiteral("tPlaylistSave")); }
    void tick() const
    {
        QVERIFY(tPlaylistSave().isActive());
        tPlaylistSave().stop();
        Q_EMIT tPlaylistSave().timeout({});
    }

    /// The playlist "a" of a.jpg in hand, to which b.jpg was added while the disk was full.
    void addInVain() const
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        m_keeper->AddPlaylistFile(in("b.jpg"));
        {
            const test::FullDisk disk(10); // no log is written yet
            QVERIFY(disk.isFull());
            m_keeper->saveOpen();
        }
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        app::openSettings();
        for (const char* name : {"a.jpg", "b.jpg", "c.jpg"})
            m_home->write(QLatin1String(name), "x");
        m_keeper = std::make_unique<PlaylistKeeper>();
    }
    void cleanup()
    {
        m_keeper.reset();
        app::closeSettings();
        m_home.reset();
    }

    void aLoadTakesListAndName()
    {
        QSignalSpy loaded(m_keeper.get(), &PlaylistKeeper::loaded);
        QSignalSpy renamed(m_keeper.get(), &PlaylistKeeper::nameChanged);
        QCOMPARE(m_keeper->ActivePlaylist(), QString());
        writeList(in("else/my.qol list.qol"), {"c.jpg", "gone.jpg", "a.jpg", "c.jpg"});
        m_keeper->LoadQOLPlaylist(in("else/my.qol list.qol"));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"c.jpg", "a.jpg", "c.jpg"}));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("my list"));
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(renamed.count(), 1);
        QCOMPARE(PlaylistKeeper::GetPlaylistFormats(), QStringLiteral(".qol"));
    }

    void anEmptyListIsOpen()
    {
        writeList(named("none"), {});
        m_keeper->LoadQOLPlaylist(named("none"));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("none"));
        QCOMPARE(m_keeper->PlaylistFiles(), QStringList());
    }

    void aFileThatCannotBeReadIsAnEmptyList()
    {
        QVERIFY(QDir().mkpath(in("folder.qol")));
        m_keeper->AddPlaylistFile(in("a.jpg"));
        m_keeper->LoadQOLPlaylist(in("folder.qol"));
        QCOMPARE(m_keeper->PlaylistFiles(), QStringList());
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("folder"));
    }

    void importAsksForAFile()
    {
        writeList(in("x.qol"), {"b.jpg"});
        QString answer;
        QString filters;
        const platform::FileChooserAnswerer answerer([&](const platform::FileChooser& chooser) {
            filters = chooser.filters;
            return answer;
        });
        QSignalSpy refreshed(m_keeper.get(), &PlaylistKeeper::notLoaded);
        QSignalSpy loaded(m_keeper.get(), &PlaylistKeeper::loaded);
        m_keeper->AddPlaylistFile(in("a.jpg"));
        m_keeper->LoadQOLPlaylist(QString());
        QCOMPARE(filters, QStringLiteral("Quorvia Playlist|*.qol"));
        QCOMPARE(refreshed.count(), 1);
        QCOMPARE(loaded.count(), 0);
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg"}));
        answer = in("x.qol");
        m_keeper->LoadQOLPlaylist(QString());
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"b.jpg"}));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("x"));
    }

    void exportAsksForAFile()
    {
        int asked = 0;
        QString answer;
        const platform::SaveChooserAnswerer answerer([&](const platform::SaveChooser& chooser) {
            ++asked;
            [&] {
                QCOMPARE(chooser.filters, QStringLiteral("Quorvia Playlist|*.qol"));
                QCOMPARE(chooser.extension, QStringLiteral("qol"));
            }();
            return answer;
        });
        m_keeper->SaveQOLPlaylist(QString()); // nothing to save: nothing is asked
        QCOMPARE(asked, 0);
        m_keeper->AddPlaylistFile(in("a.jpg"));
        m_keeper->SaveQOLPlaylist(QString());
        QCOMPARE(asked, 1);
        QCOMPARE(m_keeper->ActivePlaylist(), QString());
        answer = in("Out.qol");
        m_keeper->SaveQOLPlaylist(QString());
        QCOMPARE(stored(answer), pathsOf({"a.jpg"}));
        // Its name is the open playlist's from now on, and the next save makes a copy among the named ones.
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("Out"));
        m_keeper->saveOpen();
        QCOMPARE(stored(named("Out")), pathsOf({"a.jpg"}));
        QCOMPARE(m_keeper->names(), QStringList("Out"));
    }

    void aNameIsShownEvenWhenNothingIsWritten()
    {
        m_keeper->SaveQOLPlaylist(in("nowhere/at/all.qol"));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("all"));
        QVERIFY(!QFile::exists(in("nowhere")));
    }

    void anEmptyListIsWrittenUnderAGivenName()
    {
        m_keeper->SaveQOLPlaylist(named("e"));
        QCOMPARE(bytesAt(named("e")), collections::qolText({}, QDate::currentDate()));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("e"));
    }

    void addingLooksAtTheFile()
    {
        QSignalSpy changed(m_keeper.get(), &PlaylistKeeper::filesChanged);
        QVERIFY(m_keeper->AddPlaylistFile(in("a.jpg")));
        QVERIFY(m_keeper->AddPlaylistFile(in("a.jpg")));
        QVERIFY(!m_keeper->AddPlaylistFile(in("gone.jpg")));
        QVERIFY(!m_keeper->AddPlaylistFile(in("")));
        QVERIFY(!m_keeper->AddPlaylistFile(QString()));
        m_home->write(QStringLiteral("two\nlines.jpg"), "x");
        QVERIFY(!m_keeper->AddPlaylistFile(in("two\nlines.jpg")));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "a.jpg"}));
        QCOMPARE(changed.count(), 2);
        m_keeper->AddPlaylistFiles(pathsOf({"b.jpg", "gone.jpg", "c.jpg"}));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "a.jpg", "b.jpg", "c.jpg"}));
        QCOMPARE(changed.count(), 3); // one rebuild for all
        m_keeper->AddPlaylistFiles(pathsOf({"gone.jpg"}));
        QCOMPARE(changed.count(), 3);
    }

    void filesAreTakenOutAndRenamed()
    {
        m_keeper->AddPlaylistFiles(pathsOf({"a.jpg", "b.jpg", "a.jpg", "c.jpg"}));
        QVERIFY(m_keeper->RenamePlaylistFiles(in("a.jpg"), in("z.jpg")));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"z.jpg", "b.jpg", "z.jpg", "c.jpg"}));
        QVERIFY(!m_keeper->RenamePlaylistFiles(in("B.JPG"), in("y.jpg")));
        m_keeper->removeFiles({{2, 3}, {0, 0}});
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"b.jpg"}));
        m_keeper->ClearPlaylist();
        QCOMPARE(m_keeper->PlaylistFiles(), QStringList());
    }

    void aChangeIsSavedBehindIt()
    {
        writeList(named("a"), {});
        m_keeper->LoadQOLPlaylist(named("a"));
        m_keeper->AddPlaylistFile(in("b.jpg"));
        QCOMPARE(tPlaylistSave().interval(), 50);
        QVERIFY(!tPlaylistSave().isActive());
        m_keeper->saveSoon();
        QTRY_COMPARE(stored(named("a")), pathsOf({"b.jpg"}));
        QVERIFY(!tPlaylistSave().isActive());
    }

    void aPendingSaveIsDroppedWhenAnotherIsOpen()
    {
        writeList(named("one"), {"a.jpg"});
        writeList(named("two"), {"b.jpg"});
        m_keeper->LoadQOLPlaylist(named("one"));
        m_keeper->ClearPlaylist();
        m_keeper->saveSoon();
        QCOMPARE(tPlaylistSave().property("tag").toString(), QStringLiteral("one"));
        m_keeper->LoadQOLPlaylist(named("two"));
        m_keeper->ClearPlaylist();
        tick();
        QCOMPARE(stored(named("one")), pathsOf({"a.jpg"}));
        QCOMPARE(stored(named("two")), pathsOf({"b.jpg"}));
        m_keeper->saveSoon();
        tick();
        QCOMPARE(stored(named("two")), QStringList());
    }

    void withoutAPlaylistNothingIsSaved()
    {
        m_keeper->AddPlaylistFile(in("b.jpg"));
        m_keeper->saveSoon();
        tick();
        m_keeper->saveOpen();
        QCOMPARE(QDir(collections::playlistFolder()).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void aSaveThatFailedIsNotForgotten()
    {
        addInVain();
        QCOMPARE(stored(named("a")), pathsOf({"a.jpg"}));
        writeList(named("a"), {"c.jpg"}); // by another program
        m_keeper->saveOpen();
        QCOMPARE(stored(named("a")), pathsOf({"a.jpg", "b.jpg"}));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "b.jpg"}));
    }

    void whatIsBrokenOffChangesNothing()
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        const QStringList many(400000, in("b.jpg"));
        QTimer::singleShot(0, [] { platform::LongWork::cancelAll(); });
        QVERIFY(!m_keeper->AddPlaylistFiles(many));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg"}));

        m_home->write(QStringLiteral("long.qol"), collections::qolText(many, QDate(2001, 1, 1)));
        QSignalSpy loaded(m_keeper.get(), &PlaylistKeeper::loaded);
        QTimer::singleShot(0, [] { platform::LongWork::cancelAll(); });
        m_keeper->LoadQOLPlaylist(in("long.qol"));
        QCOMPARE(loaded.count(), 0);
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("a"));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg"}));
        m_keeper->saveOpen();
        QCOMPARE(stored(named("a")), pathsOf({"a.jpg"}));
    }

    void aLoadThatEndsBehindTheCloseTakesNoEffect()
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        m_home->write(QStringLiteral("long.qol"),
                      collections::qolText(QStringList(200000, in("b.jpg")), QDate(2001, 1, 1)));
        QTimer::singleShot(0, m_keeper.get(), [this] { m_keeper->closeDown(); });
        m_keeper->LoadQOLPlaylist(in("long.qol"));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("a"));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg"}));
        QCOMPARE(app::read(app::setting::ActivePlaylist), named("a"));
    }

    void aRenameIsSaved()
    {
        writeList(named("a"), {"a.jpg", "b.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        QVERIFY(QFile::rename(in("a.jpg"), in("z.jpg")));
        QVERIFY(m_keeper->RenamePlaylistFiles(in("a.jpg"), in("z.jpg")));
        tick();
        QCOMPARE(stored(named("a")), pathsOf({"z.jpg", "b.jpg"}));
    }

    void whatWasAddedWithoutAPlaylistIsKept()
    {
        writeList(named("Auto Playlist"), {"a.jpg"});
        m_keeper->AddPlaylistFile(in("b.jpg"));
        QVERIFY(m_keeper->IntiPlaylist(true));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"b.jpg"}));
        QCOMPARE(stored(named("Auto Playlist")), pathsOf({"b.jpg"}));
    }

    void whatAnotherProgramWroteIsTakenOver()
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        writeList(named("a"), {"a.jpg", "b.jpg"});
        QSignalSpy changed(m_keeper.get(), &PlaylistKeeper::filesChanged);
        m_keeper->saveOpen();
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "b.jpg"}));
        QCOMPARE(stored(named("a")), pathsOf({"a.jpg", "b.jpg"}));
        QCOMPARE(changed.count(), 1);
    }

    void theAutoPlaylist_data()
    {
        QTest::addColumn<bool>("silent");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("opened");
        QTest::newRow("silent") << true << -1 << true;
        QTest::newRow("yes") << false << int(platform::BoxAnswer::Yes) << true;
        QTest::newRow("no") << false << int(platform::BoxAnswer::No) << false;
        QTest::newRow("cancel") << false << int(platform::BoxAnswer::Cancel) << false;
    }

    void theAutoPlaylist()
    {
        QFETCH(bool, silent);
        QFETCH(int, answer);
        QFETCH(bool, opened);
        QList<platform::MessageBox> asked;
        const platform::MessageBoxAnswerer answerer([&](const platform::MessageBox& box) {
            asked.append(box);
            return platform::BoxAnswer(answer);
        });
        QCOMPARE(m_keeper->IntiPlaylist(silent), opened);
        QCOMPARE(asked.size(), silent ? 0 : 1);
        if (!silent) {
            QCOMPARE(asked.at(0).text, QStringLiteral("The are currently no open playlist. Would you like to "
                                                      "create/open 'Auto Playlist' to move images into?"));
            QVERIFY(asked.at(0).buttons == platform::BoxButtons::YesNoCancel);
        }
        QCOMPARE(m_keeper->ActivePlaylist(), opened ? QStringLiteral("Auto Playlist") : QString());
        QCOMPARE(bytesAt(in("root/Playlist/Auto Playlist.qol")),
                 opened ? collections::qolText({}, QDate::currentDate()) : QByteArray("(none)"));
        QCOMPARE(m_keeper->names(), opened ? QStringList("Auto Playlist") : QStringList());
        asked.clear();
        m_keeper->IntiPlaylist(false);
        QCOMPARE(asked.size(), opened ? 0 : 1); // an open one is enough
    }

    void anAutoPlaylistThatIsThereIsOpened()
    {
        writeList(named("Auto Playlist"), {"a.jpg"});
        QVERIFY(m_keeper->IntiPlaylist(true));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg"}));
        QCOMPARE(stored(named("Auto Playlist")), pathsOf({"a.jpg"}));
    }

    void theNextRunFindsItAgain()
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->LoadQOLPlaylist(named("a"));
        m_keeper->AddPlaylistFile(in("b.jpg"));
        m_keeper->closeDown();
        QCOMPARE(app::read(app::setting::ActivePlaylist), in("root/Playlist/a.qol"));
        m_keeper->ClearPlaylist(); // closed: nothing is taken any more
        m_keeper->saveOpen();
        m_keeper->saveSoon();
        m_keeper->LoadQOLPlaylist(named("a"));
        m_keeper->RenamePlaylistFiles(in("b.jpg"), in("c.jpg"));
        QVERIFY(!m_keeper->AddPlaylistFile(in("c.jpg")));
        QVERIFY(!tPlaylistSave().isActive());
        QCOMPARE(stored(named("a")), pathsOf({"a.jpg", "b.jpg"}));

        m_keeper = std::make_unique<PlaylistKeeper>();
        m_keeper->LoadActivePlaylist();
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("a"));
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "b.jpg"}));
    }

    void withNoneOpenTheNextRunHasNone()
    {
        m_keeper->closeDown();
        QCOMPARE(app::read(app::setting::ActivePlaylist), in("root/Playlist/.qol"));
        m_keeper = std::make_unique<PlaylistKeeper>();
        m_keeper->LoadActivePlaylist();
        QCOMPARE(m_keeper->ActivePlaylist(), QString());
    }

    void whatCouldNotBeSavedStays()
    {
        addInVain();
        m_keeper->reloadOpen();
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "b.jpg"}));
        QVERIFY(QFile::remove(named("a")));
        m_keeper->reloadOpen();
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"a.jpg", "b.jpg"}));
        QCOMPARE(m_keeper->ActivePlaylist(), QStringLiteral("a"));
    }

    void reloading()
    {
        writeList(named("a"), {"a.jpg"});
        m_keeper->reloadOpen(); // none is open
        QCOMPARE(m_keeper->ActivePlaylist(), QString());
        m_keeper->LoadQOLPlaylist(named("a"));
        writeList(named("a"), {"c.jpg"});
        writeList(named("b"), {});
        m_keeper->reloadOpen();
        QCOMPARE(m_keeper->PlaylistFiles(), pathsOf({"c.jpg"}));
        QCOMPARE(m_keeper->names(), QStringList({"a", "b"}));
        QVERIFY(QFile::remove(named("a")));
        m_keeper->reloadOpen();
        QCOMPARE(m_keeper->ActivePlaylist(), QString());
        QCOMPARE(m_keeper->PlaylistFiles(), QStringList());
        m_keeper->saveOpen();
        QVERIFY(!QFile::exists(named("a")));
    }
};

QTEST_GUILESS_MAIN(TestPlaylistKeeper)
#include "tst_playlistkeeper.moc"
