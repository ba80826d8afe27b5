// Text as a picture: its lines, its size and its bounds.
#include "output/ClipboardLayout.h"
#include "output/ClipboardText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QTest>

#include <cmath>

using namespace quorvia::output;

namespace {

double screenRatio()
{
    return qApp->devicePixelRatio();
}

/// The smallest rectangle with all that is not white.
QRect inked(const QImage& image)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

QImage printed(const QString& text)
{
    return printText(text, QApplication::font(), screenRatio()).image;
}

int lineHeight()
{
    return int(std::ceil(std::ceil(QFontMetricsF(QApplication::font()).lineSpacing()) * screenRatio()));
}

int margin()
{
    return devicePixels(QSize(200, 200), screenRatio()).width();
}

} // namespace

class TestClipboardText : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void whatIsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isText");
        QTest::newRow("nothing") << "" << false;
        QTest::newRow("blanks") << "   " << false;
        QTest::newRow("blanks, tabs and line ends") << " \t\r\n \n" << false;
        QTest::newRow("a blank that does not break") << QString(QChar(0xa0)) << false;
        QTest::newRow("a letter") << "a" << true;
        QTest::newRow("a letter among blanks") << "  \n a  " << true;
        QTest::newRow("a zero character") << QString(QChar(0)) << true;
    }

    void whatIsText()
    {
        QFETCH(QString, text);
        QTEST(isClipboardText(text), "isText");
    }

    void lines_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<bool>("cut");
        // Bounds: four lines of eight letters, twenty letters in all.
        QTest::newRow("one") << "one" << QStringList{"one"} << false;
        QTest::newRow("blanks stay") << "  a " << QStringList{"  a "} << false;
        QTest::newRow("line ends") << "a\nb\r\nc\rd" << QStringList{"a", "b", "c", "d"} << false;
        QTest::newRow("separators") << QString("a%1b%2c").arg(QChar(0x2028)).arg(QChar(0x2029))
                                    << QStringList{"a", "b", "c"} << false;
        QTest::newRow("empty lines") << "\n\na" << QStringList{"", "", "a"} << false;
        QTest::newRow("an end of line at the end") << "a\n" << QStringList{"a", ""} << false;
        QTest::newRow("too many lines") << "a\nb\nc\nd\ne" << QStringList{"a", "b", "c", "d"} << true;
        QTest::newRow("a line too long") << "123456789\na" << QStringList{"12345678", "a"} << true;
        QTest::newRow("too many letters")
            << "1234567\n1234567\n12345678" << QStringList{"1234567", "1234567", "1234"} << true;
    }

    void lines()
    {
        QFETCH(QString, text);
        bool cut = false;
        const TextBounds bounds{.maxSide = 8, .maxPixels = 1000, .maxLetters = 20};
        QTEST(printedLines(text, 2, bounds, cut), "lines");
        QTEST(cut, "cut");
    }

    void isBlackOnWhite()
    {
        const QImage image = printed(QStringLiteral("Il_|#"));
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(image.devicePixelRatio(), 1.0);
        int darkest = 255;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                darkest = std::min(darkest, qGray(image.pixel(x, y)));
        }
        QVERIFY2(darkest < 60, qPrintable(QString::number(darkest)));
        QCOMPARE(image.pixel(image.width() - 1, image.height() - 1), qRgb(255, 255, 255));
    }

    void isLargerThanItsText()
    {
        const QImage image = printed(QStringLiteral("MMMM"));
        const QRect ink = inked(image);
        const double width = QFontMetricsF(QApplication::font()).horizontalAdvance(QStringLiteral("MMMM"));
        QVERIFY(std::abs(image.width() - margin() - width * screenRatio()) <= 2);
        QCOMPARE(image.height() - margin(), lineHeight());
        QVERIFY(ink.left() <= 3 * screenRatio()); // at the top left
        QVERIFY(ink.bottom() < lineHeight());
        QVERIFY(ink.right() < image.width() - margin() + 2);
    }

    void everyLineIsPrinted()
    {
        const QImage one = printed(QStringLiteral("M"));
        const QImage three = printed(QStringLiteral("M\n\nM"));
        QCOMPARE(three.height() - one.height(), 2 * lineHeight());
        const QRect ink = inked(three);
        QVERIFY(ink.top() < lineHeight() && ink.bottom() > 2 * lineHeight());
        QVERIFY(inked(three.copy(0, lineHeight(), three.width(), lineHeight())).isEmpty());
    }

    void tabsAreExpanded()
    {
        const int plain = inked(printed(QStringLiteral("M"))).right();
        const int once = inked(printed(QStringLiteral("\tM"))).right();
        const int twice = inked(printed(QStringLiteral("\t\tM"))).right();
        QVERIFY(once - plain > 20 * screenRatio());
        QVERIFY(std::abs((twice - once) - (once - plain)) <= 2);
        const QImage image = printed(QStringLiteral("\t\tM"));
        QVERIFY(image.width() - margin() >= twice); // no letter is cut off
    }

    void ampersandsAreLetters()
    {
        QVERIFY(printed(QStringLiteral("a&b")).width() > printed(QStringLiteral("ab")).width());
    }

    void writingFromTheRightStandsAtTheLeftToo()
    {
        const QString hebrew = QString::fromUtf8("\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d");
        const QImage image = printed(QStringLiteral("MMMMMMMMMMMMMMMM\n") + hebrew);
        const QRect second = inked(image.copy(0, lineHeight(), image.width(), lineHeight()));
        QVERIFY(!second.isEmpty());
        QVERIFY(second.left() < image.width() / 4);
    }

    void isSharpOnTheScreen()
    {
        const QFont font = QApplication::font();
        const PrintedText once = printText(QStringLiteral("M"), font, 1);
        const PrintedText twice = printText(QStringLiteral("M"), font, 2);
        QVERIFY(std::abs(twice.image.width() - 2 * once.image.width()) <= 2);
        QVERIFY(inked(twice.image).width() > inked(once.image).width() * 3 / 2);
    }

    void boundsOfAPicture_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("cut");
        QTest::newRow("small") << "a" << false;
        QTest::newRow("a megabyte on a line") << QString(1 << 20, u'a') << true;
        QTest::newRow("a million empty lines") << QString(1'000'000, u'\n') << true;
        QTest::newRow("a megabyte of lines")
            << QString("The quick brown fox jumps over the dog.\n").repeated(26215) << true;
        QTest::newRow("wide and high")
            << QString(QString(60000, u'W') + u'\n').repeated(40) + QString(5000, u'\n') << true;
        QTest::newRow("letters without width") << QString("a") + QString(1 << 20, QChar(0x301)) << true;
    }

    void boundsOfAPicture()
    {
        QFETCH(QString, text);
        QElapsedTimer clock;
        clock.start();
        const PrintedText result = printText(text, QApplication::font(), screenRatio());
        qInfo("%lld ms, %d x %d", clock.elapsed(), result.image.width(), result.image.height());
        QTEST(result.cut, "cut");
        QVERIFY(!result.image.isNull());
        QVERIFY(result.image.width() <= 65535 && result.image.height() <= 65535);
        QVERIFY(qint64(result.image.width()) * result.image.height() <= 64'000'000);
    }

    void theFarEndOfALongLineIsPrinted()
    {
        const QImage image = printed(QString(60000, u'M'));
        QCOMPARE(image.width(), 65535);
        QVERIFY(!inked(image.copy(65000, 0, 500, image.height())).isEmpty());
    }
};

QTEST_MAIN(TestClipboardText)
#include "tst_clipboardtext.moc"
