// Long lines that stand in a document as several blocks: what is read from it is always the text.
#include "viewer/LongLines.h"

#include <QGuiApplication>
#include <QTest>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

using namespace quorvia;

namespace {

/// A line of `length` letters without a blank; each tells its place.
QString letters(int length)
{
    QString line;
    for (int i = 0; i < length; ++i)
        line += QChar(u'a' + i % 26);
    return line;
}

QString textOf(QTextDocument& document)
{
    QTextCursor all(&document);
    all.select(QTextCursor::Document);
    return viewer::selectedLines(all);
}

QTextCursor selection(QTextDocument& document, int from, int to)
{
    QTextCursor cursor(&document);
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    return cursor;
}

} // namespace

class TestLongLines : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void pieces_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QList<int>>("sizes");
        const QString accent(QChar(0x301));
        const QString face = QString::fromUtf8("\xf0\x9f\x98\x80");
        QTest::newRow("none") << QString() << QList<int>{0};
        QTest::newRow("short") << letters(80) << QList<int>{80};
        QTest::newRow("just one") << letters(8192) << QList<int>{8192};
        QTest::newRow("one letter more") << letters(8193) << QList<int>{8192, 1};
        QTest::newRow("behind a blank") << letters(8000) + u' ' + letters(8000) << QList<int>{8001, 8000};
        QTest::newRow("a blank far away") << letters(5000) + u' ' + letters(5000) << QList<int>{8192, 1809};
        QTest::newRow("not within a letter") << letters(8191) + face + letters(10) << QList<int>{8191, 12};
        QTest::newRow("not before an accent") << letters(8192) + accent + letters(10) << QList<int>{8191, 12};
        QTest::newRow("nothing but accents") << accent.repeated(9000) << QList<int>{7168, 1832};
    }

    void pieces()
    {
        QFETCH(QString, line);
        const QStringList pieces = viewer::piecesOf(line);
        QCOMPARE(pieces.join(QString()), line);
        QList<int> sizes;
        for (const QString& piece : pieces)
            sizes.append(int(piece.size()));
        QTEST(sizes, "sizes");
    }

    void aTextComesBack_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("blocks");
        QTest::newRow("none") << QString() << 1;
        QTest::newRow("lines") << "one\n\ntwo\n" << 4;
        QTest::newRow("a long line") << letters(20000) << 3;
        QTest::newRow("long lines among others")
            << QStringLiteral("one\n") + letters(20000) + u'\n' + letters(10000) + QStringLiteral("\ntwo")
            << 7;
        QTest::newRow("blanks that do not break") << QString(QChar(QChar::Nbsp)).repeated(9000) << 2;
    }

    void aTextComesBack()
    {
        QFETCH(QString, text);
        QTextDocument document;
        viewer::insertLines(QTextCursor(&document), text);
        QTEST(document.blockCount(), "blocks");
        QVERIFY(textOf(document) == text);
        document.undo();
        QCOMPARE(textOf(document), QString());
        document.redo();
        QVERIFY(textOf(document) == text);
    }

    /// A joint goes and comes with the letters around it. Places are those of the document, where each joint
    /// counts as one: after 8192, and after 16385.
    void deletionsLeaveTheRest_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<int>("lost"); // letters
        const auto row = [](const char* name, int from, int to, int lost) {
            QTest::newRow(name) << from << to << lost;
        };
        row("within a piece", 10, 20, 10);
        row("the joint alone", 8196, 8197, 0);
        row("over a joint", 8190, 8200, 9);
        row("up to a joint", 8000, 8196, 196);
        row("a whole piece", 8197, 16389, 8192);
        row("a whole piece and the joint behind it", 8197, 16390, 8192);
        row("from the start of the line into its second piece", 4, 9000, 8995);
        row("with the line end before it", 3, 9000, 8996);
    }

    void deletionsLeaveTheRest()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(int, lost);
        const QString text = QStringLiteral("one\n") + letters(20000) + QStringLiteral("\ntwo");
        QTextDocument document;
        viewer::insertLines(QTextCursor(&document), text);
        const int joints = document.blockCount() - 3;
        QCOMPARE(joints, 2);
        selection(document, from, to).removeSelectedText();
        const QString less = textOf(document);
        const int start = from - (from >= 8197 ? 1 : 0);
        QVERIFY(less == text.left(start) + text.mid(start + lost));
        document.undo();
        QVERIFY(textOf(document) == text);
        document.redo();
        QVERIFY(textOf(document) == less);
    }

    void aLineEndAtAJointIsOne()
    {
        QTextDocument document;
        viewer::insertLines(QTextCursor(&document), letters(10000));
        QTextCursor cursor(&document);
        cursor.setPosition(8193); // the second piece begins here
        viewer::insertLines(cursor, QStringLiteral("\n"));
        QCOMPARE(textOf(document), letters(8192) + u'\n' + letters(10000).mid(8192));
    }

    void aSelectionIsRead_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << 5 << 5 << QString();
        QTest::newRow("in a line") << 1 << 3 << "ne";
        QTest::newRow("over a line end") << 2 << 6 << "e\nab";
        QTest::newRow("over a joint") << 8194 << 8199 << letters(8194).mid(8190);
        QTest::newRow("a joint alone") << 8196 << 8197 << QString();
    }

    void aSelectionIsRead()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QTextDocument document;
        viewer::insertLines(QTextCursor(&document), QStringLiteral("one\n") + letters(10000));
        QTEST(viewer::selectedLines(selection(document, from, to)), "text");
        QTEST(viewer::selectedLines(selection(document, to, from)), "text");
    }
};

QTEST_MAIN(TestLongLines)
#include "tst_longlines.moc"
