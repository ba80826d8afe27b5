// Colour profiles in bitmaps: those of other programs, misplaced and broken ones, and those that are written.
#include "BmpMaker.h"
#include "CutFiles.h"
#include "DisplayImage.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"
#include "ProfiledFiles.h"
#include "ProfileStage.h"

#include <QtEndian>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

constexpr quint32 version5 = 124;
constexpr quint32 embedded = 0x4D424544;
constexpr quint32 linked = 0x4C494E4B;
constexpr quint32 windowsSpace = 0x57696E20;
constexpr quint32 standardSpace = 0x73524742;
const char* const twoByTwo = "0000ff00ff000000 ff0000ffffff0000";

/// `bitmap` under a version 5 header that tells of a profile.
BmpMaker telling(BmpMaker bitmap, quint32 offset, quint32 length, quint32 space = embedded)
{
    bitmap.headerSize = version5;
    bitmap.masksInHeader =
        QByteArray(16, '\0') + masks({space}) + QByteArray(48, '\0') + masks({4, offset, length, 0});
    return bitmap;
}

/// `bitmap` with `profile` behind its pixels.
BmpMaker holding(const BmpMaker& bitmap, const QByteArray& profile)
{
    const auto offset = quint32(version5 + bitmap.behindHeader.size() + bitmap.pixels.size());
    BmpMaker holder = telling(bitmap, offset, quint32(profile.size()));
    holder.pixels += profile;
    return holder;
}

BmpMaker colors()
{
    return BmpMaker::rows(24, twoByTwo);
}

/// 256 greys that stand for themselves.
QByteArray greyRamp()
{
    QByteArray ramp;
    for (quint32 grey = 0; grey < 256; ++grey)
        ramp += masks({grey * 0x010101});
    return ramp;
}

BmpMaker greys()
{
    BmpMaker bitmap = BmpMaker::rows(8, "00400000 80ff0000");
    bitmap.behindHeader = greyRamp();
    return bitmap;
}

BmpMaker greyRuns()
{
    BmpMaker bitmap = BmpMaker::runs(8, 2, 2, "0140 0180 0000 02ff 0001");
    bitmap.clrUsed = 256;
    bitmap.behindHeader = greyRamp();
    return bitmap;
}

BmpMaker palette(const char* entries)
{
    BmpMaker bitmap = BmpMaker::rows(4, "01000000 23000000");
    bitmap.clrUsed = 4;
    bitmap.behindHeader = hex(entries);
    return bitmap;
}

/// A profile whose length, which it tells itself, is no multiple of 4.
QByteArray oddProfile()
{
    QByteArray profile = rgbProfile(wideGamut) + "ppp";
    qToBigEndian(quint32(profile.size()), profile.data());
    return profile;
}

quint32 numberAt(const QByteArray& file, qsizetype offset)
{
    return qFromLittleEndian<quint32>(file.constData() + offset);
}

QImage sample(QImage::Format format)
{
    return imageOf(samplePicture(QSize(21, 13))).convertToFormat(format);
}

} // namespace

class TestBmpProfiles : public QObject, private ProfileStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }
    void readsOtherPrograms_data();
    void readsOtherPrograms();
    void readsProfiles_data();
    void readsProfiles();
    void passesOverUnusableProfiles_data();
    void passesOverUnusableProfiles();
    void readsPixelsThatAreAProfile();
    void showsWhatACutFileHolds();
    void survivesBrokenFiles();
    void writes_data();
    void writes();
    void writesTheHeaderOfOldWithoutAProfile();
    void keepsProfilesOfOpenedFiles_data();
    void keepsProfilesOfOpenedFiles();
    void tellsWhatItKeeps();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpProfiles::readsOtherPrograms_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QByteArray>("profile");
    const QByteArray rgb = rgbProfile(wideGamut);
    QTest::newRow("24 bits") << QStringLiteral("-type TrueColor") << rgb;
    QTest::newRow("an odd length") << QStringLiteral("-type TrueColor") << oddProfile();
    QTest::newRow("32 bits") << QStringLiteral("-alpha set -channel A -evaluate set 60%") << rgb;
    QTest::newRow("palette") << QStringLiteral("-type Palette") << rgb;
    QTest::newRow("runs") << QStringLiteral("-type Palette -compress RLE") << rgb;
    QTest::newRow("grey") << QStringLiteral("-colorspace Gray -type Palette") << grayProfile(1.8);
}

