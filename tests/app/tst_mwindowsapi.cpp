#include "../support/ScratchHome.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/SettingsHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <limits>
#include <memory>

using namespace quorvia::app;
using quorvia::platform::machineStorePath;
using quorvia::platform::SettingsStore;
using quorvia::platform::userStorePath;
using quorvia::platform::ValueType;
using quorvia::test::ScratchHome;
using quorvia::test::SettingsHome;

namespace {

const QString settings = QStringLiteral("Settings");
const QString settingsKey = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class TestMWindowsAPI : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readRules_data();
    void readRules();
    void unknownTypesGiveTheDefault_data();
    void unknownTypesGiveTheDefault();
    void numbersAre32Bits_data();
    void numbersAre32Bits();
    void writeRules_data();
    void writeRules();
    void absentGivesTheDefaultOfAnyType();
    void sectionsIgnoreCase();
    void keyPaths();
    void treesAreApart();
    void deletions();
    void treesThatCannotBeMade_data();
    void treesThatCannotBeMade();
    void closedTrees();
    void damagedTreeIsLogged();
    void laterDamageIsLogged();
    void goodTreesAreNotLogged();
    void spelledNumbers_data();
    void spelledNumbers();
};

void TestMWindowsAPI::readRules_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QVariant>("expected"); // invalid: the default
    const auto row = [](const char* name, ValueType type, const QVariant& stored, const QVariant& expected) {
        QTest::newRow(name) << int(type) << stored << expected;
    };
    const auto text = [](const char* characters, qsizetype size) {
        return QString::fromLatin1(characters, size);
    };

    row("text", ValueType::Text, QStringLiteral("Image"), QStringLiteral("Image"));
    row("empty text", ValueType::Text, QString(), QVariant());
    row("blank text", ValueType::Text, QStringLiteral(" "), QStringLiteral(" "));
    row("text with its terminating zero", ValueType::Text, text("Image\0", 6), QStringLiteral("Image"));
    row("text of a terminating zero", ValueType::Text, text("\0", 1), QVariant());
    row("text over 1024 bytes", ValueType::Text, QString(5000, QLatin1Char('x')),
        QString(5000, QLatin1Char('x')));
    row("expandable text", ValueType::ExpandText, QStringLiteral("%PATH%"), QStringLiteral("%PATH%"));
    row("empty expandable text", ValueType::ExpandText, QString(), QVariant());
    row("binary", ValueType::Binary, QByteArray("a\0b", 3), QByteArray("a\0b", 3));
    row("empty binary", ValueType::Binary, QByteArray(), QByteArray());
    row("number", ValueType::Number, 2000, 2000);
    row("number zero", ValueType::Number, 0, 0);
    row("negative number", ValueType::Number, -1, -1);
    row("multi-string", ValueType::MultiText, text("a\0bc\0\0", 6), text("a\0bc", 4));
    row("multi-string of one", ValueType::MultiText, text("abc\0\0", 5), QStringLiteral("abc"));
    row("multi-string without an end", ValueType::MultiText, QStringLiteral("abcd"), QStringLiteral("ab"));
    row("empty multi-string", ValueType::MultiText, text("\0\0", 2), QVariant());
    row("multi-string cut short", ValueType::MultiText, QStringLiteral("a"), QVariant());
}

void TestMWindowsAPI::readRules()
{
    QFETCH(int, type);
    QFETCH(QVariant, stored);
    QFETCH(QVariant, expected);
    const SettingsHome trees;
    SettingsStore store(userStorePath());
    QCOMPARE(store.write(settingsKey, QStringLiteral("x"), ValueType(type), stored),
             quorvia::platform::WriteResult::Written);

    const QVariant fallback(QStringLiteral("the default"));
    const QVariant read = RegReadValue(Root::CurrentUser, settingsKey, QStringLiteral("x"), fallback);
    const QVariant wanted = expected.isValid() ? expected : fallback;
    QCOMPARE(read.typeId(), wanted.typeId());
    QCOMPARE(read, wanted);
    QCOMPARE(GetAppSetting(settings, QStringLiteral("x"), fallback), wanted);
}

void TestMWindowsAPI::unknownTypesGiveTheDefault_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {0, 5, 6, 8, 9, 10, 11, 99, -1, std::numeric_limits<int>::max()})
        QTest::addRow("type %d", type) << type;
}

