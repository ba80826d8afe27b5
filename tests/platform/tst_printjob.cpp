// What a job is asked with, and which printer can be used.
#include "platform/Printer.h"
#include "platform/PrintJob.h"

#include <QtTest>

using namespace quorvia::platform;

namespace {

class Usable : public Printer
{
  public:
    Usable(QSize page, const QString& name) : m_page(page), m_name(name) {}
    QString deviceName() const override { return m_name; }
    QSize pageSize() const override { return m_page; }
    int resolution() const override { return 300; }
    PageOrientation orientation() const override { return PageOrientation::Portrait; }
    void setOrientation(PageOrientation) override {}
    int copies() const override { return 1; }
    void setCopies(int) override {}
    bool printPage(const QImage&, const QRect&, const QString&, QString*) override { return false; }

  private:
    QSize m_page;
    QString m_name;
};

} // namespace

class TestPrintJob : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void usable_data()
    {
        QTest::addColumn<QSize>("page");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("usable");
        QTest::newRow("nothing") << QSize() << "" << false;
        QTest::newRow("both 100") << QSize(100, 100) << "Name" << false;
        QTest::newRow("the first above") << QSize(101, 0) << "" << true;
        QTest::newRow("the second above") << QSize(0, 101) << "" << false;
        QTest::newRow("the second above, with a name") << QSize(0, 101) << "Name" << true;
        QTest::newRow("the second 100, with a name") << QSize(0, 100) << "Name" << false;
        QTest::newRow("A4") << QSize(11906, 16838) << "Name" << true;
    }
    void usable()
    {
        QFETCH(QSize, page);
        QFETCH(QString, name);
        QTEST(isUsablePrinter(page.width(), page.height(), name), "usable");
        QTEST(isUsablePrinter(Usable(page, name)), "usable");
    }

    void resolutions_data()
    {
        QTest::addColumn<QList<int>>("supported");
        QTest::addColumn<QSize>("paper"); // hundredths of a millimetre
        QTest::addColumn<int>("chosen");
        const QSize a4(21000, 29700);
        const QSize a0(84100, 118900);
        QTest::newRow("none told") << QList<int>{} << a4 << 300;
        QTest::newRow("300 among them") << QList<int>{600, 300, 150} << a4 << 300;
        QTest::newRow("below") << QList<int>{100, 200, 600} << a4 << 200;
        QTest::newRow("all above") << QList<int>{600, 1200} << a4 << 300;
        QTest::newRow("one below") << QList<int>{203} << a4 << 203;
        QTest::newRow("nonsense") << QList<int>{0, -5} << a4 << 300;
        QTest::newRow("no paper") << QList<int>{} << QSize() << 300;
        QTest::newRow("A3") << QList<int>{300} << QSize(29700, 42000) << 300;
        QTest::newRow("A1") << QList<int>{300} << QSize(59400, 84100) << 300;
        QTest::newRow("A0") << QList<int>{300} << a0 << 215;
        QTest::newRow("A0, and the printer has less") << QList<int>{150, 600} << a0 << 150;
        QTest::newRow("a roll of labels") << QList<int>{300} << QSize(6200, 3'048'000) << 156;
        QTest::newRow("a wide roll") << QList<int>{300} << QSize(91440, 3'048'000) << 40;
        QTest::newRow("beyond all measure") << QList<int>{300} << QSize(300'000'000, 300'000'000) << 1;
    }
    void resolutions()
    {
        QFETCH(QList<int>, supported);
        QFETCH(QSize, paper);
        QFETCH(int, chosen);
        const QSize twips = paperTwips(paper);
        QCOMPARE(pageResolution(supported, twips), chosen);
        QCOMPARE(pageResolution(supported, twips.transposed()), chosen);
        const double pixels = double(twips.width()) * twips.height() * chosen * chosen / (1440.0 * 1440.0);
        QVERIFY(pixels <= 72e6 || chosen == 1);
    }

    void papers()
    {
        QCOMPARE(paperTwips({21000, 29700}), QSize(11906, 16838));
        QCOMPARE(paperTwips({21590, 27940}), QSize(12240, 15840));
        QCOMPARE(usualPaper(QLocale(QLocale::German, QLocale::Germany)), QSize(11906, 16838));
        QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedKingdom)), QSize(11906, 16838));
        QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedStates)), QSize(12240, 15840));
    }

    void names_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QByteArray>("name");
        const QString chinese(QChar(0x5716));
        const QByteArray chineseBytes("\xE5\x9C\x96");
        const QString smile = QStringLiteral("\U0001F600");
        const QByteArray smileBytes("\xF0\x9F\x98\x80");
        const auto letters = [](int count) { return QString(count, u'a'); };
        const auto bytes = [](int count) { return QByteArray(count, 'a'); };
        QTest::newRow("empty") << "" << QByteArray();
        QTest::newRow("plain") << "Folder/a.png" << QByteArray("Folder/a.png");
        QTest::newRow("lines") << "a\nb\r\nc\td" << QByteArray("a b  c d");
        QTest::newRow("control characters")
            << QString::fromUtf16(u"a\u0001b\u007Fc\u0085d") << QByteArray("a b c d");
        QTest::newRow("separators") << QString::fromUtf16(u"a\u2028b\u2029c") << QByteArray("a b c");
        QTest::newRow("a zero") << QString("a") + QChar(0) + "b" << QByteArray("a b");
        QTest::newRow("255 bytes") << letters(255) << bytes(255);
        QTest::newRow("256 bytes") << letters(256) << bytes(255);
        QTest::newRow("85 of three bytes") << chinese.repeated(85) << chineseBytes.repeated(85);
        QTest::newRow("one of three bytes too many") << chinese.repeated(86) << chineseBytes.repeated(85);
        QTest::newRow("two bytes cut") << "a" + chinese.repeated(85) << "a" + chineseBytes.repeated(84);
        QTest::newRow("one byte cut") << "aa" + chinese.repeated(85) << "aa" + chineseBytes.repeated(84);
        QTest::newRow("a pair at the end") << letters(251) + smile << bytes(251) + smileBytes;
        QTest::newRow("a pair across the end") << letters(254) + smile << bytes(254);
        QTest::newRow("a pair behind the end") << letters(255) + smile << bytes(255);
        QTest::newRow("very long") << chinese.repeated(32'767) << chineseBytes.repeated(85);
    }
    void names()
    {
        QFETCH(QString, title);
        QTEST(jobName(title), "name");
    }

    void options_data()
    {
        QTest::addColumn<bool>("kept");
        for (const char* name : {"orientation-requested",
                                 "landscape",
                                 "number-up",
                                 "number-up-layout",
                                 "page-ranges",
                                 "page-set",
                                 "fit-to-page",
                                 "fitplot",
                                 "scaling",
                                 "natural-scaling",
                                 "ppi",
                                 "mirror",
                                 "position",
                                 "page-border",
                                 "page-left",
                                 "page-right",
                                 "page-top",
                                 "page-bottom",
                                 "copies",
                                 "Number-Up"})
            QTest::newRow(name) << false;
        for (const char* name : {"sides", "InputSlot", "media-source", "media", "media-type", "PageSize",
                                 "print-quality", "Duplex", "number", "pages", ""})
            QTest::newRow(*name ? name : "no name") << true;
    }
    void options()
    {
        const QByteArray name(QTest::currentDataTag());
        QTEST(isKeptOption(name == "no name" ? QByteArray() : name), "kept");
    }

    void copies_data()
    {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("count");
        QTest::newRow("null") << QByteArray() << 1;
        QTest::newRow("empty") << QByteArray("") << 1;
        QTest::newRow("three") << QByteArray("3") << 3;
        QTest::newRow("zero") << QByteArray("0") << 1;
        QTest::newRow("below") << QByteArray("-2") << 1;
        QTest::newRow("no number") << QByteArray("many") << 1;
        QTest::newRow("a number and more") << QByteArray("3x") << 1;
        QTest::newRow("too much for a number") << QByteArray("99999999999") << 1;
    }
    void copies()
    {
        QFETCH(QByteArray, value);
        QTEST(firstCopies(value.isNull() ? nullptr : value.constData()), "count");
    }
};

QTEST_MAIN(TestPrintJob)
#include "tst_printjob.moc"
