#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "RowNames.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QImage readByIcotool(const QByteArray& file)
{
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.ico"), file);
    return QImage::fromData(runTool(QStringLiteral("icotool"),
                                    {QStringLiteral("-x"), QStringLiteral("-o"), QStringLiteral("-"), path}));
}

} // namespace

class TestIcoWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tellsTheDepth_data();
    void tellsTheDepth();
    void keepsBitsAndPalettes();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesEveryFormat_data();
    void writesEveryFormat();
    void makesLargePicturesSmaller_data();
    void makesLargePicturesSmaller();
    void keepsClearPicturesClear();
    void refusesToWrite();

  private:
    const Codec& m_codec = icoCodec();
};

void TestIcoWriting::tellsTheDepth_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    QTest::newRow("1") << dotPicture(QSize(5, 5)) << 1;
    QTest::newRow("4") << palettePicture(QSize(5, 5), 16) << 4;
    QTest::newRow("8") << palettePicture(QSize(5, 5), 17) << 8;
    QTest::newRow("32") << colorPicture(QSize(5, 5)) << 32;
    QTest::newRow("PNG, 24") << colorPicture(QSize(256, 5)) << 24;
    QTest::newRow("PNG, 32") << alphaPicture(QSize(256, 5)) << 32;
}

void TestIcoWriting::tellsTheDepth()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY(bytes);
    const auto decoder = m_codec.open(ByteSource::fromBytes(*bytes));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, picture.size());
    QTEST(header->bitsPerPixel, "bits");
    const CancelFlag go = false;
    QTEST((*decoder)->decode(1, {}, go)->bitsPerPixel, "bits");
}

void TestIcoWriting::keepsBitsAndPalettes()
{
    const auto formatOf = [&](const QImage& picture) {
        const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
        const auto result = decoded(m_codec, *bytes);
        return result ? result->image.format() : QImage::Format_Invalid;
    };
    QCOMPARE(formatOf(dotPicture(QSize(9, 9))), QImage::Format_Mono);
    QCOMPARE(formatOf(palettePicture(QSize(9, 9), 9)), QImage::Format_Indexed8);
    QCOMPARE(formatOf(alphaPicture(QSize(9, 9))), QImage::Format_ARGB32);
}

void TestIcoWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(7, 13), QSize(33, 20), QSize(255, 3), QSize(256, 256)}) {
        QTest::newRow(rowName("bits", size).constData()) << dotPicture(size);
        QTest::newRow(rowName("palette of 3", size).constData()) << palettePicture(size, 3);
        QTest::newRow(rowName("palette of 256", size).constData()) << palettePicture(size, 256);
        QTest::newRow(rowName("grey", size).constData()) << greyPicture(size);
        QTest::newRow(rowName("colour", size).constData()) << colorPicture(size);
        QTest::newRow(rowName("alpha", size).constData()) << alphaPicture(size);
    }
    QImage clear = palettePicture(QSize(20, 20), 5);
    clear.setColor(2, qRgba(0, 100, 200, 128));
    QTest::newRow("a half transparent entry") << clear;
}

void TestIcoWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    const QImage wanted = picture.convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("ico")), wanted, true), QString());
    QCOMPARE(difference(readByIcotool(*bytes), wanted, true), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, wanted, true), QString());
}

void TestIcoWriting::writesEveryFormat_data()
{
    QTest::addColumn<int>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::newRow(qPrintable(QString::number(format))) << format;
}

void TestIcoWriting::writesEveryFormat()
{
    QFETCH(int, format);
    const QImage picture = alphaPicture(QSize(19, 11)).convertToFormat(QImage::Format(format));
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    // Some formats without alpha keep stray bits in its place.
    const bool alpha = picture.hasAlphaChannel();
    const QImage wanted = picture.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QCOMPARE(difference(readByIcotool(*bytes), wanted, true), QString());
}

void TestIcoWriting::makesLargePicturesSmaller_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("stored");
    QTest::newRow("400 x 300") << QSize(400, 300) << QSize(256, 192);
    QTest::newRow("300 x 400") << QSize(300, 400) << QSize(192, 256);
    QTest::newRow("2000 x 1") << QSize(2000, 1) << QSize(256, 1);
    QTest::newRow("257 x 256") << QSize(257, 256) << QSize(256, 255);
    QTest::newRow("256 x 100") << QSize(256, 100) << QSize(256, 100);
}

void TestIcoWriting::makesLargePicturesSmaller()
{
    QFETCH(QSize, size);
    QFETCH(QSize, stored);
    QImage picture = alphaPicture(size);
    picture.fill(qRgba(10, 200, 30, 255));
    for (const QImage& image : {picture, picture.convertToFormat(QImage::Format_RGB32)}) {
        const auto bytes = m_codec.encode(image, QStringLiteral("ico"), {});
        QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
        const QImage seen = readByMagick(*bytes, QStringLiteral("ico"));
        QCOMPARE(seen.size(), stored);
        QCOMPARE(seen.pixel(stored.width() / 2, stored.height() / 2), qRgb(10, 200, 30));
    }
}

void TestIcoWriting::keepsClearPicturesClear()
{
    QImage picture(6, 5, QImage::Format_ARGB32);
    picture.fill(qRgba(1, 2, 3, 0));
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own);
    QCOMPARE(qAlpha(own->image.pixel(3, 3)), 0);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("ico")), picture, true), QString());
}

void TestIcoWriting::refusesToWrite()
{
    QCOMPARE(writingRefusalFault(m_codec, QStringLiteral("ico"), {QImage()}), QString());
    QVERIFY(m_codec.canEncode(QStringLiteral("ico")));
}

QTEST_GUILESS_MAIN(TestIcoWriting)
#include "tst_icowriting.moc"
