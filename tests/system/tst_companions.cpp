// The tools that come with the program, as the store names them.
#include "app/Settings.h"
#include "app/SettingsHome.h"
#include "system/Companions.h"
#include "system/ToolPaths.h"

#include <QFile>
#include <QTest>

using namespace quorvia;

class TestCompanions : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;
    QStringList m_directories;

    QString program(const QString& name) const
    {
        const QString file = m_home->write(name, "#!/bin/sh\n");
        QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner);
        return file;
    }
    static QString found() { return system::GetToolPath(QStringLiteral("postrel"), false); }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        m_directories = {m_home->path(QStringLiteral("one/")), m_home->path(QStringLiteral("two/"))};
    }
    void cleanup() { m_home.reset(); }

    void notThere()
    {
        m_home->write(QStringLiteral("one/postrel"), "no program");
        system::publishCompanions(m_directories);
        QCOMPARE(found(), QString());
    }

    void theFirstDirectoryWins()
    {
        const QString second = program(QStringLiteral("two/postrel"));
        system::publishCompanions(m_directories);
        QCOMPARE(found(), second);
        QCOMPARE(app::readOfTool(app::common::ComponentPaths, QStringLiteral("postrel")), second);
        program(QStringLiteral("one/postrel"));
        system::publishCompanions(m_directories);
        QCOMPARE(found(), second); // it is there
        QVERIFY(QFile::remove(second));
        system::publishCompanions(m_directories);
        QCOMPARE(found(), m_directories.first() + QStringLiteral("postrel"));
    }

    void anInstalledToolIsLeftAlone()
    {
        const QString other = program(QStringLiteral("other/postrel"));
        app::saveOfTool(app::common::ProgramPaths, QStringLiteral("postrel"), other);
        program(QStringLiteral("one/postrel"));
        system::publishCompanions(m_directories);
        QCOMPARE(app::readOfTool(app::common::ComponentPaths, QStringLiteral("postrel")), QString());
        system::withdrawCompanions(m_directories);
        QCOMPARE(found(), other);
    }

    void goesWithTheProgram()
    {
        program(QStringLiteral("one/postrel"));
        system::publishCompanions(m_directories);
        system::withdrawCompanions({m_home->path(QStringLiteral("elsewhere/"))});
        QVERIFY(!found().isEmpty()); // another installation's
        system::withdrawCompanions(m_directories);
        QCOMPARE(found(), QString());
    }
};

QTEST_GUILESS_MAIN(TestCompanions)
#include "tst_companions.moc"
