#include "../support/ScratchHome.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <sqlite3.h>

#include <limits>
#include <memory>

using namespace quorvia::platform;
using quorvia::test::ScratchHome;

namespace {

const QString settingsKey = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");
const QString commonKey = QStringLiteral("Software\\Halvexa\\Common\\ProgramPaths");

/// What the sqlite3 tool prints for `sql`.
QByteArray asked(const QString& file, const QString& sql)
{
    QProcess tool;
    tool.start(QStringLiteral("sqlite3"), {file, sql});
    if (!tool.waitForFinished(20000) || tool.exitCode() != 0)
        return "the sqlite3 tool failed: " + tool.readAllStandardError() + tool.errorString().toUtf8();
    return tool.readAllStandardOutput().trimmed();
}

QString stored(const SettingsStore& store, const QString& key, const QString& name)
{
    const auto value = store.read(key, name);
    return value ? value->value.toString() : QStringLiteral("absent");
}

} // namespace

class TestSettingsStore : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void valuesComeBack_data();
    void valuesComeBack();
    void otherTypesAreRefused_data();
    void otherTypesAreRefused();
    void keysAndNamesIgnoreCase();
    void valueIsReplaced();
    void equalValueIsLeftAlone();
    void removal();
    void directoryIsMade();
    void goodStoreIsLeftAsItIs();
    void toolReadsTheTable();
    void toolWritesAreSeen();
    void unknownStorage();
    void legacyJournalIsTakenOver();
    void aheadLogRefused_data();
    void aheadLogRefused();
    void aheadLogRefusedLater();
    void cannotBeCreated_data();
    void cannotBeCreated();
    void readOnly_data();
    void readOnly();
    void heldByAnotherProgram();
    void fileRemovedUnderIt();
    void fileReplacedUnderIt();
    void tableDroppedUnderIt();
    void linkedStore();
    void userPath();
    void machinePath();
};

void TestSettingsStore::valuesComeBack_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("written");
    QTest::addColumn<QVariant>("read");

    const auto row = [](const char* name, ValueType type, const QVariant& written, const QVariant& read) {
        QTest::newRow(name) << int(type) << written << read;
    };
    row("int", ValueType::Number, 42, qlonglong(42));
    row("zero", ValueType::Number, 0, qlonglong(0));
    row("negative", ValueType::Number, -1, qlonglong(-1));
    row("largest", ValueType::Number, std::numeric_limits<int>::max(), qlonglong(2147483647));
    row("smallest", ValueType::Number, std::numeric_limits<int>::min(), qlonglong(-2147483648));
    row("short", ValueType::Number, QVariant::fromValue(short(-7)), qlonglong(-7));
    row("unsigned short", ValueType::Number, QVariant::fromValue(ushort(65535)), qlonglong(65535));
    row("unsigned int", ValueType::Number, 4294967295U, qlonglong(-1));
    row("text", ValueType::Text, QStringLiteral("advance"), QStringLiteral("advance"));
    row("empty text", ValueType::Text, QString(QLatin1String("")), QString(QLatin1String("")));
    row("null text", ValueType::Text, QString(), QString(QLatin1String("")));
    row("text beyond Latin", ValueType::Text, QStringLiteral("/home/ä/Ω/日本/😀"),
        QStringLiteral("/home/ä/Ω/日本/😀"));
    row("text with a quote", ValueType::Text, QStringLiteral("a'b\"c;--"), QStringLiteral("a'b\"c;--"));
    row("expandable text", ValueType::ExpandText, QStringLiteral("$HOME/x"), QStringLiteral("$HOME/x"));
    row("multi-string", ValueType::MultiText, QString::fromLatin1("a\0b\0\0", 5),
        QString::fromLatin1("a\0b\0\0", 5));
    row("binary", ValueType::Binary, QByteArray("\0\xff\x80z", 4), QByteArray("\0\xff\x80z", 4));
    row("empty binary", ValueType::Binary, QByteArray(""), QByteArray(""));
    row("null binary", ValueType::Binary, QByteArray(), QByteArray(""));
    row("long text", ValueType::Text, QString(100000, QLatin1Char('x')), QString(100000, QLatin1Char('x')));
}

void TestSettingsStore::valuesComeBack()
{
    QFETCH(int, type);
    QFETCH(QVariant, written);
    QFETCH(QVariant, read);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    {
        SettingsStore store(path);
        QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType(type), written),
                 WriteResult::Written);
        const auto same = store.read(settingsKey, QStringLiteral("x"));
        QVERIFY(same.has_value());
        QCOMPARE(same->value, read);
    }
    const SettingsStore later(path);
    const auto value = later.read(settingsKey, QStringLiteral("x"));
    QVERIFY(value.has_value());
    QCOMPARE(value->type, type);
    QCOMPARE(value->value.typeId(), read.typeId());
    QCOMPARE(value->value, read);
}

