// What the link says from start to start, and when a version is a newer one.
#include "app/WebPages.h"
#include "commands/FeedbackLink.h"

#include <QTest>

#include <limits>

using namespace quorvia;
using commands::FeedbackLink;
using commands::feedbackLink;
using commands::LinkFacts;
using commands::LinkText;

namespace {

constexpr app::Version running{1, 4, 10};

LinkFacts facts(int preview, int dynamicLink = 1, const QString& latest = QStringLiteral("0.0.0"))
{
    return {.latestVersion = latest, .dynamicLink = dynamicLink, .linkPreview = preview, .running = running};
}

} // namespace

class TestFeedbackLink : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void questions_data()
    {
        QTest::addColumn<int>("preview");
        QTest::addColumn<QString>("caption"); // empty: nothing is shown
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("next");
        const auto support = int(app::WebPage::Support);
        const auto report = int(app::WebPage::Report);
        QTest::newRow("0") << 0 << "" << 0 << 1;
        QTest::newRow("1") << 1 << "Suggest a Feature?" << support << 2;
        QTest::newRow("2") << 2 << "Comments?" << support << 3;
        QTest::newRow("3") << 3 << "Report Errors?" << report << 4;
        QTest::newRow("4") << 4 << "Send Feedback?" << support << 5;
        QTest::newRow("5") << 5 << "Report Bugs?" << report << 6;
        QTest::newRow("6") << 6 << "" << 0 << 7;
        QTest::newRow("7") << 7 << "" << 0 << 0;
        QTest::newRow("8") << 8 << "" << 0 << 0;
        QTest::newRow("largest") << std::numeric_limits<int>::max() << "" << 0 << 0;
        QTest::newRow("-1") << -1 << "" << 0 << 0;
        QTest::newRow("least") << std::numeric_limits<int>::min() << "" << 0
                               << std::numeric_limits<int>::min() + 1;
    }

    void questions()
    {
        QFETCH(int, preview);
        QFETCH(QString, caption);
        QFETCH(int, page);
        const FeedbackLink link = feedbackLink(facts(preview));
        QTEST(*link.nextPreview, "next");
        QCOMPARE(link.shown.has_value(), !caption.isEmpty());
        if (link.shown) {
            QCOMPARE(link.shown->caption, caption);
            QCOMPARE(link.shown->address, app::webAddress(app::WebPage(page)) +
                                              QStringLiteral("?app=QuorviaFeedback&version=1.4.10"));
        }
    }

    void threeStartsOfEightShowNothing()
    {
        int preview = 2;
        int shown = 0;
        for (int start = 0; start < 8; ++start) {
            const FeedbackLink link = feedbackLink(facts(preview));
            shown += link.shown.has_value();
            preview = *link.nextPreview;
        }
        QCOMPARE(shown, 5);
        QCOMPARE(preview, 2);
    }

    void withoutTheDynamicLinkNothingChanges_data()
    {
        QTest::addColumn<int>("dynamicLink");
        for (const int value : {0, 2, -1})
            QTest::addRow("%d", value) << value;
    }

    void withoutTheDynamicLinkNothingChanges()
    {
        QFETCH(int, dynamicLink);
        QCOMPARE(feedbackLink(facts(3, dynamicLink)), FeedbackLink());
    }

    void aNewerVersionGoesBeforeAll_data()
    {
        QTest::addColumn<int>("dynamicLink");
        QTest::newRow("with the dynamic link") << 1;
        QTest::newRow("without it") << 0;
    }

    void aNewerVersionGoesBeforeAll()
    {
        QFETCH(int, dynamicLink);
        const FeedbackLink link = feedbackLink(facts(3, dynamicLink, QStringLiteral("1.5.0")));
        QCOMPARE(*link.shown, (LinkText{QStringLiteral("Upgrade to version: 1.5.0"),
                                        app::webAddress(app::WebPage::Download)}));
        QVERIFY(!link.nextPreview); // the question waits
    }

    /// A damaged setting must not make a label that is larger than the window.
    void aLongVersionIsCut()
    {
        const QString text = QStringLiteral("9.") + QString(5000, u'9') + QStringLiteral("\n1");
        const QString caption = feedbackLink(facts(1, 1, text)).shown->caption;
        QVERIFY(caption.startsWith(QStringLiteral("Upgrade to version: 9.99")));
        QVERIFY(caption.size() <= 60);
        QCOMPARE(feedbackLink(facts(1, 1, QStringLiteral("9\n1"))).shown->caption,
                 QStringLiteral("Upgrade to version: 9 1"));
        const QString turned =
            QStringLiteral("9") + QChar(0x202E) + QStringLiteral("1"); // draws from the right
        QCOMPARE(feedbackLink(facts(1, 1, turned)).shown->caption, QStringLiteral("Upgrade to version: 91"));
    }

    void versions_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("newer");
        const auto row = [](const char* text, bool newer) {
            QTest::newRow(text) << QString::fromLatin1(text) << newer;
        };
        row("1.4.10", false);
        row("1.4.9", false); // by numbers, not by letters
        row("1.4.11", true);
        row("1.10.0", true);
        row("2", true);
        row("1", false);
        row("1.5", true);
        row("0.99.99", false);
        row("10.0.0", true);
        row("01.4.011", true);
        row("1.4.10.7", false); // a fourth is none of ours
        row("1.4.11beta", true);
        row(" 1 . 4 . 11 ", true);
        row("v2.0.0", false);
        row("-3.0.0", false);
        row("", false);
        row(".", false);
        row("..11", false);
        row("nonsense", false);
        row("99999999999999999999.0.0", true);
        row("1.4.99999999999999999999", true);
    }

    void versions()
    {
        QFETCH(QString, text);
        QTEST(commands::isNewerVersion(text, running), "newer");
    }
};

QTEST_APPLESS_MAIN(TestFeedbackLink)
#include "tst_feedbacklink.moc"
