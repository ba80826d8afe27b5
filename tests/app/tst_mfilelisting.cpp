// Wildcards and the lists of files and folders.
#include "../support/ScratchHome.h"
#include "../support/Unprivileged.h"
#include "app/mFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia::app;

namespace {

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class TestMFileListing : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name :
             {"t/a.jpg", "t/B.JPG", "t/c.png", "t/noext", "t/.hid.jpg", "t/k/d.jpg", "t/k/m/e.jpg",
              "t/k/m/f.txt", "t/z/g.jpg", "t/.secret/h.jpg", "t/k.jpg/i.jpg", "t/l [1] é.jpg"})
            m_home.write(QString::fromUtf8(name), "x");
        QVERIFY(QFile::link("../c.png", m_home.path("t/z/link.jpg")));
        QVERIFY(QFile::link("none.jpg", m_home.path("t/dead.jpg")));
        QCOMPARE(::mkfifo(QFile::encodeName(m_home.path("t/pipe.jpg")).constData(), 0600), 0);
    }

    void wildcards_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<bool>("matches");
        const auto row = [](const char* name, const char* pattern, bool matches) {
            QTest::addRow("%s with %s", name, pattern)
                << QString::fromUtf8(name) << QString::fromUtf8(pattern) << matches;
        };
        row("a.jpg", "*.jpg", true);
        row("a.JPG", "*.jpg", true);
        row("a.jpg", "*.JPG", true);
        row("a.jpeg", "*.jpg", false);
        row("ajpg", "*.jpg", false);
        row(".jpg", "*.jpg", true);
        row("a.jpg.txt", "*.jpg", false);
        row("a.b.jpg", "*.jpg", true);
        row("a", "*.*", true);
        row("", "*.*", true);
        row("a.b", "*.*", true);
        row("a", "*", true);
        row("", "*", true);
        row("a", "", false);
        row("", "", true);
        row("a", "?", true);
        row("", "?", false);
        row("ab", "?", false);
        row("abc", "a?c", true);
        row("ac", "a?c", false);
        row("abcbc", "a*bc", true);
        row("abcbd", "a*bc", false);
        row("aXbXc", "a*b*c", true);
        row("img12.png", "img??.p*", true);
        row("img1.png", "img??.p*", false);
        row("a", "a***", true);
        row("[x]", "[x]", true); // no character classes
        row("x", "[x]", false);
        row("a+b", "a+b", true); // nothing of a regular expression
        row("É.png", "é.PNG", true);
        row("\xF0\x9F\x8E\xA8.png", "?.png", true); // one character in two units
        row("\xF0\x9F\x8E\xA8.png", "??.png", false);
        row("\xF0\x9F\x8E\xA8z", "*?z", true);
    }
    void wildcards()
    {
        QFETCH(QString, name);
        QFETCH(QString, pattern);
        QTEST(MatchesWildcard(name, pattern), "matches");
    }

    void manyStarsEnd()
    {
        const QString name(200, u'a');
        QVERIFY(!MatchesWildcard(name, QStringLiteral("a*").repeated(100) + u'b'));
        QVERIFY(MatchesWildcard(name + u'b', QStringLiteral("a*").repeated(100) + u'b'));
    }

    void files_data()
    {
        QTest::addColumn<QString>("patterns");
        QTest::addColumn<bool>("recurse");
        QTest::addColumn<QStringList>("found"); // below t/, sorted
        QTest::newRow("one") << "*.png" << false << QStringList{"c.png"};
        QTest::newRow("either case") << "*.jpg" << false << QStringList{"B.JPG", "a.jpg", "l [1] é.jpg"};
        QTest::newRow("two") << "*.png;*.jpg" << false
                             << QStringList{"B.JPG", "a.jpg", "c.png", "l [1] é.jpg"};
        QTest::newRow("twice matched") << "c*;*.png" << false << QStringList{"c.png", "c.png"};
        QTest::newRow("all") << "*.*" << false
                             << QStringList{"B.JPG", "a.jpg", "c.png", "l [1] é.jpg", "noext"};
        QTest::newRow("a name") << "NOEXT" << false << QStringList{"noext"};
        QTest::newRow("separators to spare") << ";;*.png;;" << false << QStringList{"c.png"};
        QTest::newRow("none") << "" << false << QStringList{};
        QTest::newRow("no match") << "*.bmp" << true << QStringList{};
        QTest::newRow("hidden") << ".*" << false << QStringList{".hid.jpg"};
        QTest::newRow("hidden by name") << ".hid.jpg" << false << QStringList{".hid.jpg"};
        QTest::newRow("with a directory") << "k/*.jpg" << true << QStringList{};
        QTest::newRow("below") << "*.jpg" << true
                               << QStringList{"B.JPG",     "a.jpg",       "k.jpg/i.jpg", "k/d.jpg",
                                              "k/m/e.jpg", "l [1] é.jpg", "z/g.jpg",     "z/link.jpg"};
        QTest::newRow("below, all") << "*.*" << true
                                    << QStringList{"B.JPG",   "a.jpg",     "c.png",     "k.jpg/i.jpg",
                                                   "k/d.jpg", "k/m/e.jpg", "k/m/f.txt", "l [1] é.jpg",
                                                   "noext",   "z/g.jpg",   "z/link.jpg"};
    }
    void files()
    {
        QFETCH(QString, patterns);
        QFETCH(bool, recurse);
        QFETCH(QStringList, found);
        for (QString& file : found)
            file.prepend(m_home.path("t/"));
        QStringList files;
        ListFiles(m_home.path("t"), patterns, recurse, files);
        QCOMPARE(sorted(files), sorted(found));
        QStringList again = {"kept"};
        ListFiles(m_home.path("t/"), patterns, recurse, again);
        QCOMPARE(again, QStringList{"kept"} + files);
    }

    void filesGoPatternByPattern()
    {
        QStringList files;
        ListFiles(m_home.path("t"), "*.png;*.jpg", false, files);
        QVERIFY(files.first().endsWith(QLatin1String("/c.png")));
        files.clear();
        ListFiles(m_home.path("t"), "noext;*.jpg;*.png", false, files);
        QVERIFY(files.first().endsWith(QLatin1String("/noext")) &&
                files.last().endsWith(QLatin1String("/c.png")));
    }

    void filesOfADirectoryComeBeforeThoseBelow()
    {
        QStringList files;
        ListFiles(m_home.path("t"), "*.jpg", true, files);
        const auto at = [&](const char* name) { return files.indexOf(m_home.path(QString::fromUtf8(name))); };
        for (const char* own : {"t/a.jpg", "t/B.JPG"})
            QVERIFY(at(own) >= 0 && at(own) < 3);
        QVERIFY(at("t/k/d.jpg") < at("t/k/m/e.jpg"));
    }

    void folders()
    {
        QStringList folders = {"kept"};
        ListFolders(m_home.path("t"), false, folders);
        QCOMPARE(folders.takeFirst(), QStringLiteral("kept"));
        QCOMPARE(sorted(folders),
                 (QStringList{m_home.path("t/k"), m_home.path("t/k.jpg"), m_home.path("t/z")}));
        folders.clear();
        ListFolders(m_home.path("t/"), true, folders);
        QCOMPARE(sorted(folders), (QStringList{m_home.path("t/k"), m_home.path("t/k.jpg"),
                                               m_home.path("t/k/m"), m_home.path("t/z")}));
        QVERIFY(folders.indexOf(m_home.path("t/k")) < folders.indexOf(m_home.path("t/k/m")));
    }

    void nothingToList_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::newRow("empty") << "";
        QTest::newRow("missing") << m_home.path("missing");
        QTest::newRow("file") << m_home.path("t/a.jpg");
        QTest::newRow("zero character") << m_home.path("t") + QChar(u'\0');
    }
    void nothingToList()
    {
        QFETCH(QString, directory);
        QStringList found;
        ListFiles(directory, "*.*", true, found);
        ListFolders(directory, true, found);
        QCOMPARE(found, QStringList{});
    }

    void linksThatLoop()
    {
        m_home.write("loop/a.jpg", "x");
        m_home.write("loop/one/b.jpg", "x");
        m_home.write("loop/two/c.jpg", "x");
        QVERIFY(QFile::link("..", m_home.path("loop/one/up")));
        QVERIFY(QFile::link(".", m_home.path("loop/self")));
        QVERIFY(QFile::link("../two", m_home.path("loop/one/two")));
        QVERIFY(QFile::link("../one", m_home.path("loop/two/one")));
        QVERIFY(QFile::link("circle", m_home.path("loop/circle")));
        QStringList files;
        ListFiles(m_home.path("loop"), "*.jpg", true, files);
        QCOMPARE(files.size(), 3); // each file once, by whichever way came first
        for (const char* name : {"/a.jpg", "/b.jpg", "/c.jpg"})
            QCOMPARE(files.filter(QString::fromLatin1(name)).size(), 1);
        QStringList folders;
        ListFolders(m_home.path("loop"), true, folders);
        QCOMPARE(folders.size(), 2);
        folders.clear();
        ListFolders(m_home.path("loop"), false, folders);
        QCOMPARE(sorted(folders),
                 (QStringList{m_home.path("loop/one"), m_home.path("loop/self"), m_home.path("loop/two")}));
    }

    void linkedDirectoriesAreEntered()
    {
        m_home.write("elsewhere/deep/j.jpg", "x");
        m_home.write("linking/k.jpg", "x");
        QVERIFY(QFile::link("../elsewhere", m_home.path("linking/more")));
        QStringList files;
        ListFiles(m_home.path("linking"), "*.jpg", true, files);
        QCOMPARE(files, (QStringList{m_home.path("linking/k.jpg"), m_home.path("linking/more/deep/j.jpg")}));
    }

    void unreadableDirectory()
    {
        QTemporaryDir directory;
        QVERIFY(quorvia::test::openToEveryone(QFile::encodeName(directory.path()).constData()));
        const QString closed = directory.filePath("closed");
        QVERIFY(QDir().mkdir(closed));
        for (const QString& name : {closed + "/a.jpg", directory.filePath("b.jpg")}) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0), 0);
        QVERIFY(quorvia::test::holdsUnprivileged([&] {
            QStringList files;
            ListFiles(directory.path(), "*.jpg", true, files);
            QStringList folders;
            ListFolders(directory.path(), true, folders);
            return files == QStringList{directory.filePath("b.jpg")} && folders == QStringList{closed};
        }));
        QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0700), 0);
    }

    void deepTree()
    {
        QTemporaryDir directory;
        QString path = directory.path();
        for (int level = 0; level < 200; ++level)
            path += QStringLiteral("/d");
        QVERIFY(QDir().mkpath(path));
        QFile file(path + "/a.jpg");
        QVERIFY(file.open(QIODevice::WriteOnly));
        QStringList files;
        ListFiles(directory.path(), "*.jpg", true, files);
        QCOMPARE(files, QStringList{file.fileName()});
    }

    void manyFiles()
    {
        QTemporaryDir directory;
        const QByteArray stem = QFile::encodeName(directory.path()) + "/picture";
        constexpr int count = 2000;
        for (int number = 0; number < count; ++number) {
            const QByteArray name = stem + QByteArray::number(number) + (number % 2 == 0 ? ".JPG" : ".txt");
            const int file = ::open(name.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
            QVERIFY(file >= 0 && ::close(file) == 0);
        }
        QStringList files;
        ListFiles(directory.path(),
                  "*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.tif;*.tiff;*.wmf;*.ico;*.dcx;*.jif;*.ljp;*.pbm;*.pcx;*."
                  "pgm;*.pic;"
                  "*.png;*.ppm;*.rle;*.tga;*.wpg",
                  false, files);
        QCOMPARE(files.size(), count / 2);
    }

  private:
    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestMFileListing)
#include "tst_mfilelisting.moc"
