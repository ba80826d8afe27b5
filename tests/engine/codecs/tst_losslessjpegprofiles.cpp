#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"
#include "ProfileFixtures.h"

#include <QTest>

#include <algorithm>
#include <array>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = losslessJpegCodec();

/// Bytes that pass for an ICC profile of colour model `model`.
QByteArray profileOf(const char* model, int length)
{
    QByteArray profile;
    for (int i = 0; i < length; ++i)
        profile.append(char(i / 7 + i * 3));
    return profile.replace(16, 4, model);
}

/// The file up to its scan.
QByteArray headOf(const QByteArray& file)
{
    return file.left(markerAt(file, 0xda));
}

/// Joins the pieces of a profile in a JPEG's head, by the ICC specification's annex B.4.
const QString joinPieces =
    QStringLiteral("import sys,struct\n"
                   "data=open(sys.argv[1],'rb').read(); at=2; pieces={}\n"
                   "while at<len(data):\n"
                   " code,size=data[at+1],struct.unpack('>H',data[at+2:at+4])[0]\n"
                   " body=data[at+4:at+2+size]; at+=2+size\n"
                   " if code==0xe2 and body[:12]==b'ICC_PROFILE\\0': pieces[body[12]]=body[14:]\n"
                   "sys.stdout.buffer.write(b''.join(pieces[i] for i in sorted(pieces)))\n");

} // namespace

class TestLosslessJpegProfiles : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void carriesProfiles_data();
    void carriesProfiles();
    void dropsBrokenProfiles();
    void joinsPiecesInAnyOrder();
    void convertsInksByTheirProfile_data();
    void convertsInksByTheirProfile();
};

void TestLosslessJpegProfiles::carriesProfiles_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<int>("components");
    QTest::addColumn<bool>("kept");
    const QImage color = imageOf(samplePicture(QSize(9, 7)));
    const QImage gray = color.convertToFormat(QImage::Format_Grayscale8);
    QTest::newRow("RGB") << color << profileOf("RGB ", 3000) << 3 << true;
    QTest::newRow("RGB, in three pieces") << color << profileOf("RGB ", 150000) << 3 << true;
    QTest::newRow("grey") << gray << profileOf("GRAY", 400) << 1 << true;
    QTest::newRow("RGB for a grey image") << gray << profileOf("RGB ", 400) << 3 << true;
    QTest::newRow("grey for a colour image") << color << profileOf("GRAY", 400) << 3 << false;
    QTest::newRow("four inks") << color << profileOf("CMYK", 400) << 3 << false;
    QTest::newRow("none") << color << QByteArray() << 3 << false;
}

void TestLosslessJpegProfiles::carriesProfiles()
{
    QFETCH(QImage, image);
    QFETCH(QByteArray, profile);
    QFETCH(int, components);
    QFETCH(bool, kept);
    QVERIFY(codec.keepsProfile(QStringLiteral("ljp"), ColorModel::Rgb));
    EncodeOptions options;
    options.profile = profile;
    const auto file = codec.encode(image, QStringLiteral("ljp"), options);
    QVERIFY(file);
    QCOMPARE(int((*file)[frameAt(*file) + 9]), components);
    const auto picture = decodeBytes(codec, *file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, kept ? profile : QByteArray());
    QCOMPARE(firstDifference(rgbaOf(picture->image), overWhite(image)), QString());
    const ScratchFiles files; // its pieces as a reader of metadata joins them
    const QString path = files.write(QStringLiteral("in.jpg"), headOf(*file));
    if (kept)
        QCOMPARE(runTool(QStringLiteral("python3"), {QStringLiteral("-c"), joinPieces, path}), profile);
}

void TestLosslessJpegProfiles::dropsBrokenProfiles()
{
    EncodeOptions options;
    options.profile = profileOf("RGB ", 150000);
    const QByteArray file =
        *codec.encode(imageOf(samplePicture(QSize(9, 7))), QStringLiteral("ljp"), options);
    const qsizetype first = markerAt(file, 0xe2);
    const qsizetype second = markerAt(file, 0xe2, first + 2 + 65535);
    QVERIFY(first > 0 && second > first);
    QByteArray missing = file;
    missing.remove(first, second - first);
    QByteArray renumbered = file;
    renumbered[second + 16] = '\x03';
    QByteArray recounted = file;
    recounted[second + 17] = '\x04';
    for (const QByteArray& broken : {missing, renumbered, recounted}) {
        const auto picture = decodeBytes(codec, broken);
        QVERIFY(picture && picture->complete);
        QVERIFY(picture->profile.isEmpty());
    }
}

void TestLosslessJpegProfiles::joinsPiecesInAnyOrder()
{
    EncodeOptions options;
    options.profile = profileOf("RGB ", 100000);
    const QByteArray file =
        *codec.encode(imageOf(samplePicture(QSize(9, 7))), QStringLiteral("ljp"), options);
    const qsizetype first = markerAt(file, 0xe2);
    const qsizetype second = markerAt(file, 0xe2, first + 2 + 65535);
    QVERIFY(first > 0 && second > first);
    const qsizetype length = 2 + (uchar(file[second + 2]) << 8 | uchar(file[second + 3]));
    QByteArray turned = file;
    turned.replace(first, second + length - first,
                   file.mid(second, length) + file.mid(first, second - first));
    const auto picture = decodeBytes(codec, turned);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, options.profile);
}

void TestLosslessJpegProfiles::convertsInksByTheirProfile_data()
{
    QTest::addColumn<int>("transform"); // Adobe's; -1 for no mark
    QTest::newRow("inks") << -1;
    QTest::newRow("Adobe's inks") << 0;
    QTest::newRow("Adobe's YCCK") << 2;
}

/// The same samples without the profile name the inks; with it they have its colours.
void TestLosslessJpegProfiles::convertsInksByTheirProfile()
{
    QFETCH(int, transform);
    const QByteArray profile = cmykProfile();
    LosslessJpegMaker maker;
    maker.picture = samplePlanes(QSize(13, 11), 4, 8);
    if (transform == 2)
        for (size_t i = 1; i < 3; ++i)
            std::fill(maker.picture.planes[i].begin(), maker.picture.planes[i].end(), 128); // no hue
    if (transform >= 0)
        maker.marks = adobeMark(transform);
    constexpr qsizetype longest = 60000;
    const int count = int((profile.size() + longest - 1) / longest);
    for (int i = 0; i < count; ++i)
        maker.marks += LosslessJpegMaker::segment(0xe2, QByteArray("ICC_PROFILE\0", 12) + char(i + 1) +
                                                            char(count) + profile.mid(i * longest, longest));
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, QByteArray());
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 13; ++x) {
            std::array<int, 4> ink;
            for (size_t i = 0; i < 4; ++i)
                ink[i] = maker.picture.planes[i][size_t(y * 13 + x)];
            if (transform == 2)
                ink[0] = ink[1] = ink[2] = 255 - ink[0];
            if (transform >= 0)
                for (int& value : ink)
                    value = 255 - value;
            const QRgb wanted = inkInSrgb(ink[0], ink[1], ink[2], ink[3]);
            QVERIFY2(distance(picture->image.pixel(x, y), wanted) <= 3,
                     qPrintable(QStringLiteral("%1 instead of %2")
                                    .arg(picture->image.pixel(x, y), 0, 16)
                                    .arg(wanted, 0, 16)));
        }
    }
}

QTEST_GUILESS_MAIN(TestLosslessJpegProfiles)
#include "tst_losslessjpegprofiles.moc"