void TestMWindowsAPI::unknownTypesGiveTheDefault()
{
    QFETCH(int, type);
    const SettingsHome trees;
    // No writer of ours stores these: another program's row stands for it.
    QProcess tool;
    tool.start(QStringLiteral("sqlite3"),
               {userStorePath(), QStringLiteral("INSERT INTO settings VALUES('%1', 'x', %2, "
                                                "'text')")
                                     .arg(settingsKey)
                                     .arg(type)});
    QVERIFY(tool.waitForFinished(20000));
    QCOMPARE(tool.readAllStandardError(), QByteArray());
    QCOMPARE(GetAppSetting(settings, QStringLiteral("x"), 17), QVariant(17));
}

void TestMWindowsAPI::numbersAre32Bits_data()
{
    QTest::addColumn<QString>("literal");
    QTest::addColumn<QVariant>("expected"); // invalid: the default
    QTest::newRow("largest") << QStringLiteral("2147483647") << QVariant(2147483647);
    QTest::newRow("smallest") << QStringLiteral("-2147483648") << QVariant(std::numeric_limits<int>::min());
    QTest::newRow("unsigned") << QStringLiteral("4294967295") << QVariant(-1);
    QTest::newRow("a colour of the system") << QStringLiteral("2147483663") << QVariant(-2147483633);
    QTest::newRow("too large") << QStringLiteral("4294967296") << QVariant();
    QTest::newRow("too small") << QStringLiteral("-2147483649") << QVariant();
    QTest::newRow("kept as text") << QStringLiteral("'12'") << QVariant(12);
    QTest::newRow("no number") << QStringLiteral("'twelve'") << QVariant();
    QTest::newRow("fraction") << QStringLiteral("1.5") << QVariant();
    QTest::newRow("null") << QStringLiteral("NULL") << QVariant();
}

void TestMWindowsAPI::numbersAre32Bits()
{
    QFETCH(QString, literal);
    QFETCH(QVariant, expected);
    const SettingsHome trees;
    QProcess tool;
    tool.start(QStringLiteral("sqlite3"),
               {userStorePath(),
                QStringLiteral("INSERT INTO settings VALUES('%1', 'x', 4, %2)").arg(settingsKey, literal)});
    QVERIFY(tool.waitForFinished(20000));
    QCOMPARE(tool.readAllStandardError(), QByteArray());
    const QVariant read = GetAppSetting(settings, QStringLiteral("x"), QStringLiteral("default"));
    QCOMPARE(read, expected.isValid() ? expected : QVariant(QStringLiteral("default")));
}

void TestMWindowsAPI::writeRules_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("type"); // 0: nothing is written
    QTest::addColumn<QVariant>("read");
    const auto row = [](const char* name, const QVariant& value, int type,
                        const QVariant& read = QVariant()) { QTest::newRow(name) << value << type << read; };
    row("32 bits", 1, 4, 1);
    row("32 bits, negative", -2147483647, 4, -2147483647);
    row("16 bits", QVariant::fromValue(short(-5)), 4, -5);
    row("16 bits, unsigned", QVariant::fromValue(ushort(40000)), 4, 40000);
    row("32 bits, unsigned", 0x800000ffU, 4, int(0x800000ffU));
    row("text", QStringLiteral(";;"), 1, QStringLiteral(";;"));
    row("text of digits stays text", QStringLiteral("1"), 1, QStringLiteral("1"));
    row("empty text", QStringLiteral(""), 1, QStringLiteral("default"));
    row("bytes", QByteArray("\1\2"), 3, QByteArray("\1\2"));
    row("floating point", 1.0, 0);
    row("single", QVariant::fromValue(1.5F), 0);
    row("boolean", true, 0);
    row("64 bits", qlonglong(1), 0);
    row("unsigned 64 bits", qulonglong(1), 0);
    row("8 bits", QVariant::fromValue(uchar(1)), 0);
    row("list", QStringList{QStringLiteral("a")}, 0);
    row("date", QDate(2024, 1, 1), 0);
    row("nothing", QVariant(), 0);
}

