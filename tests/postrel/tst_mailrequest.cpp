// The mail tool's command line, read and handed on.
#include "postrel/MailRequest.h"

#include <QTest>

using namespace quorvia::postrel;

class TestMailRequest : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void requests_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QStringList>("attachments");
        const QStringList whole{"/subject:Image (two words.png)",
                                "/hiddenbody:<BRX><BRX>- sent with it, see https://x/y",
                                "/attachments:/pics/two words.png"};
        QTest::newRow("one image") << whole << "Image (two words.png)"
                                   << "\n\n- sent with it, see https://x/y"
                                   << QStringList({"/pics/two words.png"});
        QTest::newRow("the same, split at its blanks")
            << whole.join(u' ').split(u' ') << "Image (two words.png)"
            << "\n\n- sent with it, see https://x/y" << QStringList({"/pics/two words.png"});
        QTest::newRow("several, and no text")
            << QStringList({"/subject:Image", "/hiddenbody:", "/attachments:/a.png;/b;c.png;/d.png"})
            << "Image"
            << "" << QStringList({"/a.png", "/b;c.png", "/d.png"});
        QTest::newRow("one that is not there") << QStringList({"/attachments:/none.png;/a.png"}) << ""
                                               << "" << QStringList({"/none.png", "/a.png"});
        QTest::newRow("the last is not there") << QStringList({"/attachments:/a.png;/none.png"}) << ""
                                               << "" << QStringList({"/a.png", "/none.png"});
        QTest::newRow("other case, other order")
            << QStringList({"/Attachments:/a.png", "/SUBJECT:x", "-v"}) << "x -v"
            << "" << QStringList({"/a.png"});
        QTest::newRow("words in front") << QStringList({"hello", "/subject:x"}) << "x"
                                        << "" << QStringList();
        QTest::newRow("nothing") << QStringList() << ""
                                 << "" << QStringList();
    }

    void requests()
    {
        QFETCH(QStringList, arguments);
        const QStringList there{"/pics/two words.png", "/a.png", "/b;c.png", "/d.png"};
        const MailRequest request =
            mailRequest(arguments, [&there](const QString& path) { return there.contains(path); });
        QTEST(request.subject, "subject");
        QTEST(request.body, "body");
        QTEST(request.attachments, "attachments");
    }

    void composer()
    {
        QCOMPARE(composerArguments({"Image", "a\nb", {"/a b.png", "-c.png"}}),
                 QStringList({"--utf8", "--subject", "Image", "--body", "a\nb", "--attach", "/a b.png",
                              "--attach", "./-c.png"}));
        QCOMPARE(composerArguments({}), QStringList("--utf8"));
    }
};

QTEST_GUILESS_MAIN(TestMailRequest)
#include "tst_mailrequest.moc"
