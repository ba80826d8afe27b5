#include "platform/FileStatus.h"
#include "platform/Rename.h"
#include "support/FileContent.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia::platform;
using quorvia::test::contentOf;

class TestRename : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }

    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "b.png";
        QTest::newRow("other case") << "A.PNG";
        QTest::newRow("dash") << "-rf";
        QTest::newRow("newline") << "a\nb";
        QTest::newRow("percent") << "100%20";
        QTest::newRow("three points") << "...";
        QTest::newRow("255 bytes") << QString(255, u'x');
        QTest::newRow("255 bytes of wide letters") << QString(127, u'ä') + "x";
    }
    void names()
    {
        QFETCH(QString, name);
        put("a.png");
        QString why = "untouched";
        QVERIFY2(renameInPlace(at("a.png"), name, &why), qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        QCOMPARE(contentOf(at(name)), QByteArray("a.png"));
        QCOMPARE(listed(), QStringList{name});
    }

    void noNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << "";
        QTest::newRow("a point") << ".";
        QTest::newRow("two points") << "..";
        QTest::newRow("into a folder") << "sub/b.png";
        QTest::newRow("out of the folder") << "../b.png";
        QTest::newRow("absolute") << "/tmp/b.png";
        QTest::newRow("zero character") << QString("b") + QChar(0) + ".png";
        QTest::newRow("256 bytes") << QString(256, u'x');
        QTest::newRow("256 bytes of wide letters") << QString(128, u'ä');
        QTest::newRow("4,000 letters") << QString(4000, u'x');
    }
    void noNames()
    {
        QFETCH(QString, name);
        put("a.png");
        QVERIFY(QDir(m_directory->path()).mkdir("sub"));
        QString why;
        QVERIFY(!renameInPlace(at("a.png"), name, &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!renameInPlace(at("a.png"), name));
        QCOMPARE(contentOf(at("a.png")), QByteArray("a.png"));
        QCOMPARE(listed(), (QStringList{"a.png", "sub"}));
    }

    void whatBearsTheNameStays_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("a file") << 0;
        QTest::newRow("a folder") << 1;
        QTest::newRow("a link that leads nowhere") << 2;
        QTest::newRow("another name of the file") << 3;
        QTest::newRow("another name of the file, in other case") << 4;
    }
    void whatBearsTheNameStays()
    {
        QFETCH(int, kind);
        put("a.png");
        const QString name = kind == 4 ? "A.PNG" : "b.png";
        if (kind == 0)
            put(name);
        else if (kind == 1)
            QVERIFY(QDir(m_directory->path()).mkdir(name));
        else if (kind == 2)
            QVERIFY(QFile::link("nothing", at(name)));
        else
            QCOMPARE(::link(qPrintable(at("a.png")), qPrintable(at(name))), 0);
        QString why;
        QVERIFY(!renameInPlace(at("a.png"), name, &why));
        QVERIFY(!why.isEmpty());
        QCOMPARE(contentOf(at("a.png")), QByteArray("a.png"));
        QCOMPARE(listed().size(), 2);
        if (kind == 0)
            QCOMPARE(contentOf(at(name)), name.toUtf8());
    }

    void aLinkIsRenamedItself()
    {
        put("a.png");
        QVERIFY(QFile::link("a.png", at("link")));
        QVERIFY(renameInPlace(at("link"), "other"));
        QVERIFY(QFileInfo(at("other")).isSymLink());
        QCOMPARE(contentOf(at("a.png")), QByteArray("a.png"));
    }

    void aReadOnlyFileIsRenamed()
    {
        put("a.png");
        QCOMPARE(::chmod(qPrintable(at("a.png")), 0444), 0);
        QVERIFY(renameInPlace(at("a.png"), "b.png"));
    }

    void whatIsNotThere_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << "missing.png";
        QTest::newRow("missing folder") << "missing/a.png";
        QTest::newRow("zero character") << QString("a") + QChar(0);
        QTest::newRow("4,000 letters") << QString(4000, u'x');
    }
    void whatIsNotThere()
    {
        QFETCH(QString, path);
        QString why;
        QVERIFY(!renameInPlace(at(path), "b.png", &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!renameInPlace(QString(), "b.png"));
        QCOMPARE(listed(), QStringList());
    }

  private:
    QString at(const QString& name) const { return m_directory->filePath(name); }
    void put(const QString& name) const
    {
        QFile file(at(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(name.toUtf8());
    }
    QStringList listed() const
    {
        return QDir(m_directory->path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(TestRename)
#include "tst_rename.moc"