void TestMWindowsAPI::writeRules()
{
    QFETCH(QVariant, value);
    QFETCH(int, type);
    QFETCH(QVariant, read);
    const SettingsHome trees;
    const QString name = QStringLiteral("x");
    QCOMPARE(SaveAppSetting(settings, name, value), type != 0);
    const SettingsStore store(userStorePath());
    const auto stored = store.read(settingsKey, name);
    QCOMPARE(stored.has_value(), type != 0);
    if (type == 0) {
        QVERIFY(!RegWriteValue(Root::LocalMachine, settingsKey, name, value));
        return;
    }
    QCOMPARE(stored->type, type);
    QCOMPARE(GetAppSetting(settings, name, QStringLiteral("default")), read);
    QVERIFY(RegWriteValue(Root::LocalMachine, settingsKey, name, value));
    QCOMPARE(RegReadValue(Root::LocalMachine, settingsKey, name, QStringLiteral("default")), read);
}

void TestMWindowsAPI::absentGivesTheDefaultOfAnyType()
{
    const SettingsHome trees;
    const QString none = QStringLiteral("none");
    QCOMPARE(GetAppSetting(settings, none, 5), QVariant(5));
    QCOMPARE(GetAppSetting(settings, none, QStringLiteral("x")), QVariant(QStringLiteral("x")));
    QCOMPARE(GetAppSetting(settings, none, 1.5), QVariant(1.5));
    QVERIFY(!GetAppSetting(settings, none, QVariant()).isValid());
    QVERIFY(SaveAppSetting(settings, QStringLiteral("here"), 1));
    QCOMPARE(GetAppSetting(settings, none, 5), QVariant(5));
    QCOMPARE(GetCommonSetting(QStringLiteral("Common\\ProgramPaths"), none, QStringLiteral("")),
             QVariant(QStringLiteral("")));
}

void TestMWindowsAPI::sectionsIgnoreCase()
{
    const SettingsHome trees;
    QVERIFY(SaveAppSetting(QStringLiteral("Settings"), QStringLiteral("Recent"), QStringLiteral("/a;/b")));
    QCOMPARE(GetAppSetting(QStringLiteral("settings"), QStringLiteral("recent"), QStringLiteral(";;")),
             QVariant(QStringLiteral("/a;/b")));
    QVERIFY(SaveAppSetting(QStringLiteral("settings"), QStringLiteral("RECENT"), QStringLiteral("/c")));
    QCOMPARE(GetAppSetting(QStringLiteral("Settings"), QStringLiteral("Recent"), QStringLiteral(";;")),
             QVariant(QStringLiteral("/c")));
}

void TestMWindowsAPI::keyPaths()
{
    const SettingsHome trees;
    QVERIFY(SaveAppSetting(QStringLiteral("Print Settings"), QStringLiteral("PrintArea"), 2));
    QVERIFY(SaveCommonSetting(QStringLiteral("Common\\ProgramPaths"), QStringLiteral("Quorvia"),
                              QStringLiteral("/q")));
    const SettingsStore user(userStorePath());
    QVERIFY(
        user.read(QStringLiteral("Software\\Halvexa\\Quorvia\\Print Settings"), QStringLiteral("PrintArea")));
    const SettingsStore machine(machineStorePath());
    QVERIFY(
        machine.read(QStringLiteral("Software\\Halvexa\\Common\\ProgramPaths"), QStringLiteral("Quorvia")));
    QCOMPARE(userKeyPath(QStringLiteral("SettingsNet")),
             QStringLiteral("Software\\Halvexa\\Quorvia\\SettingsNet"));
    QCOMPARE(machineKeyPath(QStringLiteral("Web Sites")), QStringLiteral("Software\\Halvexa\\Web Sites"));
}

void TestMWindowsAPI::treesAreApart()
{
    const SettingsHome trees;
    const QString key = QStringLiteral("Software\\Halvexa\\Common\\Testing");
    const QString name = QStringLiteral("Test");
    QVERIFY(RegWriteValue(Root::LocalMachine, key, name, QStringLiteral("Vaild")));
    QCOMPARE(RegReadValue(Root::CurrentUser, key, name, QStringLiteral("none")),
             QVariant(QStringLiteral("none")));
    QVERIFY(RegWriteValue(Root::CurrentUser, key, name, QStringLiteral("user's")));
    QCOMPARE(GetCommonSetting(QStringLiteral("Common\\Testing"), name, QString()),
             QVariant(QStringLiteral("Vaild")));
    QVERIFY(userStorePath() != machineStorePath());
}

