// Opening and starting against a desktop made by the test, whose applications record how they were started.
#include "../support/ScratchDesktop.h"
#include "../support/ScratchHome.h"
#include "../support/Unprivileged.h"
#include "platform/Shell.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <sys/stat.h>

using namespace quorvia::platform;
using quorvia::test::holdsUnprivileged;

Q_DECLARE_METATYPE(quorvia::platform::ShellCode)

class TestShell : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_desktop.addType("image/x-painting", "*.qpa");
        m_desktop.addType("image/x-ours", "*.qou");
        m_desktop.addType("image/x-ours-alone", "*.qal");
        m_desktop.addType("image/x-orphan", "*.qor");
        m_desktop.addApplication("looker", {"image/x-painting", "inode/directory"}, "Graphics;Viewer;");
        // Ours is the user's choice; the alphabet would choose "angles" (no raster graphics) or "brush"
        // (other types).
        m_desktop.addApplication("quorvia", {"image/x-ours", "image/x-ours-alone"},
                                 "Graphics;Viewer;RasterGraphics;");
        m_desktop.addApplication("angles", {"image/x-ours"}, "Graphics;VectorGraphics;");
        m_desktop.addApplication("peeker", {"image/x-ours"}, "Graphics;RasterGraphics;Viewer;");
        m_desktop.addApplication("painter", {"image/x-ours"}, "Graphics;RasterGraphics;");
        m_desktop.addApplication("brush", {"image/x-painting"}, "Graphics;2DGraphics;RasterGraphics;");
        m_desktop.addApplication("surfer", {"x-scheme-handler/https", "x-scheme-handler/mailto"}, "Network;",
                                 "%u");
        m_desktop.setDefault("image/x-painting", "looker");
        m_desktop.setDefault("image/x-ours", "quorvia");
        m_desktop.setDefault("image/x-ours-alone", "quorvia");
        m_desktop.setDefault("inode/directory", "looker");
        m_desktop.setDefault("x-scheme-handler/https", "surfer");
        m_desktop.setDefault("x-scheme-handler/mailto", "surfer");
        m_home.write("pictures/a b.qpa", "x");
        m_home.write("pictures/<&'\">#%20é.qpa", "x");
        m_home.write("pictures/-dash.qpa", "x");
        m_home.write("pictures/https:", "x");
        m_home.write("pictures/o.qou", "x");
        m_home.write("pictures/o.qal", "x");
        m_home.write("pictures/o.qor", "x");
        QVERIFY(QDir::setCurrent(m_home.path("pictures")));
    }

    void opensDocuments_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("received");
        const QString pictures = m_home.path("pictures/");
        QTest::newRow("blank") << pictures + "a b.qpa" << pictures + "a b.qpa";
        QTest::newRow("signs") << pictures + "<&'\">#%20é.qpa" << pictures + "<&'\">#%20é.qpa";
        QTest::newRow("relative") << "a b.qpa" << pictures + "a b.qpa";
        QTest::newRow("dash first") << "-dash.qpa" << pictures + "-dash.qpa";
        QTest::newRow("address of a file") << "file://" + pictures + "a%20b.qpa" << pictures + "a b.qpa";
        QTest::newRow("directory") << m_home.path("pictures") << m_home.path("pictures");
    }
    void opensDocuments()
    {
        QFETCH(QString, target);
        m_desktop.forget("looker");
        QCOMPARE(shellOpen(target), ShellCode::Ok);
        QTRY_VERIFY(!m_desktop.record("looker").isEmpty());
        QTEST(m_desktop.record("looker").mid(1).join('|'), "received");
    }

    void opensAddresses_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("web") << "https://example.org/a?b=c&d=%20e#f";
        QTest::newRow("mail") << "mailto:someone@example.org?subject=a%20b";
    }
    void opensAddresses()
    {
        QFETCH(QString, target);
        m_desktop.forget("surfer");
        QCOMPARE(shellOpen(target), ShellCode::Ok);
        QTRY_VERIFY(!m_desktop.record("surfer").isEmpty());
        QCOMPARE(m_desktop.record("surfer").mid(1), QStringList{target});
    }

    void openFails_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<ShellCode>("code");
        const QString pictures = m_home.path("pictures/");
        QTest::newRow("empty") << "" << ShellCode::FileNotFound;
        QTest::newRow("missing file") << pictures + "none.qpa" << ShellCode::FileNotFound;
        QTest::newRow("missing directory") << pictures + "none/a.qpa" << ShellCode::PathNotFound;
        QTest::newRow("below a file") << pictures + "a b.qpa/a.qpa" << ShellCode::PathNotFound;
        QTest::newRow("missing address") << "file://" + pictures + "none.qpa" << ShellCode::FileNotFound;
        QTest::newRow("no program for the type") << pictures + "o.qor" << ShellCode::NoAssociation;
        QTest::newRow("no program for the scheme") << "gopher://example.org/" << ShellCode::NoAssociation;
        QTest::newRow("zero character") << pictures + QChar(u'\0') << ShellCode::FileNotFound;
    }
    void openFails()
    {
        QFETCH(QString, target);
        QTEST(shellOpen(target), "code");
    }

    void openWithoutPermission()
    {
        QTemporaryDir open;
        QVERIFY(quorvia::test::openToEveryone(QFile::encodeName(open.path()).constData()));
        QFile file(open.filePath("secret.qpa"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(QDir(open.path()).mkdir("closed"));
        QCOMPARE(::chmod(QFile::encodeName(file.fileName()).constData(), 0), 0);
        QCOMPARE(::chmod(QFile::encodeName(open.filePath("closed")).constData(), 0), 0);
        QVERIFY(holdsUnprivileged([&] { return shellOpen(file.fileName()) == ShellCode::AccessDenied; }));
        QVERIFY(holdsUnprivileged(
            [&] { return shellOpen(open.filePath("closed/a.qpa")) == ShellCode::AccessDenied; }));
        QVERIFY(holdsUnprivileged([&] { return shellEdit(file.fileName()) == ShellCode::AccessDenied; }));
    }

    void edits_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("program");
        QTest::newRow("the user's choice") << "a b.qpa"
                                           << "looker";
        QTest::newRow("ours is the choice: a painter of the type") << "o.qou"
                                                                   << "painter";
        QTest::newRow("ours is all there is: any painter") << "o.qal"
                                                           << "brush";
        QTest::newRow("no choice: any painter") << "o.qor"
                                                << "brush";
    }
    void edits()
    {
        QFETCH(QString, target);
        QFETCH(QString, program);
        m_desktop.forget(program);
        QCOMPARE(shellEdit(target), ShellCode::Ok);
        QTRY_VERIFY(!m_desktop.record(program).isEmpty());
        QCOMPARE(m_desktop.record(program).value(1), m_home.path("pictures/") + target);
    }

    void editFails()
    {
        QCOMPARE(shellEdit("none.qpa"), ShellCode::FileNotFound);
        QCOMPARE(shellEdit("none/a.qpa"), ShellCode::PathNotFound);
        QCOMPARE(shellEdit(""), ShellCode::FileNotFound);
    }

    void startsPrograms()
    {
        const QString program = m_desktop.makeProgram("runner");
        QCOMPARE(startProgram(program, {"a b", "", "*", "$HOME", "-x", "é"}, m_home.path("pictures")),
                 ShellCode::Ok);
        QTRY_VERIFY(!m_desktop.record("runner").isEmpty());
        QCOMPARE(m_desktop.record("runner"), (QStringList{QDir(m_home.path("pictures")).canonicalPath(),
                                                          "a b", "", "*", "$HOME", "-x", "é"}));
    }

    /// Nothing waits for the end of what was started.
    void doesNotWait()
    {
        const QString go = m_home.path("go");
        const QString told = m_home.path("told");
        const QString program =
            m_home.write("bin/waits", ("#!/bin/sh\nfor each in $(seq 600); do [ -e '" + go +
                                       "' ] && break; sleep 0.1; done\n: > '" + told + "'\n")
                                          .toLocal8Bit());
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::ExeOwner));
        QCOMPARE(startProgram(program, {}, QString()), ShellCode::Ok);
        QVERIFY(!QFile::exists(told)); // it waits for us
        m_home.write("go", "");
        QTRY_VERIFY(QFile::exists(told));
    }

    void startsInThePresentDirectory()
    {
        const QString program = m_desktop.makeProgram("here");
        QCOMPARE(startProgram(program, {}, QString()), ShellCode::Ok);
        QTRY_COMPARE(m_desktop.record("here"), QStringList{QDir::current().canonicalPath()});
    }

    void startsFromPathOnly()
    {
        m_desktop.makeProgram("found-in-path");
        const QByteArray before = qgetenv("PATH");
        qputenv("PATH", m_home.path("bin").toLocal8Bit() + ':' + before);
        const ShellCode found = startProgram("found-in-path", {}, QString());
        qputenv("PATH", before);
        QCOMPARE(found, ShellCode::Ok);
        QTRY_VERIFY(!m_desktop.record("found-in-path").isEmpty());
        QVERIFY(QFile::copy(m_home.path("bin/found-in-path"), m_home.path("pictures/only-here")));
        QCOMPARE(startProgram("only-here", {}, QString()), ShellCode::FileNotFound);
    }

    void startFails_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("directory");
        QTest::addColumn<ShellCode>("code");
        const QString runner = m_desktop.makeProgram("never");
        const QString plain = m_home.write("bin/plain", "#!/bin/sh\n");
        const QString garbage = executable("bin/garbage", "\x01\x02\x03 not a program");
        const QString lost = executable("bin/lost", "#!/no/such/interpreter\n");
        const QString empty = executable("bin/empty", "");
        QTest::newRow("empty name") << ""
                                    << "" << ShellCode::FileNotFound;
        QTest::newRow("missing") << m_home.path("bin/none") << "" << ShellCode::FileNotFound;
        QTest::newRow("missing directory") << m_home.path("none/none") << "" << ShellCode::PathNotFound;
        QTest::newRow("a directory") << m_home.path("bin") << "" << ShellCode::AccessDenied;
        QTest::newRow("a device") << "/dev/null"
                                  << "" << ShellCode::AccessDenied;
        QTest::newRow("not executable") << plain << "" << ShellCode::AccessDenied;
        QTest::newRow("no program inside") << garbage << "" << ShellCode::BadExecutable;
        QTest::newRow("nothing inside") << empty << "" << ShellCode::BadExecutable;
        QTest::newRow("interpreter missing") << lost << "" << ShellCode::BadExecutable;
        QTest::newRow("directory missing") << runner << m_home.path("none") << ShellCode::PathNotFound;
        QTest::newRow("directory is a file") << runner << plain << ShellCode::PathNotFound;
    }
    void startFails()
    {
        QFETCH(QString, program);
        QFETCH(QString, directory);
        QTEST(startProgram(program, {"x"}, directory), "code");
        QVERIFY(m_desktop.record("never").isEmpty());
    }

    void programFiles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("is");
        QTest::newRow("this test") << QCoreApplication::applicationFilePath() << true;
        QTest::newRow("script") << executable("kinds/script", "#!/bin/sh\n") << true;
        QTest::newRow("program for another system") << executable("kinds/tool.exe", "MZ\x90") << true;
        QTest::newRow("picture that may be executed") << executable("kinds/a.jpg", "\xff\xd8\xff") << false;
        QTest::newRow("script that may not") << m_home.write("kinds/b.sh", "#!/bin/sh\n") << false;
        QTest::newRow("directory") << m_home.path("kinds") << false;
        QTest::newRow("missing") << m_home.path("kinds/none") << false;
        QTest::newRow("empty") << "" << false;
    }
    void programFiles()
    {
        QFETCH(QString, path);
        QTEST(isProgramFile(path), "is");
    }

    void addresses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("is");
        QTest::newRow("web") << "http://example.org" << true;
        QTest::newRow("mail") << "mailto:a@b" << true;
        QTest::newRow("file") << "file:///a" << true;
        QTest::newRow("drive") << "C:\\a.jpg" << false;
        QTest::newRow("path") << "/a/b:c" << false;
        QTest::newRow("no scheme") << "www.example.org" << false;
        QTest::newRow("names a file") << "https:" << false; // made in the present directory by initTestCase
        QTest::newRow("empty") << "" << false;
    }
    void addresses()
    {
        QFETCH(QString, text);
        QTEST(isAddress(text), "is");
    }

  private:
    QString executable(const QString& name, const QByteArray& bytes) const
    {
        const QString path = m_home.write(name, bytes);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    quorvia::test::ScratchHome m_home;
    quorvia::test::ScratchDesktop m_desktop{m_home};
};

QTEST_GUILESS_MAIN(TestShell)
#include "tst_shell.moc"
