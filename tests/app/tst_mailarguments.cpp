#include "app/MailArguments.h"

#include <QTest>

using namespace quorvia::app;

class TestMailArguments : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void arguments_data()
    {
        QTest::addColumn<QString>("subject");
        QTest::addColumn<QString>("hiddenBody");
        QTest::addColumn<QString>("attachments");
        QTest::addColumn<QString>("line"); // as the tool reads it
        QTest::newRow("all") << "Image (a.jpg)"
                             << "<BRX><BRX>- sent"
                             << "/pics/a.jpg"
                             << "/subject:Image (a.jpg) /hiddenbody:<BRX><BRX>- sent "
                                "/attachments:/pics/a.jpg";
        QTest::newRow("several files") << "Images"
                                       << ""
                                       << "/a.jpg;/b.jpg"
                                       << "/subject:Images /hiddenbody: /attachments:/a.jpg;/b.jpg";
        QTest::newRow("nothing is quoted") << "a \"b' %1 -c"
                                           << "%2"
                                           << "/x y/\"\n.jpg"
                                           << "/subject:a \"b' %1 -c /hiddenbody:%2 "
                                              "/attachments:/x y/\"\n.jpg";
    }

    void arguments()
    {
        QFETCH(QString, subject);
        QFETCH(QString, hiddenBody);
        QFETCH(QString, attachments);
        const QStringList made = mailArguments({subject, hiddenBody, attachments});
        QCOMPARE(made.size(), 3); // one a switch, whatever blanks are in it
        QTEST(made.join(u' '), "line");
    }
};

QTEST_GUILESS_MAIN(TestMailArguments)
#include "tst_mailarguments.moc"
