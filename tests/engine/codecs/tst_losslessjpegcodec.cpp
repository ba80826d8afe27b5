#include "corpus/Corpus.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "JpegFixtures.h"
#include "LosslessJpegFixtures.h"
#include "Mutator.h"
#include "ProfileFixtures.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cmath>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = losslessJpegCodec();

LosslessJpegMaker makerOf(int components = 3, QSize size = QSize(17, 12))
{
    LosslessJpegMaker maker;
    maker.picture = samplePlanes(size, components, 8);
    return maker;
}

/// Rows of `got` from the top that are those of `wanted`.
int equalRows(const Rgba& got, const Rgba& wanted)
{
    const qsizetype rowBytes = qsizetype(4) * wanted.size.width();
    int rows = 0;
    while (rows < wanted.size.height() &&
           got.pixels.mid(rows * rowBytes, rowBytes) == wanted.pixels.mid(rows * rowBytes, rowBytes))
        ++rows;
    return rows;
}

/// `image` as a viewer without alpha sees it: over white.
Rgba seen(const QImage& image)
{
    const bool hasAlpha = image.hasAlphaChannel(); // else the fourth sample says nothing
    Rgba picture = rgbaOf(image.convertToFormat(hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32));
    for (qsizetype i = 0; i < picture.pixels.size(); i += 4) {
        const int alpha = uchar(picture.pixels[i + 3]);
        for (int channel = 0; channel < 3; ++channel) {
            char& value = picture.pixels[i + channel];
            value = char((uchar(value) * alpha + 255 * (255 - alpha) + 127) / 255);
        }
        picture.pixels[i + 3] = char(255);
    }
    return picture;
}

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

class TestLosslessJpegCodec : public QObject
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
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void takesUpAfterDamage();
    void wantsEveryComponent();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesEverySize_data();
    void writesEverySize();
    void keepsToTheExtension();
    void carriesProfiles_data();
    void carriesProfiles();
    void dropsBrokenProfiles();
    void joinsPiecesInAnyOrder();
    void convertsInksByTheirProfile_data();
    void convertsInksByTheirProfile();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
    void readsRealSamples();
};

void TestLosslessJpegCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("accepted");
    LosslessJpegMaker far = makerOf();
    far.marks = LosslessJpegMaker::segment(0xe1, QByteArray(2000, 'x'));
    QByteArray filled = makerOf().bytes().left(1024);
    filled.insert(2, QByteArray(5, '\xff'));
    QTest::newRow("lossless") << makerOf().bytes().left(1024) << true;
    QTest::newRow("fill bytes before the frame") << filled << true;
    QTest::newRow("baseline") << colorJpeg(QSize(9, 9)).left(1024) << false;
    QTest::newRow("progressive") << colorJpeg(QSize(9, 9), {QStringLiteral("-progressive")}).left(1024)
                                 << false;
    QTest::newRow("frame beyond the head") << far.bytes().left(1024) << false;
    QTest::newRow("three bytes") << QByteArray("\xff\xd8\xff") << false;
    QTest::newRow("PNG") << QByteArray("\x89PNG\r\n\x1a\n") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestLosslessJpegCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("ljp")), accepted);
    QCOMPARE(codec.sniff(head, QStringLiteral("txt")), accepted);
}

void TestLosslessJpegCodec::readsTheCorpus_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QByteArray>("pixels");
    const std::vector<Fixture> corpus = losslessJpegCorpus();
    QVERIFY(corpus.size() >= 10);
    for (const Fixture& fixture : corpus)
        QTest::newRow(qPrintable(fixture.name))
            << fixture.file << fixture.expected.size << fixture.expected.pixels;
}

void TestLosslessJpegCodec::readsTheCorpus()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    QFETCH(QByteArray, pixels);
    QVERIFY(codec.sniff(file.left(1024), QString()));
    const auto decoder = codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    const auto facts = (*decoder)->header(1);
    QVERIFY(facts);
    QCOMPARE(facts->size, size);
    const int precision = uchar(file[frameAt(file) + 4]);
    const int components = uchar(file[frameAt(file) + 9]);
    QCOMPARE(facts->bitsPerPixel, (precision > 8 ? 16 : 8) * components);
    const CancelFlag go = false;
    const auto picture = (*decoder)->decode(1, {}, go);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete && picture->isFull());
    QCOMPARE(picture->image.format(), components == 1 ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    QCOMPARE(picture->bitsPerPixel, facts->bitsPerPixel);
    QCOMPARE(firstDifference(rgbaOf(picture->image), Rgba{size, pixels}), QString());
}

