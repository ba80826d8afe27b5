// Playlist files on the disk: what is read of them, and that nothing is lost by a save.
#include "collections/PlaylistFolder.h"
#include "collections/QolFile.h"
#include "collections/QolText.h"
#include "platform/LongWork.h"
#include "support/FullDisk.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using collections::namedPlaylistPath;
using collections::QolFile;

namespace {

QByteArray bytesAt(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

} // namespace

class TestQolFile : public QObject
{
    Q_OBJECT

  private:
    test::ScratchHome m_home; // one for all: the trash is looked for once a process

    QString in(const char* name) const { return m_home.path(QString::fromUtf8(name)); }
    QString write(const char* name, const QByteArray& bytes) const
    {
        return m_home.write(QString::fromUtf8(name), bytes);
    }
    /// The text of a playlist of pictures of the home, as another program may have written it.
    QByteArray listOf(const QList<const char*>& names) const
    {
        QByteArray text = "# by somebody else\r\n";
        for (const char* name : names)
            text += in(name).toUtf8() + "\r\n";
        return text;
    }
    QStringList pathsOf(const QList<const char*>& names) const
    {
        QStringList paths;
        for (const char* name : names)
            paths += in(name);
        return paths;
    }
    QStringList trashed() const
    {
        return QDir(in(".local/share/Trash/files")).entryList(QDir::Files | QDir::Hidden);
    }
    QByteArray inTrash(const char* name) const
    {
        return bytesAt(in(".local/share/Trash/files/") + QLatin1String(name));
    }
    QString log() const { return QString::fromUtf8(bytesAt(in(".local/state/quorvia/qolog.log"))); }

  private Q_SLOTS:
    void init()
    {
        for (const char* name : {"pics/a.jpg", "pics/b.jpg", "pics/c.jpg"})
            write(name, "x");
        QVERIFY(QDir().mkpath(collections::playlistFolder()));
    }
    void cleanup()
    {
        for (const char* name : {"pics", "root", "other", ".local", "link.qol"})
            QVERIFY(QDir(in(name)).removeRecursively() || QFile::remove(in(name)));
    }

    void entriesWithoutAFileAreLeftOut_data()
    {
        QTest::addColumn<QByteArray>("line"); // "@" is the home
        QTest::addColumn<QString>("file");
        const auto row = [](const char* name, const QByteArray& line, const char* file) {
            QTest::newRow(name) << line << QString::fromUtf8(file);
        };
        row("there", "@/pics/a.jpg", "@/pics/a.jpg");
        row("gone", "@/pics/z.jpg", "");
        row("a folder", "@/pics", "");
        row("blanks", "   ", "");
        row("blanks around", " @/pics/a.jpg", "");
        row("no comment in small letters", "ext:@/pics/a.jpg", "");
        row("relative", "pics/a.jpg", "");
        row("another case", "@/pics/A.JPG", "");
        row("a pattern", "@/pics/?.jpg", "");
        row("from elsewhere", "C:@\\pics\\a.jpg", "@/pics/a.jpg");
        row("from elsewhere, gone", "C:@\\pics\\z.jpg", "");
        row("a drive alone", "C:", "");
        row("a zero byte", QByteArray("@/pics/a.jpg\0", 13), "");
        row("very long", "@/pics/" + QByteArray(100000, 'x'), "");
    }

