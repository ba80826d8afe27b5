// The table of codecs as a whole: every extension of the viewer is read, and written where it can hold a
// bitmap.
#include "app/ImageTypes.h"
#include "corpus/Corpus.h"
#include "engine/Codec.h"
#include "IndependentReader.h"

#include <QtTest>

using namespace quorvia;
using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QStringList viewerExtensions()
{
    QStringList extensions;
    for (const QString& pattern : QString::fromLatin1(app::ImageExtensionList).split(QLatin1Char(';')))
        extensions.append(pattern.mid(2));
    return extensions;
}

/// A picture that every format can hold to the last pixel: two colours, black and white.
QImage dots(QSize size)
{
    QImage image(size, QImage::Format_Mono);
    image.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, uint((x / 3 + y / 2 + x * y) % 3 == 0));
    }
    return image;
}

/// What `pattern` captures in a file of the source tree, first capture to second (or to nothing).
QMap<QString, QString> foundIn(const QString& file, const QString& pattern, const QString& part = {})
{
    QFile source(qEnvironmentVariable("QUORVIA_SOURCE") + QLatin1Char('/') + file);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(source.readAll());
    if (!part.isEmpty())
        text = QRegularExpression(part).match(text).captured(0);
    QMap<QString, QString> found;
    auto matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        found.insert(match.captured(1), match.captured(2));
    }
    return found;
}

/// Opaque colours, but for one clear entry where `clear` is set.
QImage fewColors(QSize size, bool clear)
{
    QImage image(size, QImage::Format_Indexed8);
    constexpr int count = 100;
    for (int i = 0; i < count; ++i)
        image.setColor(i, qRgb(i * 2, 255 - i, i * 37 % 256));
    if (clear)
        image.setColor(0, qRgba(0, 0, 0, 0));
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, uint((x * 7 + y * y * 3) % count));
    }
    return image;
}

bool isLossy(const QString& extension)
{
    return encoderFor(extension) == encoderFor(QStringLiteral("jpg"));
}

/// A picture in `format` that files of `extension` can carry.
QImage pictureFor(const QString& extension, QImage::Format format)
{
    const QSize size(40, 30);
    if (extension == QLatin1String("pbm") || format == QImage::Format_Mono)
        return dots(size).convertToFormat(format);
    const QImage colors = imageOf(samplePicture(size));
    if (extension == QLatin1String("pgm"))
        return colors.convertToFormat(QImage::Format_Grayscale8).convertToFormat(format);
    const bool isIndexed =
        QStringList{QStringLiteral("gif"), QStringLiteral("rle"), QStringLiteral("wpg")}.contains(extension);
    if (isIndexed && format != QImage::Format_Grayscale8)
        return fewColors(size, format == QImage::Format_ARGB32 || format == QImage::Format_Indexed8)
            .convertToFormat(format);
    return colors.convertToFormat(format);
}

} // namespace

class TestCodecTable : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void namesAreDifferent();
    void everyCodecIsFuzzed();
    void everyExtensionIsKnown_data();
    void everyExtensionIsKnown();
    void everyExtensionIsWritten_data();
    void everyExtensionIsWritten();
    void bitsSurvive_data();
    void bitsSurvive();
    void strangersAreRefused_data();
    void strangersAreRefused();
    void whoCannotBreakOff_data();
    void whoCannotBreakOff();
};

void TestCodecTable::namesAreDifferent()
{
    QSet<QString> names;
    for (const Codec* codec : codecTable()) {
        QVERIFY(!codec->extensions().isEmpty());
        names.insert(codec->name());
    }
    QCOMPARE(size_t(names.size()), codecTable().size());
}

/// Each codec has a fuzz target, each target good files to start from, and no good files lie idle.
void TestCodecTable::everyCodecIsFuzzed()
{
    QStringList codecs;
    QStringList targets;
    for (const Codec* codec : codecTable()) {
        codecs.append(codec->name());
        targets.append(QStringLiteral("fuzz_") +
                       codec->name().toLower().replace(QLatin1Char(' '), QLatin1Char('_')));
    }
    codecs.sort();
    targets.sort();
    const auto fuzzed = foundIn(QStringLiteral("fuzz/CMakeLists.txt"), QStringLiteral("\"([^\"]+)\""),
                                QStringLiteral("set\\(FUZZED[^)]*\\)"));
    QCOMPARE(QStringList(fuzzed.keys()), codecs);
    const auto seeds =
        foundIn(QStringLiteral("tools/fuzz"), QStringLiteral("\\[(fuzz_\\w+)\\]=\"([^\"]*)\""));
    QCOMPARE(QStringList(seeds.keys()), targets);
    QStringList started;
    for (const QString& formats : seeds) {
        QVERIFY(!formats.isEmpty());
        started.append(formats.split(QLatin1Char(' ')));
    }
    QStringList corpora;
    for (const CorpusEntry& entry : corpusTable())
        corpora.append(QString::fromLatin1(entry.extension));
    started.sort();
    corpora.sort();
    QCOMPARE(started, corpora);
}

void TestCodecTable::everyExtensionIsKnown_data()
{
    QTest::addColumn<QString>("extension");
    const QStringList extensions = viewerExtensions();
    QCOMPARE(extensions.size(), 21);
    for (const QString& extension : extensions)
        QTest::newRow(qPrintable(extension)) << extension;
}

