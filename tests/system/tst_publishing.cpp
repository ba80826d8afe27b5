#include "app/ImageTypes.h"
#include "app/mWindowsAPI.h"
#include "app/Paths.h"
#include "app/Product.h"
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

    /// All that is published but the home page, which the user may choose.
    static void storeAll(const QString& value)
    {
        if (value.isEmpty())
            return;
        for (const char* subkey : {"ProgramFileSupport", "ProgramAssoPaths", "ProgramPaths",
                                   "ProgramShortPaths", "ComponentPaths"})
            app::SaveCommonSetting(QStringLiteral("Common\\") + QLatin1String(subkey),
                                   QStringLiteral("Quorvia"), value);
        app::SaveCommonSetting(QStringLiteral("Web Sites"), QStringLiteral("MenuShellReg"), value);
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void aProgram_data()
    {
        QTest::addColumn<QString>("before");
        QTest::newRow("into an empty store") << QString();
        QTest::newRow("over older values") << "stale";
    }

    void aProgram()
    {
        QFETCH(QString, before);
        storeAll(before);
        system::PublishProgram(false);
        QCOMPARE(common("Common\\ProgramFileSupport"), QLatin1String(app::ImageExtensionList));
        QCOMPARE(common("Common\\ProgramAssoPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramShortPaths"), app::programPath());
        QCOMPARE(common("Common\\ComponentPaths"), before);
        QCOMPARE(common("Web Sites"),
                 app::webAddress(app::WebPage::Product) + QStringLiteral("?app=Quorvia100"));
        QCOMPARE(common("Web Sites", "MenuShellReg"), app::webAddress(app::WebPage::ShellMenu));
    }

    void aComponent_data() { aProgram_data(); }

    void aComponent()
    {
        QFETCH(QString, before);
        storeAll(before);
        system::PublishProgram(true);
        QCOMPARE(common("Common\\ComponentPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramPaths"), before);
        QCOMPARE(common("Common\\ProgramShortPaths"), before);
        QCOMPARE(common("Common\\ProgramAssoPaths"), app::programPath());
        QCOMPARE(common("Common\\ProgramFileSupport"), QLatin1String(app::ImageExtensionList));
        QCOMPARE(common("Web Sites", "MenuShellReg"), app::webAddress(app::WebPage::ShellMenu));
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

    void queriesOfAnyProgram()
    {
        const app::Version version{1, 2, 3};
        QCOMPARE(system::appQuery("A. B", version), "?app=AB123");
        QCOMPARE(system::toolQuery("A. B", version, "x y"),
                 "programname=A B&version=1.2.3&app=AB123xy&check=1");
    }
};

QTEST_GUILESS_MAIN(TestPublishing)
#include "tst_publishing.moc"