void TestLosslessJpegCodec::findsTheWayByContent()
{
    // A lossless file whose frame header lies beyond the sniffed head, and a plain JPEG under the extension.
    LosslessJpegMaker maker = makerOf();
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

void TestLosslessJpegCodec::choosesTheColorSpace_data()
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

void TestLosslessJpegCodec::choosesTheColorSpace()
{
    QFETCH(std::vector<int>, samples);
    QFETCH(QByteArray, marks);
    QFETCH(QRgb, pixel);
    QCOMPARE(pixelOf(samples, marks), pixel);
}

void TestLosslessJpegCodec::readsTwoComponentsAsGray()
{
    const LosslessJpegMaker maker = makerOf(2);
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.format(), QImage::Format_Grayscale8);
    QCOMPARE(firstDifference(rgbaOf(picture->image), shownPlanes(maker.picture)), QString());
}

void TestLosslessJpegCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    const auto patched = [](int offset, int value) {
        QByteArray file = makerOf().bytes();
        file[frameAt(file) + offset] = char(value);
        return file;
    };
    LosslessJpegMaker maker = makerOf();
    maker.sampling = 0x21;
    add("sub-sampling", maker.bytes(), ErrorKind::Unsupported);
    add("height behind the pixels", withSize(makerOf().bytes(), 17, 0), ErrorKind::Unsupported);
    add("no width", withSize(makerOf().bytes(), 0, 12), ErrorKind::Damaged);
    add("65535 x 65535", withSize(makerOf().bytes(), 65535, 65535),
        checkSize(QSize(65535, 65535)) ? ErrorKind::Damaged : ErrorKind::TooLarge);
    add("17 bits", patched(4, 17), ErrorKind::Damaged);
    add("1 bit", patched(4, 1), ErrorKind::Damaged);
    add("no component", patched(9, 0), ErrorKind::Unsupported);
    add("5 components", patched(9, 5), ErrorKind::Unsupported);
    maker = makerOf();
    maker.predictor = 1;
    QByteArray scan = maker.bytes();
    const qsizetype predictorAt = markerAt(scan, 0xda) + 5 + 2 * 3;
    QCOMPARE(int(scan[predictorAt]), 1);
    scan[predictorAt] = 0;
    add("no predictor, as in a hierarchy", scan, ErrorKind::Unsupported);
    scan[predictorAt] = 8;
    add("predictor 8", scan, ErrorKind::Damaged);
    scan[predictorAt] = 1;
    scan[predictorAt + 2] = 8;
    add("all bits shifted away", scan, ErrorKind::Damaged);
    maker = makerOf();
    maker.restartRows = 2;
    QByteArray within = maker.bytes();
    within[markerAt(within, 0xdd) + 5] = 9;
    add("restarts within a row", within, ErrorKind::Unsupported);
    add("no Huffman table", withoutSegments(makerOf().bytes(), 0xc4), ErrorKind::Damaged);
    const QByteArray good = makerOf().bytes();
    add("no scan", good.left(markerAt(good, 0xda)), ErrorKind::Damaged);
    add("no samples", good.left(markerAt(good, 0xda) + 14), ErrorKind::Damaged);
    for (const int process : {0xcb, 0xc7, 0xc5, 0xcf}) {
        maker = makerOf();
        maker.process = process;
        add(qPrintable(QStringLiteral("process %1").arg(process - 0xc0)), maker.bytes(),
            ErrorKind::Unsupported);
    }
    maker = makerOf();
    maker.process = 0xc1;
    maker.picture.precision = 12;
    add("12 bits, DCT", maker.bytes(), ErrorKind::Unsupported);
}

void TestLosslessJpegCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    // By way of the table: whoever takes the file has to say the same.
    const auto decoder = openDecoder(ByteSource::fromBytes(file), QStringLiteral("ljp"));
    const CancelFlag go = false;
    const auto picture = decoder ? (*decoder)->decode(1, {}, go) : decoder.error();
    QVERIFY(!picture);
    QVERIFY2(int(picture.error().kind) == kind, qPrintable(picture.error().text));
    QVERIFY(!picture.error().text.isEmpty());
}

void TestLosslessJpegCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    LosslessJpegMaker maker = makerOf(3, QSize(13, 9));
    QTest::newRow("one scan") << maker.bytes();
    maker.restartRows = 2;
    QTest::newRow("restarts") << maker.bytes();
    QTest::newRow("our own") << *codec.encode(imageOf(samplePicture(QSize(13, 9))), QStringLiteral("ljp"),
                                              {});
}

void TestLosslessJpegCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole && whole->complete);
    const Rgba wanted = rgbaOf(whole->image);
    int before = 0;
    bool shown = false;
    for (qsizetype length = 0; length < file.size(); ++length) {
        const auto part = decodeBytes(codec, file.left(length));
        QVERIFY2(part || !shown, qPrintable(QString::number(length)));
        if (!part)
            continue;
        shown = true;
        const Rgba got = rgbaOf(part->image);
        const int equal = equalRows(got, wanted);
        QVERIFY(equal >= before);
        before = equal;
        QCOMPARE(part->complete, equal == wanted.size.height());
        // A row that was begun holds good pixels, then none.
        bool ended = false;
        for (int x = 0; x < wanted.size.width() && equal < wanted.size.height(); ++x) {
            const bool same = std::equal(got.at(x, equal), got.at(x, equal) + 4, wanted.at(x, equal));
            const uchar* pixel = got.at(x, equal);
            ended = ended || !same;
            QVERIFY(same || pixel[0] + pixel[1] + pixel[2] == 0);
        }
    }
    QCOMPARE(before, wanted.size.height()); // the last bytes are the end marker
}

void TestLosslessJpegCodec::takesUpAfterDamage()
{
    LosslessJpegMaker maker = makerOf(1, QSize(16, 60));
    maker.restartRows = 5;
    const QByteArray file = maker.bytes();
    const Rgba wanted = shownPlanes(maker.picture);
    const auto restartAt = [&](int number) { return file.indexOf(QByteArray("\xff") + char(0xd0 + number)); };
    QVERIFY(restartAt(2) > 0 && restartAt(3) > restartAt(2));
    QByteArray broken = file; // half of the rows 15 to 19 is gone
    broken.remove(restartAt(2) + 10, (restartAt(3) - restartAt(2)) / 2);
    QByteArray gap = file; // the rows 15 to 24 with one of their markers
    gap.remove(restartAt(2) + 2, restartAt(4) - restartAt(2) - 2);
    struct Case
    {
        QByteArray file;
        int lastBad;
    };
    for (const Case& each : {Case{broken, 19}, Case{gap, 24}}) {
        const auto picture = decodeBytes(codec, each.file);
        QVERIFY(picture);
        QVERIFY(!picture->complete);
        const QImage image = picture->image;
        const QImage right = imageOf(wanted);
        const auto same = [&](int from, int to) {
            return firstDifference(rgbaOf(image.copy(0, from, 16, to - from)),
                                   rgbaOf(right.copy(0, from, 16, to - from)));
        };
        QCOMPARE(same(0, 15), QString());
        QVERIFY(!same(15, each.lastBad + 1).isEmpty());
        QCOMPARE(same(each.lastBad + 1, 60), QString());
    }
}

void TestLosslessJpegCodec::wantsEveryComponent()
{
    LosslessJpegMaker maker = makerOf(3);
    maker.interleaved = false;
    const QByteArray file = maker.bytes();
    const auto whole = decodeBytes(codec, file);
    QVERIFY(whole && whole->complete);
    const auto part = decodeBytes(codec, file.left(file.lastIndexOf("\xff\xda")));
    QVERIFY(part && !part->complete);
    QCOMPARE(part->image.pixel(3, 3) & 0xFFFF00, whole->image.pixel(3, 3) & 0xFFFF00);
    QCOMPARE(qBlue(part->image.pixel(3, 3)), 0);
}

void TestLosslessJpegCodec::writesWhatOthersRead_data()
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

void TestLosslessJpegCodec::writesWhatOthersRead()
{
    QFETCH(QImage, image);
    QFETCH(int, components);
    const auto file = codec.encode(image, QStringLiteral("ljp"), {});
    QVERIFY(file);
    QCOMPARE(int((*file)[frameAt(*file) + 9]), components);
    QCOMPARE(markerAt(*file, 0xee) > 0, components == 3);
    SamplePlanes facts{image.size(), 8, {}};
    facts.planes.resize(size_t(components));
    QCOMPARE(firstDifference(shownPlanes(readByDcmtk(*file, facts)), seen(image)), QString());
    const auto own = decodeBytes(codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), seen(image)), QString());
}

