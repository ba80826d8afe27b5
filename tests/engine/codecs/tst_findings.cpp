// Files that once broke a codec, found by fuzzing: each has the extension under which it did, and a name that
// says what went wrong. A watchdog ends the program when one takes too long, for some did just that.
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "Watchdog.h"

#include <QDir>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestFindings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { Limits::setMachineBytes(qint64(64) << 20); }
    void sizesAreCheckedWithoutOverflow();
    void areHarmlessNow_data();
    void areHarmlessNow();

  private:
    Watchdog m_watchdog;
};

void TestFindings::sizesAreCheckedWithoutOverflow()
{
    constexpr int most = std::numeric_limits<int>::max();
    for (const QSize size : {QSize(most, most), QSize(1, most), QSize(most, 1), QSize(65536, 1)})
        QCOMPARE(checkSize(size).error().kind, ErrorKind::TooLarge);
    for (const QSize size :
         {QSize(0, 1), QSize(1, 0), QSize(-1, most), QSize(most, std::numeric_limits<int>::min())})
        QCOMPARE(checkSize(size).error().kind, ErrorKind::Damaged);
    QVERIFY(checkSize(QSize(1, 1)));
    QVERIFY(checkSize(QSize(65535, 1)));
}

void TestFindings::areHarmlessNow_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(qEnvironmentVariable("QUORVIA_FINDINGS"));
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString& name : names)
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

void TestFindings::areHarmlessNow()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_watchdog.begin(path);
    QCOMPARE(misbehaviour(QFileInfo(path).suffix(), file.readAll()), QString());
}

QTEST_MAIN(TestFindings)
#include "tst_findings.moc"
