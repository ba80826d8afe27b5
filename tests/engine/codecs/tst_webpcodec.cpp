#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "Mutator.h"
#include "RefusalChecks.h"
#include "WritingRows.h"

#include <QtEndian>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray cwebp(const char* options, const QByteArray& map, const char* extension = "ppm")
{
    return converted((QByteArray("cwebp -quiet ") + options + " @in -o @out").constData(), map, extension,
                     "webp");
}

/// A profile that only its header makes one.
QByteArray profileOf(const char* space)
{
    QByteArray profile(200, 'p');
    return profile.replace(16, 4, space);
}

QByteArray extended(int flags, QSize size)
{
    QByteArray chunk = "VP8X" + QByteArray::fromHex("0a000000") + char(flags) + QByteArray(3, '\0');
    for (const int side : {size.width() - 1, size.height() - 1}) {
        for (int shift = 0; shift < 24; shift += 8)
            chunk += char(side >> shift & 255);
    }
    QByteArray file = "RIFF" + QByteArray(4, '\0') + "WEBP" + chunk;
    qToLittleEndian<quint32>(quint32(file.size() - 8), file.data() + 4);
    return file;
}

} // namespace

class TestWebpCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void tellsTheDepth_data();
    void tellsTheDepth();
    void showsAlphaThatItsHeaderDenies();
    void readsOnlyTheBeginningToOpen();
    void coversTheBox_data();
    void coversTheBox();
    void readsTheProfile();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsColorsUnderFullTransparency();
    void writesTheProfile();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
    void survivesBrokenFilesInABox_data();
    void survivesBrokenFilesInABox();

  private:
    const Codec& m_codec = webpCodec();
    std::vector<Fixture> m_corpus;
};

void TestWebpCodec::initTestCase()
{
    m_corpus = webpCorpus();
    QVERIFY(m_corpus.size() >= 10);
}

void TestWebpCodec::sniffs()
{
    QVERIFY(m_codec.sniff(m_corpus[0].file.left(1024), QString()));
    QVERIFY(m_codec.sniff("RIFF....WEBP", QStringLiteral("jpg")));
    QVERIFY(!m_codec.sniff("RIFF....WAVE", QStringLiteral("webp")));
    QVERIFY(!m_codec.sniff("RIFX....WEBP", QStringLiteral("webp")));
    QVERIFY(!m_codec.sniff("RIFF....WEB", QStringLiteral("webp")));
}

void TestWebpCodec::readsWhatOthersWrite_data()
{
    addFixtureRows(m_corpus);
}

void TestWebpCodec::readsWhatOthersWrite()
{
    QFETCH(Fixture, fixture);
    QCOMPARE(fixtureFault(m_codec, fixture), QString());
}

void TestWebpCodec::tellsTheDepth_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("bits");
    const QByteArray clear = samplePng({9, 5}, true);
    QTest::newRow("lossy") << cwebp("-q 50", sampleMap({9, 5})) << 24;
    QTest::newRow("lossless") << cwebp("-lossless", sampleMap({9, 5})) << 24;
    QTest::newRow("lossy with alpha") << cwebp("-q 50", clear, "png") << 32;
    QTest::newRow("lossless with alpha") << cwebp("-lossless", clear, "png") << 32;
}

void TestWebpCodec::tellsTheDepth()
{
    QFETCH(QByteArray, file);
    QFETCH(int, bits);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->bitsPerPixel, bits);
    QCOMPARE(picture->image.format(), bits == 32 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QCOMPARE(picture->image.size(), QSize(9, 5));
}

void TestWebpCodec::showsAlphaThatItsHeaderDenies()
{
    const QSize size(33, 17);
    const QByteArray plain = cwebp("-lossless -exact", samplePng(size, true), "png");
    QVERIFY(plain.mid(12, 4) == "VP8L");
    QByteArray file = extended(0, size) + plain.mid(12);
    qToLittleEndian<quint32>(quint32(file.size() - 8), file.data() + 4);
    const Rgba wanted = pngPixels(samplePng(size, true));
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->bitsPerPixel, 32);
    QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
    QCOMPARE(firstDifference(pngPixels(converted("dwebp -quiet @in -o @out", file, "webp", "png")), wanted),
             QString());
    // Alpha that the picture itself denies is not there.
    QByteArray opaque = plain;
    opaque[24] = char(opaque[24] & ~0x10);
    const auto bare = decoded(m_codec, opaque);
    QVERIFY(bare);
    QCOMPARE(bare->image.format(), QImage::Format_RGB32);
    for (int x = 0; x < size.width(); ++x)
        QCOMPARE(qAlpha(reinterpret_cast<const QRgb*>(bare->image.constScanLine(5))[x]), 255);
}

