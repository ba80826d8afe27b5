#include "Corpus.h"
#include "WpgMaker.h"

namespace quorvia::test {

namespace {

using namespace wpg;

/// Page `page` (from 1) as GraphicsMagick reads it.
Rgba readWithGm(const QByteArray& file, int page)
{
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.wpg"), file);
    return fromPnm(runTool(QStringLiteral("gm"),
                           {QStringLiteral("convert"), QStringLiteral("%1[%2]").arg(path).arg(page - 1),
                            QStringLiteral("-depth"), QStringLiteral("8"), QStringLiteral("ppm:-")}));
}

Fixture exact(const char* name, const QByteArray& file, int page = 1)
{
    return {QString::fromLatin1(name), file, readWithGm(file, page), 0, page};
}

/// A variant that no independent reader shows exactly.
Fixture inexact(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, {}, 0, 1};
}

void addVersion1(std::vector<Fixture>& all)
{
    const QByteArray map = map1(0, 256);
    all.push_back(exact("1 bit, 13 x 7", file1(bitmap1(13, 7, 1))));
    all.push_back(exact("1 bit under a map of 256", file1(map + bitmap1(16, 5, 1))));
    all.push_back(exact("2 bits, 7 x 5", file1(map1(0, 4) + bitmap1(7, 5, 2))));
    all.push_back(exact("4 bits, 9 x 6", file1(map1(0, 16) + bitmap1(9, 6, 4))));
    all.push_back(exact("8 bits, 31 x 17", file1(map + bitmap1(31, 17, 8))));
    all.push_back(exact("24 bits, 5 x 4", file1(bitmap1(5, 4, 24))));
    all.push_back(exact("8 bits, 1 x 1", file1(map + bitmap1(1, 1, 8))));
    all.push_back(exact("8 bits, 1 x 20000", file1(map + bitmap1(1, 20000, 8))));
    all.push_back(exact("1 bit, 20000 x 1", file1(bitmap1(20000, 1, 1))));
    all.push_back(exact("8 bits, 400 x 300", file1(map + bitmap1(400, 300, 8))));
    const QByteArray row = bytes({4, 1, 2, 3, 4});
    all.push_back(
        exact("rows repeated", file1(map + bitmap1(4, 9, 8, row + bytes({0, 3}) + row + bytes({0, 4})))));
    all.push_back(exact("a run over two rows", file1(map + bitmap1(4, 3, 8, bytes({0x88, 9}) + row))));
    all.push_back(exact("a run of 255", file1(map + bitmap1(4, 3, 8, row + bytes({0x80, 8})))));
    all.push_back(exact("lengths of five bytes", file1(map + bitmap1(4, 2, 8, row + row, Length::Long))));
    all.push_back(inexact("a map in two parts", file1(map1(0, 128) + map1(128, 128) + bitmap1(20, 20, 8))));
    const QByteArray two = file1(map + bitmap1(6, 5, 8) + map1(0, 16) + bitmap1(9, 3, 4));
    all.push_back(exact("the first of two bitmaps", two, 1));
    all.push_back(exact("the second of two bitmaps", two, 2));
    for (const int turn : {0, 90, 180, 270, 0x8000, 0x2000, 0x8000 + 90, 0x2000 + 270}) {
        const QByteArray name = "placed bitmap, turn " + QByteArray::number(turn, 16);
        const QByteArray placed = placedBitmap1(turn, 5, 3, 8, {100, 200, 700, 500});
        all.push_back(exact(name.constData(), file1(map + placed)));
    }
}

void addVersion2(std::vector<Fixture>& all)
{
    const QByteArray map = map2(256);
    const QByteArray frame = frame2(words({0}), {0, 0, 1200, 1200});
    all.push_back(
        exact("version 2, 8 bits, rows", file2(map + frame + bitmap2(7, 5, 4, false, pixelBytes(7, 5)))));
    all.push_back(exact("version 2, 4 bits, 5 x 3",
                        file2(map2(16) + frame + bitmap2(5, 3, 3, false, pixelBytes(3, 3)))));
    all.push_back(exact("version 2, 24 bits", file2(frame + bitmap2(5, 3, 8, false, pixelBytes(15, 3)))));
    // A run of five, three literals, four of value 0, once more the run's value, the row twice more, three of
    // value 255 and five literals.
    const QByteArray codes =
        bytes({0x84, 9, 0x02, 1, 2, 3, 0x7F, 3, 0xFD, 3, 0xFE, 1, 0xFF, 2, 0x04, 5, 6, 7, 8, 9, 0x87, 44});
    all.push_back(
        exact("version 2, 8 bits, run length", file2(map + frame + bitmap2(16, 4, 4, true, codes))));
    // Elements of three bytes: a run, then two literals.
    const QByteArray triples = bytes({0x7D, 3, 0x82, 10, 20, 30, 0x01, 1, 2, 3, 4, 5, 6});
    all.push_back(inexact("version 2, 24 bits, run length", file2(frame + bitmap2(5, 1, 8, true, triples))));
}

} // namespace

std::vector<Fixture> wpgCorpus()
{
    std::vector<Fixture> all;
    addVersion1(all);
    addVersion2(all);
    all.push_back(inexact("shapes, version 1", drawing1()));
    all.push_back(inexact("shapes, version 2", drawing2()));
    const QByteArray map = map1(0, 256);
    all.push_back(
        inexact("a shape and a placed bitmap", file1(map + record1(0x07, words({100, 100, 500, 400})) +
                                                     placedBitmap1(0, 5, 3, 8, {600, 600, 900, 800}))));
    all.push_back(inexact("version 2, a shape and a bitmap",
                          file2(map2(256) + record2(0x18, words({0x6000, 100, 100, 600, 500, 0, 0})) +
                                frame2(words({0}), {600, 600, 1000, 1000}) +
                                bitmap2(7, 5, 4, false, pixelBytes(7, 5)))));
    return all;
}

} // namespace quorvia::test
