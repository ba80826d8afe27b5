// Where desktop entries are found, and how a program is written into one.
#include "../support/ScratchHome.h"
#include "platform/DesktopEntries.h"
#include "platform/GioParts.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <gio/gdesktopappinfo.h>
#include <sys/stat.h>

using namespace quorvia::platform;

class TestDesktopEntries : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<quorvia::test::ScratchHome> m_home;

    static QByteArray entry(const QByteArray& exec, const QByteArray& more = {})
    {
        return "[Desktop Entry]\nType=Application\nName=A\nExec=" + exec + "\n" + more;
    }
    QString write(const QString& name, const QByteArray& text) const
    {
        return m_home->write(".local/share/applications/" + name, text);
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<quorvia::test::ScratchHome>();
        qputenv("XDG_DATA_DIRS", (m_home->path("one") + ":relative:" + m_home->path("two/")).toLocal8Bit());
    }
    void cleanup() { m_home.reset(); }

    void directories()
    {
        QCOMPARE(applicationsDirectories(),
                 (QStringList{m_home->path(".local/share/applications"), m_home->path("one/applications"),
                              m_home->path("two/applications")}));
        qputenv("XDG_DATA_DIRS", "");
        QCOMPARE(applicationsDirectories().mid(1),
                 (QStringList{"/usr/local/share/applications", "/usr/share/applications"}));
    }

    void pathsAndIds()
    {
        const QString last = m_home->write("two/applications/a.desktop", "");
        QCOMPARE(entryPath("a.desktop"), last);
        const QString first = write("a.desktop", "");
        QCOMPARE(entryPath("a.desktop"), first);
        const QString below = m_home->write("one/applications/kde/sub/b-c.desktop", "");
        QCOMPARE(entryPath("kde-sub-b-c.desktop"), below);
        QCOMPARE(entryId(below), "kde-sub-b-c.desktop");
        QCOMPARE(entryId(first), "a.desktop");
        QCOMPARE(entryId("/elsewhere/x-y.desktop"), "x-y.desktop");
        QCOMPARE(entryPath("gone.desktop"), QString());
        QCOMPARE(entryPath(""), QString());
        QCOMPARE(entryPath("../applications/a.desktop"), QString());
        QVERIFY(QDir().mkpath(m_home->path("one/applications/folder.desktop")));
        QCOMPARE(entryPath("folder.desktop"), QString());
    }

    /// Each "-" may be a directory: the search in vain would take minutes.
    void longIdsAreNoEntries()
    {
        const QString longest = QString(247, u'a') + ".desktop";
        QCOMPARE(entryPath(longest), write(longest, ""));
        const QString longer = "a-" + longest;
        write("a/" + longest, "");
        QCOMPARE(entryPath(longer), QString());
        QElapsedTimer time;
        time.start();
        QCOMPARE(entryPath(QString("a-").repeated(200000)), QString());
        QVERIFY(time.elapsed() < 20'000);
    }

    void usable_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("expected");
        QTest::newRow("whole") << entry("true %f") << true;
        QTest::newRow("full path") << entry("/bin/sh %f") << true;
        QTest::newRow("not in menus") << entry("true %f", "NoDisplay=true\n") << true;
        QTest::newRow("hidden") << entry("true %f", "Hidden=true\n") << false;
        QTest::newRow("no such program") << entry("no-such-program %f") << false;
        QTest::newRow("tried in vain") << entry("true %f", "TryExec=no-such-program\n") << false;
        QTest::newRow("no entry") << QByteArray("\xff\x00 nothing", 10) << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    void usable()
    {
        QFETCH(QByteArray, text);
        QTEST(isUsableEntry(write("a.desktop", text)), "expected");
    }

    void aPipeIsNoEntry()
    {
        const QString path = m_home->path("pipe.desktop");
        QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        QVERIFY(!isUsableEntry(path));
    }

    void execWords_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("plain") << "/usr/bin/quorvia-1.0" << QByteArray("/usr/bin/quorvia-1.0");
        QTest::newRow("umlaut") << QString::fromUtf8("/b\xc3\xa4r/q") << QByteArray("/b\xc3\xa4r/q");
        QTest::newRow("blank") << "/my programs/q" << QByteArray("\"/my programs/q\"");
        QTest::newRow("quotes") << "/a\"b'c/q" << QByteArray("\"/a\\\\\"b'c/q\"");
        QTest::newRow("dollar") << "/a$b/q" << QByteArray("\"/a\\\\$b/q\"");
        QTest::newRow("backtick") << "/a`b/q" << QByteArray("\"/a\\\\`b/q\"");
        QTest::newRow("backslash") << "/a\\b/q" << QByteArray("\"/a\\\\\\\\b/q\"");
        QTest::newRow("percent") << "/a%f/q" << QByteArray("\"/a%%f/q\"");
    }
    void execWords()
    {
        QFETCH(QString, program);
        QTEST(execWord(program), "expected");
    }

    /// The desktop's own reader finds the program behind each of these names.
    void theDesktopReadsThem_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"plain", "a b", "a\"b", "a'b", "a$HOME", "a`b`", "a\\b", "a;b&c", "(a)*?#~<>|"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void theDesktopReadsThem()
    {
        QFETCH(QString, name);
        const QString program = m_home->write("bin/" + name, "#!/bin/sh\n: > \"$1\"\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QString path = write("a.desktop", withProgram(entry("quorvia %f"), program));
        QVERIFY(isUsableEntry(path));
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
        const gio::Object<GDesktopAppInfo> info(
            g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
        const QString mark = m_home->path("mark");
        const gio::Object<GFile> file = gio::fileAt(mark);
        GList only = {file.get(), nullptr, nullptr};
        QVERIFY(g_app_info_launch(G_APP_INFO(info.get()), &only, nullptr, nullptr));
        QTRY_VERIFY(QFile::exists(mark));
    }

    void programs_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("with a field") << QByteArray("A=b\nExec=quorvia %f\nTryExec=quorvia\n")
                                      << QByteArray("A=b\nExec=\"/a b/q\" %f\nTryExec=quorvia\n");
        QTest::newRow("alone") << QByteArray("Exec=quorvia\n") << QByteArray("Exec=\"/a b/q\"\n");
        QTest::newRow("quoted") << QByteArray("Exec=\"x y\" %f") << QByteArray("Exec=\"/a b/q\" %f");
        QTest::newRow("two") << QByteArray("Exec=a\n[Desktop Action x]\nExec=a /x\n")
                             << QByteArray("Exec=\"/a b/q\"\n[Desktop Action x]\nExec=\"/a b/q\" /x\n");
    }
    void programs()
    {
        QFETCH(QByteArray, text);
        QTEST(withProgram(text, "/a b/q"), "expected");
    }
};

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "tst_desktopentries.moc"
