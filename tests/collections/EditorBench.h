// The playlist editor on the screen, over a folder of files and playlists of them.
#pragma once

#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "collections/EntryView.h"
#include "collections/Filmstrip.h"
#include "collections/PlaylistEditor.h"
#include "collections/PlaylistFolder.h"
#include "collections/QolText.h"
#include "platform/FolderTree.h"
#include "support/QolPaths.h"
#include "support/ScratchHome.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>

namespace quorvia::test {

/// One for a whole program, as the trash is looked for once a process: begin() and end() stand around each
/// test.
class EditorBench
{
  public:
    /// The folder "pics" with a.jpg to e.jpg and a text, and settings that name it.
    void begin() const
    {
        app::openSettings();
        for (const char* name : {"a.jpg", "B.jpg", "c.png", "d.jpg", "e.jpg", "notes.txt"})
            home.write(QStringLiteral("pics/") + QLatin1String(name), "x");
        QDir().mkpath(collections::playlistFolder());
        app::save(app::setting::LastDirectory, in("pics"));
    }
    void end()
    {
        editor.reset();
        app::closeSettings();
        for (const char* name : {"pics", "other", "root", ".local", ".config", "machine"})
            QDir(in(name)).removeRecursively();
    }

    QString in(const char* name) const { return home.path(QString::fromUtf8(name)); }
    static QString named(const char* name) { return collections::namedPlaylistPath(QString::fromUtf8(name)); }
    QStringList pathsOf(const QList<const char*>& names) const
    {
        QStringList paths;
        for (const char* name : names)
            paths += in("pics/") + QString::fromUtf8(name);
        return paths;
    }
    /// Writes the named playlist `name` of files of "pics".
    void writeList(const char* name, const QList<const char*>& names) const
    {
        home.write(QDir(in("")).relativeFilePath(named(name)),
                   collections::qolText(pathsOf(names), QDate(2001, 1, 1)));
    }
    static QByteArray bytesAt(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    /// The names of the files that stand in the named playlist `name`.
    static QStringList stored(const char* name) { return namesOf(test::qolPaths(bytesAt(named(name)))); }
    static QStringList namesOf(QStringList paths)
    {
        for (QString& path : paths)
            path = path.section(u'/', -1);
        return paths;
    }
    QString log() const { return QString::fromUtf8(bytesAt(in(".local/state/quorvia/qolog.log"))); }
    QStringList trashed() const
    {
        return QDir(in(".local/share/Trash/files")).entryList(QDir::Files | QDir::Hidden);
    }

    /// Shows the editor with the playlist `name` (may be empty) in hand.
    void show(const char* name = "")
    {
        editor = std::make_unique<collections::PlaylistEditor>();
        editor->SetActivePlaylist(QString::fromUtf8(name));
        editor->resize(900, 600);
        editor->show();
        QVERIFY(QTest::qWaitForWindowActive(editor.get()));
    }

    /// The editor with "abcde", of all pictures, in hand.
    void showAll()
    {
        writeList("abcde", {"a.jpg", "B.jpg", "c.png", "d.jpg", "e.jpg"});
        show("abcde");
    }

    template <class Part>
    Part& part(const char* name) const
    {
        return *editor->findChild<Part*>(QLatin1String(name));
    }
    collections::EntryView& fFiles() const { return part<collections::EntryView>("fFiles"); }
    collections::EntryView& lPlaylist() const { return part<collections::EntryView>("lPlaylist"); }
    platform::FolderTree& fDir() const { return part<platform::FolderTree>("fDir"); }
    QComboBox& cPlaylist() const { return part<QComboBox>("cPlaylist"); }
    collections::Filmstrip& filmstrip() const { return part<collections::Filmstrip>("Filmstrip"); }
    collections::Filmstrip& filmstrip2() const { return part<collections::Filmstrip>("Filmstrip2"); }
    QTimer& tFilm() const { return *editor->findChild<QTimer*>(QStringLiteral("tFilm")); }
    QString help() const { return part<QLabel>("lHelp").text(); }
    QString tag() const { return cPlaylist().property("tag").toString(); }

    static QStringList lines(const QAbstractItemView& list)
    {
        QStringList all;
        for (int row = 0; row < list.model()->rowCount(); ++row)
            all += list.model()->index(row, 0).data().toString();
        return all;
    }
    QStringList entries() const { return lines(lPlaylist()); }
    static QList<int> selected(const QAbstractItemView& list)
    {
        QList<int> rows;
        for (const QModelIndex& index : list.selectionModel()->selectedIndexes())
            rows.append(index.row());
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    static QPoint place(const QAbstractItemView& list, int row)
    {
        return list.visualRect(list.model()->index(row, 0)).center();
    }
    static void click(QAbstractItemView& list, int row, Qt::KeyboardModifiers held = {})
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, held, place(list, row));
    }
    static void doubleClick(QAbstractItemView& list, int row)
    {
        click(list, row);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place(list, row));
    }
    /// Clicks `iImg` of `index`.
    void press(int index) const
    {
        QTest::mouseClick(&part<QAbstractButton>(qPrintable(QStringLiteral("iImg%1").arg(index))),
                          Qt::LeftButton);
    }
    /// The tick that is due, at once.
    void tick() const
    {
        QVERIFY(tFilm().isActive());
        tFilm().stop();
        Q_EMIT tFilm().timeout({});
    }
    /// Chooses `line` of the combo (from the end when below 0), as a user does.
    void choose(int line) const
    {
        const int index = line < 0 ? cPlaylist().count() + line : line;
        cPlaylist().setCurrentIndex(index);
        Q_EMIT cPlaylist().activated(index);
    }

    ScratchHome home;
    std::unique_ptr<collections::PlaylistEditor> editor;
};

} // namespace quorvia::test
