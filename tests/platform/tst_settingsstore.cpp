#include "../support/ScratchHome.h"
#include "platform/SettingsStore.h"
#include "platform/StoreProbe.h"

#include <QFileInfo>
#include <QTest>

#include <sqlite3.h>

#include <limits>
#include <memory>

using namespace quorvia::platform;
using quorvia::test::asked;
using quorvia::test::ScratchHome;
using quorvia::test::settingsKey;
using quorvia::test::stored;

namespace {

const QString commonKey = QStringLiteral("Software\\Halvexa\\Common\\ProgramPaths");

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
    void toolReadsTheTable();
    void toolWritesAreSeen();
    void unknownStorage();
    void heldByAnotherProgram();
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

QTEST_GUILESS_MAIN(TestSettingsStore)
#include "tst_settingsstore.moc"
