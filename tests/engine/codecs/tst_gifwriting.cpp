#include "CodecFixtures.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "RowNames.h"

#include <QtTest>

#include <array>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QImage smoothPicture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), (x + y) % 256));
    }
    return image;
}

} // namespace

class TestGifWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsOneClearEntry();
    void quantisesWell();
    void keepsUndecodedPixelsOpaque_data();
    void keepsUndecodedPixelsOpaque();
    void refusesToWrite();

  private:
    const Codec& m_codec = gifCodec();
};

void TestGifWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5)}) {
        QTest::newRow(rowName("palette of 256", size).constData()) << palettePicture(size, 256);
        QTest::newRow(rowName("palette of 3", size).constData()) << palettePicture(size, 3);
        QTest::newRow(rowName("mono", size).constData()) << dotPicture(size);
        QTest::newRow(rowName("grey", size).constData()) << greyPicture(size);
        QTest::newRow(rowName("few colours in 32 bits", size).constData())
            << palettePicture(size, 256).convertToFormat(QImage::Format_RGB32);
    }
    QTest::newRow("100 x 100, 256 colours") << palettePicture(QSize(100, 100), 256);
}

void TestGifWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("gif"), {});
    QVERIFY(bytes);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("gif")), picture), QString());
    QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("giftopnm")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());
}

void TestGifWriting::keepsOneClearEntry()
{
    QImage indexed = palettePicture(QSize(30, 20), 9);
    indexed.setColor(4, qRgba(9, 9, 9, 0));
    QImage deep = indexed.convertToFormat(QImage::Format_ARGB32);
    deep.setPixel(2, 2, qRgba(1, 2, 3, 127)); // less than half opaque
    deep.setPixel(3, 2, qRgba(1, 2, 3, 128));
    for (const QImage& picture : {indexed, deep}) {
        const QByteArray bytes = encodeBytes(m_codec, picture, "gif");
        QImage expected = picture.convertToFormat(QImage::Format_ARGB32);
        if (picture.format() == QImage::Format_ARGB32) {
            expected.setPixel(2, 2, 0);
            expected.setPixel(3, 2, qRgb(1, 2, 3));
        }
        QCOMPARE(difference(readByMagick(bytes, QStringLiteral("gif")), expected, true), QString());
        const auto own = decoded(m_codec, bytes);
        QVERIFY(own);
        QCOMPARE(difference(own->image, expected, true), QString());
    }
}

void TestGifWriting::quantisesWell()
{
    QImage picture = smoothPicture(QSize(200, 150));
    const auto own = decoded(m_codec, encodeBytes(m_codec, picture, "gif"));
    QVERIFY(own);
    QCOMPARE(
        difference(readByMagick(encodeBytes(m_codec, picture, "gif"), QStringLiteral("gif")), own->image),
        QString());
    // Spread errors cancel out: over blocks of 10 x 10 the mean colour stays close to the picture's.
    double worst = 0;
    for (int top = 0; top < picture.height(); top += 10) {
        for (int left = 0; left < picture.width(); left += 10) {
            std::array<double, 3> sums = {};
            for (int i = 0; i < 100; ++i) {
                const QRgb a = picture.pixel(left + i % 10, top + i / 10);
                const QRgb b = own->image.pixel(left + i % 10, top + i / 10);
                sums[0] += qRed(a) - qRed(b);
                sums[1] += qGreen(a) - qGreen(b);
                sums[2] += qBlue(a) - qBlue(b);
            }
            for (const double sum : sums)
                worst = std::max(worst, std::abs(sum) / 100);
        }
    }
    QVERIFY2(worst < 6, qPrintable(QString::number(worst)));

    picture = picture.convertToFormat(QImage::Format_ARGB32);
    picture.setPixel(5, 5, 0);
    const auto clear = decoded(m_codec, encodeBytes(m_codec, picture, "gif"));
    QVERIFY(clear);
    QCOMPARE(qAlpha(clear->image.pixel(5, 5)), 0);
    QCOMPARE(qAlpha(clear->image.pixel(6, 5)), 255);
    QVERIFY(clear->image.colorCount() <= 256);
}

void TestGifWriting::keepsUndecodedPixelsOpaque_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto cutJpeg = [](const QImage& picture) {
        const QByteArray whole =
            runTool(QStringLiteral("convert"), words("ppm:- -quality 90 jpeg:-"), writePnm(picture));
        return whole.left(whole.size() * 2 / 3);
    };
    QImage flat(QSize(200, 400), QImage::Format_RGB32);
    flat.fill(qRgb(200, 40, 90));
    QTest::newRow("JPEG of one colour, cut") << cutJpeg(flat);
    QTest::newRow("JPEG of many colours, cut") << cutJpeg(smoothPicture(QSize(200, 400)));
    // A bitmap of 300 x 2 pixels in RLE24: a run in each row, the rest is never drawn.
    const QByteArray header = QByteArray::fromHex("28000000 2c010000 02000000 0100 1800 04000000"
                                                  "00000000 00000000 00000000 00000000 00000000");
    const auto runs = [&header](const QByteArray& codes) {
        const QByteArray start = QByteArray::fromHex("424d 00000000 00000000 36000000");
        return start + header + codes + QByteArray::fromHex("0000 0001");
    };
    QTest::newRow("RLE24 with a gap, two colours") << runs(QByteArray::fromHex("05 102030"));
    QByteArray close; // more colours than a palette holds, so much alike that four entries do
    for (int i = 0; i < 299; ++i) {
        close += '\1';
        close += char(40 + i / 10);
        close += char(100 + i / 8 % 4);
        close += char(200 + i % 8);
    }
    QTest::newRow("RLE24 with a gap, many colours alike") << runs(close);
}

void TestGifWriting::keepsUndecodedPixelsOpaque()
{
    QFETCH(QByteArray, bytes);
    const auto decoder = openDecoder(ByteSource::fromBytes(bytes), QString());
    QVERIFY2(decoder, decoder ? "" : qPrintable(decoder.error().text));
    const CancelFlag go = false;
    const auto picture = (*decoder)->decode(1, QSize(), go);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    const QImage& image = picture->image;
    QCOMPARE(image.format(), QImage::Format_RGB32);
    // The first row of a bitmap is the last one stored.
    const QPoint blank = bytes.startsWith("BM") ? QPoint(299, 0) : QPoint(199, 399);
    QCOMPARE(reinterpret_cast<const QRgb*>(image.constScanLine(blank.y()))[blank.x()], 0u);

    const auto written = decoded(m_codec, encodeBytes(m_codec, image, "gif"));
    QVERIFY(written);
    const QImage shown = written->image.convertToFormat(QImage::Format_ARGB32);
    int clear = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            clear += qAlpha(shown.pixel(x, y)) == 255 ? 0 : 1;
    }
    QCOMPARE(clear, 0);
    const QRgb black = shown.pixel(blank);
    QVERIFY2(qRed(black) < 16 && qGreen(black) < 16 && qBlue(black) < 16,
             qPrintable(QString::number(black, 16)));
    QVERIFY(written->image.colorCount() <= 256);
}

void TestGifWriting::refusesToWrite()
{
    const QList<QImage> images = {QImage(), QImage(65536, 1, QImage::Format_Mono),
                                  QImage(1, 65536, QImage::Format_Mono)};
    QCOMPARE(writingRefusalFault(m_codec, QStringLiteral("gif"), images), QString());
    QVERIFY(m_codec.canEncode(QStringLiteral("gif")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("png")));
}

QTEST_GUILESS_MAIN(TestGifWriting)
#include "tst_gifwriting.moc"
