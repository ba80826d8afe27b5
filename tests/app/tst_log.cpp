#include "../support/ScratchHome.h"
#include "app/Log.h"
#include "app/Paths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

using namespace quorvia::app;
using quorvia::test::ScratchHome;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class TestLog : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void lineWordForWord();
    void dateAndTimeAreNow();
    void linesAreAppended();
    void textInTheLine_data();
    void textInTheLine();
    void otherLinesStay();
    void logThatCannotBeWritten_data();
    void logThatCannotBeWritten();
};

void TestLog::lineWordForWord()
{
    const ScratchHome home;
    WriteLog(QStringLiteral("Init: Form_Load: frmImageView"));
    QCOMPARE(logPath(), home.path(QStringLiteral(".local/state/quorvia/qolog.log")));
    // The text follows the seconds with nothing between.
    const QRegularExpression form(
        QStringLiteral("\\A[01][0-9]-[0-3][0-9]-[0-9]{4} - [0-2][0-9]:[0-5][0-9]:[0-5][0-9]Init: Form_Load: "
                       "frmImageView\\n\\z"));
    const QString line = QString::fromUtf8(contents(logPath()));
    QVERIFY2(form.match(line).hasMatch(), qPrintable(line));
}

void TestLog::dateAndTimeAreNow()
{
    const ScratchHome home;
    const QDateTime before = QDateTime::currentDateTime();
    WriteLog(QStringLiteral("x"));
    const QDateTime after = QDateTime::currentDateTime();

    const QString line = QString::fromUtf8(contents(logPath()));
    const QDate date(line.mid(6, 4).toInt(), line.mid(0, 2).toInt(), line.mid(3, 2).toInt());
    const QTime time(line.mid(13, 2).toInt(), line.mid(16, 2).toInt(), line.mid(19, 2).toInt());
    const QDateTime written(date, time);
    QVERIFY2(written.isValid(), qPrintable(line));
    QVERIFY(written.addSecs(1) > before && written <= after);
}

void TestLog::linesAreAppended()
{
    const ScratchHome home;
    for (int n = 0; n < 5; ++n)
        WriteLog(QString::number(n));
    const QList<QByteArray> lines = contents(logPath()).split('\n');
    QCOMPARE(lines.size(), 6);
    for (int n = 0; n < 5; ++n)
        QCOMPARE(lines.at(n).mid(21), QByteArray::number(n));
    QCOMPARE(lines.last(), QByteArray());
}

void TestLog::textInTheLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("empty") << QString() << QByteArray("");
    QTest::newRow("blanks stay") << QStringLiteral("  a  b  ") << QByteArray("  a  b  ");
    QTest::newRow("line feed") << QStringLiteral("a\nb") << QByteArray("a b");
    QTest::newRow("carriage return") << QStringLiteral("a\rb") << QByteArray("a b");
    QTest::newRow("both are one line end") << QStringLiteral("a\r\nb\n\nc") << QByteArray("a b  c");
    QTest::newRow("beyond Latin") << QStringLiteral("/home/ä/日本") << QByteArray("/home/ä/日本");
    QTest::newRow("percent signs") << QStringLiteral("%1 %s %n") << QByteArray("%1 %s %n");
}

void TestLog::textInTheLine()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, written);
    const ScratchHome home;
    WriteLog(text);
    QCOMPARE(contents(logPath()).mid(21), written + '\n');
}

void TestLog::otherLinesStay()
{
    const ScratchHome home;
    home.write(QStringLiteral(".local/state/quorvia/qolog.log"), "of an earlier run\n");
    WriteLog(QStringLiteral("x"));
    QVERIFY(contents(logPath()).startsWith("of an earlier run\n"));
    QVERIFY(contents(logPath()).endsWith("x\n"));
    QVERIFY(QFile::remove(logPath()));
    WriteLog(QStringLiteral("y"));
    QCOMPARE(contents(logPath()).count('\n'), 1);
}

void TestLog::logThatCannotBeWritten_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("directory in its place") << QStringLiteral("directory");
    QTest::newRow("below a file") << QStringLiteral("file");
    QTest::newRow("no room") << QStringLiteral("full");
}

void TestLog::logThatCannotBeWritten()
{
    QFETCH(QString, kind);
    const ScratchHome home;
    const QString directory = home.path(QStringLiteral(".local/state/quorvia"));
    if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkpath(logPath()));
    else if (kind == QLatin1String("file"))
        home.write(QStringLiteral(".local/state/quorvia"), "a file");
    else
        QVERIFY(QDir().mkpath(directory) && QFile::link(QStringLiteral("/dev/full"), logPath()));
    WriteLog(QStringLiteral("x"));
    QCOMPARE(QFileInfo(logPath()).isFile(), false);
    QCOMPARE(QFileInfo(directory).isDir(), kind != QLatin1String("file"));
}

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
