#include "Corpus.h"
#include "WmfMaker.h"

namespace quorvia::test {

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 128, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb sand = qRgb(194, 178, 128);

constexpr QSize sheet(40, 30);

QRgb inverse(QRgb color)
{
    return color ^ 0xFFFFFFU;
}

QRgb colorAt(int x, int y)
{
    return qRgb(x * 37 % 256, y * 53 % 256, (x + y) * 29 % 256);
}

/// Operation, then what follows it, as words.
QList<int> withRop(quint32 rop, const QList<int>& rest)
{
    return QList<int>{int(rop & 0xFFFF), int(rop >> 16)} + rest;
}

constexpr quint32 copySource = 0x00CC0020;

QList<Fixture> shapes()
{
    QList<Fixture> out;
    out.append(
        {"filled rectangles",
         WmfMaker::pixels(sheet).fillWith(red).rectangle(3, 4, 20, 15).rectangle(39, 29, 30, 20).file(),
         Paper(sheet).box(3, 4, 20, 15, red).box(30, 20, 39, 29, red).rgba()});
    out.append({"rectangle with a frame of one pixel",
                WmfMaker::pixels(sheet)
                    .pen(0, 0, blue)
                    .brush(0, sand)
                    .select(0)
                    .select(1)
                    .rectangle(5, 6, 25, 20)
                    .file(),
                Paper(sheet).box(5, 6, 25, 20, blue).box(6, 7, 24, 19, sand).rgba()});
    out.append({"rectangle with a frame of three pixels",
                WmfMaker::pixels(sheet)
                    .pen(0x2000, 3, green)
                    .brush(1, 0)
                    .select(0)
                    .select(1)
                    .rectangle(5, 6, 25, 20)
                    .file(),
                Paper(sheet).box(4, 5, 26, 21, green).box(7, 8, 23, 18, white).rgba()});
    out.append({"level and upright lines",
                WmfMaker::pixels(sheet)
                    .pen(0, 1, black)
                    .select(0)
                    .line(2, 3, 30, 3)
                    .line(4, 6, 4, 20)
                    .record(0x0325, {3, 10, 10, 20, 10, 20, 25})
                    .file(),
                Paper(sheet)
                    .box(2, 3, 30, 4, black)
                    .box(4, 6, 5, 20, black)
                    .box(10, 10, 21, 11, black)
                    .box(20, 10, 21, 25, black)
                    .rgba()});
    const QList<int> nested = {2, 4, 4, 5, 5, 35, 5, 35, 25, 5, 25, 10, 10, 30, 10, 30, 20, 10, 20};
    out.append({"nested polygons, alternating",
                WmfMaker::pixels(sheet).fillWith(red).record(0x0106, {1}).record(0x0538, nested).file(),
                Paper(sheet).box(5, 5, 35, 25, red).box(10, 10, 30, 20, white).rgba()});
    out.append({"nested polygons, winding",
                WmfMaker::pixels(sheet).fillWith(red).record(0x0106, {2}).record(0x0538, nested).file(),
                Paper(sheet).box(5, 5, 35, 25, red).rgba()});
    out.append({"single pixels",
                WmfMaker::pixels(sheet)
                    .record(0x041F, {WmfMaker::low(blue), WmfMaker::high(blue), 7, 9})
                    .record(0x041F, {WmfMaker::low(red), WmfMaker::high(red), 29, 39})
                    .file(),
                Paper(sheet).dot(9, 7, blue).dot(39, 29, red).rgba()});
    WmfMaker round = WmfMaker::pixels(QSize(120, 90));
    round.pen(0, 2, blue).brush(0, sand).select(0).select(1);
    round.record(0x0418, {40, 55, 5, 5}).record(0x061C, {12, 12, 40, 115, 5, 65});
    round.record(0x0817, {60, 5, 50, 30, 85, 35, 50, 5});
    round.record(0x081A, {60, 45, 50, 70, 85, 75, 50, 45});
    round.record(0x0830, {60, 85, 50, 110, 85, 115, 50, 85});
    out.append({"ellipse, round rectangle, arc, pie, chord", round.file(), {}});
    WmfMaker dashes = WmfMaker::pixels(QSize(100, 60));
    for (int style = 0; style <= 6; ++style)
        dashes.pen(style, style % 3, red).select(style).line(3, 5 + 8 * style, 97, 9 + 8 * style);
    out.append({"pens of every style", dashes.file(), {}});
    return out;
}

QList<Fixture> brushes()
{
    QList<Fixture> out;
    for (int hatch = 0; hatch < 6; ++hatch) {
        const auto isLine = [hatch](int x, int y) {
            const int column = x % 8;
            const int row = y % 8;
            const bool level = row == 4 && (hatch == 0 || hatch == 4);
            const bool upright = column == 4 && (hatch == 1 || hatch == 4);
            const bool falling = column == row && (hatch == 2 || hatch == 5);
            const bool rising = column + row == 7 && (hatch == 3 || hatch == 5);
            return level || upright || falling || rising;
        };
        const bool opaque = hatch % 2 == 0;
        out.append({QStringLiteral("hatch %1 on %2 ground").arg(hatch).arg(opaque ? "filled" : "clear"),
                    WmfMaker::pixels(sheet)
                        .record(0x0102, {opaque ? 2 : 1})
                        .record(0x0201, {WmfMaker::low(sand), WmfMaker::high(sand)})
                        .pen(5, 0, 0)
                        .brush(2, blue, hatch)
                        .select(0)
                        .select(1)
                        .rectangle(3, 5, 37, 28)
                        .file(),
                    Paper(sheet)
                        .paint(3, 5, 37, 28,
                               [&](int x, int y) { return isLine(x, y) ? blue
                                                          : opaque     ? sand
                                                                       : white; })
                        .rgba()});
    }
    const QByteArray tile = WmfMaker::dib(QSize(5, 3), 24, {}, 0, [](int x, int y) { return colorAt(x, y); });
    out.append({"brush of a bitmap of 24 bits",
                WmfMaker::pixels(sheet)
                    .pen(5, 0, 0)
                    .record(0x0142, {5, 0}, tile)
                    .select(0)
                    .select(1)
                    .rectangle(2, 2, 38, 28)
                    .file(),
                Paper(sheet).paint(2, 2, 38, 28, [](int x, int y) { return colorAt(x % 5, y % 3); }).rgba()});
    // A device bitmap, 8 x 2 pixels of 1 bit, in text and background colour.
    const QByteArray pattern = WmfMaker::words({0, 8, 2, 2}) + QByteArray("\x01\x01", 2) +
                               QByteArray(22, '\0') + QByteArray("\xF0\x00\x0F\x00", 4);
    out.append(
        {"brush of two colours",
         WmfMaker::pixels(sheet)
             .record(0x0209, {WmfMaker::low(red), WmfMaker::high(red)})
             .record(0x0201, {WmfMaker::low(blue), WmfMaker::high(blue)})
             .pen(5, 0, 0)
             .record(0x01F9, {}, pattern)
             .select(0)
             .select(1)
             .rectangle(0, 0, 40, 30)
             .file(),
         Paper(sheet)
             .paint(0, 0, 40, 30, [](int x, int y) { return (x % 8 < 4) == (y % 2 == 0) ? blue : red; })
             .rgba()});
    return out;
}

QList<Fixture> bitmaps()
{
    QList<Fixture> out;
    const QSize size(13, 9);
    const QByteArray deep = WmfMaker::dib(size, 24, {}, 0, [](int x, int y) { return colorAt(x, y); });
    out.append({"StretchDIB, 24 bits, pixel by pixel",
                WmfMaker::pixels(sheet)
                    .record(0x0F43, withRop(copySource, {0, 9, 13, 0, 0, 9, 13, 4, 6}), deep)
                    .file(),
                Paper(sheet).paint(6, 4, 19, 13, [](int x, int y) { return colorAt(x - 6, y - 4); }).rgba()});
    out.append({"StretchDIB, a part, mirrored",
                WmfMaker::pixels(sheet)
                    .record(0x0F43, withRop(copySource, {0, 4, 5, 2, 3, 4, -5, 4, 25}), deep)
                    .file(),
                Paper(sheet)
                    .paint(20, 4, 25, 8, [](int x, int y) { return colorAt(3 + 24 - x, 9 - 2 - 4 + y - 4); })
                    .rgba()});
    const QList<QRgb> colors = {black, red, green, blue, white, sand};
    const QByteArray few = WmfMaker::dib(size, 8, WmfMaker::colorTable(colors), 6,
                                         [](int x, int y) { return quint32((x + 2 * y) % 6); });
    out.append(
        {"DIBStretchBlt, 8 bits, doubled",
         WmfMaker::pixels(sheet).record(0x0B41, withRop(copySource, {9, 13, 0, 0, 18, 26, 3, 2}), few).file(),
         Paper(sheet)
             .paint(2, 3, 28, 21, [&](int x, int y) { return colors[((x - 2) / 2 + 2 * ((y - 3) / 2)) % 6]; })
             .rgba()});
    const QByteArray two = WmfMaker::dib(size, 1, WmfMaker::colorTable({sand, blue}), 2,
                                         [](int x, int y) { return quint32((x ^ y) & 1); });
    out.append(
        {"DIBBitBlt, 1 bit, from within",
         WmfMaker::pixels(sheet).record(0x0940, withRop(copySource, {1, 2, 6, 7, 10, 11}), two).file(),
         Paper(sheet)
             .paint(11, 10, 18, 16,
                    [](int x, int y) { return (((x - 11 + 2) ^ (y - 10 + 1)) & 1) != 0 ? blue : sand; })
             .rgba()});
    const QByteArray four = WmfMaker::dib(size, 4, WmfMaker::colorTable(colors), 6,
                                          [](int x, int y) { return quint32((2 * x + y) % 6); });
    out.append({"SetDIBToDevice, 4 bits",
                WmfMaker::pixels(sheet).record(0x0D33, {0, 9, 0, 0, 0, 9, 13, 20, 25}, four).file(),
                Paper(sheet)
                    .paint(25, 20, 38, 29, [&](int x, int y) { return colors[(2 * (x - 25) + y - 20) % 6]; })
                    .rgba()});
    const QByteArray numbered = WmfMaker::dib(size, 4, WmfMaker::words({2, 0, 1}), 3,
                                              [](int x, int y) { return quint32((x + y) % 3); });
    const QByteArray palette = QByteArray::fromHex("ff000000 00800000 0000ff00"); // red, green, blue
    out.append({"palette by numbers",
                WmfMaker::pixels(sheet)
                    .record(0x00F7, {0x300, 3}, palette)
                    .record(0x0234, {0})
                    .record(0x0F43, withRop(copySource, {1, 9, 13, 0, 0, 9, 13, 0, 0}), numbered)
                    .record(0x02FA, {5, 0, 0, 0, 0})
                    .record(0x02FC, {0, 1, 0x0100, 0})
                    .select(1)
                    .select(2)
                    .rectangle(20, 20, 30, 30)
                    .file(),
                Paper(sheet)
                    .paint(0, 0, 13, 9,
                           [](int x, int y) {
                               return QList<QRgb>{blue, red, green}[(x + y) % 3];
                           })
                    .box(20, 20, 30, 30, green)
                    .rgba()});
    // 8 x 2 pixels of 1 bit of the device kind.
    const QByteArray device =
        WmfMaker::words({0, 8, 2, 2}) + QByteArray("\x01\x01", 2) + QByteArray("\xC0\x00\x3F\x00", 4);
    out.append({"BitBlt, device bitmap of 1 bit",
                WmfMaker::pixels(sheet)
                    .record(0x0209, {WmfMaker::low(red), WmfMaker::high(red)})
                    .record(0x0201, {WmfMaker::low(blue), WmfMaker::high(blue)})
                    .record(0x0922, withRop(copySource, {0, 0, 2, 8, 5, 4}), device)
                    .file(),
                Paper(sheet)
                    .paint(4, 5, 12, 7, [](int x, int y) { return (x - 4 < 2) == (y == 5) ? blue : red; })
                    .rgba()});
    const QSize narrow(8, 9);
    out.append({"StretchDIB, wider than the picture",
                WmfMaker::pixels(narrow)
                    .record(0x0F43, withRop(copySource, {0, 9, 8, 0, 0, 9, 8, 0, 0}), deep)
                    .file(),
                Paper(narrow).paint(0, 0, 8, 9, [](int x, int y) { return colorAt(x, y); }).rgba()});
    const QSize thin(1, 20000);
    out.append({"1 x 20000",
                WmfMaker::pixels(thin)
                    .record(0x0F43, withRop(copySource, {0, 20000, 1, 0, 0, 20000, 1, 0, 0}),
                            WmfMaker::dib(thin, 24, {}, 0, [](int x, int y) { return colorAt(x, y); }))
                    .file(),
                Paper(thin).paint(0, 0, 1, 20000, [](int x, int y) { return colorAt(x, y); }).rgba()});
    out.append({"1 x 1", WmfMaker::pixels(QSize(1, 1)).fillWith(red).rectangle(0, 0, 1, 1).file(),
                Paper(QSize(1, 1)).dot(0, 0, red).rgba()});
    return out;
}

QList<Fixture> operations()
{
    QList<Fixture> out;
    const QSize size(8, 8);
    const QByteArray mask = WmfMaker::dib(size, 1, WmfMaker::colorTable({black, white}), 2,
                                          [](int x, int) { return quint32(x >= 4 ? 1 : 0); });
    const QByteArray picture =
        WmfMaker::dib(size, 24, {}, 0, [](int x, int y) { return x >= 4 ? black : colorAt(x, y); });
    out.append({"a bitmap through a mask",
                WmfMaker::pixels(sheet)
                    .fillWith(sand)
                    .rectangle(0, 0, 40, 30)
                    .record(0x0F43, withRop(0x008800C6, {0, 8, 8, 0, 0, 8, 8, 10, 10}), mask)
                    .record(0x0F43, withRop(0x00EE0086, {0, 8, 8, 0, 0, 8, 8, 10, 10}), picture)
                    .file(),
                Paper(sheet)
                    .box(0, 0, 40, 30, sand)
                    .paint(10, 10, 14, 18, [](int x, int y) { return colorAt(x - 10, y - 10); })
                    .rgba()});
    out.append({"patterns laid over, turned over, black and white",
                WmfMaker::pixels(sheet)
                    .fillWith(sand)
                    .rectangle(0, 0, 20, 30)
                    .record(0x061D, withRop(0x00F00021, {4, 30, 2, 2}))  // the pattern
                    .record(0x061D, withRop(0x00550009, {4, 30, 8, 5}))  // turned over
                    .record(0x061D, withRop(0x005A0049, {4, 30, 14, 5})) // exclusive or
                    .record(0x061D, withRop(0x00000042, {3, 30, 20, 5}))
                    .record(0x061D, withRop(0x00FF0062, {3, 30, 24, 5}))
                    .file(),
                Paper(sheet)
                    .box(0, 0, 20, 30, sand)
                    .box(2, 2, 32, 6, sand)
                    .box(5, 8, 20, 12, inverse(sand))
                    .box(20, 8, 35, 12, black)
                    .box(5, 14, 20, 18, black)
                    .box(20, 14, 35, 18, inverse(sand))
                    .box(5, 20, 35, 23, black)
                    .box(5, 24, 35, 27, white)
                    .rgba()});
    out.append({"drawing by exclusive or, by and, inverting",
                WmfMaker::pixels(sheet)
                    .fillWith(red)
                    .rectangle(0, 0, 40, 10)
                    .brush(0, sand)
                    .select(2)
                    .record(0x0104, {7})
                    .rectangle(5, 5, 15, 15)
                    .record(0x0104, {9})
                    .rectangle(20, 5, 30, 15)
                    .record(0x0104, {6})
                    .rectangle(32, 5, 38, 15)
                    .record(0x0104, {11})
                    .rectangle(0, 20, 40, 30)
                    .file(),
                Paper(sheet)
                    .box(0, 0, 40, 10, red)
                    .box(5, 5, 15, 10, (red ^ sand) | 0xFF000000)
                    .box(5, 10, 15, 15, inverse(sand))
                    .box(20, 5, 30, 10, red & sand)
                    .box(20, 10, 30, 15, sand)
                    .box(32, 5, 38, 10, inverse(red))
                    .box(32, 10, 38, 15, black)
                    .rgba()});
    return out;
}

QList<Fixture> contexts()
{
    QList<Fixture> out;
    out.append({"clips, saved and restored",
                WmfMaker::pixels(sheet)
                    .fillWith(red)
                    .record(0x001E)
                    .record(0x0416, {20, 30, 5, 10})
                    .record(0x001E)
                    .record(0x0415, {15, 20, 8, 12})
                    .rectangle(0, 0, 40, 30)
                    .record(0x0127, {-1})
                    .record(0x0220, {8, 9})
                    .brush(0, blue)
                    .select(2)
                    .rectangle(0, 22, 40, 24)
                    .record(0x0127, {1})
                    .rectangle(0, 0, 2, 2)
                    .file(),
                Paper(sheet)
                    .box(10, 5, 30, 20, red)
                    .box(12, 8, 20, 15, white)
                    .box(19, 22, 39, 24, blue)
                    .box(0, 0, 2, 2, red)
                    .rgba()});
    // Two rectangles as a region of two scans.
    const QList<int> region = {0, 6, 0, 0, 32, 2, 2, 4, 4, 30, 20, 2, 4, 10, 4, 20, 2, 2, 10, 20, 10, 30, 2};
    out.append({"regions filled, framed, inverted and as clip",
                WmfMaker::pixels(sheet)
                    .fillWith(sand)
                    .record(0x06FF, region)
                    .brush(0, blue)
                    .record(0x012B, {2})
                    .record(0x0429, {2, 3, 1, 1})
                    .record(0x012C, {2})
                    .rectangle(0, 8, 40, 9)
                    .record(0x012A, {2})
                    .file(),
                Paper(sheet)
                    .box(4, 4, 20, 10, inverse(blue))
                    .box(10, 10, 30, 20, inverse(blue))
                    .box(5, 5, 19, 9, inverse(sand))
                    .box(11, 11, 29, 19, inverse(sand))
                    .box(10, 9, 19, 10, inverse(sand))
                    .box(11, 10, 20, 11, inverse(sand))
                    .box(4, 8, 20, 9, inverse(sand))
                    .rgba()});
    out.append(
        {"plain header, y runs up",
         WmfMaker().window(100, 300, QSize(60, -40)).fillWith(green).rectangle(110, 290, 130, 280).file(),
         Paper(QSize(60, 40)).box(10, 10, 30, 20, green).rgba()});
    out.append({"no extent at all: as far as is drawn",
                WmfMaker().fillWith(blue).rectangle(100, 50, 130, 60).rectangle(90, 70, 110, 80).file(),
                Paper(QSize(41, 31)).box(10, 0, 40, 10, blue).box(0, 20, 20, 30, blue).rgba()});
    out.append({"window moved and scaled",
                WmfMaker::pixels(sheet)
                    .fillWith(red)
                    .record(0x020F, {-5, -10})
                    .rectangle(0, 0, 4, 4)
                    .record(0x0410, {2, 1, 2, 1})
                    .rectangle(5, 5, 8, 8)
                    .file(),
                Paper(sheet).box(10, 5, 14, 9, red).box(30, 20, 36, 26, red).rgba()});
    out.append({"viewports side by side",
                WmfMaker()
                    .placed(0, 0, 40, 20, 96)
                    .window(0, 0, QSize(400, 200))
                    .record(0x020D, {0, 0})
                    .record(0x020E, {100, 200})
                    .fillWith(red)
                    .rectangle(100, 100, 200, 150)
                    .record(0x020E, {50, 100})
                    .record(0x0211, {50, 100})
                    .rectangle(100, 100, 200, 200)
                    .file(),
                Paper(QSize(40, 20)).box(10, 10, 20, 15, red).box(25, 15, 30, 20, red).rgba()});
    out.append({"slots used again",
                WmfMaker::pixels(sheet)
                    .pen(5, 0, 0)
                    .brush(0, red)
                    .font(-10, "Arial")
                    .select(0)
                    .record(0x01F0, {1})
                    .brush(0, blue)
                    .brush(0, green)
                    .select(1)
                    .rectangle(0, 0, 10, 10)
                    .select(3)
                    .rectangle(10, 0, 20, 10)
                    .file(),
                Paper(sheet).box(0, 0, 10, 10, blue).box(10, 0, 20, 10, green).rgba()});
    return out;
}

QList<Fixture> texts()
{
    QList<Fixture> out;
    WmfMaker plain = WmfMaker::pixels(QSize(160, 80));
    plain.font(-14, "Times New Roman").select(0).record(0x0102, {1}).record(0x0209, {255, 0});
    plain.text(5, 5, "Serif, 14").font(18, "Courier New", 0, 300, 9, true).select(1).text(10, 70, "turned");
    plain.record(0x012E, {6}).record(0x0108, {3}).record(0x020A, {1, 10}).text(90, 40, "a b");
    out.append({"text, aligned, turned and spaced", plain.file(), {}});
    WmfMaker steps = WmfMaker::pixels(QSize(160, 80));
    steps.font(-12, "Arial").select(0).record(0x0201, {0xFFFF, 0});
    steps.record(0x0A32, {10, 10, 3, 6, 5, 5, 120, 30},
                 QByteArray("abc\0", 4) + WmfMaker::words({20, 30, 10}));
    steps.font(-12, "Symbol", 2).select(1).text(10, 40, "abc").font(-12, "Arial", 204).select(2);
    steps.text(60, 40, "\xCF\xF0\xE8\xE2\xE5\xF2")
        .font(-12, "Arial", 178)
        .select(3)
        .text(10, 60, "\xD3\xE1\xC7\xE3");
    out.append({"text in steps, on a ground, in other alphabets", steps.file(), {}});
    return out;
}

} // namespace

std::vector<Fixture> wmfCorpus()
{
    const QList<Fixture> all = shapes() + brushes() + bitmaps() + operations() + contexts() + texts();
    return {all.begin(), all.end()};
}

} // namespace quorvia::test
