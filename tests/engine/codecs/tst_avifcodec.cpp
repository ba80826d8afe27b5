// AVIF and HEIF, which libheif reads for the engine.
#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HeifSizes.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "ProfileFixtures.h"
#include "RefusalChecks.h"

#include <QtEndian>
#include <QtTest>

#include <csignal>
#include <limits>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray box(const char* name, const QByteArray& content)
{
    QByteArray length(4, '\0');
    qToBigEndian<quint32>(quint32(content.size() + 8), length.data());
    return length + name + content;
}

/// `file` with boxes that tell `size`.
QByteArray told(QByteArray file, QSize size)
{
    for (qsizetype at = file.indexOf("ispe"); at >= 0; at = file.indexOf("ispe", at + 1)) {
        qToBigEndian<quint32>(quint32(size.width()), file.data() + at + 8);
        qToBigEndian<quint32>(quint32(size.height()), file.data() + at + 12);
    }
    return file;
}

decltype(SIG_DFL) handlerOf(int number)
{
    struct sigaction now = {};
    return sigaction(number, nullptr, &now) == 0 ? now.sa_handler : SIG_DFL;
}

} // namespace

class TestAvifCodec : public QObject
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
    void refusesOtherCodedSizes_data();
    void refusesOtherCodedSizes();
    void knowsTheCodedSizes_data();
    void knowsTheCodedSizes();
    void findsStreamsInPieces();
    void readsSequenceHeaders_data();
    void readsSequenceHeaders();
    void refusesHugeCodedPictures_data();
    void refusesHugeCodedPictures();
    void refuses_data();
    void refuses();
    void showsWhatACutAvifHolds();
    void survivesCutFiles();
    void neverGuessesTheFormat();
    void leavesSignalsAlone();
    void isReadOnly();
    void stopsWhenCancelled();
    void worksFromSeveralThreads();
    void survivesBrokenFiles();

  private:
    Fixture fixture(const QString& name) const;

    std::vector<decltype(SIG_DFL)> m_handlers; ///< of the signals, before the library is loaded
    std::vector<Fixture> m_avif;
};

Fixture TestAvifCodec::fixture(const QString& name) const
{
    const auto found = std::find_if(m_avif.cbegin(), m_avif.cend(),
                                    [&name](const Fixture& known) { return known.name == name; });
    return found != m_avif.cend() ? *found : Fixture();
}

void TestAvifCodec::initTestCase()
{
    m_avif = avifCorpus();
    QVERIFY(m_avif.size() >= 10);
    for (int number = 0; number < NSIG; ++number)
        m_handlers.push_back(handlerOf(number));
}

void TestAvifCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    const auto type = [](const char* brands) { return box("ftyp", brands); };
    for (const char* brand : {"avif", "avis", "heic", "heix", "mif1", "msf1", "hevc"})
        QTest::newRow(brand) << type((QByteArray(brand) + "0000").constData()) << true;
    QTest::newRow("among the others") << type("zzzz0000yyyymif1") << true;
    QTest::newRow("a film") << type("isom0000iso2mp41") << false;
    QTest::newRow("behind the box") << type("isom0000") + "avif" << false;
    QTest::newRow("no box") << QByteArray("xxxxxxxxavif0000") << false;
    QTest::newRow("short") << type("avif0000").left(15) << false;
}

void TestAvifCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(avifCodec().sniff(head, QStringLiteral("avif")), known);
}

void TestAvifCodec::readsWhatOthersWrite_data()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_avif.size(); ++i)
        QTest::newRow(qPrintable(m_avif[i].name)) << int(i);
}

void TestAvifCodec::readsWhatOthersWrite()
{
    QFETCH(int, index);
    QCOMPARE(fixtureFault(avifCodec(), m_avif[size_t(index)]), QString());
}

