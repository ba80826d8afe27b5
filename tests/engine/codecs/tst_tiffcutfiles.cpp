// TIFF files that end early: what of them is shown, and how the break is looked for.
#include "CodecFixtures.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/tiff/TiffLayout.h"
#include "engine/codecs/tiff/TiffStriles.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "TiffMaker.h"
#include "TiffTools.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// One strip of deflate data that is the whole page and breaks in its middle.
TiffMaker brokenStrip(int height)
{
    const QByteArray rows(16 * height, '\x33');
    QByteArray packed = qCompress(rows).mid(4); // without Qt's own length
    const QByteArray noise(reinterpret_cast<const char*>(greyPicture(QSize(16, 1)).constScanLine(0)), 16);
    packed.replace(packed.size() / 2, 8, noise.left(8));
    TiffMaker tiff;
    tiff.page(16, height, 8, 1, 1, packed);
    tiff.set(259, 3, {8});
    return tiff;
}

} // namespace

class TestTiffCutFiles : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void showsWhatACutStripHolds_data();
    void showsWhatACutStripHolds();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void stopsLookingForABreak();
    void looksForABreakAFewTimes();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffCutFiles::showsWhatACutStripHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QSize size(96, 64);
    const auto tiff = [&](const char* options) {
        return directoryFirst(fileMadeBy(QStringLiteral("convert"),
                                         QStringList{QStringLiteral("@in")} + arguments(options) +
                                             arguments("-define tiff:rows-per-strip=64 @"),
                                         QStringLiteral("tif"), inputOf(colorPicture(size))));
    };
    QTest::newRow("Lab") << tiff("-colorspace Lab -depth 8 -compress none");
    QTest::newRow("Lab, deflate") << tiff("-colorspace Lab -depth 8 -compress zip");
    QTest::newRow("YCbCr") << tiff("-colorspace YCbCr -compress none");
    QTest::newRow("YCbCr, LZW") << tiff("-colorspace YCbCr -compress lzw");
    TiffMaker blocks;
    QByteArray noise;
    for (int i = 0; i < 48 * 32 * 6; ++i)
        noise += char(i * i / 7);
    blocks.page(96, 64, 8, 3, 6, noise);
    blocks.set(530, 3, {2, 2});
    QTest::newRow("YCbCr in blocks") << directoryFirst(blocks.bytes());
}

void TestTiffCutFiles::showsWhatACutStripHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY(whole && whole->complete);
    const auto part = decoded(m_codec, bytes.left(bytes.size() * 6 / 10));
    QVERIFY2(part, part ? "" : qPrintable(part.error().text));
    QVERIFY(!part->complete);
    const int rows = 64 * 5 / 10;
    QCOMPARE(part->image.copy(0, 0, 96, rows), whole->image.copy(0, 0, 96, rows));
}

void TestTiffCutFiles::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    // The directory must stand in front of the pixels, or a cut takes it first.
    const auto row = [](const char* name, const QImage& picture, const char* first, const char* options) {
        const QByteArray bytes = madeByTools(picture, arguments(first), arguments(options));
        QTest::newRow(name) << directoryFirst(bytes);
    };
    row("rows", colorPicture(QSize(7, 12)), "-type TrueColor", "-c none");
    row("LZW with differences, one strip",
        palettePicture(QSize(40, 30), 20).convertToFormat(QImage::Format_RGB32), "-type TrueColor",
        "-c lzw:2 -r 30");
    row("deflate with differences, strips", colorPicture(QSize(7, 12)), "-type TrueColor", "-c zip:2 -r 4");
    row("packbits", greyPicture(QSize(9, 14)), "-type Grayscale -depth 8", "-c packbits -r 14");
    row("tiles", greyPicture(QSize(33, 20)), "-type Grayscale -depth 8", "-c none -t -w 16 -l 16");
    row("group 4", dotPicture(QSize(40, 30)), "-monochrome", "-c g4");
    row("group 3", dotPicture(QSize(40, 30)), "-monochrome", "-c g3:1d");
    row("planes", colorPicture(QSize(7, 12)), "-type TrueColor", "-c lzw -p separate -r 4");
}

void TestTiffCutFiles::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY2(whole, whole ? "" : qPrintable(whole.error().text));
    QVERIFY(whole->complete);
    int before = 0;
    int steps = 0;
    for (int length = 0; length < bytes.size(); ++length) {
        const auto part = decoded(m_codec, bytes.left(length));
        if (!part) {
            QCOMPARE(before, 0);
            continue;
        }
        QCOMPARE(part->image.size(), whole->image.size());
        const int equal = equalRows(part->image, whole->image);
        QVERIFY2(equal >= before,
                 qPrintable(QStringLiteral("%1: %2 of %3").arg(length).arg(equal).arg(before)));
        QVERIFY2(!part->complete || equal == part->image.height(), qPrintable(QString::number(length)));
        steps += equal > before ? 1 : 0;
        before = equal;
    }
    QVERIFY2(steps > 1, qPrintable(QString::number(steps)));
}

void TestTiffCutFiles::stopsLookingForABreak()
{
    const TiffMaker tiff = brokenStrip(60000);
    const QByteArray bytes = tiff.bytes();
    const qint64 stripAt = bytes.size() - tiff.strips[0].size();
    CancelFlag cancel = false;
    bool armed = false;
    const auto source = std::make_shared<WatchedSource>(bytes, [&](qint64 offset) {
        if (armed && offset == stripAt)
            cancel = true; // the strip is read just before it is decoded for the first time
    });
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    const auto found = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(found);
    QVERIFY(!found->complete);
    armed = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
}

void TestTiffCutFiles::looksForABreakAFewTimes()
{
    TiffMaker tiff = brokenStrip(60000);
    const auto errorsOf = [&tiff](bool cancelled) {
        const auto source = ByteSource::fromBytes(tiff.bytes());
        const auto handle = TiffHandle::reading(source);
        TIFFSetSubDirectory(handle->get(), 8);
        const auto layout = readTiffLayout(handle->get());
        TiffStriles striles(*handle, source, *layout);
        const TiffBuffer rows = striles.allocate(60000);
        const CancelFlag cancel = cancelled;
        striles.decode(0, 0, 60000, rows.get(), cancel);
        return handle->errorCount();
    };
    tiff.strips[0].fill('\xFF'); // broken from its first byte: every try fails
    const int once = errorsOf(true);
    QVERIFY(once > 0);
    const int tries = errorsOf(false) / once;
    QVERIFY2(tries > 1 && tries <= 9, qPrintable(QString::number(tries)));
}

QTEST_GUILESS_MAIN(TestTiffCutFiles)
#include "tst_tiffcutfiles.moc"