void TestMWindowsAPI::deletions()
{
    const SettingsHome trees;
    const QString net = QStringLiteral("SettingsNet");
    const QString paths = QStringLiteral("Common\\ProgramPaths");
    QVERIFY(SaveAppSetting(settings, QStringLiteral("a"), 1));
    QVERIFY(SaveAppSetting(settings, QStringLiteral("b"), 1));
    QVERIFY(SaveAppSetting(net, QStringLiteral("a"), 1));
    QVERIFY(SaveCommonSetting(paths, QStringLiteral("a"), 1));
    QVERIFY(SaveCommonSetting(paths, QStringLiteral("b"), 1));
    QVERIFY(SaveCommonSetting(QStringLiteral("Web Sites"), QStringLiteral("a"), 1));

    DeleteAppSection(QStringLiteral("SETTINGS"));
    QCOMPARE(GetAppSetting(settings, QStringLiteral("a"), 0), QVariant(0));
    QCOMPARE(GetAppSetting(settings, QStringLiteral("b"), 0), QVariant(0));
    QCOMPARE(GetAppSetting(net, QStringLiteral("a"), 0), QVariant(1));

    QVERIFY(DeleteCommonValue(paths, QStringLiteral("A")));
    QVERIFY(!DeleteCommonValue(paths, QStringLiteral("a")));
    QVERIFY(!DeleteCommonValue(QStringLiteral("none"), QStringLiteral("a")));
    QCOMPARE(GetCommonSetting(paths, QStringLiteral("a"), 0), QVariant(0));
    QCOMPARE(GetCommonSetting(paths, QStringLiteral("b"), 0), QVariant(1));
    DeleteCommonKey(paths);
    QCOMPARE(GetCommonSetting(paths, QStringLiteral("b"), 0), QVariant(0));
    QCOMPARE(GetCommonSetting(QStringLiteral("Web Sites"), QStringLiteral("a"), 0), QVariant(1));
}

void TestMWindowsAPI::treesThatCannotBeMade_data()
{
    QTest::addColumn<QString>("machineStore");
    QTest::newRow("below a file") << QStringLiteral("file/machine.db");
    QTest::newRow("in /proc") << QStringLiteral("/proc/quorvia/machine.db");
    QTest::newRow("a directory that is in use") << QStringLiteral("used");
}

void TestMWindowsAPI::treesThatCannotBeMade()
{
    QFETCH(QString, machineStore);
    const ScratchHome home;
    home.write(QStringLiteral("file"), "x");
    home.write(QStringLiteral("used/x"), "x");
    home.write(QStringLiteral(".config"), "a file where the directory should be");
    const QString path = machineStore.startsWith(QLatin1Char('/')) ? machineStore : home.path(machineStore);
    qputenv("HALVEXA_MACHINE_STORE", path.toLocal8Bit());
    openSettings();

    const QString testing = QStringLiteral("Common\\Testing");
    const QString test = QStringLiteral("Test");
    QVERIFY_THROWS_EXCEPTION(RegistryError, RegWriteValue(Root::LocalMachine, machineKeyPath(testing), test,
                                                          QStringLiteral("Vaild")));
    QVERIFY_THROWS_EXCEPTION(RegistryError, RegWriteValue(Root::CurrentUser, settingsKey, test, 1));
    // What is not written anyway needs no key.
    QVERIFY(!RegWriteValue(Root::LocalMachine, machineKeyPath(testing), test, true));
    // The helpers do not throw.
    QVERIFY(!SaveCommonSetting(testing, test, QStringLiteral("Vaild")));
    QVERIFY(!SaveAppSetting(settings, test, 1));
    QCOMPARE(GetCommonSetting(testing, test, QStringLiteral("default")), QVariant(QStringLiteral("default")));
    QCOMPARE(GetAppSetting(settings, test, 3), QVariant(3));
    QVERIFY(!DeleteCommonValue(testing, test));
    DeleteCommonKey(testing);
    DeleteAppSection(settings);
    QVERIFY(contents(logPath()).contains("Settings store cannot be opened: " + path.toUtf8()));
    closeSettings();

    const RegistryError error;
    QCOMPARE(RegistryError::number, 1001);
    QCOMPARE(error.what(), "Unable to create the registry key");
}

