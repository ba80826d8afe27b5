// The file of the store: where it lies, what it is made of, and what it goes on without.
#include "../support/ScratchHome.h"
#include "platform/SettingsStore.h"
#include "platform/StoreProbe.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace quorvia::platform;
using quorvia::test::asked;
using quorvia::test::ScratchHome;
using quorvia::test::settingsKey;
using quorvia::test::stored;

namespace {

/// Something stands where the write-ahead log's shared memory has to be: a link, which is not followed, or a
/// directory.
bool refuseSharedMemory(const QString& path, bool link)
{
    const QString name = path + QStringLiteral("-shm");
    return link ? QFile::link(QStringLiteral("nowhere"), name) : QDir().mkpath(name);
}

} // namespace

class TestSettingsFile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void directoryIsMade();
    void goodStoreIsLeftAsItIs();
    void legacyJournalIsTakenOver();
    void aheadLogRefused_data();
    void aheadLogRefused();
    void refusalIsRemembered();
    void cannotBeCreated_data();
    void cannotBeCreated();
    void readOnly_data();
    void readOnly();
    void fileRemovedUnderIt();
    void fileReplacedUnderIt();
    void tableDroppedUnderIt();
    void linkedStore();
    void userPath();
    void machinePath();
};

void TestSettingsFile::directoryIsMade()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("a/b c/ü%?#/user.db"));
    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::Ready);
    QCOMPARE(store.path(), path);
    QVERIFY(store.setAsidePath().isEmpty());
    QVERIFY(QFileInfo(path).isFile());
    QCOMPARE(asked(path, QStringLiteral("PRAGMA journal_mode")), QByteArray("wal"));
}

void TestSettingsFile::goodStoreIsLeftAsItIs()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    {
        SettingsStore store(path);
        store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1);
    }
    // Closed by the last program, the file holds everything and stands alone.
    QCOMPARE(QDir(home.path(QString())).entryList({QStringLiteral("user.db*")}, QDir::Files),
             QStringList{QStringLiteral("user.db")});
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    {
        const SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::Ready);
        QCOMPARE(stored(store, settingsKey, QStringLiteral("x")), QStringLiteral("1"));
    }
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), before);
}

void TestSettingsFile::legacyJournalIsTakenOver()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    QCOMPARE(
        asked(path, QStringLiteral("CREATE TABLE settings(key TEXT COLLATE NOCASE, name TEXT COLLATE NOCASE, "
                                   "type INTEGER, value, PRIMARY KEY(key, name));"
                                   "INSERT INTO settings VALUES('%1', 'cView', 4, 1);"
                                   "PRAGMA journal_mode")
                        .arg(settingsKey)),
        QByteArray("delete"));
    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::Ready);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("cView")), QStringLiteral("1"));
    QCOMPARE(store.write(settingsKey, QStringLiteral("cview"), ValueType::Number, 0), WriteResult::Written);
    QCOMPARE(asked(path, QStringLiteral("PRAGMA journal_mode; SELECT name, value FROM settings")),
             QByteArray("wal\ncView|0"));
}

void TestSettingsFile::aheadLogRefused_data()
{
    QTest::addColumn<bool>("existing");
    QTest::addColumn<bool>("link");
    QTest::newRow("new store, no shared memory") << false << true;
    QTest::newRow("new store, shared memory read only") << false << false;
    QTest::newRow("existing store, no shared memory") << true << true;
    QTest::newRow("existing store, shared memory read only") << true << false;
}

void TestSettingsFile::aheadLogRefused()
{
    QFETCH(bool, existing);
    QFETCH(bool, link);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    if (existing) {
        SettingsStore store(path);
        store.write(settingsKey, QStringLiteral("before"), ValueType::Number, 1);
    }
    QVERIFY(refuseSharedMemory(path, link));

    for (int n = 0; n < 3; ++n) {
        SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::Ready);
        QCOMPARE(store.write(settingsKey, QStringLiteral("n"), ValueType::Number, n), WriteResult::Written);
        SettingsStore second(path);
        QCOMPARE(stored(second, settingsKey, QStringLiteral("n")), QString::number(n));
        QCOMPARE(second.write(settingsKey, QStringLiteral("m"), ValueType::Number, n), WriteResult::Written);
        QCOMPARE(stored(store, settingsKey, QStringLiteral("m")), QString::number(n));
        QCOMPARE(stored(store, settingsKey, QStringLiteral("before")),
                 existing ? QStringLiteral("1") : QStringLiteral("absent"));
    }
    QCOMPARE(asked(path, QStringLiteral("PRAGMA journal_mode")), QByteArray("delete"));
}

