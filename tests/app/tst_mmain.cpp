// What happens before the main window is loaded.
#include "app/mFile.h"
#include "app/mMain.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace quorvia;

class TestMMain : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

    QString root() const { return m_home->path(QStringLiteral("root/")); }
    static QString resource(const char* name)
    {
        return app::GetCommonSetting(QStringLiteral("Common\\ResourcePaths"), QLatin1String(name), QString())
            .toString();
    }
    static void setResource(const char* name, const QString& value)
    {
        app::SaveCommonSetting(QStringLiteral("Common\\ResourcePaths"), QLatin1String(name), value);
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void theProbeWritesItsWord()
    {
        QVERIFY(app::probeMachineStore());
        QCOMPARE(app::GetCommonSetting(QStringLiteral("Common\\Testing"), QStringLiteral("Test"), QString())
                     .toString(),
                 QStringLiteral("Vaild"));
    }

    void aStoreThatCannotBeMadeIsFatal()
    {
        app::closeSettings();
        m_home->write(QStringLiteral("blocked"), "a file");
        qputenv("HALVEXA_MACHINE_STORE", m_home->path(QStringLiteral("blocked/machine.db")).toLocal8Bit());
        app::openSettings();
        std::vector<platform::MessageBox> boxes;
        const platform::MessageBoxAnswerer answerer([&](const platform::MessageBox& box) {
            boxes.push_back(box);
            return platform::BoxAnswer::Ok;
        });
        QVERIFY(!app::probeMachineStore());
        QCOMPARE(boxes.size(), size_t(1));
        QCOMPARE(boxes[0].kind, platform::BoxKind::Information);
        QCOMPARE(boxes[0].title, QStringLiteral("Fatial Error"));
        QCOMPARE(boxes[0].text,
                 QStringLiteral(
                     "Current user does not have query/set permission to access:\n'HKLM\\Software\\Halvexa\\'"
                     "\n\nPlease contact the system administrator to have the user permissions changed."));
    }

    void directoriesAreMadeAndStored()
    {
        app::prepareDataDirectories(root());
        for (const auto& [value, name] : {std::pair{"ThumbnailPath", "Thumbs/"},
                                          {"ImagePlaylistPath", "Playlist/"},
                                          {"ImageDescriptionPath", "Description/"}}) {
            QCOMPARE(resource(value), root() + QLatin1String(name));
            QVERIFY(QDir(root() + QLatin1String(name)).exists());
        }
        QVERIFY(!QDir(root() + QStringLiteral("Conversion")).exists());
        app::repairDataDirectories(root());
        QVERIFY(QDir(root() + QStringLiteral("Conversion")).exists());
    }

    void aRelocatedDirectorySurvives()
    {
        const QString elsewhere = m_home->path(QStringLiteral("elsewhere/thumbs/"));
        setResource("ThumbnailPath", elsewhere);
        app::prepareDataDirectories(root());
        QCOMPARE(resource("ThumbnailPath"), elsewhere);
        QVERIFY(!QDir(root() + QStringLiteral("Thumbs")).exists());
        QVERIFY(!QDir(elsewhere).exists());
        app::repairDataDirectories(root());
        QVERIFY(QDir(elsewhere).exists());
    }

    void repairMakesTheLevelsThatEndInASeparator()
    {
        setResource("ThumbnailPath", m_home->path(QStringLiteral("other/thumbs")));
        app::repairDataDirectories(root());
        QVERIFY(QDir(m_home->path(QStringLiteral("other"))).exists());
        QVERIFY(!QDir(m_home->path(QStringLiteral("other/thumbs"))).exists());
    }

    void theDescriptionsAreLookedForAtTheThumbnailsPlace()
    {
        // The thumbnails stand, so missing descriptions are not made anew.
        setResource("ThumbnailPath", m_home->path(QStringLiteral("thumbs/")));
        QVERIFY(QDir().mkpath(m_home->path(QStringLiteral("thumbs"))));
        app::repairDataDirectories(root());
        QVERIFY(!QDir(root() + QStringLiteral("Description")).exists());
    }

    void playlistsAreRepairedBelowTheRoot()
    {
        // The stored place is looked at, the one below the root is made.
        setResource("ImagePlaylistPath", m_home->path(QStringLiteral("gone/lists/")));
        app::repairDataDirectories(root());
        QVERIFY(QDir(root() + QStringLiteral("Playlist")).exists());
        QVERIFY(!QDir(m_home->path(QStringLiteral("gone/lists"))).exists());
    }

    void aRootThatCannotBeMadeIsLoggedOncePerDirectory()
    {
        m_home->write(QStringLiteral("root"), "a file");
        app::prepareDataDirectories(root());
        app::repairDataDirectories(root());
        QFile log(app::logPath());
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray text = log.readAll();
        for (const char* name : {"Thumbs", "Playlist", "Description", "Conversion"})
            QCOMPARE(text.count("Data directory cannot be made: " + root().toUtf8() + name), 1);
        QVERIFY(QFileInfo(m_home->path(QStringLiteral("root"))).isFile());
    }

    void removalTakesEverythingOfTheProgram()
    {
        const QString leftover = m_home->write(QStringLiteral("root/playlist.qol"), "x");
        app::save(app::setting::MainWidth, 9000);
        app::save(app::setting::ImageOpenCount, 5);
        app::save(app::setting::LastCheck, QStringLiteral("122026"));
        app::SaveAppSetting(QStringLiteral("Print Settings"), QStringLiteral("PrintLayout"), 1);
        app::SaveAppSetting(QStringLiteral("Associations"), QStringLiteral("Openx.jpg"),
                            QStringLiteral("/usr/bin/x"));
        for (const char* subkey :
             {"Common\\ProgramFileSupport", "Common\\ProgramAssoPaths", "Web Sites",
              "Common\\ProgramShortPaths", "Common\\ProgramPaths", "Common\\ComponentPaths"}) {
            app::SaveCommonSetting(QLatin1String(subkey), QStringLiteral("Quorvia"), QStringLiteral("ours"));
            app::SaveCommonSetting(QLatin1String(subkey), QStringLiteral("Morphane"),
                                   QStringLiteral("theirs"));
        }

        QVERIFY(app::removeSettings(root()));

        QVERIFY(!QFile::exists(leftover));
        QCOMPARE(app::read(app::setting::MainWidth, -1), -1);
        QCOMPARE(app::read(app::setting::ImageOpenCount), 0);
        QCOMPARE(app::read(app::setting::LastCheck), QString());
        QCOMPARE(
            app::GetAppSetting(QStringLiteral("Print Settings"), QStringLiteral("PrintLayout"), -1).toInt(),
            -1);
        QCOMPARE(app::GetAppSetting(QStringLiteral("Associations"), QStringLiteral("Openx.jpg"), QString())
                     .toString(),
                 QStringLiteral("/usr/bin/x")); // earlier owners are kept
        for (const char* subkey :
             {"Common\\ProgramFileSupport", "Common\\ProgramAssoPaths", "Web Sites",
              "Common\\ProgramShortPaths", "Common\\ProgramPaths", "Common\\ComponentPaths"}) {
            QCOMPARE(
                app::GetCommonSetting(QLatin1String(subkey), QStringLiteral("Quorvia"), QString()).toString(),
                QString());
            QCOMPARE(app::GetCommonSetting(QLatin1String(subkey), QStringLiteral("Morphane"), QString())
                         .toString(),
                     QStringLiteral("theirs"));
        }
    }

    void removalWithNothingThere()
    {
        QVERIFY(app::removeSettings(root()));
        QCOMPARE(app::read(app::setting::MainWidth, -1), -1);
    }
};

QTEST_GUILESS_MAIN(TestMMain)
#include "tst_mmain.moc"
