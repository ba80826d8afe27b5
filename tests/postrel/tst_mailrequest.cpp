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
        QTest::addColumn<QByteArrayList>("arguments");
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("body");
        QTest::addColumn<QByteArrayList>("attachments");
        const QByteArrayList whole{"/subject:Image (two words.png)",
                                   "/hiddenbody:<BRX><BRX>- sent with it, see https://x/y",
                                   "/attachments:/pics/two words.png"};
        QTest::newRow("one image") << whole << "Image (two words.png)"
                                   << "\n\n- sent with it, see https://x/y"
                                   << QByteArrayList({"/pics/two words.png"});
        QTest::newRow("the same, split at its blanks")
            << whole.join(' ').split(' ') << "Image (two words.png)"
            << "\n\n- sent with it, see https://x/y" << QByteArrayList({"/pics/two words.png"});
        QTest::newRow("several, and no text")
            << QByteArrayList({"/subject:Image", "/hiddenbody:", "/attachments:/a.png;/b;c.png;/d.png"})
            << "Image"
            << "" << QByteArrayList({"/a.png", "/b;c.png", "/d.png"});
        QTest::newRow("one that is not there") << QByteArrayList({"/attachments:/none.png;/a.png"}) << ""
                                               << "" << QByteArrayList({"/none.png", "/a.png"});
        QTest::newRow("the last is not there") << QByteArrayList({"/attachments:/a.png;/none.png"}) << ""
                                               << "" << QByteArrayList({"/a.png", "/none.png"});
        QTest::newRow("names that hold the mark")
            << QByteArrayList({"/attachments:/a;;b.jpg;/tail;.jpg;/semi;"}) << ""
            << "" << QByteArrayList({"/a;;b.jpg", "/tail;.jpg", "/semi;"});
        QTest::newRow("one whose beginning is a file too")
            << QByteArrayList({"/attachments:/d.png;1.png;/a.png"}) << ""
            << "" << QByteArrayList({"/d.png;1.png", "/a.png"});
        QTest::newRow("a folder that ends in the mark")
            << QByteArrayList({"/attachments:/dir;/x.png;/a.png"}) << ""
            << "" << QByteArrayList({"/dir;/x.png", "/a.png"});
        QTest::newRow("blanks of the name") << QByteArrayList({"/attachments:/end.jpg ;/a.png"}) << ""
                                            << "" << QByteArrayList({"/end.jpg ", "/a.png"});
        QTest::newRow("blanks that are not the name's")
            << QByteArrayList({"/attachments: /a.png ;/d.png "}) << ""
            << "" << QByteArrayList({"/a.png", "/d.png"});
        QTest::newRow("a name in no encoding")
            << QByteArrayList({"/attachments:/bad\xff.jpg;/ends in \xc3\xa0"}) << ""
            << "" << QByteArrayList({"/bad\xff.jpg", "/ends in \xc3\xa0"});
        QTest::newRow("other case, other order")
            << QByteArrayList({"/Attachments:/a.png", "/SUBJECT:x", "-v"}) << "x -v"
            << "" << QByteArrayList({"/a.png"});
        QTest::newRow("words in front") << QByteArrayList({"hello", "/subject:x"}) << "x"
                                        << "" << QByteArrayList();
        QTest::newRow("nothing") << QByteArrayList() << ""
                                 << "" << QByteArrayList();
    }

    void requests()
    {
        QFETCH(QByteArrayList, arguments);
        const QByteArrayList there{"/pics/two words.png", "/a.png",     "/b;c.png",     "/d.png",
                                   "/a;;b.jpg",           "/tail;.jpg", "/semi;",       "/d.png;1.png",
                                   "/dir;/x.png",         "/end.jpg ",  "/bad\xff.jpg", "/ends in \xc3\xa0"};
        const MailRequest request =
            mailRequest(arguments, [&there](const QByteArray& path) { return there.contains(path); });
        QTEST(QString::fromUtf8(request.subject), "subject");
        QTEST(QString::fromUtf8(request.body), "body");
        QTEST(request.attachments, "attachments");
    }

    void composer()
    {
        QCOMPARE(composerArguments({"Image", "a\nb", {"/a b.png", "-c.png"}}),
                 QByteArrayList({"--utf8", "--subject", "Image", "--body", "a\nb", "--attach", "/a b.png",
                                 "--attach", "./-c.png"}));
        QCOMPARE(composerArguments({}), QByteArrayList{"--utf8"});
    }
};

QTEST_GUILESS_MAIN(TestMailRequest)
#include "tst_mailrequest.moc"