void TestAvifCodec::tellsTheDepth_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    const int color = int(QImage::Format_RGB32);
    const int alpha = int(QImage::Format_ARGB32);
    QTest::newRow("AVIF") << QStringLiteral("AVIF, lossless, 33 x 17") << 24 << color;
    QTest::newRow("AVIF, alpha") << QStringLiteral("AVIF, lossless, alpha") << 32 << alpha;
    QTest::newRow("AVIF, 10 bits") << QStringLiteral("AVIF, 10 bits") << 48 << color;
    QTest::newRow("AVIF, 12 bits, alpha") << QStringLiteral("AVIF, 12 bits, alpha") << 64 << alpha;
    QTest::newRow("AVIF, premultiplied") << QStringLiteral("AVIF, premultiplied") << 32 << alpha;
    QTest::newRow("AVIF, grey") << QStringLiteral("AVIF, grey") << 8 << int(QImage::Format_Grayscale8);
    QTest::newRow("AVIF, grey, 10 bits")
        << QStringLiteral("AVIF, grey, 10 bits") << 16 << int(QImage::Format_Grayscale8);
    QTest::newRow("HEIC") << QStringLiteral("HEIC, 64 x 48") << 24 << color;
    QTest::newRow("HEIC, alpha") << QStringLiteral("HEIC, alpha") << 32 << alpha;
}

void TestAvifCodec::tellsTheDepth()
{
    QFETCH(QString, name);
    const auto picture = decoded(avifCodec(), fixture(name).file);
    QVERIFY(picture);
    QTEST(picture->bitsPerPixel, "bits");
    QTEST(int(picture->image.format()), "format");
}

void TestAvifCodec::readsProfiles()
{
    const ScratchFiles files;
    const QByteArray profile = rgbProfile(wideGamut);
    const QString icc = files.write(QStringLiteral("x.icc"), profile);
    const QString png = files.write(QStringLiteral("in.png"), samplePng({33, 17}, false));
    runTool(QStringLiteral("avifenc"),
            words("-l -j 1 --icc") + QStringList{icc, png, files.path(QStringLiteral("x.avif"))});
    const auto avif = decoded(avifCodec(), files.read(QStringLiteral("x.avif")));
    QVERIFY(avif);
    QCOMPARE(avif->profile, profile);
}

void TestAvifCodec::refusesOtherCodedSizes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    for (const char* name : {"AVIF, lossless, 33 x 17", "AVIF, lossless, alpha", "AVIF, 12 bits, alpha",
                             "AVIF, grey", "AVIF, turned by 90 degrees", "HEIC, 64 x 48", "HEIC, alpha"}) {
        for (const QSize size : {QSize(16, 16), QSize(224, 2321), QSize(2321, 16)})
            QTest::addRow("%s, told %d x %d", name, size.width(), size.height())
                << QString::fromLatin1(name) << size;
    }
}

void TestAvifCodec::refusesOtherCodedSizes()
{
    QFETCH(QString, name);
    QFETCH(QSize, size);
    const QByteArray file = told(fixture(name).file, size);
    QCOMPARE(misbehaviour(avifCodec(), file), QString());
    const auto picture = decoded(avifCodec(), file);
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::Damaged);
}

void TestAvifCodec::knowsTheCodedSizes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("coded");
    QTest::newRow("AVIF") << QStringLiteral("AVIF, lossless, 33 x 17") << QSize(33, 17);
    QTest::newRow("AVIF, narrow") << QStringLiteral("AVIF, lossless, 1 x 300") << QSize(1, 300);
    QTest::newRow("AVIF, alpha") << QStringLiteral("AVIF, lossless, alpha") << QSize(33, 17);
    QTest::newRow("AVIF, 12 bits") << QStringLiteral("AVIF, 12 bits, alpha") << QSize(33, 17);
    QTest::newRow("AVIF, turned") << QStringLiteral("AVIF, turned by 90 degrees") << QSize(33, 17);
    QTest::newRow("AVIF, tiles") << QStringLiteral("AVIF, tiles") << QSize(128, 96);
    // In whole blocks, from which the decoder cuts.
    QTest::newRow("HEIC") << QStringLiteral("HEIC, 64 x 48") << QSize(64, 64);
    QTest::newRow("HEIC, 4:4:4") << QStringLiteral("HEIC, 4:4:4") << QSize(64, 64);
    QTest::newRow("HEIC, alpha") << QStringLiteral("HEIC, alpha") << QSize(64, 64);
}

void TestAvifCodec::knowsTheCodedSizes()
{
    QFETCH(QString, name);
    const QList<QSize> sizes = heifCodedSizes(fixture(name).file);
    QVERIFY(!sizes.isEmpty());
    for (const QSize size : sizes)
        QTEST(size, "coded");
}

