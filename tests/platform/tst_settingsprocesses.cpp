// The store under several programs, and under programs that are killed.
#include "../support/ScratchHome.h"
#include "platform/SettingsStore.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

#include <sqlite3.h>

#include <memory>
#include <vector>

using namespace quorvia::platform;
using quorvia::test::ScratchHome;

namespace {

const QString key = QStringLiteral("Software\\Halvexa\\Quorvia\\Settings");
constexpr int longest = 60000; // milliseconds that anything here may take

/// A program that writes counted values under names with a prefix of its own.
class Writer
{
  public:
    Writer(const QString& path, const QString& prefix, int count) : m_prefix(prefix)
    {
        m_process.start(QStringLiteral(PLATFORM_CHILD),
                        {QStringLiteral("write"), path, prefix, QString::number(count)});
    }
    QString prefix() const { return m_prefix; }
    /// Waits until `count` writes are acknowledged in all.
    bool waitForLines(int count)
    {
        QElapsedTimer timer;
        timer.start();
        while (lines() < count) {
            if (timer.hasExpired(longest) || !m_process.waitForReadyRead(longest))
                return false;
            m_told += m_process.readAllStandardOutput();
        }
        return true;
    }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished(longest);
        m_told += m_process.readAllStandardOutput();
    }
    /// The exit code at the end, -1 when there is none.
    int finish()
    {
        const bool finished = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longest);
        m_told += m_process.readAllStandardOutput();
        return finished && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    /// Writes that were acknowledged: their numbers are 0 and up.
    int lines() const { return int(m_told.count('\n')); }
    /// True once a write was acknowledged; looks without waiting.
    bool hasTold()
    {
        m_process.waitForReadyRead(0);
        m_told += m_process.readAllStandardOutput();
        return lines() > 0;
    }

  private:
    QString m_prefix;
    QProcess m_process;
    QByteArray m_told;
};

/// The first of the acknowledged writes under `prefix` that is not in `store`; empty when none is missing.
QString missing(const SettingsStore& store, const QString& prefix, int acknowledged)
{
    for (int n = 0; n < acknowledged; ++n) {
        const auto value = store.read(key, prefix + QString::number(n));
        if (!value || value->value != QVariant(qlonglong(n)))
            return prefix + QString::number(n);
    }
    return QString();
}

QByteArray integrity(const QString& path)
{
    sqlite3* raw = nullptr;
    QByteArray verdict = "cannot be opened";
    if (sqlite3_open(path.toUtf8().constData(), &raw) == SQLITE_OK) {
        const auto take = [](void* to, int, char** texts, char**) {
            *static_cast<QByteArray*>(to) = texts[0];
            return 0;
        };
        sqlite3_exec(raw, "PRAGMA integrity_check", take, &verdict, nullptr);
    }
    sqlite3_close(raw);
    return verdict;
}

QStringList setAsideFiles(const QString& directory)
{
    return QDir(directory).entryList({QStringLiteral("user.db.damaged-*")},
                                     QDir::AllEntries | QDir::NoDotAndDotDot);
}

void journalRows()
{
    QTest::addColumn<bool>("aheadLog");
    QTest::newRow("write-ahead log") << true;
    QTest::newRow("rollback journal") << false;
}

/// Has the write-ahead log refused for the store at `path`: a link stands where its shared memory has to be.
bool refuseAheadLog(const QString& path)
{
    return QDir().mkpath(QFileInfo(path).path()) &&
           QFile::link(QStringLiteral("nowhere"), path + QStringLiteral("-shm"));
}

} // namespace

class TestSettingsProcesses : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void killedWhileWriting_data() { journalRows(); }
    void killedWhileWriting();
    void killedWhileCreating_data();
    void killedWhileCreating();
    void twoWritersLoseNothing_data() { journalRows(); }
    void twoWritersLoseNothing();
    void manyStartTogether_data();
    void manyStartTogether();
    void readerSeesTheWriter();
};

void TestSettingsProcesses::killedWhileWriting()
{
    QFETCH(bool, aheadLog);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    if (!aheadLog)
        QVERIFY(refuseAheadLog(path));
    QRandomGenerator random(42);
    std::vector<std::pair<QString, int>> acknowledged;
    for (int round = 0; round < (aheadLog ? 25 : 12); ++round) {
        Writer writer(path, QStringLiteral("r%1_").arg(round), 0);
        QVERIFY(writer.waitForLines(random.bounded(1, aheadLog ? 400 : 12)));
        writer.kill();
        acknowledged.emplace_back(writer.prefix(), writer.lines());

        const SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::Ready);
        QCOMPARE(integrity(path), QByteArray("ok"));
        for (const auto& [prefix, lines] : acknowledged)
            QCOMPARE(missing(store, prefix, lines), QString());
        // The shared name holds the last acknowledged write or the one that was under way.
        const auto shared = store.read(key, QStringLiteral("Shared"));
        QVERIFY(shared.has_value());
        const QString text = shared->value.toString();
        QVERIFY2(text == writer.prefix() + QString::number(writer.lines() - 1) ||
                     text == writer.prefix() + QString::number(writer.lines()),
                 qPrintable(text));
    }
    QCOMPARE(setAsideFiles(home.path(QStringLiteral("h"))), QStringList());
}

