// The formats that GraphicsMagick reads for the engine: AVIF with HEIF, and JPEG XL.
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/MagickBridge.h"
#include "engine/Limits.h"
#include "HostileBytes.h"

#include <QtEndian>
#include <QtTest>

#include <csignal>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray box(const char* name, const QByteArray& content)
{
    QByteArray length(4, '\0');
    qToBigEndian<quint32>(quint32(content.size() + 8), length.data());
    return length + name + content;
}

decltype(SIG_DFL) handlerOf(int number)
{
    struct sigaction now = {};
    return sigaction(number, nullptr, &now) == 0 ? now.sa_handler : SIG_DFL;
}

} // namespace

class TestMagickCodecs : public QObject
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
    void readsProfiles();
    void needsNoProfileForSrgb();
    void refuses_data();
    void refuses();
    void showsWhatACutAvifHolds();
    void survivesCutFiles();
    void neverGuessesTheFormat();
    void leavesSignalsAlone();
    void isReadOnly();
    void stopsWhenCancelled();
    void worksFromSeveralThreads();
    void survivesBrokenFiles_data();
    void survivesBrokenFiles();

  private:
    const Codec& codecOf(bool xl) const { return xl ? jpegXlCodec() : avifCodec(); }
    const std::vector<Fixture>& corpusOf(bool xl) const { return xl ? m_xl : m_avif; }

    std::vector<decltype(SIG_DFL)> m_handlers; ///< of the signals, before the library is loaded
    std::vector<Fixture> m_avif;
    std::vector<Fixture> m_xl;
};

void TestMagickCodecs::initTestCase()
{
    m_avif = avifCorpus();
    m_xl = jpegXlCorpus();
    QVERIFY(m_avif.size() >= 10 && m_xl.size() >= 10);
    for (int number = 0; number < NSIG; ++number)
        m_handlers.push_back(handlerOf(number));
}

void TestMagickCodecs::sniffs_data()
{
    QTest::addColumn<bool>("xl");
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    const auto type = [](const char* brands) { return box("ftyp", brands); };
    for (const char* brand : {"avif", "avis", "heic", "heix", "mif1", "msf1", "hevc"})
        QTest::newRow(brand) << false << type((QByteArray(brand) + "0000").constData()) << true;
    QTest::newRow("among the others") << false << type("zzzz0000yyyymif1") << true;
    QTest::newRow("a film") << false << type("isom0000iso2mp41") << false;
    QTest::newRow("behind the box") << false << type("isom0000") + "avif" << false;
    QTest::newRow("no box") << false << QByteArray("xxxxxxxxavif0000") << false;
    QTest::newRow("short") << false << type("avif0000").left(15) << false;
    QTest::newRow("codestream") << true << QByteArray::fromHex("ff0a00") << true;
    QTest::newRow("boxes") << true << QByteArray::fromHex("0000000c4a584c200d0a870a00000014") << true;
    QTest::newRow("JPEG") << true << QByteArray::fromHex("ffd8ff") << false;
    QTest::newRow("other boxes") << true << QByteArray::fromHex("0000000c6a5020200d0a870a") << false;
}

void TestMagickCodecs::sniffs()
{
    QFETCH(bool, xl);
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(codecOf(xl).sniff(head, QStringLiteral("avif")), known);
}

void TestMagickCodecs::readsWhatOthersWrite_data()
{
    QTest::addColumn<bool>("xl");
    QTest::addColumn<int>("index");
    for (const bool xl : {false, true}) {
        for (size_t i = 0; i < corpusOf(xl).size(); ++i)
            QTest::newRow(qPrintable((xl ? QStringLiteral("JPEG XL, ") : QString()) + corpusOf(xl)[i].name))
                << xl << int(i);
    }
}

void TestMagickCodecs::readsWhatOthersWrite()
{
    QFETCH(bool, xl);
    QFETCH(int, index);
    QCOMPARE(fixtureFault(codecOf(xl), corpusOf(xl)[size_t(index)]), QString());
}

void TestMagickCodecs::tellsTheDepth_data()
{
    QTest::addColumn<bool>("xl");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    const int color = int(QImage::Format_RGB32);
    const int alpha = int(QImage::Format_ARGB32);
    QTest::newRow("AVIF") << false << QStringLiteral("AVIF, lossless, 33 x 17") << 24 << color;
    QTest::newRow("AVIF, alpha") << false << QStringLiteral("AVIF, lossless, alpha") << 32 << alpha;
    QTest::newRow("AVIF, 10 bits") << false << QStringLiteral("AVIF, 10 bits") << 48 << color;
    QTest::newRow("AVIF, 12 bits, alpha") << false << QStringLiteral("AVIF, 12 bits, alpha") << 64 << alpha;
    QTest::newRow("HEIC") << false << QStringLiteral("HEIC, 64 x 48") << 24 << color;
    QTest::newRow("JXL") << true << QStringLiteral("lossless, 33 x 17") << 24 << color;
    QTest::newRow("JXL, alpha") << true << QStringLiteral("lossless, alpha") << 32 << alpha;
    QTest::newRow("JXL, 16 bits") << true << QStringLiteral("lossless, 16 bits") << 48 << color;
}