void TestAvifCodec::findsStreamsInPieces()
{
    // One item, in two pieces of the box of item data, in the wider forms of the boxes.
    const QByteArray stream = QByteArray::fromHex("0a20") + bitsOf("000 1 1 00000 0100 0011 00111 1111 0000");
    const QByteArray entry = box("infe", QByteArray::fromHex("030000000000000700006176303100"));
    const QByteArray types = box("iinf", QByteArray::fromHex("0100000000000001") + entry);
    const QByteArray places = box("iloc", QByteArray::fromHex("02000000"
                                                              "4440"
                                                              "00000001"
                                                              "00000007"
                                                              "0001"
                                                              "0000"
                                                              "00000001"
                                                              "0002"
                                                              "00000000"
                                                              "00000003"
                                                              "00000004"
                                                              "00000009"));
    const QByteArray data = box("idat", 'x' + stream.left(3) + 'x' + stream.mid(3));
    const QByteArray file =
        box("ftyp", "avif0000") + box("meta", QByteArray(4, '\0') + types + places + data);
    QCOMPARE(heifCodedSizes(file), QList<QSize>{QSize(8, 16)});
    for (qsizetype length = 0; length < file.size(); ++length)
        QVERIFY(heifCodedSizes(file.left(length)).size() <= 1);
}

void TestAvifCodec::readsSequenceHeaders_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<bool>("hevc");
    QTest::addColumn<QSize>("size");
    // Units of AV1: head, length; then profile, still, reduced, and what stands before the bits of the sides.
    const auto av1 = [](const char* bits) { return bitsOf("00001010 00100000") + bitsOf(bits); };
    QTest::newRow("AV1, reduced") << av1("000 1 1 00000 0100 0011 00111 1111 0000") << false << QSize(8, 16);
    QTest::newRow("AV1, full") << av1("000 0 0 0 0 00000 000000000000 00100 0100 0011 00111 1111 0000")
                               << false << QSize(8, 16);
    QTest::newRow("AV1, tier") << av1("000 0 0 0 0 00000 000000000000 01000 1 0100 0011 00111 1111 0000")
                               << false << QSize(8, 16);
    QTest::newRow("AV1, timing and decoder model")
        << av1((QByteArray("000 0 0 1") + QByteArray(64, '1') + "1 00101 1 00010" + QByteArray(42, '1') +
                "1 00000 000000000000 00100 1 1111111 1 1111 0100 0011 00111 1111 0000")
                   .constData())
        << false << QSize(8, 16);
    QTest::newRow("AV1, behind a delimiter")
        << bitsOf("00010010 00000000") + av1("000 1 1 00000 0100 0011 00111 1111 0000") << false
        << QSize(8, 16);
    QTest::newRow("AV1, largest") << av1("000 1 1 00000 1111 1111 1111111111111111 1111111111111111 0000")
                                  << false << QSize(65536, 65536);
    QTest::newRow("AV1, cut") << av1("000 1 1 00000 1111 1111 11") << false << QSize();
    QTest::newRow("AV1, none") << bitsOf("00010010 00000000") << false << QSize();
    QTest::newRow("AV1, empty") << QByteArray() << false << QSize();
    const QByteArray level(12, '\x55');
    const auto hevc = [&level](const char* layers, const QByteArray& middle, const char* bits) {
        return bitsOf("0100001000000001") + bitsOf(layers) + level + middle + bitsOf(bits);
    };
    QTest::newRow("HEVC") << hevc("0000 000 1", {}, "1 010 0001000 000010000 1") << true << QSize(7, 15);
    QTest::newRow("HEVC, 4:4:4") << hevc("0000 000 1", {}, "1 00100 0 0001000 000010000 1") << true
                                 << QSize(7, 15);
    QTest::newRow("HEVC, layers") << hevc("0000 001 1", bitsOf("11 00000000000000") + level,
                                          "1 010 0001000 000010000 1")
                                  << true << QSize(7, 15);
    QTest::newRow("HEVC, beyond all") << hevc("0000 000 1", {}, "1 010") + QByteArray(9, '\0') + '\xFF'
                                      << true << QSize(std::numeric_limits<int>::max(), 0);
    QTest::newRow("HEVC, guarded") << bitsOf("0100001000000001 0000 000 1") +
                                          QByteArray::fromHex("55555500000355555555555555") +
                                          bitsOf("1 010 0001000 000010000 1")
                                   << true << QSize(7, 15);
    QTest::newRow("HEVC, another unit") << QByteArray(40, '\x26') << true << QSize();
}

