// What a conversion says, and what it may do to files. The trash is the test's own.
#include "output/ConversionFiles.h"
#include "platform/FileStatus.h"
#include "support/FileContent.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using namespace quorvia::output;
using quorvia::test::contentOf;

class TestConversionFiles : public QObject
{
    Q_OBJECT

  private:
    test::ScratchHome m_home; // one for all: the desktop looks for the trash once

    QString inTrash(const char* name) const
    {
        return m_home.path(QStringLiteral(".local/share/Trash/files/")) + QLatin1String(name);
    }
    QString file(const char* name) const
    {
        return m_home.path(QStringLiteral("pictures/")) + QLatin1String(name);
    }
    QString write(const char* name, const QByteArray& bytes) const
    {
        return m_home.write(QStringLiteral("pictures/") + QLatin1String(name), bytes);
    }
    QByteArray log() const
    {
        return contentOf(m_home.path(QStringLiteral(".local/state/quorvia/qolog.log")));
    }

  private Q_SLOTS:
    void init()
    {
        QDir(m_home.path(QStringLiteral(".local/share/Trash"))).removeRecursively();
        QDir(m_home.path(QStringLiteral("pictures"))).removeRecursively();
        QVERIFY(QDir().mkpath(m_home.path(QStringLiteral("pictures"))));
        QFile::remove(m_home.path(QStringLiteral(".local/state/quorvia/qolog.log")));
    }

    void caption_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("caption");
        QTest::newRow("usual") << "/p/a.jpg"
                               << "/p/a.png"
                               << "pngConversion Preview: a.jpg > png";
        QTest::newRow("case stays") << "/p/A.JPG"
                                    << "/p/A.Tif"
                                    << "TifConversion Preview: A.JPG > Tif";
        QTest::newRow("no extension") << "/p/a"
                                      << "/p/b"
                                      << "Conversion Preview: a > ";
        QTest::newRow("percents and quotes") << "/p/%1'\".bmp"
                                             << "/p/%2.pcx"
                                             << "pcxConversion Preview: %1'\".bmp > pcx";
    }

    void caption()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QTEST(conversionCaption(source, target), "caption");
    }

    void question_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("text");
        QTest::newRow("usual") << "/p/a.png"
                               << "The image 'a.png' already exists. Would you like to overwrite this file?";
        QTest::newRow("percent")
            << "/p/%1.png"
            << "The image '%1.png' already exists. Would you like to overwrite this file?";
    }

    void question()
    {
        QFETCH(QString, target);
        QTEST(overwriteQuestion(target), "text");
    }

    void oneFile()
    {
        const QString path = write("a.png", "a");
        write("b.png", "a");
        QVERIFY(QFile::link(path, file("link.png")));
        QCOMPARE(::link(qPrintable(path), qPrintable(file("hard.png"))), 0);
        QVERIFY(isOneFile(path, path));
        QVERIFY(isOneFile(path, file("./a.png")));
        QVERIFY(isOneFile(path, file("../pictures/a.png")));
        QVERIFY(isOneFile(path, file("link.png")));
        QVERIFY(isOneFile(file("hard.png"), path));
        QVERIFY(!isOneFile(path, file("b.png")));
        QVERIFY(!isOneFile(path, file("missing")));
        QVERIFY(!isOneFile(file("missing"), file("missing")));
        QVERIFY(!isOneFile({}, {}));
    }

    void sameContent()
    {
        const QString path = write("a", "same");
        QVERIFY(hasSameContent(path, write("b", "same")));
        QVERIFY(!hasSameContent(path, write("c", "more")));
        QVERIFY(!hasSameContent(path, write("d", "same and more")));
        QVERIFY(!hasSameContent(path, file("missing")));
        QVERIFY(!hasSameContent(file("missing"), file("missing")));
    }

    void whatIsReplacedIsKept()
    {
        QVERIFY(keepReplaced(file("missing.png")));
        const QString path = write("a.png", "old");
        QVERIFY(keepReplaced(path));
        QCOMPARE(contentOf(path), QByteArray("old"));
        QCOMPARE(contentOf(inTrash("a (replaced).png")), QByteArray("old"));
        QCOMPARE(log(), QByteArray("not to be read"));
    }

    void withoutATrashTheLogTells()
    {
        const QString path = write("a.png", "old");
        m_home.write(QStringLiteral(".local/share/Trash"), "in the trash's place");
        const bool kept = keepReplaced(path);
        trashSource(engine::PageKey::of(path, 1), 1, file("b.png"));
        QVERIFY(QFile::remove(m_home.path(QStringLiteral(".local/share/Trash"))));
        QVERIFY(!kept);
        QCOMPARE(contentOf(path), QByteArray("old"));
        QCOMPARE(log().count('\n'), 2);
        QVERIFY(log().contains("Not kept in the trash: " + path.toUtf8()));
        QVERIFY(log().contains("Converted original stays ("));
    }

    void theSourceGoesToTheTrash()
    {
        const QString path = write("a.jpg", "a");
        trashSource(engine::PageKey::of(path, 1), 1, write("a.png", "b"));
        QVERIFY(!platform::pathExists(path));
        QCOMPARE(contentOf(inTrash("a.jpg")), QByteArray("a"));
        QCOMPARE(log(), QByteArray("not to be read"));
    }

    void ofManyPagesTheLogTells()
    {
        const QString path = write("a.tif", "a");
        trashSource(engine::PageKey::of(path, 1), 3, write("a.png", "b"));
        QCOMPARE(contentOf(inTrash("a.tif")), QByteArray("a"));
        QVERIFY(log().contains("3 pages") && log().contains(path.toUtf8()));
    }

    void theResultIsNoSource_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("letter for letter") << "a.png";
        QTest::newRow("another way") << "../pictures/a.png";
        QTest::newRow("link") << "link.png";
    }

    void theResultIsNoSource()
    {
        QFETCH(QString, target);
        const QString path = write("a.png", "a");
        QVERIFY(QFile::link(path, file("link.png")));
        trashSource(engine::PageKey::of(path, 1), 1, file(qPrintable(target)));
        QCOMPARE(contentOf(path), QByteArray("a"));
        QVERIFY(log().contains("it is the result"));
    }

    void aLinkToTheResultStays()
    {
        const QString target = write("a.png", "a");
        QVERIFY(QFile::link(target, file("source.png")));
        trashSource(engine::PageKey::of(file("source.png"), 1), 1, target);
        QVERIFY(platform::pathExists(file("source.png")));
    }

    void whatHasChangedStays()
    {
        const QString path = write("a.jpg", "a");
        const engine::PageKey read = engine::PageKey::of(path, 1);
        write("a.jpg", "another one's");
        trashSource(read, 1, write("a.png", "b"));
        QCOMPARE(contentOf(path), QByteArray("another one's"));
        QVERIFY(log().contains("changed meanwhile"));
    }

    void whatIsReadOnlyStays()
    {
        const QString path = write("a.jpg", "a");
        QCOMPARE(::chmod(qPrintable(path), 0444), 0);
        trashSource(engine::PageKey::of(path, 1), 1, write("a.png", "b"));
        QCOMPARE(contentOf(path), QByteArray("a"));
        QVERIFY(log().contains("read-only"));
    }
};

QTEST_GUILESS_MAIN(TestConversionFiles)
#include "tst_conversionfiles.moc"
