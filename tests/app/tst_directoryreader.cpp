#include "../support/Unprivileged.h"
#include "app/DirectoryReader.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

#include <map>

using namespace quorvia::app;

class TestDirectoryReader : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void kinds()
    {
        QTemporaryDir directory;
        const auto at = [&](const char* name) { return directory.filePath(QString::fromUtf8(name)); };
        for (const char* name : {"a.jpg", ".hidden", "é <x>\n.png"}) {
            QFile file(at(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir().mkdir(at("sub")));
        QVERIFY(QFile::link("a.jpg", at("toFile")));
        QVERIFY(QFile::link("sub", at("toSub")));
        QVERIFY(QFile::link("none", at("dead")));
        QCOMPARE(::mkfifo(QFile::encodeName(at("pipe")).constData(), 0600), 0);
        const QByteArray odd = QFile::encodeName(directory.path()) + "/\xff\xfe.jpg"; // no UTF-8
        QCOMPARE(::mkdir(odd.constData(), 0700), 0);

        std::map<QString, EntryKind> found;
        for (const DirectoryEntry& entry : readDirectory(directory.path())) {
            QCOMPARE(entry.isHidden(), entry.name == QLatin1String(".hidden"));
            QVERIFY(found.emplace(entry.name, entry.kind).second);
        }
        const std::map<QString, EntryKind> expected = {{"a.jpg", EntryKind::File},
                                                       {".hidden", EntryKind::File},
                                                       {QStringLiteral("é <x>\n.png"), EntryKind::File},
                                                       {"toFile", EntryKind::File},
                                                       {"sub", EntryKind::Directory},
                                                       {"toSub", EntryKind::Directory},
                                                       {"dead", EntryKind::Other},
                                                       {"pipe", EntryKind::Other}};
        QVERIFY(found == expected);
        QCOMPARE(::rmdir(odd.constData()), 0);
    }

    void nothingToRead_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("empty") << "";
        QTest::newRow("missing") << "/no/such/directory";
        QTest::newRow("file") << QCoreApplication::applicationFilePath();
        QTest::newRow("zero character") << QStringLiteral("/tmp") + QChar(u'\0');
    }
    void nothingToRead()
    {
        QFETCH(QString, path);
        QVERIFY(readDirectory(path).empty());
    }

    void noPermission()
    {
        QTemporaryDir directory;
        QVERIFY(quorvia::test::openToEveryone(QFile::encodeName(directory.path()).constData()));
        const QString closed = directory.filePath("closed");
        QVERIFY(QDir().mkpath(closed + "/sub"));
        QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0), 0);
        QVERIFY(quorvia::test::holdsUnprivileged(
            [&] { return readDirectory(directory.path()).size() == 1 && readDirectory(closed).empty(); }));
        QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0700), 0);
    }
};

QTEST_GUILESS_MAIN(TestDirectoryReader)
#include "tst_directoryreader.moc"
