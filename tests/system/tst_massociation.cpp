// Taking the image types over and giving them back, on a desktop of the test's own.
#include "app/Log.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "AssociationStage.h"
#include "platform/DesktopEntries.h"
#include "platform/MimeApps.h"
#include "system/AssociationTable.h"
#include "system/DesktopPresence.h"
#include "system/mAssociation.h"

#include <QFile>
#include <QTest>

using namespace quorvia;
using platform::MimeApps;
using test::contentOf;

namespace {

const QString own = "quorvia.desktop";
const QStringList ownerOrder{".jpg", ".gif", ".bmp", ".dcx", ".dib",  ".jif", ".ljp",
                             ".pbm", ".pcx", ".pgm", ".pic", ".png",  ".ppm", ".rle",
                             ".tga", ".tif", ".wmf", ".wpg", ".jpeg", ".tiff"};

} // namespace

/// No content type is known to the desktop here: the table's own stand for all of them.
class TestAssociation : public QObject, private test::AssociationStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { open(); }
    void cleanup() { close(); }

    void theTable()
    {
        const QStringList expected{".jpg|Image JPEG|image/jpeg",
                                   ".bmp|Image BMP|image/bmp",
                                   ".dcx|Image DCX|image/x-dcx",
                                   ".dib|Image DIB|image/bmp",
                                   ".gif|Image GIF|image/gif",
                                   ".jif|Image JIF|image/jpeg",
                                   ".ljp|Image LJP|image/jpeg",
                                   ".pbm|Image PBM|image/x-portable-bitmap",
                                   ".pcx|Image PCX|image/vnd.zbrush.pcx",
                                   ".pgm|Image PGM|image/x-portable-graymap",
                                   ".pic|Image PIC|image/x-softimage-pic",
                                   ".png|Image PNG|image/png",
                                   ".ppm|Image PPM|image/x-portable-pixmap",
                                   ".rle|Image RLE|image/rle",
                                   ".tga|Image TGA|image/x-tga",
                                   ".tif|Image TIFF|image/tiff",
                                   ".wmf|Image WMF|image/wmf",
                                   ".wpg|Image WPG|application/x-wpg",
                                   ".jpeg|Image JPEG|image/jpeg",
                                   ".tiff|Image TIFF|image/tiff"};
        QStringList rows;
        for (const system::AssociationRow& row : system::associationTable())
            rows.append(QStringList{row.extension, row.className, row.mimeType}.join('|'));
        QCOMPARE(rows, expected);
        QCOMPARE(system::extensionsOfOwners(), ownerOrder);
        QVERIFY(rows.filter(".ico").isEmpty());
    }

    /// What the desktop is told about a type says what the table says.
    void theFilesForTheDesktopAgreeWithTheTable()
    {
        const QByteArray entry = contentOf(DATA_FOLDER "/quorvia.desktop");
        const QByteArray pattern = contentOf(DATA_FOLDER "/AssociationImages.dat");
        const QByteArray types = contentOf(DATA_FOLDER "/quorvia-mime.xml");
        for (const system::AssociationRow& row : system::associationTable()) {
            QVERIFY2(QByteArray(entry).replace('=', ';').contains(';' + QByteArray(row.mimeType) + ';'),
                     row.mimeType);
            QVERIFY2(QByteArray(pattern).replace('=', ';').contains(';' + QByteArray(row.mimeType) + ';'),
                     row.mimeType);
        }
        for (const char* name : {".dcx", ".pic"}) {
            const auto rows = system::associationTable();
            const auto row =
                std::find_if(rows.begin(), rows.end(), [name](const system::AssociationRow& each) {
                    return qstrcmp(each.extension, name) == 0;
                });
            QVERIFY(types.contains("<mime-type type=\"" + QByteArray(row->mimeType) + "\">\n    <comment>" +
                                   row->className + "</comment>"));
        }
    }

    void onlyWhenAsked()
    {
        addEntry("a.desktop");
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/jpeg=a.desktop\n");
        for (const int value : {0, 2}) {
            app::save(app::setting::Associate, value);
            system::ApplyAssociations();
            QCOMPARE(used(".jpg"), "a.desktop");
            QVERIFY(!QFile::exists(copy()));
            QCOMPARE(app::read(app::setting::Associate), value);
        }
    }

    /// The types are written in the table's order, each where its first row stands; a new line goes above
    /// those that are there.
    void theOrderOfTheList()
    {
        const QByteArray lines = "application/x-wpg=quorvia.desktop\n"
                                 "image/wmf=quorvia.desktop\n"
                                 "image/tiff=quorvia.desktop\n"
                                 "image/x-tga=quorvia.desktop\n"
                                 "image/rle=quorvia.desktop\n"
                                 "image/x-portable-pixmap=quorvia.desktop\n"
                                 "image/png=quorvia.desktop\n"
                                 "image/x-softimage-pic=quorvia.desktop\n"
                                 "image/x-portable-graymap=quorvia.desktop\n"
                                 "image/vnd.zbrush.pcx=quorvia.desktop\n"
                                 "image/x-portable-bitmap=quorvia.desktop\n"
                                 "image/gif=quorvia.desktop\n"
                                 "image/x-dcx=quorvia.desktop\n"
                                 "image/bmp=quorvia.desktop\n"
                                 "image/jpeg=quorvia.desktop\n";
        takeOver();
        QCOMPARE(contentOf(list()), "# File added by Quorvia\n"
                                    "# Group added by Quorvia\n[Default Applications]\n" +
                                        lines + "# Group added by Quorvia\n[Added Associations]\n" + lines);
    }

    void takesOverAndGivesBack()
    {
        const QString owner = addEntry("a.desktop");
        const QString offered = addEntry("b.desktop");
        const QByteArray before = "[Default Applications]\nimage/jpeg=a.desktop\nimage/x-icon=a.desktop\n"
                                  "[Added Associations]\nimage/jpeg=b.desktop;\nimage/png=b.desktop;";
        home().write(".config/mimeapps.list", before);
        takeOver();
        QCOMPARE(app::read(app::setting::Associate), 0);
        for (const QString& extension : ownerOrder) {
            QCOMPARE(used(extension), own);
            QCOMPARE(used(extension, "Preview"), own);
        }
        QVERIFY(contentOf(list()).contains("\nimage/jpeg=quorvia.desktop;a.desktop\n"));
        QVERIFY(contentOf(list()).contains("\nimage/x-icon=a.desktop\n")); // ".ico" is left alone
        QVERIFY(contentOf(copy()).contains("\nExec=" + platform::execWord(app::programPath()) + " %f\n"));
        for (const char* extension : {".jpg", ".jif", ".ljp", ".jpeg"}) {
            QCOMPARE(app::readEarlierOwner("Open", extension), owner);
            QCOMPARE(app::readEarlierOwner("Preview", extension), offered);
        }
        QCOMPARE(app::readEarlierOwner("Open", ".png"), offered); // offered, and so what opened them
        QCOMPARE(app::readEarlierOwner("Open", ".gif"), "(none)");
        takeOver();
        QCOMPARE(app::readEarlierOwner("Open", ".jpg"), owner); // a second time records nothing
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()), before);
        QVERIFY(!QFile::exists(copy()));
        QCOMPARE(used(".gif"), QString());
        QVERIFY2(!log().contains("Associations"), log().constData());
    }

    void owners_data()
    {
        QTest::addColumn<QString>("id");
        QTest::addColumn<QString>("expected");
        QTest::newRow("none") << ""
                              << "";
        QTest::newRow("an entry") << "a.desktop"
                                  << "a.desktop";
        QTest::newRow("what follows is cut off") << "a.desktop --x"
                                                 << "a.desktop";
        QTest::newRow("at the first") << "a.desktop.desktop"
                                      << "a.desktop";
        QTest::newRow("no entry") << "script.sh"
                                  << "";
        QTest::newRow("is not there") << "gone.desktop"
                                      << "";
        QTest::newRow("this program") << own << "";
        QTest::newRow("with its name in it") << "org.quorvia.desktop"
                                             << "";
        QTest::newRow("in capitals") << "a.DESKTOP"
                                     << "a.desktop";
    }
    void owners()
    {
        QFETCH(QString, id);
        QFETCH(QString, expected);
        for (const char* name : {"a.desktop", "quorvia.desktop", "org.quorvia.desktop", "script.sh"})
            addEntry(name);
        QCOMPARE(system::earlierOwnerPath(id),
                 expected.isEmpty() ? QString() : home().path("share/applications/" + expected));
    }

    /// Nobody else brings an earlier owner back: it is written down.
    void theEarlierOwnerIsSetExplicitly()
    {
        addEntry("a.desktop");
        addEntry("b.desktop");
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=a.desktop\n");
        takeOver();
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=quorvia.desktop\n"
                                              "image/gif=b.desktop;quorvia.desktop\n");
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()),
                 QByteArray("[Default Applications]\nimage/png=a.desktop\nimage/gif=b.desktop\n"));
        QCOMPARE(app::readEarlierOwner("Open", ".png"), "(none)"); // it was theirs to use, once
    }

    void theEarlierOneOfTheOfferedIsSetExplicitly()
    {
        addEntry("a.desktop");
        addEntry("b.desktop");
        const QByteArray group = "[Added Associations]\n";
        home().write(".config/mimeapps.list", group + "image/png=b.desktop\nimage/gif=b.desktop\n");
        takeOver();
        home().write(".config/mimeapps.list", group + "image/png=quorvia.desktop\n"
                                                      "image/gif=quorvia.desktop;a.desktop\n");
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()), group + "image/png=b.desktop\nimage/gif=a.desktop\n");
    }

    /// What the user chose counts more than who was there at the take-over, be it usable or not.
    void aChoiceIsNotDisplaced_data()
    {
        QTest::addColumn<QByteArray>("back");
        QTest::newRow("of a program that is away") << QByteArray("image/png=quorvia.desktop;away.desktop\n");
        QTest::newRow("made since") << QByteArray("image/png=b.desktop\n");
        QTest::newRow("made since, by taking the line out") << QByteArray("image/gif=b.desktop\n");
    }
    void aChoiceIsNotDisplaced()
    {
        QFETCH(QByteArray, back);
        const QByteArray group = "[Default Applications]\n";
        const QString owner = addEntry("a.desktop");
        addEntry("b.desktop");
        app::saveEarlierOwner("Open", ".png", owner);
        home().write(".config/mimeapps.list", group + back);
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()), group + back.replace("quorvia.desktop;", ""));
    }

    void aSecondGivingBackChangesNothing()
    {
        addEntry("a.desktop");
        addEntry("b.desktop");
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=a.desktop\n");
        takeOver();
        system::RestoreAssociations();
        for (const QString& verb : {QString("Open"), QString("Preview")})
            QCOMPARE(app::readEarlierOwner(verb, ".png"), "(none)");
        const QByteArray later = "[Default Applications]\nimage/png=quorvia.desktop\n";
        home().write(".config/mimeapps.list", later);
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()), QByteArray("[Default Applications]\n"));
    }

    void theRecordsStayWhileAListCannotBeWritten()
    {
        const QString owner = addEntry("a.desktop");
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=a.desktop\n");
        takeOver();
        QVERIFY(QFile::setPermissions(list(), QFile::ReadOwner));
        system::RestoreAssociations();
        QVERIFY2(log().contains("the file is read only"), log().constData());
        QCOMPARE(app::readEarlierOwner("Open", ".png"), owner);
    }

    void aListThatCannotBeReadIsLogged()
    {
        home().write(".config/mimeapps.list", QByteArray(5 * 1024 * 1024, '#'));
        system::RestoreAssociations();
        QVERIFY2(log().contains("Associations: " + list().toLocal8Bit() + ": it cannot be read"),
                 log().constData());
    }

    /// The desktop called it by another name at the take-over.
    void aTypeOfAnotherName()
    {
        home().write(".config/mimeapps.list",
                     "[Default Applications]\nimage/x-pcx=quorvia.desktop;a.desktop\n"
                     "[Added Associations]\nimage/x-pcx=quorvia.desktop\n");
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()),
                 QByteArray("[Default Applications]\nimage/x-pcx=a.desktop\n[Added Associations]\n"));
    }

    /// What others write while the desktop's tool is waited for.
    void nothingOfOthersIsLost()
    {
        addEntry("a.desktop");
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=a.desktop\n");
        const QString tool =
            home().write("bin/update-mime-database",
                         "#!/bin/sh\nprintf '[Added Associations]\\ntext/plain=a.desktop\\n' >> "
                         "'" +
                             list().toLocal8Bit() + "'\n");
        QVERIFY(QFile::setPermissions(tool, QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", home().path("bin").toLocal8Bit() + ':' + path);
        takeOver();
        qputenv("PATH", path);
        QVERIFY2(contentOf(list()).contains("text/plain=a.desktop"), contentOf(list()).constData());
        QCOMPARE(used(".png"), own);
    }

    void notGivenBack_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::newRow("is not there") << "share/applications/gone.desktop";
        QTest::newRow("this program") << "share/applications/quorvia.desktop";
    }
    void notGivenBack()
    {
        QFETCH(QString, stored);
        addEntry("quorvia.desktop");
        app::saveEarlierOwner("Open", ".png", home().path(stored));
        home().write(".config/mimeapps.list", "[Default Applications]\nimage/png=quorvia.desktop\n");
        system::RestoreAssociations();
        QCOMPARE(contentOf(list()), QByteArray("[Default Applications]\n"));
    }

    void singleOperations()
    {
        const QString entry = addEntry("kde/a.desktop");
        MimeApps desktop;
        system::SetAssociation(desktop, "png", entry, "Open");
        QCOMPARE(system::GetAssociation(desktop, ".png", "Open"), "kde-a.desktop");
        QCOMPARE(system::GetAssociation(desktop, "PNG", "Open"), "kde-a.desktop");
        QCOMPARE(system::GetAssociation(desktop, "png", "Preview"), QString());
        QVERIFY(!QFile::exists(list())); // not yet saved
        QCOMPARE(desktop.save(), QStringList());
        QCOMPARE(contentOf(list()), QByteArray("# File added by Quorvia\n# Group added by Quorvia\n"
                                               "[Default Applications]\nimage/png=kde-a.desktop\n"));
        system::SetAssociation(desktop, "xyz", entry, "Open"); // a type that nobody knows
        QCOMPARE(desktop.save(), QStringList());
        QVERIFY(!contentOf(list()).contains("xyz"));
        addEntry(own);
        system::SetAssociation(desktop, "png", platform::entryPath(own), "Preview");
        system::RemoveExtensionClass(desktop, "png");
        QCOMPARE(system::GetAssociation(desktop, "png", "Open"), "kde-a.desktop");
        QCOMPARE(system::GetAssociation(desktop, "png", "Preview"), QString());
    }

    void whatCannotBeWrittenIsLogged()
    {
        addEntry("a.desktop");
        const QByteArray before = "[Default Applications]\nimage/png=a.desktop\n";
        home().write(".config/mimeapps.list", before);
        QVERIFY(QFile::setPermissions(list(), QFile::ReadOwner));
        takeOver();
        QCOMPARE(contentOf(list()), before);
        QCOMPARE(log().count("Associations: " + list().toLocal8Bit() + ": the file is read only"), 1);
        QCOMPARE(app::read(app::setting::Associate), 0); // it is not tried at each start
    }
};

QTEST_GUILESS_MAIN(TestAssociation)
#include "tst_massociation.moc"