void TestBmpProfiles::readsOtherPrograms()
{
    QFETCH(QString, options);
    QFETCH(QByteArray, profile);
    const QStringList words =
        QStringList{QStringLiteral("ppm:-")} + options.split(QLatin1Char(' ')) +
        QStringList{QStringLiteral("-profile"), m_files->write(QStringLiteral("some.icc"), profile),
                    QStringLiteral("bmp:-")};
    const QByteArray file = runTool(QStringLiteral("convert"), words, ppmOf(samplePicture(usual)));
    const auto picture = decodeBytes(m_codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, profile);
    QCOMPARE(firstDifference(rgbaOf(picture->image), readWithMagick(file, QStringLiteral("bmp"))), QString());
    const Rgba inSrgb = inSrgbByMagick(file, QStringLiteral("bmp"));
    QCOMPARE(firstDifference(rgbaOf(displayImage(*picture)), inSrgb, 1), QString());

    const auto bare = decodeBytes(m_codec, file.mid(14));
    QVERIFY(bare && bare->complete);
    QCOMPARE(bare->profile, profile);
    QCOMPARE(bare->image, picture->image);
}

void TestBmpProfiles::readsProfiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<int>("format");
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray gray = grayProfile(1.8);
    const auto add = [](const char* name, const BmpMaker& bitmap, const QByteArray& profile,
                        QImage::Format format) {
        for (const bool fileHeader : {true, false}) {
            BmpMaker holder = holding(bitmap, profile);
            holder.fileHeader = fileHeader;
            QTest::addRow("%s, %s", name, fileHeader ? "file header" : "bare")
                << holder.bytes() << bitmap.bytes() << profile << int(format);
        }
    };
    add("24 bits", colors(), rgb, QImage::Format_RGB32);
    add("16 bits", BmpMaker::rows(16, "007ce003 1f00ff7f"), rgb, QImage::Format_RGB32);
    add("palette", palette("0000ff00 00ff0000 ff000000 ffffff00"), rgb, QImage::Format_Indexed8);
    add("palette of greys", palette("00000000 10101000 80808000 ffffff00"), gray, QImage::Format_Indexed8);
    add("greys", greys(), gray, QImage::Format_Grayscale8);
    add("greys in runs", greyRuns(), gray, QImage::Format_Grayscale8);
    add("greys of a colour space", greys(), rgb, QImage::Format_Indexed8);
    add("as long as may be", colors(), rgb + QByteArray(maxProfileBytes - rgb.size(), 'p'),
        QImage::Format_RGB32);

    QTest::newRow("filled up to 32 bits") << holding(colors(), oddProfile() + '\0').bytes()
                                          << colors().bytes() << oddProfile() << int(QImage::Format_RGB32);
    BmpMaker before = telling(colors(), version5, quint32(rgb.size()));
    before.behindHeader = rgb;
    QTest::newRow("before the pixels")
        << before.bytes() << colors().bytes() << rgb << int(QImage::Format_RGB32);
    BmpMaker member = holding(colors(), rgb);
    member.tellOffset = 14 + 14 + version5;
    QTest::newRow("first of an array") << hex("4241 28000000 00000000 0000 0000") + member.bytes()
                                       << colors().bytes() << rgb << int(QImage::Format_RGB32);
}

void TestBmpProfiles::readsProfiles()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, plain);
    const auto picture = decodeBytes(m_codec, file);
    const auto without = decodeBytes(m_codec, plain);
    QVERIFY(picture && without);
    QVERIFY(picture->complete);
    QTEST(picture->profile, "profile");
    QTEST(int(picture->image.format()), "format");
    QCOMPARE(difference(picture->image, without->image), QString());
    QCOMPARE(picture->bitsPerPixel, without->bitsPerPixel);
}

void TestBmpProfiles::passesOverUnusableProfiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("plain");
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray gray = grayProfile(1.8);
    const BmpMaker plain = colors();
    const auto add = [&plain](const char* name, const BmpMaker& bitmap) {
        QTest::newRow(name) << bitmap.bytes() << plain.bytes();
    };
    add("grey in a colour file", holding(plain, gray));
    add("four inks", holding(plain, cmykProfile()));
    add("a link", holding(plain, linkProfile()));
    add("garbage", holding(plain, QByteArray(500, 'x')));
    add("less than a header", holding(plain, rgb.left(127)));
    add("too long", holding(plain, rgb + QByteArray(maxProfileBytes + 1 - rgb.size(), 'p')));
    const BmpMaker coloured = palette("0000ff00 10101000 80808000 ffffff00");
    QTest::newRow("grey beside colours") << holding(coloured, gray).bytes() << coloured.bytes();

    const quint32 there = version5 + quint32(plain.pixels.size());
    const auto length = quint32(rgb.size());
    const auto told = [&](const char* name, quint32 offset, quint32 count, quint32 space = embedded) {
        BmpMaker bitmap = telling(plain, offset, count, space);
        bitmap.pixels += rgb;
        add(name, bitmap);
    };
    constexpr quint32 half = 0x80000000U;
    constexpr quint32 most = 0xFFFFFFFFU;
    told("size 0", there, 0);
    told("size one too much", there, length + 1);
    told("size 2^31", there, half);
    told("size 2^32 - 1", there, most);
    told("offset 0", 0, length);
    told("offset within the header", version5 - 1, length);
    told("overlaps the pixels", version5, length);
    told("from the start of the file", there + 14, length - 14);
    told("offset one too much", there + 1, length);
    told("offset at the end", there + length, length);
    told("offset 2^31", half, length);
    told("offset 2^32 - 1", most, length);
    told("both 2^32 - 1", most, most);
    told("sum past 2^32", most - 100, 101 + there);
    told("a file's name", there, length, linked);
    told("Windows' colours", there, length, windowsSpace);
    told("sRGB", there, length, standardSpace);
    told("calibrated", there, length, 0);

    BmpMaker version4 = telling(plain, there, length);
    version4.headerSize = 108;
    version4.pixels += rgb;
    version4.masksInHeader.truncate(68);
    add("version 4", version4);
}

