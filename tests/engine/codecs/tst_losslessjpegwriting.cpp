#include "engine/codecs/Codecs.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"
#include "RefusalChecks.h"
#include "WritingRows.h"

#include <QTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = losslessJpegCodec();

} // namespace

class TestLosslessJpegWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesEverySize_data();
    void writesEverySize();
    void keepsToTheExtension();
    void refusesToWrite();
};

void TestLosslessJpegWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("components");
    const QImage source = imageOf(samplePicture(QSize(43, 21)));
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
        const QImage image = source.convertToFormat(QImage::Format(format));
        const bool gray = format == QImage::Format_Mono || format == QImage::Format_MonoLSB ||
                          format == QImage::Format_Grayscale8 || format == QImage::Format_Grayscale16;
        QTest::newRow(qPrintable(QStringLiteral("format %1").arg(format))) << image << (gray ? 1 : 3);
    }
    QImage grays(20, 9, QImage::Format_Indexed8);
    grays.setColorTable({qRgb(9, 9, 9), qRgb(200, 200, 200)});
    grays.fill(1);
    QTest::newRow("a palette of greys") << grays << 1;
    grays.setColor(1, qRgba(200, 200, 200, 0));
    QTest::newRow("a palette of greys, one clear") << grays << 3;
}

void TestLosslessJpegWriting::writesWhatOthersRead()
{
    QFETCH(QImage, image);
    QFETCH(int, components);
    const auto file = codec.encode(image, QStringLiteral("ljp"), {});
    QVERIFY(file);
    QCOMPARE(int((*file)[frameAt(*file) + 9]), components);
    QCOMPARE(markerAt(*file, 0xee) > 0, components == 3);
    SamplePlanes facts{image.size(), 8, {}};
    facts.planes.resize(size_t(components));
    QCOMPARE(firstDifference(shownPlanes(readByDcmtk(*file, facts)), overWhite(image)), QString());
    const auto own = decodeBytes(codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), overWhite(image)), QString());
}

void TestLosslessJpegWriting::writesEverySize_data()
{
    addSizeRows({QSize(1, 1), QSize(1, 2), QSize(2, 1), QSize(1, 20000), QSize(20000, 1), QSize(65, 130)});
}

void TestLosslessJpegWriting::writesEverySize()
{
    QFETCH(QSize, size);
    const QImage image = imageOf(samplePicture(size)).convertToFormat(QImage::Format_RGB32);
    const auto file = codec.encode(image, QStringLiteral("ljp"), {});
    QVERIFY(file);
    SamplePlanes facts{size, 8, std::vector<std::vector<int>>(3)};
    QCOMPARE(firstDifference(shownPlanes(readByDcmtk(*file, facts)), rgbaOf(image)), QString());
    QImage flat(size, QImage::Format_Grayscale8); // one category only
    flat.fill(128);
    const auto small = codec.encode(flat, QStringLiteral("ljp"), {});
    QVERIFY(small);
    const auto own = decodeBytes(codec, *small);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), rgbaOf(flat)), QString());
}

void TestLosslessJpegWriting::keepsToTheExtension()
{
    QVERIFY(codec.canEncode(QStringLiteral("ljp")));
    QVERIFY(!codec.canEncode(QStringLiteral("jpg")));
    QCOMPARE(encoderFor(QStringLiteral("LJP")), &codec);
}

void TestLosslessJpegWriting::refusesToWrite()
{
    const QList<QImage> images = {QImage(), QImage(65536, 1, QImage::Format_Mono)};
    QCOMPARE(writingRefusalFault(codec, QStringLiteral("ljp"), images), QString());
}

QTEST_GUILESS_MAIN(TestLosslessJpegWriting)
#include "tst_losslessjpegwriting.moc"