void TestMagickCodecs::tellsTheDepth()
{
    QFETCH(bool, xl);
    QFETCH(QString, name);
    for (const Fixture& fixture : corpusOf(xl)) {
        if (fixture.name != name)
            continue;
        const auto picture = decoded(codecOf(xl), fixture.file);
        QVERIFY(picture);
        QTEST(picture->bitsPerPixel, "bits");
        QTEST(int(picture->image.format()), "format");
        return;
    }
    QFAIL("no such fixture");
}

void TestMagickCodecs::readsProfiles()
{
    const ScratchFiles files;
    // A profile of other primaries than sRGB's, as ImageMagick's neighbours bring it.
    QByteArray png = samplePng({33, 17}, false);
    const QString path = files.write(QStringLiteral("in.png"), png);
    const QByteArray withGamma =
        runTool(QStringLiteral("convert"), {path, QStringLiteral("-set"), QStringLiteral("gamma"),
                                            QStringLiteral("1.0"), QStringLiteral("png:-")});
    QVERIFY(!withGamma.isEmpty());
    const QByteArray xl = converted("cjxl --quiet -d 0 @in @out", withGamma, "png", "jxl");
    const auto picture = decoded(jpegXlCodec(), xl);
    QVERIFY(picture);
    QCOMPARE(picture->profile.mid(16, 4), QByteArray("RGB "));
    QCOMPARE(picture->profile.mid(36, 4), QByteArray("acsp"));

    const QString icc = files.write(QStringLiteral("x.icc"), picture->profile);
    runTool(QStringLiteral("avifenc"),
            words("-l -j 1 --icc") + QStringList{icc, path, files.path(QStringLiteral("x.avif"))});
    const auto avif = decoded(avifCodec(), files.read(QStringLiteral("x.avif")));
    QVERIFY(avif);
    QCOMPARE(avif->profile, picture->profile);
}

void TestMagickCodecs::needsNoProfileForSrgb()
{
    for (const Fixture& fixture : m_xl) {
        if (fixture.name != QLatin1String("lossless, 33 x 17") &&
            fixture.name != QLatin1String("lossless, grey"))
            continue;
        const auto picture = decoded(jpegXlCodec(), fixture.file);
        QVERIFY(picture);
        QCOMPARE(picture->profile, QByteArray());
        if (fixture.name.endsWith(QLatin1String("grey")))
            QCOMPARE(picture->image.format(), QImage::Format_Grayscale8);
    }
}

void TestMagickCodecs::refuses_data()
{
    QTest::addColumn<bool>("xl");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    QTest::newRow("AVIF, mark only") << false << m_avif[0].file.left(40) << int(ErrorKind::Damaged);
    QTest::newRow("AVIF, something else") << false << QByteArray(300, 'x') << int(ErrorKind::Damaged);
    QTest::newRow("JXL, mark only") << true << QByteArray::fromHex("ff0a") << int(ErrorKind::Damaged);
    QTest::newRow("JXL, something else") << true << QByteArray(300, 'x') << int(ErrorKind::Damaged);
    const ScratchFiles files;
    const QString frame = files.write(QStringLiteral("f.ppm"), sampleMap({20, 10}));
    const QByteArray gif =
        runTool(QStringLiteral("convert"), {frame, frame, QStringLiteral("-flop"), QStringLiteral("gif:-")});
    QTest::newRow("JXL, animation") << true << converted("cjxl --quiet -d 0 @in @out", gif, "gif", "jxl")
                                    << int(ErrorKind::Unsupported);
}

void TestMagickCodecs::refuses()
{
    QFETCH(bool, xl);
    QFETCH(QByteArray, file);
    const auto picture = decoded(codecOf(xl), file);
    QVERIFY(!picture);
    QVERIFY(!picture.error().text.isEmpty());
    QTEST(int(picture.error().kind), "kind");
}

