// What stands in the pages of help for a mark, and the keys of parts of the program against these parts.
#include "../collections/FilmBench.h"
#include "app/Product.h"
#include "collections/PanelKeys.h"
#include "HelpPage.h"
#include "OtherKeys.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QTest>

using namespace quorvia;
using namespace quorvia::help;

namespace {

/// The key of a text such as "Ctrl+Page Up"; none for one of the mouse.
QKeyCombination keyOf(QString text)
{
    text.replace(QStringLiteral("Page Up"), QStringLiteral("PgUp"));
    text.replace(QStringLiteral("Page Down"), QStringLiteral("PgDown"));
    const QKeySequence keys = QKeySequence::fromString(text, QKeySequence::PortableText);
    return keys.isEmpty() ? QKeyCombination() : keys[0];
}

QList<QKeyCombination> keysOfPart(const char* part)
{
    QList<QKeyCombination> keys;
    for (const OtherKey& row : otherKeys(QLatin1String(part))) {
        for (const QString& key : separateKeys(row)) {
            if (const QKeyCombination found = keyOf(key); found.key() != Qt::Key_unknown && found.key() != 0)
                keys.append(found);
        }
    }
    return keys;
}

} // namespace

class TestHelpParts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void marks_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("html");
        QTest::newRow("none") << "<p>a { b } c</p>"
                              << "<p>a { b } c</p>";
        QTest::newRow("version") << "v{{version}}."
                                 << QStringLiteral("v%1.").arg(
                                        app::versionText(app::productVersion(), QStringLiteral(".")));
        QTest::newRow("fixed key") << "{{key miNext}}"
                                   << "<kbd>Right</kbd>";
        QTest::newRow("shortcut") << "{{key miOpen}}, {{key miSave}}"
                                  << "<kbd>Ctrl+O</kbd>, <kbd>Ctrl+S</kbd>";
        QTest::newRow("mail") << "{{key miEmailImage}}"
                              << "<kbd>Ctrl+E</kbd>";
        QTest::newRow("part")
            << "{{keys-of size}}"
            << "<table class=\"keys\">\n"
               "<tr><th scope=\"row\"><kbd>Alt+W</kbd> <kbd>Alt+H</kbd></th>"
               "<td>go to the width or the height</td></tr>\n"
               "<tr><th scope=\"row\"><kbd>Alt+C</kbd></th><td>change the check box</td></tr>\n"
               "<tr><th scope=\"row\"><kbd>Alt+A</kbd></th><td>apply</td></tr>\n</table>";
    }

    void marks()
    {
        QFETCH(QString, source);
        const HelpPage page = filledPage(source);
        QCOMPARE(page.error, QString());
        QTEST(page.html, "html");
    }

    void keysThatDoTheSameShareARow()
    {
        const QString html = filledPage(QStringLiteral("{{keys-of-window}}")).html;
        QVERIFY2(html.contains(QStringLiteral(
                     "<tr data-command=\"miNext\"><th scope=\"row\"><kbd>Right</kbd> <kbd>Down</kbd> "
                     "<kbd>]</kbd> <kbd>Ctrl+N</kbd></th><td>go to the next image</td></tr>")),
                 qPrintable(html));
    }

    void whatIsNotKnownIsAnError_data()
    {
        QTest::addColumn<QString>("mark");
        for (const char* const mark : {"{{}}", "{{keys}}", "{{key}}", "{{key miBevel}}", "{{key miNoSuch}}",
                                       "{{keys-of nothing}}", "{{ version }}"})
            QTest::newRow(mark) << QString::fromLatin1(mark);
    }

    void whatIsNotKnownIsAnError()
    {
        QFETCH(QString, mark);
        const HelpPage page = filledPage(QStringLiteral("a") + mark + QStringLiteral("b"));
        QVERIFY2(page.error.endsWith(mark), qPrintable(page.error));
        QCOMPARE(page.html, QString());
    }

    void everyPartHasKeys()
    {
        QVERIFY(otherParts().size() > 8);
        for (const QString& part : otherParts())
            QVERIFY2(!otherKeys(part).empty(), qPrintable(part));
        QVERIFY(otherKeys(QStringLiteral("nothing")).empty());
    }

    void thePanelKeepsItsKeys_data()
    {
        QTest::addColumn<int>("part");
        QTest::addColumn<QString>("keys");
        QTest::addColumn<int>("count");
        QTest::newRow("list") << int(collections::PanelPart::List) << "list" << 10;
        QTest::newRow("tree") << int(collections::PanelPart::Tree) << "tree" << 11;
    }

    void thePanelKeepsItsKeys()
    {
        QFETCH(int, part);
        QFETCH(QString, keys);
        const QList<QKeyCombination> all = keysOfPart(qPrintable(keys));
        QTEST(int(all.size()), "count");
        for (const QKeyCombination& key : all) {
            if (key.key() != Qt::Key_Tab) // which the panel takes before
                QVERIFY2(
                    collections::keepsKey(collections::PanelPart(part), key.key(), key.keyboardModifiers()),
                    qPrintable(QKeySequence(key).toString()));
        }
    }

    void theStripTakesItsKeys()
    {
        test::FilmBench bench;
        bench.addMany(3);
        QVERIFY(bench.draws());
        const QList<QKeyCombination> all = keysOfPart("strip");
        QCOMPARE(all.size(), 11);
        for (const QKeyCombination& key : all) {
            if (key.key() == Qt::Key_Tab) { // which walks to the strip
                QVERIFY(bench.strip->focusPolicy() & Qt::TabFocus);
                continue;
            }
            QKeyEvent event(QEvent::KeyPress, key.key(), key.keyboardModifiers());
            QCoreApplication::sendEvent(bench.strip.get(), &event);
            QVERIFY2(event.isAccepted(), qPrintable(QKeySequence(key).toString()));
        }
    }
};

QTEST_MAIN(TestHelpParts)
#include "tst_helpparts.moc"
