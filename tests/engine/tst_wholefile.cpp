#include "engine/WholeFile.h"
#include "support/FullDisk.h"

#include <QtTest>

#include <sys/stat.h>

using namespace quorvia::engine;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

class tst_WholeFile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_directory = std::make_unique<QTemporaryDir>(); }

    void newFile()
    {
        QVERIFY(writeWholeFile(path("a"), "new"));
        QCOMPARE(contentOf(path("a")), QByteArray("new"));
        QCOMPARE(names(), QStringList{"a"});
    }

    void oldFile()
    {
        put(path("a"), "a longer old content");
        QVERIFY(writeWholeFile(path("a"), "new"));
        QCOMPARE(contentOf(path("a")), QByteArray("new"));
        QCOMPARE(names(), QStringList{"a"});
    }

    void aNameAsLongAsNamesCanBe()
    {
        const QString name(255, u'x');
        QVERIFY(writeWholeFile(m_directory->filePath(name), "new"));
        QVERIFY(writeWholeFile(m_directory->filePath(name), "newer"));
        QCOMPARE(contentOf(m_directory->filePath(name)), QByteArray("newer"));
        QCOMPARE(names(), QStringList{name});
        QVERIFY(!writeWholeFile(m_directory->filePath(name + u'x'), "new"));
        QCOMPARE(names(), QStringList{name});
    }

    void newFilesAreAsOpenAsOthers()
    {
        put(path("other"), "x");
        QVERIFY(writeWholeFile(path("a"), "new"));
        QCOMPARE(QFileInfo(path("a")).permissions(), QFileInfo(path("other")).permissions());
    }

    void aLinkToNothingYetIsFollowed()
    {
        QVERIFY(QFile::link(path("far"), path("link")));
        QVERIFY(writeWholeFile(path("link"), "new"));
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QCOMPARE(contentOf(path("far")), QByteArray("new"));
    }

    void scratchFile()
    {
        QVERIFY(writeScratchFile(path("a"), "first"));
        QVERIFY(writeScratchFile(path("a"), "new"));
        QCOMPARE(contentOf(path("a")), QByteArray("new"));
        QCOMPARE(names(), QStringList{"a"});
        QVERIFY(!writeScratchFile(path("gone/a"), "new"));
    }

    void scratchFileOnAFullDisk()
    {
        {
            const quorvia::test::FullDisk full(1000);
            QVERIFY(full.isFull());
            QVERIFY(!writeScratchFile(path("a"), QByteArray(5000, 'x')));
        }
        QCOMPARE(names(), QStringList());
    }

    void fromScratch_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::newRow("new") << QByteArray();
        QTest::newRow("replaced") << QByteArray("old");
    }

    void fromScratch()
    {
        QFETCH(QByteArray, before);
        if (!before.isEmpty())
            put(path("target"), before);
        QVERIFY(writeScratchFile(path("scratch"), "content"));
        QVERIFY(writeFromScratch(path("scratch"), path("target")));
        QCOMPARE(contentOf(path("target")), QByteArray("content"));
        QVERIFY(writeScratchFile(path("scratch"), "the next one's")); // must not reach the first one
        QVERIFY(QFile::remove(path("scratch")));
        QCOMPARE(contentOf(path("target")), QByteArray("content"));
        QCOMPARE(names(), QStringList{"target"});
    }

    void fromScratchToALink()
    {
        put(path("real"), "old");
        QVERIFY(QFile::link("real", path("link")));
        QVERIFY(writeScratchFile(path("scratch"), "content"));
        QVERIFY(writeFromScratch(path("scratch"), path("link")));
        QVERIFY(QFileInfo(path("link")).isSymLink());
        QCOMPARE(contentOf(path("real")), QByteArray("content"));
    }

    void fromNoScratch()
    {
        put(path("target"), "old");
        QVERIFY(!writeFromScratch(path("scratch"), path("target")));
        QCOMPARE(contentOf(path("target")), QByteArray("old"));
        QVERIFY(writeScratchFile(path("scratch"), "content"));
        QVERIFY(!writeFromScratch(path("scratch"), path("gone/target")));
    }

    void permissionsStay_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::newRow("private") << 0600U;
        QTest::newRow("group") << 0664U;
        QTest::newRow("executable") << 0755U;
    }

    void permissionsStay()
    {
        QFETCH(uint, mode);
        put(path("a"), "old");
        QCOMPARE(::chmod(QFile::encodeName(path("a")).constData(), mode), 0);
        QVERIFY(writeWholeFile(path("a"), "new"));
        struct stat facts = {};
        QCOMPARE(::stat(QFile::encodeName(path("a")).constData(), &facts), 0);
        QCOMPARE(facts.st_mode & 07777U, mode);
    }

    void whatNobodyMayWriteStays_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("byLink");
        QTest::newRow("read-only") << 0444U << false;
        QTest::newRow("nothing is allowed") << 0000U << false;
        QTest::newRow("through a link") << 0444U << true;
    }

    void whatNobodyMayWriteStays()
    {
        QFETCH(uint, mode);
        QFETCH(bool, byLink);
        put(path("a"), "old");
        QVERIFY(QFile::link("a", path("link")));
        QCOMPARE(::chmod(QFile::encodeName(path("a")).constData(), mode), 0);
        const Status status = writeWholeFile(path(byLink ? "link" : "a"), "new"); // the super-user too
        QVERIFY(!status);
        QCOMPARE(status.error().kind, ErrorKind::WriteFailed);
        QVERIFY(!status.error().text.isEmpty());
        QCOMPARE(::chmod(QFile::encodeName(path("a")).constData(), 0600), 0);
        QCOMPARE(contentOf(path("a")), QByteArray("old"));
    }

    void linkStays()
    {
        QVERIFY(QDir(m_directory->path()).mkdir("deep"));
        put(path("deep/real"), "old");
        QVERIFY(QFile::link("deep/real", path("middle")));
        QVERIFY(QFile::link("middle", path("outer"))); // a link to a link
        QVERIFY(writeWholeFile(path("outer"), "new"));
        QCOMPARE(contentOf(path("deep/real")), QByteArray("new"));
        QVERIFY(QFileInfo(path("outer")).isSymLink());
        QVERIFY(QFileInfo(path("middle")).isSymLink());
        QVERIFY(!QFileInfo(path("deep/real")).isSymLink());
    }

    void directoryInPlace()
    {
        QVERIFY(QDir(m_directory->path()).mkdir("a"));
        const Status status = writeWholeFile(path("a"), "new");
        QVERIFY(!status);
        QCOMPARE(status.error().kind, ErrorKind::WriteFailed);
        QVERIFY(!status.error().text.isEmpty());
        QVERIFY(QFileInfo(path("a")).isDir());
    }

    void belowARegularFile()
    {
        put(path("a"), "old");
        const Status status = writeWholeFile(path("a/b"), "new");
        QVERIFY(!status);
        QCOMPARE(contentOf(path("a")), QByteArray("old"));
    }

    void directoryThatTakesNothing()
    {
        // Nobody, root neither, makes a new file in /proc; this one exists and can be written.
        const QString target = QStringLiteral("/proc/self/oom_score_adj");
        const QByteArray before = contentOf(target);
        const Status status = writeWholeFile(target, "1000\n");
        QVERIFY(!status);
        QVERIFY2(status.error().text.contains(QStringLiteral("directory")), qPrintable(status.error().text));
        QCOMPARE(contentOf(target), before);
    }

    void fullDisk_data()
    {
        QTest::addColumn<int>("room");   // bytes that a file may have
        QTest::addColumn<int>("length"); // of the new content
        QTest::newRow("few bytes, no room") << 0 << 100;
        QTest::newRow("few bytes, room for some") << 60 << 100;
        QTest::newRow("many bytes, no room") << 0 << 1'000'000;
        QTest::newRow("many bytes, room for nearly all") << 999'999 << 1'000'000;
    }

    void fullDisk()
    {
        QFETCH(int, room);
        QFETCH(int, length);
        put(path("a"), "old");
        const QByteArray content(length, 'x');
        Status replaced = ok();
        Status made = ok();
        {
            const quorvia::test::FullDisk disk{rlim_t(room)}; // for the test's own output too
            replaced = writeWholeFile(path("a"), content);
            made = writeWholeFile(path("b"), content);
        }
        QVERIFY(!replaced && !made);
        QCOMPARE(replaced.error().kind, ErrorKind::WriteFailed);
        QVERIFY(!replaced.error().text.isEmpty());
        QCOMPARE(contentOf(path("a")), QByteArray("old"));
        QCOMPARE(names(), QStringList{"a"});
        QVERIFY(writeWholeFile(path("a"), content));
        QCOMPARE(contentOf(path("a")), content);
    }

    void deviceInPlace() { QVERIFY(!writeWholeFile(QStringLiteral("/dev/full"), "new")); }

    void noName() { QVERIFY(!writeWholeFile(QString(), "new")); }

  private:
    QString path(const char* name) const { return m_directory->filePath(QString::fromLatin1(name)); }
    QStringList names() const { return QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(tst_WholeFile)
#include "tst_wholefile.moc"