void TestAvifCodec::readsSequenceHeaders()
{
    QFETCH(QByteArray, stream);
    QFETCH(bool, hevc);
    qint64 glances = heifGlances;
    QTEST(hevc ? hevcUnit(stream).size : av1Stream(stream, glances).size, "size");
}

void TestAvifCodec::refusesHugeCodedPictures_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("extension");
    QTest::newRow("AVIF") << QStringLiteral("avifenc -j 1 -s 10 @in @out") << QStringLiteral("avif");
    QTest::newRow("HEIC") << QStringLiteral("heif-enc -q 50 @in -o @out") << QStringLiteral("heic");
}

void TestAvifCodec::refusesHugeCodedPictures()
{
    // The box tells 16 x 16, the stream 256 x 256, which is not let near the decoder.
    QFETCH(QString, program);
    QFETCH(QString, extension);
    const QByteArray good =
        converted(qPrintable(program), samplePng({256, 256}, false), "png", qPrintable(extension));
    QVERIFY(decoded(avifCodec(), good));
    Limits::setMachineBytes(qint64(512) << 10);
    const auto restored = qScopeGuard([] { Limits::setMachineBytes(0); });
    const auto picture = decoded(avifCodec(), told(good, {16, 16}));
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::TooLarge);
}

void TestAvifCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    QTest::newRow("AVIF, mark only") << m_avif[0].file.left(40) << int(ErrorKind::Damaged);
    QTest::newRow("AVIF, something else") << QByteArray(300, 'x') << int(ErrorKind::Damaged);
}

void TestAvifCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(avifCodec(), file, ErrorKind(kind)), QString());
}

void TestAvifCodec::showsWhatACutAvifHolds()
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

void TestAvifCodec::survivesCutFiles()
{
    const Fixture& fixture = m_avif[1];
    const auto whole = decoded(avifCodec(), fixture.file);
    QVERIFY(whole);
    const qsizetype step = std::max<qsizetype>(1, fixture.file.size() / 60);
    for (qsizetype length = 0; length < fixture.file.size(); length += step) {
        const QByteArray cut = fixture.file.left(length);
        QCOMPARE(misbehaviour(avifCodec(), cut), QString());
        const auto part = decoded(avifCodec(), cut);
        QVERIFY(!part || !part->complete || rgbaOf(part->image).pixels == rgbaOf(whole->image).pixels);
    }
}

void TestAvifCodec::neverGuessesTheFormat()
{
    // Good files of other formats behind the accessors: none of them may be read.
    const QList<QByteArray> others = {samplePng({9, 5}, false),
                                      sampleMap({9, 5}),
                                      piped("convert ppm:- gif:-", sampleMap({9, 5})),
                                      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='5'/>",
                                      "push graphic-context\nviewbox 0 0 9 5\npop graphic-context\n",
                                      "%!PS-Adobe-3.0\nshowpage\n"};
    for (const QByteArray& other : others) {
        QVERIFY(!other.isEmpty());
        QVERIFY(!avifCodec().open(ByteSource::fromBytes(other)));
    }
}

void TestAvifCodec::leavesSignalsAlone()
{
    QVERIFY(decoded(avifCodec(), m_avif[0].file));
    for (int number = 1; number < NSIG; ++number)
        QVERIFY2(handlerOf(number) == m_handlers[size_t(number)], qPrintable(QString::number(number)));
}

void TestAvifCodec::isReadOnly()
{
    QCOMPARE(readOnlyFault(avifCodec(), QStringLiteral("avif")), QString());
}

void TestAvifCodec::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(avifCodec(), m_avif[1].file), QString());
}

void TestAvifCodec::worksFromSeveralThreads()
{
    std::atomic<int> faults = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([this, &faults] {
            for (int round = 0; round < 5; ++round)
                faults += fixtureFault(avifCodec(), m_avif[1]).isEmpty() ? 0 : 1;
        }));
        threads.back()->start();
    }
    for (const auto& thread : threads)
        QVERIFY(thread->wait(60000));
    QCOMPARE(faults.load(), 0);
}

void TestAvifCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(avifCodec(), m_avif, 300), QString());
}

QTEST_GUILESS_MAIN(TestAvifCodec)
#include "tst_avifcodec.moc"
