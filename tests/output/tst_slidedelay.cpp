#include "output/SlideDelay.h"

#include <QTest>

using namespace quorvia::output;

class TestSlideDelay : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void texts_data();
    void texts();
    void numbers_data();
    void numbers();
    void delays_data();
    void delays();
};

void TestSlideDelay::texts_data()
{
    QTest::addColumn<int>("milliseconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("two seconds") << 2000 << "2";
    QTest::newRow("two and a half") << 2500 << "2.5";
    QTest::newRow("a minute") << 60000 << "60";
    QTest::newRow("every digit") << 1234 << "1.234";
    QTest::newRow("a millisecond") << 1 << "0.001";
    QTest::newRow("the longest of all") << 2147483647 << "2147483.647";
}

void TestSlideDelay::texts()
{
    QFETCH(int, milliseconds);
    QTEST(delayText(milliseconds), "text");
}

void TestSlideDelay::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("number");
    QTest::newRow("whole") << "12" << 12.0;
    QTest::newRow("fraction") << "1.5" << 1.5;
    QTest::newRow("fraction alone") << ".5" << 0.5;
    QTest::newRow("ends in its point") << "3." << 3.0;
    QTest::newRow("blanks before") << "  7" << 7.0;
    QTest::newRow("words behind") << "7 seconds" << 7.0;
    QTest::newRow("a second point") << "1.2.3" << 1.2;
    QTest::newRow("comma") << "1,5" << 1.0;
    QTest::newRow("minus") << "-4" << -4.0;
    QTest::newRow("plus") << "+4" << 4.0;
    QTest::newRow("exponent") << "2e1" << 20.0;
    QTest::newRow("no exponent behind its sign") << "2e" << 2.0;
    QTest::newRow("letters") << "abc" << 0.0;
    QTest::newRow("letters first") << "a1" << 0.0;
    QTest::newRow("a word for a number") << "inf" << 0.0;
    QTest::newRow("point alone") << "." << 0.0;
    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("beyond all bounds") << "1e999" << qInf();
    QTest::newRow("other digits") << QStringLiteral("\u0665") << 0.0;
}

void TestSlideDelay::numbers()
{
    QFETCH(QString, text);
    QTEST(leadingNumber(text), "number");
}

void TestSlideDelay::delays_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("said");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("a half") << "0.5"
                            << "1" << 1000;
    QTest::newRow("just below one") << "0.999"
                                    << "1" << 1000;
    QTest::newRow("one") << "1"
                         << "1" << 1000;
    QTest::newRow("one and a half") << "1.5"
                                    << "1.5" << 1500;
    QTest::newRow("thirty") << "30"
                            << "30" << 30000;
    QTest::newRow("sixty") << "60"
                           << "60" << 60000;
    QTest::newRow("just above sixty") << "60.01"
                                      << "60" << 60000;
    QTest::newRow("sixty-one") << "61"
                               << "60" << 60000;
    QTest::newRow("beyond all bounds") << "1e999"
                                       << "60" << 60000;
    QTest::newRow("letters") << "abc"
                             << "1" << 1000;
    QTest::newRow("empty") << ""
                           << "1" << 1000;
    QTest::newRow("minus") << "-5"
                           << "1" << 1000;
    QTest::newRow("rounds down") << "1.2344"
                                 << "1.2344" << 1234;
    QTest::newRow("rounds up") << "1.2346"
                               << "1.2346" << 1235;
    QTest::newRow("what stands behind stays") << "5 s"
                                              << "5 s" << 5000;
}

void TestSlideDelay::delays()
{
    QFETCH(QString, text);
    const SlideDelay delay = typedDelay(text);
    QTEST(delay.text, "said");
    QTEST(delay.milliseconds, "milliseconds");
}

QTEST_GUILESS_MAIN(TestSlideDelay)
#include "tst_slidedelay.moc"
