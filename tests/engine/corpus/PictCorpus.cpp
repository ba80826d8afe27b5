#include "MapTools.h"
#include "PictMaker.h"

namespace quorvia::test {

namespace {

Fixture byMagick(const char* name, const QByteArray& file)
{
    return {QString::fromLatin1(name), file, readWithMagick(file, QStringLiteral("pict"))};
}

/// A picture from `color`, which gives the pixel of a place.
template <class Color>
Rgba drawn(QSize size, const Color& color)
{
    QImage image(size, QImage::Format_RGBA8888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y, QColor::fromRgba(color(x, y)));
    }
    return rgbaOf(image);
}

bool dot(int x, int y)
{
    return (x * 5 + y * 3) % 7 < 3;
}

QByteArray dotRow(int y, int bytes)
{
    QByteArray row(bytes, '\0');
    for (int x = 0; x < bytes * 8; ++x) {
        if (dot(x, y))
            row[x / 8] = char(row[x / 8] | 0x80 >> x % 8);
    }
    return row;
}

Rgba dots(QSize size)
{
    return drawn(size, [](int x, int y) { return dot(x, y) ? qRgb(0, 0, 0) : qRgb(255, 255, 255); });
}

/// Black on white without a colour table: packed when rows have 8 bytes and more.
Fixture bitmap(const char* name, QSize size, int version, bool region, bool prefixed)
{
    const int rowBytes = (size.width() + 15) / 16 * 2;
    PictMaker maker(size, version, prefixed);
    maker.op(region ? 0x99 : 0x98).word(rowBytes).rectangle(QRect(QPoint(0, 0), size)).place(size);
    if (region)
        maker.word(10).rectangle(QRect(QPoint(0, 0), size));
    for (int y = 0; y < size.height(); ++y) {
        if (rowBytes < 8)
            maker.raw(dotRow(y, rowBytes));
        else
            maker.packedRow(dotRow(y, rowBytes), rowBytes > 250);
    }
    return {QString::fromLatin1(name), maker.file(), dots(size)};
}

QRgb step(int x, int y)
{
    return qRgb((x * 9) & 255, (y * 21 + x / 5) & 255, (x ^ y) & 255);
}

QByteArray bytesOf(std::initializer_list<int> values)
{
    QByteArray bytes;
    for (const int value : values)
        bytes += char(value);
    return bytes;
}

/// 32 bits: as they are, without the fourth byte, or by planes.
Fixture deep(const char* name, int packType)
{
    const QSize size(19, 7);
    PictMaker maker(size, 2);
    maker.op(0x9A).longWord(0xFF).pixmap(size.width() * 4, size, packType, 32, 3).place(size);
    for (int y = 0; y < size.height(); ++y) {
        QByteArray plain;
        QByteArray planes[3];
        for (int x = 0; x < size.width(); ++x) {
            const QRgb color = step(x, y);
            plain += (packType == 1 ? QByteArray(1, '\0') : QByteArray()) +
                     bytesOf({qRed(color), qGreen(color), qBlue(color)});
            planes[0] += char(qRed(color));
            planes[1] += char(qGreen(color));
            planes[2] += char(qBlue(color));
        }
        if (packType == 4)
            maker.packedRow(planes[0] + planes[1] + planes[2], false);
        else
            maker.raw(plain);
    }
    return {QString::fromLatin1(name), maker.file(), drawn(size, step)};
}

Fixture sixteenBits(const char* name, bool packed)
{
    const QSize size(13, 9);
    const auto value = [](int x, int y) { return (x * 2321 + y * 977) & 0x7FFF; };
    PictMaker maker(size, 2);
    maker.op(0x9A).longWord(0xFF).pixmap(26, size, packed ? 3 : 1, 16, 3).place(size);
    for (int y = 0; y < size.height(); ++y) {
        QByteArray row;
        for (int x = 0; x < size.width(); ++x)
            row += bytesOf({value(x, y) >> 8, value(x, y) & 255});
        if (packed)
            maker.packedRow(row, false, 2);
        else
            maker.raw(row);
    }
    const auto eight = [](int five) { return qRound((five & 31) * 255 / 31.0); };
    return {QString::fromLatin1(name), maker.file(), drawn(size, [&](int x, int y) {
                return qRgb(eight(value(x, y) >> 10), eight(value(x, y) >> 5), eight(value(x, y)));
            })};
}

/// Two maps of 4 bits with palettes, one of them drawn at twice its size, the paper seen between them.
Fixture twoMaps()
{
    const QSize size(16, 3);
    QList<QRgb> palette;
    for (int i = 0; i < 16; ++i)
        palette.append(qRgb(255 - 16 * i, 10 * i, i * i));
    PictMaker maker({40, 10}, 2);
    for (int i = 0; i < 2; ++i) {
        const QRect target = i == 0 ? QRect(1, 1, 16, 3) : QRect(5, 4, 32, 6);
        maker.op(0x98).pixmap(8, size, 0, 4, 1).colors(palette).place(QRect(QPoint(0, 0), size), target);
        for (int y = 0; y < size.height(); ++y)
            maker.packedRow(QByteArray::fromHex("0123456789abcdef"), false);
    }
    const Rgba expected = drawn({40, 10}, [&](int x, int y) {
        if (QRect(5, 4, 32, 6).contains(x, y))
            return palette[(x - 5) / 2];
        return QRect(1, 1, 16, 3).contains(x, y) ? palette[x - 1] : qRgb(255, 255, 255);
    });
    return {QStringLiteral("two maps, one enlarged"), maker.file(), expected};
}

/// Twelve strips with eight times the dots of the page in both directions, as scanners' programs write them.
Fixture strips()
{
    constexpr int dots = 8; // of one colour for each pixel of the page
    const QSize page(64, 96);
    const QSize stored(dots * page.width(), dots * 8);
    const auto index = [](int x, int y) { return (x * 5 + y * 3) % 200; };
    QList<QRgb> palette;
    for (int i = 0; i < 200; ++i)
        palette.append(qRgb(i, 255 - i, i * 7 % 256));
    PictMaker maker(page, 2);
    for (int top = 0; top < page.height(); top += 8) {
        maker.op(0x98).pixmap(stored.width(), stored, 0, 8, 1).colors(palette);
        maker.place(QRect(QPoint(0, 0), stored), QRect(0, top, page.width(), 8));
        for (int y = 0; y < stored.height(); ++y) {
            QByteArray row;
            for (int x = 0; x < stored.width(); ++x)
                row += char(index(x / dots, top + y / dots));
            maker.packedRow(row, true);
        }
    }
    return {QStringLiteral("strips of many dots"), maker.file(),
            drawn(page, [&](int x, int y) { return palette[index(x, y)]; })};
}

/// A compressed picture, and the note that asks for the program which reads it.
Fixture compressed(const char* name, const char* coding, const QByteArray& inner, const Rgba& expected)
{
    const QSize size = expected.size;
    PictMaker maker(size, 2);
    maker.op(0x8200).longWord(68 + 86 + inner.size()).word(0);
    for (const int value : {0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000})
        maker.longWord(value);
    maker.longWord(0).rectangle(QRect()).word(0).rectangle(QRect(QPoint(0, 0), size));
    maker.longWord(0).longWord(0);
    maker.longWord(86).raw(coding).raw(QByteArray(24, '\0')).word(size.width()).word(size.height());
    maker.raw(QByteArray(86 - 36, '\0')).raw(inner);
    maker.op(0x98).word(2).rectangle(QRect(0, 0, 8, 1)).place(QSize(8, 1)).raw("ab");
    return {QString::fromLatin1(name), maker.file(), expected};
}

Fixture withJpeg()
{
    const QByteArray jpeg = piped("cjpeg -quality 90", sampleMap({24, 16}));
    return compressed("JPEG inside", "jpeg", jpeg, fromPnm(piped("djpeg -ppm", jpeg)));
}

Fixture withPng()
{
    return compressed("PNG inside", "png ", samplePng({24, 16}, false), fromPnm(sampleMap({24, 16})));
}

} // namespace

