// The sidecar files of descriptions: their names, what they hold, and that none is ever half written.
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "support/ScratchHome.h"
#include "support/Unprivileged.h"
#include "viewer/DescriptionFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

#include <memory>

using namespace quorvia;
using viewer::Description;

namespace {

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList namesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

} // namespace

Q_DECLARE_METATYPE(viewer::Description::State)

class TestDescriptionFile : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::ScratchHome> m_home;
    QString m_image;

    QString directory() const { return app::InstallPath() + QStringLiteral("Description"); }
    QString log() const { return QString::fromUtf8(contents(app::logPath())); }
    bool save(const QString& text) const
    {
        return viewer::writeDescription(viewer::descriptionPath(m_image), text);
    }
    QString putSidecar(const QByteArray& bytes) const
    {
        return m_home->write(QStringLiteral("root/Description/") +
                                 app::SplitPathName(viewer::descriptionPath(m_image), 2),
                             bytes);
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::ScratchHome>();
        m_image = m_home->write(QStringLiteral("pics/one.png"), "picture");
    }

    void cleanup() { m_home.reset(); }

    void liesBelowTheInstallPath()
    {
        const QString path = viewer::descriptionPath(m_image);
        QCOMPARE(path, m_home->path(QStringLiteral("root/Description/")) + app::GetImageKey(m_image) +
                           QStringLiteral(".txt"));
        QCOMPARE(viewer::descriptionPath(m_image), path);
    }

    void anotherStateOfTheImageHasAnotherName()
    {
        const QString path = viewer::descriptionPath(m_image);
        const QString copy = m_home->path(QStringLiteral("pics/two.png"));
        QVERIFY(QFile::copy(m_image, copy));
        QVERIFY(viewer::descriptionPath(copy) != path);
        {
            QFile file(m_image);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(QDateTime(QDate(2020, 1, 1), QTime(1, 2, 3)),
                                     QFileDevice::FileModificationTime));
        }
        const QString touched = viewer::descriptionPath(m_image);
        QVERIFY(touched != path);
        m_home->write(QStringLiteral("pics/one.png"), "another picture");
        QVERIFY(viewer::descriptionPath(m_image) != touched);
    }

    void texts_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QByteArray() << QString();
        QTest::newRow("the line end of a save") << QByteArray("\n") << QString();
        QTest::newRow("one line") << QByteArray("a day at sea\n") << "a day at sea";
        QTest::newRow("no line end") << QByteArray("a day at sea") << "a day at sea";
        QTest::newRow("line ends of the user") << QByteArray("one\n\ntwo\n\n") << "one\n\ntwo\n";
        QTest::newRow("other line ends") << QByteArray("one\r\ntwo\r\n") << "one\ntwo";
        QTest::newRow("beyond ASCII") << QByteArray("\xc3\xa4 \xe6\xbc\xa2 \xf0\x9f\x98\x80\n")
                                      << QString::fromUtf8("\xc3\xa4 \xe6\xbc\xa2 \xf0\x9f\x98\x80");
        QTest::newRow("a code page of old") << QByteArray("K\xf6ln\n") << QString::fromUtf8("K\xc3\xb6ln");
        QTest::newRow("cut within a character")
            << QByteArray("a\xe6\xbc") << QString::fromLatin1("a\xe6\xbc");
    }

    void texts()
    {
        QFETCH(QByteArray, bytes);
        QTEST(viewer::descriptionText(bytes), "text");
    }

    void whatWasTypedComesBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << QString();
        QTest::newRow("a line") << "a day at sea";
        QTest::newRow("line ends at both ends") << "\n\na\n\n";
        QTest::newRow("all scripts") << QString::fromUtf8(
            "\xc3\xa9\xc2\xa0\xd8\xb3\xe6\xbc\xa2\xf0\x9f\x98\x80");
        QTest::newRow("a mebibyte") << QString(1 << 20, u'x').replace(1000, 1, u'\n');
        QTest::newRow("a mebibyte of others") << QString(1 << 20, QChar(0x6f22));
    }

    void whatWasTypedComesBack()
    {
        QFETCH(QString, text);
        QCOMPARE(viewer::readDescription(viewer::descriptionPath(m_image)).state, Description::State::None);
        QVERIFY(save(text));
        const Description read = viewer::readDescription(viewer::descriptionPath(m_image));
        QCOMPARE(read.state, Description::State::Read);
        QVERIFY(read.text == text);
        QCOMPARE(contents(viewer::descriptionPath(m_image)), text.toUtf8() + '\n');
        QCOMPARE(namesIn(directory()).size(), 1);
    }

    /// Whoever has the old file open still has all of it: the new one took its name, not its bytes.
    void aSaveReplacesTheFileWhole()
    {
        QVERIFY(save(QStringLiteral("the old text")));
        QFile old(viewer::descriptionPath(m_image));
        QVERIFY(old.open(QIODevice::ReadOnly));
        QVERIFY(save(QStringLiteral("new")));
        QCOMPARE(old.readAll(), QByteArray("the old text\n"));
        QCOMPARE(contents(viewer::descriptionPath(m_image)), QByteArray("new\n"));
        QCOMPARE(namesIn(directory()).size(), 1);
    }

    void aMissingDirectoryIsMadeAgain()
    {
        QVERIFY(!app::FolderExists(directory()));
        QVERIFY(save(QStringLiteral("kept")));
        QCOMPARE(viewer::readDescription(viewer::descriptionPath(m_image)).text, QStringLiteral("kept"));
        QVERIFY2(log().contains(QLatin1String("Description directory was missing")), qPrintable(log()));
    }

    void aDirectoryThatCannotBeMadeIsALogLine()
    {
        m_home->write(QStringLiteral("root/Description"), "a file in its place");
        QVERIFY(!save(QStringLiteral("lost")));
        QVERIFY2(log().contains(QLatin1String("Description directory cannot be made: ")), qPrintable(log()));
        QVERIFY2(log().contains(QLatin1String("Description not saved: ")), qPrintable(log()));
        QCOMPARE(contents(directory()), QByteArray("a file in its place"));
    }

    void aReadOnlyDirectoryKeepsTheOldText()
    {
        QVERIFY(save(QStringLiteral("the old text")));
        m_home->write(QStringLiteral(".local/state/quorvia/qolog.log"), QByteArray());
        QVERIFY(QFile::setPermissions(app::logPath(), QFile::Permissions(0x6666)));
        QVERIFY(test::openToEveryone(qPrintable(m_home->path(QStringLiteral(".")))));
        QCOMPARE(::chmod(qPrintable(directory()), 0555), 0);
        QVERIFY(test::holdsUnprivileged([this] { return !save(QStringLiteral("lost")); }));
        QCOMPARE(::chmod(qPrintable(directory()), 0755), 0);
        QCOMPARE(viewer::readDescription(viewer::descriptionPath(m_image)).text,
                 QStringLiteral("the old text"));
        QCOMPARE(namesIn(directory()).size(), 1);
        QVERIFY2(log().contains(QLatin1String("Description not saved: ")), qPrintable(log()));
    }

    void anUnreadableSidecarIsToldOf()
    {
        const QString sidecar = putSidecar("secret\n");
        QCOMPARE(::chmod(qPrintable(sidecar), 0), 0);
        QVERIFY(test::openToEveryone(qPrintable(m_home->path(QStringLiteral(".")))));
        const QString image = m_image;
        QVERIFY(test::holdsUnprivileged([image] {
            return viewer::readDescription(viewer::descriptionPath(image)).state ==
                   Description::State::Unreadable;
        }));
    }

    void whatIsNoFileIsNotRead_data()
    {
        QTest::addColumn<bool>("pipe");
        QTest::newRow("a directory") << false;
        QTest::newRow("a pipe, which nobody writes to") << true;
    }

    void whatIsNoFileIsNotRead()
    {
        QFETCH(bool, pipe);
        const QString sidecar = viewer::descriptionPath(m_image);
        QVERIFY(QDir().mkpath(directory()));
        QCOMPARE(pipe ? ::mkfifo(qPrintable(sidecar), 0600) : ::mkdir(qPrintable(sidecar), 0700), 0);
        QCOMPARE(viewer::readDescription(viewer::descriptionPath(m_image)).state,
                 Description::State::Unreadable);
        QVERIFY2(log().contains(QLatin1String("Description not read: ")), qPrintable(log()));
        QVERIFY(!save(QStringLiteral("lost")));
    }

    void whatIsTooLargeIsNotRead()
    {
        const QString sidecar = putSidecar("begin");
        QVERIFY(QFile::resize(sidecar, (qint64(64) << 20) + 1)); // takes no room on the disk
        QCOMPARE(viewer::readDescription(viewer::descriptionPath(m_image)).state,
                 Description::State::Unreadable);
    }
};

QTEST_GUILESS_MAIN(TestDescriptionFile)
#include "tst_descriptionfile.moc"
