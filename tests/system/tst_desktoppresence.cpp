// What the desktop gets of this program when it takes types over: its entry and its types of file, and that
// nothing of others is touched by that.
#include "app/Log.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/DesktopEntries.h"
#include "platform/MimeApps.h"
#include "support/FileContent.h"
#include "support/ScratchDesktop.h"
#include "system/mAssociation.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quorvia;
using platform::MimeApps;
using test::contentOf;

namespace {

const QString own = "quorvia.desktop";

} // namespace

class TestDesktopPresence : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

    QString addEntry(const QString& name, const QString& share = "share") const
    {
        return m_home->write(share + "/applications/" + name,
                             "[Desktop Entry]\nType=Application\nName=A\nExec=true %f\n");
    }
    QString list() const { return m_home->path(".config/mimeapps.list"); }
    QByteArray log() const { return contentOf(app::logPath()); }
    QString copy() const { return m_home->path(".local/share/applications/quorvia.desktop"); }

    static QString used(const QString& extension)
    {
        MimeApps desktop;
        return system::GetAssociation(desktop, extension, "Open");
    }
    static void takeOver()
    {
        app::save(app::setting::Associate, 1);
        system::ApplyAssociations();
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        test::leaveDesktop(*m_home);
        m_home->write(".config/.keep", "");
    }
    void cleanup() { m_home.reset(); }

    void anInstalledEntryIsUsed()
    {
        takeOver(); // from a build tree: leaves a copy
        QVERIFY(QFile::exists(copy()));
        const QString installed = addEntry(own);
        takeOver();
        QVERIFY(!QFile::exists(copy()));
        QCOMPARE(platform::entryPath(own), installed);
        system::RestoreAssociations();
        QVERIFY(QFile::exists(installed));
    }

    void anEntryOfTheUsersOwnStays()
    {
        const QString mine = addEntry(own, ".local/share");
        const QByteArray text = contentOf(mine);
        takeOver();
        QCOMPARE(used(".png"), own);
        system::RestoreAssociations();
        QCOMPARE(contentOf(mine), text);
    }

    void aCopyOfAnotherPlaceIsMadeAnew()
    {
        m_home->write(".local/share/applications/quorvia.desktop",
                      "[Desktop Entry]\nType=Application\nExec=/gone/quorvia %f\nX-Quorvia-Copy=true\n");
        takeOver();
        QCOMPARE(used(".png"), own);
        QVERIFY(!contentOf(copy()).contains("/gone/"));
    }

    void theTypesThatTheDesktopLacks()
    {
        const QString package = m_home->path(".local/share/mime/packages/quorvia-mime.xml");
        takeOver();
        QCOMPARE(contentOf(package), contentOf(DATA_FOLDER "/quorvia-mime.xml"));
        QVERIFY(!QFile::exists(m_home->path(".local/share/applications/mimeinfo.cache")));
        QVERIFY(contentOf(m_home->path(".local/share/mime/globs2")).contains("50:image/x-dcx:*.dcx\n"));
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(package));
        QVERIFY(!contentOf(m_home->path(".local/share/mime/globs2")).contains("dcx"));
    }

    /// The desktop's words for JPEG files stay, in all languages.
    void theWordsOfATypeStay()
    {
        m_home->write("share/mime/image/jpeg.xml",
                      "<mime-type>\n  <comment>JPEG image</comment>\n"
                      "  <comment xml:lang=\"de\">Bild</comment>\n</mime-type>\n");
        takeOver();
        QVERIFY(contentOf(m_home->path(".local/share/mime/image/jpeg.xml"))
                    .contains("<comment xml:lang=\"de\">Bild</comment>"));
        m_home->write("share/mime/image/jpeg.xml", "<mime-type>\n</mime-type>\n"); // renewed meanwhile
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(m_home->path(".local/share/mime/packages/quorvia-mime.xml")));
    }

    void aPackageOfOthersStays_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("behind a link") << true;
        QTest::newRow("another text") << false;
    }
    void aPackageOfOthersStays()
    {
        QFETCH(bool, isLink);
        const QString package = m_home->path(".local/share/mime/packages/quorvia-mime.xml");
        const QByteArray text =
            isLink ? contentOf(DATA_FOLDER "/quorvia-mime.xml") : QByteArray("<mime-info/>\n");
        const QString source = isLink ? m_home->write("source.xml", text)
                                      : m_home->write(".local/share/mime/packages/quorvia-mime.xml", text);
        m_home->write(".local/share/mime/packages/.keep", "");
        if (isLink)
            QVERIFY(QFile::link(source, package));
        takeOver();
        QCOMPARE(contentOf(package), text);
        QCOMPARE(used(".png"), own);
        system::RestoreAssociations();
        QCOMPARE(contentOf(source), text);
        QVERIFY(QFile::exists(package));
    }

    /// Icons are not taken over, and entries that are not indexed stay so.
    void noOtherTypeIsTouched()
    {
        const QString foreign = addEntry("mine.desktop", ".local/share");
        takeOver();
        QVERIFY(contentOf(copy()).contains("MimeType=image/jpeg;"));
        QVERIFY(contentOf(copy()).contains(";application/x-wpg;\n"));
        QVERIFY(!contentOf(copy()).contains("icon;"));
        QVERIFY(!QFile::exists(m_home->path(".local/share/applications/mimeinfo.cache")));
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(m_home->path(".local/share/applications/mimeinfo.cache")));
        QVERIFY(QFile::exists(foreign));
    }

    void entriesAreMarkedAsChanged()
    {
        const QString directory = m_home->path(".local/share/applications");
        system::NotifyAssociationsChanged();
        QVERIFY(!QFile::exists(directory));
        addEntry("mine.desktop", ".local/share");
        const struct timespec old[2] = {{1000, 0}, {1000, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(directory).constData(), old, 0), 0);
        system::NotifyAssociationsChanged();
        QVERIFY(QFileInfo(directory).lastModified().toSecsSinceEpoch() > 1000);
        QVERIFY(!log().contains("Associations"));
    }

    void withoutTheToolsOfTheDesktop()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", m_home->path("nothing").toLocal8Bit());
        takeOver();
        qputenv("PATH", path);
        QCOMPARE(used(".png"), own);
        QVERIFY2(log().contains("update-mime-database: "), log().constData());
    }

    void withoutAPlaceForTheEntry()
    {
        m_home->write(".local/share/applications", "a file where a directory should be");
        takeOver();
        QVERIFY(!QFile::exists(list()));
        QVERIFY2(log().contains("Associations: " + copy().toLocal8Bit()), log().constData());
    }
};

QTEST_GUILESS_MAIN(TestDesktopPresence)
#include "tst_desktoppresence.moc"