void TestSettingsStore::otherTypesAreRefused_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("double") << int(ValueType::Number) << QVariant(1.5);
    QTest::newRow("bool") << int(ValueType::Number) << QVariant(true);
    QTest::newRow("64 bits") << int(ValueType::Number) << QVariant(qlonglong(5));
    QTest::newRow("text as number") << int(ValueType::Number) << QVariant(QStringLiteral("5"));
    QTest::newRow("number as text") << int(ValueType::Text) << QVariant(5);
    QTest::newRow("bytes as text") << int(ValueType::Text) << QVariant(QByteArray("5"));
    QTest::newRow("text as bytes") << int(ValueType::Binary) << QVariant(QStringLiteral("5"));
    QTest::newRow("nothing") << int(ValueType::Text) << QVariant();
    QTest::newRow("unknown type") << 5 << QVariant(QStringLiteral("5"));
}

void TestSettingsStore::otherTypesAreRefused()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    const ScratchHome home;
    SettingsStore store(home.path(QStringLiteral("user.db")));
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType(type), value), WriteResult::Refused);
    QVERIFY(!store.read(settingsKey, QStringLiteral("x")).has_value());
}

void TestSettingsStore::keysAndNamesIgnoreCase()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    SettingsStore store(path);
    const QString other = QStringLiteral("SOFTWARE\\halvexa\\Quorvia\\settings");
    QCOMPARE(store.write(settingsKey, QStringLiteral("Recent"), ValueType::Text, QStringLiteral("a")),
             WriteResult::Written);
    QCOMPARE(stored(store, other, QStringLiteral("rECENT")), QStringLiteral("a"));
    QCOMPARE(store.write(other, QStringLiteral("recent"), ValueType::Text, QStringLiteral("b")),
             WriteResult::Written);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("Recent")), QStringLiteral("b"));
    QCOMPARE(asked(path, QStringLiteral("SELECT count(*), key, name FROM settings")),
             QByteArray("1|Software\\Halvexa\\Quorvia\\Settings|Recent"));
}

void TestSettingsStore::valueIsReplaced()
{
    const ScratchHome home;
    SettingsStore store(home.path(QStringLiteral("user.db")));
    const QString name = QStringLiteral("x");
    QCOMPARE(store.write(settingsKey, name, ValueType::Number, 1), WriteResult::Written);
    QCOMPARE(store.write(settingsKey, name, ValueType::Text, QStringLiteral("1")), WriteResult::Written);
    const auto text = store.read(settingsKey, name);
    QVERIFY(text.has_value());
    QCOMPARE(text->type, 1);
    QCOMPARE(text->value, QVariant(QStringLiteral("1")));
    QCOMPARE(store.write(settingsKey, name, ValueType::Text, QStringLiteral("A")), WriteResult::Written);
    QCOMPARE(store.write(settingsKey, name, ValueType::Text, QStringLiteral("a")), WriteResult::Written);
    QCOMPARE(stored(store, settingsKey, name), QStringLiteral("a"));
}

void TestSettingsStore::equalValueIsLeftAlone()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    SettingsStore store(path);
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 5), WriteResult::Written);
    const qint64 logSize = QFileInfo(path + QStringLiteral("-wal")).size();
    QVERIFY(logSize > 0);
    for (int n = 0; n < 20; ++n)
        QCOMPARE(store.write(settingsKey, QStringLiteral("X"), ValueType::Number, 5), WriteResult::Written);
    QCOMPARE(QFileInfo(path + QStringLiteral("-wal")).size(), logSize);
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 6), WriteResult::Written);
    QVERIFY(QFileInfo(path + QStringLiteral("-wal")).size() > logSize);
}

void TestSettingsStore::removal()
{
    const ScratchHome home;
    SettingsStore store(home.path(QStringLiteral("user.db")));
    for (const char* name : {"a", "b", "c"})
        store.write(settingsKey, QString::fromLatin1(name), ValueType::Number, 1);
    store.write(commonKey, QStringLiteral("a"), ValueType::Number, 2);
    store.write(settingsKey + QStringLiteral("Net"), QStringLiteral("a"), ValueType::Number, 3);

    QVERIFY(store.removeValue(settingsKey, QStringLiteral("A")));
    QVERIFY(!store.removeValue(settingsKey, QStringLiteral("a")));
    QVERIFY(!store.read(settingsKey, QStringLiteral("a")).has_value());
    QCOMPARE(stored(store, settingsKey, QStringLiteral("b")), QStringLiteral("1"));

    store.removeKey(settingsKey.toUpper());
    QVERIFY(!store.read(settingsKey, QStringLiteral("b")).has_value());
    QVERIFY(!store.read(settingsKey, QStringLiteral("c")).has_value());
    QCOMPARE(stored(store, commonKey, QStringLiteral("a")), QStringLiteral("2"));
    QCOMPARE(stored(store, settingsKey + QStringLiteral("Net"), QStringLiteral("a")), QStringLiteral("3"));
    store.removeKey(QStringLiteral("no such key"));
}

void TestSettingsStore::directoryIsMade()
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

void TestSettingsStore::goodStoreIsLeftAsItIs()
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

