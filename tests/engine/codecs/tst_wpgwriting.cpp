#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "RowNames.h"
#include "WpgChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::wpg;

class TestWpgWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesManyColors();
    void raisesTheResolution();
    void refusesToWrite();

  private:
    const Codec& m_codec = wpgCodec();
};

void TestWpgWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(9, 13), QSize(300, 200)}) {
        QTest::newRow(rowName("black and white", size).constData()) << dotPicture(size) << 1;
        QImage inverse = dotPicture(size);
        inverse.setColorTable({white, qRgb(0, 0, 0)});
        QTest::newRow(rowName("white and black", size).constData()) << inverse << 1;
        QImage two = dotPicture(size);
        two.setColorTable({qRgb(200, 10, 20), qRgb(10, 20, 200)});
        QTest::newRow(rowName("two colours", size).constData()) << two << 4;
        QTest::newRow(rowName("16 colours", size).constData()) << palettePicture(size, 16) << 4;
        QTest::newRow(rowName("17 colours", size).constData()) << palettePicture(size, 17) << 8;
        QTest::newRow(rowName("256 colours", size).constData()) << palettePicture(size, 256) << 8;
        QTest::newRow(rowName("grey", size).constData()) << greyPicture(size) << 8;
    }
    const QImage few = palettePicture(QSize(50, 30), 200);
    constexpr std::array formats = {QImage::Format_MonoLSB,
                                    QImage::Format_RGB32,
                                    QImage::Format_ARGB32,
                                    QImage::Format_RGB888,
                                    QImage::Format_BGR888,
                                    QImage::Format_RGBX8888,
                                    QImage::Format_RGBA8888,
                                    QImage::Format_RGBA64,
                                    QImage::Format_ARGB32_Premultiplied,
                                    QImage::Format_Grayscale16,
                                    QImage::Format_RGB16,
                                    QImage::Format_RGB30,
                                    QImage::Format_RGBX64,
                                    QImage::Format_ARGB4444_Premultiplied};
    for (const QImage::Format format : formats) {
        const QImage picture = format == QImage::Format_MonoLSB ? dotPicture(QSize(21, 4)) : few;
        const QImage converted = picture.convertToFormat(format);
        QTest::newRow(qPrintable(QStringLiteral("format %1").arg(format)))
            << converted << (format == QImage::Format_MonoLSB ? 1 : 8);
    }
    QImage clear = palettePicture(QSize(20, 20), 5);
    clear.setColor(2, qRgba(0, 100, 200, 128));
    QTest::newRow("a half transparent entry") << clear << 4;
}

void TestWpgWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("wpg"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    const QImage wanted = imageOf(overWhite(picture));
    QCOMPARE(difference(readByGm(*bytes), wanted), QString());
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("wpg")), wanted), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, wanted), QString());
    QTEST(own->bitsPerPixel, "bits");
}

void TestWpgWriting::writesManyColors()
{
    const QImage picture = colorPicture(QSize(70, 40)); // noise: as hard as it gets for 256 colours
    const QByteArray bytes = encodeBytes(m_codec, picture, "wpg");
    const auto own = decoded(m_codec, bytes);
    QVERIFY(own);
    QCOMPARE(difference(readByGm(bytes), own->image), QString());
    QVERIFY(psnr(rgbaOf(own->image), rgbaOf(picture)) > 15);
    const auto over = decoded(m_codec, encodeBytes(m_codec, alphaPicture(QSize(70, 40)), "wpg"));
    QVERIFY(over);
    QVERIFY(psnr(rgbaOf(over->image), overWhite(alphaPicture(QSize(70, 40)))) > 15);
}

void TestWpgWriting::raisesTheResolution()
{
    QImage wide(65535, 1, QImage::Format_Mono);
    wide.setColorTable({qRgb(0, 0, 0), white});
    wide.fill(0);
    wide.setDotsPerMeterX(3780);
    wide.setDotsPerMeterY(3780);
    const QByteArray bytes = encodeBytes(m_codec, wide, "wpg");
    QCOMPARE(bytes.mid(16, 4), QByteArray::fromHex("0f060100"));
    const auto word = [&](qsizetype at) { return uchar(bytes[at]) | uchar(bytes[at + 1]) << 8; };
    QCOMPARE(word(20), 65535);     // width in 1/1200 inch
    QCOMPARE(word(22), 1200 / 96); // height
    const qsizetype bitmap = bytes.indexOf('\x0B', 24 + 2 + 10);
    QCOMPARE(word(bitmap + 2), 65535);
    QCOMPARE(word(bitmap + 8), 1200); // dots per inch
    QCOMPARE(word(bitmap + 10), 96);
    const auto own = decoded(m_codec, bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(own->image.size(), wide.size());
}

void TestWpgWriting::refusesToWrite()
{
    const QList<QImage> images = {QImage(), QImage(65536, 1, QImage::Format_Mono),
                                  QImage(1, 65536, QImage::Format_Mono)};
    QCOMPARE(writingRefusalFault(m_codec, QStringLiteral("wpg"), images), QString());
    QVERIFY(m_codec.canEncode(QStringLiteral("wpg")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("wmf")));
}

QTEST_MAIN(TestWpgWriting)
#include "tst_wpgwriting.moc"