void TestWebpCodec::readsOnlyTheBeginningToOpen()
{
    const auto source = std::make_shared<WatchedSource>(cwebp("-q 90", sampleMap({300, 200})));
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    QCOMPARE((*decoder)->header(1)->size, QSize(300, 200));
    QVERIFY(source->reached() < 64);
}

void TestWebpCodec::coversTheBox_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QSize>("size");
    const QByteArray lossy = cwebp("-q 90", sampleMap({400, 300}));
    QTest::newRow("every pixel") << lossy << QSize() << QSize(400, 300);
    QTest::newRow("a smaller box") << lossy << QSize(100, 100) << QSize(100, 75);
    QTest::newRow("a larger box") << lossy << QSize(1000, 1000) << QSize(400, 300);
    QTest::newRow("lossless") << cwebp("-lossless", sampleMap({400, 300})) << QSize(100, 100)
                              << QSize(100, 75);
    QTest::newRow("alpha") << cwebp("-q 90", samplePng({400, 300}, true), "png") << QSize(100, 100)
                           << QSize(100, 75);
}

void TestWebpCodec::coversTheBox()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, box);
    const auto picture = decodeBytes(m_codec, file, box);
    QVERIFY(picture && picture->complete);
    QTEST(picture->image.size(), "size");
    QCOMPARE(picture->fullSize, QSize(400, 300));
    const auto full = decoded(m_codec, file);
    QVERIFY(full);
    const QImage small = full->image.convertToFormat(QImage::Format_RGB32)
                             .scaled(picture->image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (!picture->image.hasAlphaChannel())
        QVERIFY(psnr(rgbaOf(picture->image), rgbaOf(small)) > 30);
}

void TestWebpCodec::readsTheProfile()
{
    const ScratchFiles files;
    const QString picture = files.write(QStringLiteral("in.webp"), cwebp("-lossless", sampleMap({20, 10})));
    for (const char* space : {"RGB ", "GRAY"}) {
        const QString profile = files.write(QStringLiteral("profile.icc"), profileOf(space));
        runTool(QStringLiteral("webpmux"), {QStringLiteral("-set"), QStringLiteral("icc"), profile, picture,
                                            QStringLiteral("-o"), files.path(QStringLiteral("out.webp"))});
        const auto read = decoded(m_codec, files.read(QStringLiteral("out.webp")));
        QVERIFY(read && read->complete);
        QCOMPARE(read->profile, QByteArray(space) == "RGB " ? profileOf(space) : QByteArray());
        QCOMPARE(firstDifference(rgbaOf(read->image), fromPnm(sampleMap({20, 10}))), QString());
    }
}

void TestWebpCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const QByteArray good = cwebp("-lossless", sampleMap({20, 10}));
    QTest::newRow("mark only") << good.left(12) << int(ErrorKind::Damaged);
    QTest::newRow("no size") << good.left(24) << int(ErrorKind::Damaged);
    QTest::newRow("no pixel") << good.left(31) << int(ErrorKind::Damaged);
    QTest::newRow("another first chunk")
        << "RIFF" + QByteArray(4, 'x') + "WEBPVP9 " + QByteArray(40, 'x') << int(ErrorKind::Unsupported);
    QByteArray unmarked = good;
    unmarked[20] = 'x';
    QTest::newRow("lossless without its mark") << unmarked << int(ErrorKind::Damaged);
    QTest::newRow("too wide") << extended(0, {70000, 3}) << int(ErrorKind::TooLarge);
    QTest::newRow("animation without a frame") << extended(2, {30, 30}) << int(ErrorKind::Damaged);
    QTest::newRow("extended without a picture") << extended(0, {30, 30}) << int(ErrorKind::Damaged);
}

void TestWebpCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestWebpCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("lossless") << cwebp("-lossless", sampleMap({60, 50}));
    QTest::newRow("lossless, alpha") << cwebp("-lossless", samplePng({60, 50}, true), "png");
    QTest::newRow("lossy") << cwebp("-q 90", sampleMap({100, 160}));
    QTest::newRow("animation") << m_corpus.back().file;
}

void TestWebpCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    // The filter of a lossy picture still changes the last rows that a cut file shows, so rows are not
    // counted.
    QCOMPARE(cutFault(m_codec, {QStringLiteral("file"), file, {}}, false), QString());
    const auto part = decoded(m_codec, file.left(file.size() * 3 / 4));
    QVERIFY(part);
    const auto whole = decoded(m_codec, file);
    QVERIFY(whole && whole->complete);
    QCOMPARE(part->image.size(), whole->image.size());
    if (file != m_corpus.back().file) { // the first frame of the animation is whole by then
        QVERIFY(!part->complete);
        const int sure = whole->image.height() / 4;
        QCOMPARE(rgbaOf(part->image.copy(0, 0, whole->image.width(), sure)).pixels,
                 rgbaOf(whole->image.copy(0, 0, whole->image.width(), sure)).pixels);
    }
}

