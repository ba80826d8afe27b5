// The program that checks image files from a terminal: its lines, its files, its exit code.
#include "CodecFixtures.h"

#include <QCryptographicHash>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

using namespace quorvia::test;

namespace {

struct Ending
{
    int code = -1;
    QString output;
};

Ending probe(const QStringList& arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("QUORVIA_PROBE"), arguments);
    if (!process.waitForFinished(60'000))
        return {};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput())};
}

QString md5Of(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}

} // namespace

class TestEngineProbe : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tellsOneLineAFile();
    void tellsWhatIsCutShort();
    void tellsFailures();
    void takesAPage();
    void writesPixels();
    void savesThroughTheControl();
    void writesOverNothingOfItsLine();
    void refusesStrangeLines_data();
    void refusesStrangeLines();

  private:
    ScratchFiles m_files;
};

void TestEngineProbe::tellsOneLineAFile()
{
    const Rgba picture = samplePicture(QSize(37, 13));
    const QString one = m_files.write(QStringLiteral("one.ppm"), ppmOf(picture));
    const QString png = m_files.path(QStringLiteral("one.png"));
    runTool(QStringLiteral("convert"), {one, png});
    const Ending ending = probe({png, png});
    QCOMPARE(ending.code, 0);
    const QStringList lines = ending.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);

    const Rgba seen = readWithMagick(m_files.read(QStringLiteral("one.png")), QStringLiteral("png"));
    QSet<QRgb> colors;
    for (int y = 0; y < 13; ++y) {
        for (int x = 0; x < 37; ++x)
            colors.insert(qRgb(seen.at(x, y)[0], seen.at(x, y)[1], seen.at(x, y)[2]));
    }
    const QRegularExpression form(
        QStringLiteral("^ok     (.*): 37 x 13, 24 bits, 1 pages, (\\d+) colours, [0-9.]+ ms, ([0-9a-f]+)$"));
    const auto match = form.match(lines[0]);
    QVERIFY2(match.hasMatch(), qPrintable(lines[0]));
    QCOMPARE(match.captured(1), png);
    QCOMPARE(match.captured(2).toInt(), int(colors.size()));
    QCOMPARE(match.captured(3), md5Of(seen.pixels));
}

void TestEngineProbe::tellsWhatIsCutShort()
{
    const QByteArray whole =
        runTool(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("bmp:-")},
                ppmOf(samplePicture(QSize(40, 30))));
    const QString cut = m_files.write(QStringLiteral("cut.bmp"), whole.left(whole.size() / 2));
    const Ending ending = probe({cut});
    QCOMPARE(ending.code, 0);
    QVERIFY2(ending.output.startsWith(QLatin1String("part   ")), qPrintable(ending.output));
}

void TestEngineProbe::tellsFailures()
{
    const QString text = m_files.write(QStringLiteral("text.jpg"), "this is no picture");
    const QString good =
        m_files.write(QStringLiteral("good.bmp"),
                      runTool(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("bmp:-")},
                              ppmOf(samplePicture(QSize(4, 3)))));
    const Ending ending = probe({text, m_files.path(QStringLiteral("missing.png")), good});
    QCOMPARE(ending.code, 1);
    const QStringList lines = ending.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[0].startsWith(QStringLiteral("error  %1: ").arg(text)));
    QVERIFY(lines[1].startsWith(QLatin1String("error  ")));
    QVERIFY(lines[2].startsWith(QLatin1String("ok     "))); // the rest of the line goes on
}

void TestEngineProbe::takesAPage()
{
    const QString first = m_files.write(QStringLiteral("first.ppm"), ppmOf(samplePicture(QSize(10, 5))));
    const QString second = m_files.write(QStringLiteral("second.ppm"), ppmOf(samplePicture(QSize(6, 9))));
    const QString both = m_files.path(QStringLiteral("both.tif"));
    runTool(QStringLiteral("convert"), {first, second, both});
    const Ending ending = probe({QStringLiteral("--page"), QStringLiteral("2"), both});
    QCOMPARE(ending.code, 0);
    QVERIFY2(ending.output.contains(QLatin1String(": 6 x 9, 24 bits, 2 pages,")), qPrintable(ending.output));
    QCOMPARE(probe({QStringLiteral("--page"), QStringLiteral("3"), both}).code, 1);
}

