// ShellRun against a desktop made by the test, and the words of its failures.
#include "../support/ScratchDesktop.h"
#include "../support/ScratchHome.h"
#include "app/mFile.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <map>

using namespace quorvia::app;

class TestMFileShell : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        m_desktop.addType("image/x-painting", "*.qpa");
        m_desktop.addType("image/x-ours", "*.qou");
        m_desktop.addType("image/x-orphan", "*.qor");
        m_desktop.addApplication("looker", {"image/x-painting", "inode/directory"}, "Graphics;Viewer;");
        m_desktop.addApplication("quorvia", {"image/x-ours"}, "Graphics;Viewer;");
        m_desktop.addApplication("painter", {"image/x-ours"}, "Graphics;RasterGraphics;");
        m_desktop.addApplication("surfer", {"x-scheme-handler/http"}, "Network;", "%u");
        m_desktop.setDefault("image/x-painting", "looker");
        m_desktop.setDefault("image/x-ours", "quorvia");
        m_desktop.setDefault("inode/directory", "looker");
        m_desktop.setDefault("x-scheme-handler/http", "surfer");
        m_home.write("pictures/a b.qpa", "x");
        m_home.write("pictures/o.qou", "x");
        m_home.write("pictures/o.qor", "x");
        m_home.write("setup.exe.d/a.qpa", "x");
        QVERIFY(QDir().mkdir(m_home.path("folder.exe")));
        QVERIFY(QDir::setCurrent(m_home.path("pictures")));
    }

    void messages_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        const QString other = "An error occurred occurred whilst trying to open or print the selected file.";
        const std::map<int, QString> table = {
            {0, "Out of memory"},
            {2, "File not found"},
            {3, "Path not found"},
            {5, "Path/file access error"},
            {8, "Out of memory"},
            {11, "The executable file is invalid or corrupt"},
            {26, "A sharing violation occurred."},
            {27, "This file type does not have a valid file association."},
            {28, "The file could not be opened due to time out. Please try again in a moment."},
            {29, "The file could not be opened because the DDE transaction failed. Please try again in a "
                 "moment."},
            {30, "The file could not be opened because the target application is busy. Please try again in a "
                 "moment."},
            {31, "No application is associated with this file type."},
            {32, "The specified dynamic-link library was not found."}};
        for (int code = -1; code <= 32; ++code)
            QTest::addRow("%d", code) << code << (table.contains(code) ? table.at(code) : other);
        QTest::newRow("success") << 33 << "";
        QTest::newRow("success, any number") << 42 << "";
    }
    void messages()
    {
        QFETCH(int, code);
        QTEST(ShellMessage(code), "text");
    }

    void parameters_data()
    {
        QTest::addColumn<QString>("parameters");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << "" << QStringList{};
        QTest::newRow("one") << "a" << QStringList{"a"};
        QTest::newRow("two") << "a b" << QStringList{"a", "b"};
        QTest::newRow("blanks to spare") << "  a   b " << QStringList{"a", "b"};
        QTest::newRow("quotes group") << "\"a b\" c" << QStringList{"a b", "c"};
        QTest::newRow("quotes within") << "/p:\"a b\".jpg" << QStringList{"/p:a b.jpg"};
        QTest::newRow("quote character") << "a\"\"\"b" << QStringList{"a\"b"};
        QTest::newRow("apostrophe") << "it's here" << QStringList{"it's", "here"};
        QTest::newRow("nothing for a shell")
            << "$HOME * ;ls |x >JPG `ls`" << QStringList{"$HOME", "*", ";ls", "|x", ">JPG", "`ls`"};
    }
    void parameters()
    {
        QFETCH(QString, parameters);
        QFETCH(QStringList, arguments);
        const QString program = m_desktop.makeProgram("tool");
        m_desktop.forget("tool");
        QString message = "before";
        QVERIFY(ShellRun(program, 10, parameters, m_home.path("setup.exe.d"), "open", message));
        QCOMPARE(message, QString());
        QTRY_VERIFY(!m_desktop.record("tool").isEmpty());
        QCOMPARE(m_desktop.record("tool"),
                 QStringList{QDir(m_home.path("setup.exe.d")).canonicalPath()} + arguments);
    }

    /// "runs": who was started; "received": with what.
    void targets_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("verb");
        QTest::addColumn<QString>("runs");
        QTest::addColumn<QStringList>("received");
        m_desktop.makeProgram("Tool.EXE");
        m_desktop.makeProgram("plain-tool");
        const QString painting = m_home.path("pictures/a b.qpa");
        const QStringList arguments = {"one", "two"};
        QTest::newRow("program named .EXE") << m_home.path("bin/Tool.EXE") << "open"
                                            << "Tool.EXE" << arguments;
        QTest::newRow("program") << m_home.path("bin/plain-tool") << "open"
                                 << "plain-tool" << arguments;
        QTest::newRow("program, no path") << "../bin/plain-tool"
                                          << ""
                                          << "plain-tool" << arguments;
        QTest::newRow("document") << painting << "open"
                                  << "looker" << QStringList{painting};
        QTest::newRow("document, relative") << "a b.qpa"
                                            << "open"
                                            << "looker" << QStringList{painting};
        QTest::newRow("document, no verb") << painting << ""
                                           << "looker" << QStringList{painting};
        QTest::newRow("document, verb in capitals") << painting << "OPEN"
                                                    << "looker" << QStringList{painting};
        QTest::newRow("document to edit") << m_home.path("pictures/o.qou") << "edit"
                                          << "painter" << QStringList{m_home.path("pictures/o.qou")};
        QTest::newRow("ours opens ours") << m_home.path("pictures/o.qou") << "open"
                                         << "quorvia" << QStringList{m_home.path("pictures/o.qou")};
        QTest::newRow("directory") << m_home.path("pictures") << "open"
                                   << "looker" << QStringList{m_home.path("pictures")};
        QTest::newRow("directory named .exe") << m_home.path("folder.exe") << "open"
                                              << "looker" << QStringList{m_home.path("folder.exe")};
        QTest::newRow("document below such a directory")
            << m_home.path("setup.exe.d/a.qpa") << "open"
            << "looker" << QStringList{m_home.path("setup.exe.d/a.qpa")};
        QTest::newRow("address") << "http://example.org/get.exe"
                                 << "open"
                                 << "surfer" << QStringList{"http://example.org/get.exe"};
    }
    void targets()
    {
        QFETCH(QString, target);
        QFETCH(QString, verb);
        QFETCH(QString, runs);
        m_desktop.forget(runs);
        QString message = "before";
        QVERIFY(ShellRun(target, 1, "one two", QString(), verb, message));
        QCOMPARE(message, QString());
        QTRY_VERIFY(!m_desktop.record(runs).isEmpty());
        QTEST(m_desktop.record(runs).mid(1), "received");
    }

    void programInThePresentDirectory()
    {
        QVERIFY(QFile::copy(m_desktop.makeProgram("local.exe"), m_home.path("pictures/local.exe")));
        QString message;
        QVERIFY(ShellRun("local.exe", 1, QString(), QString(), "open", message));
        QTRY_COMPARE(m_desktop.record("local.exe"), QStringList{QDir::current().canonicalPath()});
    }

    void failures_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("verb");
        QTest::addColumn<QString>("text");
        const QString garbage = m_home.write("bin/garbage.exe", "no program");
        QFile::setPermissions(garbage, QFile::ReadOwner | QFile::ExeOwner);
        const QString denied = "Path/file access error";
        QTest::newRow("missing program") << m_home.path("bin/none.exe") << "open"
                                         << "File not found";
        QTest::newRow("missing program in no directory") << m_home.path("no/none.exe") << "open"
                                                         << "Path not found";
        QTest::newRow("unknown program") << "quorvia-no-such-tool.exe"
                                         << "open"
                                         << "File not found";
        QTest::newRow("program without permission")
            << m_home.write("bin/plain.exe", "MZ") << "open" << denied;
        QTest::newRow("program damaged") << garbage << "open"
                                         << "The executable file is invalid or corrupt";
        QTest::newRow("missing document") << m_home.path("none.qpa") << "open"
                                          << "File not found";
        QTest::newRow("missing directory") << m_home.path("no/none.qpa") << "edit"
                                           << "Path not found";
        QTest::newRow("empty") << ""
                               << "open"
                               << "File not found";
        QTest::newRow("no program for it") << m_home.path("pictures/o.qor") << "open"
                                           << "No application is associated with this file type.";
        QTest::newRow("other verb") << m_home.path("pictures/a b.qpa") << "print"
                                    << "No application is associated with this file type.";
    }
    void failures()
    {
        QFETCH(QString, target);
        QFETCH(QString, verb);
        QString message;
        QVERIFY(!ShellRun(target, 1, QString(), QString(), verb, message));
        QTEST(message, "text");
    }

  private:
    quorvia::test::ScratchHome m_home;
    quorvia::test::ScratchDesktop m_desktop{m_home};
};

QTEST_GUILESS_MAIN(TestMFileShell)
#include "tst_mfileshell.moc"
