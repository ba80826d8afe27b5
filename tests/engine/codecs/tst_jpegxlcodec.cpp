// JPEG XL against libjxl's own program, and its colours against the profiles' formulas.
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "DisplayImage.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "PngFixtures.h"
#include "ProfileFixtures.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegXlCodec();

QByteArray encoded(const char* options, const QByteArray& picture, const char* extension)
{
    return converted((QByteArray("cjxl --quiet -e 3 ") + options + " @in @out").constData(), picture,
                     extension, "jxl");
}

/// `png` with `profile` for its colours, which stay.
QByteArray withProfile(const QByteArray& png, const QByteArray& profile)
{
    return withChunk(png, pngChunk("iCCP", QByteArray("x\0\0", 3) + zlibStream(profile)));
}

QByteArray greyPng(QSize size)
{
    return piped("pnmtopng -quiet", pgmOf(samplePicture(size)));
}

/// Numbers of some bits each, the lowest bit first, filled up to bytes.
QByteArray packedBits(std::initializer_list<std::pair<int, int>> fields)
{
    QByteArray bytes;
    int used = 0;
    for (const auto& [value, bits] : fields) {
        for (int i = 0; i < bits; ++i, ++used) {
            if (used % 8 == 0)
                bytes += '\0';
            bytes.back() = char(bytes.back() | (value >> i & 1) << used % 8);
        }
    }
    return bytes;
}

/// The header of a codestream of 8 x 8 pixels with one plane of `type` (4 is black ink) beside its colours;
/// no pixels follow.
QByteArray headerWithPlane(int type)
{
    return QByteArray::fromHex("ff0a") +
           packedBits({
               {1, 1}, {0, 5}, {1, 3},                // a small height of 8, as wide as high
               {0, 1}, {0, 1},                        // metadata: not all as usual, no extra fields
               {0, 1}, {0, 2}, {1, 1},                // whole numbers of 8 bits, 16 bits are enough for all
               {1, 2},                                // one plane more
               {0, 1}, {2, 2}, {type - 2, 4},         // which is not the usual alpha
               {0, 1}, {0, 2}, {0, 2},        {0, 2}, // 8 bits, full size, no name
               {0, 1}, {1, 1},                        // colours as they are, in sRGB
               {0, 2}, {1, 1},                        // no extensions, the usual transform
           });
}

/// Colours that every space holds well inside, changing slowly: what is lossy loses little of it.
QImage smoothPicture()
{
    QImage image(96, 64, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(90 + x, 110 + y, 200 - x));
    }
    return image;
}

QByteArray smoothPng()
{
    return piped("pnmtopng -quiet", ppmOf(rgbaOf(smoothPicture())));
}

} // namespace

class TestJpegXlCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs_data();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void tellsTheDepth_data();
    void tellsTheDepth();
    void keepsLosslessColors_data();
    void keepsLosslessColors();
    void showsLossyColors_data();
    void showsLossyColors();
    void showsLossyGreys();
    void needsNoProfileForSrgb();
    void showsTheFirstFrame();
    void refuses_data();
    void refuses();
    void refusesWhatCostsTooMuch();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void survivesCutFiles();
    void isReadOnly();
    void stopsWhenCancelled();
    void worksFromSeveralThreads();
    void survivesBrokenFiles();

  private:
    std::vector<Fixture> m_corpus;
};

void TestJpegXlCodec::initTestCase()
{
    m_corpus = jpegXlCorpus();
}

void TestJpegXlCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    QTest::newRow("codestream") << QByteArray::fromHex("ff0a00") << true;
    QTest::newRow("boxes") << QByteArray::fromHex("0000000c4a584c200d0a870a00000014") << true;
    QTest::newRow("JPEG") << QByteArray::fromHex("ffd8ff") << false;
    QTest::newRow("other boxes") << QByteArray::fromHex("0000000c6a5020200d0a870a") << false;
    QTest::newRow("short") << QByteArray::fromHex("ff") << false;
}

void TestJpegXlCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(codec.sniff(head, QStringLiteral("jxl")), known);
}

void TestJpegXlCodec::readsWhatOthersWrite_data()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_corpus.size(); ++i)
        QTest::newRow(qPrintable(m_corpus[i].name)) << int(i);
}

void TestJpegXlCodec::readsWhatOthersWrite()
{
    QFETCH(int, index);
    QCOMPARE(fixtureFault(codec, m_corpus[size_t(index)]), QString());
}

void TestJpegXlCodec::tellsTheDepth_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    const auto row = [](const char* name, int bits, QImage::Format format) {
        QTest::newRow(name) << QString::fromLatin1(name) << bits << int(format);
    };
    row("lossless, 33 x 17", 24, QImage::Format_RGB32);
    row("lossless, alpha", 32, QImage::Format_ARGB32);
    row("lossless, 16 bits", 48, QImage::Format_RGB32);
    row("lossless, grey", 8, QImage::Format_Grayscale8);
    row("lossless, grey, 16 bits", 16, QImage::Format_Grayscale8);
    row("lossless, grey, alpha", 32, QImage::Format_ARGB32);
    row("lossy, grey", 8, QImage::Format_Grayscale8);
    row("turned by its header", 24, QImage::Format_RGB32);
}

