// The text of a mimeapps.list: what is read from it, and that changes to it touch nothing else.
#include "platform/MimeAppsText.h"

#include <QRandomGenerator>
#include <QTest>

using namespace quorvia::platform;

namespace {

const QByteArray own = "quorvia.desktop";
const QByteArray type = "image/png";

QByteArray takenOver(const QByteArray& text)
{
    return withFirst(text, defaultApplications, type, own);
}

QByteArray givenBack(const QByteArray& text)
{
    return withoutId(text, defaultApplications, type, own);
}

} // namespace

class TestMimeAppsText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ids_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& text, const QByteArray& expected) {
            QTest::newRow(name) << text << expected;
        };
        row("none", "", "");
        row("one", "[Default Applications]\nimage/png=a.desktop\n", "a.desktop");
        row("several", "[Default Applications]\nimage/png=a.desktop;b.desktop;\n", "a.desktop b.desktop");
        row("blanks", "[Default Applications]  \n  image/png \t=  a.desktop ; b.desktop \n",
            "a.desktop b.desktop");
        row("line ends of two characters", "[Default Applications]\r\nimage/png=a.desktop\r\n", "a.desktop");
        row("no line end", "[Default Applications]\nimage/png=a.desktop", "a.desktop");
        row("another group", "[Added Associations]\nimage/png=a.desktop\n", "");
        row("before any group", "image/png=a.desktop\n[Default Applications]\n", "");
        row("another type", "[Default Applications]\nimage/png2=a.desktop\nximage/png=b.desktop\n", "");
        row("in a language", "[Default Applications]\nimage/png[de]=a.desktop\n", "");
        row("a comment", "[Default Applications]\n#image/png=a.desktop\n", "");
        row("the last of two lines", "[Default Applications]\nimage/png=a.desktop\nimage/png=b.desktop\n",
            "b.desktop");
        row("a group in two pieces",
            "[Default Applications]\nx=y\n[Other]\nimage/png=c.desktop\n[Default "
            "Applications]\nimage/png=a.desktop\n",
            "a.desktop");
        row("empty places", "[Default Applications]\nimage/png=;;a.desktop;;\n", "a.desktop");
        row("an unfinished head", "[Default Applications\nimage/png=a.desktop\n", "");
    }
    void ids()
    {
        QFETCH(QByteArray, text);
        QTEST(idsOf(text, defaultApplications, type).join(' '), "expected");
    }

    void hasALine()
    {
        QVERIFY(hasLine("[Default Applications]\nimage/png=\n", defaultApplications, type));
        QVERIFY(!hasLine("[Default Applications]\nimage/pn=\n", defaultApplications, type));
        QVERIFY(!hasLine("[Added Associations]\nimage/png=\n", defaultApplications, type));
    }

    /// Each text, what a take-over makes of it; given back it is the same, byte for byte.
    void thereAndBack_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& text, const QByteArray& expected) {
            QTest::newRow(name) << text << expected;
        };
        const QByteArray group = "[Default Applications]\n";
        const QByteArray comment = "# Group added by Quorvia\n";
        row("empty", "", comment + group + "image/png=quorvia.desktop\n");
        row("a comment alone", "# mine\n", "# mine\n" + comment + group + "image/png=quorvia.desktop\n");
        row("no group, no line end", "[Other]\na=b",
            "[Other]\na=b\n# Group added by Quorvia\n[Default Applications]\nimage/png=quorvia.desktop");
        row("no group, two characters", "[Other]\r\na=b\r\n",
            "[Other]\r\na=b\r\n# Group added by Quorvia\r\n[Default "
            "Applications]\r\nimage/png=quorvia.desktop\r\n");
        row("a group without lines", group, group + "image/png=quorvia.desktop\n");
        row("a group at the open end", "[Default Applications]", group + "image/png=quorvia.desktop");
        row("a group before another", group + "\n[Other]\n",
            group + "image/png=quorvia.desktop\n\n[Other]\n");
        row("no line", group + "a/b=c.desktop\n", group + "image/png=quorvia.desktop\na/b=c.desktop\n");
        row("no line, mixed ends", "[Default Applications]\r\na/b=c.desktop\n",
            "[Default Applications]\r\nimage/png=quorvia.desktop\r\na/b=c.desktop\n");
        row("one", group + "image/png=a.desktop\n", group + "image/png=quorvia.desktop;a.desktop\n");
        row("closed by a sign", group + "image/png=a.desktop;\n",
            group + "image/png=quorvia.desktop;a.desktop;\n");
        row("two, no line end", group + "image/png=a.desktop;b.desktop",
            group + "image/png=quorvia.desktop;a.desktop;b.desktop");
        row("blanks", group + "image/png =  a.desktop \n",
            group + "image/png =  quorvia.desktop;a.desktop \n");
        row("without an id", group + "image/png=\n", group + "image/png=quorvia.desktop;;\n");
        row("without an id, a blank", group + "image/png= \n", group + "image/png=quorvia.desktop;; \n");
        row("signs alone", group + "image/png=;;\n", group + "image/png=quorvia.desktop;;;;\n");
        row("a sign first", group + "image/png=;a.desktop\n",
            group + "image/png=quorvia.desktop;;a.desktop\n");
        row("two lines", group + "image/png=a.desktop\nimage/png=b.desktop\n",
            group + "image/png=quorvia.desktop;a.desktop\nimage/png=quorvia.desktop;b.desktop\n");
        row("the group twice", group + "[X]\n" + group + "image/png=a.desktop\n",
            group + "[X]\n" + group + "image/png=quorvia.desktop;a.desktop\n");
        row("odd lines", group + "what is this\n\n=\n;;\nimage/png=a.desktop\n\n\n",
            group + "what is this\n\n=\n;;\nimage/png=quorvia.desktop;a.desktop\n\n\n");
        row("no text of any code", group + "\xff\xfe=\x80\nimage/png=\xff.desktop\n",
            group + "\xff\xfe=\x80\nimage/png=quorvia.desktop;\xff.desktop\n");
        row("a zero", group + QByteArray("a\0b\nimage/png=a.desktop\n", 24),
            group + QByteArray("a\0b\nimage/png=quorvia.desktop;a.desktop\n", 40));
        row("lone returns", group + "a\rb\nimage/png=a.desktop\n",
            group + "a\rb\nimage/png=quorvia.desktop;a.desktop\n");
    }
    void thereAndBack()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        QCOMPARE(takenOver(text), expected);
        QCOMPARE(takenOver(expected), expected); // a second time changes nothing
        QCOMPARE(idsOf(expected, defaultApplications, type).value(0), own);
        QCOMPARE(givenBack(expected), text);
        QCOMPARE(givenBack(text), text);
    }

    void manyTypesInBothGroups_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("open end") << QByteArray("[X]\na=b");
        QTest::newRow("one group") << QByteArray("#\n[Added Associations]\nimage/gif=g.desktop;\n");
        QTest::newRow("both") << QByteArray("[Default Applications]\r\nimage/gif=g.desktop\r\n\r\n[Added "
                                            "Associations]\r\nimage/png=a.desktop;");
    }
    void manyTypesInBothGroups()
    {
        QFETCH(QByteArray, text);
        const QList<QByteArray> types{"image/png", "image/gif", "image/bmp"};
        QByteArray changed = text;
        for (const char* group : {defaultApplications, addedAssociations}) {
            for (const QByteArray& each : types)
                changed = withFirst(changed, group, each, own);
        }
        for (const char* group : {defaultApplications, addedAssociations}) {
            for (const QByteArray& each : types)
                QCOMPARE(idsOf(changed, group, each).value(0), own);
        }
        for (const QByteArray& each : types) {
            for (const char* group : {defaultApplications, addedAssociations})
                changed = withoutId(changed, group, each, own);
        }
        QCOMPARE(changed, text);
    }

    /// What was changed by others meanwhile.
    void takingOut_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& text, const QByteArray& expected) {
            QTest::newRow(name) << "[Default Applications]\n" + text << "[Default Applications]\n" + expected;
        };
        row("alone", "image/png=quorvia.desktop\n", "");
        row("alone, closed by a sign", "image/png=quorvia.desktop;\n", "");
        row("in the middle", "image/png=a.desktop;quorvia.desktop;b.desktop\n",
            "image/png=a.desktop;b.desktop\n");
        row("at the end", "image/png=a.desktop;quorvia.desktop\n", "image/png=a.desktop\n");
        row("twice", "image/png=quorvia.desktop;a.desktop;quorvia.desktop;\n", "image/png=a.desktop;\n");
        row("a longer name", "image/png=org.quorvia.desktop;quorvia.desktop.old\n",
            "image/png=org.quorvia.desktop;quorvia.desktop.old\n");
        row("another type", "image/gif=quorvia.desktop\n", "image/gif=quorvia.desktop\n");
        row("another line came", "image/png=quorvia.desktop\na/b=c\n", "a/b=c\n");
    }
    void takingOut()
    {
        QFETCH(QByteArray, text);
        QTEST(givenBack(text), "expected");
    }

    void anEmptyGroupOfOthersStays()
    {
        QCOMPARE(givenBack("[Default Applications]\nimage/png=quorvia.desktop\n"),
                 QByteArray("[Default Applications]\n"));
        const QByteArray filled = takenOver("") + "a/b=c.desktop\n";
        QCOMPARE(givenBack(filled),
                 QByteArray("# Group added by Quorvia\n[Default Applications]\na/b=c.desktop\n"));
    }

    /// Blocks of ours behind each other, as programs that merge lists leave them.
    void blocksOfOursInARow_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("behind");
        QTest::newRow("two") << 2 << QByteArray() << QByteArray();
        QTest::newRow("three") << 3 << QByteArray() << QByteArray();
        QTest::newRow("between others") << 8 << QByteArray("[Y]\nc=d\n") << QByteArray("[X]\na=b\n");
    }
    void blocksOfOursInARow()
    {
        QFETCH(int, count);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, behind);
        const QByteArray block =
            "# Group added by Quorvia\n[Default Applications]\nimage/png=quorvia.desktop\n";
        QCOMPARE(givenBack(before + block.repeated(count) + behind), before + behind);
    }

    void outOfAllTypes()
    {
        QCOMPARE(withoutId("x=quorvia.desktop\n[Default Applications]\nimage/x-old=quorvia.desktop\n"
                           "# a=quorvia.desktop\na/b=c;quorvia.desktop\n[Added Associations]\n"
                           "image/x-old=quorvia.desktop\n",
                           defaultApplications, {}, own),
                 QByteArray("x=quorvia.desktop\n[Default Applications]\n# a=quorvia.desktop\na/b=c\n"
                            "[Added Associations]\nimage/x-old=quorvia.desktop\n"));
    }

    /// Our own marks, both groups, repeated blocks: no line of others is lost or moved.
    void anyTextWithMarksOfOurs()
    {
        const QList<QByteArray> pieces{"# Group added by Quorvia\n",
                                       "# Group added by Quorvia\n[Default Applications]\n",
                                       "[Default Applications]\n",
                                       "[Added Associations]\n",
                                       "image/png=quorvia.desktop\n",
                                       "image/gif=quorvia.desktop;a.desktop\n",
                                       "image/png=a.desktop\n",
                                       "[Other]\n",
                                       "# File added by Quorvia\n",
                                       "\r\n",
                                       "# mine\n",
                                       "x=y"};
        const auto foreign = [](const QByteArray& text) {
            QList<QByteArray> lines;
            for (const QByteArray& line : text.split('\n')) {
                const QByteArray word = line.trimmed();
                if (!word.isEmpty() && !word.contains(own) && !word.startsWith("# Group added") &&
                    word != "[Default Applications]" && word != "[Added Associations]")
                    lines.append(word);
            }
            return lines;
        };
        QRandomGenerator random(1122);
        for (int round = 0; round < 20000; ++round) {
            QByteArray text;
            for (int i = random.bounded(16); i > 0; --i)
                text += pieces[random.bounded(int(pieces.size()))];
            QByteArray changed = text;
            for (const char* group : {defaultApplications, addedAssociations})
                changed = withoutId(changed, group, {}, own);
            QList<QByteArray> left = foreign(changed);
            left.removeIf([](const QByteArray& line) { return line == "image/gif=a.desktop"; });
            QCOMPARE(left, foreign(text));
        }
    }

    void movesToTheFront()
    {
        QCOMPARE(takenOver("[Default Applications]\nimage/png=a.desktop;quorvia.desktop;\n"),
                 QByteArray("[Default Applications]\nimage/png=quorvia.desktop;a.desktop;\n"));
    }

    void aFreshFile()
    {
        QVERIFY(isFresh(freshText()));
        QVERIFY(!isFresh(""));
        QVERIFY(!isFresh(takenOver(freshText())));
        QVERIFY(isFresh(givenBack(takenOver(freshText()))));
    }

    /// Texts without sense, but with all that has a meaning in a list.
    void anyBytes()
    {
        const QList<QByteArray> pieces{"[Default Applications]",
                                       "image/png",
                                       "=",
                                       ";",
                                       "\n",
                                       "\r\n",
                                       "\r",
                                       " ",
                                       "a.desktop",
                                       "\xff",
                                       "[]",
                                       "[Other",
                                       "#",
                                       "]",
                                       "\t"};
        QRandomGenerator random(20261122);
        for (int round = 0; round < 20000; ++round) {
            QByteArray text;
            for (int i = random.bounded(24); i > 0; --i)
                text += pieces[random.bounded(int(pieces.size()))];
            const QByteArray changed = takenOver(text);
            QCOMPARE(idsOf(changed, defaultApplications, type).value(0), own);
            QCOMPARE(givenBack(changed), text);
        }
    }
};

QTEST_GUILESS_MAIN(TestMimeAppsText)
#include "tst_mimeappstext.moc"
