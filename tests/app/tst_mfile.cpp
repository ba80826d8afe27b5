// Paths: their parts, whether they exist, and making them.
#include "../support/ScratchHome.h"
#include "../support/Unprivileged.h"
#include "app/mFile.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia::app;
using namespace quorvia::platform;

class TestMFile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_home.write("d/one.JPG", "1");
        m_home.write("d/two.png", "22");
        m_home.write("d/.hidden.gif", "");
        m_home.write("d/star*.bmp", "");
        m_home.write("d/sub.tif/inside.txt", "");
        m_home.write("mixed/b.pcx", "");
        QVERIFY(QDir().mkdir(m_home.path("mixed/a.pcx")));
        m_home.write("mixed/a.tga", "");
        QVERIFY(QDir().mkdir(m_home.path("mixed/b.tga")));
        QVERIFY(QFile::link("one.JPG", m_home.path("d/link")));
        QVERIFY(QFile::link("none", m_home.path("d/dead")));
    }

    void addBackslash_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("result");
        QTest::newRow("without") << "/a/b"
                                 << "/a/b/";
        QTest::newRow("with") << "/a/b/"
                              << "/a/b/";
        QTest::newRow("root") << "/"
                              << "/";
        QTest::newRow("empty") << ""
                               << "/";
        QTest::newRow("backslash is a letter") << "a\\"
                                               << "a\\/";
    }
    void addBackslash()
    {
        QFETCH(QString, path);
        QTEST(AddBackslash(path), "result");
    }

    void exists_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("file");
        QTest::addColumn<bool>("folder");
        const auto row = [this](const char* name, const char* path, bool file, bool folder) {
            QTest::newRow(name) << m_home.path(path) << file << folder;
        };
        QTest::newRow("empty") << "" << false << false;
        QTest::newRow("root") << "/" << false << true;
        QTest::newRow("device") << "/dev/null" << true << false;
        QTest::newRow("zero character") << m_home.path("d/one.JPG") + QChar(u'\0') << false << false;
        QTest::newRow("pattern and zero character") << m_home.path("d/*") + QChar(u'\0') << false << false;
        row("file", "d/one.JPG", true, false);
        row("file, other case", "d/one.jpg", false, false);
        row("file and separator", "d/one.JPG/", false, false);
        row("directory", "d", false, true);
        row("directory and separator", "d/", false, true);
        row("missing", "d/none", false, false);
        row("below a file", "d/one.JPG/x", false, false);
        row("link", "d/link", true, false);
        row("dead link", "d/dead", false, false);
        row("star that is a letter", "d/star*.bmp", true, false);
        row("star", "d/*.png", true, false);
        row("star, other case", "d/*.jpg", true, false);
        row("question mark", "d/t?o.png", true, false);
        row("question mark needs a letter", "d/two?.png", false, false);
        row("no match", "d/*.xyz", false, false);
        row("matches a directory", "d/*.tif", false, false);
        row("first of the matches is a directory", "mixed/*.pcx", false, false);
        row("first of the matches is a file", "mixed/*.tga", true, false);
        row("hidden names are passed over", "d/*.gif", false, false);
        row("hidden names asked for", "d/.*.gif", true, false);
        row("pattern in a directory part", "*/one.JPG", false, false);
        row("pattern in a missing directory", "none/*", false, false);
    }
    void exists()
    {
        QFETCH(QString, path);
        QTEST(FileExists(path), "file");
        QTEST(FolderExists(path), "folder");
    }

    void existsFromThePresentDirectory()
    {
        QVERIFY(QDir::setCurrent(m_home.path("d")));
        QVERIFY(FileExists("two.png"));
        QVERIFY(FileExists("*.png"));
        QVERIFY(FolderExists("sub.tif"));
        QVERIFY(FolderExists("."));
        QVERIFY(!FileExists("*.xyz"));
    }

    void splitPathName_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("directory");
        QTest::addColumn<QString>("name");
        QTest::newRow("both") << "/a/b/c.jpg"
                              << "/a/b/"
                              << "c.jpg";
        QTest::newRow("no separator") << "c.jpg"
                                      << ""
                                      << "c.jpg";
        QTest::newRow("separator last") << "/a/b/"
                                        << "/a/b/"
                                        << "";
        QTest::newRow("root") << "/"
                              << "/"
                              << "";
        QTest::newRow("in the root") << "/c.jpg"
                                     << "/"
                                     << "c.jpg";
        QTest::newRow("backslash is a letter") << "/a/b\\c"
                                               << "/a/"
                                               << "b\\c";
        QTest::newRow("empty") << ""
                               << ""
                               << "";
    }
    void splitPathName()
    {
        QFETCH(QString, path);
        const MessageBoxAnswerer silent([](const MessageBox&) {
            QTest::qFail("a message box was shown", __FILE__, __LINE__);
            return BoxAnswer::Ok;
        });
        QTEST(SplitPathName(path, 1), "directory");
        QTEST(SplitPathName(path, 2), "name");
        QCOMPARE(SplitPathName(path, 1) + SplitPathName(path, 2), path);
    }

    void splitPathNameOfNoSuchPart_data()
    {
        QTest::addColumn<int>("part");
        for (const int part : {0, 3, -1})
            QTest::addRow("%d", part) << part;
    }
    void splitPathNameOfNoSuchPart()
    {
        QFETCH(int, part);
        QStringList shown;
        const MessageBoxAnswerer answerer([&shown](const MessageBox& box) {
            shown.append(box.text);
            return BoxAnswer::Ok;
        });
        QCOMPARE(SplitPathName("/a/b.jpg", part), QString());
        QCOMPARE(shown,
                 QStringList{QStringLiteral("There was an error, please contact Halvexa as to reagrad a 0026 "
                                            "error. Thank You")});
    }

    void names_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("basePath");
        QTest::newRow("simple") << "/a/b.jpg"
                                << "jpg"
                                << "b"
                                << "/a/b";
        QTest::newRow("case stands") << "/a/B.JpG"
                                     << "JpG"
                                     << "B"
                                     << "/a/B";
        QTest::newRow("two points") << "/a/b.tar.gz"
                                    << "gz"
                                    << "b.tar"
                                    << "/a/b.tar";
        QTest::newRow("no point") << "/a/b"
                                  << ""
                                  << "b"
                                  << "/a/b";
        QTest::newRow("point in the directory") << "/a.d/b"
                                                << ""
                                                << "b"
                                                << "/a.d/b";
        QTest::newRow("no directory") << "b.gif"
                                      << "gif"
                                      << "b"
                                      << "b";
        QTest::newRow("point first") << "/a/.gif"
                                     << "gif"
                                     << ""
                                     << "/a/";
        QTest::newRow("point last") << "/a/b."
                                    << ""
                                    << "b"
                                    << "/a/b";
        QTest::newRow("directory") << "/a/b.c/"
                                   << ""
                                   << ""
                                   << "/a/b.c/";
        QTest::newRow("colon ends the name") << "a.b:c"
                                             << ""
                                             << "a.b:c"
                                             << "a.b:c";
        QTest::newRow("colon before the point") << "/a/12:30.jpg"
                                                << "jpg"
                                                << "12:30"
                                                << "/a/12:30";
        QTest::newRow("blanks") << "/a b/c d.e f"
                                << "e f"
                                << "c d"
                                << "/a b/c d";
        QTest::newRow("empty") << ""
                               << ""
                               << ""
                               << "";
    }
    void names()
    {
        QFETCH(QString, path);
        QTEST(GetExtension(path), "extension");
        QTEST(GetBaseName(path, false), "base");
        QTEST(GetBaseName(path, true), "basePath");
    }

    void shortPath()
    {
        QCOMPARE(GetShortPath(m_home.path("d/one.JPG")), m_home.path("d/one.JPG"));
        QCOMPARE(GetShortPath(m_home.path("d/")), m_home.path("d/"));
        QCOMPARE(GetShortPath(m_home.path("d/none")), QString());
        QCOMPARE(GetShortPath(QString()), QString());
    }

    /// "made": what stands after; below the test's own directory.
    void makePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("made");
        QTest::newRow("one level") << "a/" << QStringList{"a"};
        QTest::newRow("three levels") << "a/b/c/" << QStringList{"a", "a/b", "a/b/c"};
        QTest::newRow("behind the last separator") << "a/b/c" << QStringList{"a", "a/b"};
        QTest::newRow("no separator") << "a" << QStringList{};
        QTest::newRow("doubled separators") << "a//b//" << QStringList{"a", "a/b"};
        QTest::newRow("blanks and signs") << "a b/<c>/" << QStringList{"a b", "a b/<c>"};
        QTest::newRow("drive") << "C:/" << QStringList{};
        QTest::newRow("below a drive") << "C:/x/" << QStringList{};
        QTest::newRow("colon in a name") << "10:30:/x/" << QStringList{"10:30:", "10:30:/x"};
        QTest::newRow("separator alone") << "/" << QStringList{};
        QTest::newRow("separators alone") << "////" << QStringList{};
        QTest::newRow("empty") << "" << QStringList{};
        QTest::newRow("zero character")
            << QStringLiteral("a") + QChar(u'\0') + QStringLiteral("/b/") << QStringList{};
        QTest::newRow("name too long") << "a/" + QString(300, u'x') + "/b/" << QStringList{"a"};
    }
    void makePath()
    {
        QFETCH(QString, path);
        QTemporaryDir directory;
        QVERIFY(QDir::setCurrent(directory.path()));
        MakePath(path);
        QTEST(foldersBelow(directory.path()), "made");
        if (path.startsWith(u'/') || path.isEmpty())
            return;
        QTemporaryDir second; // the same by an absolute path
        MakePath(second.path() + u'/' + path);
        if (!path.startsWith(QLatin1String("C:")))
            QTEST(foldersBelow(second.path()), "made");
    }

    void makePathOverWhatStands()
    {
        QTemporaryDir directory;
        const QString root = directory.path();
        QVERIFY(QDir(root).mkdir("real"));
        QVERIFY(QFile::link("real", root + "/link"));
        QFile file(root + "/file");
        QVERIFY(file.open(QIODevice::WriteOnly));
        MakePath(root + "/real/");
        MakePath(root + "/link/x/");
        MakePath(root + "/file/y/");
        QCOMPARE(foldersBelow(root), (QStringList{"link", "link/x", "real", "real/x"}));
        QVERIFY(FileExists(root + "/file"));
    }

    void makePathWithoutPermission()
    {
        QTemporaryDir directory;
        QVERIFY(quorvia::test::openToEveryone(QFile::encodeName(directory.path()).constData()));
        const QString target = directory.path() + "/sub/deeper/";
        QVERIFY(QDir::setCurrent(QDir::rootPath()));
        if (::geteuid() != 0)
            QCOMPARE(::chmod(QFile::encodeName(directory.path()).constData(), 0555), 0);
        QVERIFY(quorvia::test::holdsUnprivileged([&] {
            MakePath(target);
            return !FolderExists(directory.path() + "/sub");
        }));
        MakePath("/proc/none/sub/");
        QVERIFY(!FolderExists("/proc/none"));
        QCOMPARE(::chmod(QFile::encodeName(directory.path()).constData(), 0700), 0);
    }

  private:
    static QStringList foldersBelow(const QString& root)
    {
        QStringList found;
        const auto walk = [&found](const auto& self, const QString& at, const QString& prefix) -> void {
            const QStringList names =
                QDir(at).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
            for (const QString& name : names) {
                found.append(prefix + name);
                self(self, at + u'/' + name, prefix + name + u'/');
            }
        };
        walk(walk, root, QString());
        return found;
    }

    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestMFile)
#include "tst_mfile.moc"
