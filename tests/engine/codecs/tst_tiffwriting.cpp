// Writing TIFF files: what other programs read of them.
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "RowNames.h"
#include "WritingRows.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestTiffWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void refusesToWriteNothing();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("format");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(700, 400)}) {
        QImage white = dotPicture(size);
        white.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
        QImage tinted = dotPicture(size);
        tinted.setColorTable({qRgb(255, 200, 0), qRgb(0, 0, 99)});
        QTest::newRow(rowName("black first", size).constData())
            << dotPicture(size) << int(QImage::Format_Mono);
        QTest::newRow(rowName("white first", size).constData()) << white << int(QImage::Format_Mono);
        QTest::newRow(rowName("two colours", size).constData()) << tinted << int(QImage::Format_Mono);
        QTest::newRow(rowName("palette", size).constData())
            << palettePicture(size, 200) << int(QImage::Format_Indexed8);
        QTest::newRow(rowName("grey", size).constData())
            << greyPicture(size) << int(QImage::Format_Grayscale8);
        QTest::newRow(rowName("colour", size).constData()) << colorPicture(size) << int(QImage::Format_RGB32);
        QTest::newRow(rowName("alpha", size).constData()) << alphaPicture(size) << int(QImage::Format_ARGB32);
    }
    QTest::newRow("888") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB888)
                         << int(QImage::Format_RGB32);
    QTest::newRow("palette with a clear entry")
        << clearEntryPicture(QSize(5, 5)) << int(QImage::Format_ARGB32);
}

void TestTiffWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("tiff"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("tiff")), picture), QString());
    if (!picture.hasAlphaChannel())
        QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("tifftopnm")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QTEST(int(own->image.format()), "format");
    QCOMPARE(difference(own->image, picture), QString());
    if (picture.format() == QImage::Format_Mono)
        QCOMPARE(own->image.colorTable(), picture.colorTable());
}

void TestTiffWriting::refusesToWriteNothing()
{
    QCOMPARE(writingRefusalFault(m_codec, QStringLiteral("tif"), {QImage()}), QString());
    QVERIFY(m_codec.canEncode(QStringLiteral("tif")) && m_codec.canEncode(QStringLiteral("tiff")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("bmp")));
}

QTEST_GUILESS_MAIN(TestTiffWriting)
#include "tst_tiffwriting.moc"
