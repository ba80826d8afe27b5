// Where the other tools of the family are looked for, and in which order.
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "system/ToolPaths.h"

#include <QFile>
#include <QTest>

using namespace quorvia;

class TestToolPaths : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

    static QString postrel() { return QStringLiteral("postrel"); }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void places_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        for (const char* subkey :
             {"ProgramPaths", "ProgramAssoPaths", "ProgramShortPaths", "ResourcePaths", "ComponentPaths"})
            QTest::newRow(subkey) << "Software\\Halvexa\\Common\\" + QString::fromLatin1(subkey) << "postrel";
        QTest::newRow("product") << "Software\\Halvexa\\Common\\Product IDs"
                                 << "postrel path";
        QTest::newRow("the desktop's list")
            << "Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\postrel"
            << "";
    }

    void places()
    {
        QFETCH(QString, key);
        QFETCH(QString, name);
        QCOMPARE(system::GetToolPath(postrel(), false), QString());
        const QString program = m_home->write(QStringLiteral("postrel"), "#!");
        QVERIFY(app::RegWriteValue(app::Root::LocalMachine, key, name, program));
        QCOMPARE(system::GetToolPath(postrel(), false), program);
        QCOMPARE(system::GetToolPath(postrel(), true), app::GetShortPath(program));
        QVERIFY(app::RegWriteValue(app::Root::LocalMachine, key, name, program + QStringLiteral(".gone")));
        QCOMPARE(system::GetToolPath(postrel(), false), QString());
        QCOMPARE(system::GetToolPath(postrel(), true), QString());
    }

    void theOrder()
    {
        const std::pair<const char*, const char*> places[] = {
            {"Software\\Halvexa\\Common\\ProgramPaths", "postrel"},
            {"Software\\Halvexa\\Common\\ProgramAssoPaths", "postrel"},
            {"Software\\Halvexa\\Common\\ProgramShortPaths", "postrel"},
            {"Software\\Halvexa\\Common\\ResourcePaths", "postrel"},
            {"Software\\Halvexa\\Common\\ComponentPaths", "postrel"},
            {"Software\\Halvexa\\Common\\Product IDs", "postrel path"},
            {"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\postrel", ""},
        };
        const auto programOf = [this](std::size_t place) {
            return m_home->path(QStringLiteral("tool%1").arg(place));
        };
        for (std::size_t i = 0; i < std::size(places); ++i) {
            m_home->write(QStringLiteral("tool%1").arg(i), "#!");
            QVERIFY(app::RegWriteValue(app::Root::LocalMachine, QLatin1String(places[i].first),
                                       QLatin1String(places[i].second), programOf(i)));
        }
        for (std::size_t i = 0; i < std::size(places); ++i) {
            QCOMPARE(system::GetToolPath(postrel(), false), programOf(i));
            QVERIFY(QFile::remove(programOf(i))); // the next place is looked at
        }
        QCOMPARE(system::GetToolPath(postrel(), false), QString());
    }

    void theFirstThatExistsWins()
    {
        const QString first = m_home->write(QStringLiteral("first"), "#!");
        const QString second = m_home->write(QStringLiteral("second"), "#!");
        app::saveOfTool(app::common::ProgramAssoPaths, postrel(), first);
        app::saveOfTool(app::common::ComponentPaths, postrel(), second);
        QCOMPARE(system::GetToolPath(postrel(), false), first);
        app::saveOfTool(app::common::ProgramPaths, postrel(), QStringLiteral("/nowhere/postrel"));
        QCOMPARE(system::GetToolPath(postrel(), false), first);
        app::saveOfTool(app::common::ProgramPaths, postrel(), second);
        QCOMPARE(system::GetToolPath(postrel(), false), second);
    }
};

QTEST_GUILESS_MAIN(TestToolPaths)
#include "tst_toolpaths.moc"
