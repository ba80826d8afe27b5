// The mail tool itself, with a composer of the test's own in the place of the desktop's.
#include "support/ScratchHome.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <cstdio>

using quorvia::test::ScratchHome;

class TestPostrel : public QObject
{
    Q_OBJECT

  private:
    ScratchHome m_home;
    QByteArray m_error;

    /// Makes the composer, which writes its arguments, one a line, and ends with `code`.
    void makeComposer(int code)
    {
        const QString script = QStringLiteral("#!/bin/sh\nprintf '%s\\n' \"$@\" > '%1'\nexit %2\n")
                                   .arg(m_home.path(QStringLiteral("told")))
                                   .arg(code);
        const QString file = m_home.write(QStringLiteral("bin/xdg-email"), script.toUtf8());
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    QStringList told() const
    {
        QFile file(m_home.path(QStringLiteral("told")));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).split(u'\n')
                                              : QStringList();
    }
    /// Runs the tool, without a screen, and gives its exit code.
    int run(const QStringList& arguments, const QString& path)
    {
        return runProgram(QStringLiteral(POSTREL), arguments, path);
    }
    int runProgram(const QString& program, const QStringList& arguments, const QString& path)
    {
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("DISPLAY"));
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.insert(QStringLiteral("PATH"), path);
        tool.setProcessEnvironment(environment);
        tool.start(program, arguments);
        if (!tool.waitForFinished())
            return -1;
        m_error = tool.readAllStandardError();
        return tool.exitCode();
    }
    QString composerPath() const
    {
        return m_home.path(QStringLiteral("bin")) + QStringLiteral(":/usr/bin:/bin");
    }

  private Q_SLOTS:
    void cleanup() { QFile::remove(m_home.path(QStringLiteral("told"))); }

    void handsOn()
    {
        makeComposer(0);
        const QString one = m_home.write(QStringLiteral("two words.png"), "x");
        const QString other = m_home.write(QStringLiteral("semi;colon ü.png"), "x");
        QCOMPARE(
            run({"/subject:Image (Größe)", "/hiddenbody:<BRX>- text", "/attachments:" + one + u';' + other},
                composerPath()),
            0);
        QCOMPARE(told(), QStringList({"--utf8", "--subject", "Image (Größe)", "--body", "", "- text",
                                      "--attach", one, "--attach", other, ""}));
    }

    void namesOfEverySort_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("marks") << QByteArray("a;;b.jpg");
        QTest::newRow("a mark at the end") << QByteArray("semi;");
        QTest::newRow("a blank at the end") << QByteArray("end.jpg ");
        QTest::newRow("the name of another before it") << QByteArray("x.jpg;1.jpg");
        QTest::newRow("in no encoding") << QByteArray("bad\xff.jpg");
    }

    void namesOfEverySort()
    {
        QFETCH(QByteArray, name);
        makeComposer(0);
        m_home.write(QStringLiteral("x.jpg"), "x");
        const QByteArray path = QFile::encodeName(m_home.path(QStringLiteral("x"))).chopped(1) + name;
        std::FILE* const file = std::fopen(path.constData(), "w"); // the toolkit cannot name each of them
        QVERIFY(file);
        std::fclose(file);
        // The shell turns the octal digits into bytes.
        QByteArray octal;
        for (const char byte : path)
            octal += "\\0" + QByteArray::number(uchar(byte), 8);
        const QString script = QStringLiteral("exec \"$0\" \"/attachments:$(printf '%b_' '") +
                               QString::fromLatin1(octal) + QStringLiteral("' | sed 's/_$//')\"");
        const int code = runProgram(QStringLiteral("/bin/sh"), {"-c", script, POSTREL}, composerPath());
        QVERIFY2(code == 0, m_error.constData());
        QFile said(m_home.path(QStringLiteral("told")));
        QVERIFY(said.open(QIODevice::ReadOnly));
        QCOMPARE(said.readAll(), "--utf8\n--attach\n" + path + '\n');
    }

    void aFileThatIsNotThere()
    {
        makeComposer(0);
        QCOMPARE(run({"/subject:x", "/attachments:/nowhere/a.png"}, composerPath()), 2);
        QVERIFY(m_error.contains("/nowhere/a.png"));
        QVERIFY(told().isEmpty());
    }

    void aComposerThatFails()
    {
        makeComposer(4);
        QCOMPARE(run({"/subject:x"}, composerPath()), 4);
        QVERIFY(m_error.contains("mail program"));
    }

    void noComposer()
    {
        QCOMPARE(run({"/subject:x"}, m_home.path(QStringLiteral("nothing"))), 4);
        QVERIFY(m_error.contains("mail program"));
    }

    void noArguments()
    {
        QCOMPARE(run({}, composerPath()), 1);
        QVERIFY(m_error.contains("Usage"));
    }
};

QTEST_GUILESS_MAIN(TestPostrel)
#include "tst_postrel.moc"
