#include "collections/EntryText.h"

#include <QTest>

using namespace quorvia::collections;

class TestEntryText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("an entry's text") << "3. c (JPG)" << 3;
        QTest::newRow("several digits") << "20000. a. b (JPG)" << 20000;
        QTest::newRow("a file name") << "c.jpg" << 0;
        QTest::newRow("a file name that begins so") << "3. c.jpg" << 3;
        QTest::newRow("more than an integer holds") << "99999999999. c (JPG)" << 0;
        QTest::newRow("nothing") << "" << 0;
    }

    void numbers()
    {
        QFETCH(QString, text);
        QTEST(numberOf(text), "number");
    }

    void entries_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, int number, const QString& path, const QString& text) {
            QTest::newRow(name) << number << path << text;
        };
        row("plain", 3, "/pictures/beach.jpg", "3. beach (JPG)");
        row("upper case", 1, "/pictures/BEACH.JPG", "1. BEACH (JPG)");
        row("several points", 2, "/p/a.b.tif", "2. a.b (TIF)");
        row("no extension", 4, "/p/beach", "4. beach ()");
        row("a point in the folder", 5, "/p.q/beach", "5. beach ()");
        row("blanks", 6, "/p/two words .png", "6. two words  (PNG)");
        row("place holders", 7, "/p/%1 %2.png", "7. %1 %2 (PNG)");
        row("a line feed", 8, "/p/a\nb.png", "8. a\nb (PNG)");
        row("large number", 20000, "/p/a.gif", "20000. a (GIF)");
    }

    void entries()
    {
        QFETCH(int, number);
        QFETCH(QString, path);
        QTEST(entryText(number, path), "text");
    }

    void presses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("pressed");
        const auto row = [](const char* name, const QString& text, const QString& pressed) {
            QTest::newRow(name) << text << pressed;
        };
        row("empty", "", "");
        row("none", "1. beach (JPG)", "1. beach (JPG)");
        row("one", "1. a * b (JPG)", "1. a - b (JPG)");
        row("four", "a * b * c * d * e", "a - b - c - d - e");
        row("the fifth stays", "a * b * c * d * e * f", "a - b - c - d - e * f");
        row("without blanks", "a*b", "a*b");
        row("one blank", "a* b *c", "a* b *c");
        row("a blank serves once", "a * * b", "a - * b");
        row("at the ends", " * a * ", " - a - ");
    }

    void presses()
    {
        QFETCH(QString, text);
        QTEST(pressedText(text), "pressed");
    }

    void counts_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << 0 << "0 Images";
        QTest::newRow("one") << 1 << "1 Images";
        QTest::newRow("three digits") << 999 << "999 Images";
        QTest::newRow("four digits") << 1000 << "1,000 Images";
        QTest::newRow("five digits") << 20000 << "20,000 Images";
        QTest::newRow("seven digits") << 1234567 << "1,234,567 Images";
    }

    void counts()
    {
        QFETCH(int, count);
        QTEST(countText(count), "text");
    }

    void countsLookAlikeInEveryLanguage()
    {
        QLocale::setDefault(QLocale(QLocale::German));
        const QString text = countText(1234);
        QLocale::setDefault(QLocale::c());
        QCOMPARE(text, QStringLiteral("1,234 Images"));
    }
};

QTEST_GUILESS_MAIN(TestEntryText)
#include "tst_entrytext.moc"