void TestEngineProbe::writesPixels()
{
    const Rgba picture = samplePicture(QSize(21, 8));
    const QString opaque = m_files.path(QStringLiteral("opaque.png"));
    const QString alpha = m_files.path(QStringLiteral("alpha.png"));
    QVERIFY(imageOf(picture).convertToFormat(QImage::Format_RGB32).save(opaque));
    QVERIFY(imageOf(picture).save(alpha));
    const QTemporaryDir folder;
    QCOMPARE(probe({QStringLiteral("--ppm"), folder.path(), opaque, alpha}).code, 0);
    const auto written = [&folder](const char* name) {
        QFile file(folder.filePath(QLatin1String(name)));
        return file.open(QIODevice::ReadOnly) ? fromPnm(file.readAll()) : Rgba();
    };
    QCOMPARE(firstDifference(written("alpha.pam"), picture), QString());
    QCOMPARE(firstDifference(written("opaque.ppm"),
                             rgbaOf(imageOf(picture).convertToFormat(QImage::Format_RGB32))),
             QString());
}

void TestEngineProbe::savesThroughTheControl()
{
    const Rgba picture = samplePicture(QSize(21, 8));
    const QString source = m_files.path(QStringLiteral("source.png"));
    QVERIFY(imageOf(picture).convertToFormat(QImage::Format_RGB32).save(source));
    const QTemporaryDir folder;
    QCOMPARE(probe({QStringLiteral("--save"), QStringLiteral("bmp"), folder.path(), source}).code, 0);
    QFile saved(folder.filePath(QStringLiteral("source.bmp")));
    QVERIFY(saved.open(QIODevice::ReadOnly));
    QCOMPARE(firstDifference(readWithMagick(saved.readAll(), QStringLiteral("bmp")),
                             rgbaOf(imageOf(picture).convertToFormat(QImage::Format_RGB32))),
             QString());

    const Ending ending =
        probe({QStringLiteral("--save"), QStringLiteral("nonsense"), folder.path(), source});
    QCOMPARE(ending.code, 1);
    QVERIFY(ending.output.contains(QLatin1String("error  ")));
}

void TestEngineProbe::writesOverNothingOfItsLine()
{
    const QByteArray content = ppmOf(samplePicture(QSize(4, 3)));
    const QString source = m_files.write(QStringLiteral("same.ppm"), content);
    const QString folder = QFileInfo(source).path();
    QVERIFY(QDir(folder).mkdir(QStringLiteral("below")));
    const QString other = m_files.write(QStringLiteral("below/same.ppm"), content);
    const QString save = QStringLiteral("--save");

    const Ending onto = probe({save, QStringLiteral("ppm"), folder + QStringLiteral("/below/.."), source});
    QCOMPARE(onto.code, 1);
    QVERIFY2(onto.output.contains(QStringLiteral("another file of this line")), qPrintable(onto.output));

    const Ending twice = probe({save, QStringLiteral("gif"), folder, source, other});
    QCOMPARE(twice.code, 1);
    QCOMPARE(twice.output.count(QStringLiteral("another file of this line")), 1);
    QVERIFY(QFile::exists(folder + QStringLiteral("/same.gif")));

    const QString odd = m_files.write(QStringLiteral("two\nlines.ppm"), content);
    QCOMPARE(probe({odd}).output.count(QLatin1Char('\n')), 1);
}

void TestEngineProbe::refusesStrangeLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("unknown") << QStringList{QStringLiteral("--fast"), QStringLiteral("x.png")};
    QTest::newRow("no page") << QStringList{QStringLiteral("--page"), QStringLiteral("0"),
                                            QStringLiteral("x.png")};
    QTest::newRow("no folder") << QStringList{QStringLiteral("x.png"), QStringLiteral("--ppm")};
    QTest::newRow("no folder to save to")
        << QStringList{QStringLiteral("x.png"), QStringLiteral("--save"), QStringLiteral("gif")};
    QTest::newRow("no file") << QStringList{QStringLiteral("--ppm"), QStringLiteral("/tmp")};
}

void TestEngineProbe::refusesStrangeLines()
{
    QFETCH(QStringList, arguments);
    const Ending ending = probe(arguments);
    QCOMPARE(ending.code, 2);
    QVERIFY(ending.output.isEmpty());
}

QTEST_GUILESS_MAIN(TestEngineProbe)
#include "tst_engineprobe.moc"