void TestMagickCodecs::showsWhatACutAvifHolds()
{
    const QByteArray file =
        converted("avifenc -j 1 -l -s 8 @in @out", samplePng({256, 256}, false), "png", "avif");
    const auto whole = decoded(avifCodec(), file);
    QVERIFY(whole && whole->complete);
    const auto part = decoded(avifCodec(), file.left(file.size() * 3 / 4));
    QVERIFY2(part, part ? "" : qPrintable(part.error().text));
    QVERIFY(!part->complete);
    QCOMPARE(part->image.size(), whole->image.size());
    QCOMPARE(part->image.copy(0, 0, 64, 64), whole->image.copy(0, 0, 64, 64));
}

void TestMagickCodecs::survivesCutFiles()
{
    for (const bool xl : {false, true}) {
        const Fixture& fixture = corpusOf(xl)[1];
        const auto whole = decoded(codecOf(xl), fixture.file);
        QVERIFY(whole);
        const qsizetype step = std::max<qsizetype>(1, fixture.file.size() / 60);
        for (qsizetype length = 0; length < fixture.file.size(); length += step) {
            const QByteArray cut = fixture.file.left(length);
            QCOMPARE(misbehaviour(codecOf(xl), cut), QString());
            const auto part = decoded(codecOf(xl), cut);
            QVERIFY(!part || !part->complete || rgbaOf(part->image).pixels == rgbaOf(whole->image).pixels);
        }
    }
}

void TestMagickCodecs::neverGuessesTheFormat()
{
    // Good files of other formats behind the accessors: none of them may be read.
    const QList<QByteArray> others = {samplePng({9, 5}, false),
                                      sampleMap({9, 5}),
                                      piped("convert ppm:- gif:-", sampleMap({9, 5})),
                                      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='5'/>",
                                      "push graphic-context\nviewbox 0 0 9 5\npop graphic-context\n",
                                      "%!PS-Adobe-3.0\nshowpage\n"};
    const CancelFlag go = false;
    for (const QByteArray& other : others) {
        QVERIFY(!other.isEmpty());
        for (const MagickFormat format : {MagickFormat::Heif, MagickFormat::JpegXl}) {
            QVERIFY(!pingWithMagick(format, other));
            QVERIFY(!readWithMagick(format, other, go));
        }
        QVERIFY(!avifCodec().open(ByteSource::fromBytes(other)));
        QVERIFY(!jpegXlCodec().open(ByteSource::fromBytes(other)));
    }
    QVERIFY(!pingWithMagick(MagickFormat::Heif, m_xl[1].file));
    QVERIFY(!pingWithMagick(MagickFormat::JpegXl, m_avif[1].file));
    QVERIFY(!pingWithMagick(MagickFormat::Heif, QByteArray()));
}

void TestMagickCodecs::leavesSignalsAlone()
{
    QVERIFY(decoded(jpegXlCodec(), m_xl[0].file));
    for (int number = 1; number < NSIG; ++number)
        QVERIFY2(handlerOf(number) == m_handlers[size_t(number)], qPrintable(QString::number(number)));
}

void TestMagickCodecs::isReadOnly()
{
    for (const bool xl : {false, true}) {
        QVERIFY(!codecOf(xl).canEncode(codecOf(xl).extensions().first()));
        const auto bytes = codecOf(xl).encode(QImage(3, 3, QImage::Format_RGB32), QStringLiteral("jxl"), {});
        QVERIFY(!bytes);
        QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    }
}

void TestMagickCodecs::stopsWhenCancelled()
{
    for (const bool xl : {false, true}) {
        const auto decoder = codecOf(xl).open(ByteSource::fromBytes(corpusOf(xl)[1].file));
        QVERIFY(decoder);
        CancelFlag cancel = true;
        const auto result = (*decoder)->decode(1, QSize(), cancel);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
        cancel = false;
        QVERIFY((*decoder)->decode(1, QSize(), cancel));
    }
}

void TestMagickCodecs::worksFromSeveralThreads()
{
    std::atomic<int> faults = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([this, i, &faults] {
            for (int round = 0; round < 5; ++round)
                faults += fixtureFault(codecOf(i % 2), corpusOf(i % 2)[1]).isEmpty() ? 0 : 1;
        }));
        threads.back()->start();
    }
    for (const auto& thread : threads)
        QVERIFY(thread->wait(60000));
    QCOMPARE(faults.load(), 0);
}

void TestMagickCodecs::survivesBrokenFiles_data()
{
    QTest::addColumn<bool>("xl");
    QTest::newRow("AVIF and HEIF") << false;
    QTest::newRow("JPEG XL") << true;
}

void TestMagickCodecs::survivesBrokenFiles()
{
    QFETCH(bool, xl);
    QCOMPARE(mutantFault(codecOf(xl), corpusOf(xl), 300), QString());
}

QTEST_GUILESS_MAIN(TestMagickCodecs)
#include "tst_magickcodecs.moc"
