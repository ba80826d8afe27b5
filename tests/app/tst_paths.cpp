#include "../support/ScratchHome.h"
#include "app/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

using namespace quorvia::app;
using quorvia::test::ScratchHome;

namespace {

/// What `ask` gives in a process that has no more rights than anybody, the administrator's test runs
/// included.
QString withoutRights(const std::function<QString()>& ask)
{
    int ends[2] = {};
    if (::pipe(ends) != 0)
        return QStringLiteral("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool dropped = ::geteuid() != 0 ||
                             (::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        const QByteArray answer = dropped ? ask().toUtf8() : QByteArray("rights were not given up");
        ::_exit(::write(ends[1], answer.constData(), size_t(answer.size())) == answer.size() ? 0 : 1);
    }
    ::close(ends[1]);
    QByteArray answer;
    char buffer[4096];
    for (ssize_t size = 0; (size = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        answer.append(buffer, size);
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? QString::fromUtf8(answer)
                                                         : QStringLiteral("no answer");
}

} // namespace

class TestPaths : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void installPathRules_data();
    void installPathRules();
    void portableMustBeWritable();
    void installPathOfTheProcess();
    void dataHomeUnset();
    void programFile();
    void log();
};

void TestPaths::installPathRules_data()
{
    QTest::addColumn<QString>("root");     // in the environment, below the home; empty: not set
    QTest::addColumn<QString>("portable"); // what `portable` is in the program's directory
    QTest::addColumn<QString>("expected"); // below the home
    QTest::newRow("the environment wins") << "my root"
                                          << "file"
                                          << "my root/";
    QTest::newRow("the environment with an end") << "root/"
                                                 << ""
                                                 << "root/";
    QTest::newRow("the environment with dots") << "root/../other//x"
                                               << ""
                                               << "other/x/";
    QTest::newRow("portable") << ""
                              << "file"
                              << "program/";
    QTest::newRow("portable is a directory") << ""
                                             << "directory"
                                             << ".local/share/quorvia/";
    QTest::newRow("not portable") << ""
                                  << ""
                                  << ".local/share/quorvia/";
}

void TestPaths::installPathRules()
{
    QFETCH(QString, root);
    QFETCH(QString, portable);
    QFETCH(QString, expected);
    const ScratchHome home;
    const QString program = home.path(QStringLiteral("program"));
    QVERIFY(QDir().mkpath(program));
    if (portable == QLatin1String("file"))
        home.write(QStringLiteral("program/portable"), "");
    else if (!portable.isEmpty())
        QVERIFY(QDir().mkpath(program + QStringLiteral("/portable")));
    QCOMPARE(installPathFor(root.isEmpty() ? root : home.path(root), program), home.path(expected));
}

void TestPaths::portableMustBeWritable()
{
    const ScratchHome home;
    home.write(QStringLiteral("program/portable"), "");
    const QString program = home.path(QStringLiteral("program"));
    QCOMPARE(installPathFor(QString(), program), program + QLatin1Char('/'));
    const auto readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(home.path(QString()), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(program, readable));
    QCOMPARE(withoutRights([&] { return installPathFor(QString(), program); }),
             home.path(QStringLiteral(".local/share/quorvia/")));
    QVERIFY(QFile::setPermissions(program, readable | QFile::WriteOwner));
    QCOMPARE(installPathFor(QString(), home.path(QStringLiteral("none"))),
             home.path(QStringLiteral(".local/share/quorvia/")));
}

void TestPaths::installPathOfTheProcess()
{
    const ScratchHome home;
    QCOMPARE(InstallPath(), home.path(QStringLiteral("root/")));
    qputenv("QUORVIA_ROOT", home.path(QStringLiteral("second")).toLocal8Bit());
    QCOMPARE(InstallPath(), home.path(QStringLiteral("second/")));
    qputenv("QUORVIA_ROOT", "relative");
    QCOMPARE(InstallPath(), QDir::currentPath() + QStringLiteral("/relative/"));
    qunsetenv("QUORVIA_ROOT");
    QCOMPARE(InstallPath(), home.path(QStringLiteral(".local/share/quorvia/")));
}

void TestPaths::dataHomeUnset()
{
    const ScratchHome home;
    const QString expected = home.path(QStringLiteral(".local/share/quorvia/"));
    qunsetenv("XDG_DATA_HOME");
    QCOMPARE(installPathFor(QString(), home.path(QString())), expected);
    qputenv("XDG_DATA_HOME", "");
    QCOMPARE(installPathFor(QString(), home.path(QString())), expected);
    qputenv("XDG_DATA_HOME", "relative");
    QCOMPARE(installPathFor(QString(), home.path(QString())), expected);
    qputenv("XDG_DATA_HOME", home.path(QStringLiteral("data")).toLocal8Bit());
    QCOMPARE(installPathFor(QString(), home.path(QString())), home.path(QStringLiteral("data/quorvia/")));
}

void TestPaths::programFile()
{
    QCOMPARE(programPath(), QCoreApplication::applicationFilePath());
    QVERIFY(QFileInfo(programPath()).isExecutable());
}

void TestPaths::log()
{
    const ScratchHome home;
    QCOMPARE(logPath(), home.path(QStringLiteral(".local/state/quorvia/qolog.log")));
    qunsetenv("XDG_STATE_HOME");
    QCOMPARE(logPath(), home.path(QStringLiteral(".local/state/quorvia/qolog.log")));
    qputenv("XDG_STATE_HOME", home.path(QStringLiteral("state")).toLocal8Bit());
    QCOMPARE(logPath(), home.path(QStringLiteral("state/quorvia/qolog.log")));
}

QTEST_GUILESS_MAIN(TestPaths)
#include "tst_paths.moc"
