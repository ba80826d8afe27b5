// The page that goes to a printer, read back by other programs, and what a printer is asked.
#include "platform/CupsPrinter.h"
#include "platform/PrintDocument.h"

#include <QBuffer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace quorvia::platform;

namespace {

/// Each pixel differs from its neighbours.
QImage pattern(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb((x * 7) & 255, (y * 11) & 255, (x * y + 3) & 255));
    }
    return image;
}

QByteArray output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0 ? process.readAllStandardOutput()
                                                                : QByteArray();
}

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

class TestPrintDocument : public QObject
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
        QTest::addColumn<int>("chosen");
        QTest::newRow("none told") << QList<int>{} << 300;
        QTest::newRow("300 among them") << QList<int>{600, 300, 150} << 300;
        QTest::newRow("below") << QList<int>{100, 200, 600} << 200;
        QTest::newRow("all above") << QList<int>{600, 1200} << 300;
        QTest::newRow("one below") << QList<int>{203} << 203;
        QTest::newRow("nonsense") << QList<int>{0, -5} << 300;
    }
    void resolutions()
    {
        QFETCH(QList<int>, supported);
        QTEST(pageResolution(supported), "chosen");
    }

    void papers()
    {
        QCOMPARE(paperTwips({21000, 29700}), QSize(11906, 16838));
        QCOMPARE(paperTwips({21590, 27940}), QSize(12240, 15840));
        QCOMPARE(usualPaper(QLocale(QLocale::German, QLocale::Germany)), QSize(11906, 16838));
        QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedKingdom)), QSize(11906, 16838));
        QCOMPARE(usualPaper(QLocale(QLocale::English, QLocale::UnitedStates)), QSize(12240, 15840));
    }

    void pages_data()
    {
        QTest::addColumn<QSize>("paper");
        QTest::addColumn<QRect>("target");
        QTest::newRow("portrait") << QSize(11906, 16838) << QRect(550, 550, 10806, 15738);
        QTest::newRow("landscape") << QSize(16838, 11906) << QRect(550, 550, 15738, 10806);
        QTest::newRow("Letter") << QSize(12240, 15840) << QRect(1440, 2880, 1440, 720);
    }
    void pages()
    {
        QFETCH(QSize, paper);
        QFETCH(QRect, target);
        const QTemporaryDir folder;
        const QString path = folder.filePath("page.pdf");
        const QImage picture = pattern(301, 199);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QString why = "untouched";
        QVERIFY2(writePdfPage(file, paper, picture, target, QStringLiteral("Grüße (1)\\"), &why),
                 qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        file.close();

        const QString facts = QString::fromUtf8(output("pdfinfo", {path}));
        QVERIFY2(facts.contains(QStringLiteral("Grüße (1)\\\n")), qPrintable(facts));
        QVERIFY2(facts.contains(QRegularExpression("Pages: +1\n")), qPrintable(facts));
        QVERIFY2(facts.contains(QRegularExpression(QStringLiteral("Page size: +%1 x %2 pts")
                                                       .arg(qRound(paper.width() / 20.0))
                                                       .arg(qRound(paper.height() / 20.0)))),
                 qPrintable(facts));

        // The very pixels.
        output("pdfimages", {"-png", path, folder.filePath("held")});
        QCOMPARE(QImage(folder.filePath("held-000.png")).convertToFormat(QImage::Format_RGB32), picture);
        QVERIFY(!QFile::exists(folder.filePath("held-001.png")));

        // And where they are: 72 dots to the inch, 20 twips each.
        QVERIFY(!QFile::exists(folder.filePath("page.png")));
        output("pdftoppm", {"-png", "-singlefile", "-r", "72", path, folder.filePath("page")});
        const QImage page(folder.filePath("page.png"));
        const QRect inner((target.topLeft() + QPoint(20, 20)) / 20, target.size() / 20 - QSize(2, 2));
        for (int y = 0; y < page.height(); ++y) {
            for (int x = 0; x < page.width(); ++x) {
                const QPoint point(x, y);
                if (!inner.adjusted(-2, -2, 3, 3).contains(point)) {
                    QVERIFY2(page.pixel(point) == qRgb(255, 255, 255),
                             qPrintable(QString("%1 %2").arg(x).arg(y)));
                }
            }
        }
        for (const QPoint& corner : {inner.topLeft(), inner.bottomRight(), inner.center()})
            QVERIFY(page.pixel(corner) != qRgb(255, 255, 255));
    }

    void nothingToPrint()
    {
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::ReadWrite));
        QString why;
        QVERIFY(!writePdfPage(buffer, {11906, 16838}, QImage(), {0, 0, 100, 100}, "T", &why));
        QVERIFY(!why.isEmpty());
        QVERIFY(!writePdfPage(buffer, {11906, 16838}, pattern(5, 5), QRect(), "T"));
        QVERIFY(!writePdfPage(buffer, QSize(), pattern(5, 5), {0, 0, 100, 100}, "T"));
        QVERIFY(writePdfPage(buffer, {11906, 16838}, pattern(5, 5), {0, 0, 100, 100}, "T"));
    }

    void aFullDisk_data()
    {
        QTest::addColumn<int>("side");
        QTest::newRow("the picture fits into a buffer") << 5;
        QTest::newRow("the picture does not") << 500;
    }
    void aFullDisk()
    {
        QFETCH(int, side);
        QFile full("/dev/full");
        QVERIFY(full.open(QIODevice::WriteOnly));
        QString why;
        QVERIFY(!writePdfPage(full, {11906, 16838}, pattern(side, side), {0, 0, 9000, 9000}, "T", &why));
        QVERIFY2(why.contains("No space left"), qPrintable(why));
    }
};

QTEST_MAIN(TestPrintDocument)
#include "tst_printdocument.moc"
