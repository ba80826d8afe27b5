// Damaged stores: whatever lies in the file's place, opening, reading and writing go on with a store in
// order, and what was found is kept beside it.
#include "../support/ScratchHome.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <sqlite3.h>

#include <memory>

using namespace quorvia::platform;
using quorvia::test::ScratchHome;

namespace {

const QString key = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");
constexpr int pageSize = 4096;
constexpr int rows = 300;

QByteArray noise(qsizetype size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(generator.bounded(256));
    return bytes;
}

/// A store of a dozen pages, closed in order.
void makeStore(const QString& path)
{
    SettingsStore store(path);
    for (int n = 0; n < rows; ++n)
        store.write(key, QStringLiteral("Name%1").arg(n, 4, 10, QLatin1Char('0')), ValueType::Text,
                    QString(120, QLatin1Char('v')));
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// Writes over the file in place, as a failing disk would.
bool overwrite(const QString& path, qint64 offset, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.seek(offset) && file.write(bytes) == bytes.size();
}

/// The files that were set aside, without the logs that went with them.
QStringList setAsideNames(const QString& directory)
{
    QStringList names =
        QDir(directory).entryList({QStringLiteral("*.damaged-*")}, QDir::AllEntries | QDir::NoDotAndDotDot);
    names.removeIf([](const QString& name) {
        return name.endsWith(QLatin1String("-wal")) || name.endsWith(QLatin1String("-shm"));
    });
    return names;
}

} // namespace

class TestSettingsDamage : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void damagedFile_data();
    void damagedFile();
    void emptyFileIsNoDamage();
    void logAndJournalGoWithIt();
    void secondDamageGetsANameOfItsOwn();
    void linkedStoreIsSetAsideAtItsPlace();
    void damageUnderTwoPrograms();
    void damageThatComesBack();
    void randomDamage_data();
    void randomDamage();
    void hostileSchema_data();
    void hostileSchema();
};

void TestSettingsDamage::damagedFile_data()
{
    QTest::addColumn<QByteArray>("before"); // null: a good store
    QTest::addColumn<int>("offset");        // in pages, where `damage` goes; below zero: cut to half
    QTest::addColumn<QByteArray>("damage");

    QTest::newRow("text file") << QByteArray("[Settings]\ncView=1\n") << 0 << QByteArray();
    QTest::newRow("two bytes") << QByteArray("xy") << 0 << QByteArray();
    QTest::newRow("long text file") << QByteArray(100000, 'x') << 0 << QByteArray();
    QTest::newRow("zeros") << QByteArray(20000, '\0') << 0 << QByteArray();
    QTest::newRow("noise") << noise(20000, 1) << 0 << QByteArray();
    QTest::newRow("only the magic") << QByteArray("SQLite format 3\0", 16) << 0 << QByteArray();
    QTest::newRow("magic and noise") << QByteArray("SQLite format 3\0", 16) + noise(20000, 2) << 0
                                     << QByteArray();
    QTest::newRow("truncated") << QByteArray() << -1 << QByteArray();
    QTest::newRow("noise over the header") << QByteArray() << 0 << noise(100, 3);
    QTest::newRow("noise over the first page") << QByteArray() << 0 << noise(pageSize, 4);
    QTest::newRow("noise over the root") << QByteArray() << 1 << noise(pageSize, 5);
    QTest::newRow("noise over a middle page") << QByteArray() << 4 << noise(pageSize, 6);
    QTest::newRow("noise over middle pages") << QByteArray() << 3 << noise(4 * pageSize, 7);
    QTest::newRow("zeros over a middle page") << QByteArray() << 5 << QByteArray(pageSize, '\0');
}

void TestSettingsDamage::damagedFile()
{
    QFETCH(QByteArray, before);
    QFETCH(int, offset);
    QFETCH(QByteArray, damage);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    if (before.isNull()) {
        makeStore(path);
        QVERIFY(QFileInfo(path).size() > 8 * pageSize);
    } else {
        home.write(QStringLiteral("h/user.db"), before);
    }
    if (offset < 0)
        QVERIFY(QFile::resize(path, QFileInfo(path).size() / 2));
    else
        QVERIFY(overwrite(path, offset * pageSize, damage));
    const QByteArray found = contents(path);

    {
        SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::SetAside);
        QCOMPARE(setAsideNames(home.path(QStringLiteral("h"))),
                 QStringList{QFileInfo(store.setAsidePath()).fileName()});
        QCOMPARE(contents(store.setAsidePath()), found);
        QVERIFY(!store.read(key, QStringLiteral("Name0001")).has_value());
        QCOMPARE(store.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);
    }
    const SettingsStore later(path);
    QCOMPARE(later.openResult(), OpenResult::Ready);
    QVERIFY(later.read(key, QStringLiteral("new")).has_value());
}

