#include "CodecChecks.h"
#include "engine/codecs/Codecs.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = losslessJpegCodec();

/// The first pixel of a lossless JPEG of one pixel with these samples.
QRgb pixelOf(const std::vector<int>& samples, const QByteArray& marks)
{
    LosslessJpegMaker maker;
    maker.picture = {QSize(1, 1), 8, {}};
    for (const int sample : samples)
        maker.picture.planes.push_back({sample});
    maker.marks = marks;
    const auto picture = decodeBytes(codec, maker.bytes());
    return picture ? picture->image.pixel(0, 0) : 0;
}

} // namespace

class TestLosslessJpegReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void findsTheWayByContent();
    void choosesTheColorSpace_data();
    void choosesTheColorSpace();
    void readsTwoComponentsAsGray();
    void readsRealSamples();
};

void TestLosslessJpegReading::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("accepted");
    LosslessJpegMaker far = sampleMaker();
    far.marks = LosslessJpegMaker::segment(0xe1, QByteArray(2000, 'x'));
    QByteArray filled = sampleMaker().bytes().left(1024);
    filled.insert(2, QByteArray(5, '\xff'));
    QTest::newRow("lossless") << sampleMaker().bytes().left(1024) << true;
    QTest::newRow("fill bytes before the frame") << filled << true;
    QTest::newRow("baseline") << colorJpeg(QSize(9, 9)).left(1024) << false;
    QTest::newRow("progressive") << colorJpeg(QSize(9, 9), {QStringLiteral("-progressive")}).left(1024)
                                 << false;
    QTest::newRow("frame beyond the head") << far.bytes().left(1024) << false;
    QTest::newRow("three bytes") << QByteArray("\xff\xd8\xff") << false;
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestLosslessJpegReading::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("ljp")), accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("txt")), accepted);
}

void TestLosslessJpegReading::readsTheCorpus_data()
{
    addFixtureRows(losslessJpegCorpus());
}

void TestLosslessJpegReading::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    Picture picture;
    QCOMPARE(fixtureFault(codec, fixture, &picture), QString());
    const QByteArray& file = fixture.file;
    const int precision = uchar(file[frameAt(file) + 4]);
    const int components = uchar(file[frameAt(file) + 9]);
    QCOMPARE(picture.bitsPerPixel, (precision > 8 ? 16 : 8) * components);
    QCOMPARE(picture.image.format(), components == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
}

void TestLosslessJpegReading::findsTheWayByContent()
{
    // A lossless file whose frame header lies beyond the sniffed head, and a plain JPEG under the extension.
    LosslessJpegMaker maker = sampleMaker();
    maker.marks = LosslessJpegMaker::segment(0xe1, QByteArray(60000, 'x'));
    const auto far = openDecoder(ByteSource::fromBytes(maker.bytes()), QStringLiteral("jpg"));
    QVERIFY(far);
    const CancelFlag go = false;
    const auto picture = (*far)->decode(1, {}, go);
    QVERIFY(picture);
    QCOMPARE(firstDifference(rgbaOf(picture->image), shownPlanes(maker.picture)), QString());

    const QByteArray plain = colorJpeg(QSize(20, 11));
    const auto decoder = openDecoder(ByteSource::fromBytes(plain), QStringLiteral("ljp"));
    QVERIFY(decoder);
    const auto shown = (*decoder)->decode(1, {}, go);
    QVERIFY(shown);
    QCOMPARE(firstDifference(rgbaOf(shown->image), djpeg(plain)), QString());
}

void TestLosslessJpegReading::choosesTheColorSpace_data()
{
    QTest::addColumn<std::vector<int>>("samples");
    QTest::addColumn<QByteArray>("marks");
    QTest::addColumn<QRgb>("pixel");
    using Samples = std::vector<int>;
    const Samples three = {120, 90, 200};
    // R = 120 + 1.402 * 72, G = 120 + 0.344136 * 38 - 0.714136 * 72, B = 120 - 1.772 * 38
    const QRgb fromYCbCr = qRgb(221, 82, 53);
    QTest::newRow("no mark") << three << QByteArray() << qRgb(120, 90, 200);
    QTest::newRow("JFIF") << three << jfifMark() << fromYCbCr;
    QTest::newRow("Adobe 0") << three << adobeMark(0) << qRgb(120, 90, 200);
    QTest::newRow("Adobe 1") << three << adobeMark(1) << fromYCbCr;
    QTest::newRow("JFIF and Adobe 0") << three << jfifMark() + adobeMark(0) << qRgb(120, 90, 200);
    const Samples four = {200, 100, 50, 204};
    QTest::newRow("four inks") << Samples{55, 155, 205, 51} << QByteArray() << qRgb(160, 80, 40);
    QTest::newRow("four inks of Adobe") << four << adobeMark(0) << qRgb(160, 80, 40);
    // The inks are 255 - (221, 82, 53), each times 204 / 255.
    QTest::newRow("YCCK") << Samples{120, 90, 200, 204} << adobeMark(2) << qRgb(27, 138, 162);
    QTest::newRow("grey under JFIF") << Samples{77} << jfifMark() << qRgb(77, 77, 77);
}

void TestLosslessJpegReading::choosesTheColorSpace()
{
    QFETCH(std::vector<int>, samples);
    QFETCH(QByteArray, marks);
    QFETCH(QRgb, pixel);
    QCOMPARE(pixelOf(samples, marks), pixel);
}

void TestLosslessJpegReading::readsTwoComponentsAsGray()
{
    const LosslessJpegMaker maker = sampleMaker(2);
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.format(), QImage::Format_Grayscale8);
    QCOMPARE(firstDifference(rgbaOf(picture->image), shownPlanes(maker.picture)), QString());
}

void TestLosslessJpegReading::readsRealSamples()
{
    const auto folder = sampleFolder(QStringLiteral("ljp"));
    if (!folder)
        QSKIP("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
    for (const QString& name : folder->entryList(QDir::Files)) {
        QFile file(folder->filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY2(codec.sniff(bytes.left(1024), QStringLiteral("ljp")), qPrintable(name));
        const auto picture = decodeBytes(codec, bytes);
        QVERIFY2(picture && picture->complete, qPrintable(name));
        SamplePlanes facts{picture->fullSize, uchar(bytes[frameAt(bytes) + 4]), {}};
        facts.planes.resize(uchar(bytes[frameAt(bytes) + 9]));
        QCOMPARE(firstDifference(rgbaOf(picture->image), shownPlanes(readByDcmtk(bytes, facts))), QString());
    }
}

QTEST_GUILESS_MAIN(TestLosslessJpegReading)
#include "tst_losslessjpegreading.moc"
