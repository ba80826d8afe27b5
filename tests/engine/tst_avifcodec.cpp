// AVIF and HEIF, which libheif reads for the engine.
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "MadeProfiles.h"

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
    std::vector<decltype(SIG_DFL)> m_handlers; ///< of the signals, before the library is loaded
    std::vector<Fixture> m_avif;
};

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
    for (const Fixture& fixture : m_avif) {
        if (fixture.name != name)
            continue;
        const auto picture = decoded(avifCodec(), fixture.file);
        QVERIFY(picture);
        QTEST(picture->bitsPerPixel, "bits");
        QTEST(int(picture->image.format()), "format");
        return;
    }
    QFAIL("no such fixture");
}

void TestAvifCodec::readsProfiles()
{
    const ScratchFiles files;
    const QByteArray profile = rgbProfile();
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
    QTest::addColumn<QSize>("told");
    for (const char* name : {"AVIF, lossless, 33 x 17", "AVIF, lossless, alpha", "AVIF, 12 bits, alpha",
                             "AVIF, grey", "AVIF, turned by 90 degrees", "HEIC, 64 x 48", "HEIC, alpha"}) {
        for (const QSize told : {QSize(16, 16), QSize(224, 2321), QSize(2321, 16)})
            QTest::addRow("%s, told %d x %d", name, told.width(), told.height())
                << QString::fromLatin1(name) << told;
    }
}

void TestAvifCodec::refusesOtherCodedSizes()
{
    QFETCH(QString, name);
    QFETCH(QSize, told);
    const auto fixture = std::find_if(m_avif.cbegin(), m_avif.cend(),
                                      [&name](const Fixture& known) { return known.name == name; });
    QVERIFY(fixture != m_avif.cend());
    QByteArray file = fixture->file;
    int boxes = 0;
    for (qsizetype at = file.indexOf("ispe"); at >= 0; at = file.indexOf("ispe", at + 1), ++boxes) {
        qToBigEndian<quint32>(quint32(told.width()), file.data() + at + 8);
        qToBigEndian<quint32>(quint32(told.height()), file.data() + at + 12);
    }
    QVERIFY(boxes > 0);
    QCOMPARE(misbehaviour(avifCodec(), file), QString());
    const auto picture = decoded(avifCodec(), file);
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::Damaged);
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
    const auto picture = decoded(avifCodec(), file);
    QVERIFY(!picture);
    QVERIFY(!picture.error().text.isEmpty());
    QTEST(int(picture.error().kind), "kind");
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
    QVERIFY(!avifCodec().canEncode(QStringLiteral("avif")));
    const auto bytes = avifCodec().encode(QImage(3, 3, QImage::Format_RGB32), QStringLiteral("avif"), {});
    QVERIFY(!bytes);
    QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
}

void TestAvifCodec::stopsWhenCancelled()
{
    const auto decoder = avifCodec().open(ByteSource::fromBytes(m_avif[1].file));
    QVERIFY(decoder);
    CancelFlag cancel = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    cancel = false;
    QVERIFY((*decoder)->decode(1, QSize(), cancel));
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