void TestSettingsDamage::emptyFileIsNoDamage()
{
    const ScratchHome home;
    const QString path = home.write(QStringLiteral("h/user.db"), "");
    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::Ready);
    QCOMPARE(store.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);
}

void TestSettingsDamage::logAndJournalGoWithIt()
{
    const ScratchHome home;
    const QString path = home.write(QStringLiteral("h/user.db"), "no database");
    home.write(QStringLiteral("h/user.db-wal"), "log");
    home.write(QStringLiteral("h/user.db-shm"), "shared memory");
    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::SetAside);
    QCOMPARE(contents(store.setAsidePath()), QByteArray("no database"));
    QVERIFY(QFileInfo::exists(store.setAsidePath() + QStringLiteral("-wal")));
    QCOMPARE(store.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);

    // A directory in the file's place goes the same way when it is empty.
    const QString other = home.path(QStringLiteral("d/user.db"));
    QVERIFY(QDir().mkpath(other));
    SettingsStore second(other);
    QCOMPARE(second.openResult(), OpenResult::SetAside);
    QVERIFY(QFileInfo(second.setAsidePath()).isDir());
    QVERIFY(QFileInfo(other).isFile());
    QCOMPARE(second.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);
}

void TestSettingsDamage::secondDamageGetsANameOfItsOwn()
{
    const ScratchHome home;
    for (int n = 0; n < 3; ++n) {
        const QString path = home.write(QStringLiteral("h/user.db"), "damage " + QByteArray::number(n));
        const SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::SetAside);
        QCOMPARE(contents(store.setAsidePath()), "damage " + QByteArray::number(n));
    }
    QCOMPARE(setAsideNames(home.path(QStringLiteral("h"))).size(), 3);
}

void TestSettingsDamage::linkedStoreIsSetAsideAtItsPlace()
{
    const ScratchHome home;
    const QString target = home.write(QStringLiteral("dotfiles/user.db"), "no database");
    const QString path = home.path(QStringLiteral("user.db"));
    QVERIFY(QFile::link(target, path));
    SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::SetAside);
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(setAsideNames(home.path(QStringLiteral("dotfiles"))).size(), 1);
    QCOMPARE(store.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);
    QVERIFY(QFileInfo(target).isFile());
}

void TestSettingsDamage::damageUnderTwoPrograms()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    makeStore(path);
    SettingsStore first(path);
    SettingsStore second(path);
    QStringList reported;
    first.onSetAside([&](const QString& to) { reported << to; });
    second.onSetAside([&](const QString& to) { reported << to; });

    // A third connection has the pages in memory when they go bad in the file. What it then writes makes the
    // other two read them anew.
    sqlite3* raw = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &raw), SQLITE_OK);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> third(raw, sqlite3_close);
    QCOMPARE(sqlite3_exec(raw, "SELECT sum(length(value)) FROM settings", nullptr, nullptr, nullptr),
             SQLITE_OK);
    QVERIFY(overwrite(path, pageSize, noise(QFileInfo(path).size() - pageSize, 11)));
    QCOMPARE(sqlite3_exec(raw, "UPDATE settings SET value = 'w' WHERE name = 'Name0000'", nullptr, nullptr,
                          nullptr),
             SQLITE_OK);

    QVERIFY(!first.read(key, QStringLiteral("Name0299")).has_value());
    QCOMPARE(first.openResult(), OpenResult::SetAside);
    QCOMPARE(reported, QStringList{first.setAsidePath()});
    QVERIFY(QFileInfo::exists(first.setAsidePath()));
    QCOMPARE(first.write(key, QStringLiteral("a"), ValueType::Number, 1), WriteResult::Written);

    // The other one comes over to the new file, and does not set that one aside.
    QCOMPARE(second.write(key, QStringLiteral("b"), ValueType::Number, 2), WriteResult::Written);
    QVERIFY(first.read(key, QStringLiteral("b")).has_value());
    QVERIFY(second.read(key, QStringLiteral("a")).has_value());
    QCOMPARE(setAsideNames(home.path(QStringLiteral("h"))).size(), 1);
    QCOMPARE(reported.size(), 1);
    const SettingsStore later(path);
    QCOMPARE(later.openResult(), OpenResult::Ready);
    QVERIFY(later.read(key, QStringLiteral("a")).has_value());
    QVERIFY(later.read(key, QStringLiteral("b")).has_value());
}

