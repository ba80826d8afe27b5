// Files go to a trash of the test's own. The desktop asks for the user's directories once a process, so that
// one home serves all of them.
#include "../support/ScratchHome.h"
#include "../support/Unprivileged.h"
#include "platform/FileStatus.h"
#include "platform/Trash.h"
#include "support/FileContent.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>
#include <QUrl>

#include <sys/stat.h>

#include <algorithm>

using namespace quorvia::platform;
using quorvia::test::contentOf;

namespace {

/// True when `path` itself, be it a link, is there.
bool isThere(const QString& path)
{
    struct stat status = {};
    return fileStatus(path, status, Links::Keep) == 0;
}

} // namespace

class TestTrash : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir().mkpath(m_home.path("pictures")));
        QVERIFY(QDir::setCurrent(m_home.path("pictures")));
    }
    void init()
    {
        QDir(trash()).removeRecursively();
        QDir(m_home.path("pictures")).removeRecursively();
        QVERIFY(QDir().mkpath(m_home.path("pictures")) && QDir::setCurrent(m_home.path("pictures")));
    }

    void aFileLiesInTheTrash_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "plain.png";
        QTest::newRow("blanks") << " a  b .png";
        QTest::newRow("percent") << "100%20.png";
        QTest::newRow("umlauts") << "Äpfel – größer.png";
        QTest::newRow("newline") << "two\nlines\n.png";
        QTest::newRow("signs") << "<&'\">#?=[x]\\.png";
        QTest::newRow("hidden") << ".hidden";
        QTest::newRow("address") << "file:a.png";
    }
    void aFileLiesInTheTrash()
    {
        QFETCH(QString, name);
        const QString path = m_home.write("pictures/" + name, "content");
        const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
        QString why = "untouched";
        QVERIFY2(moveToTrash(path, &why), qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        QVERIFY(!isThere(path));
        QCOMPARE(contentOf(inTrash(name)), QByteArray("content"));
        const QRegularExpressionMatch info = infoOf(name);
        QVERIFY(info.hasMatch());
        QCOMPARE(QUrl::fromPercentEncoding(info.captured("path").toUtf8()), path);
        const QDateTime date = QDateTime::fromString(info.captured("date"), Qt::ISODate);
        QVERIFY(date >= before && date <= QDateTime::currentDateTime());
    }

    void namesCountFromTheWorkingDirectory_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("relative") << "a.png";
        QTest::newRow("dash first") << "-rf";
        QTest::newRow("two dashes") << "--help";
        QTest::newRow("home sign") << "~";
        QTest::newRow("point first") << "./a.png";
        QTest::newRow("over the folder above") << "../pictures/a.png";
    }
    void namesCountFromTheWorkingDirectory()
    {
        QFETCH(QString, name);
        const QString path = m_home.write("pictures/" + name, "content");
        QVERIFY(moveToTrash(name));
        QVERIFY(!isThere(path));
        const QString last = QFileInfo(name).fileName();
        QCOMPARE(contentOf(inTrash(last)), QByteArray("content"));
        QCOMPARE(infoOf(last).captured("path"), m_home.path("pictures/") + last);
    }

    void aSecondOfTheSameNameKeepsTheFirst()
    {
        const QString path = m_home.write("pictures/a.png", "first");
        QVERIFY(moveToTrash(path));
        m_home.write("pictures/a.png", "second");
        QVERIFY(moveToTrash(path));
        QList<QByteArray> contents;
        for (const QString& name : QDir(trash() + "/files").entryList(QDir::Files))
            contents << contentOf(inTrash(name));
        std::sort(contents.begin(), contents.end());
        QCOMPARE(contents, QList<QByteArray>({"first", "second"}));
        QCOMPARE(QDir(trash() + "/info").entryList(QDir::Files).size(), 2);
    }

    void aFolderGoesAsAWhole()
    {
        m_home.write("pictures/album/inner/a.png", "content");
        QVERIFY(moveToTrash(m_home.path("pictures/album")));
        QVERIFY(!isThere(m_home.path("pictures/album")));
        QCOMPARE(contentOf(inTrash("album/inner/a.png")), QByteArray("content"));
    }

    void aLinkGoesItself_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("file") << "target.png";
        QTest::newRow("folder") << ".";
        QTest::newRow("nothing") << "missing.png";
    }
    void aLinkGoesItself()
    {
        QFETCH(QString, target);
        m_home.write("pictures/target.png", "content");
        const QString link = m_home.path("pictures/link");
        QVERIFY(QFile::link(target, link));
        QVERIFY(moveToTrash(link));
        QVERIFY(!isThere(link));
        QCOMPARE(contentOf(m_home.path("pictures/target.png")), QByteArray("content"));
        QCOMPARE(QFile::symLinkTarget(inTrash("link")), QDir::cleanPath(trash() + "/files/" + target));
    }

    void aPathThatGoesBackOverALink()
    {
        m_home.write("pictures/a.png", "must stay");
        m_home.write("pictures/far/away/b.png", "b");
        m_home.write("pictures/far/a.png", "must go");
        QVERIFY(QFile::link(m_home.path("pictures/far/away"), m_home.path("pictures/link")));
        QCOMPARE(contentOf("link/../a.png"), QByteArray("must go"));
        QVERIFY(moveToTrash("link/../a.png"));
        QCOMPARE(contentOf(m_home.path("pictures/a.png")), QByteArray("must stay"));
        QVERIFY(!isThere(m_home.path("pictures/far/a.png")));
        QCOMPARE(contentOf(inTrash("a.png")), QByteArray("must go"));
    }

    void whatIsNotThere_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_home.path("pictures/missing.png");
        QTest::newRow("missing folder") << m_home.path("pictures/missing/a.png");
        QTest::newRow("empty") << "";
        QTest::newRow("a file as a folder") << m_home.path("pictures/kept/");
        QTest::newRow("zero character") << m_home.path("pictures/kept") + QChar(0) + "more";
    }
    void whatIsNotThere()
    {
        QFETCH(QString, path);
        m_home.write("pictures/kept", "content");
        QString why;
        QVERIFY(!moveToTrash(path, &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!moveToTrash(path));
        QCOMPARE(contentOf(m_home.path("pictures/kept")), QByteArray("content"));
        QVERIFY(QDir(trash() + "/files").isEmpty());
    }

    void withoutATrashTheFileStays()
    {
        const QString path = m_home.write("pictures/a.png", "content");
        m_home.write(".local/share/Trash", "in the trash's place");
        QString why;
        const bool moved = moveToTrash(path, &why);
        QVERIFY(QFile::remove(trash()));
        QVERIFY(!moved);
        QVERIFY(!why.isEmpty());
        QCOMPARE(contentOf(path), QByteArray("content"));
    }

    void whatMayNotBeMovedStays()
    {
        QVERIFY(quorvia::test::openToEveryone(qPrintable(m_home.path("."))));
        const QString path = m_home.write("pictures/a.png", "content");
        for (const char* folder : {"", "/files", "/info"}) {
            QVERIFY(QDir().mkpath(trash() + folder));
            QCOMPARE(::chmod(qPrintable(trash() + folder), 0777), 0);
        }
        QCOMPARE(::chmod(qPrintable(m_home.path("pictures")), 0555), 0);
        const bool stays = quorvia::test::holdsUnprivileged([&path] {
            QString why;
            return !moveToTrash(path, &why) && !why.isEmpty();
        });
        QCOMPARE(::chmod(qPrintable(m_home.path("pictures")), 0755), 0);
        QVERIFY(stays);
        QCOMPARE(contentOf(path), QByteArray("content"));
        QVERIFY(QDir(trash() + "/files").isEmpty() && QDir(trash() + "/info").isEmpty());
    }

    void aReadOnlyFileIsNotTheUsersToDelete_data()
    {
        QTest::addColumn<uint>("mode");
        QTest::addColumn<bool>("stays");
        QTest::newRow("nobody may write it") << 0444U << true;
        QTest::newRow("nobody may do anything") << 0000U << true;
        QTest::newRow("the user may write it") << 0600U << false;
    }
    void aReadOnlyFileIsNotTheUsersToDelete()
    {
        QFETCH(uint, mode);
        QFETCH(bool, stays);
        const QString path = m_home.write("pictures/a.png", "content");
        QCOMPARE(::chmod(qPrintable(path), mode), 0);
        QString why;
        QCOMPARE(trashUnlessReadOnly(path, &why), !stays);
        QCOMPARE(isThere(path), stays);
        QCOMPARE(why, stays ? QString("A read-only file cannot be deleted") : QString());
        QCOMPARE(trashUnlessReadOnly(path), false); // it stays, or has gone
        QCOMPARE(QDir(trash() + "/files").entryList(QDir::Files).size(), stays ? 0 : 1);
    }

    void aLinkToAReadOnlyFileMayGo()
    {
        const QString target = m_home.write("pictures/target.png", "content");
        QCOMPARE(::chmod(qPrintable(target), 0444), 0);
        const QString link = m_home.path("pictures/link.png");
        QVERIFY(QFile::link(target, link));
        QVERIFY(trashUnlessReadOnly(link));
        QVERIFY(!isThere(link));
        QVERIFY(isThere(target));
    }

    void whatIsReplacedIsKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("kept");
        QTest::newRow("plain") << "a.png"
                               << "a (replaced).png";
        QTest::newRow("two points") << "a.tar.gz"
                                    << "a.tar (replaced).gz";
        QTest::newRow("no extension") << "a"
                                      << "a (replaced)";
        QTest::newRow("hidden") << ".a"
                                << ".a (replaced)";
        QTest::newRow("signs") << "\"%1\n'.png"
                               << "\"%1\n' (replaced).png";
        QTest::newRow("dash") << "-rf.png"
                              << "-rf (replaced).png";
        QTest::newRow("255 bytes") << QString(251, u'x') + ".png" << QString(225, u'x') + " (replaced).png";
    }
    void whatIsReplacedIsKept()
    {
        QFETCH(QString, name);
        QFETCH(QString, kept);
        const QString path = m_home.write("pictures/" + name, "old");
        QString why;
        QVERIFY2(keepInTrash(path, &why), qPrintable(why));
        QCOMPARE(contentOf(path), QByteArray("old")); // it is not touched
        QCOMPARE(contentOf(inTrash(kept)), QByteArray("old"));
        QCOMPARE(QDir(m_home.path("pictures")).entryList(QDir::Files | QDir::Hidden), QStringList{name});
    }

    void whatIsReplacedOutlivesTheReplacement()
    {
        const QString path = m_home.write("pictures/a.png", "old");
        QVERIFY(keepInTrash(path));
        const QString beside = m_home.write("pictures/new", "new"); // as a save does: a rename over it
        QCOMPARE(::rename(qPrintable(beside), qPrintable(path)), 0);
        QCOMPARE(contentOf(path), QByteArray("new"));
        QCOMPARE(contentOf(inTrash("a (replaced).png")), QByteArray("old"));
    }

    void aNameThatIsTakenIsCountedOn()
    {
        const QString path = m_home.write("pictures/a.png", "old");
        const QString other = m_home.write("pictures/a (replaced).png", "the user's own");
        QVERIFY(keepInTrash(path));
        QCOMPARE(contentOf(other), QByteArray("the user's own"));
        QCOMPARE(contentOf(inTrash("a (replaced 2).png")), QByteArray("old"));
    }

    void ofALinkWhatItLeadsToIsKept()
    {
        m_home.write("pictures/target.png", "old");
        const QString link = m_home.path("pictures/link.png");
        QVERIFY(QFile::link("target.png", link));
        QVERIFY(keepInTrash(link));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(inTrash("target (replaced).png")), QByteArray("old"));
    }

    void whatCannotBeKept_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << "missing.png";
        QTest::newRow("a folder") << ".";
        QTest::newRow("empty") << "";
        QTest::newRow("a link that leads nowhere") << "dead";
    }
    void whatCannotBeKept()
    {
        QFETCH(QString, name);
        QVERIFY(QFile::link("nothing", m_home.path("pictures/dead")));
        QString why;
        QVERIFY(!keepInTrash(name.isEmpty() ? name : m_home.path("pictures/") + name, &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(QDir(trash() + "/files").isEmpty());
    }

    void withoutATrashNoSecondNameIsLeft()
    {
        const QString path = m_home.write("pictures/a.png", "old");
        m_home.write(".local/share/Trash", "in the trash's place");
        QString why;
        const bool kept = keepInTrash(path, &why);
        QVERIFY(QFile::remove(trash()));
        QVERIFY(!kept && !why.isEmpty());
        QCOMPARE(contentOf(path), QByteArray("old"));
        QCOMPARE(QDir(m_home.path("pictures")).entryList(QDir::Files), QStringList{"a.png"});
    }

  private:
    QString trash() const { return m_home.path(".local/share/Trash"); }
    QString inTrash(const QString& name) const { return trash() + "/files/" + name; }
    /// The whole of the info file about `name`, path and date captured; without a match when it has another
    /// form.
    QRegularExpressionMatch infoOf(const QString& name) const
    {
        static const QRegularExpression form(
            "\\A\\[Trash Info\\]\nPath=(?<path>[!-~]+)\n"
            "DeletionDate=(?<date>\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d)\n\\z");
        return form.match(QString::fromUtf8(contentOf(trash() + "/info/" + name + ".trashinfo")));
    }

    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestTrash)
#include "tst_trash.moc"