void TestSettingsProcesses::killedWhileCreating_data()
{
    QTest::addColumn<bool>("aheadLog");
    QTest::addColumn<QString>("appears"); // the kill comes as soon as this file is there
    for (const char* suffix : {"", "-journal", "-wal"})
        QTest::addRow("when user.db%s appears", suffix)
            << true << QStringLiteral("user.db") + QLatin1String(suffix);
    QTest::newRow("rollback journal, when user.db appears") << false << QStringLiteral("user.db");
}

void TestSettingsProcesses::killedWhileCreating()
{
    QFETCH(bool, aheadLog);
    QFETCH(QString, appears);
    for (int round = 0; round < 12; ++round) {
        const ScratchHome home;
        const QString path = home.path(QStringLiteral("h/user.db"));
        if (!aheadLog)
            QVERIFY(refuseAheadLog(path));
        Writer writer(path, QStringLiteral("n"), 0);
        QElapsedTimer timer;
        timer.start();
        // A file that lives for a moment only may be missed; then the first acknowledged write ends the wait.
        const QString awaited = home.path(QStringLiteral("h/") + appears);
        while (!QFileInfo::exists(awaited) && !writer.hasTold() && !timer.hasExpired(longest)) {
        }
        for (int looks = round * 40; looks > 0; --looks)
            QFileInfo::exists(awaited);
        writer.kill();

        SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::Ready);
        QCOMPARE(missing(store, writer.prefix(), writer.lines()), QString());
        QCOMPARE(store.write(key, QStringLiteral("after"), ValueType::Number, 1), WriteResult::Written);
        QCOMPARE(integrity(path), QByteArray("ok"));
        QCOMPARE(setAsideFiles(home.path(QStringLiteral("h"))), QStringList());
    }
}

void TestSettingsProcesses::twoWritersLoseNothing()
{
    QFETCH(bool, aheadLog);
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    if (!aheadLog)
        QVERIFY(refuseAheadLog(path));
    const int count = aheadLog ? 1000 : 60;
    Writer first(path, QStringLiteral("a"), count);
    Writer second(path, QStringLiteral("b"), count);
    QCOMPARE(first.finish(), 0);
    QCOMPARE(second.finish(), 0);
    QCOMPARE(first.lines(), count);
    QCOMPARE(second.lines(), count);

    const SettingsStore store(path);
    QCOMPARE(store.openResult(), OpenResult::Ready);
    QCOMPARE(missing(store, first.prefix(), count), QString());
    QCOMPARE(missing(store, second.prefix(), count), QString());
    const QString shared = store.read(key, QStringLiteral("Shared"))->value.toString();
    QVERIFY2(shared == first.prefix() + QString::number(count - 1) ||
                 shared == second.prefix() + QString::number(count - 1),
             qPrintable(shared));
    QCOMPARE(integrity(path), QByteArray("ok"));
}

void TestSettingsProcesses::manyStartTogether_data()
{
    QTest::addColumn<QByteArray>("found"); // null: nothing yet
    QTest::addColumn<bool>("aheadLog");
    QTest::newRow("new store") << QByteArray() << true;
    QTest::newRow("new store, rollback journal") << QByteArray() << false;
    QTest::newRow("damaged store") << QByteArray("no database") << true;
    QTest::newRow("empty file") << QByteArray("") << true;
}

void TestSettingsProcesses::manyStartTogether()
{
    QFETCH(QByteArray, found);
    QFETCH(bool, aheadLog);
    for (int round = 0; round < 3; ++round) {
        const ScratchHome home;
        const QString path = home.path(QStringLiteral("h/user.db"));
        if (!aheadLog)
            QVERIFY(refuseAheadLog(path));
        if (!found.isNull())
            home.write(QStringLiteral("h/user.db"), found);
        const int count = aheadLog ? 40 : 3;
        std::vector<std::unique_ptr<Writer>> writers;
        for (int n = 0; n < 6; ++n)
            writers.push_back(std::make_unique<Writer>(path, QStringLiteral("w%1_").arg(n), count));
        for (const auto& writer : writers)
            QCOMPARE(writer->finish(), 0);

        const SettingsStore store(path);
        QCOMPARE(store.openResult(), OpenResult::Ready);
        for (const auto& writer : writers)
            QCOMPARE(missing(store, writer->prefix(), count), QString());
        QStringList aside = setAsideFiles(home.path(QStringLiteral("h")));
        aside.removeIf([](const QString& name) {
            return name.endsWith(QLatin1String("-wal")) || name.endsWith(QLatin1String("-shm"));
        });
        QCOMPARE(aside.size(), found.isEmpty() ? 0 : 1);
    }
}

void TestSettingsProcesses::readerSeesTheWriter()
{
    const ScratchHome home;
    const QString path = home.path(QStringLiteral("h/user.db"));
    const SettingsStore reader(path);
    Writer writer(path, QStringLiteral("w"), 200);
    for (int n = 1; n <= 200; n += 50) {
        QVERIFY(writer.waitForLines(n));
        QCOMPARE(missing(reader, writer.prefix(), n), QString());
    }
    QCOMPARE(writer.finish(), 0);
}

QTEST_GUILESS_MAIN(TestSettingsProcesses)
#include "tst_settingsprocesses.moc"