void TestSettingsDamage::damageThatComesBack()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    SettingsStore store(path);
    for (int n = 0; n < 30; ++n) {
        QFile::remove(path + QStringLiteral("-wal"));
        QFile::remove(path + QStringLiteral("-shm"));
        QVERIFY(QFile::remove(path) || !QFileInfo::exists(path));
        home.write(QStringLiteral("h/user.db"), "no database");
        store.read(key, QStringLiteral("x"));
    }
    // Given up at last, with a bounded number of copies.
    QCOMPARE(store.openResult(), OpenResult::Unusable);
    QCOMPARE(store.write(key, QStringLiteral("x"), ValueType::Number, 1), WriteResult::NoKey);
    const qsizetype copies = setAsideNames(home.path(QStringLiteral("h"))).size();
    QVERIFY2(copies > 0 && copies <= 10, qPrintable(QString::number(copies)));
}

void TestSettingsDamage::randomDamage_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 100; seed < 160; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// Any damage at all: nothing crashes or hangs, and in the end the store can be written.
void TestSettingsDamage::randomDamage()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    makeStore(path);
    for (int n = random.bounded(1, 6); n > 0; --n)
        QVERIFY(overwrite(path, random.bounded(int(QFileInfo(path).size())),
                          noise(random.bounded(1, 600), seed + n)));
    if (random.bounded(4) == 0)
        QVERIFY(QFile::resize(path, random.bounded(int(QFileInfo(path).size()))));

    SettingsStore store(path);
    QVERIFY(store.openResult() == OpenResult::Ready || store.openResult() == OpenResult::SetAside);
    for (int n = 0; n < rows; n += 7)
        store.read(key, QStringLiteral("Name%1").arg(n, 4, 10, QLatin1Char('0')));
    QCOMPARE(store.write(key, QStringLiteral("new"), ValueType::Number, 1), WriteResult::Written);
    QVERIFY(store.read(key, QStringLiteral("new")).has_value());
}

void TestSettingsDamage::hostileSchema_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::newRow("endless view") << QByteArray(
        "CREATE VIEW settings AS WITH RECURSIVE n(key) AS (SELECT 1 UNION ALL "
        "SELECT key + 1 FROM n) SELECT key, key AS name, key AS type, "
        "key AS value FROM n");
    QTest::newRow("endless trigger") << QByteArray(
        "CREATE TABLE settings(key TEXT COLLATE NOCASE, name TEXT COLLATE NOCASE, type INTEGER, value, "
        "PRIMARY KEY(key, name)); CREATE TRIGGER t AFTER INSERT ON settings BEGIN INSERT INTO settings WITH "
        "RECURSIVE "
        "n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT 'k', i, 1, 'x' FROM n; END");
    QTest::newRow("other columns") << QByteArray("CREATE TABLE settings(a, b)");
    QTest::newRow("no primary key") << QByteArray("CREATE TABLE settings(key, name, type, value)");
    QTest::newRow("huge value") << QByteArray(
        "CREATE TABLE settings(key TEXT COLLATE NOCASE, name TEXT COLLATE NOCASE, "
        "type INTEGER, value, PRIMARY KEY(key, name)); INSERT INTO settings "
        "VALUES('k', 'x', 3, zeroblob(40000000))");
}

void TestSettingsDamage::hostileSchema()
{
    QFETCH(QByteArray, sql);
    const ScratchHome home;
    const QString path = home.write(QStringLiteral("h/user.db"), "");
    sqlite3* raw = nullptr;
    QCOMPARE(sqlite3_open(path.toUtf8().constData(), &raw), SQLITE_OK);
    {
        const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> owner(raw, sqlite3_close);
        QCOMPARE(sqlite3_exec(raw, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
    }
    SettingsStore store(path);
    QVERIFY(!store.read(QStringLiteral("k"), QStringLiteral("x")).has_value());
    const WriteResult result = store.write(QStringLiteral("k"), QStringLiteral("y"), ValueType::Number, 1);
    QCOMPARE(store.read(QStringLiteral("k"), QStringLiteral("y")).has_value(),
             result == WriteResult::Written);
    QVERIFY(QFileInfo::exists(path));
}

QTEST_GUILESS_MAIN(TestSettingsDamage)
#include "tst_settingsdamage.moc"
