#include "../support/Unprivileged.h"
#include "platform/FileStatus.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

#include <cerrno>

using namespace quorvia::platform;

class TestFileStatus : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        QFile file(at("file"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(QDir(m_directory.path()).mkdir("sub"));
        QVERIFY(QFile::link("file", at("toFile")));
        QVERIFY(QFile::link("sub", at("toSub")));
        QVERIFY(QFile::link("nothing", at("dead")));
    }

    void kinds_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("number");
        QTest::addColumn<bool>("directory");
        QTest::addColumn<bool>("regular");
        QTest::newRow("file") << at("file") << 0 << false << true;
        QTest::newRow("file and separator") << at("file/") << ENOTDIR << false << false;
        QTest::newRow("below a file") << at("file/x") << ENOTDIR << false << false;
        QTest::newRow("directory") << at("sub") << 0 << true << false;
        QTest::newRow("directory and separator") << at("sub/") << 0 << true << false;
        QTest::newRow("link to file") << at("toFile") << 0 << false << true;
        QTest::newRow("link to directory") << at("toSub") << 0 << true << false;
        QTest::newRow("dead link") << at("dead") << ENOENT << false << false;
        QTest::newRow("device") << "/dev/null" << 0 << false << false;
        QTest::newRow("missing") << at("missing") << ENOENT << false << false;
        QTest::newRow("empty") << "" << ENOENT << false << false;
        QTest::newRow("zero character") << at("file") + QChar(u'\0') << ENOENT << false << false;
        QTest::newRow("too long") << at(QString(5000, u'x')) << ENAMETOOLONG << false << false;
    }
    void kinds()
    {
        QFETCH(QString, name);
        QFETCH(int, number);
        struct stat status = {};
        status.st_size = -1;
        QCOMPARE(fileStatus(name, status), number);
        QCOMPARE(status.st_size == -1, number != 0); // untouched on failure
        QCOMPARE(pathExists(name), number == 0);
        QTEST(isDirectory(name), "directory");
        QTEST(isRegularFile(name), "regular");
    }

    void readOnly_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("writable") << "file" << 0600U << false;
        QTest::newRow("nobody may write") << "file" << 0444U << true; // the super-user keeps to it
        QTest::newRow("nothing is allowed") << "file" << 0000U << true;
        QTest::newRow("by what a link leads to") << "toFile" << 0444U << true;
        QTest::newRow("a link to a writable one") << "toFile" << 0644U << false;
        QTest::newRow("missing") << "missing" << 0444U << false;
        QTest::newRow("a link to nothing") << "dead" << 0444U << false;
        QTest::newRow("directory") << "sub" << 0444U << false; // its own mode counts
        QTest::newRow("zero character") << QString("file") + QChar(u'\0') << 0444U << false;
    }
    void readOnly()
    {
        QFETCH(QString, name);
        QFETCH(uint, mode);
        QCOMPARE(::chmod(qPrintable(at("file")), mode), 0);
        const bool found = isReadOnly(at(name));
        QCOMPARE(::chmod(qPrintable(at("file")), 0644), 0);
        QTEST(found, "readOnly");
        QVERIFY(!isReadOnly(QString()));
    }

    void anotherUsersFileIsReadOnly()
    {
        QVERIFY(quorvia::test::openToEveryone(qPrintable(m_directory.path())));
        QCOMPARE(::chmod(qPrintable(at("file")), 0644), 0);
        const QString path = at("file");
        if (::geteuid() == 0) { // else it is our own
            QVERIFY(quorvia::test::holdsUnprivileged([&path] { return isReadOnly(path); }));
        }
        QCOMPARE(::chmod(qPrintable(path), 0666), 0);
        QVERIFY(quorvia::test::holdsUnprivileged([&path] { return !isReadOnly(path); }));
    }

    void linkItself()
    {
        struct stat status = {};
        QCOMPARE(fileStatus(at("dead"), status, Links::Keep), 0);
        QVERIFY(S_ISLNK(status.st_mode));
    }

  private:
    QString at(const QString& name) const { return m_directory.filePath(name); }
    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(TestFileStatus)
#include "tst_filestatus.moc"
