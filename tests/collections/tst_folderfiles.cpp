// What stands in a folder, sorted, and what of it has gone. Folders with hostile names in them included.
#include "collections/FolderFiles.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using collections::anyHasVanished;
using collections::sortedFolderFiles;

class TestFolderFiles : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;

    QString pics() const { return m_home->path(QStringLiteral("pics")); }
    void write(const QString& name) const { m_home->write(QStringLiteral("pics/") + name, "x"); }
    QStringList names(const QString& pattern = QStringLiteral("*.jpg")) const
    {
        QStringList result;
        for (const QString& path : sortedFolderFiles(pics(), pattern)) {
            if (!path.startsWith(pics() + u'/'))
                return {path};
            result.append(path.mid(pics().size() + 1));
        }
        return result;
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        QVERIFY(QDir().mkpath(pics()));
    }

    void cleanup() { m_home.reset(); }

    void ordersWithoutCase()
    {
        for (const char* name : {"b.jpg", "C.jpg", "a.JPG", "B.jpg", "ä.jpg", "Ä2.jpg", "10.jpg", "9.jpg"})
            write(QString::fromUtf8(name));
        QCOMPARE(names(), QStringList({"10.jpg", "9.jpg", "a.JPG", "B.jpg", "b.jpg", "C.jpg", "ä.jpg",
                                       QString::fromUtf8("Ä2.jpg")}));
    }

    void ordersByTheWholePathWhateverTheFolder_data()
    {
        QTest::addColumn<QString>("end");
        QTest::newRow("without a slash") << "";
        QTest::newRow("with a slash") << "/";
    }

    void ordersByTheWholePathWhateverTheFolder()
    {
        QFETCH(QString, end);
        write(QStringLiteral("b.jpg"));
        write(QStringLiteral("A.jpg"));
        QCOMPARE(sortedFolderFiles(pics() + end, QStringLiteral("*.jpg")),
                 QStringList({pics() + QStringLiteral("/A.jpg"), pics() + QStringLiteral("/b.jpg")}));
    }

    void patterns_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QStringList>("listed");
        QTest::newRow("one") << "*.png" << QStringList{"b.png"};
        QTest::newRow("two") << "*.png;*.jpg" << QStringList{"a.jpg", "b.png"};
        QTest::newRow("one that matches nothing") << "*.bmp;*.png;*.gif" << QStringList{"b.png"};
        QTest::newRow("none that matches") << "*.bmp" << QStringList{};
        QTest::newRow("matched twice") << "*.jpg;a*" << QStringList{"a.jpg", "a.jpg"};
        QTest::newRow("the same twice") << "*.png;*.png" << QStringList{"b.png", "b.png"};
        QTest::newRow("empty") << "" << QStringList{};
    }

    void patterns()
    {
        QFETCH(QString, pattern);
        for (const char* name : {"a.jpg", "b.png", "c.txt", "sub/d.jpg", ".e.jpg"})
            write(QString::fromUtf8(name));
        QTEST(names(pattern), "listed");
    }

    void aFolderThatCannotBeReadHasNone()
    {
        const QString all = QStringLiteral("*.*");
        QVERIFY(sortedFolderFiles(QString(), all).isEmpty());
        QVERIFY(sortedFolderFiles(pics() + QStringLiteral("/nowhere"), all).isEmpty());
        write(QStringLiteral("a.jpg"));
        QVERIFY(sortedFolderFiles(pics() + QStringLiteral("/a.jpg"), all).isEmpty());
    }

    void aFolderWithoutPermissionHasNone()
    {
        write(QStringLiteral("a.jpg"));
        QVERIFY(test::openToEveryone(QFile::encodeName(m_home->path(QString())).constData()));
        const auto lists = [this] { return !sortedFolderFiles(pics(), QStringLiteral("*.*")).isEmpty(); };
        QVERIFY(test::holdsUnprivileged(lists));
        QCOMPARE(::chmod(QFile::encodeName(pics()).constData(), 0), 0);
        QVERIFY(test::holdsUnprivileged([&lists] { return !lists(); }));
        QCOMPARE(::chmod(QFile::encodeName(pics()).constData(), 0700), 0);
    }

    void hostileNamesAreListed()
    {
        const QString longest = QString(251, u'l') + QStringLiteral(".jpg");
        const QStringList hostile = {QStringLiteral("a\nb.jpg"), QStringLiteral("a * b.jpg"),
                                     QStringLiteral("a;b.jpg"), longest};
        for (const QString& name : hostile)
            write(name);
        const QByteArray odd = QFile::encodeName(pics()) + "/odd\xff.jpg";
        const int file = ::open(odd.constData(), O_CREAT | O_WRONLY, 0644);
        QVERIFY(file >= 0);
        ::close(file);
        QCOMPARE(names(), hostile); // a name that is not UTF-8 is none that could be opened
        QVERIFY(!anyHasVanished(pics(), sortedFolderFiles(pics(), QStringLiteral("*.jpg"))));
        QVERIFY(QFile::remove(pics() + QStringLiteral("/a\nb.jpg")));
        QVERIFY(anyHasVanished(pics(), {pics() + QStringLiteral("/a\nb.jpg")}));
        QCOMPARE(::unlink(odd.constData()), 0);
    }

    void vanished_data()
    {
        QTest::addColumn<QStringList>("listed");
        QTest::addColumn<bool>("gone");
        QTest::newRow("nothing listed") << QStringList{} << false;
        QTest::newRow("all there") << QStringList{"a.jpg", "b.jpg"} << false;
        QTest::newRow("the first gone") << QStringList{"0.jpg", "a.jpg"} << true;
        QTest::newRow("the last gone") << QStringList{"a.jpg", "z.jpg"} << true;
        QTest::newRow("listed twice") << QStringList{"a.jpg", "a.jpg"} << false;
        QTest::newRow("now a folder") << QStringList{"folder.jpg"} << true;
        QTest::newRow("a link") << QStringList{"link.jpg"} << false;
        QTest::newRow("a dead link") << QStringList{"dead.jpg"} << true;
        QTest::newRow("another case") << QStringList{"A.JPG"} << true;
    }

    void vanished()
    {
        QFETCH(QStringList, listed);
        for (const char* name : {"a.jpg", "b.jpg", "new.jpg", "folder.jpg/x"})
            write(QString::fromUtf8(name));
        QVERIFY(QFile::link(pics() + QStringLiteral("/a.jpg"), pics() + QStringLiteral("/link.jpg")));
        QVERIFY(QFile::link(pics() + QStringLiteral("/none.jpg"), pics() + QStringLiteral("/dead.jpg")));
        for (QString& name : listed)
            name.prepend(pics() + u'/');
        QTEST(anyHasVanished(pics(), listed), "gone");
    }

    void allVanishWithTheirFolder()
    {
        write(QStringLiteral("a.jpg"));
        const QStringList files = sortedFolderFiles(pics(), QStringLiteral("*.jpg"));
        QVERIFY(!anyHasVanished(pics(), files));
        QVERIFY(QDir(pics()).removeRecursively());
        QVERIFY(anyHasVanished(pics(), files));
    }
};

QTEST_GUILESS_MAIN(TestFolderFiles)
#include "tst_folderfiles.moc"
