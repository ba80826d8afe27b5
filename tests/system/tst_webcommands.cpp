// The addresses of the maker's pages, as the commands open them.
#include "app/SettingsHome.h"
#include "app/WebPages.h"
#include "system/Publishing.h"
#include "system/WebCommands.h"

#include <QTest>

using namespace quorvia;
using app::WebPage;

class TestWebCommands : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;

    static void store(const char* subkey, const QString& name, const QString& value)
    {
        QVERIFY(app::SaveCommonSetting(QLatin1String(subkey), name, value));
    }

  private Q_SLOTS:
    void init() { m_home = std::make_unique<test::SettingsHome>(); }
    void cleanup() { m_home.reset(); }

    void queries()
    {
        QCOMPARE(system::BuildAppQuery(), QStringLiteral("?app=Quorvia100"));
        QCOMPARE(system::BuildToolQuery(QStringLiteral("App Menu.Item")),
                 QStringLiteral("programname=Quorvia&version=1.0.0&app=Quorvia100AppMenuItem&check=1"));
    }

    void builtInHomes()
    {
        store("Web Sites", "", "https://any.example/");
        QCOMPARE(system::builtInHomeUrl(QStringLiteral("Quorvia")), app::webAddress(WebPage::Product));
        QCOMPARE(system::builtInHomeUrl(QStringLiteral("Morphane")),
                 app::webAddress(WebPage::ProductMorphane));
        QCOMPARE(system::builtInHomeUrl(QStringLiteral("Tessary")), QStringLiteral("https://any.example/"));
    }

    void addresses_data()
    {
        QTest::addColumn<QString>("address");
        const QString query =
            QStringLiteral("programname=Quorvia&version=1.0.0&app=Quorvia100AppMenuItem&check=1");
        const QString app = QStringLiteral("?app=Quorvia100");
        const auto page = [](WebPage each) { return app::webAddress(each); };
        QTest::newRow("miWebsite") << page(WebPage::Product);
        QTest::newRow("miHVXAWebsite") << page(WebPage::Front) + app;
        QTest::newRow("miLindoraCenter") << page(WebPage::MediaPortal) + u'?' + query;
        QTest::newRow("miHVXAImageGallery") << page(WebPage::ImageGallery) + u'?' + query;
        // A second "?" behind the page's own query.
        QTest::newRow("miURLcomments") << page(WebPage::Support) + u'?' + query;
        QTest::newRow("miURLfeature") << page(WebPage::Support) + u'?' + query;
        QTest::newRow("miURLbugreport") << page(WebPage::Report) + u'?' + query;
        QTest::newRow("miWebMorphane") << page(WebPage::ProductMorphane) + app;
        QTest::newRow("miWebTessary") << page(WebPage::ProductTessary) + app;
        QTest::newRow("miWebNomalux") << page(WebPage::ProductNomalux) + app;
        QTest::newRow("miRunNomalux") << QString();
        QTest::newRow("") << QString();
    }

    void addresses()
    {
        const QString command = QString::fromLatin1(QTest::currentDataTag());
        QTEST(system::webAddressOf(command), "address");
    }

    void everyCommandHasAnAddress()
    {
        QCOMPARE(system::webCommands().size(), std::size_t(10));
        for (const char* command : system::webCommands())
            QVERIFY2(!system::webAddressOf(QLatin1String(command)).isEmpty(), command);
    }

    void theStoreComesFirst_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("miWebsite") << "Quorvia";
        QTest::newRow("miHVXAWebsite") << "Quorvia";
        QTest::newRow("miWebMorphane") << "Morphane";
        QTest::newRow("miWebTessary") << "Tessary";
        QTest::newRow("miWebNomalux") << "Nomalux";
    }

    void theStoreComesFirst()
    {
        QFETCH(QString, title);
        const QString command = QString::fromLatin1(QTest::currentDataTag());
        store("Web Sites", title, "https://stored.example/");
        QCOMPARE(system::webAddressOf(command), QStringLiteral("https://stored.example/"));
        store("Web Sites", title, "");
        QVERIFY(system::webAddressOf(command) != QStringLiteral("https://stored.example/"));
    }

    void aPartnersEdition_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("partner");
        QTest::newRow("yes") << "yes" << true;
        QTest::newRow("no") << "no" << false;
        QTest::newRow("another word") << "true" << false;
        QTest::newRow("nothing") << "" << false;
    }

    void aPartnersEdition()
    {
        QFETCH(QString, stored);
        QFETCH(bool, partner);
        store("Common\\Product IDs", "QOCSInstall", stored);
        for (const char* command :
             {"miLindoraCenter", "miHVXAImageGallery", "miURLcomments", "miURLfeature", "miURLbugreport"})
            QCOMPARE(system::webAddressOf(QLatin1String(command)) == app::webAddress(WebPage::Partner),
                     partner);
        for (const char* command : {"miWebsite", "miHVXAWebsite", "miWebMorphane"})
            QVERIFY(system::webAddressOf(QLatin1String(command)) != app::webAddress(WebPage::Partner));
    }
};

QTEST_GUILESS_MAIN(TestWebCommands)
#include "tst_webcommands.moc"
