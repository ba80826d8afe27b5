#include "commands/SizeFields.h"

#include <QTest>

using namespace quorvia::commands;

namespace {

SizeFields fieldsOf(QSize original, SizeUnit width, SizeUnit height, bool constrained)
{
    SizeFields fields = SizeFields::of(original);
    fields.width.unit = width;
    fields.height.unit = height;
    fields.constrain(constrained);
    return fields;
}

constexpr SizeUnit pixels = SizeUnit::Pixels;
constexpr SizeUnit percent = SizeUnit::Percent;

} // namespace

class TestSizeFields : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void wholeNumbers_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("letters") << "abc" << 0;
        QTest::newRow("whole") << "640" << 640;
        QTest::newRow("fraction") << "12.7" << 12;
        QTest::newRow("behind the digits") << "12px" << 12;
        QTest::newRow("before the digits") << "x12" << 0;
        QTest::newRow("blanks") << "  7 8" << 7;
        QTest::newRow("leading zeros") << "0012" << 12;
        QTest::newRow("below zero") << "-5" << 0;
        QTest::newRow("the largest") << "65535" << 65535;
        QTest::newRow("one more") << "65536" << 65535;
        QTest::newRow("huge") << QString(4000, u'9') << 65535;
        QTest::newRow("digits of another script") << QString::fromUtf8("٣") << 0;
    }
    void wholeNumbers()
    {
        QFETCH(QString, text);
        QTEST(wholeNumber(text), "number");
    }

    void display_data()
    {
        QTest::addColumn<double>("target");
        QTest::addColumn<int>("original");
        QTest::addColumn<bool>("inPercent");
        QTest::addColumn<QString>("text");
        QTest::newRow("pixels") << 640.0 << 1000 << false << "640";
        QTest::newRow("part of a pixel") << 640.5 << 1000 << false << "641";
        QTest::newRow("percent") << 640.0 << 1000 << true << "64";
        QTest::newRow("nearest") << 666.0 << 1000 << true << "67";
        QTest::newRow("what floating point misses") << 29.0 << 100 << true << "29";
        QTest::newRow("all of it") << 333.0 << 333 << true << "100";
        QTest::newRow("more") << 65535.0 << 1 << true << "65535";
        QTest::newRow("no original") << 10.0 << 0 << true << "0";
    }
    void display()
    {
        QFETCH(double, target);
        QFETCH(int, original);
        QFETCH(bool, inPercent);
        QTEST((SizeField{target, original, inPercent ? percent : pixels}.text()), "text");
    }

    void typing_data()
    {
        QTest::addColumn<QSize>("original");
        QTest::addColumn<bool>("widthInPercent");
        QTest::addColumn<bool>("heightInPercent");
        QTest::addColumn<bool>("constrained");
        QTest::addColumn<bool>("leads");
        QTest::addColumn<QString>("typed"); // as the height
        QTest::addColumn<QSize>("target");
        const QSize wide(1000, 500);
        QTest::newRow("free") << wide << false << false << false << true << "250" << QSize(1000, 250);
        QTest::newRow("constrained") << wide << false << false << true << true << "250" << QSize(500, 250);
        QTest::newRow("without the focus")
            << wide << false << false << true << false << "250" << QSize(1000, 250);
        QTest::newRow("percent") << wide << false << true << false << true << "50" << QSize(1000, 250);
        QTest::newRow("percent, constrained")
            << wide << true << true << true << true << "50" << QSize(500, 250);
        QTest::newRow("nothing") << wide << false << false << true << true << "" << QSize(0, 0);
        QTest::newRow("no number") << wide << false << false << false << true << "abc" << QSize(1000, 0);
        QTest::newRow("to the nearest pixel")
            << QSize(3, 3) << false << true << false << true << "40" << QSize(3, 1);
        QTest::newRow("too large") << wide << false << false << true << true << "99999"
                                   << QSize(65535, 65535);
        QTest::newRow("100 % of odd pixels")
            << QSize(333, 777) << true << true << true << true << "100" << QSize(333, 777);
        QTest::newRow("no original") << QSize(0, 0) << false << false << true << true << "9" << QSize(0, 9);
        QTest::newRow("no original, percent")
            << QSize(0, 0) << true << true << true << true << "9" << QSize(0, 0);
    }
    void typing()
    {
        QFETCH(QSize, original);
        QFETCH(bool, widthInPercent);
        QFETCH(bool, heightInPercent);
        QFETCH(bool, constrained);
        QFETCH(bool, leads);
        QFETCH(QString, typed);
        SizeFields fields = fieldsOf(original, widthInPercent ? percent : pixels,
                                     heightInPercent ? percent : pixels, constrained);
        fields.takeHeight(typed, leads);
        QTEST(fields.target(), "target");
        // The same with the parts of both swapped.
        QFETCH(QSize, target);
        SizeFields swapped = fieldsOf(original.transposed(), heightInPercent ? percent : pixels,
                                      widthInPercent ? percent : pixels, constrained);
        swapped.takeWidth(typed, leads);
        QCOMPARE(swapped.target(), target.transposed());
    }

    void everyPercentageShowsAsItWasTyped()
    {
        for (const int original : {1, 3, 7, 333, 4000}) {
            for (int share = 0; share <= 400; ++share) {
                SizeField field{double(original), original, percent};
                field.take(QString::number(share));
                QCOMPARE(field.text(), QString::number(share));
            }
        }
    }

    void constrainingTakesTheWidthFromTheHeight()
    {
        SizeFields fields = SizeFields::of({1000, 500});
        fields.takeWidth("10", true);
        fields.takeHeight("100", true);
        fields.constrain(true);
        QCOMPARE(fields.target(), QSize(200, 100));
        fields.constrain(false);
        QCOMPARE(fields.target(), QSize(200, 100));
        fields.takeHeight("300", true);
        QCOMPARE(fields.target(), QSize(200, 300));
    }

    void theProportionsAreTheOriginalOnes()
    {
        SizeFields fields = fieldsOf({1000, 500}, pixels, pixels, true);
        for (const char* typed : {"3", "1", "333", "7", "250"}) // a way over small sizes loses nothing
            fields.takeHeight(QLatin1String(typed), true);
        QCOMPARE(fields.target(), QSize(500, 250));
    }

    void aSizeBelowZeroIsNone() { QCOMPARE(SizeFields::of({-1, -1}).target(), QSize(0, 0)); }
};

QTEST_GUILESS_MAIN(TestSizeFields)
#include "tst_sizefields.moc"
