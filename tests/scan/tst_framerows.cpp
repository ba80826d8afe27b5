// From the bytes of frames to pictures, by tables.
#include "scan/FrameRows.h"

#include <QTest>

#include <bit>

using namespace quorvia::scan;

namespace {

constexpr std::int64_t enough = 1 << 20;

std::vector<std::uint8_t> bytesOf(const QByteArray& hex)
{
    const QByteArray raw = QByteArray::fromHex(hex);
    return {raw.begin(), raw.end()};
}

/// The same, with the two bytes of each sample in the machine's order.
std::vector<std::uint8_t> samplesOf(const QByteArray& hex)
{
    std::vector<std::uint8_t> bytes = bytesOf(hex);
    if constexpr (std::endian::native == std::endian::little) {
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            std::swap(bytes[i], bytes[i + 1]);
    }
    return bytes;
}

QByteArray hexOf(const std::vector<std::uint8_t>& bytes)
{
    return QByteArray(reinterpret_cast<const char*>(bytes.data()), qsizetype(bytes.size())).toHex();
}

} // namespace

Q_DECLARE_METATYPE(quorvia::scan::FrameFormat)

class TestFrameRows : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<FrameFormat>("format");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("row");
        using enum Channels;
        QTest::newRow("grey") << FrameFormat{Gray, 8, 3, 3, 1} << QByteArray("0080ff")
                              << QByteArray("0080ff");
        QTest::newRow("padding") << FrameFormat{Gray, 8, 2, 4, 1} << QByteArray("0180aaaa")
                                 << QByteArray("0180");
        QTest::newRow("colour") << FrameFormat{Rgb, 8, 2, 6, 1} << QByteArray("010203fffefd")
                                << QByteArray("010203fffefd");
        QTest::newRow("bits: set is black")
            << FrameFormat{Gray, 1, 10, 2, 1} << QByteArray("a540") << QByteArray("00ff00ffff00ff00ff00");
        QTest::newRow("bits of colours: set is full, a byte a channel")
            << FrameFormat{Rgb, 1, 2, 3, 1} << QByteArray("8040c0") << QByteArray("ff00ff00ffff");
        QTest::newRow("bits of colours, the second byte")
            << FrameFormat{Rgb, 1, 9, 6, 1} << QByteArray("000000800080")
            << QByteArray("000000").repeated(8) + QByteArray("ff00ff");
        QTest::newRow("red alone") << FrameFormat{Red, 8, 2, 2, 1} << QByteArray("1122")
                                   << QByteArray("110000220000");
        QTest::newRow("green alone") << FrameFormat{Green, 8, 2, 2, 1} << QByteArray("1122")
                                     << QByteArray("001100002200");
        QTest::newRow("blue alone") << FrameFormat{Blue, 8, 2, 2, 1} << QByteArray("1122")
                                    << QByteArray("000011000022");
        QTest::newRow("bits of blue")
            << FrameFormat{Blue, 1, 2, 1, 1} << QByteArray("40") << QByteArray("0000000000ff");
    }

    void lines()
    {
        QFETCH(FrameFormat, format);
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, row);
        std::vector<std::uint8_t> made(std::size_t(row.size()) / 2);
        convertLine(format, bytesOf(line), made);
        QCOMPARE(hexOf(made), row);
    }

    void deepSamplesAreRounded()
    {
        std::vector<std::uint8_t> made(5);
        // 255 steps of 257 each: the half of one is 128.5
        convertLine({Channels::Gray, 16, 5, 10, 1}, samplesOf("000000800081ff7effff"), made);
        QCOMPARE(hexOf(made), QByteArray("000001feff"));
        std::vector<std::uint8_t> colors(3);
        convertLine({Channels::Rgb, 16, 1, 6, 1}, samplesOf("ffff00008080"), colors);
        QCOMPARE(hexOf(colors), QByteArray("ff0080"));
    }

    void whatCannotBeTaken_data()
    {
        QTest::addColumn<FrameFormat>("format");
        QTest::addColumn<bool>("isTaken");
        using enum Channels;
        QTest::newRow("sound") << FrameFormat{Rgb, 8, 10, 30, 10} << true;
        QTest::newRow("lines not known") << FrameFormat{Rgb, 8, 10, 30, -1} << true;
        QTest::newRow("four bits") << FrameFormat{Gray, 4, 10, 10, 10} << false;
        QTest::newRow("no width") << FrameFormat{Gray, 8, 0, 10, 10} << false;
        QTest::newRow("no lines") << FrameFormat{Gray, 8, 10, 10, 0} << false;
        QTest::newRow("too wide") << FrameFormat{Gray, 1, 65501, 8192, 1} << false;
        QTest::newRow("widest") << FrameFormat{Gray, 1, 65500, 8192, 1} << true;
        QTest::newRow("too high") << FrameFormat{Gray, 8, 1, 1, 65501} << false;
        QTest::newRow("lines too short") << FrameFormat{Rgb, 8, 10, 29, 10} << false;
        QTest::newRow("bits in lines too short") << FrameFormat{Rgb, 1, 9, 5, 10} << false;
        QTest::newRow("lines without measure") << FrameFormat{Gray, 8, 10, 1 << 30, 10} << false;
        QTest::newRow("beyond the budget") << FrameFormat{Rgb, 8, 1024, 3072, 342} << false;
        QTest::newRow("within the budget") << FrameFormat{Rgb, 8, 1024, 3072, 341} << true;
    }

    void whatCannotBeTaken()
    {
        QFETCH(FrameFormat, format);
        QFETCH(bool, isTaken);
        PictureBuilder builder(enough);
        const std::string why = builder.beginFrame(format);
        QVERIFY2(why.empty() == isTaken, why.c_str());
    }

    void bytesCutAnywhere_data()
    {
        QTest::addColumn<int>("piece");
        for (const int piece : {1, 2, 3, 5, 7, 12, 100})
            QTest::addRow("%d", piece) << piece;
    }

    void bytesCutAnywhere()
    {
        QFETCH(int, piece);
        const std::vector<std::uint8_t> all = bytesOf("010203aa040506aa070809aa");
        PictureBuilder builder(enough);
        QCOMPARE(builder.beginFrame({Channels::Gray, 8, 3, 4, 3}), std::string());
        for (std::span<const std::uint8_t> rest = all; !rest.empty();) {
            const auto part = rest.first(std::min(rest.size(), std::size_t(piece)));
            QVERIFY(builder.add(part));
            rest = rest.subspan(part.size());
        }
        std::string why;
        const RawPicture picture = builder.take(why);
        QCOMPARE(why, std::string());
        QCOMPARE(hexOf(picture.bytes), QByteArray("010203040506070809"));
        QCOMPARE(picture.width, 3);
        QCOMPARE(picture.height, 3);
        QCOMPARE(picture.bytesPerPixel, 1);
    }

    void threeFramesInAnyOrder()
    {
        PictureBuilder builder(enough);
        QCOMPARE(builder.beginFrame({Channels::Blue, 8, 2, 2, 1}), std::string());
        QVERIFY(builder.add(bytesOf("0304")));
        QVERIFY(qAbs(builder.progress() - 1.0 / 3) < 1e-9);
        QCOMPARE(builder.beginFrame({Channels::Red, 8, 2, 2, 1}), std::string());
        QVERIFY(builder.add(bytesOf("0102")));
        QCOMPARE(builder.beginFrame({Channels::Green, 8, 2, 2, 1}), std::string());
        QVERIFY(builder.add(bytesOf("0506")));
        QCOMPARE(builder.progress(), 1.0);
        std::string why;
        QCOMPARE(hexOf(builder.take(why).bytes), QByteArray("010503020604"));
        QCOMPARE(why, std::string());
    }

    void aPictureThatIsNotWhole()
    {
        std::string why;
        PictureBuilder none(enough);
        QVERIFY(none.take(why).bytes.empty());
        QVERIFY(!why.empty());

        why.clear();
        PictureBuilder noLine(enough);
        QCOMPARE(noLine.beginFrame({Channels::Gray, 8, 4, 4, 2}), std::string());
        QVERIFY(noLine.add(bytesOf("010203")));
        QVERIFY(noLine.take(why).bytes.empty());
        QVERIFY(!why.empty());

        why.clear();
        PictureBuilder twoColors(enough);
        for (const Channels channels : {Channels::Red, Channels::Green}) {
            QCOMPARE(twoColors.beginFrame({channels, 8, 1, 1, 1}), std::string());
            QVERIFY(twoColors.add(bytesOf("01")));
        }
        QVERIFY(twoColors.take(why).bytes.empty());
        QVERIFY(!why.empty());
    }

    void itIsAsHighAsTheShortestFrame()
    {
        PictureBuilder builder(enough);
        for (const auto& [channels, bytes] :
             {std::pair(Channels::Red, "010203"), {Channels::Green, "0405"}, {Channels::Blue, "060708"}}) {
            QCOMPARE(builder.beginFrame({channels, 8, 1, 1, -1}), std::string());
            QVERIFY(builder.add(bytesOf(bytes)));
            QVERIFY(builder.progress() < 0);
        }
        std::string why;
        const RawPicture picture = builder.take(why);
        QCOMPARE(picture.height, 2);
        QCOMPARE(hexOf(picture.bytes), QByteArray("010406020507"));
    }

    void framesThatDiffer()
    {
        PictureBuilder builder(enough);
        QCOMPARE(builder.beginFrame({Channels::Red, 8, 2, 2, 1}), std::string());
        QVERIFY(builder.add(bytesOf("0102")));
        QVERIFY(!builder.beginFrame({Channels::Green, 8, 3, 3, 1}).empty());
        QVERIFY(!builder.beginFrame({Channels::Gray, 8, 2, 2, 1}).empty());
    }

    void moreLinesThanWereTold()
    {
        PictureBuilder builder(enough);
        QCOMPARE(builder.beginFrame({Channels::Gray, 8, 1, 1, 2}), std::string());
        QVERIFY(builder.add(bytesOf("01020304")));
        std::string why;
        QCOMPARE(hexOf(builder.take(why).bytes), QByteArray("0102"));
    }

    void withoutAnEnd()
    {
        PictureBuilder high(enough);
        QCOMPARE(high.beginFrame({Channels::Gray, 8, 1, 1, -1}), std::string());
        QVERIFY(high.add(std::vector<std::uint8_t>(largestSide)));
        QVERIFY(!high.add(std::vector<std::uint8_t>(1)));
        PictureBuilder large(1000);
        QCOMPARE(large.beginFrame({Channels::Gray, 8, 100, 100, -1}), std::string());
        QVERIFY(large.add(std::vector<std::uint8_t>(1000)));
        QVERIFY(!large.add(std::vector<std::uint8_t>(100)));
    }
};

QTEST_GUILESS_MAIN(TestFrameRows)
#include "tst_framerows.moc"