std::vector<Fixture> pictCorpus()
{
    const QByteArray small = sampleMap({33, 17});
    return {
        byMagick("netpbm, 200 colours", piped("ppmtopict -quiet", fewColors({33, 17}, 200))),
        byMagick("netpbm, 16 colours, 300 x 4", piped("ppmtopict -quiet", fewColors({300, 4}, 16))),
        byMagick("netpbm, 8 x 1", piped("ppmtopict -quiet", sampleMap({8, 1}))),
        byMagick("ImageMagick, 24 bits", piped("convert ppm:- pict:-", small)),
        byMagick("ImageMagick, 24 bits, 1 x 1", piped("convert ppm:- pict:-", sampleMap({1, 1}))),
        byMagick("ImageMagick, 24 bits, 220 x 5", piped("convert ppm:- pict:-", sampleMap({220, 5}))),
        byMagick("ImageMagick, palette",
                 piped("convert ppm:- -type Palette pict:-", fewColors({33, 17}, 90))),
        byMagick("ImageMagick, alpha", piped("convert png:- pict:-", samplePng({33, 17}, true))),
        byMagick("GraphicsMagick, 24 bits, 1 x 2000", piped("gm convert ppm:- pict:-", sampleMap({1, 2000}))),
        byMagick("GraphicsMagick, palette, 220 x 5",
                 piped("gm convert ppm:- -type Palette pict:-", fewColors({220, 5}, 60))),
        bitmap("bitmap, version 1, 64 x 9", {64, 9}, 1, false, true),
        bitmap("bitmap, version 1 without prefix, 13 x 5", {13, 5}, 1, false, false),
        bitmap("bitmap, version 2, in a region, 77 x 11", {77, 11}, 2, true, true),
        bitmap("bitmap, version 2 without prefix, 2100 x 3", {2100, 3}, 2, false, false),
        deep("32 bits, not packed", 1),
        deep("32 bits without filling", 2),
        deep("32 bits by planes", 4),
        sixteenBits("16 bits, packed", true),
        sixteenBits("16 bits, not packed", false),
        twoMaps(),
        strips(),
        withPng(),
        withJpeg(),
    };
}

} // namespace quorvia::test
