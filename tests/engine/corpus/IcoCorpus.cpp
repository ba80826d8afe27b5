#include "Corpus.h"

#include <QBuffer>
#include <QImage>

namespace quorvia::test {

namespace {

QByteArray little(quint32 value, int bytes)
{
    QByteArray out;
    for (int i = 0; i < bytes; ++i)
        out += char(value >> (8 * i) & 255);
    return out;
}

/// A bitmap for an icon, put together byte by byte: `bits` a pixel, every third pixel masked.
QByteArray bitmapOf(QSize size, int bits, bool masked = true, bool alpha = true)
{
    const auto rowBytes = [&](int depth) { return (size.width() * depth + 31) / 32 * 4; };
    QByteArray out = little(40, 4) + little(quint32(size.width()), 4);
    out += little(quint32(masked ? 2 * size.height() : size.height()), 4) + little(1, 2);
    out += little(quint32(bits), 2) + QByteArray(24, '\0');
    if (bits <= 8) {
        for (int i = 0; i < 1 << bits; ++i)
            out += little(quint32(i * 0x0B251D + 0x305070) & 0xFFFFFF, 4);
    }
    quint32 noise = 5;
    QByteArray rows(rowBytes(bits) * size.height(), '\0');
    for (qsizetype i = 0; i < rows.size(); ++i) {
        noise = noise * 1664525u + 1013904223u;
        rows[i] = bits == 32 && !alpha && i % 4 == 3 ? '\0' : char(noise >> 20);
    }
    out += rows;
    for (int y = 0; masked && y < size.height(); ++y) {
        QByteArray row(rowBytes(1), '\0');
        for (int x = y % 3; x < size.width(); x += 3)
            row[x / 8] = char(row[x / 8] | 0x80 >> x % 8);
        out += row;
    }
    return out;
}

struct Part
{
    QSize size;
    int bits;
    QByteArray bytes;
};

Part part(QSize size, int bits, bool masked = true, bool alpha = true)
{
    return {size, bits, bitmapOf(size, bits, masked, alpha)};
}

QByteArray iconOf(const std::vector<Part>& parts)
{
    QByteArray directory = little(0, 2) + little(1, 2) + little(quint32(parts.size()), 2);
    QByteArray content;
    for (const Part& one : parts) {
        directory += little(quint32(one.size.width()), 1) + little(quint32(one.size.height()), 1);
        directory += little(0, 2) + little(1, 2) + little(quint32(one.bits), 2);
        directory += little(quint32(one.bytes.size()), 4);
        directory += little(quint32(6 + 16 * parts.size() + content.size()), 4);
        content += one.bytes;
    }
    return directory + content;
}

QByteArray pngFile(const QImage& image)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return file;
}

QByteArray pngOf(QSize size)
{
    return pngFile(imageOf(samplePicture(size)));
}

/// The pixels of icon `index` (from 0) of `file` as icotool reads them.
Rgba readEntry(const QByteArray& file, int index)
{
    const ScratchFiles files;
    const QByteArray png =
        runTool(QStringLiteral("icotool"),
                {QStringLiteral("-x"), QStringLiteral("-i"), QString::number(index + 1), QStringLiteral("-o"),
                 QStringLiteral("-"), files.write(QStringLiteral("in.ico"), file)});
    return rgbaOf(QImage::fromData(png));
}

/// A fixture read by ImageMagick, the icons `others` (from 0) left out: icotool stumbles over rows of 24 bits
/// that need filling up, ImageMagick does not.
Fixture magickFixture(const char* name, const QByteArray& file, const QString& others = {})
{
    const QStringList options =
        others.isEmpty() ? QStringList() : QStringList{QStringLiteral("-delete"), others};
    return {QString::fromLatin1(name), file, readWithMagick(file, QStringLiteral("ico"), options), 0, 1};
}

Fixture fixture(const char* name, const QByteArray& file, int index = 0)
{
    return {QString::fromLatin1(name), file, readEntry(file, index), 0, 1};
}

QByteArray byConvert(const QStringList& options, QSize size)
{
    return runTool(QStringLiteral("convert"),
                   QStringList{QStringLiteral("ppm:-")} + options + QStringList{QStringLiteral("ico:-")},
                   ppmOf(samplePicture(size)));
}

/// An icon that icotool makes of PNG files with the depths `bits`; `raw` makes them PNG entries.
QByteArray byIcotool(const QList<int>& bits, QSize size, bool raw)
{
    const ScratchFiles files;
    const QString target = files.path(QStringLiteral("out.ico"));
    QStringList arguments = {QStringLiteral("-c"), QStringLiteral("-o"), target};
    for (const int depth : bits) {
        QImage image = imageOf(samplePicture(size));
        if (depth <= 8) { // few enough colours
            for (int i = 0; i < size.width() * size.height(); ++i)
                image.setPixel(i % size.width(), i / size.width(), qRgb(0, i % depth * 20, 0));
        } else if (depth == 24) {
            image = image.convertToFormat(QImage::Format_RGB888);
        }
        const QString path = files.write(QStringLiteral("%1.png").arg(depth), pngFile(image));
        arguments << QStringLiteral("-b") << QString::number(depth);
        if (raw)
            arguments << QStringLiteral("-r");
        arguments << path;
    }
    runTool(QStringLiteral("icotool"), arguments);
    return files.read(QStringLiteral("out.ico"));
}

} // namespace