void TestJpegXlCodec::tellsTheDepth()
{
    QFETCH(QString, name);
    for (const Fixture& fixture : m_corpus) {
        if (fixture.name != name)
            continue;
        const auto picture = decoded(codec, fixture.file);
        QVERIFY(picture);
        QTEST(picture->bitsPerPixel, "bits");
        QTEST(int(picture->image.format()), "format");
        return;
    }
    QFAIL("no such fixture");
}

void TestJpegXlCodec::keepsLosslessColors_data()
{
    QTest::addColumn<QByteArray>("png");
    QTest::addColumn<QByteArray>("profile");
    QTest::newRow("Adobe RGB") << smoothPng() << rgbProfile(adobeRgb);
    QTest::newRow("wide gamut") << smoothPng() << rgbProfile(wideGamut);
    QTest::newRow("a table") << smoothPng() << tableProfile(adobeRgb);
    QTest::newRow("grey") << greyPng({33, 17}) << grayProfile(1.8);
}

void TestJpegXlCodec::keepsLosslessColors()
{
    QFETCH(QByteArray, png);
    QFETCH(QByteArray, profile);
    const auto picture = decoded(codec, encoded("-d 0", withProfile(png, profile), "png"));
    QVERIFY(picture);
    QCOMPARE(firstDifference(rgbaOf(picture->image), pngPixels(png)), QString());
    // The library may make a profile of its own for colours that it can express in numbers.
    const QImage wanted = toSrgb(picture->image, profile);
    QCOMPARE(firstDifference(rgbaOf(displayImage(*picture)), rgbaOf(wanted), 2), QString());
}

void TestJpegXlCodec::showsLossyColors_data()
{
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<RgbSpace>("space");
    RgbSpace linear = adobeRgb;
    linear.gamma = 1;
    QTest::newRow("Adobe RGB") << rgbProfile(adobeRgb) << adobeRgb;
    QTest::newRow("Display P3") << rgbProfile(displayP3) << displayP3;
    QTest::newRow("linear") << rgbProfile(linear) << linear;
    QTest::newRow("a table") << tableProfile(adobeRgb) << adobeRgb;
    QTest::newRow("swapped") << rgbProfile(swappedRgb) << swappedRgb;
}

void TestJpegXlCodec::showsLossyColors()
{
    QFETCH(QByteArray, profile);
    QFETCH(RgbSpace, space);
    const auto picture = decoded(codec, encoded("-d 0.3", withProfile(smoothPng(), profile), "png"));
    QVERIFY(picture);
    QImage wanted = smoothPicture();
    for (int y = 0; y < wanted.height(); ++y) {
        for (int x = 0; x < wanted.width(); ++x)
            wanted.setPixel(x, y, inSrgb(wanted.pixel(x, y), space));
    }
    const double ratio = psnr(rgbaOf(displayImage(*picture)), rgbaOf(wanted));
    QVERIFY2(ratio > 38, qPrintable(QString::number(ratio)));
}

void TestJpegXlCodec::showsLossyGreys()
{
    const QSize size(64, 48);
    QByteArray greys("P5\n64 48\n255\n");
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            greys += char(40 + 2 * x + y);
    }
    const QByteArray png = withProfile(piped("pnmtopng -quiet", greys), grayProfile(1));
    const auto picture = decoded(codec, encoded("-d 0.3", png, "png"));
    QVERIFY(picture);
    QCOMPARE(picture->bitsPerPixel, 8);
    Rgba wanted = fromPnm(greys);
    for (qsizetype i = 0; i < wanted.pixels.size(); ++i) {
        if (i % 4 != 3)
            wanted.pixels[i] = char(grayInSrgb(uchar(wanted.pixels[i]), 1));
    }
    const double ratio = psnr(rgbaOf(displayImage(*picture)), wanted);
    QVERIFY2(ratio > 38, qPrintable(QString::number(ratio)));
}

void TestJpegXlCodec::needsNoProfileForSrgb()
{
    int seen = 0;
    for (const Fixture& fixture : m_corpus) {
        if (fixture.name == QLatin1String("a JPEG kept whole"))
            continue; // that may bring any
        const auto picture = decoded(codec, fixture.file);
        QVERIFY(picture);
        QVERIFY2(picture->profile.isEmpty(), qPrintable(fixture.name));
        ++seen;
    }
    QVERIFY(seen >= 10);
}

void TestJpegXlCodec::showsTheFirstFrame()
{
    const ScratchFiles files;
    const QString frame = files.write(QStringLiteral("f.ppm"), fewColors({20, 10}, 64));
    const QByteArray gif =
        runTool(QStringLiteral("convert"), {frame, frame, QStringLiteral("-flop"), QStringLiteral("gif:-")});
    const auto picture = decoded(codec, encoded("-d 0", gif, "gif"));
    QVERIFY(picture);
    QVERIFY(picture->complete);
    const Rgba wanted = readWithMagick(gif, QStringLiteral("gif"), words("-delete 1"));
    QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
}

void TestJpegXlCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    QTest::newRow("mark only") << QByteArray::fromHex("ff0a") << int(ErrorKind::Damaged);
    QTest::newRow("something else") << QByteArray(300, 'x') << int(ErrorKind::Damaged);
    QTest::newRow("nothing") << QByteArray() << int(ErrorKind::Damaged);
    QTest::newRow("header only") << m_corpus[1].file.left(12) << int(ErrorKind::Damaged);
    QTest::newRow("a plane of black ink") << headerWithPlane(4) << int(ErrorKind::Unsupported);
    QTest::newRow("a plane of selection, no pixels") << headerWithPlane(3) << int(ErrorKind::Damaged);
    QTest::newRow("too wide") << encoded("-d 0", sampleMap({66000, 1}), "ppm") << int(ErrorKind::TooLarge);
}

void TestJpegXlCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(codec, file, ErrorKind(kind)), QString());
}

void TestJpegXlCodec::refusesWhatCostsTooMuch()
{
    const QSize size(300, 280);
    const QByteArray file = encoded("-d 0", sampleMap(size), "ppm");
    const qint64 pixels = qint64(size.width()) * size.height();
    Limits::setMachineBytes(pixels * 8); // enough for the picture, not for the library's planes
    const auto refused = decoded(codec, file);
    Limits::setMachineBytes(pixels * 16);
    const auto shown = decoded(codec, file);
    Limits::setMachineBytes(0);
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind, ErrorKind::TooLarge);
    QVERIFY(shown);
}

void TestJpegXlCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("share"); // of the file in percent
    const QByteArray map = sampleMap({800, 600});
    QTest::newRow("lossy") << encoded("-d 1", map, "ppm") << 60;
    QTest::newRow("lossy, progressive") << encoded("-d 1 -p", map, "ppm") << 40;
    QTest::newRow("lossless, several groups") << encoded("-d 0", map, "ppm") << 60;
    QTest::newRow("grey") << encoded("-d 1", pgmOf(samplePicture({800, 600})), "pgm") << 60;
    QTest::newRow("alpha") << encoded("-d 1", samplePng({800, 600}, true), "png") << 60;
}

void TestJpegXlCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QFETCH(int, share);
    const auto whole = decoded(codec, file);
    QVERIFY(whole && whole->complete);
    const auto part = decoded(codec, file.left(file.size() * share / 100));
    QVERIFY2(part, part ? "" : qPrintable(part.error().text));
    QVERIFY(!part->complete);
    QCOMPARE(part->image.format(), whole->image.format());
    // The first rows stand in the first parts.
    const QRect first(0, 0, 128, 64);
    const double ratio = psnr(rgbaOf(part->image.copy(first)), rgbaOf(whole->image.copy(first)));
    QVERIFY2(ratio > 20, qPrintable(QString::number(ratio)));
}

void TestJpegXlCodec::survivesCutFiles()
{
    for (const Fixture& fixture : m_corpus) {
        const auto whole = decoded(codec, fixture.file);
        QVERIFY(whole);
        const qsizetype step = std::max<qsizetype>(1, fixture.file.size() / 30);
        for (qsizetype length = 0; length < fixture.file.size(); length += step) {
            const QByteArray cut = fixture.file.left(length);
            QCOMPARE(misbehaviour(codec, cut), QString());
            const auto part = decoded(codec, cut);
            QVERIFY(!part || !part->complete || rgbaOf(part->image).pixels == rgbaOf(whole->image).pixels);
        }
    }
}

void TestJpegXlCodec::isReadOnly()
{
    QCOMPARE(readOnlyFault(codec, QStringLiteral("jxl")), QString());
}

void TestJpegXlCodec::stopsWhenCancelled()
{
    const QByteArray file = encoded("-d 0", sampleMap({800, 600}), "ppm");
    CancelFlag cancel = false;
    bool decoding = false;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
        if (decoding && offset > file.size() / 4)
            cancel = true;
    });
    const auto decoder = codec.open(source);
    QVERIFY(decoder);
    QVERIFY(source->reached() < file.size() / 4); // the header is enough
    decoding = true;
    const auto stopped = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!stopped);
    QCOMPARE(stopped.error().kind, ErrorKind::Cancelled);
    QVERIFY(source->reached() < file.size() / 2);
    const auto again = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!again);
    QCOMPARE(again.error().kind, ErrorKind::Cancelled);
    cancel = decoding = false;
    QVERIFY((*decoder)->decode(1, QSize(), cancel));
}

void TestJpegXlCodec::worksFromSeveralThreads()
{
    std::atomic<int> faults = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (size_t i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([this, i, &faults] {
            for (int round = 0; round < 5; ++round)
                faults += fixtureFault(codec, m_corpus[i]).isEmpty() ? 0 : 1;
        }));
        threads.back()->start();
    }
    for (const auto& thread : threads)
        QVERIFY(thread->wait(60000));
    QCOMPARE(faults.load(), 0);
}

void TestJpegXlCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(codec, m_corpus, 300), QString());
}

QTEST_GUILESS_MAIN(TestJpegXlCodec)
#include "tst_jpegxlcodec.moc"
