// What stands in a playlist file.
#include "collections/QolText.h"
#include "support/QolPaths.h"

#include <QRandomGenerator>
#include <QTest>

using namespace quorvia;
using collections::qolContent;
using collections::qolText;
using test::qolPaths;

class TestQolText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void written_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("none") << QStringList() << QDate(2003, 3, 4)
                              << QByteArray("# Quorvia Playlist File - Created: 03/04/2003 Files: 0\r\n");
        QTest::newRow("one") << QStringList{QStringLiteral("/a/b.jpg")} << QDate(2026, 12, 31)
                             << QByteArray("# Quorvia Playlist File - Created: 12/31/2026 Files: 1\r\n"
                                           "/a/b.jpg\r\n"
                                           "# End of File\r\n");
        QTest::newRow("one twice, in order")
            << QStringList{QStringLiteral("/z.png"), QStringLiteral("/ä #.gif"), QStringLiteral("/z.png")}
            << QDate(999, 1, 1)
            << QByteArray("# Quorvia Playlist File - Created: 01/01/0999 Files: 3\r\n"
                          "/z.png\r\n/\xC3\xA4 #.gif\r\n/z.png\r\n"
                          "# End of File\r\n");
    }

    void written()
    {
        QFETCH(QStringList, files);
        QFETCH(QDate, date);
        QTEST(qolText(files, date), "text");
    }

    void read_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("paths");
        const auto row = [](const char* name, const QByteArray& bytes, const QStringList& paths) {
            QTest::newRow(name) << bytes << paths;
        };
        const QString a = QStringLiteral("/a.jpg");
        const QString b = QStringLiteral("/b.jpg");
        row("nothing", "", {});
        row("no files", "# Quorvia Playlist File - Created: 03/04/2003 Files: 0\r\n", {});
        row("a wrong count", "# x Files: 7\r\n/a.jpg\r\n# End of File\r\n", {a});
        row("no end", "# x Files: 2\r\n/a.jpg\r\n/b.jpg\r\n", {a, b});
        row("an end in the middle", "/a.jpg\r\n# End of File\r\n/b.jpg\r\n", {a, b});
        row("twice", "/a.jpg\r\n/a.jpg\r\n", {a, a});
        row("the last line open", "/a.jpg\r\n/b.jpg", {a, b});
        row("LF", "/a.jpg\n/b.jpg\n", {a, b});
        row("CR", "/a.jpg\r/b.jpg\r", {a, b});
        row("mixed, with empty lines", "\r\n\n/a.jpg\n\r\n\r/b.jpg", {a, b});
        row("all comments", "#a\n:b\n'c\nExt:d\nInfo:e\n", {});
        row("a comment alone", "#\n:\n'\nExt:\nInfo:\n", {});
        row("nearly comments", "ext:a\nEXT:b\ninfo:c\nExt\nInfo\n a\n",
            {QStringLiteral("ext:a"), QStringLiteral("EXT:b"), QStringLiteral("info:c"),
             QStringLiteral("Ext"), QStringLiteral("Info"), QStringLiteral(" a")});
        row("a comment behind blanks is none", " #a\n", {QStringLiteral(" #a")});
        row("blanks stay", "  /a.jpg \r\n   \r\n", {QStringLiteral("  /a.jpg "), QStringLiteral("   ")});
        row("from elsewhere", "C:\\Pictures\\a.jpg\r\n", {QStringLiteral("C:\\Pictures\\a.jpg")});
        row("UTF-8", "/\xC3\xA4.jpg\r\n", {QStringLiteral("/ä.jpg")});
        row("one line of Latin-1", "/\xE4.jpg\r\n/\xC3\xA4.jpg\r\n",
            {QStringLiteral("/ä.jpg"), QStringLiteral("/ä.jpg")});
        row("a mark of UTF-8", "\xEF\xBB\xBF/a.jpg\n", {a});
        row("a mark before a comment", "\xEF\xBB\xBF# x\n/a.jpg\n", {a});
        row("a zero byte", QByteArray("/a\0b.jpg\n", 9), {QString(QLatin1String("/a\0b.jpg", 8))});
    }

    void read()
    {
        QFETCH(QByteArray, bytes);
        QTEST(qolPaths(bytes), "paths");
    }

    void whatIsWrittenIsReadAgain()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 300; ++round) {
            QStringList files;
            for (int i = random.bounded(20); i > 0; --i) {
                QString file(u'/');
                for (int k = random.bounded(40); k > 0; --k) {
                    const char16_t unit = char16_t(random.bounded(1, 0x3000)); // no surrogates
                    if (unit != u'\r' && unit != u'\n')
                        file += QChar(unit);
                }
                QVERIFY(collections::fitsOnALine(file));
                files.append(file);
            }
            QCOMPARE(qolPaths(qolText(files, QDate(2026, 2, 28))), files);
        }
    }

    void anyBytesAreRead()
    {
        QRandomGenerator random(11);
        const QByteArray often("#:'\r\n/\\\xC3\xEF\0ExtInfo", 17);
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes;
            for (int i = random.bounded(200); i > 0; --i)
                bytes +=
                    random.bounded(3) ? often[random.bounded(int(often.size()))] : char(random.bounded(256));
            const QStringList paths = qolPaths(bytes);
            for (const QString& path : paths) {
                QVERIFY(!path.isEmpty());
                QVERIFY(!path.contains(u'\n') && !path.contains(u'\r'));
            }
            QVERIFY(paths.size() <= bytes.size());
        }
    }

    void theDateIsNoContent()
    {
        const QStringList files{QStringLiteral("/a.jpg")};
        QCOMPARE(qolContent(qolText(files, QDate(2026, 1, 2))),
                 qolContent(qolText(files, QDate(2001, 1, 2))));
        QVERIFY(qolContent(qolText(files, QDate(2026, 1, 2))) != qolContent(qolText({}, QDate(2026, 1, 2))));
        QCOMPARE(qolContent("/a.jpg\n/b.jpg\n"), QByteArray("/a.jpg\n/b.jpg\n"));
        QCOMPARE(qolContent("\xEF\xBB\xBF# x\n/a.jpg\n"), QByteArray("/a.jpg\n"));
    }

    void whatFitsOnALine_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("fits");
        QTest::newRow("a path") << "/a/b.jpg" << true;
        QTest::newRow("a comment's sign in it") << "/#a" << true;
        QTest::newRow("nothing") << "" << false;
        QTest::newRow("relative") << "a.jpg" << false;
        QTest::newRow("a line feed") << "/a\nb.jpg" << false;
        QTest::newRow("a carriage return") << "/a\rb.jpg" << false;
    }

    void whatFitsOnALine()
    {
        QFETCH(QString, file);
        QTEST(collections::fitsOnALine(file), "fits");
    }

    void names_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::newRow("usual") << "/x/Playlist/Holiday.qol"
                               << "Holiday";
        QTest::newRow("twice") << "/x/my.qol list.qol"
                               << "my list";
        QTest::newRow("upper case") << "/x/NAME.QOL"
                                    << "NAME.QOL";
        QTest::newRow("in the folder's name") << "/x.qol/a.qol"
                                              << "a";
        QTest::newRow("no folder") << "a.qol"
                                   << "a";
        QTest::newRow("another type") << "/x/a.txt"
                                      << "a.txt";
        QTest::newRow("nothing else") << "/x/.qol"
                                      << "";
        QTest::newRow("that comes to be by the deletion") << "/x/a.q.qolol"
                                                          << "a.qol";
    }

    void names()
    {
        QFETCH(QString, path);
        QTEST(collections::playlistName(path), "name");
    }
};

QTEST_APPLESS_MAIN(TestQolText)
#include "tst_qoltext.moc"