void TestBmpProfiles::passesOverUnusableProfiles()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, plain);
    for (const qsizetype fileHeader : {0, 14}) {
        const auto picture = decodeBytes(m_codec, file.mid(fileHeader));
        const auto without = decodeBytes(m_codec, plain);
        QVERIFY(picture && without);
        QVERIFY(picture->complete);
        QVERIFY(picture->profile.isEmpty());
        QCOMPARE(picture->image, without->image);
    }
}

/// Its bytes alone decide what a profile is; where it stands does no harm.
void TestBmpProfiles::readsPixelsThatAreAProfile()
{
    const QByteArray rgb = rgbProfile(wideGamut);
    BmpMaker plain = colors();
    plain.pixels = rgb;
    const auto picture = decodeBytes(m_codec, telling(plain, version5, quint32(rgb.size())).bytes());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, rgb);
    QCOMPARE(picture->image, decodeBytes(m_codec, plain.bytes())->image);
}

void TestBmpProfiles::showsWhatACutFileHolds()
{
    const QByteArray rgb = rgbProfile(wideGamut);
    for (const char* extension : {"bmp", "rle"}) {
        const auto file = m_codec.encode(sample(QImage::Format_Indexed8).copy(0, 0, 7, 6),
                                         QLatin1String(extension), EncodeOptions{{}, rgb});
        QVERIFY(file);
        QCOMPARE(everyCutFault(m_codec, *file), QString());
        const auto cut = decodeBytes(m_codec, file->chopped(1));
        QVERIFY(cut && cut->complete); // of the picture nothing is missing
        QVERIFY(cut->profile.isEmpty());
    }
}

void TestBmpProfiles::survivesBrokenFiles()
{
    const QByteArray files[] = {holding(colors(), rgbProfile(wideGamut)).bytes(),
                                holding(greyRuns(), grayProfile(1.8)).bytes()};
    for (const QByteArray& file : files) {
        Mutator mutator(file, 5);
        for (int child = 0; child < 150; ++child) {
            const QByteArray broken = mutator.next();
            const QString fault = misbehaviour(m_codec, broken);
            QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("child %1: ").arg(child) + fault));
            if (const auto picture = decodeBytes(m_codec, broken))
                QCOMPARE(displayImage(*picture).size(), picture->image.size());
        }
    }
}

void TestBmpProfiles::writes_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<bool>("kept");
    const QImage color = sample(QImage::Format_RGB32);
    const QImage gray = sample(QImage::Format_Grayscale8);
    QImage dots = gray.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
    dots.setColorTable({qRgb(90, 40, 30), qRgb(120, 180, 220)});
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray grayCurve = grayProfile(1.8);
    for (const char* extension : {"bmp", "dib", "rle"}) {
        const auto row = [extension](const char* name, const QImage& image, const QByteArray& profile,
                                     bool kept) {
            QTest::addRow("%s, %s", extension, name)
                << QString::fromLatin1(extension) << image << profile << kept;
        };
        row("RGB", color, rgb, true);
        row("alpha", sample(QImage::Format_ARGB32), rgb, true);
        row("palette", sample(QImage::Format_Indexed8), rgb, true);
        row("two colours", dots, rgb, true);
        row("grey", gray, grayCurve, true);
        row("an odd length", color, oddProfile(), true);
        row("grey with RGB", gray, rgb, false);
        row("RGB with grey", color, grayCurve, false);
        row("four inks", color, cmykProfile(), false);
        row("garbage", color, QByteArray(300, 'x'), false);
        row("none", color, {}, false);
    }
}