void TestSettingsStore::toolReadsTheTable()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    SettingsStore store(path);
    store.write(settingsKey, QStringLiteral("cView"), ValueType::Number, 1);
    store.write(settingsKey, QStringLiteral("slidemode"), ValueType::Text, QStringLiteral("advance"));
    store.write(commonKey, QStringLiteral("Blob"), ValueType::Binary, QByteArray("\x01\x02"));
    // While the store is open, and without the case.
    QCOMPARE(
        asked(path, QStringLiteral("SELECT type, value, typeof(value) FROM settings WHERE name = 'CVIEW'")),
        QByteArray("4|1|integer"));
    QCOMPARE(
        asked(path, QStringLiteral("SELECT key, name, type, quote(value) FROM settings ORDER BY key, name")),
        QByteArray("Software\\Halvexa\\Common\\ProgramPaths|Blob|3|X'0102'\n"
                   "Software\\Halvexa\\Quorvia\\Settings|cView|4|1\n"
                   "Software\\Halvexa\\Quorvia\\Settings|slidemode|1|'advance'"));
    QCOMPARE(asked(path, QStringLiteral("SELECT group_concat(name || ' ' || type || ' ' || pk) "
                                        "FROM pragma_table_info('settings')")),
             QByteArray("key TEXT 1,name TEXT 2,type INTEGER 0,value  0"));
    QCOMPARE(asked(path, QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type = 'table'")),
             QByteArray("1"));
}

void TestSettingsStore::toolWritesAreSeen()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    const SettingsStore store(path);
    QCOMPARE(
        asked(path, QStringLiteral("INSERT INTO settings VALUES('%1', 'Interval', 4, 500)").arg(settingsKey)),
        QByteArray());
    QCOMPARE(stored(store, settingsKey, QStringLiteral("interval")), QStringLiteral("500"));
}

void TestSettingsStore::unknownStorage()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    const SettingsStore store(path);
    const QString insert =
        QStringLiteral("INSERT INTO settings VALUES('k', 'a', 4, 1.5), ('k', 'b', 1, NULL), "
                       "('k', 'c', NULL, 'x'), ('k', 'd', 99, 'y')");
    QCOMPARE(asked(path, insert), QByteArray());
    const QString key = QStringLiteral("k");
    QVERIFY(store.read(key, QStringLiteral("a")).has_value());
    QVERIFY(!store.read(key, QStringLiteral("a"))->value.isValid());
    QVERIFY(!store.read(key, QStringLiteral("b"))->value.isValid());
    QCOMPARE(store.read(key, QStringLiteral("c"))->type, 0);
    QCOMPARE(store.read(key, QStringLiteral("d"))->type, 99);
    QCOMPARE(stored(store, key, QStringLiteral("d")), QStringLiteral("y"));
}

void TestSettingsStore::legacyJournalIsTakenOver()
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

void TestSettingsStore::aheadLogRefused_data()
{
    QTest::addColumn<bool>("existing");
    QTest::addColumn<bool>("link");
    QTest::newRow("new store, no shared memory") << false << true;
    QTest::newRow("new store, shared memory read only") << false << false;
    QTest::newRow("existing store, no shared memory") << true << true;
    QTest::newRow("existing store, shared memory read only") << true << false;
}

/// Something stands where the write-ahead log's shared memory has to be: a link, which is not followed, or a
/// directory.
static bool refuseSharedMemory(const QString& path, bool link)
{
    const QString name = path + QStringLiteral("-shm");
    return link ? QFile::link(QStringLiteral("nowhere"), name) : QDir().mkpath(name);
}

void TestSettingsStore::aheadLogRefused()
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

void TestSettingsStore::aheadLogRefusedLater()
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

void TestSettingsStore::cannotBeCreated_data()
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

void TestSettingsStore::cannotBeCreated()
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

void TestSettingsStore::readOnly_data()
{
    QTest::addColumn<bool>("aheadLog");
    QTest::newRow("write-ahead log") << true;
    QTest::newRow("rollback journal") << false;
}

void TestSettingsStore::readOnly()
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

void TestSettingsStore::heldByAnotherProgram()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("user.db"));
    SettingsStore store(path);
    store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1);
    sqlite3* raw = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &raw), SQLITE_OK);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> other(raw, sqlite3_close);
    QCOMPARE(sqlite3_exec(raw, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);

    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 2), WriteResult::Busy);
    QCOMPARE(stored(store, settingsKey, QStringLiteral("x")), QStringLiteral("1")); // reading goes on
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 1), WriteResult::Written);
    SettingsStore second(path);
    QCOMPARE(second.openResult(), OpenResult::Ready);

    QCOMPARE(sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType::Number, 2), WriteResult::Written);
    QCOMPARE(stored(second, settingsKey, QStringLiteral("x")), QStringLiteral("2"));
}

void TestSettingsStore::fileRemovedUnderIt()
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

void TestSettingsStore::fileReplacedUnderIt()
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

void TestSettingsStore::tableDroppedUnderIt()
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

void TestSettingsStore::linkedStore()
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

void TestSettingsStore::userPath()
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

void TestSettingsStore::machinePath()
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

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
