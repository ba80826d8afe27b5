// Times, attributes and the image key of files.
#include "../support/ScratchHome.h"
#include "../support/Unprivileged.h"
#include "app/mFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>

#include <ctime>

using namespace quorvia::app;

namespace {

/// Seconds and nanoseconds.
bool setTimes(const QString& path, timespec accessed, timespec modified)
{
    const timespec times[] = {accessed, modified};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0;
}

void setZone(const char* zone)
{
    qputenv("TZ", zone);
    ::tzset();
}

} // namespace

class TestMFileFacts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setZone("AAA-3"); } // three hours east of universal time
    void cleanup() { setZone("UTC"); }

    void modified_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<int>("nanoseconds");
        QTest::addColumn<QDateTime>("local");
        QTest::newRow("milliseconds")
            << qint64(1000000000) << 123456789 << QDateTime(QDate(2001, 9, 9), QTime(4, 46, 40, 123));
        QTest::newRow("whole second")
            << qint64(1000000000) << 0 << QDateTime(QDate(2001, 9, 9), QTime(4, 46, 40));
        QTest::newRow("last millisecond")
            << qint64(0) << 999999999 << QDateTime(QDate(1970, 1, 1), QTime(3, 0, 0, 999));
        QTest::newRow("before the epoch")
            << qint64(-1) << 500000000 << QDateTime(QDate(1970, 1, 1), QTime(2, 59, 59, 500));
        QTest::newRow("beyond 32 bits")
            << qint64(4294967296) << 0 << QDateTime(QDate(2106, 2, 7), QTime(9, 28, 16));
    }
    void modified()
    {
        QFETCH(qint64, seconds);
        QFETCH(int, nanoseconds);
        QFETCH(QDateTime, local);
        const QString file = m_home.write("times", "x");
        const timespec access = {1234567890, 5000000};
        const timespec modification = {static_cast<time_t>(seconds), nanoseconds};
        QVERIFY(setTimes(file, access, modification));
        QCOMPARE(GetFileModified(file), local);
        QCOMPARE(GetFileModified(file).timeSpec(), Qt::LocalTime);
        QDateTime created;
        QDateTime changed;
        QDateTime accessed;
        QVERIFY(GetFileTimes(file, created, changed, accessed));
        QCOMPARE(changed, local);
        QCOMPARE(accessed, QDateTime(QDate(2009, 2, 14), QTime(2, 31, 30, 5)));
    }

    void created()
    {
        // Coarser clocks stamp files: allow for one tick on either side.
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        const QString file = m_home.write("born", "x");
        const QDateTime after = QDateTime::currentDateTime().addSecs(1);
        QVERIFY(setTimes(file, {1, 0}, {2, 0}));
        QDateTime created;
        QDateTime modified;
        QDateTime accessed;
        QVERIFY(GetFileTimes(file, created, modified, accessed));
        QVERIFY2(created >= before && created <= after, qPrintable(created.toString(Qt::ISODateWithMs)));
    }

    void noTimes_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << "";
        QTest::newRow("missing") << m_home.path("missing");
        QTest::newRow("directory") << m_home.path("run");
        QTest::newRow("below a file") << m_home.write("plain", "x") + "/x";
        QTest::newRow("zero character") << m_home.write("plain", "x") + QChar(u'\0');
    }
    void noTimes()
    {
        QFETCH(QString, path);
        const QDateTime mark(QDate(2000, 1, 1), QTime(0, 0));
        QDateTime created = mark;
        QDateTime modified = mark;
        QDateTime accessed = mark;
        QVERIFY(!GetFileTimes(path, created, modified, accessed));
        QVERIFY(created == mark && modified == mark && accessed == mark);
        QVERIFY(!GetFileModified(path).isValid());
    }

    void noTimesWithoutPermission()
    {
        QTemporaryDir directory;
        QVERIFY(quorvia::test::openToEveryone(QFile::encodeName(directory.path()).constData()));
        QFile file(directory.filePath("secret"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(::chmod(QFile::encodeName(file.fileName()).constData(), 0), 0);
        QVERIFY(
            quorvia::test::holdsUnprivileged([&] { return !GetFileModified(file.fileName()).isValid(); }));
    }

    void pipeDoesNotHold()
    {
        const QString pipe = m_home.path("pipe");
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(GetFileModified(pipe).isValid()); // comes back although nobody writes
        QCOMPARE(AttributeText(pipe), QStringLiteral("System"));
    }

    void attributeWords_data()
    {
        QTest::addColumn<unsigned>("bits");
        QTest::addColumn<QString>("words");
        QTest::newRow("none") << 0U << "";
        QTest::newRow("1") << 1U << "ReadOnly";
        QTest::newRow("2") << 2U << "Hidden";
        QTest::newRow("4") << 4U << "System";
        QTest::newRow("16") << 16U << "Directory";
        QTest::newRow("32") << 32U << "Archive";
        QTest::newRow("all") << 55U << "Directory ReadOnly Hidden System Archive";
        QTest::newRow("others") << ~55U << "";
        QTest::newRow("some") << 19U << "Directory ReadOnly Hidden";
    }
    void attributeWords()
    {
        QFETCH(unsigned, bits);
        QTEST(AttributeWords(bits), "words");
    }

    void attributes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("words");
        QTest::newRow("plain") << "plain" << 0644 << "";
        QTest::newRow("read only") << "locked" << 0444 << "ReadOnly";
        QTest::newRow("only the group may write") << "group" << 0464 << "";
        QTest::newRow("only others may write") << "others" << 0446 << "";
        QTest::newRow("hidden") << ".plain" << 0600 << "Hidden";
        QTest::newRow("hidden and read only") << ".locked" << 0400 << "ReadOnly Hidden";
        QTest::newRow("directory") << "folder/" << 0755 << "Directory";
        QTest::newRow("directory, separator, hidden, read only")
            << ".folder/" << 0555 << "Directory ReadOnly Hidden";
    }
    void attributes()
    {
        QFETCH(QString, name);
        QFETCH(int, mode);
        const QString path = m_home.path("attributes/") + name;
        if (name.endsWith(u'/'))
            QVERIFY(QDir().mkpath(path));
        else
            m_home.write("attributes/" + name, "x");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(mode)), 0);
        QTEST(AttributeText(path), "words");
    }

    void attributesOfLinksAndOthers()
    {
        QVERIFY(QFile::link(m_home.path("run"), m_home.path("toFolder")));
        QVERIFY(QFile::link(m_home.write("target", "x"), m_home.path(".toFile")));
        QVERIFY(QFile::link("nowhere", m_home.path("dead")));
        QCOMPARE(AttributeText(m_home.path("toFolder")), QStringLiteral("Directory"));
        QCOMPARE(AttributeText(m_home.path(".toFile")), QStringLiteral("Hidden"));
        QCOMPARE(AttributeText(m_home.path("dead")), QStringLiteral("System"));
        QCOMPARE(AttributeText("/dev/null"), QStringLiteral("System"));
        QCOMPARE(AttributeText(m_home.path("missing")), QString());
        QCOMPARE(AttributeText(QString()), QString());
    }

    void keyStandsWhileTheFileDoes()
    {
        const QString file = m_home.write("keys/picture.jpg", "12345");
        QVERIFY(setTimes(file, {1, 0}, {1000000000, 1}));
        const QString key = GetImageKey(file);
        QVERIFY(
            key.startsWith(QLatin1String("509092001014640"))); // 5 bytes; 2001-09-09 01:46:40 universal time
        QVERIFY(QRegularExpression(QStringLiteral("^[0-9-]{20,200}$")).match(key).hasMatch());
        QCOMPARE(GetImageKey(file), key);
        QVERIFY(setTimes(file, {999, 0}, {1000000000, 999999999})); // read since; same second
        QCOMPARE(GetImageKey(file), key);
        setZone("BBB+7");
        QCOMPARE(GetImageKey(file), key);

        QVERIFY(setTimes(file, {1, 0}, {1000000001, 0}));
        QVERIFY(GetImageKey(file) != key);
        m_home.write("keys/picture.jpg", "123456");
        QVERIFY(setTimes(file, {1, 0}, {1000000000, 0}));
        QVERIFY(GetImageKey(file) != key);
    }

    void copiesHaveKeysOfTheirOwn()
    {
        const QStringList names = {"a/x1/p12.jpg", "a/x2/p12.jpg",  "a/x1/p21.jpg",
                                   "a/x1/p12.gif", "a/x1/p12.jpgg", "b/x1/p12.jpg",
                                   "a/x1/P12.jpg", "a/x1/p12",      "ax/1/p12.jpg"};
        QSet<QString> keys;
        for (const QString& name : names) {
            const QString file = m_home.write(name, "same bytes");
            QVERIFY(setTimes(file, {1, 0}, {1000000000, 0}));
            keys.insert(GetImageKey(file));
        }
        QCOMPARE(keys.size(), names.size());
    }

    void keyOfNothing()
    {
        QCOMPARE(GetImageKey(QString()), GetImageKey(QString()));
        QVERIFY(!GetImageKey(QString()).isEmpty());
        QVERIFY(GetImageKey(m_home.path("no1")) != GetImageKey(m_home.path("no2")));
    }

  private:
    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestMFileFacts)
#include "tst_mfilefacts.moc"
