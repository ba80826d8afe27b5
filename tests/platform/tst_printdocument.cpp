// The page that goes to a printer, read back by other programs.
#include "../support/ChildCheck.h"
#include "../support/FullDisk.h"
#include "platform/PrintDocument.h"

#include <QBuffer>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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

/// The document of `picture` on A4; empty when it could not be written.
QByteArray written(const QImage& picture, const QString& title = QStringLiteral("T"))
{
    QBuffer buffer;
    const bool isWritten = buffer.open(QIODevice::WriteOnly) &&
                           writePdfPage(buffer, {11906, 16838}, picture, {550, 550, 10806, 15738}, title);
    return isWritten ? buffer.data() : QByteArray();
}

/// The same as a file in `folder`.
QString saved(const QTemporaryDir& folder, const QByteArray& document)
{
    QFile file(folder.filePath("page.pdf"));
    const bool isSaved = file.open(QIODevice::WriteOnly) && file.write(document) == document.size();
    return isSaved ? file.fileName() : QString();
}

/// The pixels of a document's picture, by another program.
QImage held(const QTemporaryDir& folder, const QByteArray& document)
{
    output("pdfimages", {"-png", saved(folder, document), folder.filePath("held")});
    return QImage(folder.filePath("held-000.png")).convertToFormat(QImage::Format_RGB32);
}

/// The bytes of a line of /proc/self/status; -1 when it has none. Takes no memory to speak of.
qint64 memory(const char* name)
{
    qint64 kibibytes = -1;
    if (FILE* const status = std::fopen("/proc/self/status", "r")) {
        std::array<char, 256> line = {};
        while (std::fgets(line.data(), int(line.size()), status)) {
            if (std::strncmp(line.data(), name, std::strlen(name)) == 0)
                kibibytes = std::strtoll(line.data() + std::strlen(name), nullptr, 10);
        }
        std::fclose(status);
    }
    return kibibytes < 0 ? -1 : kibibytes * 1024;
}

/// Takes what is written, and keeps nothing.
class Nowhere : public QIODevice
{
  public:
    Nowhere() { open(WriteOnly | Unbuffered); }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char*, qint64 count) override { return count; }
};

} // namespace