void TestWebpCodec::writesWhatOthersRead_data()
{
    addSizeAndFormatRows({QSize(1, 1), QSize(13, 7), QSize(1, 2000), QSize(70, 150)});
}

void TestWebpCodec::writesWhatOthersRead()
{
    QFETCH(QSize, size);
    QFETCH(int, format);
    const QImage image = imageOf(samplePicture(size)).convertToFormat(QImage::Format(format));
    const Rgba expected =
        rgbaOf(image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32));
    const auto bytes = m_codec.encode(image, QStringLiteral("webp"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("x.webp"), *bytes);
    const QByteArray pam =
        runTool(QStringLiteral("dwebp"), words("-quiet -pam -o -") + QStringList{QStringLiteral("--"), path});
    QCOMPARE(firstDifference(fromPnm(pam), expected), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), expected), QString());
}

void TestWebpCodec::keepsColorsUnderFullTransparency()
{
    QImage image(4, 1, QImage::Format_ARGB32);
    for (int x = 0; x < 4; ++x)
        image.setPixel(x, 0, qRgba(10 * x, 200, 30, x == 1 ? 0 : 255));
    const auto bytes = m_codec.encode(image, QStringLiteral("webp"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own);
    QCOMPARE(own->image.pixel(1, 0), qRgba(10, 200, 30, 0));
    QCOMPARE(image.pixel(1, 0), qRgba(10, 200, 30, 0));
}

void TestWebpCodec::writesTheProfile()
{
    QVERIFY(m_codec.keepsProfile(QStringLiteral("webp"), ColorModel::Rgb));
    QVERIFY(!m_codec.keepsProfile(QStringLiteral("webp"), ColorModel::Gray));
    QVERIFY(!m_codec.keepsProfile(QStringLiteral("png"), ColorModel::Rgb));
    const QImage image = imageOf(samplePicture({20, 10}));
    EncodeOptions options;
    options.profile = profileOf("RGB ");
    const auto bytes = m_codec.encode(image, QStringLiteral("webp"), options);
    QVERIFY(bytes);
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("x.webp"), *bytes);
    runTool(QStringLiteral("webpmux"), {QStringLiteral("-get"), QStringLiteral("icc"), path,
                                        QStringLiteral("-o"), files.path(QStringLiteral("x.icc"))});
    QCOMPARE(files.read(QStringLiteral("x.icc")), options.profile);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(own->profile, options.profile);
    QCOMPARE(firstDifference(rgbaOf(own->image), samplePicture({20, 10})), QString());
    options.profile = profileOf("GRAY");
    const auto without = m_codec.encode(image, QStringLiteral("webp"), options);
    QVERIFY(without);
    QVERIFY(!without->contains("ICCP"));
}

void TestWebpCodec::refusesToWrite()
{
    QVERIFY(m_codec.canEncode(QStringLiteral("webp")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("png")));
    const QList<QImage> images = {QImage(), QImage(16384, 1, QImage::Format_Mono),
                                  QImage(1, 16384, QImage::Format_Mono)};
    QCOMPARE(writingRefusalFault(m_codec, QStringLiteral("webp"), images), QString());
}

void TestWebpCodec::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(m_codec, cwebp("-q 95", sampleMap({1500, 1500}))), QString());
}

void TestWebpCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 400), QString());
}

void TestWebpCodec::survivesBrokenFilesInABox_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("lossy") << cwebp("-q 50", sampleMap({120, 90}));
    QTest::newRow("lossless") << cwebp("-lossless", sampleMap({120, 90}));
    QTest::newRow("lossy, alpha") << cwebp("-q 50", samplePng({120, 90}, true), "png");
    QTest::newRow("lossless, alpha") << cwebp("-lossless", samplePng({120, 90}, true), "png");
}

/// Scaled while they are decoded: misbehaviour() asks for a box too, and a good part of the children comes
/// that far.
void TestWebpCodec::survivesBrokenFilesInABox()
{
    QFETCH(QByteArray, file);
    int scaled = 0;
    for (quint32 seed = 1; seed <= 100; ++seed) {
        const QByteArray child = Mutator(file, seed).next();
        const QString fault = misbehaviour(m_codec, child);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
        const auto picture = decodeBytes(m_codec, child, QSize(20, 20));
        scaled += picture && !picture->isFull() ? 1 : 0;
    }
    QVERIFY2(scaled > 10, qPrintable(QString::number(scaled)));
}

QTEST_GUILESS_MAIN(TestWebpCodec)
#include "tst_webpcodec.moc"
