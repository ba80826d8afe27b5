// Reading and replacing a small file that is not ours alone.
#include "../support/FileContent.h"
#include "../support/FullDisk.h"
#include "../support/ScratchHome.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <string>

using namespace quorvia::platform;
using quorvia::test::contentOf;

class TestTextFile : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<quorvia::test::ScratchHome> m_home;

    std::string path(const char* name) const { return m_home->path(QLatin1String(name)).toStdString(); }

    static mode_t modeOf(const char* file)
    {
        struct stat status = {};
        return ::stat(file, &status) == 0 ? status.st_mode & 07777 : 0;
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<quorvia::test::ScratchHome>(); }
    void cleanup() { m_home.reset(); }

    void reads()
    {
        QByteArray text = "before";
        QCOMPARE(readTextFile(m_home->path("gone"), text), TextRead::Missing);
        QCOMPARE(text, "before");
        QCOMPARE(readTextFile(m_home->write("a", QByteArray("x\0y", 3)), text), TextRead::Done);
        QCOMPARE(text, QByteArray("x\0y", 3));
        QCOMPARE(readTextFile(m_home->write("large", QByteArray(4 * 1024 * 1024, 'x')), text),
                 TextRead::Done);
        QCOMPARE(readTextFile(m_home->write("larger", QByteArray(4 * 1024 * 1024 + 1, 'x')), text),
                 TextRead::Refused);
        QCOMPARE(readTextFile(m_home->path("run"), text), TextRead::Refused);
        QCOMPARE(::mkfifo(path("pipe").c_str(), 0600), 0);
        QCOMPARE(readTextFile(m_home->path("pipe"), text), TextRead::Refused); // and is not waited for
    }

    void replacesAndKeepsTheMode()
    {
        const QString file = m_home->write("a", "before");
        QCOMPARE(::chmod(path("a").c_str(), 0640), 0);
        QString why;
        QVERIFY(replaceTextFile(file, "after", &why));
        QCOMPARE(contentOf(file), "after");
        QCOMPARE(modeOf(path("a").c_str()), mode_t(0640));
        QVERIFY(replaceTextFile(m_home->path("new/dir/b"), "x", &why));
        QCOMPARE(contentOf(m_home->path("new/dir/b")), "x");
    }

    void followsLinks()
    {
        const QString file = m_home->write("dots/list", "before");
        QCOMPARE(::symlink("dots/list", path("one").c_str()), 0);
        QCOMPARE(::symlink("one", path("two").c_str()), 0);
        QVERIFY(replaceTextFile(m_home->path("two"), "after", nullptr));
        QCOMPARE(contentOf(file), "after");
        QVERIFY(QFileInfo(m_home->path("one")).isSymLink() && QFileInfo(m_home->path("two")).isSymLink());

        QCOMPARE(::symlink("dots/fresh", path("open").c_str()), 0);
        QVERIFY(replaceTextFile(m_home->path("open"), "made", nullptr));
        QCOMPARE(contentOf(m_home->path("dots/fresh")), "made");
        QVERIFY(removeTextFile(m_home->path("open"), nullptr));
        QVERIFY(QFileInfo(m_home->path("open")).isSymLink());
        QCOMPARE(contentOf(m_home->path("dots/fresh")), "");

        QCOMPARE(::symlink("ring", path("ring").c_str()), 0);
        QString why;
        QVERIFY(!replaceTextFile(m_home->path("ring"), "x", &why));
        QCOMPARE(why, "its links lead nowhere, or to a name that cannot be spelled");
    }

    /// ".." is the directory above the real one, not the one above the name.
    void followsLinksAsTheSystemDoes()
    {
        const QString file = m_home->write("dots/list", "before");
        const QString foreign = m_home->write("list", "foreign");
        m_home->write("dots/config/.keep", "");
        QCOMPARE(::symlink("dots/config", path("config").c_str()), 0);
        QCOMPARE(::symlink("../list", path("dots/config/list").c_str()), 0);
        QCOMPARE(::symlink("../new/../new/list", path("dots/config/open").c_str()), 0);
        QCOMPARE(::symlink("../fresh/list", path("dots/config/far").c_str()), 0);
        QCOMPARE(endOfLinks(m_home->path("config/list")), QFileInfo(file).canonicalFilePath());
        QVERIFY(replaceTextFile(m_home->path("config/list"), "after", nullptr));
        QCOMPARE(contentOf(file), "after");
        QVERIFY(replaceTextFile(m_home->path("config/far"), "made", nullptr));
        QCOMPARE(contentOf(m_home->path("dots/fresh/list")), "made");
        QVERIFY(!replaceTextFile(m_home->path("config/open"), "x", nullptr)); // for the system too
        QVERIFY(removeTextFile(m_home->path("config/list"), nullptr));
        QCOMPARE(contentOf(file), "");
        QCOMPARE(contentOf(foreign), "foreign");
    }

    /// Read as letters, its name is another one.
    void aTargetThatCannotBeSpelled()
    {
        const QByteArray name = QByteArray::fromStdString(path("")) + "l\xe4ste";
        QCOMPARE(::symlink(name.constData(), path("link").c_str()), 0);
        const QStringList before = QDir(m_home->path("")).entryList(QDir::Files | QDir::System);
        QVERIFY(!replaceTextFile(m_home->path("link"), "x", nullptr));
        QVERIFY(!removeTextFile(m_home->path("link"), nullptr));
        QCOMPARE(endOfLinks(m_home->path("link")), QString());
        QCOMPARE(QDir(m_home->path("")).entryList(QDir::Files | QDir::System), before);
    }

    void keepsTheOwner()
    {
        const QString file = m_home->write("a", "before");
        constexpr uid_t another = 65534;
        const bool mayGive = ::chown(path("a").c_str(), another, another) == 0; // for the super-user alone
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::stat(path("a").c_str(), &before), 0);
        QCOMPARE(before.st_uid == another, mayGive);
        QVERIFY(replaceTextFile(file, "after", nullptr));
        QCOMPARE(::stat(path("a").c_str(), &after), 0);
        QCOMPARE(after.st_uid, before.st_uid);
        QCOMPARE(after.st_gid, before.st_gid);
        QCOMPARE(after.st_mode, before.st_mode);
    }

    void nothingIsWrittenThatCannotBeRead()
    {
        const QString file = m_home->write("a", "before");
        QString why;
        QVERIFY(!replaceTextFile(file, QByteArray(4 * 1024 * 1024 + 1, 'x'), &why));
        QCOMPARE(why, "it would become too large");
        QCOMPARE(contentOf(file), "before");
        QVERIFY(replaceTextFile(file, QByteArray(4 * 1024 * 1024, 'x'), &why));
    }

    void whatCannotBeWrittenStays()
    {
        const QString file = m_home->write("a", "before");
        QCOMPARE(::chmod(path("a").c_str(), 0444), 0);
        QString why;
        QVERIFY(!replaceTextFile(file, "after", &why));
        QCOMPARE(why, "the file is read only");
        QCOMPARE(contentOf(file), "before");
        QCOMPARE(::chmod(path("a").c_str(), 0644), 0);
        std::signal(SIGXFSZ, SIG_IGN);
        {
            const quorvia::test::FullDisk full(10);
            QVERIFY(full.isFull());
            QVERIFY(!replaceTextFile(file, QByteArray(1000, 'x'), &why));
        }
        QCOMPARE(contentOf(file), "before");
        QCOMPARE(QDir(m_home->path("")).entryList({"a*"}, QDir::Files | QDir::Hidden), QStringList{"a"});
    }

    void removes()
    {
        const QString file = m_home->write("a", "before");
        QVERIFY(removeTextFile(file, nullptr));
        QVERIFY(!QFileInfo::exists(file));
        QVERIFY(removeTextFile(file, nullptr));
        QString why;
        m_home->write("dir/b", "");
        QVERIFY(!removeTextFile(m_home->path("dir"), &why));
        QVERIFY(!why.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTextFile)
#include "tst_textfile.moc"