std::vector<Fixture> icoCorpus()
{
    std::vector<Fixture> all;
    const QSize odd(13, 7);
    for (const int bits : {1, 4, 8, 24, 32}) {
        const QByteArray name = QByteArray::number(bits) + " bits, 13 x 7";
        const QByteArray file = iconOf({part(odd, bits)});
        all.push_back(bits == 24 ? magickFixture(name.constData(), file) : fixture(name.constData(), file));
    }
    // No independent reader was found that reads these two right.
    all.push_back({QStringLiteral("16 bits"), iconOf({part(odd, 16)}), {}, 0, 1});
    all.push_back({QStringLiteral("32 bits, no alpha"), iconOf({part(odd, 32, true, false)}), {}, 0, 1});
    all.push_back(fixture("1 bit, 1 x 1", iconOf({part(QSize(1, 1), 1)})));
    all.push_back(magickFixture("24 bits, 1 x 255", iconOf({part(QSize(1, 255), 24)})));
    all.push_back(fixture("8 bits, 255 x 1", iconOf({part(QSize(255, 1), 8)})));
    all.push_back(fixture("the largest of three",
                          iconOf({part(QSize(16, 16), 32), part(QSize(48, 48), 4), part(QSize(32, 32), 24)}),
                          1));
    all.push_back(magickFixture("the deepest of three", iconOf({part(odd, 4), part(odd, 8), part(odd, 24)}),
                                QStringLiteral("0,1")));
    const QSize large(300, 260);
    all.push_back(fixture("a PNG of 300 x 260", iconOf({part(odd, 24), {QSize(0, 0), 32, pngOf(large)}}), 1));
    all.push_back(fixture("a PNG of 20 x 10", iconOf({{QSize(20, 10), 32, pngOf(QSize(20, 10))}})));
    all.push_back(fixture("ImageMagick, 24 bits", byConvert({}, QSize(33, 21))));
    all.push_back(
        fixture("ImageMagick, 16 colours",
                byConvert({QStringLiteral("+dither"), QStringLiteral("-colors"), QStringLiteral("16")},
                          QSize(48, 48))));
    all.push_back(
        fixture("ImageMagick, black and white", byConvert({QStringLiteral("-monochrome")}, QSize(31, 30))));
    all.push_back(fixture(
        "ImageMagick, four sizes",
        byConvert({QStringLiteral("-define"), QStringLiteral("icon:auto-resize=16,32,64,48")}, QSize(64, 64)),
        2));
    for (const int bits : {4, 8, 24, 32}) {
        const QByteArray name = "icotool, bits " + QByteArray::number(bits);
        const QByteArray file = byIcotool({bits}, QSize(30, 19), false);
        all.push_back(bits == 24 ? magickFixture(name.constData(), file) : fixture(name.constData(), file));
    }
    all.push_back(fixture("icotool, PNG entry", byIcotool({32}, QSize(256, 256), true)));
    all.push_back(fixture("icotool, three depths", byIcotool({4, 32, 8}, QSize(30, 19), false), 1));
    return all;
}

} // namespace quorvia::test
