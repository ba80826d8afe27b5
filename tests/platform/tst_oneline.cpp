#include "platform/OneLine.h"

#include <QTest>

using namespace quorvia::platform;

class TestOneLine : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* name, const QString& text, const QString& shown) {
            QTest::newRow(name) << text << shown;
        };
        row("empty", QString(), QString());
        row("plain", QStringLiteral("beach"), QStringLiteral("beach"));
        row("blanks stay", QStringLiteral(" two  words "), QStringLiteral(" two  words "));
        row("line feed", QStringLiteral("a\nb"), QStringLiteral("a b"));
        row("carriage return and tab", QStringLiteral("a\r\tb"), QStringLiteral("a  b"));
        row("escape and delete", QStringLiteral("a\u001b\u007fb"), QStringLiteral("a  b"));
        row("next line", QStringLiteral("a\u0085b"), QStringLiteral("a b"));
        row("separators", QStringLiteral("a\u2028b\u2029c"), QStringLiteral("a b c"));
        row("other letters", QStringLiteral("ü\u4e2d\U0001F600"), QStringLiteral("ü\u4e2d\U0001F600"));
    }

    void lines()
    {
        QFETCH(QString, text);
        QTEST(oneLine(text), "shown");
    }

    void aToolTipIsNoMarkUp()
    {
        QCOMPARE(plainToolTip(QStringLiteral("/a/<img src=x>&\n")),
                 QStringLiteral("<span>/a/&lt;img src=x&gt;&amp; </span>"));
    }
};

QTEST_GUILESS_MAIN(TestOneLine)
#include "tst_oneline.moc"
