#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "collections/ThumbnailCache.h"
#include "engine/SmallPictures.h"
#include "support/ChildCheck.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTest>

#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <memory>

using namespace quorvia;
using namespace quorvia::collections;

namespace {

const QDateTime march(QDate(2003, 3, 2), QTime(14, 5, 9, 750));

void touch(const QString& path, const QDateTime& time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

/// The process is killed when its next file has all bytes and not yet its name.
bool crashesBeforeSync = false;

} // namespace

// Stands before that of the system's library.
extern "C" int fsync(int file)
{
    if (crashesBeforeSync)
        std::raise(SIGKILL);
    return int(::syscall(SYS_fsync, file));
}

class TestThumbnailCache : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        app::openSettings();
        m_cache = m_home->path(QStringLiteral("cache/"));
        QVERIFY(app::save(app::common::ThumbnailPath, m_cache));
    }

    void cleanup()
    {
        app::closeSettings();
        m_home.reset();
    }

    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QDateTime>("time");
        QTest::addColumn<QString>("thumbnail");
        QTest::newRow("usual") << "beach.jpg" << march << "03022003140509_beach.thb";
        QTest::newRow("another type, the same thumbnail")
            << "beach.png" << march << "03022003140509_beach.thb";
        QTest::newRow("a long extension") << "beach.jpeg" << march << "03022003140509_beach..thb";
        QTest::newRow("a short one") << "a.b1" << march << "03022003140509_.thb";
        QTest::newRow("five characters") << "ba.b1" << march << "03022003140509_b.thb";
        QTest::newRow("four characters") << ".jpg" << march << "03022003140509_.thb";
        QTest::newRow("three characters") << "a.b" << march << "";
        QTest::newRow("none") << "" << march << "";
        QTest::newRow("no time") << "beach.jpg" << QDateTime() << "12301899000000_beach.thb";
    }

    void names()
    {
        QFETCH(QString, name);
        QFETCH(QDateTime, time);
        QTEST(thumbnailName(name, time), "thumbnail");
    }

    void ofAFile()
    {
        const QString image = m_home->write(QStringLiteral("pics/beach.jpg"), "x");
        touch(image, march);
        QCOMPARE(thumbnailFor(image), m_cache + QStringLiteral("03022003140509_beach.thb"));
        touch(image, march.addSecs(1));
        QCOMPARE(thumbnailFor(image), m_cache + QStringLiteral("03022003140510_beach.thb"));
    }

    void aRenamedFileFindsItsOldThumbnailWhenItIsRenamedBack()
    {
        const QString image = m_home->write(QStringLiteral("pics/beach.jpg"), "x");
        const QString other = m_home->path(QStringLiteral("pics/shore.jpg"));
        const QString before = thumbnailFor(image);
        QVERIFY(QFile::rename(image, other));
        QVERIFY(thumbnailFor(other) != before);
        QVERIFY(QFile::rename(other, image));
        QCOMPARE(thumbnailFor(image), before);
    }

    void foldersDoNotCount()
    {
        const QString one = m_home->write(QStringLiteral("one/beach.jpg"), "x");
        const QString two = m_home->write(QStringLiteral("two/beach.jpg"), "y");
        touch(one, march);
        touch(two, march);
        QCOMPARE(thumbnailFor(one), thumbnailFor(two));
    }

    void aMissingFileHasDateZero()
    {
        QCOMPARE(thumbnailFor(m_home->path(QStringLiteral("gone.jpg"))),
                 m_cache + QStringLiteral("12301899000000_gone.thb"));
    }

    void aShortNameHasNoThumbnail()
    {
        QCOMPARE(thumbnailFor(m_home->write(QStringLiteral("long folder/a.b"), "x")), QString());
    }

    void theDirectoryIsTheStoredOneAsItStands()
    {
        QCOMPARE(thumbnailDirectory(), m_cache);
        QVERIFY(app::save(app::common::ThumbnailPath, QStringLiteral("/without/end")));
        QCOMPARE(thumbnailDirectory(), QStringLiteral("/without/end"));
        QVERIFY(app::save(app::common::ThumbnailPath, QString()));
        QCOMPARE(thumbnailDirectory(), app::InstallPath() + QStringLiteral("Thumbs/"));
    }

    void hits()
    {
        const QString there = m_home->write(QStringLiteral("cache/1_ab.thb"), "x");
        QVERIFY(hasThumbnail(there));
        QVERIFY(!hasThumbnail(m_cache + QStringLiteral("1_ac.thb")));
        QVERIFY(!hasThumbnail(m_cache + QStringLiteral("1_a?.thb"))); // no wildcard
        QVERIFY(!hasThumbnail(m_cache));
        QVERIFY(!hasThumbnail(QString()));
    }

    void aCrashInMidSaveLeavesNoThumbnail()
    {
        const QString image = m_home->write(QStringLiteral("pics/beach.png"), QByteArray());
        QImage black(200, 150, QImage::Format_RGB32);
        black.fill(Qt::black);
        QVERIFY(black.save(image));
        QVERIFY(QDir().mkpath(m_cache));
        const QString thumbnail = thumbnailFor(image);
        const auto store = [&] {
            const auto same = [](QSize page) { return page; };
            return bool(engine::readSmall({image, {}, same, thumbnail}, engine::CancelFlag(false)));
        };
        const auto storeInAChild = [&store](bool crash) {
            return test::heldInChild([&store, crash] {
                crashesBeforeSync = crash;
                return store();
            });
        };
        QCOMPARE(storeInAChild(true), -1);
        for (const QString& left : QDir(m_cache).entryList(QDir::Files | QDir::Hidden))
            QVERIFY2(!left.endsWith(QStringLiteral(".thb")), qPrintable(left));
        QVERIFY(listThumbnails(m_cache).isEmpty());
        QVERIFY(!hasThumbnail(thumbnail));
        QCOMPARE(storeInAChild(false), 1); // it was the crash that ended it
        QVERIFY(hasThumbnail(thumbnail));
    }

    void counts()
    {
        m_home->write(QStringLiteral("cache/1_a.thb"), QByteArray(1'048'576, 'x'));
        m_home->write(QStringLiteral("cache/2_b.THB"), QByteArray(524'288, 'x'));
        m_home->write(QStringLiteral("cache/other.jpg"), QByteArray(100, 'x'));
        m_home->write(QStringLiteral("cache/below/3_c.thb"), QByteArray(100, 'x'));
        const QStringList files = listThumbnails(m_cache.chopped(1)); // the "/" is added
        QCOMPARE(files.size(), 2);
        QCOMPARE(megabytesOf(files[0]) + megabytesOf(files[1]), 1.5);
        QVERIFY(files.contains(m_cache + QStringLiteral("1_a.thb")));
        QCOMPARE(listThumbnails(m_cache).size(), 2);
    }

    void countsNothingWhereNothingIs()
    {
        QVERIFY(listThumbnails(m_home->path(QStringLiteral("nowhere"))).isEmpty());
        QCOMPARE(megabytesOf(m_home->path(QStringLiteral("nowhere/1_a.thb"))), 0.0);
    }

    void countsOnlyTheDirectoryThatIsAskedFor()
    {
        m_home->write(QStringLiteral("cache/1_a.thb"), "x");
        QVERIFY(app::save(app::common::ThumbnailPath, m_home->path(QStringLiteral("moved/"))));
        QVERIFY(listThumbnails(thumbnailDirectory()).isEmpty());
    }

    void deletesWhatWasCounted()
    {
        m_home->write(QStringLiteral("cache/1_a.thb"), "x");
        const QStringList counted = listThumbnails(m_cache);
        const QString later = m_home->write(QStringLiteral("cache/2_b.thb"), "x");
        deleteThumbnails(counted);
        QCOMPARE(listThumbnails(m_cache), QStringList(later));
    }

    void deletesNothingElse()
    {
        const QString image = m_home->write(QStringLiteral("cache/beach.jpg"), "x");
        const QString behind = m_home->write(QStringLiteral("pics/kept.jpg"), "x");
        const QString directory = m_cache + QStringLiteral("folder.thb");
        const QString link = m_cache + QStringLiteral("link.thb");
        QVERIFY(QDir().mkdir(directory));
        QVERIFY(QFile::link(behind, link));
        deleteThumbnails({image, directory, link, m_cache + QStringLiteral("gone.thb")});
        QVERIFY(QFileInfo::exists(image));
        QVERIFY(QFileInfo::exists(directory));
        QVERIFY(!QFileInfo(link).isSymLink());
        QVERIFY(QFileInfo::exists(behind));
    }

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    QString m_cache;
};

QTEST_GUILESS_MAIN(TestThumbnailCache)
#include "tst_thumbnailcache.moc"
