// Writing bitmaps: what other programs read of them, runs, palettes, alpha.
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Pixels.h"
#include "PureColors.h"
#include "RefusalChecks.h"
#include "RowNames.h"
#include "WritingRows.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestBmpWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesRuns_data();
    void writesRuns();
    void keepsFormatAndPalette();
    void keepsClearPicturesClear_data();
    void keepsClearPicturesClear();
    void laysAlphaOverWhiteInRuns();
    void refusesToWriteNothing();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(64, 2)}) {
        QTest::newRow(rowName("mono", size).constData()) << dotPicture(size) << 1;
        QTest::newRow(rowName("palette", size).constData()) << palettePicture(size, 200) << 8;
        QTest::newRow(rowName("grey", size).constData()) << greyPicture(size) << 8;
        QTest::newRow(rowName("color", size).constData()) << colorPicture(size) << 24;
        QTest::newRow(rowName("alpha", size).constData()) << alphaPicture(size) << 32;
    }
    QTest::newRow("16-bit grey") << greyPicture(QSize(5, 5)).convertToFormat(QImage::Format_Grayscale16) << 8;
    QTest::newRow("lowest bit first")
        << dotPicture(QSize(13, 5)).convertToFormat(QImage::Format_MonoLSB) << 1;
    QTest::newRow("888") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB888) << 24;
    QTest::newRow("565") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB16) << 24;
    QTest::newRow("palette with a clear entry") << clearEntryPicture(QSize(5, 5)) << 32;
}

void TestBmpWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    for (const char* extension : {"bmp", "dib"}) {
        const auto bytes = m_codec.encode(picture, QLatin1String(extension), {});
        QVERIFY(bytes);
        QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("bmp")), picture), QString());
        if (bits != 32)
            QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("bmptopnm")), picture), QString());
        const auto own = decoded(m_codec, *bytes);
        QVERIFY(own && own->complete);
        QCOMPARE(own->bitsPerPixel, bits);
        QCOMPARE(difference(own->image, picture), QString());
    }
}

void TestBmpWriting::writesRuns_data()
{
    QTest::addColumn<QImage>("picture");
    QImage plain(700, 3, QImage::Format_Indexed8);
    plain.setColorTable({red, green, blue});
    plain.fill(2);
    QTest::newRow("long runs") << plain;
    QTest::newRow("palette") << palettePicture(QSize(301, 7), 200);
    QTest::newRow("two by two") << palettePicture(QSize(2, 2), 4);
    QTest::newRow("1 x 1") << palettePicture(QSize(1, 1), 2);
    QTest::newRow("grey") << greyPicture(QSize(600, 5));
    QTest::newRow("mono") << dotPicture(QSize(61, 5));
    QTest::newRow("few colours in 32 bits")
        << palettePicture(QSize(61, 5), 256).convertToFormat(QImage::Format_RGB32);
}

void TestBmpWriting::writesRuns()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("rle"), {});
    QVERIFY(bytes);
    QCOMPARE(int((*bytes)[30]), 1);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("bmp")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());
}

void TestBmpWriting::keepsFormatAndPalette()
{
    const QImage picture = palettePicture(QSize(9, 9), 17);
    const auto own = decoded(m_codec, encodeBytes(m_codec, picture, "bmp"));
    QVERIFY(own);
    QCOMPARE(own->image.format(), QImage::Format_Indexed8);
    QCOMPARE(own->image.colorTable().mid(0, 17), picture.colorTable());
    QImage tinted = dotPicture(QSize(9, 9));
    tinted.setColorTable({red, blue});
    const auto mono = decoded(m_codec, encodeBytes(m_codec, tinted, "bmp"));
    QVERIFY(mono);
    QCOMPARE(mono->image.format(), QImage::Format_Mono);
    QCOMPARE(mono->image.colorTable(), tinted.colorTable());
    QVERIFY(m_codec.canEncode(QStringLiteral("dib")) && !m_codec.canEncode(QStringLiteral("gif")));
}

void TestBmpWriting::keepsClearPicturesClear_data()
{
    addClearPictureRows();
}

void TestBmpWriting::keepsClearPicturesClear()
{
    QFETCH(QImage, picture);
    for (const char* extension : {"bmp", "dib"}) {
        const QByteArray bytes = encodeBytes(m_codec, picture, extension);
        const auto own = decoded(m_codec, bytes);
        QVERIFY(own);
        QCOMPARE(difference(own->image, picture, true), QString());
        QCOMPARE(difference(readByMagick(bytes, QStringLiteral("bmp")), picture, true), QString());
    }
}

void TestBmpWriting::laysAlphaOverWhiteInRuns()
{
    QImage picture(3, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(10, 20, 30, 255));
    picture.setPixel(1, 0, qRgba(10, 20, 30, 0));
    picture.setPixel(2, 0, qRgba(255, 0, 0, 51));
    const auto own = decoded(m_codec, encodeBytes(m_codec, picture, "rle"));
    QVERIFY(own);
    QCOMPARE(pixelFault(own->image, {qRgb(10, 20, 30), white, qRgb(255, 204, 204)}), QString());
}

void TestBmpWriting::refusesToWriteNothing()
{
    for (const char* extension : {"bmp", "rle"})
        QCOMPARE(writingRefusalFault(m_codec, QLatin1String(extension), {QImage()}), QString());
}

QTEST_GUILESS_MAIN(TestBmpWriting)
#include "tst_bmpwriting.moc"
