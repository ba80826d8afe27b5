// What the desktop gets of this program when it takes types over: its entry and its types of file, and that
// nothing of others is touched by that.
#include "app/Log.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "AssociationStage.h"
#include "platform/DesktopEntries.h"
#include "platform/MimeApps.h"
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

qint64 changedAt(const QString& path)
{
    return QFileInfo(path).lastModified().toSecsSinceEpoch();
}

bool makeOld(const QString& path)
{
    const struct timespec old[2] = {{1000, 0}, {1000, 0}};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), old, 0) == 0;
}

} // namespace

class TestDesktopPresence : public QObject, private test::AssociationStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

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

    /// No package has told the desktop of an icon: the copy leads to the drawing itself.
    void theCopyHasAnIcon()
    {
        takeOver();
        QVERIFY2(contentOf(copy()).contains("\nIcon=" DATA_FOLDER "/quorvia.svg\n"),
                 contentOf(copy()).constData());
        QVERIFY(QFile::exists(DATA_FOLDER "/quorvia.svg"));
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
        home().write(".local/share/applications/quorvia.desktop",
                     "[Desktop Entry]\nType=Application\nExec=/gone/quorvia %f\nX-Quorvia-Copy=true\n");
        takeOver();
        QCOMPARE(used(".png"), own);
        QVERIFY(!contentOf(copy()).contains("/gone/"));
    }

    void theTypesThatTheDesktopLacks()
    {
        const QString package = home().path(".local/share/mime/packages/quorvia-mime.xml");
        takeOver();
        QCOMPARE(contentOf(package), contentOf(DATA_FOLDER "/quorvia-mime.xml"));
        QVERIFY(!QFile::exists(home().path(".local/share/applications/mimeinfo.cache")));
        QVERIFY(contentOf(home().path(".local/share/mime/globs2")).contains("50:image/x-dcx:*.dcx\n"));
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(package));
        QVERIFY(!contentOf(home().path(".local/share/mime/globs2")).contains("dcx"));
    }

    /// The desktop's words for JPEG files stay, in all languages.
    void theWordsOfATypeStay()
    {
        home().write("share/mime/image/jpeg.xml",
                     "<mime-type>\n  <comment>JPEG image</comment>\n"
                     "  <comment xml:lang=\"de\">Bild</comment>\n</mime-type>\n");
        takeOver();
        QVERIFY(contentOf(home().path(".local/share/mime/image/jpeg.xml"))
                    .contains("<comment xml:lang=\"de\">Bild</comment>"));
        home().write("share/mime/image/jpeg.xml", "<mime-type>\n</mime-type>\n"); // renewed meanwhile
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(home().path(".local/share/mime/packages/quorvia-mime.xml")));
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
        const QString package = home().path(".local/share/mime/packages/quorvia-mime.xml");
        const QByteArray text =
            isLink ? contentOf(DATA_FOLDER "/quorvia-mime.xml") : QByteArray("<mime-info/>\n");
        const QString source = isLink ? home().write("source.xml", text)
                                      : home().write(".local/share/mime/packages/quorvia-mime.xml", text);
        home().write(".local/share/mime/packages/.keep", "");
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
        QVERIFY(!QFile::exists(home().path(".local/share/applications/mimeinfo.cache")));
        system::RestoreAssociations();
        QVERIFY(!QFile::exists(home().path(".local/share/applications/mimeinfo.cache")));
        QVERIFY(QFile::exists(foreign));
    }

    void entriesAreMarkedAsChanged()
    {
        const QString directory = home().path(".local/share/applications");
        system::NotifyAssociationsChanged();
        QVERIFY(!QFile::exists(directory));
        addEntry("mine.desktop", ".local/share");
        QVERIFY(makeOld(directory));
        system::NotifyAssociationsChanged();
        QVERIFY(changedAt(directory) > 1000);
        QVERIFY(!log().contains("Associations"));
    }

    /// With an installed entry nothing else is written there.
    void bothWaysMarkTheEntries()
    {
        addEntry(own);
        const QString directory = home().path(".local/share/applications");
        home().write(".local/share/applications/.keep", "");
        QVERIFY(makeOld(directory));
        takeOver();
        QVERIFY(changedAt(directory) > 1000);
        QVERIFY(makeOld(directory));
        system::RestoreAssociations();
        QVERIFY(changedAt(directory) > 1000);
    }

    void withoutTheToolsOfTheDesktop()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", home().path("nothing").toLocal8Bit());
        takeOver();
        qputenv("PATH", path);
        QCOMPARE(used(".png"), own);
        QVERIFY2(log().contains("update-mime-database: "), log().constData());
    }

    void withoutAPlaceForTheEntry()
    {
        home().write(".local/share/applications", "a file where a directory should be");
        takeOver();
        QVERIFY(!QFile::exists(list()));
        QVERIFY2(log().contains("Associations: " + copy().toLocal8Bit()), log().constData());
        QCOMPARE(app::read(app::setting::Associate), 0); // it is not tried at each start
    }
};

QTEST_GUILESS_MAIN(TestDesktopPresence)
#include "tst_desktoppresence.moc"
