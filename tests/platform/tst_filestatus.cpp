#include "platform/FileStatus.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

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
