#include "../support/ScratchHome.h"
#include "app/CommandLine.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace quorvia::app;

class TestCommandLine : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        for (const char* name : {"a.jpg", "a b.jpg", "two  blanks.jpg", " lead.jpg", "50%.jpg", "c%20d.jpg",
                                 "c d.jpg", "e%20f.jpg", "é#?.jpg", "-dash.jpg", "12\" disc.jpg",
                                 "back\\slash.jpg", "sub/x.jpg", "sub dir/y.jpg", "file:/odd.jpg"})
            m_home.write(QStringLiteral("w/") + QString::fromUtf8(name), "x");
        m_home.write("other/deep/z.jpg", "x");
        QVERIFY(QFile::link("../other/deep", m_home.path("w/link")));
        m_work = m_home.path("w");
        m_foreign = QString(m_work).replace(u'/', u'\\');
    }

    /// "@" in a row stands for the working directory.
    void paths_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("bareFile");
        const auto named = [](const char* row, const QStringList& arguments, const QString& path) {
            QTest::newRow(row) << arguments << path << path;
        };
        named("none", {}, "");
        named("empty argument", {""}, "");
        named("blank argument", {"  "}, "");
        named("absolute", {"@/a.jpg"}, "@/a.jpg");
        named("relative", {"a.jpg"}, "@/a.jpg");
        named("relative below", {"sub/x.jpg"}, "@/sub/x.jpg");
        named("with a point", {"./a.jpg"}, "@/a.jpg");
        named("upwards", {"sub/../a.jpg"}, "@/a.jpg");
        named("doubled separators", {"@//sub//x.jpg"}, "@/sub/x.jpg");
        named("through a link", {"link/z.jpg"}, "@/link/z.jpg");
        named("empty argument before", {"", "a.jpg"}, "@/a.jpg");
        named("blank in one argument", {"a b.jpg"}, "@/a b.jpg");
        named("blank over two arguments", {"a", "b.jpg"}, "@/a b.jpg");
        named("two blanks", {"two  blanks.jpg"}, "@/two  blanks.jpg");
        named("two blanks over three arguments", {"two", "", "blanks.jpg"}, "@/two  blanks.jpg");
        named("path over two arguments", {"@/sub", "dir/y.jpg"}, "@/sub dir/y.jpg");
        named("blank first in the name", {" lead.jpg"}, "@/ lead.jpg");
        named("blanks around", {" a.jpg "}, "@/a.jpg");
        named("directory", {"@/sub"}, "@/sub");
        named("directory and separator", {"@/sub/"}, "@/sub");
        named("directory above", {".."}, "^");
        named("working directory", {"."}, "@");
        named("root", {"/"}, "/");
        named("directory below the root", {"/tmp"}, "/tmp");
        named("directory below the root and separator", {"/tmp/"}, "/tmp");
        named("names nothing", {"none.jpg"}, "none.jpg");
        named("absolute, names nothing", {"/no/such"}, "/no/such");
        named("minus first", {"-dash.jpg"}, "@/-dash.jpg");
        named("minus first, names nothing", {"-none"}, "-none");
        QTest::newRow("quoted") << QStringList{"\"a.jpg\""} << "\"a.jpg\""
                                << "@/a.jpg";
        QTest::newRow("quoted, names nothing") << QStringList{"\"none.jpg\""} << "\"none.jpg\""
                                               << "none.jpg";
        QTest::newRow("quotes over two arguments") << QStringList{"\"a", "b.jpg\""} << "\"a b.jpg\""
                                                   << "@/a b.jpg";
        QTest::newRow("quotes alone") << QStringList{"\"\""} << "\"\""
                                      << "";
        named("quote in the name", {"12\" disc.jpg"}, "@/12\" disc.jpg");
        named("address", {"file://@/a%20b.jpg"}, "@/a b.jpg");
        named("address, capitals", {"FILE://@/a.jpg"}, "@/a.jpg");
        named("address with a host", {"file://localhost@/a.jpg"}, "@/a.jpg");
        named("address of another host", {"file://elsewhere@/a.jpg"}, "file://elsewhere@/a.jpg");
        named("short address", {"file:@/a.jpg"}, "@/a.jpg");
        named("address of a directory", {"file://@/sub/"}, "@/sub");
        named("address, signs coded", {"file://@/%C3%A9%23%3F.jpg"}, "@/é#?.jpg");
        named("address, signs not coded", {"file://@/é#?.jpg"}, "@/é#?.jpg");
        named("address, percent not coded", {"file://@/50%.jpg"}, "@/50%.jpg");
        named("address, decoded name wins", {"file://@/c%20d.jpg"}, "@/c d.jpg");
        named("address, decoded once", {"file://@/c%2520d.jpg"}, "@/c%20d.jpg");
        named("address of a name spelt so", {"file://@/e%20f.jpg"}, "@/e%20f.jpg");
        named("name that looks like an address", {"file:/odd.jpg"}, "@/file:/odd.jpg");
        named("address, names nothing", {"file://@/none.jpg"}, "file://@/none.jpg");
        named("address, nothing", {"FILE:"}, "FILE:");
        named("address, zero character", {"file:///%00"}, "file:///%00");
        named("percent in the name", {"c%20d.jpg"}, "@/c%20d.jpg");
        named("percent, names nothing", {"a%20b.jpg"}, "a%20b.jpg");
        named("backslash in the name", {"back\\slash.jpg"}, "@/back\\slash.jpg");
        named("backslashes", {"sub\\x.jpg"}, "@/sub/x.jpg");
        named("drive", {"C:#\\a.jpg"}, "@/a.jpg");
        named("drive, names nothing", {"C:\\none.jpg"}, "C:\\none.jpg");
        named("two files", {"a.jpg", "c d.jpg"}, "a.jpg c d.jpg");
        QTest::newRow("before a switch") << QStringList{"a.jpg", "/miHide"} << "@/a.jpg"
                                         << "";
        QTest::newRow("after a switch") << QStringList{"/miHide", "a.jpg"} << "@/a.jpg"
                                        << "";
        QTest::newRow("around a switch") << QStringList{"a", "/miHide", "b.jpg"} << "@/a b.jpg"
                                         << "";
        QTest::newRow("quoted, with a switch") << QStringList{"\"a.jpg\"", "/miHide"} << "\"a.jpg\""
                                               << "";
        QTest::newRow("switch only") << QStringList{"/miHide"} << ""
                                     << "";
    }
    void paths()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, path);
        QFETCH(QString, bareFile);
        for (QString& argument : arguments)
            argument = filled(argument);
        const CommandLine line = parseCommandLine(arguments, m_work);
        QCOMPARE(line.line, arguments.join(u' '));
        QCOMPARE(line.isEmpty(), line.line.isEmpty());
        QCOMPARE(line.path, filled(path));
        QCOMPARE(line.bareFile, filled(bareFile));
    }

    void switches_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("commands");
        QTest::newRow("none") << QStringList{} << QStringList{};
        QTest::newRow("one") << QStringList{"/miHide"} << QStringList{"miHide"};
        QTest::newRow("in order") << QStringList{"/miB", "a.jpg", "/miA", "/miB"}
                                  << QStringList{"miB", "miA", "miB"};
        QTest::newRow("message") << QStringList{"/miMsg_Done"} << QStringList{"miMsg_Done"};
        QTest::newRow("message with blanks")
            << QStringList{"/miMsg_All done "} << QStringList{"miMsg_All done"};
        QTest::newRow("blank behind the separator") << QStringList{"/ miHide"} << QStringList{"miHide"};
        QTest::newRow("capital install") << QStringList{"/Install"} << QStringList{"Install"};
        QTest::newRow("with a point") << QStringList{"/x.jpg"} << QStringList{"x.jpg"};
        QTest::newRow("further separator") << QStringList{"/miA/miB"} << QStringList{};
        QTest::newRow("separator at the end") << QStringList{"/miA/"} << QStringList{};
        QTest::newRow("separator alone") << QStringList{"/"} << QStringList{};
        QTest::newRow("separator and blank") << QStringList{"/ "} << QStringList{};
        QTest::newRow("existing directory") << QStringList{"/tmp"} << QStringList{};
        QTest::newRow("minus") << QStringList{"-miHide"} << QStringList{};
        QTest::newRow("within an argument") << QStringList{"a.jpg /miHide"} << QStringList{};
        QTest::newRow("quoted") << QStringList{"\"/miHide\""} << QStringList{};
    }
    void switches()
    {
        QFETCH(QStringList, arguments);
        const CommandLine line = parseCommandLine(arguments, m_work);
        QTEST(line.commands, "commands");
        QCOMPARE(line.holdsSwitch(), !line.commands.isEmpty());
    }

    void mentions_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("mentions");
        QTest::newRow("itself") << QStringList{"/miHide"} << true;
        QTest::newRow("longer") << QStringList{"/miHideInterface"} << true;
        QTest::newRow("second switch") << QStringList{"/miFit", "/miHide"} << true;
        QTest::newRow("other case") << QStringList{"/mihide"} << false;
        QTest::newRow("without the separator") << QStringList{"/xmiHide"} << false;
        QTest::newRow("within a path") << QStringList{"/no/miHide"} << false;
        QTest::newRow("not a switch") << QStringList{"miHide"} << false;
        QTest::newRow("nothing") << QStringList{} << false;
    }
    void mentions()
    {
        QFETCH(QStringList, arguments);
        QTEST(parseCommandLine(arguments, m_work).mentions(QStringLiteral("/miHide")), "mentions");
    }

    void wholeLines_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("install");
        QTest::addColumn<bool>("uninstall");
        QTest::newRow("install") << QStringList{"/install"} << true << false;
        QTest::newRow("uninstall") << QStringList{"/uninstall"} << false << true;
        QTest::newRow("capital") << QStringList{"/Install"} << false << false;
        QTest::newRow("with more") << QStringList{"/install", "/miHide"} << false << false;
        QTest::newRow("twice") << QStringList{"/uninstall", "/uninstall"} << false << false;
        QTest::newRow("blank before") << QStringList{"", "/install"} << false << false;
        QTest::newRow("nothing") << QStringList{} << false << false;
    }
    void wholeLines()
    {
        QFETCH(QStringList, arguments);
        const CommandLine line = parseCommandLine(arguments, m_work);
        QTEST(line.isInstall(), "install");
        QTEST(line.isUninstall(), "uninstall");
    }

    void linkedParentIsNotCutShort()
    {
        // "link/.." is "other", not the working directory.
        const CommandLine line = parseCommandLine({"link/../deep/z.jpg"}, m_work);
        QCOMPARE(line.path, QFileInfo(m_home.path("other/deep/z.jpg")).canonicalFilePath());
    }

    void presentDirectory()
    {
        QVERIFY(QDir::setCurrent(m_work));
        QCOMPARE(parseCommandLine({"a.jpg"}, QString()).path, QDir::currentPath() + QStringLiteral("/a.jpg"));
    }

  private:
    QString filled(QString text) const
    {
        if (text == QLatin1String("^"))
            return QFileInfo(m_work).path();
        return text.replace(QLatin1String("C:#"), QLatin1String("C:") + m_foreign).replace(u'@', m_work);
    }

    quorvia::test::ScratchHome m_home;
    QString m_work;
    QString m_foreign; ///< the working directory with backslashes
};

QTEST_GUILESS_MAIN(TestCommandLine)
#include "tst_commandline.moc"
