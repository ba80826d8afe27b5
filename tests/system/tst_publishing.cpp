#include "app/ImageTypes.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/SettingsHome.h"
#include "app/WebPages.h"
#include "system/Publishing.h"

#include <QTest>

using namespace quorvia;

class TestPublishing : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

    static QString common(const char* subkey, const char* name = "Quorvia")
    {
        return app::GetCommonSetting(QLatin1String(subkey), QLatin1String(name), QString()).toString();
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void aProgram()
    {
        system::PublishProgram(false);
        QCOMPARE(common("Common\\ProgramFileSupport"), QLatin1String(app::ImageExtensionList));
        QCOMPARE(common("Common\\ProgramAssoPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramShortPaths"), app::programPath());
        QCOMPARE(common("Common\\ComponentPaths"), QString());
        QCOMPARE(common("Web Sites"),
                 app::webAddress(app::WebPage::Product) + QStringLiteral("?app=Quorvia100"));
        QCOMPARE(common("Web Sites", "MenuShellReg"), app::webAddress(app::WebPage::ShellMenu));
    }

    void aComponent()
    {
        system::PublishProgram(true);
        QCOMPARE(common("Common\\ComponentPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramPaths"), QString());
        QCOMPARE(common("Common\\ProgramShortPaths"), QString());
        QCOMPARE(common("Common\\ProgramAssoPaths"), app::programPath());
    }

    void homePages_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("after");
        const QString front = app::webAddress(app::WebPage::Front);
        const QString query = QStringLiteral("?app=Quorvia100");
        QTest::newRow("own page gets the query") << "https://mine.example/"
                                                 << "https://mine.example/" + query;
        QTest::newRow("a query that is there stays") << "https://mine.example/?app=x"
                                                     << "https://mine.example/?app=x";
        QTest::newRow("the bare front page stays") << front << front;
    }

    void homePages()
    {
        QFETCH(QString, stored);
        app::SaveCommonSetting(QStringLiteral("Web Sites"), QStringLiteral("Quorvia"), stored);
        system::PublishProgram(false);
        QTEST(common("Web Sites"), "after");
        system::PublishProgram(false); // the second start changes nothing more
        QTEST(common("Web Sites"), "after");
    }

    void aBlankHomePageIsTheFrontPage()
    {
        app::SaveCommonSetting(QStringLiteral("Web Sites"), QStringLiteral("Quorvia"), QStringLiteral("  "));
        QCOMPARE(system::GetHomeUrl(), app::webAddress(app::WebPage::Front));
    }
};

QTEST_GUILESS_MAIN(TestPublishing)
#include "tst_publishing.moc"