void TestCodecTable::everyExtensionIsKnown()
{
    QFETCH(QString, extension);
    int readers = 0;
    for (const Codec* codec : codecTable())
        readers += codec->extensions().contains(extension) ? 1 : 0;
    QVERIFY(readers > 0);
    QVERIFY(encoderFor(extension));
    QCOMPARE(encoderFor(extension.toUpper()), encoderFor(extension));
}

void TestCodecTable::everyExtensionIsWritten_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QImage::Format>("format");
    const auto formats = {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                          QImage::Format_RGB32, QImage::Format_ARGB32};
    for (const QString& extension : viewerExtensions()) {
        for (const QImage::Format format : formats)
            QTest::addRow("%s from %d", qPrintable(extension), int(format)) << extension << format;
    }
}

/// What an encoder writes, the table opens again under that name: the same size, and the same pixels as far
/// as the format goes (the codecs' own tests compare with independent readers).
void TestCodecTable::everyExtensionIsWritten()
{
    QFETCH(QString, extension);
    QFETCH(QImage::Format, format);
    const QImage image = pictureFor(extension, format);
    QCOMPARE(image.format(), format);
    const auto file = encoderFor(extension)->encode(image, extension, {});
    QVERIFY2(file, file ? "" : qPrintable(file.error().text));
    const auto decoder = openDecoder(ByteSource::fromBytes(*file), extension);
    QVERIFY2(decoder, decoder ? "" : qPrintable(decoder.error().text));
    const CancelFlag goOn{false};
    const auto back = (*decoder)->decode(1, QSize(), goOn);
    QVERIFY2(back, back ? "" : qPrintable(back.error().text));
    QVERIFY(back->complete);
    QCOMPARE(back->image.size(), image.size());
    const bool hasAlpha = image.hasAlphaChannel(); // else the fourth byte says nothing
    const Rgba seen = rgbaOf(image.convertToFormat(hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32));
    const Rgba wanted = back->image.hasAlphaChannel() ? seen : overWhite(image);
    if (isLossy(extension)) {
        const double likeness = psnr(rgbaOf(back->image), wanted);
        QVERIFY2(likeness >= 24, qPrintable(QString::number(likeness)));
    } else {
        QCOMPARE(firstDifference(rgbaOf(back->image), wanted), QString());
    }
}

void TestCodecTable::bitsSurvive_data()
{
    everyExtensionIsKnown_data();
}

/// Black and white stays exactly that wherever nothing is lossy.
void TestCodecTable::bitsSurvive()
{
    QFETCH(QString, extension);
    const QImage image = dots(QSize(37, 21));
    const auto file = encoderFor(extension)->encode(image, extension, {});
    QVERIFY(file);
    const auto decoder = openDecoder(ByteSource::fromBytes(*file), extension);
    QVERIFY(decoder);
    const CancelFlag goOn{false};
    const auto back = (*decoder)->decode(1, QSize(), goOn);
    QVERIFY(back);
    if (isLossy(extension))
        QVERIFY(psnr(rgbaOf(back->image), rgbaOf(image)) > 20);
    else
        QCOMPARE(firstDifference(rgbaOf(back->image), rgbaOf(image)), QString());
}

void TestCodecTable::strangersAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("one byte") << QByteArray(1, 'P');
    QTest::newRow("text") << QByteArray("The quick brown fox jumps over the lazy dog.\n").repeated(50);
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("ones") << QByteArray(4096, '\xff');
    QTest::newRow("ELF") << QByteArray("\x7f"
                                       "ELF\x02\x01\x01")
                                .append(2000, '\0');
    QTest::newRow("PDF") << QByteArray("%PDF-1.4\n%....\n1 0 obj\n").append(2000, ' ');
    QTest::newRow("HTML") << QByteArray("<!DOCTYPE html><html><body>").append(2000, ' ');
    QTest::newRow("ZIP") << QByteArray("PK\x03\x04\x14").append(2000, '\0');
}

/// Under every name of ours.
void TestCodecTable::strangersAreRefused()
{
    QFETCH(QByteArray, bytes);
    for (const QString& extension : viewerExtensions()) {
        const auto decoder = openDecoder(ByteSource::fromBytes(bytes), extension);
        const CancelFlag goOn{false};
        QVERIFY2(!decoder || !(*decoder)->decode(1, QSize(), goOn), qPrintable(extension));
    }
}

void TestCodecTable::whoCannotBreakOff_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("breaksOff");
    const auto tiff = [](const char* options) {
        const QString arguments = QStringLiteral("-size 1200x1000 xc:teal %1 @");
        return fileMadeBy(QStringLiteral("convert"), arguments.arg(QLatin1String(options)).split(u' '),
                          QStringLiteral("tif"), QByteArray());
    };
    QTest::newRow("AVIF") << avifCorpus().front().file << false;
    QTest::newRow("PBM") << QByteArray("P4\n8 1\nx") << true;
    QTest::newRow("TIFF, not compressed") << tiff("-compress none -define tiff:rows-per-strip=1000") << true;
    QTest::newRow("TIFF, deflate in strips") << tiff("-compress zip -define tiff:rows-per-strip=100") << true;
    QTest::newRow("TIFF, deflate in one strip")
        << tiff("-compress zip -define tiff:rows-per-strip=1000") << false;
}

void TestCodecTable::whoCannotBreakOff()
{
    QFETCH(QByteArray, file);
    QVERIFY(!file.isEmpty());
    const auto decoder = openDecoder(ByteSource::fromBytes(file), QString());
    QVERIFY(decoder);
    QTEST((*decoder)->canBreakOff(1), "breaksOff");
}

QTEST_MAIN(TestCodecTable)
#include "tst_codectable.moc"