void TestBmpProfiles::writes()
{
    QFETCH(QString, extension);
    QFETCH(QImage, image);
    QFETCH(QByteArray, profile);
    QFETCH(bool, kept);
    const auto file = m_codec.encode(image, extension, EncodeOptions{{}, profile});
    const auto plain = m_codec.encode(image, extension, {});
    QVERIFY(file && plain);
    if (!kept) {
        QCOMPARE(*file, *plain);
        return;
    }
    QCOMPARE(numberAt(*file, 2), quint32(file->size()));
    QCOMPARE(numberAt(*file, 14), version5);
    QCOMPARE(numberAt(*file, 14 + 56), embedded);
    const qsizetype behindPixels = numberAt(*file, 10) + numberAt(*file, 14 + 20);
    QCOMPARE(14 + qsizetype(numberAt(*file, 14 + 112)), behindPixels);
    QCOMPARE(qsizetype(numberAt(*file, 14 + 116)), profile.size());
    QCOMPARE(file->mid(behindPixels), profile);
    QCOMPARE(file->mid(numberAt(*file, 10), numberAt(*file, 14 + 20)),
             plain->mid(numberAt(*plain, 10), numberAt(*plain, 14 + 20)));

    QCOMPARE(profileIn(m_files->write(QStringLiteral("out.bmp"), *file)), profile);
    const Rgba pixels = readWithMagick(*plain, QStringLiteral("bmp"));
    QCOMPARE(firstDifference(readWithMagick(*file, QStringLiteral("bmp")), pixels), QString());
    if (!image.hasAlphaChannel())
        QCOMPARE(difference(readByNetpbm(*file, QStringLiteral("bmptopnm")), imageOf(pixels)), QString());
    const auto own = decodeBytes(m_codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(own->profile, profile);
    QCOMPARE(firstDifference(rgbaOf(own->image), pixels), QString());
}

void TestBmpProfiles::writesTheHeaderOfOldWithoutAProfile()
{
    const QByteArray plain = encodeBytes(m_codec, sample(QImage::Format_RGB32), "bmp");
    QCOMPARE(numberAt(plain, 14), 40U);
    QCOMPARE(plain.size(), 54 + 13 * 64);
    const QByteArray clear = encodeBytes(m_codec, sample(QImage::Format_ARGB32), "bmp");
    QCOMPARE(clear.mid(14 + 40, 20), masks({0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000, standardSpace}));
    QCOMPARE(clear.mid(14 + 60, 64), QByteArray(48, '\0') + masks({4, 0, 0, 0}));
    QCOMPARE(clear.size(), 14 + version5 + 13 * 84);
}

void TestBmpProfiles::keepsProfilesOfOpenedFiles_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("profile");
    QTest::newRow("colour") << sample(QImage::Format_RGB32) << rgbProfile(swappedRgb);
    QTest::newRow("alpha") << sample(QImage::Format_ARGB32) << rgbProfile(swappedRgb);
    QTest::newRow("palette") << sample(QImage::Format_Indexed8) << rgbProfile(swappedRgb);
    QTest::newRow("grey") << sample(QImage::Format_Grayscale8) << grayProfile(1.2);
}

void TestBmpProfiles::keepsProfilesOfOpenedFiles()
{
    QFETCH(QImage, image);
    QFETCH(QByteArray, profile);
    const auto file = m_codec.encode(image, QStringLiteral("bmp"), EncodeOptions{{}, profile});
    QVERIFY(file);
    m_engine->SetFileName(m_files->write(QStringLiteral("in.bmp"), *file));
    const QImage shown = m_engine->Picture();
    QCOMPARE(shown.size(), image.size());
    QVERIFY(imageDifference(shown, image, 3) != QString()); // the profile does something
    for (const char* name : {"out.bmp", "out.dib"}) {
        const QString path = save(QString::fromLatin1(name));
        const QByteArray saved = m_files->read(QString::fromLatin1(name));
        QCOMPARE(profileIn(m_files->write(QStringLiteral("seen.bmp"), saved)), profile);
        m_engine->SetFileName(path);
        QCOMPARE(m_engine->Picture(), shown);
    }
}

void TestBmpProfiles::tellsWhatItKeeps()
{
    for (const char* extension : {"bmp", "dib", "rle"}) {
        QVERIFY(m_codec.keepsProfile(QLatin1String(extension), ColorModel::Rgb));
        QVERIFY(m_codec.keepsProfile(QLatin1String(extension), ColorModel::Gray));
        QVERIFY(!m_codec.keepsProfile(QLatin1String(extension), ColorModel::Cmyk));
    }
    QVERIFY(!m_codec.keepsProfile(QStringLiteral("gif"), ColorModel::Rgb));
}

QTEST_MAIN(TestBmpProfiles)
#include "tst_bmpprofiles.moc"