void TestLosslessJpegCodec::writesEverySize_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size :
         {QSize(1, 1), QSize(1, 2), QSize(2, 1), QSize(1, 20000), QSize(20000, 1), QSize(65, 130)})
        QTest::newRow(qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()))) << size;
}

void TestLosslessJpegCodec::writesEverySize()
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

void TestLosslessJpegCodec::keepsToTheExtension()
{
    QVERIFY(codec.canEncode(QStringLiteral("ljp")));
    QVERIFY(!codec.canEncode(QStringLiteral("jpg")));
    QCOMPARE(encoderFor(QStringLiteral("LJP")), &codec);
}

void TestLosslessJpegCodec::carriesProfiles_data()
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

void TestLosslessJpegCodec::carriesProfiles()
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
    QCOMPARE(firstDifference(rgbaOf(picture->image), seen(image)), QString());
    const ScratchFiles files; // its pieces as a reader of metadata joins them
    const QString path = files.write(QStringLiteral("in.jpg"), headOf(*file));
    if (kept)
        QCOMPARE(runTool(QStringLiteral("python3"), {QStringLiteral("-c"), joinPieces, path}), profile);
}

void TestLosslessJpegCodec::dropsBrokenProfiles()
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

void TestLosslessJpegCodec::joinsPiecesInAnyOrder()
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

void TestLosslessJpegCodec::convertsInksByTheirProfile_data()
{
    QTest::addColumn<int>("transform"); // Adobe's; -1 for no mark
    QTest::newRow("inks") << -1;
    QTest::newRow("Adobe's inks") << 0;
    QTest::newRow("Adobe's YCCK") << 2;
}

/// The same samples without the profile name the inks; with it they have its colours.
void TestLosslessJpegCodec::convertsInksByTheirProfile()
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

void TestLosslessJpegCodec::refusesToWrite()
{
    const auto nothing = codec.encode(QImage(), QStringLiteral("ljp"), {});
    QVERIFY(!nothing);
    QCOMPARE(nothing.error().kind, ErrorKind::Unsupported);
    const auto wide = codec.encode(QImage(65536, 1, QImage::Format_Mono), QStringLiteral("ljp"), {});
    QVERIFY(!wide);
    QCOMPARE(wide.error().kind, ErrorKind::Unsupported);
}

void TestLosslessJpegCodec::stopsWhenCancelled()
{
    const auto decoder = codec.open(ByteSource::fromBytes(makerOf().bytes()));
    QVERIFY(decoder);
    CancelFlag cancel = true;
    const auto result = (*decoder)->decode(1, {}, cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    cancel = false;
    QVERIFY((*decoder)->decode(1, {}, cancel));
}

void TestLosslessJpegCodec::survivesBrokenFiles()
{
    LosslessJpegMaker restarts = makerOf(3);
    restarts.restartRows = 1;
    LosslessJpegMaker scans = makerOf(4);
    scans.interleaved = false;
    scans.longCodes = true;
    LosslessJpegMaker deep = makerOf(1);
    deep.picture = samplePlanes(QSize(20, 20), 1, 16);
    deep.predictor = 6;
    const QList<QByteArray> parents = {
        makerOf(1).bytes(), restarts.bytes(), scans.bytes(), deep.bytes(),
        *codec.encode(imageOf(samplePicture(QSize(30, 20))), QStringLiteral("ljp"), {})};
    quint32 seed = 1;
    for (int child = 0; child < 400; ++child, ++seed) {
        const QString fault = misbehaviour(codec, Mutator(parents[child % parents.size()], seed).next());
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

void TestLosslessJpegCodec::readsRealSamples()
{
    const QDir folder(qEnvironmentVariable("QUORVIA_SAMPLES") + QStringLiteral("/ljp"));
    if (!qEnvironmentVariableIsSet("QUORVIA_SAMPLES") || !folder.exists()) {
        qInfo("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
        return;
    }
    for (const QString& name : folder.entryList(QDir::Files)) {
        QFile file(folder.filePath(name));
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

QTEST_GUILESS_MAIN(TestLosslessJpegCodec)
#include "tst_losslessjpegcodec.moc"