void TestSettingsFile::refusalIsRemembered()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    // As a file system without shared memory leaves it: the table is there, the mark is there, no write-ahead
    // log.
    QCOMPARE(
        asked(path, QStringLiteral("CREATE TABLE settings(key TEXT COLLATE NOCASE, name TEXT COLLATE NOCASE, "
                                   "type INTEGER, value, PRIMARY KEY(key, name)); PRAGMA user_version=1")),
        QByteArray());
    SettingsStore store(path);
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1), WriteResult::Written);
    QCOMPARE(asked(path, QStringLiteral("PRAGMA journal_mode")), QByteArray("delete"));
}

void TestSettingsFile::cannotBeCreated_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("below a file") << QStringLiteral("file/user.db");
    QTest::newRow("deep below a file") << QStringLiteral("file/a/b/user.db");
    QTest::newRow("/proc") << QStringLiteral("/proc/quorvia/user.db");
    QTest::newRow("device") << QStringLiteral("/dev/full");
    QTest::newRow("directory with things in it") << QStringLiteral("full");
    QTest::newRow("journal in the way") << QStringLiteral("blocked/user.db");
    QTest::newRow("name too long") << QString(300, QLatin1Char('x'));
    QTest::newRow("no name") << QString();
}

void TestSettingsFile::cannotBeCreated()
{
    QFETCH(QString, path);
    const ScratchHome home;
    home.write(QStringLiteral("file"), "x");
    const QString kept = home.write(QStringLiteral("full/kept"), "kept");
    QVERIFY(QDir().mkpath(home.path(QStringLiteral("blocked/user.db-wal/x"))));
    QVERIFY(QDir().mkpath(home.path(QStringLiteral("blocked/user.db-journal/x"))));
    if (!path.isEmpty() && !path.startsWith(QLatin1Char('/')))
        path = home.path(path);

    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::Unusable);
    QVERIFY(!store.read(settingsKey, QStringLiteral("x")).has_value());
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1), WriteResult::NoKey);
    QVERIFY(!store.removeValue(settingsKey, QStringLiteral("x")));
    store.removeKey(settingsKey);
    QVERIFY(QFileInfo::exists(kept));
    QVERIFY(QFileInfo::exists(QStringLiteral("/dev/full")));
}

void TestSettingsFile::readOnly_data()
{
    QTest::addColumn<bool>("aheadLog");
    QTest::newRow("write-ahead log") << true;
    QTest::newRow("rollback journal") << false;
}

void TestSettingsFile::readOnly()
{
    QFETCH(bool, aheadLog);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("shared/user.db"));
    {
        SettingsStore store(path);
        store.write(settingsKey, QStringLiteral("cView"), ValueType::Number, 1);
    }
    if (!aheadLog)
        QCOMPARE(asked(path, QStringLiteral("PRAGMA journal_mode=DELETE")), QByteArray("delete"));
    const auto all = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(home.path(QString()), all | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(home.path(QStringLiteral("shared")), all));

    QProcess child;
    child.start(QStringLiteral(PLATFORM_CHILD), {QStringLiteral("look"), path});
    QVERIFY(child.waitForFinished(20000));
    QVERIFY(QFile::setPermissions(home.path(QStringLiteral("shared")), all | QFile::WriteOwner));
    QCOMPARE(child.exitCode(), 0);
    // Read only, the value, and no key for a new value nor for the equal one.
    const QByteArray noKey = QByteArray::number(int(WriteResult::NoKey));
    QCOMPARE(child.readAllStandardOutput(),
             QByteArray::number(int(OpenResult::ReadOnly)) + "\n1\n" + noKey + '\n' + noKey + '\n');
}

void TestSettingsFile::fileRemovedUnderIt()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("halvexa/user.db"));
    SettingsStore store(path);
    store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1);
    QVERIFY(QDir(home.path(QStringLiteral("halvexa"))).removeRecursively());
    QVERIFY(!store.read(settingsKey, QStringLiteral("x")).has_value());
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 2), WriteResult::Written);
    const SettingsStore second(path);
    QCOMPARE(stored(second, settingsKey, QStringLiteral("x")), QStringLiteral("2"));
}

