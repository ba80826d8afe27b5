// Another program becomes the viewer: the text, what is made of it, and the way through the question.
#include "app/Log.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "app/Resources.h"
#include "app/SettingsHome.h"
#include "platform/DesktopEntries.h"
#include "platform/Dialogs.h"
#include "platform/MimeApps.h"
#include "support/FileContent.h"
#include "support/ScratchDesktop.h"
#include "system/OtherViewer.h"

#include <QFile>
#include <QTest>

#include <optional>

using namespace quorvia;
using namespace quorvia::system;
using platform::BoxAnswer;
using test::contentOf;

namespace {

const QByteArray pattern = "[Desktop Entry]\nType=Application\nComment=by {app}\nExec=\"{appexe}\" %f\n"
                           "MimeType=image/png;image/gif;\n";

} // namespace

class TestOtherViewer : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;
    QList<platform::MessageBox> m_boxes;

    QString program(const QString& name) const
    {
        const QString file = m_home->write("bin/" + name, "#!/bin/sh\n");
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return file;
    }
    bool associate(const QString& path, BoxAnswer answer)
    {
        const platform::MessageBoxAnswerer answerer([this, answer](const platform::MessageBox& box) {
            m_boxes.append(box);
            return answer;
        });
        return associateOther(nullptr, path);
    }
    QString written() const { return m_home->path("root/AssociationImages.dat.reg"); }
    static QString viewerOf(const QString& type)
    {
        return platform::MimeApps().first(platform::MimeRole::Default, type);
    }

  private Q_SLOTS:
    void init()
    {
        m_boxes.clear();
        m_home = std::make_unique<test::SettingsHome>();
        test::leaveDesktop(*m_home);
        m_home->write(".config/.keep", "");
    }
    void cleanup() { m_home.reset(); }

    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("lines") << "a\nb"
                               << "a\r\nb";
        QTest::newRow("lines of both kinds") << "a\r\nb\nc\r\n"
                                             << "a\r\nb\r\nc\r\n";
        QTest::newRow("places") << "{app}|{appexe}|{app}{appexe}|{App}"
                                << "/i\\\\n/|/b/x\\\\y|/i\\\\n//b/x\\\\y|{App}";
    }
    void texts()
    {
        QFETCH(QString, text);
        QTEST(registrationText(text, "/i\\n/", "/b/x\\y"), "expected");
    }

    void entries_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("expected"); // empty: refused
        const QString head = "[Desktop Entry]\r\n";
        const QString types = "MimeType=image/png;image/gif;\r\n";
        QTest::newRow("whole")
            << head + "\r\nExec=\"/b/x\" %f\r\n" + types
            << QByteArray("[Desktop Entry]\nName=N\\\\1\nExec=/b/x %f\nMimeType=image/png;image/gif;\n");
        QTest::newRow("backslash and blank")
            << head + "Exec=\"/b c/x\\\\y\"\r\n" + types
            << QByteArray(
                   "[Desktop Entry]\nName=N\\\\1\nExec=\"/b c/x\\\\\\\\y\"\nMimeType=image/png;image/gif;\n");
        QTest::newRow("quotes") << head + "Exec=\"/b\"c/x\" %f\r\n" + types
                                << QByteArray("[Desktop Entry]\nName=N\\\\1\nExec=\"/b\\\\\"c/x\" %f\n"
                                              "MimeType=image/png;image/gif;\n");
        QTest::newRow("no head") << "Exec=\"/b/x\" %f\r\n" + types << QByteArray();
        QTest::newRow("no program") << head + types << QByteArray();
        QTest::newRow("program without quotes") << head + "Exec=/b/x %f\r\n" + types << QByteArray();
        QTest::newRow("empty program") << head + "Exec=\"\" %f\r\n" + types << QByteArray();
        QTest::newRow("no types") << head + "Exec=\"/b/x\"\r\nMimeType=;\r\n" << QByteArray();
        QTest::newRow("empty") << "" << QByteArray();
    }
    void entries()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, expected);
        const std::optional<RegisteredEntry> entry = importRegistration(text, "N\\1");
        QCOMPARE(entry.has_value(), !expected.isEmpty());
        if (entry) {
            QCOMPARE(entry->text, expected);
            QCOMPARE(entry->types, (QList<QByteArray>{"image/png", "image/gif"}));
        }
    }

    void asksAndInstalls_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("id");
        QTest::newRow("plain") << "view"
                               << "userapp-view.desktop";
        QTest::newRow("odd") << "a \"b\" $c\\d"
                             << "userapp-a__b___c_d.desktop";
    }
    void asksAndInstalls()
    {
        QFETCH(QString, name);
        QFETCH(QString, id);
        m_home->write("root/AssociationImages.dat", pattern);
        const QString file = program(name);
        const QByteArray before = "[Default Applications]\nimage/png=a.desktop\n";
        m_home->write(".config/mimeapps.list", before);
        QVERIFY(!associate(file, BoxAnswer::No));
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].buttons, platform::BoxButtons::YesNo);
        QCOMPARE(m_boxes[0].title, "Quorvia");
        QVERIFY(m_boxes[0].text.contains(file));
        QCOMPARE(contentOf(m_home->path(".config/mimeapps.list")), before);
        QCOMPARE(platform::entryPath(id), QString());
        QCOMPARE(contentOf(written()),
                 registrationText(QString::fromUtf8(pattern), app::InstallPath(), file).toUtf8());

        QVERIFY(associate(file, BoxAnswer::Yes));
        QVERIFY(platform::isUsableEntry(platform::entryPath(id)));
        QCOMPARE(viewerOf("image/png"), id);
        QCOMPARE(viewerOf("image/gif"), id);
        QCOMPARE(viewerOf("image/bmp"), QString());
        QVERIFY(contentOf(m_home->path(".config/mimeapps.list"))
                    .contains("\nimage/png=" + id.toUtf8() + ";a.desktop\n"));
    }

    /// The pattern that comes with the program.
    void theOwnPattern()
    {
        const QString file = program("view");
        m_home->write("root/AssociationImages.dat", contentOf(DATA_FOLDER "/AssociationImages.dat"));
        QVERIFY(associate(file, BoxAnswer::Yes));
        for (const char* type : {"image/jpeg", "image/tiff", "image/x-dcx", "application/x-wpg"})
            QCOMPARE(viewerOf(type), "userapp-view.desktop");
    }

    /// As in a package: the pattern lies elsewhere, and nothing is written there.
    void theTextIsWrittenToTheRoot()
    {
        const QString found = app::resourcePath(QStringLiteral("AssociationImages.dat"));
        QVERIFY(!found.startsWith(app::InstallPath()));
        const QString file = program("view");
        QVERIFY(associate(file, BoxAnswer::Yes));
        QCOMPARE(contentOf(written()),
                 registrationText(QString::fromUtf8(contentOf(found)), app::InstallPath(), file).toUtf8());
        QVERIFY(!QFile::exists(found + QStringLiteral(".reg")));
    }

    void aPatternThatIsMissingOrUnreadable()
    {
        // Larger than any: it is found before the one of the build tree, and cannot be read.
        m_home->write("root/AssociationImages.dat", QByteArray(5 * 1024 * 1024, 'x'));
        QVERIFY(!associate(program("view"), BoxAnswer::Ok));
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].text,
                 "Association Information could not be found, please re-install this application.");
        QCOMPARE(m_boxes[0].buttons, platform::BoxButtons::Ok);
        QVERIFY(!QFile::exists(written()));
    }

    void obstacles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("no entry") << "view" << QByteArray("nothing");
        QTest::newRow("a line end in the name") << "a\nExec=x" << pattern;
    }
    void obstacles()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, text);
        m_home->write("root/AssociationImages.dat", text);
        QVERIFY(!associate(program(name), BoxAnswer::Yes));
        QCOMPARE(m_boxes.size(), 0);
        QVERIFY(contentOf(app::logPath()).contains("Other viewer: "));
        QVERIFY(!QFile::exists(m_home->path(".config/mimeapps.list")));
    }

    void whatIsNoProgramIsTold()
    {
        m_home->write("root/AssociationImages.dat", pattern);
        QVERIFY(!associate(m_home->write("picture.png", "\x89PNG"), BoxAnswer::Ok));
        QCOMPARE(m_boxes.size(), 1);
        QCOMPARE(m_boxes[0].kind, platform::BoxKind::Plain);
        QCOMPARE(m_boxes[0].buttons, platform::BoxButtons::Ok);
        QCOMPARE(m_boxes[0].title, "Quorvia");
        QCOMPARE(m_boxes[0].text, app::ShellMessage(11));
        QVERIFY(!QFile::exists(m_home->path(".config/mimeapps.list")));
    }

    /// An entry of that name that is not this one, the user's or the machine's, stays.
    void entriesOfOthersStay()
    {
        m_home->write("root/AssociationImages.dat", pattern);
        const QByteArray theirs = "[Desktop Entry]\nType=Application\nName=B\nExec=true\n";
        const QString mine = m_home->write(".local/share/applications/userapp-view.desktop", theirs);
        m_home->write("share/applications/userapp-view-2.desktop", theirs);
        const QString file = program("view");
        for (int round = 0; round < 2; ++round) {
            QVERIFY(associate(file, BoxAnswer::Yes));
            QCOMPARE(viewerOf("image/png"), "userapp-view-3.desktop"); // the second time the same
        }
        QCOMPARE(contentOf(mine), theirs);
        const QString link = m_home->path(".local/share/applications/userapp-other.desktop");
        QVERIFY(QFile::link(m_home->path("nowhere"), link));
        QVERIFY(associate(program("other"), BoxAnswer::Yes));
        QCOMPARE(viewerOf("image/png"), "userapp-other-2.desktop");
        QVERIFY(!QFile::exists(m_home->path("nowhere")));
        QVERIFY(!QFile::exists(m_home->path(".local/share/applications/mimeinfo.cache")));
    }

    void iconsAreNotTakenOver()
    {
        QVERIFY(!contentOf(DATA_FOLDER "/AssociationImages.dat").contains("icon"));
    }

    void aRootThatCannotBeWritten()
    {
        m_home->write("root/AssociationImages.dat", pattern);
        m_home->write("root/AssociationImages.dat.reg/x", ""); // a directory stands in the way
        QVERIFY(!associate(program("view"), BoxAnswer::Yes));
        QCOMPARE(m_boxes.size(), 0);
        QVERIFY(contentOf(app::logPath()).contains("AssociationImages.dat.reg"));
    }
};

QTEST_GUILESS_MAIN(TestOtherViewer)
#include "tst_otherviewer.moc"