void TestMWindowsAPI::closedTrees()
{
    const ScratchHome home;
    openSettings();
    QVERIFY(SaveAppSetting(settings, QStringLiteral("x"), 1));
    closeSettings();
    QCOMPARE(GetAppSetting(settings, QStringLiteral("x"), 5), QVariant(5));
    QVERIFY(!SaveAppSetting(settings, QStringLiteral("x"), 2));
    QVERIFY(!RegWriteValue(Root::CurrentUser, settingsKey, QStringLiteral("x"), 2));
    QVERIFY(!DeleteCommonValue(QStringLiteral("Web Sites"), QStringLiteral("x")));
    DeleteAppSection(settings);
    DeleteCommonKey(QStringLiteral("Web Sites"));
    openSettings();
    QCOMPARE(GetAppSetting(settings, QStringLiteral("x"), 5), QVariant(1));
    closeSettings();
}

void TestMWindowsAPI::damagedTreeIsLogged()
{
    const ScratchHome home;
    home.write(QStringLiteral(".config/halvexa/user.db"), "no database");
    openSettings();
    QCOMPARE(GetAppSetting(settings, QStringLiteral("cView"), 0), QVariant(0));
    QVERIFY(SaveAppSetting(settings, QStringLiteral("cView"), 1));
    closeSettings();
    const QByteArray log = contents(logPath());
    QCOMPARE(log.count('\n'), 1);
    QVERIFY(log.contains("Settings store damaged: " + userStorePath().toUtf8() + " was set aside as " +
                         userStorePath().toUtf8() + ".damaged-"));
}

void TestMWindowsAPI::laterDamageIsLogged()
{
    const SettingsHome trees;
    QVERIFY(SaveAppSetting(settings, QStringLiteral("cView"), 1));
    for (const char* suffix : {"-wal", "-shm", ""})
        QVERIFY(QFile::remove(userStorePath() + QLatin1String(suffix)));
    trees.write(QStringLiteral(".config/halvexa/user.db"), "no database");
    QVERIFY(SaveAppSetting(settings, QStringLiteral("cView"), 2));
    QCOMPARE(GetAppSetting(settings, QStringLiteral("cView"), 0), QVariant(2));
    QCOMPARE(contents(logPath()).count("was set aside as"), 1);
}

void TestMWindowsAPI::goodTreesAreNotLogged()
{
    const SettingsHome trees;
    QVERIFY(SaveAppSetting(settings, QStringLiteral("cView"), 1));
    openSettings();
    QCOMPARE(GetAppSetting(settings, QStringLiteral("cView"), 0), QVariant(1));
    QVERIFY(!QFileInfo::exists(logPath()));
}

void TestMWindowsAPI::spelledNumbers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("expected");
    constexpr int fallback = -77;
    const auto row = [](const char* name, const QVariant& value, int expected) {
        QTest::newRow(name) << value << expected;
    };
    row("number", 5, 5);
    row("text", QStringLiteral("5"), 5);
    row("negative text", QStringLiteral("-1"), -1);
    row("plus sign", QStringLiteral("+3"), 3);
    row("blanks around", QStringLiteral(" 1 "), 1);
    row("leading zeros", QStringLiteral("0010"), 10);
    row("decimals", QStringLiteral("1.0"), 1);
    row("rounded up", QStringLiteral("2.7"), 3);
    row("half to even, down", QStringLiteral("2.5"), 2);
    row("half to even, up", QStringLiteral("3.5"), 4);
    row("exponent", QStringLiteral("2e3"), 2000);
    row("largest", QStringLiteral("2147483647"), 2147483647);
    row("smallest", QStringLiteral("-2147483648"), std::numeric_limits<int>::min());
    row("too large", QStringLiteral("2147483648"), fallback);
    row("far too large", QStringLiteral("1e300"), fallback);
    row("words", QStringLiteral("one"), fallback);
    row("digits and words", QStringLiteral("1x"), fallback);
    row("two numbers", QStringLiteral("1 2"), fallback);
    row("empty", QStringLiteral(""), fallback);
    row("blank", QStringLiteral(" "), fallback);
    row("infinite", QStringLiteral("inf"), fallback);
    row("not a number", QStringLiteral("nan"), fallback);
    row("comma", QStringLiteral("1,000"), fallback);
    row("bytes", QByteArray("1"), fallback);
    row("nothing", QVariant(), fallback);
}

void TestMWindowsAPI::spelledNumbers()
{
    QFETCH(QVariant, value);
    QFETCH(int, expected);
    QCOMPARE(settingNumber(value, -77), expected);
}

QTEST_GUILESS_MAIN(TestMWindowsAPI)
#include "tst_mwindowsapi.moc"