void TestSettingsFile::fileReplacedUnderIt()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    const QString backup = home.path(QStringLiteral("backup.db"));
    {
        SettingsStore other(backup);
        other.write(settingsKey, QStringLiteral("x"), ValueType::Text, QStringLiteral("from the backup"));
    }
    SettingsStore store(path);
    store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1);
    for (const char* suffix : {"-wal", "-shm", ""})
        QVERIFY(QFile::remove(path + QLatin1String(suffix)));
    QVERIFY(QFile::rename(backup, path));
    QCOMPARE(store.write(settingsKey, QStringLiteral("y"), ValueType::Number, 2), WriteResult::Written);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("x")), QStringLiteral("from the backup"));
    const SettingsStore second(path);
    QCOMPARE(stored(second, settingsKey, QStringLiteral("y")), QStringLiteral("2"));
}

void TestSettingsFile::tableDroppedUnderIt()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    SettingsStore store(path);
    store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1);
    QCOMPARE(asked(path, QStringLiteral("DROP TABLE settings")), QByteArray());
    QVERIFY(!store.read(settingsKey, QStringLiteral("x")).has_value());
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 2), WriteResult::Written);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("x")), QStringLiteral("2"));
}

void TestSettingsFile::linkedStore()
{
    const ScratchHome home;
    const QString target = home.path(QStringLiteral("dotfiles/user.db"));
    const QString path = home.path(QStringLiteral("user.db"));
    QVERIFY(QDir().mkpath(home.path(QStringLiteral("dotfiles"))));
    QVERIFY(QFile::link(target, path)); // leads nowhere yet
    {
        SettingsStore store(path);
        QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1), WriteResult::Written);
    }
    QVERIFY(QFileInfo(path).isSymLink());
    const SettingsStore store(target);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("x")), QStringLiteral("1"));
}

void TestSettingsFile::userPath()
{
    const ScratchHome home;
    QCOMPARE(userStorePath(), home.path(QStringLiteral(".config/halvexa/user.db")));
    qunsetenv("XDG_CONFIG_HOME");
    QCOMPARE(userStorePath(), home.path(QStringLiteral(".config/halvexa/user.db")));
    qputenv("XDG_CONFIG_HOME", "relative");
    QCOMPARE(userStorePath(), home.path(QStringLiteral(".config/halvexa/user.db")));
    qputenv("XDG_CONFIG_HOME", home.path(QStringLiteral("else/")).toLocal8Bit());
    QCOMPARE(userStorePath(), home.path(QStringLiteral("else/halvexa/user.db")));
}

void TestSettingsFile::machinePath()
{
    const ScratchHome home;
    QCOMPARE(machineStorePath(), home.path(QStringLiteral("machine/machine.db")));

    const QString own = home.path(QStringLiteral(".config/halvexa/machine.db"));
    const QString shared = home.path(QStringLiteral("lib"));
    QCOMPARE(machineStorePathBelow(shared), own); // no such directory
    QVERIFY(QDir().mkpath(shared));
    QCOMPARE(machineStorePathBelow(shared), shared + QStringLiteral("/machine.db"));
    home.write(QStringLiteral("lib/machine.db"), "");
    QCOMPARE(machineStorePathBelow(shared), shared + QStringLiteral("/machine.db"));
    QCOMPARE(machineStorePathBelow(shared + QStringLiteral("/machine.db")), own);

    const auto readable = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    QVERIFY(QFile::setPermissions(home.path(QString()), readable | QFile::WriteOwner));
    QVERIFY(QFile::setPermissions(shared, readable));
    QProcess child;
    child.start(QStringLiteral(PLATFORM_CHILD), {QStringLiteral("place"), shared});
    QVERIFY(child.waitForFinished(20000));
    QVERIFY(QFile::setPermissions(shared, readable | QFile::WriteOwner));
    QCOMPARE(child.readAllStandardOutput().trimmed(), own.toUtf8());
}

QTEST_GUILESS_MAIN(TestSettingsFile)
#include "tst_settingsfile.moc"
