#include "../support/ScratchHome.h"
#include "platform/InstanceGuard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <memory>
#include <optional>

using namespace quorvia::platform;
using quorvia::test::ScratchHome;

namespace {

/// Another process with a guard of its own.
class Other
{
  public:
    explicit Other(const QString& path)
    {
        m_process.start(QStringLiteral(PLATFORM_CHILD), {QStringLiteral("guard"), path});
        while (!m_process.canReadLine() && m_process.waitForReadyRead(10000)) {
        }
        m_said = m_process.readLine().trimmed();
    }
    QByteArray said() const { return m_said; }
    void end()
    {
        m_process.closeWriteChannel();
        QVERIFY(m_process.waitForFinished(10000));
    }
    void kill()
    {
        m_process.kill();
        QVERIFY(m_process.waitForFinished(10000));
    }

  private:
    QProcess m_process;
    QByteArray m_said;
};

} // namespace

class TestInstanceGuard : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void firstIsAlone();
    void laterSeeOthers();
    void endOfOthers_data();
    void endOfOthers();
    void othersSeeUs();
    void remainsWhileOneLives();
    void notInheritedByPrograms();
    void lockThatCannotBeMade();
    void lockPath();
    void startingTogether();
};

void TestInstanceGuard::firstIsAlone()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("some/where/quorvia.lock"));
    const InstanceGuard guard(path);
    QVERIFY(!guard.othersWereRunning());
    QVERIFY(QFileInfo(path).isFile());
}

void TestInstanceGuard::laterSeeOthers()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("quorvia.lock"));
    Other first(path);
    QCOMPARE(first.said(), QByteArray("alone"));
    Other second(path);
    QCOMPARE(second.said(), QByteArray("others"));
    const InstanceGuard third(path);
    QVERIFY(third.othersWereRunning());
    first.end();
    second.end();
}

void TestInstanceGuard::endOfOthers_data()
{
    QTest::addColumn<bool>("killed");
    QTest::newRow("ends by itself") << false;
    QTest::newRow("is killed") << true;
}

void TestInstanceGuard::endOfOthers()
{
    QFETCH(bool, killed);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("quorvia.lock"));
    Other first(path);
    QCOMPARE(first.said(), QByteArray("alone"));
    killed ? first.kill() : first.end();
    const InstanceGuard guard(path);
    QVERIFY(!guard.othersWereRunning());
}

void TestInstanceGuard::othersSeeUs()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("quorvia.lock"));
    auto guard = std::make_unique<InstanceGuard>(path);
    Other during(path);
    QCOMPARE(during.said(), QByteArray("others"));
    during.end();
    guard.reset();
    Other after(path);
    QCOMPARE(after.said(), QByteArray("alone"));
    after.end();
}

void TestInstanceGuard::remainsWhileOneLives()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("quorvia.lock"));
    Other first(path);
    Other second(path);
    first.kill();
    Other third(path);
    QCOMPARE(third.said(), QByteArray("others"));
    second.end();
    third.end();
}

void TestInstanceGuard::notInheritedByPrograms()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("quorvia.lock"));
    auto guard = std::make_unique<InstanceGuard>(path);
    QProcess started;
    started.start(QStringLiteral("cat"), {});
    QVERIFY(started.waitForStarted(10000));
    guard.reset();
    const InstanceGuard next(path);
    QVERIFY(!next.othersWereRunning());
    started.closeWriteChannel();
    QVERIFY(started.waitForFinished(10000));
}

void TestInstanceGuard::lockThatCannotBeMade()
{
    const ScratchHome home;
    const QString file = home.write(QStringLiteral("file"), "x");
    const InstanceGuard belowFile(file + QStringLiteral("/quorvia.lock"));
    QVERIFY(!belowFile.othersWereRunning());
    const InstanceGuard directory(home.path(QString()));
    QVERIFY(!directory.othersWereRunning());
}

void TestInstanceGuard::lockPath()
{
    const ScratchHome home;
    QCOMPARE(instanceLockPath(), home.path(QStringLiteral("run/quorvia.lock")));
    QVERIFY(QDir(home.path(QStringLiteral("run"))).removeRecursively());
    QCOMPARE(instanceLockPath(), home.path(QStringLiteral(".local/state/quorvia/quorvia.lock")));
    qputenv("XDG_RUNTIME_DIR", "run"); // relative: counts as unset
    qputenv("XDG_STATE_HOME", "state");
    QCOMPARE(instanceLockPath(), home.path(QStringLiteral(".local/state/quorvia/quorvia.lock")));
}

void TestInstanceGuard::startingTogether()
{
    const ScratchHome home;
    for (int round = 0; round < 5; ++round) {
        const QString path = home.path(QStringLiteral("lock%1").arg(round));
        std::vector<std::unique_ptr<QProcess>> all;
        for (int n = 0; n < 6; ++n) {
            all.push_back(std::make_unique<QProcess>());
            all.back()->start(QStringLiteral(PLATFORM_CHILD), {QStringLiteral("guard"), path});
        }
        int alone = 0;
        for (const auto& process : all) {
            while (!process->canReadLine() && process->waitForReadyRead(10000)) {
            }
            alone += process->readLine().trimmed() == "alone" ? 1 : 0;
        }
        for (const auto& process : all) {
            process->closeWriteChannel();
            QVERIFY(process->waitForFinished(10000));
        }
        QCOMPARE(alone, 1);
    }
}

QTEST_GUILESS_MAIN(TestInstanceGuard)
#include "tst_instanceguard.moc"