class TestPrintDocument : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
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
        QVERIFY2(facts.contains("PDF version:     1.4\n"), qPrintable(facts));
        const QString size = QString("%1 x %2 pts").arg(paper.width() / 20.0).arg(paper.height() / 20.0);
        QVERIFY2(facts.contains(QRegularExpression("Page size: +" + size)), qPrintable(facts));

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

    void titles_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("brackets") << "a) b( \\ <c>";
        QTest::newRow("Chinese") << QStringLiteral("\u56fe\u50cf \u6253\u5370");
        QTest::newRow("Hebrew") << QStringLiteral("\u05ea\u05de\u05d5\u05e0\u05d4");
        QTest::newRow("beyond 16 bits") << QStringLiteral("\U0001F600 x");
    }
    void titles()
    {
        QFETCH(QString, title);
        const QTemporaryDir folder;
        const QString path = saved(folder, written(pattern(5, 5), title));
        const QString facts = QString::fromUtf8(output("pdfinfo", {"-enc", "UTF-8", path}));
        QVERIFY2(facts.contains(QRegularExpression("Title: +" + QRegularExpression::escape(title) + '\n')),
                 qPrintable(facts));
    }

    void theTableOfObjects()
    {
        const QByteArray document = written(pattern(301, 199));
        QVERIFY(document.endsWith("\n%%EOF\n"));
        const qsizetype start = document.lastIndexOf("startxref\n") + 10;
        const qint64 table = document.mid(start, document.indexOf('\n', start) - start).toLongLong();
        const QList<QByteArray> lines = document.mid(table).split('\n');
        QCOMPARE(lines.value(0), QByteArray("xref"));
        const int count = lines.value(1).split(' ').value(1).toInt();
        QCOMPARE(lines.value(1), "0 " + QByteArray::number(count));
        QCOMPARE(count, int(document.count(" 0 obj\n")) + 1);
        QCOMPARE(lines.value(2), QByteArray("0000000000 65535 f "));
        for (int number = 1; number < count; ++number) {
            const QByteArray line = lines.value(2 + number);
            QCOMPARE(line.size(), 19); // 20 with its end
            QVERIFY(line.endsWith(" 00000 n "));
            const QByteArray head = QByteArray::number(number) + " 0 obj\n";
            QCOMPARE(document.mid(line.left(10).toLongLong(), head.size()), head);
        }
        QVERIFY(lines.value(2 + count).startsWith("trailer"));
    }

    void theLengthsOfStreams()
    {
        const QByteArray document = written(pattern(301, 199));
        const qsizetype begin = document.indexOf("stream\n") + 7;
        const qsizetype end = document.indexOf("\nendstream", begin);
        QVERIFY(begin > 7 && end > begin);
        QVERIFY(document.mid(end).startsWith("\nendstream\nendobj\n2 0 obj\n" +
                                             QByteArray::number(end - begin) + "\nendobj\n"));
        QVERIFY(document.contains("/Length 2 0 R"));
    }

    void formats_data()
    {
        QTest::addColumn<QImage>("picture");
        const QImage base = pattern(61, 43);
        const auto as = [&base](QImage::Format format) { return base.convertToFormat(format); };
        QTest::newRow("RGB32") << base;
        QTest::newRow("ARGB32") << as(QImage::Format_ARGB32);
        QTest::newRow("ARGB32 premultiplied") << as(QImage::Format_ARGB32_Premultiplied);
        QTest::newRow("RGB888") << as(QImage::Format_RGB888);
        QTest::newRow("BGR888") << as(QImage::Format_BGR888);
        QTest::newRow("RGB16") << as(QImage::Format_RGB16);
        QTest::newRow("RGBX64") << as(QImage::Format_RGBX64);
        QTest::newRow("grey") << as(QImage::Format_Grayscale8);
        QTest::newRow("256 colours") << as(QImage::Format_Indexed8);
        QTest::newRow("two colours") << as(QImage::Format_Mono);
        QImage dense = base;
        dense.setDevicePixelRatio(2);
        QTest::newRow("two pixels for one") << dense;
        QTest::newRow("one pixel") << pattern(1, 1);
        QTest::newRow("one row") << pattern(70'001, 1);
        QTest::newRow("one column") << pattern(1, 70'001);
        QTest::newRow("a part of another")
            << QImage(base.constBits(), 20, 43, base.bytesPerLine(), base.format());
    }
    void formats()
    {
        QFETCH(QImage, picture);
        const QTemporaryDir folder;
        QImage wanted = picture.convertToFormat(QImage::Format_RGB32);
        wanted.setDevicePixelRatio(1);
        QCOMPARE(held(folder, written(picture)), wanted);
    }

    void transparencyIsPaper()
    {
        QImage picture(9, 9, QImage::Format_ARGB32);
        picture.fill(qRgba(0, 0, 0, 0));
        picture.setPixel(4, 4, qRgba(255, 0, 0, 255));
        picture.setPixel(5, 4, qRgba(0, 0, 0, 128));
        const QTemporaryDir folder;
        const QImage seen = held(folder, written(picture));
        QCOMPARE(seen.pixel(0, 0), qRgb(255, 255, 255));
        QCOMPARE(seen.pixel(4, 4), qRgb(255, 0, 0));
        QCOMPARE(seen.pixel(5, 4), qRgb(127, 127, 127));
        QCOMPARE(seen.pixel(8, 8), qRgb(255, 255, 255));
    }

    void theMemoryIsBounded()
    {
        QImage picture(2251, 3278, QImage::Format_RGB32); // A4 at 300 pixels to the inch
        quint32 value = 1;
        for (int y = 0; y < picture.height(); ++y) {
            auto* const row = reinterpret_cast<QRgb*>(picture.scanLine(y));
            for (int x = 0; x < picture.width(); ++x) {
                value = value * 1664525U + 1013904223U;
                row[x] = value >> 8U;
            }
        }
        const auto stays = [&picture] {
            constexpr qint64 most = 3 << 20; // a tenth of the picture; a sanitizer keeps what was freed
            written(pattern(5, 5));          // what it needs of the libraries is no part of it
            Nowhere nowhere;
            const qint64 before = memory("VmRSS:");
            const bool isWritten =
                writePdfPage(nowhere, {11906, 16838}, picture, {550, 550, 10806, 15738}, QStringLiteral("T"));
            return isWritten && before > 0 && memory("VmHWM:") - before < most;
        };
        QCOMPARE(quorvia::test::heldInChild(stays), 1);
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

    void aDiskThatFills_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::newRow("at the header") << 0;
        QTest::newRow("in the picture") << 100'000;
        QTest::newRow("at the end") << -1;
    }
    void aDiskThatFills()
    {
        QFETCH(int, bytes);
        const QImage picture = pattern(500, 500);
        const auto whole = rlim_t(written(picture).size());
        std::signal(SIGXFSZ, SIG_IGN); // as the program does
        const QTemporaryDir folder;
        QFile file(folder.filePath("page.pdf"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QString why;
        bool isWritten = true;
        {
            const quorvia::test::FullDisk full(bytes < 0 ? whole - 1 : rlim_t(bytes));
            QVERIFY(full.isFull());
            isWritten = writePdfPage(file, {11906, 16838}, picture, {550, 550, 10806, 15738}, "T", &why);
        }
        QVERIFY(!isWritten);
        QVERIFY2(why.startsWith("the page cannot be written: ") && why.contains("File too large"),
                 qPrintable(why));
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
