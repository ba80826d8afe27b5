#include "app/WebPages.h"

#include <QSet>
#include <QTest>
#include <QUrl>

using namespace quorvia::app;

class TestWebPages : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void everyPageHasItsOwnAddress()
    {
        constexpr int pages = int(WebPage::Partner) + 1;
        QSet<QString> addresses;
        for (int page = 0; page < pages; ++page) {
            const QUrl url(webAddress(WebPage(page)), QUrl::StrictMode);
            QVERIFY2(url.isValid() && url.scheme() == QLatin1String("https"), qPrintable(url.toString()));
            QVERIFY2(url.host().endsWith(QLatin1String(".example")),
                     qPrintable(url.host())); // a reserved name
            addresses.insert(url.toString());
        }
        QCOMPARE(addresses.size(), pages);
    }

    void addresses_data()
    {
        QTest::addColumn<WebPage>("page");
        QTest::addColumn<QString>("address");
        QTest::newRow("front") << WebPage::Front << "https://www.halvexa.example/";
        QTest::newRow("product") << WebPage::Product << "https://www.halvexa.example/quorvia/";
        QTest::newRow("product of Morphane")
            << WebPage::ProductMorphane << "https://www.halvexa.example/morphane/";
        QTest::newRow("product of Tessary")
            << WebPage::ProductTessary << "https://www.halvexa.example/tessary/";
        QTest::newRow("product of Nomalux")
            << WebPage::ProductNomalux << "https://www.halvexa.example/nomalux/";
        QTest::newRow("download") << WebPage::Download << "https://www.halvexa.example/quorvia/download/";
        QTest::newRow("support") << WebPage::Support << "https://www.halvexa.example/support/?part=support";
        QTest::newRow("report") << WebPage::Report << "https://www.halvexa.example/support/?part=report";
        QTest::newRow("media portal") << WebPage::MediaPortal << "https://lindora.example/";
        QTest::newRow("image gallery") << WebPage::ImageGallery << "https://gallery.halvexa.example/";
        QTest::newRow("shell menu") << WebPage::ShellMenu
                                    << "https://www.halvexa.example/quorvia/shell-menu/";
        QTest::newRow("partner") << WebPage::Partner << "https://partner.halvexa.example/";
    }

    void addresses()
    {
        QFETCH(WebPage, page);
        QTEST(webAddress(page), "address");
    }

    void theSupportPagesHaveAQuery()
    {
        QCOMPARE(QUrl(webAddress(WebPage::Support)).query(), QStringLiteral("part=support"));
        QCOMPARE(QUrl(webAddress(WebPage::Report)).query(), QStringLiteral("part=report"));
    }

    void lists_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("nothing") << QByteArray() << QStringList();
        QTest::newRow("prose") << QByteArray("What it is,\nand = sign = \n")
                               << QStringList({"and", "sign ="});
        QTest::newRow("two") << QByteArray("a b = https://x/?q=1\r\nc =  y ")
                             << QStringList({"a b", "https://x/?q=1", "c", "y"});
        QTest::newRow("no role") << QByteArray(" = https://x/\n") << QStringList();
        QTest::newRow("the first of one role") << QByteArray("a = 1\na = 2\n") << QStringList({"a", "1"});
    }

    void lists()
    {
        QFETCH(QByteArray, text);
        QStringList found;
        for (const auto& [role, address] : webAddressesOf(text))
            found << role << address;
        QTEST(found, "found");
    }
};

QTEST_GUILESS_MAIN(TestWebPages)
#include "tst_webpages.moc"