    void entriesWithoutAFileAreLeftOut()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, file);
        const QString home = in("");
        QByteArray replaced = line;
        QByteArray native = home.toUtf8();
        if (line.contains('\\'))
            native.replace('/', '\\');
        replaced.replace("@", native);
        const QString list =
            write("root/Playlist/x.qol", "# c\r\n" + replaced + "\r\n" + listOf({"pics/b.jpg"}));
        QStringList expected;
        if (!file.isEmpty())
            expected += file.replace(u'@', home);
        QCOMPARE(QolFile().load(list, nullptr), std::optional(expected + pathsOf({"pics/b.jpg"})));
    }

    void whatIsNoPlaylistIsEmpty_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << in("other/none.qol");
        QTest::newRow("a folder") << in("pics");
        QTest::newRow("a pipe") << in("other/pipe.qol");
        QTest::newRow("a device") << "/dev/zero";
        QTest::newRow("nothing") << "";
    }

    void whatIsNoPlaylistIsEmpty()
    {
        QFETCH(QString, path);
        QVERIFY(QDir().mkpath(in("other")));
        QCOMPARE(::mkfifo(QFile::encodeName(in("other/pipe.qol")).constData(), 0600), 0);
        QCOMPARE(QolFile().load(path, nullptr), std::optional(QStringList()));
        QVERIFY(log().contains(QStringLiteral("Playlist not read: ") + path));
    }

    void aSaveIsReadAgain()
    {
        const QString path = namedPlaylistPath(QStringLiteral("Holiday"));
        const QStringList files = pathsOf({"pics/b.jpg", "pics/a.jpg", "pics/b.jpg"});
        QolFile file;
        QCOMPARE(file.save(path, files, true), QolFile::Saved::Written);
        QCOMPARE(bytesAt(path), collections::qolText(files, QDate::currentDate()));
        QCOMPARE(QolFile().load(path, nullptr), std::optional(files));
        QCOMPARE(file.save(path, {}, true), QolFile::Saved::Written); // its own: replaced without more
        QCOMPARE(bytesAt(path), collections::qolText({}, QDate::currentDate()));
        QCOMPARE(trashed(), QStringList());
    }

    void theFolderIsMadeAgain()
    {
        QVERIFY(QDir(in("root")).removeRecursively());
        const QString path = namedPlaylistPath(QStringLiteral("a"));
        QCOMPARE(QolFile().save(path, {}, true), QolFile::Saved::Written);
        QVERIFY(QFile::exists(path));
        QCOMPARE(QolFile().save(in("other/a.qol"), {}, true), QolFile::Saved::Failed); // only the own one
        QVERIFY(!QDir(in("other")).exists());
    }

    void anotherListOfTheNameGoesToTheTrash()
    {
        const QString path = write("root/Playlist/Holiday.qol", listOf({"pics/a.jpg"}));
        QCOMPARE(QolFile().save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(QolFile().load(path, nullptr), std::optional(pathsOf({"pics/b.jpg"})));
        QCOMPARE(trashed(), QStringList("Holiday (replaced).qol"));
        QCOMPARE(inTrash("Holiday (replaced).qol"), listOf({"pics/a.jpg"}));
        QCOMPARE(collections::namedPlaylists(), QStringList("Holiday")); // the copy is no third list
    }

    void whatHasNothingToLoseIsReplaced()
    {
        const QString path = write("root/Playlist/Holiday.qol", "# by somebody else\r\n");
        QCOMPARE(QolFile().save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        const QByteArray same = collections::qolText(pathsOf({"pics/b.jpg"}), QDate(2001, 1, 1));
        write("root/Playlist/Holiday.qol", same);
        QCOMPARE(QolFile().save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QVERIFY(bytesAt(path) != same); // it has today's date
        QCOMPARE(trashed(), QStringList());
    }

    void whatStandsThereAlreadyIsNotWritten()
    {
        const QString path = namedPlaylistPath(QStringLiteral("a"));
        QolFile file;
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg"}), true), QolFile::Saved::Written);
        const auto number = [&path] {
            struct stat status = {};
            return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
        };
        const auto before = number();
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(number(), before);
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QVERIFY(number() != before);
    }

    void aChangeByAnotherProgramIsLeft()
    {
        const QString path = write("root/Playlist/Holiday.qol", listOf({"pics/a.jpg"}));
        QolFile file;
        QVERIFY(file.load(path, nullptr));
        write("root/Playlist/Holiday.qol", listOf({"pics/a.jpg", "pics/c.jpg"}));
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg"}), false), QolFile::Saved::Left);
        QCOMPARE(bytesAt(path), listOf({"pics/a.jpg", "pics/c.jpg"}));
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(inTrash("Holiday (replaced).qol"), listOf({"pics/a.jpg", "pics/c.jpg"}));
    }

    void entriesThatWereNotThereAreKeptInTheTrash()
    {
        const QByteArray before = listOf({"pics/a.jpg", "stick/b.jpg"});
        const QString path = write("root/Playlist/Holiday.qol", before);
        QolFile file;
        QCOMPARE(file.load(path, nullptr), std::optional(pathsOf({"pics/a.jpg"})));
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg"}), false), QolFile::Saved::Written);
        QCOMPARE(bytesAt(path), before); // a look at it changes nothing
        QCOMPARE(trashed(), QStringList());
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg", "pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(QolFile().load(path, nullptr), std::optional(pathsOf({"pics/a.jpg", "pics/b.jpg"})));
        QCOMPARE(inTrash("Holiday (replaced).qol"), before);
        QCOMPARE(file.save(path, {}, true), QolFile::Saved::Written);
        QCOMPARE(trashed().size(), 1); // of later saves there is nothing to keep
    }

    void whatASaveWouldDropIsKept_data()
    {
        QTest::addColumn<QByteArray>("extra"); // a line of the list that is replaced
        QTest::addColumn<int>("copies");
        QTest::newRow("nothing") << QByteArray() << 0;
        QTest::newRow("a comment") << QByteArray("Info: from my camera\r\n") << 1;
        QTest::newRow("a path from elsewhere") << QByteArray("C:\\gone.jpg\r\n") << 1;
    }

    void whatASaveWouldDropIsKept()
    {
        QFETCH(QByteArray, extra);
        QByteArray bytes = collections::qolText(pathsOf({"pics/a.jpg"}), QDate(2001, 1, 1));
        bytes.insert(bytes.indexOf('\n') + 1, extra);
        const QString path = write("root/Playlist/x.qol", bytes);
        QolFile file;
        QCOMPARE(file.load(path, nullptr), std::optional(pathsOf({"pics/a.jpg"})));
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QTEST(int(trashed().size()), "copies");
    }

    void withoutACopyThereIsNoSave()
    {
        QByteArray many = listOf({"pics/a.jpg"});
        for (int i = 0; i < 3000; ++i)
            many += in("stick/").toUtf8() + QByteArray::number(i) + ".jpg\r\n";
        const QString path = write("root/Playlist/x.qol", many);
        QolFile file;
        QCOMPARE(file.load(path, nullptr), std::optional(pathsOf({"pics/a.jpg"})));
        {
            const test::FullDisk disk(64 * 1024); // takes the short new list, and not the old one
            QVERIFY(disk.isFull());
            QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Failed);
        }
        QCOMPARE(bytesAt(path), many);
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(inTrash("x (replaced).qol"), many);
    }

    void copiesGetNamesOfTheirOwn()
    {
        write("root/Playlist/x (replaced).qol", listOf({"pics/c.jpg"}));
        const QString path = write("root/Playlist/x.qol", listOf({"pics/a.jpg"}));
        QCOMPARE(QolFile().save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(inTrash("x (replaced 2).qol"), listOf({"pics/a.jpg"}));
        QCOMPARE(bytesAt(in("root/Playlist/x (replaced).qol")), listOf({"pics/c.jpg"}));
    }

    void longNamesHaveCopiesToo()
    {
        const QString name(243, u'x');
        const QString path = namedPlaylistPath(name);
        write(QByteArray("root/Playlist/" + name.toUtf8() + ".qol").constData(), listOf({"pics/a.jpg"}));
        QCOMPARE(QolFile().save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(trashed().size(), 1);
        QCOMPARE(inTrash(trashed().constFirst().toUtf8().constData()), listOf({"pics/a.jpg"}));
    }

    void withoutATrashTheCopyStays()
    {
        write(".local/share/Trash", "no folder");
        const QString path = write("root/Playlist/x.qol", listOf({"pics/a.jpg"}));
        QolFile file;
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(bytesAt(in("root/Playlist/x (replaced).qol")), listOf({"pics/a.jpg"}));
        QVERIFY(log().contains(QStringLiteral("stays beside the new one")));
        QVERIFY(QFile::remove(in(".local/share/Trash")));
    }

    void aSaveThatFailsMakesOneCopy()
    {
        const QString path = write("root/Playlist/x.qol", listOf({"pics/a.jpg"}));
        QolFile file;
        {
            const test::FullDisk disk(1024); // takes the copy, and not the new list
            QVERIFY(disk.isFull());
            const QStringList many(5000, in("pics/b.jpg"));
            QCOMPARE(file.save(path, many, true), QolFile::Saved::Failed);
            QCOMPARE(file.save(path, many, true), QolFile::Saved::Failed);
        }
        QCOMPARE(trashed(), QStringList("x (replaced).qol"));
        QCOMPARE(bytesAt(path), listOf({"pics/a.jpg"}));
    }

    void whatCouldNotBeReadReplacesNothing()
    {
        QVERIFY(QDir().mkpath(in("other")));
        QCOMPARE(::mkfifo(QFile::encodeName(in("other/x.qol")).constData(), 0600), 0);
        const QString path = write("root/Playlist/x.qol", listOf({"pics/a.jpg"}));
        QolFile file;
        QCOMPARE(file.load(in("other/x.qol"), nullptr), std::optional(QStringList()));
        QCOMPARE(file.save(path, {}, false), QolFile::Saved::Failed); // the user has done nothing
        QCOMPARE(bytesAt(path), listOf({"pics/a.jpg"}));
        QCOMPARE(file.save(path, pathsOf({"pics/b.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(inTrash("x (replaced).qol"), listOf({"pics/a.jpg"}));
        QCOMPARE(file.load(in("other/none.qol"), nullptr), std::optional(QStringList()));
        QCOMPARE(file.save(in("root/Playlist/none.qol"), {}, false), QolFile::Saved::Written); // a new one
    }

    void whatIsTooLargeIsNotRead()
    {
        const QString path = write("root/Playlist/x.qol", listOf({"pics/a.jpg"}));
        QFile file(path);
        QVERIFY(file.resize((qint64(256) << 20) + 1)); // without taking room on the disk
        QCOMPARE(QolFile().load(path, nullptr), std::optional(QStringList()));
        QVERIFY(log().contains(path + QStringLiteral(": it is too large")));
    }

    void aLoadThatIsBrokenOffGivesNothing()
    {
        QByteArray many;
        for (int i = 0; i < 400000; ++i)
            many += in("pics/a.jpg").toUtf8() + '\n';
        const QString path = write("root/Playlist/x.qol", many);
        QTimer::singleShot(0, [] { platform::LongWork::cancelAll(); });
        QolFile file;
        QCOMPARE(file.load(path, nullptr), std::nullopt);
        QCOMPARE(file.path(), QString());
    }

    void aLinkIsFollowed()
    {
        const QString target = write("other/real.qol", listOf({"pics/a.jpg"}));
        const QString link = namedPlaylistPath(QStringLiteral("link"));
        QVERIFY(QFile::link(target, link));
        QolFile file;
        QCOMPARE(file.load(link, nullptr), std::optional(pathsOf({"pics/a.jpg"})));
        QCOMPARE(file.save(link, pathsOf({"pics/c.jpg"}), true), QolFile::Saved::Written);
        QCOMPARE(QFile::symLinkTarget(link), target);
        QCOMPARE(QolFile().load(target, nullptr), std::optional(pathsOf({"pics/c.jpg"})));
    }

    void whatCannotBeReadIsNotReplaced()
    {
        QVERIFY(test::openToEveryone(QFile::encodeName(in("")).constData()));
        const QByteArray before = listOf({"pics/a.jpg"});
        const QString path = write("root/Playlist/Holiday.qol", before);
        const QByteArray name = QFile::encodeName(path);
        QCOMPARE(::chmod(name.constData(), 0222), 0);
        QVERIFY(test::holdsUnprivileged([&] {
            QolFile file;
            return file.load(path, nullptr) == QStringList() &&
                   file.save(path, {}, true) == QolFile::Saved::Failed;
        }));
        QCOMPARE(::chmod(name.constData(), 0444), 0);
        QVERIFY(test::holdsUnprivileged(
            [&] { return QolFile().save(path, {}, true) == QolFile::Saved::Failed; }));
        QCOMPARE(::chmod(name.constData(), 0644), 0);
        QCOMPARE(bytesAt(path), before);
    }

    void aFullDiskLeavesTheOldList()
    {
        const QString path = namedPlaylistPath(QStringLiteral("x"));
        QolFile file;
        QCOMPARE(file.save(path, pathsOf({"pics/a.jpg"}), true), QolFile::Saved::Written);
        QStringList many;
        for (int i = 0; i < 5000; ++i)
            many += in("pics/a.jpg");
        {
            const test::FullDisk disk(64 * 1024);
            QVERIFY(disk.isFull());
            QCOMPARE(file.save(path, many, true), QolFile::Saved::Failed);
        }
        QCOMPARE(QolFile().load(path, nullptr), std::optional(pathsOf({"pics/a.jpg"})));
        QCOMPARE(QDir(collections::playlistFolder()).entryList(QDir::Files | QDir::Hidden),
                 QStringList("x.qol"));
        QCOMPARE(file.save(path, many, true), QolFile::Saved::Written);
    }

    void anyBytesDoNoHarm()
    {
        std::srand(3);
        const QByteArray good = listOf({"pics/a.jpg", "pics/b.jpg", "pics/c.jpg"});
        for (int round = 0; round < 300; ++round) {
            QByteArray bytes = good.left(std::rand() % (good.size() + 1));
            for (int i = std::rand() % 6; i > 0 && !bytes.isEmpty(); --i)
                bytes[std::rand() % bytes.size()] = char(std::rand());
            const auto files = QolFile().load(write("root/Playlist/x.qol", bytes), nullptr);
            QVERIFY(files);
            for (const QString& file : *files)
                QVERIFY(QFile::exists(file));
        }
    }

    void names()
    {
        using collections::canBePlaylistName;
        for (const char* name : {"root/Playlist/b.qol", "root/Playlist/A.qol", "root/Playlist/NAME.QOL",
                                 "root/Playlist/my.qol list.qol", "root/Playlist/c.txt", "root/Playlist/.qol",
                                 "root/Playlist/.hidden.qol", "root/Playlist/d.qol/e.qol"})
            write(name, "");
        QCOMPARE(collections::namedPlaylists(), QStringList({".hidden", "A", "b", "my list", "NAME.QOL"}));
        QVERIFY(canBePlaylistName(QStringLiteral("Holiday 2026 (ä), \"x\" & <y>")));
        QVERIFY(canBePlaylistName(QStringLiteral("..")));
        QVERIFY(!canBePlaylistName(QString()));
        QVERIFY(!canBePlaylistName(QStringLiteral("a/b")));
        QVERIFY(!canBePlaylistName(QString(QChar(0))));
        using collections::typedPlaylistName;
        QCOMPARE(typedPlaylistName(QStringLiteral("  a b ")), QStringLiteral("a b"));
        QCOMPARE(typedPlaylistName(QStringLiteral("Zoo.qol")), QStringLiteral("Zoo"));
        QCOMPARE(typedPlaylistName(QStringLiteral("Zoo.QOL.qol")), QStringLiteral("Zoo"));
        QCOMPARE(typedPlaylistName(QStringLiteral("my.qol list")), QStringLiteral("my.qol list"));
        QCOMPARE(typedPlaylistName(QStringLiteral(" .qol")), QString());
        QVERIFY(canBePlaylistName(QString(243, u'x')));
        QVERIFY(!canBePlaylistName(QString(244, u'x')));
        QVERIFY(!canBePlaylistName(QString(122, u'ä')));
    }
};

QTEST_GUILESS_MAIN(TestQolFile)
#include "tst_qolfile.moc"
